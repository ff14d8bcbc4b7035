// vnTemplateLibrary: the texts that hosts reuse, in five lists, with a file of their own. Hosts
// create it beside documents; it depends on none.
#pragma once

#include <array>
#include <memory>

#include "vndoc6/automation/event_info.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/templates/template.h"
#include "vndoc6/templates/template_library_events.h"

namespace vndoc6 {

class vnTemplateLibrary : public automation::Object,
                          public automation::EventSource,
                          public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnTemplateLibrary();
  ~vnTemplateLibrary() override;

  // Saves under FileName. Gives False in every case: hosts learn of success from SaveComplete.
  // SaveFailed(1) without a file name; error 75 when the file can't be written.
  bool Save();
  // Saves under a file name, which becomes FileName; the outcome is that of Save. When the file
  // can't be written, FileName stays as it was.
  bool SaveAs(const Text& psFileName);
  // Loads a file, once for each library. True and LoadComplete, or False and LoadFailed: 1 no file
  // name, 2 the library has a file already, 3 no such file. Error 75 when the file can't be read or
  // its text is damaged; then nothing is loaded and another file may be.
  bool Load(const Text& psFileName);
  // The file that the library is in; empty until the first successful Load or SaveAs.
  const Text& FileName() const { return file_name_; }

  // The templates for reports.
  automation::Ref<vnTemplates> ReportTemplates() const { return List(kReport); }
  // Whether the templates that a load adds are reported; off by default.
  bool ChangeEventsLoading() const { return change_events_loading_; }
  void SetChangeEventsLoading(bool pbChangeEventsLoading) {
    change_events_loading_ = pbChangeEventsLoading;
  }
  // The templates for figures.
  automation::Ref<vnTemplates> FigureTemplates() const { return List(kFigure); }
  // The templates for the reasons of revisions.
  automation::Ref<vnTemplates> RevisionTemplates() const { return List(kRevision); }
  // The templates for files.
  automation::Ref<vnTemplates> FileTemplates() const { return List(kFile); }
  // The templates for jumps.
  automation::Ref<vnTemplates> JumpTemplates() const { return List(kJump); }
  // The first template that a list finds under the key, in the order report, figure, revision,
  // file, jump; Nothing when none does.
  automation::Ref<vnTemplate> GetTemplateByKey(const Text& psKey) const;

  // Native listeners. A listener must leave before it is destroyed.
  void AddListener(TemplateLibraryListener* listener);
  void RemoveListener(TemplateLibraryListener* listener);
  // Late-bound sinks.
  const automation::EventInterfaceInfo& Events() const override { return TemplateLibraryEvents(); }
  void Connect(automation::EventSink* sink) override;
  void Disconnect(automation::EventSink* sink) override;

 private:
  friend struct Inside;
  // Raises the change event of the template's list, unless change events are off.
  void RaiseTemplateChange(vnTemplate& changed, EnumVantrelChangeEvent type, int32_t detail_id);

  enum ListIndex { kReport, kFigure, kRevision, kFile, kJump, kListCount };

  automation::Ref<vnTemplates> List(ListIndex index) const { return lists_[index].get(); }
  int32_t LoadRefusal(const Text& file_name) const;
  void LoadLists(const bag::KeptText& text);
  void WriteFile(const char16_t* source);
  struct ListInfo;
  static const ListInfo kLists[kListCount];
  template <auto kEvent, class... Args>
  void Raise(Args... args);
  // The change event of one list.
  template <auto kEvent>
  void RaiseChange(vnTemplate& changed, EnumVantrelChangeEvent type, int32_t detail_id);

  struct Listeners;
  std::unique_ptr<Listeners> listeners_;
  std::array<automation::Owned<vnTemplates>, kListCount> lists_;
  Text file_name_;
  bool change_events_loading_ = false;
  bool change_events_ = true;
};

}  // namespace vndoc6
