// Files damaged in every way that a disk, a copy or an editor damages them: what was not touched
// comes back, and what did not is told.
#include "vndoc6/content/salvage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "bag/bag_scanner.h"
#include "document/saved_form.h"
#include "tests/endurance/soak.h"
#include "tests/support/random_document.h"
#include "tests/support/saved_text.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using bag::BagEntry;
using bag::BagScanner;
using bag::KeptText;

constexpr size_t kNone = SIZE_MAX;

// An object in a file's text.
struct FileObject {
  std::string content;  // its class, and its entries but for the objects below it
  std::string keys;     // those entries' keys
  size_t owner = kNone;
  // Its own bytes, those of the objects below it left out.
  std::vector<std::pair<size_t, size_t>> bytes = {};
};

// The objects of a file, each behind its owner.
class FileObjects {
 public:
  explicit FileObjects(const std::string& file) : text_(bag::SharedBytes(file)) {
    AddObject(text_, DocumentForm(), kNone, 0, file.size());
  }
  bool faulty() const { return faulty_; }
  const std::vector<FileObject>& all() const { return all_; }
  std::string OwnerOf(const FileObject& object) const {
    return object.owner != kNone ? all_[object.owner].content : "";
  }

 private:
  // Far behind the file where the scanner went on in a copy.
  size_t At(std::string_view part) const {
    const auto at = reinterpret_cast<uintptr_t>(part.data());
    const auto begin = reinterpret_cast<uintptr_t>(text_.raw().data());
    return at >= begin && at <= begin + text_.raw().size() ? at - begin : kNone / 2;
  }

  void AddObject(const KeptText& text, const SavedForm& form, size_t owner, size_t begin,
                 size_t end) {
    const size_t number = all_.size();
    all_.push_back({form.self.key, "", owner});
    BagScanner scanner(text);
    BagEntry found;
    while (scanner.Next(found)) {
      const SavedEntry* const entry = form.Find(found.key);
      const std::string key(found.key);
      all_[number].keys += form.self.key + ' ' + key;
      if (entry == nullptr || entry->part == nullptr || found.tag != '"') {
        all_[number].content += '\n' + key + '=' + found.tag;
        all_[number].content += found.tag == '"'
                                    ? automation::ToUtf8(scanner.TextOf(found).ToText())
                                    : std::string(found.value);
        continue;
      }
      const size_t value = At(found.value);
      all_[number].bytes.emplace_back(begin, value);
      begin = value + found.value.size();
      if (entry->kind == SavedEntry::Kind::kObject) {
        AddObject(scanner.TextOf(found), *entry->part, number, value, begin);
      } else {
        AddMembers(scanner.TextOf(found), *entry->part, number);
      }
    }
    all_[number].bytes.emplace_back(begin, end);
    faulty_ = faulty_ || scanner.faulty();
  }

  void AddMembers(const KeptText& text, const SavedForm& form, size_t owner) {
    constexpr size_t kClosing = 2;
    BagScanner scanner(text);
    BagEntry found;
    while (scanner.Next(found)) {
      const size_t number = all_.size();
      const size_t value = At(found.value);
      const size_t end = value + found.value.size();
      AddObject(scanner.TextOf(found), form, owner, value, end);
      all_[number].bytes.emplace_back(At(found.key), value);
      all_[number].bytes.emplace_back(end, end + kClosing);
    }
    faulty_ = faulty_ || scanner.faulty();
  }

  KeptText text_;
  std::vector<FileObject> all_;
  bool faulty_ = false;
};

// A file, and where in the original each of its bytes was.
class DamagedCopy {
 public:
  explicit DamagedCopy(const std::string& original) : bytes_(original), size_(original.size()) {
    for (size_t i = 0; i < original.size(); ++i) origins_.push_back(i);
  }
  const std::string& bytes() const { return bytes_; }

