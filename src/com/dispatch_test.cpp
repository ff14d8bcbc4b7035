#include "com/dispatch.h"

#include "com/host_for_tests.h"

namespace vndoc6::com {
namespace {

class DispatchTest : public DoorTest {};

TEST_F(DispatchTest, FindsMembersAndParametersInAnyLetterCase) {
  const auto gadget = MakeGadget();
  EXPECT_EQ(IdOf(gadget.get(), L"number"), 1);
  EXPECT_EQ(IdOf(gadget.get(), L"LABEL"), 2);
  EXPECT_EQ(IdOf(gadget.get(), L"Numbers"), DISPID_UNKNOWN);
  EXPECT_EQ(IdOf(gadget.get(), L"N\u00FCmber"), DISPID_UNKNOWN);

  wchar_t join[] = L"join", third[] = L"PSTHIRD", first[] = L"psFirst", other[] = L"psOther";
  LPOLESTR names[] = {join, third, first, other};
  DISPID ids[4];
  EXPECT_EQ(gadget->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
  EXPECT_EQ(ids[1], 2);
  EXPECT_EQ(ids[2], 0);
  EXPECT_EQ(gadget->GetIDsOfNames(IID_NULL, names, 4, 0, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[2], 0);
  EXPECT_EQ(ids[3], DISPID_UNKNOWN);
  EXPECT_EQ(gadget->GetIDsOfNames(IID_IDispatch, names, 1, 0, ids), DISP_E_UNKNOWNINTERFACE);
}

TEST_F(DispatchTest, PropertiesOfEveryKindComeBackAsTheyWereSet) {
  const auto gadget = MakeGadget();
  EXPECT_EQ(Put(gadget, L"Number", -7).code, S_OK);
  EXPECT_EQ(Put(gadget, L"Label", L"\u00C4\u4E2D").code, S_OK);
  EXPECT_EQ(Put(gadget, L"Flag", true).code, S_OK);
  EXPECT_EQ(Put(gadget, L"Ratio", 0.5).code, S_OK);
  EXPECT_EQ(Put(gadget, L"Price", 1.25).code, S_OK);

  EXPECT_EQ(Get(gadget, L"Number").value.lVal, -7);
  EXPECT_EQ(Get(gadget, L"Label").value.Text(), L"\u00C4\u4E2D");
  const Value flag = Get(gadget, L"Flag").value;
  EXPECT_EQ(flag.vt, VT_BOOL);
  EXPECT_EQ(flag.boolVal, VARIANT_TRUE);
  const Value ratio = Get(gadget, L"Ratio").value;
  EXPECT_EQ(ratio.vt, VT_R4);
  EXPECT_EQ(ratio.fltVal, 0.5f);
  const Value price = Get(gadget, L"Price").value;
  EXPECT_EQ(price.vt, VT_CY);
  EXPECT_EQ(price.cyVal.int64, 12500);
}

TEST_F(DispatchTest, ArgumentsMayBeReferencesAndLeftOutInEveryWay) {
  const auto gadget = MakeGadget();
  const DISPID join = IdOf(gadget.get(), L"Join");
  const auto call = [&](std::vector<Value> positional,
                        std::vector<std::pair<DISPID, Value>> named) {
    return Invoke(gadget, join, DISPATCH_METHOD | DISPATCH_PROPERTYGET, std::move(positional),
                  std::move(named))
        .value.Text();
  };
  EXPECT_EQ(call({L"x"}, {}), L"x,b,c");
  EXPECT_EQ(call({L"x", Value::Missing(), L"z"}, {}), L"x,b,z");
  EXPECT_EQ(call({L"x"}, {{2, L"z"}}), L"x,b,z");
  EXPECT_EQ(call({}, {{2, L"z"}, {0, L"x"}}), L"x,b,z");
  EXPECT_EQ(call({1, 2.5, true}, {}), L"1,2.5,True");

  Value target(L"far");
  int16_t small = 12;
  EXPECT_EQ(call({Value::Reference(target), Value::Reference(VT_I2, &small)}, {}), L"far,12,c");
  Value inner = Value::Reference(VT_BSTR, &target.bstrVal);
  EXPECT_EQ(call({Value::Reference(inner)}, {}), L"far,b,c");
}

TEST_F(DispatchTest, CallsThatDoNotReachTheMemberSayWhy) {
  const auto gadget = MakeGadget();
  EXPECT_EQ(Call(gadget, L"Join").code, DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(Call(gadget, L"Join", {L"1", L"2", L"3", L"4"}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Get(gadget, L"Number", {1}).code, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(Invoke(gadget, 4711, DISPATCH_METHOD).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Get(gadget, L"Raise", {1}).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Put(gadget, L"Parts", 1).code, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(Put(gadget, L"Number", 3e9).code, DISP_E_OVERFLOW);
  const DISPID join = IdOf(gadget.get(), L"Join");
  EXPECT_EQ(Invoke(gadget, join, DISPATCH_METHOD, {L"x"}, {{3, L"y"}}).code, DISP_E_PARAMNOTFOUND);
}

TEST_F(DispatchTest, ATypeMismatchNamesTheArgumentAsTheCallerPassedIt) {
  const auto gadget = MakeGadget();
  const Answer put = Put(gadget, L"Number", L"seven");
  EXPECT_EQ(put.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(put.argument, 0u);

  const DISPID join = IdOf(gadget.get(), L"Join");
  Value array;
  array.vt = VT_ARRAY | VT_I4;
  const Answer positional = Invoke(gadget, join, DISPATCH_METHOD, {L"x", array, L"z"});
  EXPECT_EQ(positional.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(positional.argument, 1u);
  const Answer named = Invoke(gadget, join, DISPATCH_METHOD, {L"x"}, {{1, L"y"}, {2, gadget}});
  EXPECT_EQ(named.code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(named.argument, 1u);
}

TEST_F(DispatchTest, AMembersOwnErrorsAreExceptionsWhateverTheirNumber) {
  const auto gadget = MakeGadget();
  for (const int32_t number : {5, 13, 438, 2199}) {
    const Answer answer = Call(gadget, L"Fail", {number});
    EXPECT_EQ(answer.code, DISP_E_EXCEPTION);
    EXPECT_EQ(answer.scode, static_cast<HRESULT>(0x800A0000u + static_cast<unsigned>(number)));
    EXPECT_EQ(answer.description, L"It failed.");
    EXPECT_EQ(answer.source, L"Gadget.Fail");
  }
  for (const Answer& answer : {Get(gadget, L"Locked"), Put(gadget, L"Locked", L"open")}) {
    EXPECT_EQ(answer.code, DISP_E_EXCEPTION);
    EXPECT_EQ(answer.scode, static_cast<HRESULT>(0x800A0005));
    EXPECT_EQ(answer.description, L"It is locked.");
    EXPECT_EQ(answer.source, L"Gadget.Locked");
    EXPECT_EQ(answer.value.vt, VT_EMPTY);
  }
  const Answer exhausted = Call(gadget, L"Exhaust");
  EXPECT_EQ(exhausted.scode, static_cast<HRESULT>(0x800A0007));
  EXPECT_EQ(exhausted.description, L"Out of memory.");
}

TEST_F(DispatchTest, TakesTheFlagsThatScriptEnginesSend) {
  const auto gadget = MakeGadget();
  const auto partner = MakeGadget();
  // `x.Number()`, and Set of a value.
  EXPECT_EQ(Call(gadget, L"Number").code, S_OK);
  EXPECT_EQ(Put(gadget, L"Number", 4, DISPATCH_PROPERTYPUTREF).code, S_OK);
  EXPECT_EQ(Get(gadget, L"Number").value.lVal, 4);
  EXPECT_EQ(Put(gadget, L"Number", 5, DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF).code, S_OK);
  // An object without Set.
  EXPECT_EQ(Put(gadget, L"Partner", partner).code, S_OK);
  EXPECT_EQ(Get(gadget, L"Partner").value.Object().get(), partner.get());
  EXPECT_EQ(Put(gadget, L"Partner", Value(ComPtr<IDispatch>()), DISPATCH_PROPERTYPUTREF).code,
            S_OK);
  EXPECT_EQ(Get(gadget, L"Partner").value.vt, VT_DISPATCH);
  EXPECT_FALSE(Get(gadget, L"Partner").value.Object());
}

// A property may have a put and a putref of its own.
TEST_F(DispatchTest, AnObjectGoesToThePutrefOnlyWhenItIsSet) {
  const auto gadget = MakeGadget();
  Put(gadget, L"Slot", gadget);
  EXPECT_EQ(GadgetOf(gadget).Label(), u"put");
  Put(gadget, L"Slot", gadget, DISPATCH_PROPERTYPUTREF);
  EXPECT_EQ(GadgetOf(gadget).Label(), u"putref");
}

TEST_F(DispatchTest, SurplusArgumentsGoToTheDefaultMember) {
  const auto gadget = MakeGadget();
  const auto part = MakeGadget();
  Call(Get(gadget, L"Parts").value.Object(), L"Add", {part});
  const Answer found =
      Invoke(gadget, IdOf(gadget.get(), L"Parts"), DISPATCH_METHOD | DISPATCH_PROPERTYGET, {1});
  EXPECT_EQ(found.value.Object().get(), part.get());
  EXPECT_EQ(Invoke(Get(gadget, L"Parts").value.Object(), DISPID_VALUE, DISPATCH_PROPERTYGET, {2})
                .value.vt,
            VT_DISPATCH);
}

TEST_F(DispatchTest, EnumeratorsSkipResetAndClone) {
  const auto gadget = MakeGadget();
  const auto parts = Get(gadget, L"Parts").value.Object();
  std::vector<ComPtr<IDispatch>> added;
  for (int i = 0; i < 3; ++i) {
    added.push_back(MakeGadget());
    Call(parts, L"Add", {added.back()});
  }
  // Script engines ask with the method flag alone.
  const Answer answer = Invoke(parts, DISPID_NEWENUM, DISPATCH_METHOD);
  ASSERT_EQ(answer.value.vt, VT_UNKNOWN);
  const auto walk = ComPtr<IUnknown>(answer.value.punkVal).As<IEnumVARIANT>();
  ASSERT_TRUE(walk);

  const auto next = [](const ComPtr<IEnumVARIANT>& from) {
    Value value;
    return from->Next(1, &value, nullptr) == S_OK ? value.Object().get() : nullptr;
  };
  EXPECT_EQ(next(walk), added[0].get());
  ComPtr<IEnumVARIANT> clone;
  EXPECT_EQ(walk->Clone(clone.Receive()), S_OK);
  EXPECT_EQ(walk->Skip(1), S_OK);
  EXPECT_EQ(next(walk), added[2].get());
  EXPECT_EQ(next(walk), nullptr);
  EXPECT_EQ(walk->Skip(1), S_FALSE);
  EXPECT_EQ(next(clone), added[1].get());
  walk->Reset();

  Value values[5];
  ULONG fetched = 0;
  EXPECT_EQ(walk->Next(5, values, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 3u);
  EXPECT_EQ(values[2].Object().get(), added[2].get());
  EXPECT_EQ(walk->Next(5, values, nullptr), E_POINTER);
}

TEST_F(DispatchTest, ObjectsOfOtherClassesDoNotPass) {
  const auto gadget = MakeGadget();
  EXPECT_EQ(Put(gadget, L"Partner", Get(gadget, L"Parts").value).code, DISP_E_TYPEMISMATCH);
  EXPECT_EQ(Put(gadget, L"Font", gadget).code, DISP_E_TYPEMISMATCH);
}

}  // namespace
}  // namespace vndoc6::com
