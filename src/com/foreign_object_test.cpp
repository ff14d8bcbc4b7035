#include "com/foreign_object.h"

#include "com/host_for_tests.h"
#include "com/standard_font.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"

namespace vndoc6::com {
namespace {

using automation::Error;

// A host's object: `Value` (get, put, putref as its flags say), `Subtract(a, b)`, `Fail`, and a
// default member that gives what Value gives.
class HostObject final : public ComObject<IDispatch> {
 public:
  bool takes_putref = true;
  bool fails = false;
  int default_reads = 0;
  WORD last_flags = 0;
  Value stored;

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    const std::wstring name = names[0];
    ids[0] = name == L"Value" ? 1 : name == L"Subtract" ? 2 : name == L"Fail" ? 3 : DISPID_UNKNOWN;
    return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override {
    last_flags = flags;
    if (id == DISPID_VALUE) ++default_reads;
    if (id == 3 || fails) return Fail(exception);
    if (id == 2) {
      result->vt = VT_I4;
      result->lVal = params->rgvarg[1].lVal - params->rgvarg[0].lVal;
      return S_OK;
    }
    if (flags == DISPATCH_PROPERTYPUTREF && !takes_putref) return DISP_E_MEMBERNOTFOUND;
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) == 0) {
      return VariantCopy(result, &stored);
    }
    if (params->cNamedArgs != 1 || params->rgdispidNamedArgs[0] != DISPID_PROPERTYPUT)
      return E_FAIL;
    stored = params->rgvarg[0];
    return S_OK;
  }

 private:
  static HRESULT Fail(EXCEPINFO* exception) {
    exception->pfnDeferredFillIn = &FillIn;
    return DISP_E_EXCEPTION;
  }
  static HRESULT STDMETHODCALLTYPE FillIn(EXCEPINFO* info) {
    info->scode = static_cast<SCODE>(0x800A0035);
    info->bstrDescription = SysAllocString(L"File not found");
    info->bstrSource = SysAllocString(L"Host");
    return S_OK;
  }
};

class ForeignObjectTest : public DoorTest {
 protected:
  ComPtr<HostObject> host_ = MakeCom<HostObject>();
  Ref<Object> object_ = ImportObject(host_.get());
  void TearDown() override {
    object_ = {};
    host_ = {};
    DoorTest::TearDown();
  }
};

TEST_F(ForeignObjectTest, IsCalledByName) {
  automation::Put(*object_, u"Value", {Variant(Text(u"text"))});
  EXPECT_EQ(host_->last_flags, DISPATCH_PROPERTYPUT);
  EXPECT_EQ(automation::Get(*object_, u"Value"), Variant(Text(u"text")));
  EXPECT_EQ(automation::Call(*object_, u"Subtract", {Variant(5), Variant(3)}), Variant(2));
}

TEST_F(ForeignObjectTest, ObjectsGoByReferenceWhereTheHostTakesThem) {
  const Ref<Gadget> gadget = automation::Make<Gadget>();
  for (const bool takes_putref : {true, false}) {
    host_->takes_putref = takes_putref;
    automation::Put(*object_, u"Value", {Variant(gadget)});
    EXPECT_EQ(host_->last_flags, takes_putref ? DISPATCH_PROPERTYPUTREF : DISPATCH_PROPERTYPUT);
    EXPECT_EQ(automation::Get(*object_, u"Value"), Variant(gadget));
  }
  host_->stored = Value();
}

TEST_F(ForeignObjectTest, ItsErrorsArriveWithTheirTexts) {
  try {
    automation::Call(*object_, u"Fail");
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.number(), 53);
    EXPECT_EQ(error.description(), u"File not found");
    EXPECT_EQ(error.source(), u"Host");
  }
  EXPECT_THROW(automation::Get(*object_, u"Unknown"), Error);
}

TEST_F(ForeignObjectTest, PassesThroughTheModelUnchanged) {
  const auto gadget = MakeGadget();
  Put(gadget, L"Any", host_, DISPATCH_PROPERTYPUTREF);
  EXPECT_EQ(Get(gadget, L"Any").value.Object().get(), static_cast<IDispatch*>(host_.get()));
}

