#include "com/event_point.h"

#include <functional>

#include "com/host_for_tests.h"

namespace vndoc6::com {
namespace {

using testing::ElementsAre;

// A sink that writes down what it hears, and does what the test wants.
class Sink final : public ComObject<IDispatch> {
 public:
  std::vector<std::string> heard;
  std::function<void(DISPID, const DISPPARAMS&)> then = [](DISPID, const DISPPARAMS&) {};
  HRESULT answer = S_OK;

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* params, VARIANT*, EXCEPINFO*,
                      UINT*) override {
    std::string line = std::to_string(id);
    for (UINT i = params->cArgs; i-- > 0;) line += " " + Describe(params->rgvarg[i]);
    heard.push_back(line);
    then(id, *params);
    return answer;
  }

 private:
  static std::string Describe(const VARIANT& value) {
    switch (value.vt) {
      case VT_BYREF | VT_I4:
        return "&" + std::to_string(*value.plVal);
      case VT_BYREF | VT_I2:
        return "&" + std::to_string(*value.piVal) + "%";
      case VT_BYREF | VT_DISPATCH:
        return "&object";
      case VT_R4:
        return std::to_string(value.fltVal).substr(0, 3) + "!";
      default:
        return "?" + std::to_string(value.vt);
    }
  }
};

class EventPointTest : public DoorTest {
 protected:
  static ComPtr<IConnectionPoint> PointOf(const ComPtr<IDispatch>& gadget) {
    ComPtr<IConnectionPoint> point;
    const auto container = gadget.As<IConnectionPointContainer>();
    container->FindConnectionPoint(ToIid(Gadget::EventsInfo().id), point.Receive());
    return point;
  }
  static DWORD Advise(const ComPtr<IDispatch>& gadget, const ComPtr<Sink>& sink) {
    DWORD cookie = 0;
    EXPECT_EQ(PointOf(gadget)->Advise(sink.get(), &cookie), S_OK);
    return cookie;
  }
};

TEST_F(EventPointTest, PassesArgumentsByReferenceOrByValueAsPublished) {
  const auto gadget = MakeGadget();
  const auto sink = MakeCom<Sink>();
  const DWORD cookie = Advise(gadget, sink);
  Call(gadget, L"Raise", {42});
  EXPECT_THAT(sink->heard, ElementsAre("1 &object &42", "2 &10% 1.5!", "25"));
  EXPECT_EQ(PointOf(gadget)->Unadvise(cookie), S_OK);
  Call(gadget, L"Raise", {43});
  EXPECT_EQ(sink->heard.size(), 3u);
  EXPECT_FALSE(GadgetOf(gadget).HasListeners());
}

TEST_F(EventPointTest, SinksDoNotDisturbEachOther) {
  const auto gadget = MakeGadget();
  const auto failing = MakeCom<Sink>(), writing = MakeCom<Sink>(), last = MakeCom<Sink>();
  failing->answer = E_FAIL;
  writing->then = [](DISPID id, const DISPPARAMS& params) {
    if (id != 1) return;
    *params.rgvarg[0].plVal = 99;
    (*params.rgvarg[1].ppdispVal)->Release();
    *params.rgvarg[1].ppdispVal = nullptr;
  };
  for (const auto& sink : {failing, writing, last}) Advise(gadget, sink);
  Call(gadget, L"Raise", {7});
  for (const auto& sink : {failing, writing, last}) {
    EXPECT_THAT(sink->heard, ElementsAre("1 &object &7", "2 &10% 1.5!", "25"));
  }
}

TEST_F(EventPointTest, SinksMayLeaveAndJoinDuringAnEvent) {
  const auto gadget = MakeGadget();
  const auto first = MakeCom<Sink>(), second = MakeCom<Sink>(), late = MakeCom<Sink>();
  const DWORD first_cookie = Advise(gadget, first);
  const DWORD second_cookie = Advise(gadget, second);
  first->then = [&](DISPID id, const DISPPARAMS&) {
    if (id != 1) return;
    PointOf(gadget)->Unadvise(second_cookie);
    PointOf(gadget)->Unadvise(first_cookie);
    Advise(gadget, late);
  };
  Call(gadget, L"Raise", {7});
  EXPECT_EQ(first->heard.size(), 1u);
  EXPECT_EQ(second->heard.size(), 0u);
  EXPECT_THAT(late->heard, ElementsAre("2 &10% 1.5!", "25"));
}

TEST_F(EventPointTest, SinksMayCallBackIntoTheObject) {
  const auto gadget = MakeGadget();
  const auto sink = MakeCom<Sink>();
  Advise(gadget, sink);
  sink->then = [&](DISPID id, const DISPPARAMS& params) {
    const int32_t detail = id == 1 ? static_cast<int32_t>(*params.rgvarg[0].plVal) : 3;
    if (detail < 3) Call(gadget, L"Raise", {detail + 1});
  };
  Call(gadget, L"Raise", {1});
  EXPECT_THAT(sink->heard,
              ElementsAre("1 &object &1", "1 &object &2", "1 &object &3", "2 &10% 1.5!", "25",
                          "2 &10% 1.5!", "25", "2 &10% 1.5!", "25"));
}

TEST_F(EventPointTest, TheLastReferenceMayGoDuringAnEvent) {
  auto gadget = MakeGadget();
  const auto sink = MakeCom<Sink>();
  Advise(gadget, sink);
  sink->then = [&](DISPID, const DISPPARAMS&) { gadget = {}; };
  IDispatch* const raw = gadget.get();
  const DISPID raise = IdOf(raw, L"Raise");
  Value argument(1);
  DISPPARAMS params{&argument, nullptr, 1, 0};
  EXPECT_EQ(raw->Invoke(raise, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr),
            S_OK);
  EXPECT_EQ(sink->heard.size(), 3u);
}

TEST_F(EventPointTest, SinksStayWithAnObjectThatOthersHold) {
  const Ref<Gadget> held = automation::Make<Gadget>();
  const auto sink = MakeCom<Sink>();
  Advise(ExportObject(*held), sink);
  held->Raise(5);
  EXPECT_EQ(sink->heard.size(), 3u);
  EXPECT_EQ(HostReference::Count(), 1);  // the sink
  EXPECT_EQ(sink->AddRef(), 3u);         // this test, the connection, and this call
  sink->Release();
}

TEST_F(EventPointTest, SinksAreReleasedWithTheObject) {
  const auto sink = MakeCom<Sink>();
  Advise(MakeGadget(), sink);
  EXPECT_EQ(sink->AddRef(), 2u);
  sink->Release();
  EXPECT_EQ(automation::Object::LiveCount(), 0u);
}

TEST_F(EventPointTest, TellsOfItsConnections) {
  const auto gadget = MakeGadget();
  const auto container = gadget.As<IConnectionPointContainer>();
  ComPtr<IConnectionPoint> point;
  EXPECT_EQ(container->FindConnectionPoint(IID_IPropertyNotifySink, point.Receive()),
            CONNECT_E_NOCONNECTION);
  ComPtr<IEnumConnectionPoints> points;
  ASSERT_EQ(container->EnumConnectionPoints(points.Receive()), S_OK);
  ASSERT_EQ(points->Next(1, point.Receive(), nullptr), S_OK);
  IConnectionPoint* none = nullptr;
  EXPECT_EQ(points->Next(1, &none, nullptr), S_FALSE);
  IID iid;
  EXPECT_EQ(point->GetConnectionInterface(&iid), S_OK);
  EXPECT_EQ(iid, ToIid(Gadget::EventsInfo().id));
  ComPtr<IConnectionPointContainer> back;
  EXPECT_EQ(point->GetConnectionPointContainer(back.Receive()), S_OK);
  EXPECT_EQ(back.get(), container.get());

  const auto sink = MakeCom<Sink>();
  const DWORD cookie = Advise(gadget, sink);
  ComPtr<IEnumConnections> connections;
  ASSERT_EQ(point->EnumConnections(connections.Receive()), S_OK);
  CONNECTDATA data{};
  ASSERT_EQ(connections->Next(1, &data, nullptr), S_OK);
  EXPECT_EQ(data.dwCookie, cookie);
  EXPECT_EQ(data.pUnk, static_cast<IUnknown*>(sink.get()));
  data.pUnk->Release();
  EXPECT_EQ(point->Unadvise(cookie + 1), CONNECT_E_NOCONNECTION);
  EXPECT_EQ(point->Advise(points.get(), &data.dwCookie), CONNECT_E_CANNOTCONNECT);
}

}  // namespace
}  // namespace vndoc6::com
