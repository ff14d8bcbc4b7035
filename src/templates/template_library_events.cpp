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
  using Events = TemplateLibraryListener;
  static const automation::EventInterfaceInfo info{
      "__vnTemplateLibrary",
      "What a template library tells of loading, saving and changes.",
      {0x1703A180, 0x3232, 0x4B4F, {0x9C, 0x32, 0xD4, 0xB7, 0xB5, 0x69, 0xCD, 0x09}},
      {
          event<&Events::Loading>(1, "Loading", "eiPercent"),
          event<&Events::LoadComplete>(2, "LoadComplete"),
          event<&Events::LoadFailed>(3, "LoadFailed", "elFailCode"),
          event<&Events::Saving>(4, "Saving", "eiPercent"),
          event<&Events::SaveComplete>(5, "SaveComplete"),
          event<&Events::SaveFailed>(6, "SaveFailed", "elFailCode"),
          ChangeEvent<&Events::ReportTemplateChange>(7, "ReportTemplateChange"),
          ChangeEvent<&Events::FigureTemplateChange>(8, "FigureTemplateChange"),
          ChangeEvent<&Events::RevisionTemplateChange>(9, "RevisionTemplateChange"),
          ChangeEvent<&Events::FileTemplateChange>(10, "FileTemplateChange"),
          ChangeEvent<&Events::JumpTemplateChange>(11, "JumpTemplateChange"),
      }};
  return info;
}

}  // namespace vndoc6