  void Change(size_t at, char byte) {
    if (bytes_[at] != byte) origins_[at] = kNone;
    bytes_[at] = byte;
  }
  void Remove(size_t at, size_t size) {
    bytes_.erase(at, size);
    const auto begin = origins_.begin() + static_cast<std::ptrdiff_t>(at);
    origins_.erase(begin, begin + static_cast<std::ptrdiff_t>(size));
  }
  void Insert(size_t at, const std::string& what) {
    bytes_.insert(at, what);
    origins_.insert(origins_.begin() + static_cast<std::ptrdiff_t>(at), what.size(), kNone);
  }
  // Of two stretches that do not overlap.
  void Swap(size_t left, size_t right, size_t size) {
    for (size_t i = 0; i < size; ++i) {
      std::swap(bytes_[left + i], bytes_[right + i]);
      origins_[left + i] = origins_[right + i] = kNone;
    }
  }

  // Where each byte of the original is now.
  std::vector<size_t> Now() const {
    std::vector<size_t> now(size_, kNone);
    for (size_t i = 0; i < origins_.size(); ++i) {
      if (origins_[i] != kNone) now[origins_[i]] = i;
    }
    return now;
  }

 private:
  std::string bytes_;
  size_t size_;
  std::vector<size_t> origins_;
};

// One to eight places, each damaged in one of the ways.
DamagedCopy AnyDamage(const std::string& file, Random& random) {
  DamagedCopy copy(file);
  for (size_t places = 1 + Below(random, 8); places > 0; --places) {
    const size_t most = copy.bytes().size() / 4;
    const size_t size = std::min(most, 1 + Below(random, 1 + Below(random, 300)));
    const size_t at = Below(random, copy.bytes().size() - size);
    const size_t other = Below(random, copy.bytes().size() - size);
    std::string noise;
    for (size_t i = 0; i < size; ++i) noise += static_cast<char>(random());
    switch (Below(random, 5)) {
      case 0:
        for (size_t i = 0; i < std::min<size_t>(size, 8); ++i) copy.Change(at + i, noise[i]);
        break;
      case 1:
        for (size_t i = 0; i < size; ++i) copy.Change(at + i, '\0');
        break;
      case 2:
        copy.Remove(at, size);
        break;
      case 3:
        copy.Insert(at, noise);
        break;
      default:
        if (other + size <= at || at + size <= other) copy.Swap(at, other, size);
    }
  }
  return copy;
}

// Damages copies of a file, and counts what comes back.
class Measure {
 public:
  explicit Measure(std::string file) : file_(std::move(file)), objects_(file_) {
    EXPECT_FALSE(objects_.faulty());
  }
  const std::string& file() const { return file_; }

  struct Tally {
    size_t cases = 0;
    // Objects that were not touched, nor anything below them; those of them that did not come back.
    size_t untouched = 0, lost = 0;
    // The same for objects whose own bytes were not touched, whatever was below them; and those
    // that came back below another owner although theirs was not touched.
    size_t own_untouched = 0, own_lost = 0, misplaced = 0;
    size_t silent = 0;  // copies of which something was missing, and nothing was told
    size_t faulty = 0;  // copies that became a text with a fault
  } tally;

  void Try(const DamagedCopy& copy) {
    const Salvaged salvaged = Salvage(copy.bytes());
    const FileObjects found(salvaged.text);
    std::map<std::string, int> contents, keys;
    std::map<std::pair<std::string, std::string>, int> with_owners;
    for (const FileObject& object : found.all()) {
      ++contents[object.content];
      ++keys[object.keys];
      ++with_owners[{object.content, found.OwnerOf(object)}];
    }
    ++tally.cases;
    tally.faulty += found.faulty() ? 1 : 0;
    const std::vector<size_t> now = copy.Now();
    bool all_there = true;
    std::vector<bool> untouched;
    for (const FileObject& object : objects_.all()) {
      untouched.push_back(IsThere(object.bytes, now));
      if (object.keys.empty()) continue;  // nobody built it
      all_there = keys[object.keys]-- > 0 && all_there;
      if (!untouched.back()) continue;
      const bool lost = --contents[object.content] < 0;
      const bool whole = IsThere({Extent(object)}, now);
      tally.own_untouched += 1;
      tally.own_lost += lost ? 1 : 0;
      tally.untouched += whole ? 1 : 0;
      tally.lost += whole && lost ? 1 : 0;
      if (lost || object.owner == kNone || !untouched[object.owner]) continue;
      tally.misplaced += --with_owners[{object.content, objects_.OwnerOf(object)}] < 0 ? 1 : 0;
    }
    tally.silent += !all_there && salvaged.damages.empty() ? 1 : 0;
  }

