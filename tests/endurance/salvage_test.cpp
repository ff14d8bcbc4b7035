// Files damaged in every way that a disk, a copy or an editor damages them: what was not touched
// comes back, and what did not is told.
#include "content/salvage.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "bag/properties.h"
#include "chart/chart.h"
#include "chart/figure.h"
#include "chart/line.h"
#include "content/saved_form.h"
#include "details/details.h"
#include "details/revision.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/file.h"
#include "process/jump.h"
#include "process/link.h"
#include "process/steps.h"
#include "process/task.h"
#include "tests/endurance/soak.h"
#include "tests/support/random_document.h"
#include "tests/support/saved_text.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using bag::BagEntry;
using bag::BagScanner;
using bag::KeptText;
using Kind = SavedEntry::Kind;

constexpr size_t kNoObject = SIZE_MAX;

// An object in a file's text, by what it holds itself.
struct FileObject {
  std::string content;  // its class, and its entries but for the objects below it
  std::string keys;     // those entries' keys
  size_t owner = kNoObject;
  std::vector<std::pair<size_t, size_t>> bytes;  // its own
};

// Every object of a file that has no fault.
class FileObjects {
 public:
  explicit FileObjects(const std::string& file) : text_(bag::SharedBytes(file)) {
    AddObject(text_, DocumentForm(), kNoObject, 0, file.size());
  }
  bool faulty() const { return faulty_; }
  const std::vector<FileObject>& all() const { return all_; }

 private:
  // Elsewhere when the scanner had to go on in a copy.
  size_t At(std::string_view part) const {
    const auto at = reinterpret_cast<uintptr_t>(part.data());
    const auto begin = reinterpret_cast<uintptr_t>(text_.raw().data());
    return at >= begin && at <= begin + text_.raw().size() ? at - begin : kNoObject / 2;
  }

  void AddObject(const KeptText& text, const SavedForm& form, size_t owner, size_t begin,
                 size_t end) {
    const size_t number = all_.size();
    all_.push_back({form.self.key, form.self.key, owner, {}});
    BagScanner scanner(text);
    BagEntry found;
    while (scanner.Next(found)) {
      const SavedEntry* const entry = form.Find(found.key);
      all_[number].keys += ' ' + std::string(found.key);
      const bool is_part = entry != nullptr && entry->part != nullptr && found.tag == '"';
      if (!is_part) {
        all_[number].content += '\n' + std::string(found.key) + '=' + found.tag;
        // A figure's own key is not read.
        all_[number].content += found.value;
        continue;
      }
      const size_t value = At(found.value);
      all_[number].bytes.emplace_back(begin, value);
      begin = value + found.value.size();
      if (entry->kind == Kind::kObject) {
        AddObject(scanner.TextOf(found), *entry->part, number, value, begin);
      } else {
        AddMembers(scanner.TextOf(found), *entry->part, number);
      }
    }
    all_[number].bytes.emplace_back(begin, end);
    faulty_ = faulty_ || scanner.faulty();
  }

  void AddMembers(const KeptText& text, const SavedForm& form, size_t owner) {
    BagScanner scanner(text);
    BagEntry found;
    size_t begin = At(text.raw());
    while (scanner.Next(found)) {
      const size_t number = all_.size();
      const size_t value = At(found.value);
      AddObject(scanner.TextOf(found), form, owner, value, value + found.value.size());
      // With its key, its opening and its closing.
      const size_t end = value + found.value.size() + 2;
      all_[number].bytes.emplace_back(At(found.key), value);
      all_[number].bytes.emplace_back(end - 2, end);
      begin = end;
    }
    static_cast<void>(begin);
    faulty_ = faulty_ || scanner.faulty();
  }

  KeptText text_;
  std::vector<FileObject> all_;
  bool faulty_ = false;
};

// A file, and where in the original each of its bytes was.
class DamagedCopy {
 public:
  explicit DamagedCopy(const std::string& original) : bytes_(original) {
    for (size_t i = 0; i < original.size(); ++i) origins_.push_back(i);
  }
  const std::string& bytes() const { return bytes_; }
  std::string story;

