#include "vndoc6/templates/template_library.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "automation/inside.h"
#include "automation/scoped_value.h"
#include "bag/bag_file.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "platform/file_system.h"
#include "schema/event_list.h"
#include "schema/rows.h"

namespace vndoc6 {
namespace {

using Listener = TemplateLibraryListener;

// Why a load or save was refused. Published: never change one.
enum FailCode : int32_t { kNotRefused = 0, kNoFileName = 1, kHasFile = 2, kNoSuchFile = 3 };

bool IsWellFormed(const bag::KeptText& text) {
  bag::BagScanner scanner(text);
  bag::BagEntry entry;
  while (scanner.Next(entry)) continue;
  return !scanner.faulty();
}

bag::KeptText ReadLibraryFile(const Text& file_name) {
  const std::optional<bag::KeptText> text = bag::ReadTextFile(file_name);
  // A library that was cut short would be saved without the lists that it lost.
  if (text && IsWellFormed(*text)) return *text;
  throw automation::Error(automation::kPathFileAccess, {}, u"vnTemplateLibrary.Load");
}

}  // namespace

struct vnTemplateLibrary::ListInfo {
  const char* file_key;  // in every library file: never change one
  const char16_t* name;
  void (vnTemplateLibrary::*raise_change)(vnTemplate&, EnumVantrelChangeEvent, int32_t);
  int16_t loading_percent;  // when the list is loaded; 0: that is not told
  int16_t saving_percent;
};

// In the order of the library's lists.
constexpr vnTemplateLibrary::ListInfo vnTemplateLibrary::kLists[] = {
    {"ReportTemplates", u"rpt", &vnTemplateLibrary::RaiseChange<&Listener::ReportTemplateChange>,
     40, 30},
    {"FigureTemplates", u"fig", &vnTemplateLibrary::RaiseChange<&Listener::FigureTemplateChange>,
     70, 60},
    {"RevisionTemplates", u"rev",
     &vnTemplateLibrary::RaiseChange<&Listener::RevisionTemplateChange>, 80, 70},
    {"FileTemplates", u"fil", &vnTemplateLibrary::RaiseChange<&Listener::FileTemplateChange>, 90,
     80},
    {"JumpTemplates", u"jmp", &vnTemplateLibrary::RaiseChange<&Listener::JumpTemplateChange>, 0,
     90},
};

struct vnTemplateLibrary::Listeners
    : schema::EventList<TemplateLibraryListener, &TemplateLibraryEvents> {};

vnTemplateLibrary::vnTemplateLibrary() : listeners_(std::make_unique<Listeners>()) {
  static_assert(std::size(kLists) == kListCount);
  for (size_t i = 0; i < kListCount; ++i) {
    lists_[i] = automation::Owned<vnTemplates>(automation::Make<vnTemplates>().get());
    Inside::StoreTemplateLibrary(*lists_[i], this);
    Inside::StoreListName(*lists_[i], kLists[i].name);
  }
}

vnTemplateLibrary::~vnTemplateLibrary() = default;

void vnTemplateLibrary::AddListener(TemplateLibraryListener* listener) {
  listeners_->Add(listener);
}
void vnTemplateLibrary::RemoveListener(TemplateLibraryListener* listener) {
  listeners_->Remove(listener);
}
void vnTemplateLibrary::Connect(automation::EventSink* sink) { listeners_->Connect(sink); }
void vnTemplateLibrary::Disconnect(automation::EventSink* sink) { listeners_->Disconnect(sink); }

// What is told may let go of the library.
template <auto kEvent, class... Args>
void vnTemplateLibrary::Raise(Args... args) {
  if (listeners_->empty()) return;
  const automation::Ref<vnTemplateLibrary> self(this);
  listeners_->template Raise<kEvent>(args...);
}

template <auto kEvent>
void vnTemplateLibrary::RaiseChange(vnTemplate& changed, EnumVantrelChangeEvent type,
                                    int32_t detail_id) {
  if (listeners_->empty()) return;
  const automation::Ref<vnTemplateLibrary> self(this);
  listeners_->template Raise<kEvent>(changed, type, detail_id);
}

bool vnTemplateLibrary::Load(const Text& psFileName) {
  const automation::Ref<vnTemplateLibrary> self(this);
  if (const int32_t refusal = LoadRefusal(psFileName)) {
    Raise<&Listener::LoadFailed>(refusal);
    return false;
  }
  const bag::KeptText text = ReadLibraryFile(psFileName);
  file_name_ = psFileName;
  LoadLists(text);
  Raise<&Listener::Loading>(int16_t{100});
  Raise<&Listener::LoadComplete>();
  return true;
}

int32_t vnTemplateLibrary::LoadRefusal(const Text& file_name) const {
  if (!file_name_.empty()) return kHasFile;
  if (file_name.empty()) return kNoFileName;
  return platform::FileExists(file_name) ? kNotRefused : kNoSuchFile;
}

void vnTemplateLibrary::LoadLists(const bag::KeptText& text) {
  const automation::ScopedValue events(change_events_, change_events_loading_, true);
  bag::BagReader reader(text);
  Raise<&Listener::Loading>(int16_t{10});
  for (size_t i = 0; i < kListCount; ++i) {
    Inside::Read(*lists_[i], reader.GetKept(kLists[i].file_key));
    const int16_t percent = kLists[i].loading_percent;
    if (percent > 0) Raise<&Listener::Loading>(percent);
  }
  unknown_entries().TakeFrom(reader);
}

bool vnTemplateLibrary::Save() {
  const automation::Ref<vnTemplateLibrary> self(this);
  if (file_name_.empty()) {
    Raise<&Listener::SaveFailed>(int32_t{kNoFileName});
    return false;
  }
  WriteFile(u"vnTemplateLibrary.Save");
  return false;
}

bool vnTemplateLibrary::SaveAs(const Text& psFileName) {
  const automation::Ref<vnTemplateLibrary> self(this);
  if (psFileName.empty()) {
    Raise<&Listener::SaveFailed>(int32_t{kNoFileName});
    return false;
  }
  const Text previous = std::exchange(file_name_, psFileName);
  try {
    WriteFile(u"vnTemplateLibrary.SaveAs");
  } catch (...) {
    file_name_ = previous;
    throw;
  }
  return false;
}

void vnTemplateLibrary::WriteFile(const char16_t* source) {
  const Text file_name = file_name_;
  std::string bytes;
  bag::BagWriter writer(bytes);
  for (size_t i = 0; i < kListCount; ++i) {
    writer.AddNested(kLists[i].file_key,
                     [&](bag::BagWriter& nested) { Inside::Write(*lists_[i], nested); });
    Raise<&Listener::Saving>(kLists[i].saving_percent);
  }
  unknown_entries().Write(writer);
  if (!platform::ReplaceFileWith(file_name, bytes)) {
    throw automation::Error(automation::kPathFileAccess, {}, source);
  }
  Raise<&Listener::Saving>(int16_t{100});
  Raise<&Listener::SaveComplete>();
}

automation::Ref<vnTemplate> vnTemplateLibrary::GetTemplateByKey(const Text& psKey) const {
  const automation::Variant key(psKey);
  for (const auto& list : lists_) {
    if (automation::Ref<vnTemplate> found = list->Item(key)) return found;
  }
  return nullptr;
}

void vnTemplateLibrary::RaiseTemplateChange(vnTemplate& changed, EnumVantrelChangeEvent type,
                                            int32_t detail_id) {
  if (!change_events_) return;
  const automation::Ref<vnTemplates> list = changed.Templates();
  const auto found = std::find_if(std::begin(kLists), std::end(kLists), [&](const ListInfo& info) {
    return list && list->ListName() == info.name;
  });
  if (found != std::end(kLists)) (this->*found->raise_change)(changed, type, detail_id);
}

const automation::ClassInfo& vnTemplateLibrary::classInfo() {
  using namespace schema;
  using Library = vnTemplateLibrary;
  static const ClassInfo info = describe<Library>(
      "vnTemplateLibrary", "Texts that hosts reuse, in five lists, with a file of their own.",
      {0x43D589CD, 0xF2B5, 0x4EE5, {0xA1, 0x97, 0x69, 0xE3, 0xA9, 0x8F, 0x5A, 0xFA}},
      {0xC55099DB, 0x960B, 0x46C3, {0x91, 0xEF, 0x7E, 0xB5, 0x80, 0xD0, 0x53, 0xFD}},
      std::tuple{
          method<&Library::Save>("Save"),
          method<&Library::SaveAs>("SaveAs", "psFileName"),
          method<&Library::Load>("Load", "psFileName"),
          property<&Library::FileName>("FileName").not_content("where the library lies"),
          property<&Library::ReportTemplates>("ReportTemplates"),
          property<&Library::ChangeEventsLoading, &Library::SetChangeEventsLoading>(
              "ChangeEventsLoading", "pbChangeEventsLoading")
              .not_content("a setting of the host's"),
          property<&Library::FigureTemplates>("FigureTemplates"),
          property<&Library::RevisionTemplates>("RevisionTemplates"),
          property<&Library::FileTemplates>("FileTemplates"),
          property<&Library::JumpTemplates>("JumpTemplates"),
          method<&Library::GetTemplateByKey>("GetTemplateByKey", "psKey"),
      });
  return info;
}

}  // namespace vndoc6
