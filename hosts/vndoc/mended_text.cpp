#include "mended_text.h"

#include <algorithm>
#include <set>
#include <utility>

#include "bag/escape.h"
#include "one_line.h"

namespace vndoc {

using vndoc6::bag::Escape;
using vndoc6::bag::EscapeClass;
using vndoc6::bag::kEscapeLiterals;
using vndoc6::bag::ReadEscape;

namespace {

constexpr std::string_view kOpening = kEscapeLiterals[0];
constexpr std::string_view kClosing = kEscapeLiterals[1];
// Openings and closings of the document's parts, and of the entries in a part.
constexpr size_t kPart = 0;
constexpr size_t kEntry = 1;
// What stands for a quote or a "=" that means nothing.
constexpr char kMeaningless = '?';

class Mender {
 public:
  explicit Mender(std::string_view file) : file_(file) {}

  Mended Mend() {
    for (size_t at = 0; (at = file_.find_first_of("^\"", at)) != file_.npos;) {
      at += file_[at] == '"' ? Quote(at) : Caret(at);
    }
    mended_.text += file_.substr(taken_);
    mended_.breaks_off = open_ > 0;
    return std::move(mended_);
  }

 private:
  // Each takes what begins at `at`, and gives its size.
  size_t Quote(size_t at) {
    const std::string_view before = file_.substr(0, at + 1);
    if (before.ends_with(kOpening)) {
      Open(kPart, at + 1 - kOpening.size(), kOpening.size());
      return 1;
    }
    if (open_ == kPart && OpenDamaged(at - std::min(at, kOpening.size() - 1), at)) {
      return last_end_ - at;
    }
    const size_t size = std::min(kClosing.size(), file_.size() - at);
    if (open_ == 1 && file_.substr(at).starts_with(kClosing)) {
      Close(kPart, at, size);
      return size;
    }
    // Most likely one that damage made, unless a part follows.
    if (open_ > kPart && !PartFollows(at + 1)) {
      TakeTo(at);
      Note(at);
      mended_.text += kMeaningless;
      taken_ = at + 1;
      return 1;
    }
    Close(kPart, at, size);
    return size;
  }

  size_t Caret(size_t at) {
    const Escape escape = ReadEscape(file_.substr(at));
    if (escape.level == kEntry && escape.what == EscapeClass::kOpening) {
      Open(kEntry, at, escape.size);
    } else if (escape.level == kEntry && escape.what == EscapeClass::kClosing) {
      Close(kEntry, at, escape.size);
    }
    return std::max<size_t>(escape.size, 1);
  }

  bool PartFollows(size_t from) const {
    const size_t quote = file_.find('"', from);
    return quote == file_.npos || file_.substr(0, quote + 1).ends_with(kOpening);
  }

  void Open(size_t level, size_t at, size_t size) {
    // An entry without a part belongs to what the next closing removes.
    if (open_ < level && !OpenDamaged(last_end_, at)) return;
    const size_t key = KeyStart(level, at);
    if (open_ > level) {
      TakeTo(key);
      CloseDownTo(level, at);
    }
    if (level == kEntry) MoveToItsPart(key);
    keys_[level] = std::string(file_.substr(key, at - key));
    if (level == kPart) seen_.insert(keys_[level]);
    if (keys_[level].find('=') != std::string::npos) TakeKey(level, key, at);
    if (level == kPart) keys_[kEntry].clear();
    open_ = level + 1;
    End(at + size);
  }

  // Opens the part whose opening begins in [from, to] with one byte damaged; false without one.
  bool OpenDamaged(size_t from, size_t to) {
    for (size_t at = std::max(from, last_end_); at <= to; ++at) {
      const std::string_view there = file_.substr(at, kOpening.size());
      size_t alike = 0;
      for (size_t i = 0; i < there.size(); ++i) alike += there[i] == kOpening[i] ? 1 : 0;
      if (alike + 1 != kOpening.size() || there.size() != kOpening.size()) continue;
      TakeTo(at);
      mended_.text += kOpening;
      taken_ = at + kOpening.size();
      Open(kPart, at, kOpening.size());
      Note(at);
      return true;
    }
    return false;
  }

