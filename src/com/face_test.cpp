#include "com/face.h"

#include "com/host_for_tests.h"

namespace vndoc6::com {
namespace {

class FaceTest : public DoorTest {};

TEST_F(FaceTest, AnObjectHasOneIdentity) {
  const auto gadget = MakeGadget();
  const auto parts = Get(gadget, L"Parts").value.Object();
  EXPECT_EQ(Get(gadget, L"Parts").value.Object().get(), parts.get());
  const auto unknown = gadget.As<IUnknown>();
  const auto provider = gadget.As<IProvideClassInfo2>();
  const auto support = gadget.As<ISupportErrorInfo>();
  const auto container = gadget.As<IConnectionPointContainer>();
  ASSERT_TRUE(provider && support && container);
  EXPECT_EQ(provider.As<IUnknown>().get(), unknown.get());
  EXPECT_EQ(support.As<IUnknown>().get(), unknown.get());
  EXPECT_EQ(container.As<IUnknown>().get(), unknown.get());
  EXPECT_EQ(gadget.As<IDispatch>(ToIid(Gadget::classInfo().interface_id())).get(), gadget.get());
}

TEST_F(FaceTest, OffersWhatItsClassHas) {
  const auto parts = Get(MakeGadget(), L"Parts").value.Object();
  EXPECT_FALSE(parts.As<IConnectionPointContainer>());
  EXPECT_FALSE(parts.As<IPersist>());
  EXPECT_FALSE(parts.As<IDispatch>(ToIid(Gadget::classInfo().interface_id())));
  GUID source;
  EXPECT_EQ(parts.As<IProvideClassInfo2>()->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source),
            E_INVALIDARG);
  const auto gadget = MakeGadget();
  EXPECT_EQ(gadget.As<IProvideClassInfo2>()->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source),
            S_OK);
  EXPECT_EQ(source, ToIid(Gadget::EventsInfo().id));
  EXPECT_EQ(gadget.As<ISupportErrorInfo>()->InterfaceSupportsErrorInfo(
                ToIid(Gadget::classInfo().interface_id())),
            S_OK);
}

TEST_F(FaceTest, HoldsTheObjectWhileAHostHoldsIt) {
  auto gadget = MakeGadget();
  auto parts = Get(gadget, L"Parts").value.Object();
  EXPECT_EQ(HostReference::Count(), 2);
  gadget = {};
  EXPECT_EQ(Get(parts, L"Count").value.lVal, 0);
  EXPECT_EQ(HostReference::Count(), 1);
}

// A host's object around one of the library's, which answers for what it is not itself.
class Wrapper final : public ComObject<ISequentialStream> {
 public:
  explicit Wrapper(ComPtr<IDispatch> wrapped) : wrapped_(std::move(wrapped)) {}
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    const HRESULT code = ComObject::QueryInterface(iid, out);
    return FAILED(code) ? wrapped_->QueryInterface(iid, out) : code;
  }
  STDMETHODIMP Read(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
  STDMETHODIMP Write(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }

 private:
  const ComPtr<IDispatch> wrapped_;
};

TEST_F(FaceTest, IsRecognisedBehindAnotherObjectAndCountedOnItsOwn) {
  const auto gadget = MakeGadget();
  const auto wrapper = MakeCom<Wrapper>(gadget);
  EXPECT_EQ(ImportObject(wrapper.get()).get(), &GadgetOf(gadget));
  EXPECT_EQ(wrapper->AddRef(), 2u);
  EXPECT_EQ(wrapper->Release(), 1u);
  EXPECT_EQ(gadget.get()->AddRef(), 3u);  // this test, the wrapper, and this call
  gadget.get()->Release();
}

// Its events can't be told for want of memory.
class ExhaustedGadget final : public Object, public automation::EventSource {
 public:
  const ClassInfo* GetClassInfo() const override { return &Gadget::classInfo(); }
  const automation::EventInterfaceInfo& Events() const override { throw std::bad_alloc(); }
  void Connect(automation::EventSink*) override {}
  void Disconnect(automation::EventSink*) override {}
};

TEST_F(FaceTest, NoExceptionLeavesIt) {
  const auto face = ExportObject(*automation::Make<ExhaustedGadget>());
  constexpr auto kOutOfMemory = static_cast<HRESULT>(0x800A0007);
  GUID source;
  EXPECT_EQ(face.As<IProvideClassInfo2>()->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source),
            kOutOfMemory);
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(face.As<IConnectionPointContainer>()->FindConnectionPoint(source, point.Receive()),
            kOutOfMemory);
}

}  // namespace
}  // namespace vndoc6::com
