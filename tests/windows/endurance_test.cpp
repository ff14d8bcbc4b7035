// What hosts do all day, for so long that whatever is kept by mistake shows: in the heap, in the
// process's handles, in its slots of thread local storage, or as an object of the library.
#include <functional>
#include <thread>

#include "com/host_for_tests.h"
#include "tests/endurance/soak.h"
#include "tests/windows/server.h"

#include "VNDoc6.h"

namespace vndoc6::com {
namespace {

using vndoc6::testing::Times;

// What the process has in use.
struct Held {
  size_t heap_bytes = 0;
  size_t handles = 0;
  DWORD free_slot = 0;
  friend bool operator==(const Held&, const Held&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Held& held) {
    return out << held.heap_bytes << " bytes, handles " << held.handles << ", first free slot "
               << held.free_slot;
  }
};

size_t HeapBytes() {
  HANDLE heaps[64];
  const DWORD count = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
  size_t bytes = 0;
  for (DWORD i = 0; i < count; ++i) {
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heaps[i]);
    while (HeapWalk(heaps[i], &entry)) {
      if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
    HeapUnlock(heaps[i]);
  }
  return bytes;
}

// Wine does not count handles, but it always gives out the lowest free one.
size_t Handles() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  if (count != 0) return count;
  const HANDLE lowest = CreateEventW(nullptr, FALSE, FALSE, nullptr);
  CloseHandle(lowest);
  return reinterpret_cast<size_t>(lowest);
}

Held HeldNow() {
  const DWORD slot = TlsAlloc();
  TlsFree(slot);
  return {HeapBytes(), Handles(), slot};
}

// Does the work three times: the first fills the caches of the library and of the system.
void ExpectNothingKept(const std::function<void()>& work) {
  work();
  const Held before = HeldNow();
  work();
  work();
  EXPECT_EQ(HeldNow(), before);
}

class EnduranceTest : public ServerTest {
 protected:
  ComPtr<_vnStep> NewStep(const ComPtr<_vnDocument>& document) {
    ComPtr<_vnStep> step;
    EXPECT_EQ(document->NewStep(nullptr, nullptr, step.Receive()), S_OK);
    return step;
  }
  ComPtr<_vnDocument> NewDocument() { return server_.Create("vnDocument").As<_vnDocument>(); }
};

TEST_F(EnduranceTest, CallsThroughTheSlots) {
  ExpectNothingKept([this] {
    const auto step = NewStep(NewDocument());
    const OwnedBstr label(u"Place the order");
    for (int32_t i = 0; i < Times(250000); ++i) {
      OwnedBstr read;
      LONG index = 0;
      ASSERT_EQ(step->put_Label(label.get()), S_OK);
      ASSERT_EQ(step->get_Label(read.Receive()), S_OK);
      ASSERT_EQ(step->get_StepIndex(&index), S_OK);
      ASSERT_EQ(step->put_AssignTo(i), S_OK);
    }
  });
}

TEST_F(EnduranceTest, LateBoundCalls) {
  ExpectNothingKept([this] {
    const auto document = NewDocument();
    const auto step = NewStep(document).As<IDispatch>();
    const ComPtr<IDispatch> late_document = document.As<IDispatch>();
    for (int32_t i = 0; i < Times(10000); ++i) {
      ASSERT_EQ(Put(step, L"label", L"Place the order").code, S_OK);
      ASSERT_EQ(Get(step, L"LABEL").value.Text(), L"Place the order");
      ASSERT_EQ(Get(late_document, L"Steps", {1}).value.Object().get(), step.get());
      ASSERT_EQ(Get(step, L"Container").code, DISP_E_EXCEPTION);
      ASSERT_EQ(Get(step, L"NoSuchMember").code, DISP_E_MEMBERNOTFOUND);
      ASSERT_EQ(Put(step, L"StepIndex", L"a text").code, DISP_E_TYPEMISMATCH);
    }
  });
}

class EnduranceFileTest : public EnduranceTest {
 protected:
  void SetUp() override {
    EnduranceTest::SetUp();
    wchar_t folder[MAX_PATH];
    name_ = std::wstring(folder, GetTempPathW(MAX_PATH, folder)) + L"vndoc6 endurance.vn6";
  }
  void TearDown() override {
    DeleteFileW(name_.c_str());
    EnduranceTest::TearDown();
  }
  std::wstring name_;
};

TEST_F(EnduranceFileTest, DocumentsAreOpenedUsedAndDropped) {
  ASSERT_EQ(Call(server_.Create("vnDocument"), L"SaveAs", {name_.c_str()}).value.boolVal,
            VARIANT_TRUE);
  ExpectNothingKept([this] {
    for (int32_t i = 0; i < Times(350); ++i) {
      const ComPtr<IDispatch> document = server_.Create("vnDocument");
      ASSERT_EQ(Call(document, L"Load", {name_.c_str(), L""}).value.boolVal, VARIANT_TRUE);
      const auto step = Call(document, L"NewStep").value.Object();
      Put(Get(step, L"Figure").value.Object(), L"Shape", 52);
      Put(Get(Get(step, L"Figure").value.Object(), L"Font").value.Object(), L"Bold", true);
      Call(step, L"NewTask");
      Call(Get(document, L"Properties").value.Object(), L"Add", {L"key", L"value"});
      Call(Get(document, L"Steps").value.Object(), L"Remove", {1});
      // Not always, for it waits for the disk.
      if (i % 10 != 0) continue;
      ASSERT_EQ(Call(document, L"Save").value.boolVal, VARIANT_TRUE);
    }
    EXPECT_EQ(server_.LiveObjects(), 0u);
  });
}

// Leaves when it is called, and puts another one of its kind in its place.
class RelaySink final : public ComObject<IDispatch> {
 public:
  RelaySink(IConnectionPoint* point, int& heard) : point_(point), heard_(heard) {
    point_->Advise(this, &cookie_);
  }
  DWORD cookie() const { return cookie_; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    ++heard_;
    const ComPtr<IDispatch> running(this);
    const auto next = MakeCom<RelaySink>(point_, heard_);
    return point_->Unadvise(cookie_);
  }

