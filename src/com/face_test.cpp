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

}  // namespace
}  // namespace vndoc6::com
