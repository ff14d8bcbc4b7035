// The type library in the DLL, read back and compared with the member tables, row by row.
#include <set>

#include "com/variants.h"
#include "published/type_names.h"
#include "tests/windows/server.h"
#include "tests/windows/slots.h"
#include "vndoc6/published/library.h"
#include "vndoc6/published/published.h"
#include "vndoc6/templates/template.h"
#include "vndoc6/titles/titles.h"

namespace vndoc6::com {
namespace {

using namespace automation;

std::string Utf8(BSTR string) { return ToUtf8(BstrText(string)); }

std::string NameOf(ITypeInfo& type) {
  OwnedBstr name;
  type.GetDocumentation(MEMBERID_NIL, name.Receive(), nullptr, nullptr, nullptr);
  return ToUtf8(name.text());
}

// Of a member, or of the type itself.
std::string HelpOf(ITypeInfo& type, MEMBERID member = MEMBERID_NIL) {
  OwnedBstr help;
  type.GetDocumentation(member, nullptr, help.Receive(), nullptr, nullptr);
  return ToUtf8(help.text());
}

// A type of the library as its interface definition writes it.
std::string Written(ITypeInfo& owner, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return Written(owner, *type.lptdesc) + "*";
    case VT_USERDEFINED: {
      ComPtr<ITypeInfo> referenced;
      owner.GetRefTypeInfo(type.hreftype, referenced.Receive());
      return NameOf(*referenced.get());
    }
    case VT_DISPATCH:
      return "IDispatch*";
    case VT_UNKNOWN:
      return "IUnknown*";
    default:
      return "VT " + std::to_string(type.vt);
  }
}

// The same of a type in a member table.
std::string Expected(const TypeInfo& type) {
  const auto vt = [](VARTYPE number) { return "VT " + std::to_string(number); };
  if (type.kind == TypeKind::kVoid) return vt(VT_VOID);
  if (type.kind == TypeKind::kVariant) return vt(VT_VARIANT);
  const VARTYPE plain = PlainType(type.kind);
  return plain != VT_EMPTY && type.kind != TypeKind::kEnum ? vt(plain) : InterfaceTypeName(type);
}

// A type information's function, released when it goes.
class Function {
 public:
  Function(ITypeInfo& type, UINT index) : type_(type) { type.GetFuncDesc(index, &description_); }
  Function(const Function&) = delete;
  Function& operator=(const Function&) = delete;
  ~Function() { type_.ReleaseFuncDesc(description_); }
  const FUNCDESC* operator->() const { return description_; }

  // The function's own name, then those of its parameters.
  std::vector<std::string> Names() const {
    BSTR names[16] = {};
    UINT count = 0;
    type_.GetNames(description_->memid, names, 16, &count);
    std::vector<std::string> read;
    for (UINT i = 0; i < count; ++i) {
      read.push_back(Utf8(names[i]));
      SysFreeString(names[i]);
    }
    return read;
  }
  std::string Help() const { return HelpOf(type_, description_->memid); }

 private:
  ITypeInfo& type_;
  FUNCDESC* description_ = nullptr;
};

TYPEATTR AttributesOf(ITypeInfo& type) {
  TYPEATTR* attributes = nullptr;
  type.GetTypeAttr(&attributes);
  const TYPEATTR copy = *attributes;
  type.ReleaseTypeAttr(attributes);
  return copy;
}

INVOKEKIND InvokeKindOf(CallKind kind) { return static_cast<INVOKEKIND>(static_cast<int>(kind)); }

class TypeLibraryTest : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    ASSERT_EQ(LoadTypeLibEx(AsWide(Server::Path()), REGKIND_NONE, library_.Receive()), S_OK);
  }
  void TearDown() override {
    library_ = {};
    ServerTest::TearDown();
  }
  ComPtr<ITypeInfo> Find(const Guid& guid) {
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(library_->GetTypeInfoOfGuid(ToIid(guid), type.Receive()), S_OK);
    return type;
  }
  ComPtr<ITypeLib> library_;
};

TEST_F(TypeLibraryTest, IsTheLibraryOfThisVersion) {
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library_->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, ToIid(kLibraryId));
  EXPECT_EQ(attributes->wMajorVerNum, kLibraryMajorVersion);
  EXPECT_EQ(attributes->wMinorVerNum, kLibraryMinorVersion);
  EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
  library_->ReleaseTLibAttr(attributes);
  OwnedBstr name;
  library_->GetDocumentation(-1, name.Receive(), nullptr, nullptr, nullptr);
  EXPECT_EQ(name.text(), u"VNDoc6");
}