  // With the figures, for whoever runs it for long.
  void Expect(const char* name) const {
    RecordProperty(name, Figures());
    EXPECT_EQ(tally.faulty, 0U) << name;
    // What is taken out to the byte is not missed by anything.
    EXPECT_LE(tally.silent * 1000, tally.cases) << name;
    // Where several places are damaged, one may look like what was at another.
    EXPECT_LE(tally.lost * 500, tally.untouched) << name << ": " << Figures();
    EXPECT_LE(tally.own_lost * 50, tally.own_untouched) << name << ": " << Figures();
  }
  void ExpectNothingLost(const char* name) const {
    Expect(name);
    EXPECT_EQ(tally.silent + tally.own_lost + tally.misplaced, 0U) << name << ": " << Figures();
  }

 private:
  static bool IsThere(const std::vector<std::pair<size_t, size_t>>& ranges,
                      const std::vector<size_t>& now) {
    for (const auto& [begin, end] : ranges) {
      if (end > now.size()) return false;
      for (size_t i = begin; i < end; ++i) {
        if (now[i] == kNone || (i > begin && now[i] != now[i - 1] + 1)) return false;
      }
    }
    return true;
  }
  static std::pair<size_t, size_t> Extent(const FileObject& object) {
    std::pair<size_t, size_t> extent = object.bytes.front();
    for (const auto& [begin, end] : object.bytes) {
      extent = {std::min(extent.first, begin), std::max(extent.second, end)};
    }
    return extent;
  }
  static void RecordProperty(const char* name, const std::string& figures) {
    ::testing::Test::RecordProperty(name, figures);
  }
  std::string Figures() const {
    const auto text = [](size_t number) { return std::to_string(number); };
    return text(tally.cases) + " copies; " + text(tally.untouched) + " untouched, " +
           text(tally.lost) + " lost; own bytes untouched " + text(tally.own_untouched) + ", " +
           text(tally.own_lost) + " lost, " + text(tally.misplaced) + " misplaced; " +
           text(tally.silent) + " silent";
  }

  std::string file_;
  FileObjects objects_;
};

// --- The documents ---

// With keys that are the same in every run.
std::string FileOf(vnDocument& document) {
  constexpr size_t kKeySize = 38;
  std::string text = SavedText(document);
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

Ref<vnLink> AddLink(vnDocument& document, int32_t from, int32_t to) {
  const auto link = Make<vnLink>();
  link->SetOriginStepKey(document.Steps()->Item(Variant(from))->Key());
  link->SetDestinationStepKey(document.Steps()->Item(Variant(to))->Key());
  document.Links()->Add(link.get());
  return link;
}

// Of some 3 KB.
Ref<vnDocument> SmallDocument() {
  const auto document = Make<vnDocument>();
  document->Details()->SetTitle(u"Buying");
  for (const char16_t* label : {u"Ask", u"Order", u"Pay"}) {
    const Ref<vnStep> step = document->NewStep();
    step->SetLabel(label);
    step->Figure()->SetLeft(30);
    step->PerformedBy()->Add(Variant(u"Employee"));
    step->NewTask()->SetName(u"Write it");
  }
  AddLink(*document, 1, 2)->Line()->SetExtraPointX(1, 5);
  document->Details()->NewRevision(u"first");
  return document;
}

// With something in every part.
Ref<vnDocument> RichDocument() {
  const auto document = SmallDocument();
  document->Details()->SetPurpose(u"To have it");
  document->SetReadPassword(u"secret");
  document->Details()->AuthorisedBy()->SetDisplayName(u"Head");
  document->Details()->NewRevision(u"second");
  document->Chart()->SetGridSizeX(200);
  document->Chart()->SetPicture(automation::MakePlainPicture({1, 2, 3}).get());
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
    step->Conditions()->Add(condition.get());
    const auto file = Make<vnFile>();
    file->SetFileName(u"file" + number);
    file->SetDocID(i % 2);
    step->Files()->Add(file.get());
    const auto jump = Make<vnJump>();
    jump->SetFileName(u"other" + number + u".vn6");
    step->Jumps()->Add(jump.get());
    step->GetProperties()->Add(u"cost", Variant(i));
    step->Dependancies()->Add(document->Steps()->Item(Variant(1))->Key(), Variant(u""));
    AddLink(*document, i, i + 1)->Line()->SetExtraPointX(1, i);
    if (i % 5 != 0) continue;
    const auto container = Make<vnContainer>();
    container->SetLabel(u"Group " + number);
    document->ContainerCollection()->Add(container.get());
    step->SetContainerKey(container->Key());
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
    if (i > 1) AddLink(*document, i - 1, i);
  }
  return document;
}

