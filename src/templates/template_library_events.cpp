#include "templates/template_library_events.h"

#include "templates/template.h"

namespace vndoc6 {
namespace {

// Dispatch identifiers. Published: never change one.
enum EventId : int32_t {
  kLoading = 1,
  kLoadComplete = 2,
  kLoadFailed = 3,
  kSaving = 4,
  kSaveComplete = 5,
  kSaveFailed = 6,
  kReportTemplateChange = 7,
  kFigureTemplateChange = 8,
  kRevisionTemplateChange = 9,
  kFileTemplateChange = 10,
  kJumpTemplateChange = 11,
};

template <auto kEvent>
automation::EventInfo ChangeEvent(int32_t id, const char* name) {
  return automation::event<kEvent>(id, name, "eoTemplate", "elEventType", "elDetailID");
}

template <class... Args>
void Forward(automation::EventSink& sink, int32_t id, Args&... args) {
  automation::ForwardEvent(sink, TemplateLibraryEvents().Find(id), args...);
}

}  // namespace

const automation::EventInterfaceInfo& TemplateLibraryEvents() {
  using automation::event;
  using Listener = TemplateLibraryListener;
  static const automation::EventInterfaceInfo info{
      "__vnTemplateLibrary",
      "What a template library tells of loading, saving and changes.",
      {0x1703A180, 0x3232, 0x4B4F, {0x9C, 0x32, 0xD4, 0xB7, 0xB5, 0x69, 0xCD, 0x09}},
      {
          event<&Listener::Loading>(kLoading, "Loading", "eiPercent"),
          event<&Listener::LoadComplete>(kLoadComplete, "LoadComplete"),
          event<&Listener::LoadFailed>(kLoadFailed, "LoadFailed", "elFailCode"),
          event<&Listener::Saving>(kSaving, "Saving", "eiPercent"),
          event<&Listener::SaveComplete>(kSaveComplete, "SaveComplete"),
          event<&Listener::SaveFailed>(kSaveFailed, "SaveFailed", "elFailCode"),
          ChangeEvent<&Listener::ReportTemplateChange>(kReportTemplateChange,
                                                       "ReportTemplateChange"),
          ChangeEvent<&Listener::FigureTemplateChange>(kFigureTemplateChange,
                                                       "FigureTemplateChange"),
          ChangeEvent<&Listener::RevisionTemplateChange>(kRevisionTemplateChange,
                                                         "RevisionTemplateChange"),
          ChangeEvent<&Listener::FileTemplateChange>(kFileTemplateChange, "FileTemplateChange"),
          ChangeEvent<&Listener::JumpTemplateChange>(kJumpTemplateChange, "JumpTemplateChange"),
      }};
  return info;
}

void TemplateLibraryEventForwarder::Loading(int16_t eiPercent) {
  Forward(sink_, kLoading, eiPercent);
}

void TemplateLibraryEventForwarder::LoadComplete() { Forward(sink_, kLoadComplete); }

void TemplateLibraryEventForwarder::LoadFailed(int32_t elFailCode) {
  Forward(sink_, kLoadFailed, elFailCode);
}

void TemplateLibraryEventForwarder::Saving(int16_t eiPercent) {
  Forward(sink_, kSaving, eiPercent);
}

void TemplateLibraryEventForwarder::SaveComplete() { Forward(sink_, kSaveComplete); }

void TemplateLibraryEventForwarder::SaveFailed(int32_t elFailCode) {
  Forward(sink_, kSaveFailed, elFailCode);
}

void TemplateLibraryEventForwarder::ReportTemplateChange(vnTemplate& eoTemplate,
                                                         EnumVantrelChangeEvent elEventType,
                                                         int32_t elDetailID) {
  Forward(sink_, kReportTemplateChange, eoTemplate, elEventType, elDetailID);
}

void TemplateLibraryEventForwarder::FigureTemplateChange(vnTemplate& eoTemplate,
                                                         EnumVantrelChangeEvent elEventType,
                                                         int32_t elDetailID) {
  Forward(sink_, kFigureTemplateChange, eoTemplate, elEventType, elDetailID);
}

void TemplateLibraryEventForwarder::RevisionTemplateChange(vnTemplate& eoTemplate,
                                                           EnumVantrelChangeEvent elEventType,
                                                           int32_t elDetailID) {
  Forward(sink_, kRevisionTemplateChange, eoTemplate, elEventType, elDetailID);
}

void TemplateLibraryEventForwarder::FileTemplateChange(vnTemplate& eoTemplate,
                                                       EnumVantrelChangeEvent elEventType,
                                                       int32_t elDetailID) {
  Forward(sink_, kFileTemplateChange, eoTemplate, elEventType, elDetailID);
}

void TemplateLibraryEventForwarder::JumpTemplateChange(vnTemplate& eoTemplate,
                                                       EnumVantrelChangeEvent elEventType,
                                                       int32_t elDetailID) {
  Forward(sink_, kJumpTemplateChange, eoTemplate, elEventType, elDetailID);
}

}  // namespace vndoc6
