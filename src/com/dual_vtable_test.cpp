#include "com/dual_vtable.h"

#include <filesystem>
#include <regex>

#include "com/host_for_tests.h"
#include "com/variants.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/published/published.h"
#include "vndoc6/templates/template.h"

namespace vndoc6::com {
namespace {

using automation::CallKind;
using automation::MemberInfo;
using automation::ParameterInfo;
using automation::TypeInfo;
using automation::TypeKind;

constexpr size_t kDispatchSlots = 7;

VARTYPE VarTypeOf(const TypeInfo& type) {
  if (type.kind == TypeKind::kEnumerator) return VT_UNKNOWN;
  const VARTYPE plain = PlainType(type.kind);
  return plain != VT_EMPTY ? plain : VARTYPE{VT_DISPATCH};
}

// A value that any member of the type takes.
Value Sample(const TypeInfo& type) {
  Value sample(type.kind == TypeKind::kEnum ? 1 : 7);
  if (type.kind == TypeKind::kText) return L"7";
  if (type.kind == TypeKind::kVariant) return sample;
  Value converted;
  if (VarTypeOf(type) == VT_DISPATCH) {
    converted.vt = VT_DISPATCH;
    return converted;
  }
  VariantChangeType(&converted, &sample, 0, VarTypeOf(type));
  return converted;
}

// Calls the member through its slot, as a host compiled from the published contract does.
HRESULT CallSlot(IDispatch* object, size_t slot, const MemberInfo& member,
                 std::vector<Value> arguments, Value* result) {
  std::vector<VARTYPE> types;
  std::vector<VARIANTARG*> passed;
  std::vector<Value> references(arguments.size());
  for (size_t i = 0; i < arguments.size(); ++i) {
    const ParameterInfo& parameter = member.parameters[i];
    const bool variant = parameter.type.kind == TypeKind::kVariant;
    if (parameter.by_reference) {
      references[i] = Value::Reference(arguments[i]);
      types.push_back(VT_BYREF | VT_VARIANT);
      passed.push_back(&references[i]);
    } else {
      types.push_back(variant ? static_cast<VARTYPE>(VT_VARIANT) : VarTypeOf(parameter.type));
      passed.push_back(&arguments[i]);
    }
  }
  Value out;
  if (member.result.kind != TypeKind::kVoid) {
    const bool variant = member.result.kind == TypeKind::kVariant;
    if (!variant) result->vt = VarTypeOf(member.result);
    out = variant ? Value::Reference(*result) : Value::Reference(result->vt, &result->byref);
    types.push_back(out.vt);
    passed.push_back(&out);
  }
  Value code;
  EXPECT_EQ(DispCallFunc(object, slot * sizeof(void*), CC_STDCALL, VT_ERROR,
                         static_cast<UINT>(types.size()), types.data(), passed.data(), &code),
            S_OK);
  return code.scode;
}

// A value as text, with every generated key, which differs from object to object, as "{}".
std::string Written(const Value& value) {
  static const std::regex key("\\{[0-9A-F-]{36}\\}");
  const Variant read = ReadVariant(value);
  const std::string type(read.TypeName());
  if (read.IsObject() || read.IsEmpty()) return type;
  return type + " " + std::regex_replace(automation::ToUtf8(read.ToText()), key, "{}");
}

class DualVtableTest : public DoorTest {
 protected:
  // Both ways of one call, as text: what they gave or how they failed.
  static void ExpectTwins(const ClassInfo& info, size_t row) {
    const MemberInfo& member = info.members()[row];
    const auto early = ExportObject(*info.Create()), late = ExportObject(*info.Create());
    std::vector<Value> arguments;
    for (const ParameterInfo& parameter : member.parameters) {
      arguments.push_back(Sample(parameter.type));
    }
    Value result;
    const HRESULT code = CallSlot(early.get(), kDispatchSlots + row, member, arguments, &result);
    const bool put = Allows(CallKind::kPut | CallKind::kPutRef, member.kind);
    std::vector<std::pair<DISPID, Value>> named;
    if (put) {
      named.push_back({DISPID_PROPERTYPUT, arguments.back()});
      arguments.pop_back();
    }
    const Answer answer = Invoke(late, member.id, static_cast<WORD>(member.kind), arguments, named);
    EXPECT_EQ(code, answer.code == DISP_E_EXCEPTION ? answer.scode : answer.code);
    if (FAILED(code)) return;
    EXPECT_EQ(Written(result), Written(answer.value));
    // A put is seen by its get.
    if (put && arguments.empty()) {
      EXPECT_EQ(Written(Invoke(early, member.id, DISPATCH_PROPERTYGET).value),
                Written(Invoke(late, member.id, DISPATCH_PROPERTYGET).value));
    }
  }
};

// Members that write a file get "7" for its name; that goes where the test can clear it away.
class WorkingFolder {
 public:
  WorkingFolder() { std::filesystem::current_path(folder_.path()); }
  ~WorkingFolder() { std::filesystem::current_path(before_); }

