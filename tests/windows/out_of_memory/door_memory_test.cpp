// Lets each allocation of the library fail in turn while a host calls it through the COM door: the
// host gets error 7, nothing leaks, and the same call works when there is memory again.
#include <functional>
#include <ostream>

#include "com/host_for_tests.h"
#include "com/server/class_factory.h"
#include "tests/out_of_memory/shortage.h"
#include "vndoc6/document/document.h"
#include "vndoc6/published/published.h"

#include "VNDoc6.h"

namespace vndoc6::com {
namespace {

using vndoc6::testing::LiveBlocks;
using vndoc6::testing::Shortage;

constexpr auto kOutOfMemory = static_cast<HRESULT>(0x800A0007);

// What calls work on. Made and dropped for each, while there is memory.
struct Subject {
  ComPtr<_vnDocument> document;
  ComPtr<_vnStep> step;
  ComPtr<IDispatch> late_step;
  ComPtr<IEnumVARIANT> walk;
  ComPtr<IConnectionPoint> point;
  const OwnedBstr text{u"a text that is too long for the place that short ones have"};

  Subject() {
    document = ExportObject(*automation::Make<vnDocument>()).As<_vnDocument>();
    document->NewStep(nullptr, nullptr, step.Receive());
    // What a step builds on its first use is there.
    step->put_AssignTo(1);
    late_step = step.As<IDispatch>();
    ComPtr<_vnSteps> steps;
    ComPtr<IUnknown> unknown;
    document->get_Steps(steps.Receive());
    steps->get_NewEnum(unknown.Receive());
    walk = unknown.As<IEnumVARIANT>();
    document.As<IConnectionPointContainer>()->FindConnectionPoint(__uuidof(__vnDocument),
                                                                  point.Receive());
  }