// As in `step.Label = recordset("Name")`.
TEST_F(ForeignObjectTest, ItsDefaultMemberIsTakenWhereAValueIsWanted) {
  const auto gadget = MakeGadget();
  host_->stored = Value(L"7");
  EXPECT_EQ(Put(gadget, L"Label", host_).code, S_OK);
  EXPECT_EQ(Put(gadget, L"Number", host_).code, S_OK);
  EXPECT_EQ(host_->default_reads, 2);
  EXPECT_EQ(host_->last_flags, DISPATCH_PROPERTYGET | DISPATCH_METHOD);
  EXPECT_EQ(Get(gadget, L"Label").value.Text(), L"7");
  EXPECT_EQ(Get(gadget, L"Number").value.lVal, 7);
  EXPECT_EQ(Call(gadget, L"Join", {host_, L"b"}).value.Text(), L"7,b,c");
  EXPECT_EQ(Put(gadget, L"Label", Get(gadget, L"Font").value).code, S_OK);
  EXPECT_EQ(Get(gadget, L"Label").value.Text(), L"Tahoma");

  // An object of the library has none to read so, and an object is no value.
  EXPECT_EQ(Put(gadget, L"Label", gadget).code, DISP_E_TYPEMISMATCH);
  host_->stored = gadget;
  EXPECT_EQ(Put(gadget, L"Label", host_).code, DISP_E_TYPEMISMATCH);
  host_->stored = Value();
  host_->fails = true;
  const Answer failed = Put(gadget, L"Label", host_);
  EXPECT_EQ(failed.code, DISP_E_EXCEPTION);
  EXPECT_EQ(failed.description, L"File not found");
  host_->fails = false;
}

TEST_F(ForeignObjectTest, IsNamedAfterItsTypeInformation) {
  EXPECT_EQ(object_->TypeName(), "Object");
  const Ref<automation::Font> font = MakeStandardFont();
  const Ref<Object> plain = automation::Make<ForeignObject>(ExportObject(*font).As<IUnknown>());
  EXPECT_EQ(plain->TypeName(), "Font");
}

TEST_F(ForeignObjectTest, EnumerationsOfHostsAreWalked) {
  const auto gadget = MakeGadget();
  const auto parts = Get(gadget, L"Parts").value.Object();
  Call(parts, L"Add", {gadget});
  host_->stored = Invoke(parts, DISPID_NEWENUM, DISPATCH_PROPERTYGET).value;
  const Variant walked = automation::Get(*object_, u"Value");
  Ref<Object> member;
  ASSERT_TRUE(dynamic_cast<Enumerator&>(*walked.ToObject()).Next(member));
  EXPECT_EQ(member.get(), &GadgetOf(gadget));
  // A gadget among its own parts would live for ever.
  dynamic_cast<Gadgets&>(*ImportObject(parts.get())).RemoveAll();
  host_->stored = Value();
}

class FailingEnumeration final : public ComObject<IEnumVARIANT> {
 public:
  STDMETHODIMP Next(ULONG, VARIANT*, ULONG*) override { return RPC_E_DISCONNECTED; }
  STDMETHODIMP Skip(ULONG) override { return E_NOTIMPL; }
  STDMETHODIMP Reset() override { return E_NOTIMPL; }
  STDMETHODIMP Clone(IEnumVARIANT**) override { return E_NOTIMPL; }
};

// Callers read the EXCEPINFO of a call that answers so.
TEST_F(ForeignObjectTest, AnArgumentThatFailsIsAnExceptionWithItsNumber) {
  const auto gadget = MakeGadget();
  Value enumeration;
  enumeration.vt = VT_UNKNOWN;
  enumeration.punkVal = MakeCom<FailingEnumeration>().Detach();
  const Answer answer = Put(gadget, L"Any", enumeration);
  EXPECT_EQ(answer.code, DISP_E_EXCEPTION);
  EXPECT_EQ(answer.scode, RPC_E_DISCONNECTED);
}

TEST_F(ForeignObjectTest, ClassesThatAreNotThereAreNull) {
  EXPECT_FALSE(automation::TryCreateObject(u"VNDoc6NoSuch.Class"));
  const Ref<Object> font = automation::TryCreateObject(u"StdFont");
  EXPECT_TRUE(dynamic_cast<automation::Font*>(font.get()));
}

}  // namespace
}  // namespace vndoc6::com