void ExpectParameters(ITypeInfo& type, const Function& function, const MemberInfo& member) {
  const bool gives = member.result.kind != TypeKind::kVoid;
  ASSERT_EQ(static_cast<size_t>(function->cParams), member.parameters.size() + (gives ? 1 : 0));
  for (size_t i = 0; i < member.parameters.size(); ++i) {
    const ParameterInfo& parameter = member.parameters[i];
    const ELEMDESC& found = function->lprgelemdescParam[i];
    EXPECT_EQ(Written(type, found.tdesc),
              Expected(parameter.type) + (parameter.by_reference ? "*" : ""));
    EXPECT_EQ((found.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0, parameter.optional);
    if (!parameter.optional) continue;
    ASSERT_TRUE(found.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT);
    EXPECT_EQ(ReadVariant(found.paramdesc.pparamdescex->varDefaultValue), parameter.default_value);
  }
  if (!gives) return;
  const ELEMDESC& result = function->lprgelemdescParam[member.parameters.size()];
  EXPECT_EQ(Written(type, result.tdesc), Expected(member.result) + "*");
  EXPECT_EQ(result.paramdesc.wParamFlags, PARAMFLAG_FOUT | PARAMFLAG_FRETVAL);
}

// Names and help belong to the identifier: the rows of a property share those of its first one.
void ExpectNames(ITypeInfo& type, size_t row, const MemberInfo& member) {
  const Function function(type, static_cast<UINT>(row));
  std::vector<std::string> names{member.name};
  for (const ParameterInfo& parameter : member.parameters) names.push_back(parameter.name);
  const bool put = Allows(CallKind::kPut | CallKind::kPutRef, member.kind);
  if (put) names.pop_back();
  if (member.result.kind != TypeKind::kVoid) names.push_back("result");
  EXPECT_EQ(function.Names(), names);
  EXPECT_NE(function.Help(), "");
}

void ExpectMember(ITypeInfo& type, size_t row, const MemberInfo& member) {
  const Function function(type, static_cast<UINT>(row));
  EXPECT_EQ(function->memid, member.id);
  EXPECT_EQ(function->invkind, InvokeKindOf(member.kind));
  EXPECT_EQ(static_cast<size_t>(function->oVft), (7 + row) * sizeof(void*));
  EXPECT_EQ((function->wFuncFlags & FUNCFLAG_FHIDDEN) != 0, member.hidden);
  EXPECT_EQ(function->callconv, CC_STDCALL);
  EXPECT_EQ(function.Names().front(), member.name);
  ExpectParameters(type, function, member);
}

TEST_F(TypeLibraryTest, EveryInterfaceHasItsTablesRowsAsSlots) {
  for (const PublishedClass& published : PublishedClasses()) {
    const ClassInfo& info = published.info();
    const ComPtr<ITypeInfo> dispatch = Find(info.interface_id());
    ASSERT_TRUE(dispatch) << info.name();
    EXPECT_EQ(NameOf(*dispatch.get()), DefaultInterfaceName(info));
    EXPECT_EQ(HelpOf(*dispatch.get()), info.help());
    const ComPtr<ITypeInfo> type = SlotsOf(*dispatch.get());
    ASSERT_TRUE(type);
    const TYPEATTR attributes = AttributesOf(*type.get());
    EXPECT_EQ(attributes.wTypeFlags, TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION |
                                         TYPEFLAG_FDISPATCHABLE | TYPEFLAG_FNONEXTENSIBLE);
    ASSERT_EQ(attributes.cFuncs, info.members().size()) << info.name();
    std::set<int32_t> named;
    for (size_t row = 0; row < info.members().size(); ++row) {
      SCOPED_TRACE(std::string(info.name()) + "." + info.members()[row].name);
      const MemberInfo& member = info.members()[row];
      ExpectMember(*type.get(), row, member);
      if (named.insert(member.id).second) ExpectNames(*type.get(), row, member);
    }
  }
}

TEST_F(TypeLibraryTest, EveryClassNamesItsInterfaces) {
  for (const PublishedClass& published : PublishedClasses()) {
    const ClassInfo& info = published.info();
    SCOPED_TRACE(info.name());
    const ComPtr<ITypeInfo> type = Find(info.class_id());
    EXPECT_EQ(NameOf(*type.get()), info.name());
    EXPECT_EQ(HelpOf(*type.get()), info.help());
    const TYPEATTR attributes = AttributesOf(*type.get());
    EXPECT_EQ(attributes.typekind, TKIND_COCLASS);
    EXPECT_TRUE(attributes.wTypeFlags & TYPEFLAG_FCANCREATE);
    std::set<std::pair<std::string, int>> found, expected;
    for (UINT i = 0; i < attributes.cImplTypes; ++i) {
      HREFTYPE reference = 0;
      INT flags = 0;
      ComPtr<ITypeInfo> implemented;
      type->GetRefTypeOfImplType(i, &reference);
      type->GetImplTypeFlags(i, &flags);
      type->GetRefTypeInfo(reference, implemented.Receive());
      found.insert({NameOf(*implemented.get()), flags});
    }
    expected.insert({DefaultInterfaceName(info), IMPLTYPEFLAG_FDEFAULT});
    if (published.events != nullptr) {
      expected.insert({published.events().name, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE});
    }
    EXPECT_EQ(found, expected);
  }
}

TEST_F(TypeLibraryTest, EventInterfacesHaveTheirTablesRows) {
  for (const PublishedClass& published : PublishedClasses()) {
    if (published.events == nullptr) continue;
    const EventInterfaceInfo& info = published.events();
    const ComPtr<ITypeInfo> type = Find(info.id);
    EXPECT_EQ(NameOf(*type.get()), info.name);
    ASSERT_EQ(AttributesOf(*type.get()).cFuncs, info.events.size());
    for (size_t i = 0; i < info.events.size(); ++i) {
      const EventInfo& event = info.events[i];
      SCOPED_TRACE(event.name);
      const Function function(*type.get(), static_cast<UINT>(i));
      EXPECT_EQ(function->memid, event.id);
      EXPECT_NE(function.Help(), "");
      std::vector<std::string> names{event.name};
      ASSERT_EQ(static_cast<size_t>(function->cParams), event.parameters.size());
      for (size_t j = 0; j < event.parameters.size(); ++j) {
        const EventParameter& parameter = event.parameters[j];
        names.push_back(parameter.name);
        EXPECT_EQ(Written(*type.get(), function->lprgelemdescParam[j].tdesc),
                  Expected(parameter.type) + (parameter.by_reference ? "*" : ""));
      }
      EXPECT_EQ(function.Names(), names);
    }
  }
}

TEST_F(TypeLibraryTest, EnumerationsHaveEveryValue) {
  for (const EnumInfo* info : PublishedEnums()) {
    const ComPtr<ITypeInfo> type = Find(info->id);
    EXPECT_EQ(NameOf(*type.get()), info->name);
    EXPECT_EQ(HelpOf(*type.get()), info->help);
    ASSERT_EQ(AttributesOf(*type.get()).cVars, info->values.size());
    for (size_t i = 0; i < info->values.size(); ++i) {
      VARDESC* variable = nullptr;
      ASSERT_EQ(type->GetVarDesc(static_cast<UINT>(i), &variable), S_OK);
      OwnedBstr name;
      type->GetDocumentation(variable->memid, name.Receive(), nullptr, nullptr, nullptr);
      EXPECT_EQ(ToUtf8(name.text()), info->values[i].name);
      EXPECT_EQ(variable->lpvarValue->lVal, info->values[i].value);
      type->ReleaseVarDesc(variable);
    }
  }
}

// What object browsers show: the first sentence of the comment in the class's header.
TEST_F(TypeLibraryTest, HelpIsAMembersFirstSentence) {
  const ComPtr<ITypeInfo> templates = Find(vnTemplates::classInfo().interface_id());
  EXPECT_EQ(HelpOf(*templates.get(), kDefaultMember),
            "The template at a 1-based position (a number), or with an ID (\"3\") or a key "
            "(\"fig3\"); Nothing when there is none.");
  const ComPtr<ITypeInfo> title = Find(vnTitle::classInfo().interface_id());
  const int32_t description = vnTitle::classInfo().FindMember(u"Description");
  EXPECT_EQ(HelpOf(*title.get(), description), "What the role or person does; free text.");
}

TEST_F(TypeLibraryTest, ObjectsTellTheirTypes) {
  const auto document = server_.Create("vnDocument");
  ComPtr<ITypeInfo> type;
  ASSERT_EQ(document->GetTypeInfo(0, 0, type.Receive()), S_OK);
  EXPECT_EQ(NameOf(*type.get()), "_vnDocument");
  ASSERT_EQ(document.As<IProvideClassInfo>()->GetClassInfo(type.Receive()), S_OK);
  EXPECT_EQ(NameOf(*type.get()), "vnDocument");
  UINT count = 0;
  EXPECT_EQ(document->GetTypeInfoCount(&count), S_OK);
  EXPECT_EQ(count, 1u);
  EXPECT_EQ(document->GetTypeInfo(1, 0, type.Receive()), DISP_E_BADINDEX);
}

}  // namespace
}  // namespace vndoc6::com
