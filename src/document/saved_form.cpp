#include "document/saved_form.h"

#include <algorithm>
#include <map>

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/step.h"
#include "vndoc6/process/task.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using Kind = SavedEntry::Kind;

// What a new object writes says which entries there are, and in which order. It does not say what
// the texts among them are, nor what is written only where there is something of it.
struct PartRow {
  const char* owner;
  const char* key;
  Kind kind;
  const char* part = nullptr;
  const char* prefix = "";
  bool keyed = false;
};
constexpr PartRow kParts[] = {
    {"document", "D", Kind::kObject, "details"},
    {"document", "C", Kind::kObject, "chart"},
    {"document", "S", Kind::kCollection, "step", "T", true},
    {"document", "LK", Kind::kCollection, "link", "L", true},
    {"document", "RH", Kind::kCollection, "revision", "F"},
    {"document", "P", Kind::kBag},
    {"document", "FL", Kind::kCollection, "file", "F"},
    {"document", "J", Kind::kCollection, "jump", "J"},
    {"document", "CN", Kind::kCollection, "container", "C", true},
    {"document", "Attach", Kind::kBag},
    {"details", "AB", Kind::kObject, "title"},
    {"step", "PB", Kind::kCollection, "title", "TR"},
    {"step", "Fig", Kind::kObject, "figure"},
    {"step", "FL", Kind::kCollection, "file", "F"},
    {"step", "J", Kind::kCollection, "jump", "J"},
    {"step", "C", Kind::kCollection, "condition", "C", true},
    {"step", "P", Kind::kBag},
    {"step", "T", Kind::kCollection, "task", "T", true},
    {"step", "Attach", Kind::kBag},
    {"step", "DP", Kind::kBag},
    {"link", "L", Kind::kObject, "line"},
    {"link", "C", Kind::kCollection, "condition", "C", true},
    {"container", "F", Kind::kObject, "figure"},
};

// Entries that a new object leaves out, each with the one that it stands before (null: none).
struct OptionalRow {
  const char* owner;
  const char* key;
  char tag;
  const char* before;
  Kind kind;
};
constexpr OptionalRow kOptional[] = {
    {"details", "RP", '"', nullptr, Kind::kText}, {"details", "WP", '"', nullptr, Kind::kText},
    {"chart", "Pic", 'p', "PicP", Kind::kValue},  {"file", "DID", '0', nullptr, Kind::kValue},
    {"step", "DP", '"', "CS", Kind::kBag},        {"line", "EPX_", '0', nullptr, Kind::kPoints},
    {"figure", "Key", '"', "A", Kind::kText},     {"figure", "Picture", 'p', "Pic", Kind::kValue},
};

template <class T>
std::string WrittenBy(T& object) {
  std::string text;
  bag::BagWriter writer(text);
  Inside::Write(object, writer);
  return text;
}

// A line has no font to write before it is loaded.
std::string WrittenByLine() {
  const auto line = automation::Make<vnLine>();
  Inside::Read(*line, bag::KeptText());
  return WrittenBy(*line);
}

SavedForm FormOf(std::string text) {
  SavedForm form;
  bag::BagScanner scanner{bag::KeptText(bag::SharedBytes(std::move(text)))};
  bag::BagEntry entry;
  while (scanner.Next(entry)) {
    const bool boolean = entry.tag == 'T' || entry.tag == 'F';
    form.entries.push_back({std::string(entry.key), boolean ? 'b' : entry.tag,
                            entry.tag == '"' ? Kind::kText : Kind::kValue});
  }
  return form;
}

template <class T>
SavedForm FormOf() {
  return FormOf(WrittenBy(*automation::Make<T>()));
}

