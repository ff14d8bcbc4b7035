#include "idl_writer.h"

#include "guid_text.h"
#include "published/type_names.h"
#include "vndoc6/published/library.h"
#include "vndoc6/published/published.h"

namespace vndoc6 {
namespace {

using namespace automation;

constexpr const char* kBanner =
    "// The published automation interface of VNDoc6.\n"
    "// Written by the program vndoc6_idl from the member tables of the classes; don't edit it.\n";

std::string HelpAttribute(std::string_view help) {
  return help.empty() ? std::string() : ", helpstring(" + Quoted(help) + ")";
}

std::string DefaultText(const Variant& value) {
  return value.IsText() ? Quoted(ToUtf8(*value.If<Text>())) : ToUtf8(value.ToText());
}

std::string ParameterText(const ParameterInfo& parameter) {
  std::string text = "[in";
  if (parameter.optional) {
    text += ", optional, defaultvalue(" + DefaultText(parameter.default_value) + ")";
  }
  text += "] " + InterfaceTypeName(parameter.type) + (parameter.by_reference ? "* " : " ");
  return text + parameter.name;
}

std::string MemberText(const MemberInfo& member, const std::string& help) {
  std::string text = "    [id(" + std::to_string(member.id) + ")";
  if (member.kind == CallKind::kGet) text += ", propget";
  if (member.kind == CallKind::kPut) text += ", propput";
  if (member.kind == CallKind::kPutRef) text += ", propputref";
  if (member.hidden) text += ", hidden";
  text += HelpAttribute(help) + "]\n    HRESULT " + member.name + "(";
  const char* separator = "";
  for (const ParameterInfo& parameter : member.parameters) {
    text += separator + ParameterText(parameter);
    separator = ", ";
  }
  if (member.result.kind != TypeKind::kVoid) {
    text += separator + ("[out, retval] " + InterfaceTypeName(member.result)) + "* result";
  }
  return text + ");\n";
}

std::string InterfaceText(const ClassInfo& info, const DocComments& comments) {
  std::string text = "\n  [object, uuid(" + GuidText(info.interface_id()) +
                     "), dual, oleautomation, nonextensible, pointer_default(unique)" +
                     HelpAttribute(info.help()) + "]\n  interface " + DefaultInterfaceName(info) +
                     " : IDispatch {\n";
  for (const MemberInfo& member : info.members()) {
    text += MemberText(member, FirstSentence(comments.OfRow(info, member)));
  }
  return text + "  };\n";
}

std::string EventText(const EventInfo& event, const std::string& help) {
  std::string text = "    [id(" + std::to_string(event.id) + ")" + HelpAttribute(help) + "] void " +
                     event.name + "(";
  const char* separator = "";
  for (const EventParameter& parameter : event.parameters) {
    text += separator + std::string(parameter.by_reference ? "[in, out] " : "[in] ") +
            InterfaceTypeName(parameter.type) + (parameter.by_reference ? "* " : " ") +
            parameter.name;
    separator = ", ";
  }
  return text + ");\n";
}

std::string EventsText(const EventInterfaceInfo& info, const DocComments& comments) {
  std::string text = "\n  [uuid(" + GuidText(info.id) + ")" + HelpAttribute(info.help) +
                     "]\n  dispinterface " + info.name + " {\n  properties:\n  methods:\n";
  for (const EventInfo& event : info.events) {
    text += EventText(event, FirstSentence(comments.OfEvent(info.name, event.name)));
  }
  return text + "  };\n";
}

std::string EnumText(const EnumInfo& info) {
  std::string text = "\n  typedef [uuid(" + GuidText(info.id) + ")" + HelpAttribute(info.help) +
                     "]\n  enum " + info.name + " {\n";
  const char* separator = "";
  for (const EnumValue& value : info.values) {
    text += separator + ("    " + std::string(value.name)) + " = " + std::to_string(value.value);
    separator = ",\n";
  }
  return text + "\n  } " + info.name + ";\n";
}

std::string ClassText(const PublishedClass& published) {
  const ClassInfo& info = published.info();
  std::string text = "\n  [uuid(" + GuidText(info.class_id()) + ")" + HelpAttribute(info.help()) +
                     "]\n  coclass " + std::string(info.name()) + " {\n    [default] interface " +
                     DefaultInterfaceName(info) + ";\n";
  if (published.events != nullptr) {
    text += "    [default, source] dispinterface " + std::string(published.events().name) + ";\n";
  }
  return text + "  };\n";
}

}  // namespace

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char unit : text) {
    if (unit == '"' || unit == '\\') quoted += '\\';
    quoted += unit;
  }
  return quoted + '"';
}

std::string WriteIdl(const DocComments& comments) {
  std::string text = kBanner;
  text += "\nimport \"oaidl.idl\";\nimport \"ocidl.idl\";\n\n[uuid(" + GuidText(kLibraryId) +
          "), version(" + std::to_string(kLibraryMajorVersion) + "." +
          std::to_string(kLibraryMinorVersion) + ")" + HelpAttribute(kLibraryHelp) + "]\nlibrary " +
          kLibraryName + " {\n  importlib(\"stdole2.tlb\");\n\n";
  for (const PublishedClass& published : PublishedClasses()) {
    text += "  interface " + DefaultInterfaceName(published.info()) + ";\n";
  }
  for (const EnumInfo* info : PublishedEnums()) text += EnumText(*info);
  for (const PublishedClass& published : PublishedClasses()) {
    text += InterfaceText(published.info(), comments);
  }
  for (const PublishedClass& published : PublishedClasses()) {
    if (published.events != nullptr) text += EventsText(published.events(), comments);
  }
  for (const PublishedClass& published : PublishedClasses()) text += ClassText(published);
  return text + "}\n";
}

}  // namespace vndoc6
