#include "manifest_writer.h"

#include "guid_text.h"
#include "vndoc6/published/library.h"
#include "vndoc6/published/published.h"

namespace vndoc6 {
namespace {

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + value + "\"";
}

std::string Identifier(const char* name, const std::string& guid) {
  return Attribute(name, "{" + guid + "}");
}

std::string Interface(const std::string& name, const automation::Guid& id,
                      const automation::Guid& marshaller) {
  return "  <comInterfaceExternalProxyStub" + Attribute("name", name) +
         Identifier("iid", GuidText(id)) + Identifier("proxyStubClsid32", GuidText(marshaller)) +
         Identifier("tlbid", GuidText(kLibraryId)) + "/>\n";
}

std::string Class(const automation::ClassInfo& info) {
  return "    <comClass" + Identifier("clsid", GuidText(info.class_id())) +
         Attribute("progid", ProgrammaticId(info)) + Attribute("threadingModel", "Apartment") +
         Identifier("tlbid", GuidText(kLibraryId)) + "/>\n";
}

}  // namespace

std::string WriteManifest() {
  const std::string version =
      std::to_string(kLibraryMajorVersion) + "." + std::to_string(kLibraryMinorVersion);
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      "<!-- Use of VNDoc6.dll without registration: name this assembly as a dependency in your\n"
      "     program's manifest. Written by the program vndoc6_idl; don't edit it. -->\n"
      "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      "  <assemblyIdentity type=\"win32\" name=\"VNDoc6\" version=\"" +
      version + ".0.0\"/>\n  <file name=\"VNDoc6.dll\">\n";
  for (const PublishedClass& published : PublishedClasses()) text += Class(published.info());
  text += "    <typelib" + Identifier("tlbid", GuidText(kLibraryId)) +
          Attribute("version", version) + Attribute("helpdir", "") + "/>\n  </file>\n";
  for (const PublishedClass& published : PublishedClasses()) {
    const automation::ClassInfo& info = published.info();
    text += Interface(DefaultInterfaceName(info), info.interface_id(), kDualMarshaller);
    if (published.events == nullptr) continue;
    text += Interface(published.events().name, published.events().id, kDispatchMarshaller);
  }
  return text + "</assembly>\n";
}

}  // namespace vndoc6