class Forms {
 public:
  Forms() {
    forms_["document"] = FormOf<vnDocument>();
    forms_["details"] = FormOf<vnDetails>();
    forms_["chart"] = FormOf<vnChart>();
    forms_["step"] = FormOf<vnStep>();
    forms_["link"] = FormOf<vnLink>();
    forms_["revision"] = FormOf<vnRevision>();
    forms_["file"] = FormOf<vnFile>();
    forms_["jump"] = FormOf<vnJump>();
    forms_["container"] = FormOf<vnContainer>();
    forms_["title"] = FormOf<vnTitleRef>();
    forms_["figure"] = FormOf<vnFigure>();
    forms_["condition"] = FormOf<vnCondition>();
    forms_["task"] = FormOf<vnTask>();
    forms_["line"] = FormOf(WrittenByLine());
    for (const OptionalRow& row : kOptional) Insert(row);
    for (const PartRow& row : kParts) SetPart(row);
    for (auto& [name, form] : forms_) form.self = {name, '"', Kind::kObject, true, &form};
    at_depth_.resize(kDeepestPart + 1);
    AddParts(document(), 1);
  }
  const SavedForm& document() const { return forms_.at("document"); }
  const std::vector<const SavedEntry*>& AtDepth(uint32_t depth) const {
    return at_depth_[depth <= kDeepestPart ? depth : 0];
  }

 private:
  void Insert(const OptionalRow& row) {
    std::vector<SavedEntry>& entries = forms_[row.owner].entries;
    const auto before = std::find_if(entries.begin(), entries.end(), [&](const SavedEntry& entry) {
      return row.before != nullptr && entry.key == row.before;
    });
    entries.insert(before, {row.key, row.tag, row.kind, false});
  }

  void SetPart(const PartRow& row) {
    for (SavedEntry& entry : forms_[row.owner].entries) {
      if (entry.key != row.key) continue;
      entry.kind = row.kind;
      if (row.part != nullptr) entry.part = &forms_.at(row.part);
      entry.prefix = row.prefix;
      entry.keyed = row.keyed;
    }
  }

  void AddParts(const SavedForm& form, uint32_t depth) {
    if (depth > kDeepestPart) return;
    for (const SavedEntry& entry : form.entries) {
      if (entry.part == nullptr) continue;
      Add(entry, depth);
      if (entry.kind == Kind::kCollection && depth < kDeepestPart) {
        Add(entry.part->self, depth + 1);
        AddParts(*entry.part, depth + 2);
      } else {
        AddParts(*entry.part, depth + 1);
      }
    }
  }

  // Objects of one class are the same wherever they come from.
  void Add(const SavedEntry& entry, uint32_t depth) {
    std::vector<const SavedEntry*>& parts = at_depth_[depth];
    const auto same = [&](const SavedEntry* other) {
      return other == &entry || (entry.kind == Kind::kObject && other->kind == entry.kind &&
                                 other->part == entry.part);
    };
    if (std::none_of(parts.begin(), parts.end(), same)) parts.push_back(&entry);
  }

  std::map<std::string, SavedForm> forms_;  // whose elements stay where they are
  std::vector<std::vector<const SavedEntry*>> at_depth_;
};

const Forms& AllForms() {
  static const Forms forms;
  return forms;
}

}  // namespace

bool SavedEntry::Has(std::string_view sought) const {
  if (kind != Kind::kPoints) return sought == key;
  constexpr size_t kPrefix = 4;
  if (sought.size() <= kPrefix || !(sought.starts_with("EPX_") || sought.starts_with("EPY_"))) {
    return false;
  }
  return std::all_of(sought.begin() + kPrefix, sought.end(),
                     [](char digit) { return digit >= '0' && digit <= '9'; });
}

bool PointOrder::Take(std::string_view key) {
  constexpr size_t kPrefix = 4;
  uint32_t number = 0;
  const bool is_y = key.starts_with("EPY_");
  if (key.size() <= kPrefix || is_y != is_y_next_ || !bag::ReadNumber(key.substr(kPrefix), number))
    return false;
  if (is_y ? number != last_ : number <= last_) return false;
  last_ = number;
  is_y_next_ = !is_y;
  return true;
}

const SavedEntry* SavedForm::Find(std::string_view key) const {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [&](const SavedEntry& entry) { return entry.Has(key); });
  return found != entries.end() ? &*found : nullptr;
}

const SavedForm& DocumentForm() { return AllForms().document(); }

const std::vector<const SavedEntry*>& PartsAtDepth(uint32_t depth) {
  return AllForms().AtDepth(depth);
}

}  // namespace vndoc6