  // Steps and links that come up in another part lack the opening of their own.
  void MoveToItsPart(size_t key) {
    constexpr std::pair<std::string_view, const char*> kParts[] = {{"T{", "S"}, {"L{", "LK"}};
    for (const auto& [prefix, part] : kParts) {
      if (file_.substr(key, prefix.size()) != prefix || seen_.count(part) > 0) continue;
      TakeTo(key);
      Note(key);
      AppendClosing(kPart);
      mended_.text.append(part).append(kOpening);
      keys_[kPart] = part;
      seen_.insert(part);
    }
  }

  // A key's own "=" is written otherwise: this one is damage, and would end the key.
  void TakeKey(size_t level, size_t key, size_t at) {
    TakeTo(key);
    Note(at);
    std::replace(keys_[level].begin(), keys_[level].end(), '=', kMeaningless);
    mended_.text += keys_[level];
    taken_ = at;
  }

  void Close(size_t level, size_t at, size_t size) {
    if (open_ > level + 1) {
      TakeTo(at);
      CloseDownTo(level + 1, at);
    }
    if (open_ == level + 1) {
      TakeTo(at);
      AppendClosing(level);
      taken_ = at + size;
    } else {
      // Its opening is damaged: without its end the beginning is of no use.
      Note(at);
      TakeTo(PlainEntriesEnd(level, at));
      taken_ = at + size;
    }
    open_ = std::min(open_, level);
    End(at + size);
  }

  void CloseDownTo(size_t level, size_t at) {
    Note(at);
    while (open_ > level) AppendClosing(--open_);
  }

  void AppendClosing(size_t level) {
    if (level == kPart) {
      mended_.text += kClosing;
    } else {
      vndoc6::bag::AppendEscape(EscapeClass::kClosing, level, mended_.text);
    }
  }

  // Behind the entries that are no texts and whole. A collection of keyed objects has none.
  size_t PlainEntriesEnd(size_t level, size_t limit) const {
    size_t end = last_end_;
    if (level == kEntry && keys_[kEntry].find('{') != std::string::npos) return end;
    for (size_t colon; (colon = file_.substr(0, limit).find(':', end)) != file_.npos;) {
      const std::string_view entry = file_.substr(end, colon - end);
      if (entry.find('=') == entry.npos || entry.find_first_of("^\"~") != entry.npos) break;
      end = colon + 1;
    }
    return end;
  }

  // Where the key begins that ends at `at`. In front of it may lie what is left of a closing.
  size_t KeyStart(size_t level, size_t at) const {
    const std::string_view before = file_.substr(last_end_, at - last_end_);
    if (open_ > level) {
      // The members of a collection have keys that begin alike.
      const std::string& sibling = keys_[level];
      const size_t brace = sibling.find('{');
      const size_t alike =
          brace == sibling.npos ? before.npos : before.rfind(sibling.substr(0, brace + 1));
      if (alike != before.npos) return last_end_ + alike;
    }
    size_t start = before.find_last_of(":\"^");
    if (start == before.npos) return last_end_;
    start += before[start] == '^' ? 2 : 1;
    return last_end_ + std::min(start, before.size());
  }

  void Note(size_t at) {
    std::string key;
    for (size_t level = 0; level < open_; ++level) {
      key += (level == 0 ? "" : "/") + OneLine(vndoc6::automation::FromUtf8(keys_[level]));
    }
    mended_.places.push_back({std::move(key), at});
  }

  void TakeTo(size_t end) {
    if (end > taken_) mended_.text += file_.substr(taken_, end - taken_);
    taken_ = std::max(taken_, end);
  }
  void End(size_t at) {
    TakeTo(at);
    last_end_ = at;
  }

  std::string_view file_;
  Mended mended_;
  size_t open_ = 0;             // so many levels are open
  std::string keys_[2];         // the last at each level
  std::set<std::string> seen_;  // the parts
  size_t taken_ = 0;            // up to here the file is in the text, or left out
  size_t last_end_ = 0;         // of the last opening or closing
};

}  // namespace

Mended Mend(std::string_view file) { return Mender(file).Mend(); }

}  // namespace vndoc