  HRESULT Invoke(const wchar_t* name, WORD flags, DISPPARAMS& params) const {
    auto* units = const_cast<wchar_t*>(name);
    DISPID id = DISPID_UNKNOWN;
    if (const HRESULT code = late_step->GetIDsOfNames(IID_NULL, &units, 1, 0, &id)) return code;
    VARIANT result;
    VariantInit(&result);
    EXCEPINFO exception{};
    const HRESULT code =
        late_step->Invoke(id, IID_NULL, 0, flags, &params, &result, &exception, nullptr);
    VariantClear(&result);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    return code == DISP_E_EXCEPTION ? exception.scode : code;
  }
};

class CountingSink final : public ComObject<IDispatch> {
 public:
  int heard = 0;

  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    ++heard;
    return S_OK;
  }
};

// A call, as hosts make it; gives its code, S_OK when everything was done.
struct HostCall {
  const char* name;
  HRESULT (*make)(Subject& subject);
};
std::ostream& operator<<(std::ostream& out, const HostCall& call) { return out << call.name; }

const HostCall kCalls[] = {
    {"LateBoundPut",
     [](Subject& s) {
       VARIANT value;
       value.vt = VT_BSTR;
       value.bstrVal = s.text.get();
       DISPID put = DISPID_PROPERTYPUT;
       DISPPARAMS params{&value, &put, 1, 1};
       return s.Invoke(L"Instructions", DISPATCH_PROPERTYPUT, params);
     }},
    {"LateBoundGetOfAnObject",
     [](Subject& s) {
       DISPPARAMS params{};
       return s.Invoke(L"Figure", DISPATCH_PROPERTYGET, params);
     }},
    {"LateBoundGetThroughTheDefaultMember",
     [](Subject& s) {
       VARIANT index;
       index.vt = VT_I4;
       index.lVal = 1;
       DISPPARAMS params{&index, nullptr, 1, 0};
       return s.Invoke(L"Tasks", DISPATCH_PROPERTYGET, params);
     }},
    {"LateBoundMethod",
     [](Subject& s) {
       DISPPARAMS params{};
       return s.Invoke(L"Save", DISPATCH_METHOD, params);
     }},
    {"PutThroughTheSlot", [](Subject& s) { return s.step->put_Label(s.text.get()); }},
    {"GetThroughTheSlot",
     [](Subject& s) {
       OwnedBstr text;
       return s.step->Save(text.Receive());
     }},
    {"ObjectThroughTheSlot",
     [](Subject& s) {
       ComPtr<_vnStep> made;
       return s.document->NewStep(nullptr, nullptr, made.Receive());
     }},
    {"Font",
     [](Subject& s) {
       ComPtr<_vnFigure> figure;
       ComPtr<IFontDisp> font;
       const HRESULT code = s.step->get_Figure(figure.Receive());
       return FAILED(code) ? code : figure->get_Font(font.Receive());
     }},
    {"Enumeration",
     [](Subject& s) {
       ComPtr<IEnumVARIANT> clone;
       const HRESULT code = s.walk->Clone(clone.Receive());
       if (FAILED(code)) return code;
       VARIANT member;
       VariantInit(&member);
       const HRESULT next = clone->Next(1, &member, nullptr);
       VariantClear(&member);
       return next;
     }},
    {"ConnectionPoints",
     [](Subject& s) {
       ComPtr<IEnumConnectionPoints> points;
       ComPtr<IEnumConnections> connections;
       const HRESULT code =
           s.document.As<IConnectionPointContainer>()->EnumConnectionPoints(points.Receive());
       return FAILED(code) ? code : s.point->EnumConnections(connections.Receive());
     }},
};

class DoorMemoryTest : public DoorTest, public ::testing::WithParamInterface<HostCall> {};

// Calls `make` while each allocation in turn fails, alone and with all after it. It must fail with
// error 7 or not at all, and work afterwards.
void ExpectErrorSeven(const std::function<HRESULT(Subject&)>& make) {
  for (int i = 0; i < 2; ++i) {
    Subject subject;
    ASSERT_EQ(make(subject), S_OK);
  }
  SetErrorInfo(0, nullptr);
  const size_t objects = automation::Object::LiveCount();
  const size_t blocks = LiveBlocks();
  size_t failures = 0;
  for (const bool lasting : {false, true}) {
    bool came = true;
    for (size_t first = 1; came; ++first) {
      const auto which = [&] {
        return (lasting ? "all from allocation " : "allocation ") + std::to_string(first);
      };
      {
        Subject subject;
        HRESULT code = S_OK;
        {
          const Shortage shortage(first, lasting);
          code = make(subject);
          came = shortage.came();
        }
        if (code != S_OK) {
          ASSERT_EQ(code, kOutOfMemory) << which();
          ASSERT_TRUE(came) << which();
          ++failures;
        }
        ASSERT_EQ(make(subject), S_OK) << "after " << which();
      }
      SetErrorInfo(0, nullptr);
      ASSERT_EQ(automation::Object::LiveCount(), objects) << which();
      ASSERT_EQ(LiveBlocks(), blocks) << which();
    }
  }
  EXPECT_GT(failures, 0u);
}

TEST_P(DoorMemoryTest, TheHostGetsErrorSevenAndNothingLeaks) { ExpectErrorSeven(GetParam().make); }

INSTANTIATE_TEST_SUITE_P(HostCalls, DoorMemoryTest, ::testing::ValuesIn(kCalls),
                         [](const auto& test) { return test.param.name; });

// One that is connected is told, one that is not is not.
TEST_F(DoorMemoryTest, ASinkIsConnectedOrNot) {
  const auto sink = MakeCom<CountingSink>();
  ExpectErrorSeven([&](Subject& subject) {
    DWORD cookie = 0;
    const HRESULT advised = subject.point->Advise(sink.get(), &cookie);
    sink->heard = 0;
    const HRESULT changed = subject.step->put_ContainerKey(nullptr);
    if (SUCCEEDED(changed)) {
      EXPECT_EQ(sink->heard, SUCCEEDED(advised) ? 1 : 0);
    }
    if (SUCCEEDED(advised)) subject.point->Unadvise(cookie);
    return FAILED(advised) ? advised : changed;
  });
}

// The change is made before it is told.
TEST_F(DoorMemoryTest, AChangeThatCannotBeToldIsMade) {
  const auto sink = MakeCom<CountingSink>();
  const OwnedBstr key(u"c");
  ExpectErrorSeven([&](Subject& subject) {
    DWORD cookie = 0;
    const HRESULT advised = subject.point->Advise(sink.get(), &cookie);
    if (FAILED(advised)) return advised;
    sink->heard = 0;
    const HRESULT code = subject.step->put_ContainerKey(key.get());
    EXPECT_EQ(sink->heard, SUCCEEDED(code) ? 1 : 0);
    OwnedBstr kept;
    EXPECT_EQ(subject.step->get_ContainerKey(kept.Receive()), S_OK);
    EXPECT_EQ(kept.text(), key.text());
    subject.point->Unadvise(cookie);
    return code;
  });
}

TEST_F(DoorMemoryTest, EveryClassIsCreatedOrNot) {
  for (const PublishedClass& published : PublishedClasses()) {
    SCOPED_TRACE(published.info().name());
    const auto factory = MakeCom<ClassFactory>(published.info());
    ExpectErrorSeven([&](Subject&) {
      void* made = nullptr;
      const HRESULT code = factory->CreateInstance(nullptr, IID_IDispatch, &made);
      if (made != nullptr) static_cast<IDispatch*>(made)->Release();
      return code;
    });
  }
}

}  // namespace
}  // namespace vndoc6::com