  void Change(size_t at, char byte) {
    story += " change " + std::to_string(at);
    if (bytes_[at] != byte) origins_[at] = kNew;
    bytes_[at] = byte;
  }
  void Zero(size_t at, size_t size) {
    story += " zero " + std::to_string(at) + "+" + std::to_string(size);
    for (size_t i = at; i < at + size; ++i) {
      bytes_[i] = '\0';
      origins_[i] = kNew;
    }
  }
  void Remove(size_t at, size_t size) {
    story += " out " + std::to_string(at) + "+" + std::to_string(size);
    bytes_.erase(at, size);
    origins_.erase(origins_.begin() + static_cast<std::ptrdiff_t>(at),
                   origins_.begin() + static_cast<std::ptrdiff_t>(at + size));
  }
  void Insert(size_t at, const std::string& what) {
    story += " in " + std::to_string(at) + "+" + std::to_string(what.size());
    bytes_.insert(at, what);
    origins_.insert(origins_.begin() + static_cast<std::ptrdiff_t>(at), what.size(), kNew);
  }
  // Of two stretches that do not overlap.
  void Swap(size_t left, size_t right, size_t size) {
    story += " swap " + std::to_string(left) + "," + std::to_string(right) + "+" +
             std::to_string(size);
    for (size_t i = 0; i < size; ++i) {
      std::swap(bytes_[left + i], bytes_[right + i]);
      origins_[left + i] = origins_[right + i] = kNew;
    }
  }

  // Which objects of the original have all their bytes, where they were.
  std::vector<bool> Untouched(const FileObjects& objects, size_t size) const {
    std::vector<size_t> now(size, kNew);
    for (size_t i = 0; i < origins_.size(); ++i) {
      if (origins_[i] != kNew) now[origins_[i]] = i;
    }
    std::vector<bool> untouched;
    for (const FileObject& object : objects.all()) {
      bool whole = true;
      auto ranges = object.bytes;
      if (std::getenv("WEAK")) {
        size_t lo = SIZE_MAX, hi = 0;
        for (auto& [b, e] : ranges) { lo = std::min(lo, b); hi = std::max(hi, e); }
        ranges = {{lo, hi}};
      }
      for (const auto& [begin, end] : ranges) {
        whole = whole && end <= size;
        for (size_t i = begin; i < end && whole; ++i) {
          whole = now[i] != kNew && (i == begin || now[i] == now[i - 1] + 1);
        }
      }
      untouched.push_back(whole);
    }
    return untouched;
  }

 private:
  static constexpr size_t kNew = SIZE_MAX;
  std::string bytes_;
  std::vector<size_t> origins_;
};

// With keys that are the same in every run.
std::string FileOf(vnDocument& document) {
  std::string text;
  bag::BagWriter writer(text);
  document.InternalWrite(writer);
  constexpr size_t kKeySize = 38;
  std::map<std::string, std::string> keys;
  Random random(7);
  for (size_t at = 0; (at = text.find('{', at)) != text.npos; ++at) {
    if (text.substr(at + kKeySize - 1, 1) != "}") continue;
    std::string& key = keys[text.substr(at, kKeySize)];
    if (key.empty()) {
      key = text.substr(at, kKeySize);
      for (char& digit : key) {
        if (std::isxdigit(digit) != 0) digit = "0123456789ABCDEF"[Below(random, 16)];
      }
    }
    text.replace(at, kKeySize, key);
  }
  return text;
}

struct Tally {
  size_t cases = 0;
  size_t untouched = 0;
  size_t lost = 0;       // of those
  size_t misplaced = 0;  // came back below another owner, although theirs was untouched
  size_t touched = 0;    // objects of which some bytes were touched
  size_t gone = 0;       // of those
  size_t silent = 0;     // something was missing, and nobody told
  size_t faulty = 0;     // results with a fault

  void Print(const char* name) const {
    std::printf("%s: %zu cases, %zu untouched objects, %zu lost, %zu misplaced; %zu touched, %zu "
                "gone; %zu silent, %zu faulty\n",
                name, cases, untouched, lost, misplaced, touched, gone, silent, faulty);
  }
};

class Measure {
 public:
  explicit Measure(std::string file) : file_(std::move(file)), objects_(file_) {}

  const std::string& file() const { return file_; }
  const FileObjects& objects() const { return objects_; }
  Tally tally;

