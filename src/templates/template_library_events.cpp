#include "vndoc6/templates/template_library_events.h"

#include "schema/event_rows.h"
#include "vndoc6/templates/template.h"

namespace vndoc6 {
namespace {

template <auto kEvent>
automation::EventInfo ChangeEvent(int32_t id, const char* name) {
  return schema::event<kEvent>(id, name, "eoTemplate", "elEventType", "elDetailID");
}

}  // namespace

const automation::EventInterfaceInfo& TemplateLibraryEvents() {
  using schema::event;
  using Listener = TemplateLibraryListener;
  static const automation::EventInterfaceInfo info{
      "__vnTemplateLibrary",
      "What a template library tells of loading, saving and changes.",
      {0x1703A180, 0x3232, 0x4B4F, {0x9C, 0x32, 0xD4, 0xB7, 0xB5, 0x69, 0xCD, 0x09}},
      {
          event<&Listener::Loading>(1, "Loading", "eiPercent"),
          event<&Listener::LoadComplete>(2, "LoadComplete"),
          event<&Listener::LoadFailed>(3, "LoadFailed", "elFailCode"),
          event<&Listener::Saving>(4, "Saving", "eiPercent"),
          event<&Listener::SaveComplete>(5, "SaveComplete"),
          event<&Listener::SaveFailed>(6, "SaveFailed", "elFailCode"),
          ChangeEvent<&Listener::ReportTemplateChange>(7, "ReportTemplateChange"),
          ChangeEvent<&Listener::FigureTemplateChange>(8, "FigureTemplateChange"),
          ChangeEvent<&Listener::RevisionTemplateChange>(9, "RevisionTemplateChange"),
          ChangeEvent<&Listener::FileTemplateChange>(10, "FileTemplateChange"),
          ChangeEvent<&Listener::JumpTemplateChange>(11, "JumpTemplateChange"),
      }};
  return info;
}

}  // namespace vndoc6