std::string HostileFile(uint32_t seed) {
  RandomContent content(seed);
  return FileOf(*RandomDocument(content));
}

// --- The tests ---

TEST(Salvage, FindsNothingWrongWithWhatWasSaved) {
  for (const Ref<vnDocument>& document : {SmallDocument(), RichDocument(), LongDocument()}) {
    const std::string file = FileOf(*document);
    const Salvaged salvaged = Salvage(file);
    EXPECT_EQ(salvaged.text, file);
    EXPECT_TRUE(salvaged.damages.empty());
  }
  // Zero bytes in a text are told of, and stay.
  for (uint32_t seed = 1; seed <= 4; ++seed) {
    const std::string file = HostileFile(seed);
    const Salvaged salvaged = Salvage(file);
    EXPECT_EQ(FileObjects(salvaged.text).all().size(), FileObjects(file).all().size());
    for (const Damage& damage : salvaged.damages) {
      EXPECT_EQ(damage.kind, Damage::Kind::kLost) << damage.place;
      EXPECT_EQ(damage.size, 1U) << damage.place;
    }
  }
}

TEST(Salvage, LosesNothingToASingleBit) {
  Measure measure(FileOf(*SmallDocument()));
  const auto step = static_cast<size_t>(std::max(1, 67 / Times(1)));
  for (size_t bit = 0; bit < 8 * measure.file().size(); bit += step) {
    DamagedCopy copy(measure.file());
    copy.Change(bit / 8, static_cast<char>(measure.file()[bit / 8] ^ (1 << bit % 8)));
    measure.Try(copy);
  }
  measure.ExpectNothingLost("bits");
}

TEST(Salvage, KeepsAllBeforeACut) {
  Measure measure(FileOf(*SmallDocument()));
  const auto step = static_cast<size_t>(std::max(1, 11 / Times(1)));
  for (size_t at = 0; at < measure.file().size(); at += step) {
    DamagedCopy copy(measure.file());
    copy.Remove(at, measure.file().size() - at);
    measure.Try(copy);
  }
  measure.ExpectNothingLost("cuts");
}

TEST(Salvage, KeepsWhatDamageInSeveralPlacesLeaves) {
  const std::pair<const char*, std::string> files[] = {{"small", FileOf(*SmallDocument())},
                                                       {"rich", FileOf(*RichDocument())},
                                                       {"long", FileOf(*LongDocument())},
                                                       {"hostile", HostileFile(Seed())}};
  for (const auto& [name, file] : files) {
    Measure measure(file);
    Random random(Seed());
    for (int32_t cases = Times(25); cases > 0; --cases) measure.Try(AnyDamage(file, random));
    measure.Expect(name);
  }
}

}  // namespace
}  // namespace vndoc6::testing