 private:
  IConnectionPoint* const point_;
  int& heard_;
  DWORD cookie_ = 0;
};

TEST_F(EnduranceTest, SinksComeAndGoWithinEvents) {
  ExpectNothingKept([this] {
    const auto document = NewDocument();
    const auto step = NewStep(document);
    ComPtr<IConnectionPoint> point;
    document.As<IConnectionPointContainer>()->FindConnectionPoint(__uuidof(__vnDocument),
                                                                  point.Receive());
    ASSERT_TRUE(point);
    int heard = 0;
    const auto first = MakeCom<RelaySink>(point.get(), heard);
    const auto second = MakeCom<RelaySink>(point.get(), heard);
    const int32_t changes = Times(20000);
    for (int32_t i = 0; i < changes; ++i) {
      step->put_ContainerKey(OwnedBstr(i % 2 == 0 ? u"a" : u"b").get());
    }
    EXPECT_EQ(heard, 2 * changes);
    ComPtr<IEnumConnections> connections;
    ASSERT_EQ(point->EnumConnections(connections.Receive()), S_OK);
    CONNECTDATA connected;
    while (connections->Next(1, &connected, nullptr) == S_OK) {
      connected.pUnk->Release();
      point->Unadvise(connected.dwCookie);
    }
  });
}

// A thread that used the library leaves nothing when it ends, also when errors were raised or keys
// were made on it.
TEST_F(EnduranceTest, ThreadsComeAndGo) {
  ExpectNothingKept([this] {
    for (int32_t i = 0; i < Times(100); ++i) {
      std::thread([this] {
        OleInitialize(nullptr);
        EXPECT_EQ(Get(server_.Create("vnStep"), L"Container").code, DISP_E_EXCEPTION);
        EXPECT_EQ(Call(server_.Create("vnDocument"), L"NewStep").code, S_OK);
        OleUninitialize();
      }).join();
    }
  });
}

void UseOnce() {
  OleInitialize(nullptr);
  {
    const Server server;
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(server.Create("vnDocument")->GetTypeInfo(0, 0, type.Receive()), S_OK);
    type = {};
    EXPECT_EQ(Get(server.Create("vnStep"), L"Container").code, DISP_E_EXCEPTION);
    EXPECT_EQ(Call(server.Create("vnDocument"), L"NewStep").code, S_OK);
    EXPECT_EQ(server.LiveObjects(), 0u);
    EXPECT_EQ(server.CanUnloadNow(), S_OK);
  }
  OleUninitialize();
}

TEST(ModuleEnduranceTest, TheDllIsLoadedAndUnloaded) {
  ASSERT_EQ(GetModuleHandleW(L"VNDoc6.dll"), nullptr);
  const int32_t times = Times(100);
  // What the compiler's runtime, which is part of the DLL, keeps of its own locks and threads. The
  // library and the system keep nothing.
  const size_t allowed = 1024 * static_cast<size_t>(times);
  UseOnce();
  const Held before = HeldNow();
  for (int32_t i = 0; i < times; ++i) UseOnce();
  const Held after = HeldNow();
  EXPECT_EQ(GetModuleHandleW(L"VNDoc6.dll"), nullptr);
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_EQ(after.free_slot, before.free_slot);
  EXPECT_LE(after.heap_bytes, before.heap_bytes + allowed);
}

}  // namespace
}  // namespace vndoc6::com