 private:
  const std::filesystem::path before_ = std::filesystem::current_path();
  const vndoc6::testing::TemporaryFolder folder_;
};

TEST_F(DualVtableTest, EverySlotDoesWhatTheLateBoundCallDoes) {
  const WorkingFolder folder;
  for (const PublishedClass& published : PublishedClasses()) {
    const ClassInfo& info = published.info();
    for (size_t row = 0; row < info.members().size(); ++row) {
      SCOPED_TRACE(std::string(info.name()) + "." + info.members()[row].name + ", row " +
                   std::to_string(row));
      ExpectTwins(info, row);
    }
  }
}

// A value that the library does not know is an odd argument like any other, and kept by nobody.
TEST_F(DualVtableTest, AnArrayNamesNoMember) {
  Value array;
  array.vt = VT_ARRAY | VT_VARIANT;
  for (const PublishedClass& published : PublishedClasses()) {
    const ClassInfo& info = published.info();
    const auto object = ExportObject(*info.Create());
    for (size_t row = 0; row < info.members().size(); ++row) {
      const MemberInfo& member = info.members()[row];
      const std::string_view name = member.name;
      if (name != "Item" && name != "Remove") continue;
      if (member.parameters[0].type.kind != TypeKind::kVariant) continue;
      SCOPED_TRACE(std::string(info.name()) + "." + member.name);
      const Answer late = Invoke(object, member.id, static_cast<WORD>(member.kind), {array});
      EXPECT_EQ(late.code, S_OK);
      EXPECT_FALSE(late.value.Object());
      Value early;
      EXPECT_EQ(CallSlot(object.get(), kDispatchSlots + row, member, {array}, &early), S_OK);
      EXPECT_FALSE(early.Object());
    }
  }
  const auto bag = ExportObject(*automation::Make<Properties>());
  EXPECT_EQ(Call(bag, L"Add", {L"k", array}).scode, static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(Call(bag, L"Value", {L"k", array}).scode, static_cast<HRESULT>(0x800A000D));
  EXPECT_EQ(Get(bag, L"Count").value.lVal, 0);
  const auto figure_template = ExportObject(*automation::Make<vnTemplate>());
  EXPECT_EQ(Put(figure_template, L"TagVariant", array).scode, static_cast<HRESULT>(0x800A000D));
}

TEST_F(DualVtableTest, ErrorsOfSlotsCarryTheirTexts) {
  const auto gadget = MakeGadget();
  const auto members = Gadget::classInfo().members();
  const auto slot = [&](const char* name) {
    size_t row = 0;
    while (std::string_view(members[row].name) != name) ++row;
    return row;
  };
  const size_t fail = slot("Fail");
  EXPECT_EQ(CallSlot(gadget.get(), kDispatchSlots + fail, members[fail], {2199}, nullptr),
            static_cast<HRESULT>(0x800A0000 + 2199));
  ComPtr<IErrorInfo> error;
  ASSERT_EQ(GetErrorInfo(0, error.Receive()), S_OK);
  OwnedBstr description, source;
  error->GetDescription(description.Receive());
  error->GetSource(source.Receive());
  EXPECT_EQ(description.text(), u"It failed.");
  EXPECT_EQ(source.text(), u"Gadget.Fail");

  // An object of another class.
  const size_t partner = slot("Partner") + 1;
  const auto parts = Get(gadget, L"Parts").value;
  EXPECT_EQ(CallSlot(gadget.get(), kDispatchSlots + partner, members[partner], {parts}, nullptr),
            static_cast<HRESULT>(0x800A000D));
  ComPtr<IErrorInfo> left;
  GetErrorInfo(0, left.Receive());
}

TEST_F(DualVtableTest, ResultsAreClearedAndRequired) {
  const auto gadget = MakeGadget();
  using GetLabel = HRESULT(STDMETHODCALLTYPE*)(IDispatch*, BSTR*);
  const auto* const table = *reinterpret_cast<const void* const* const*>(gadget.get());
  const auto get_label = reinterpret_cast<GetLabel>(const_cast<void*>(table[kDispatchSlots + 2]));
  ComPtr<ICreateErrorInfo> earlier;
  CreateErrorInfo(earlier.Receive());
  SetErrorInfo(0, earlier.As<IErrorInfo>().get());
  EXPECT_EQ(get_label(gadget.get(), nullptr), E_POINTER);
  ComPtr<IErrorInfo> left;
  EXPECT_EQ(GetErrorInfo(0, left.Receive()), S_FALSE);
  OwnedBstr label;
  EXPECT_EQ(get_label(gadget.get(), label.Receive()), S_OK);
  EXPECT_EQ(label.text(), u"");
}

}  // namespace
}  // namespace vndoc6::com