  void Try(const DamagedCopy& copy) {
    const Salvaged salvaged = Salvage(copy.bytes());
    const FileObjects found(salvaged.text);
    const std::vector<bool> untouched = copy.Untouched(objects_, file_.size());
    std::map<std::string, int> contents;
    std::map<std::pair<std::string, std::string>, int> with_owners;
    std::map<std::string, int> keys;
    for (const FileObject& object : found.all()) {
      ++contents[object.content];
      ++keys[object.keys];
      ++with_owners[{object.content, OwnerOf(found, object)}];
    }
    ++tally.cases;
    bool shown = false;
    const auto fail = [&](size_t& count, const std::string& what) {
      ++count;
      if (std::exchange(shown, true)) return;
      if (shown_++ < Most()) Show(copy, salvaged, what);
    };
    if (found.faulty() && !salvaged.text.empty()) fail(tally.faulty, "faulty");
    bool all_there = true;
    for (size_t i = 0; i < objects_.all().size(); ++i) {
      const FileObject& object = objects_.all()[i];
      all_there = keys[object.keys]-- > 0 && all_there;
      if (object.keys.find(' ') == std::string::npos) continue;  // nobody built it
      if (!untouched[i]) continue;
      ++tally.untouched;
      if (--contents[object.content] < 0) {
        fail(tally.lost, "lost: " + object.content.substr(0, 120));
        continue;
      }
      if (object.owner == kNoObject || !untouched[object.owner]) continue;
      if (--with_owners[{object.content, OwnerOf(objects_, object)}] < 0) {
        fail(tally.misplaced, "misplaced: " + object.content.substr(0, 80));
      }
    }
    for (size_t i = 0; i < objects_.all().size(); ++i) {
      if (untouched[i]) continue;
      ++tally.touched;
      if (--contents[objects_.all()[i].content] < 0) ++tally.gone;
    }
    if (!all_there && salvaged.damages.empty()) fail(tally.silent, "silent");
  }

 private:
  static std::string OwnerOf(const FileObjects& objects, const FileObject& object) {
    return object.owner == kNoObject ? std::string() : objects.all()[object.owner].content;
  }
  static int Most() {
    const char* most = std::getenv("SHOW");
    return most != nullptr ? std::atoi(most) : 3;
  }
  static void Show(const DamagedCopy& copy, const Salvaged& salvaged, const std::string& what) {
    std::printf("\n--- %s\n%s\n", what.c_str(), copy.story.c_str());
    for (size_t i = 0; i < std::min<size_t>(salvaged.damages.size(), 12); ++i) {
      const Damage& damage = salvaged.damages[i];
      std::printf("  %d %s at %zu+%zu %s\n", static_cast<int>(damage.kind), damage.place.c_str(),
                  damage.offset, damage.size, damage.keys.c_str());
    }
    if (std::getenv("DUMP") != nullptr) {
      std::ofstream("/tmp/S/f") << copy.bytes();
      std::ofstream("/tmp/S/g") << salvaged.text;
    }
  }

  std::string file_;
  FileObjects objects_;
  int shown_ = 0;
};

// One to eight places, each damaged in one of the ways.
DamagedCopy AnyDamage(const std::string& file, Random& random) {
  DamagedCopy copy(file);
  for (size_t places = 1 + Below(random, 8); places > 0; --places) {
    const size_t size = std::min(copy.bytes().size() / 4, 1 + Below(random, 1 + Below(random, 300)));
    const size_t at = Below(random, copy.bytes().size() - size);
    std::string noise;
    switch (Below(random, 5)) {
      case 0:
        for (size_t i = at; i < at + std::min<size_t>(size, 8); ++i) {
          copy.Change(i, static_cast<char>(random()));
        }
        break;
      case 1:
        copy.Zero(at, size);
        break;
      case 2:
        copy.Remove(at, size);
        break;
      case 3:
        for (size_t i = 0; i < size; ++i) noise += static_cast<char>(random());
        copy.Insert(at, noise);
        break;
      default: {
        const size_t other = Below(random, copy.bytes().size() - size);
        if (other + size <= at || at + size <= other) copy.Swap(at, other, size);
      }
    }
  }
  return copy;
}

// --- The documents ---

Ref<vnDocument> SmallDocument() {
  const auto document = Make<vnDocument>();
  document->Details()->SetTitle(u"Buying");
  for (const char16_t* label : {u"Ask", u"Order"}) {
    const Ref<vnStep> step = document->NewStep();
    step->SetLabel(label);
    step->Figure()->SetLeft(30);
    step->PerformedBy()->Add(Variant(u"Employee"));
    step->NewTask()->SetName(u"Write it");
  }
  const auto link = Make<vnLink>();
  link->SetOriginStepKey(document->Steps()->Item(Variant(1))->Key());
  link->SetDestinationStepKey(document->Steps()->Item(Variant(2))->Key());
  document->Links()->Add(link.get());
  document->Details()->NewRevision(u"first");
  return document;
}

Ref<vnDocument> RichDocument() {
  const auto document = SmallDocument();
  document->Details()->SetPurpose(u"To have it");
  document->Details()->AuthorisedBy()->SetDisplayName(u"Head");
  document->Details()->NewRevision(u"first");
  document->Details()->NewRevision(u"second");
  document->Chart()->SetGridSizeX(200);
  document->GetProperties()->Add(u"host", Variant(5));
  document->GetProperties()->Add(u"text", Variant(u"a \"quoted\": text"));
  for (int32_t i = 1; i <= 10; ++i) {
    const Ref<vnStep> step = document->NewStep();
    const Text number = automation::NumberText(i);
    step->SetLabel(u"Step " + number);
    step->SetDescription(u"What is to be done as number " + number);
    step->PerformedBy()->Add(Variant(u"Role " + number));
    for (int32_t task = 0; task < i % 3; ++task) step->NewTask()->SetName(u"Task " + number);
    if (i % 2 == 0) step->Figure()->SetLeft(static_cast<float>(100 * i));
    const auto condition = Make<vnCondition>();
    condition->SetDisplayName(u"If " + number);
    condition->SetConditionTest(u"a = " + number);
    step->Conditions()->Add(condition.get());
    const auto file = Make<vnFile>();
    file->SetFileName(u"file" + number);
    step->Files()->Add(file.get());
    const auto jump = Make<vnJump>();
    jump->SetFileName(u"other" + number + u".vn6");
    step->Jumps()->Add(jump.get());
    step->GetProperties()->Add(u"cost", Variant(i));
    step->Dependancies()->Add(document->Steps()->Item(Variant(1))->Key(), Variant(u""));
    const auto link = Make<vnLink>();
    link->SetOriginStepKey(document->Steps()->Item(Variant(i))->Key());
    link->SetDestinationStepKey(step->Key());
    link->SetText(u"yes");
    link->Line()->SetExtraPointX(1, 5);
    document->Links()->Add(link.get());
    if (i % 5 == 0) {
      const auto container = Make<vnContainer>();
      container->SetLabel(u"Group " + number);
      document->InternalContainers().Add(container.get());
      step->SetContainerKey(container->Key());
    }
  }
  return document;
}

Ref<vnDocument> LongDocument() {
  const auto document = Make<vnDocument>();
  for (int32_t i = 1; i <= 60; ++i) {
    const Ref<vnStep> step = document->NewStep();
    step->SetLabel(u"Step no " + automation::NumberText(i));
    step->PerformedBy()->Add(Variant(u"Role"));
    if (i % 4 == 0) step->NewTask()->SetName(u"Do it");
    if (i == 1) continue;
    const auto link = Make<vnLink>();
    link->SetOriginStepKey(document->Steps()->Item(Variant(i - 1))->Key());
    link->SetDestinationStepKey(step->Key());
    document->Links()->Add(link.get());
  }
  return document;
}

std::string Hostile() {
  RandomContent content(Seed());
  return FileOf(*RandomDocument(content));
}

TEST(SalvageMeasure, EverySingleBit) {
  Measure measure(FileOf(*SmallDocument()));
  std::printf("%zu bytes, %zu objects\n", measure.file().size(), measure.objects().all().size());
  for (size_t at = 0; at < measure.file().size(); ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      DamagedCopy copy(measure.file());
      copy.Change(at, static_cast<char>(measure.file()[at] ^ 1 << bit));
      copy.story += " bit " + std::to_string(bit);
      measure.Try(copy);
    }
  }
  measure.tally.Print("bits");
}

TEST(SalvageMeasure, EveryCut) {
  Measure measure(FileOf(*SmallDocument()));
  for (size_t at = 0; at < measure.file().size(); ++at) {
    DamagedCopy copy(measure.file());
    copy.Remove(at, measure.file().size() - at);
    measure.Try(copy);
  }
  measure.tally.Print("cuts");
}

void MeasureAny(const char* name, const std::string& file, int cases) {
  Measure measure(file);
  EXPECT_FALSE(measure.objects().faulty());
  std::printf("%zu bytes, %zu objects\n", file.size(), measure.objects().all().size());
  for (int i = 0; i < cases; ++i) {
    const char* only = std::getenv("ONLY");
    const uint32_t seed = only != nullptr ? static_cast<uint32_t>(std::atoi(only))
                                          : Seed() * 1000000 + static_cast<uint32_t>(i);
    Random random(seed);
    DamagedCopy copy = AnyDamage(file, random);
    copy.story += " seed " + std::to_string(seed);
    measure.Try(copy);
    if (only != nullptr) break;
  }
  measure.tally.Print(name);
}

TEST(SalvageMeasure, Small) { MeasureAny("small", FileOf(*SmallDocument()), Times(200)); }
TEST(SalvageMeasure, Rich) { MeasureAny("rich", FileOf(*RichDocument()), Times(100)); }
TEST(SalvageMeasure, Long) { MeasureAny("long", FileOf(*LongDocument()), Times(100)); }
TEST(SalvageMeasure, Hostile) { MeasureAny("hostile", Hostile(), Times(100)); }

}  // namespace
}  // namespace vndoc6::testing
