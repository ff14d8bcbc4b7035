#include "bag/bag_scanner.h"

#include <algorithm>
#include <functional>

#include "automation/currency_text.h"
#include "bag/escape.h"
#include "bag/levelled_text.h"
#include "vndoc6/automation/base64.h"
#include "vndoc6/automation/services.h"

namespace vndoc6::bag {
namespace {

using automation::Currency;
using automation::Variant;

constexpr size_t kNowhere = std::string_view::npos;

// By the first character of a value that is not a text: its tag, or 0 when there is none such.
struct PlainTags {
  constexpr PlainTags() {
    for (const char c : std::string_view("TFsdctixpeno")) of[static_cast<unsigned char>(c)] = c;
    for (const char c : std::string_view("-0123456789")) of[static_cast<unsigned char>(c)] = '0';
  }
  char of[256] = {};
};
constexpr PlainTags kPlainTags;

template <class Number, class Value = Number>
bool ReadAs(std::string_view digits, Variant& value) {
  Number number{};
  if (!ReadNumber(digits, number)) return false;
  value = Value{number};
  return true;
}

bool ReadPicture(std::string_view base64, Variant& value) {
  std::optional<std::vector<uint8_t>> bytes = automation::FromBase64(base64);
  if (!bytes) return false;
  value = automation::services().make_picture(std::move(*bytes));
  return true;
}

bool ReadPlain(char tag, std::string_view digits, Variant& value) {
  switch (tag) {
    case '0':
      return ReadAs<int32_t>(digits, value);
    case 's':
      return ReadAs<float>(digits, value);
    case 'd':
      return ReadAs<double>(digits, value);
    case 't':
      return ReadAs<double, automation::Date>(digits, value);
    case 'i':
      return ReadAs<int16_t>(digits, value);
    case 'x':
      return ReadAs<int32_t, automation::ErrorValue>(digits, value);
    case 'c': {
      Currency currency;
      if (!ReadDecimal(digits, currency)) return false;
      value = currency;
      return true;
    }
    case 'p':
      return ReadPicture(digits, value);
    case 'o':
      value = automation::Ref<automation::Object>();
      return digits.empty();
    case 'n':
      value = automation::Null();
      return digits.empty();
    case 'e':
      value = Variant();
      return digits.empty();
    default:
      value = tag == 'T';
      return digits.empty();
  }
}

bool IsWithin(std::string_view part, std::string_view whole) {
  const std::less_equal<const char*> not_after;
  return not_after(whole.data(), part.data()) &&
         not_after(part.data() + part.size(), whole.data() + whole.size());
}

// The next of two characters; bytes.size() when there is none.
size_t FindEither(std::string_view bytes, char one, char other, size_t from) {
  while (from < bytes.size() && bytes[from] != one && bytes[from] != other) ++from;
  return from;
}

}  // namespace

BagScanner::BagScanner(KeptText text, std::string_view separator)
    : separator_(separator.empty() ? ":" : separator),
      text_(std::move(text)),
      bytes_(text_.raw()),
      depth_(text_.depth()) {
  // Only the customary separator is part of an escape.
  if (separator_ != ":" && depth_ > 0) GoOnUnescaped();
}

bool BagScanner::Next(BagEntry& entry) {
  if (AtEnd()) return false;
  if (Scan(entry)) return true;
  if (depth_ > 0) {
    GoOnUnescaped();
    return Next(entry);
  }
  faulty_ = true;
  text_.NoteFault(fault_offset());
  return false;
}

bool BagScanner::Scan(BagEntry& entry) {
  const size_t key_end = FindKeyEnd();
  if (key_end == kNowhere) return false;
  entry.key = bytes_.substr(position_, key_end - position_);
  const size_t opening = OpeningSize(key_end);
  return opening != 0 ? ScanText(key_end + opening, entry) : ScanPlain(key_end + 1, entry);
}

// A nested key ends at a "=" or at what unescaping makes an opening.
size_t BagScanner::FindKeyEnd() const {
  if (depth_ == 0) return bytes_.find('=', position_);
  for (size_t at = position_; (at = FindEither(bytes_, '=', '^', at)) < bytes_.size(); ++at) {
    if (bytes_[at] == '=') return at;
    const Escape escape = ReadEscape(bytes_.substr(at));
    if (escape.size == 0) continue;
    if (escape.what == EscapeClass::kOpening && escape.level <= depth_) return at;
    at += escape.size - 1;
  }
  return kNowhere;
}

// The length of the opening that begins where a key ends; 0 when the value is not a text.
size_t BagScanner::OpeningSize(size_t key_end) const {
  const std::string_view rest = bytes_.substr(key_end);
  if (depth_ == 0) return rest.starts_with(kOpening) ? kOpening.size() : 0;
  return rest[0] == '^' ? ReadEscape(rest).size : 0;
}

bool BagScanner::ScanText(size_t start, BagEntry& entry) {
  entry.tag = '"';
  if (depth_ == 0) {
    const size_t quote = bytes_.find('"', start);
    if (quote == kNowhere || !AtSeparator(quote + 1)) return false;
    entry.value = bytes_.substr(start, quote - start);
    position_ = quote + 1 + separator_.size();
    return true;
  }
  const size_t closing = FindClosing(start);
  if (closing == kNowhere) return false;
  entry.value = bytes_.substr(start, closing - start);
  position_ = closing + ReadEscape(bytes_.substr(closing)).size;
  return true;
}

// A nested value has escapes of deeper levels only, and ends at what unescaping makes a closing.
size_t BagScanner::FindClosing(size_t start) const {
  for (size_t at = start; (at = bytes_.find('^', at)) != kNowhere;) {
    const Escape escape = ReadEscape(bytes_.substr(at));
    if (escape.size != 0 && escape.level <= depth_) {
      return escape.what == EscapeClass::kClosing ? at : kNowhere;
    }
    at += std::max<size_t>(escape.size, 1);
  }
  return kNowhere;
}

bool BagScanner::ScanPlain(size_t start, BagEntry& entry) {
  if (start >= bytes_.size()) return false;
  entry.tag = kPlainTags.of[static_cast<unsigned char>(bytes_[start])];
  if (entry.tag == 0) return false;
  const size_t end = FindSeparator(start + 1);
  if (end == kNowhere) return false;
  if (entry.tag != '0') ++start;
  entry.value = bytes_.substr(start, end - start);
  position_ = end + separator_.size();
  return true;
}

bool BagScanner::AtSeparator(size_t at) const {
  if (at >= bytes_.size() || bytes_[at] != separator_[0]) return false;
  return separator_.size() == 1 || bytes_.substr(at).starts_with(separator_);
}

// Where a value that is not a text ends. A nested one, whose separator is the customary one, has no
// escapes.
size_t BagScanner::FindSeparator(size_t from) const {
  if (depth_ > 0) {
    const size_t end = FindEither(bytes_, ':', '^', from);
    return end < bytes_.size() && bytes_[end] == ':' ? end : kNowhere;
  }
  while ((from = bytes_.find(separator_[0], from)) != kNowhere && !AtSeparator(from)) ++from;
  return from;
}

void BagScanner::GoOnUnescaped() {
  copied_from_ = position_;
  copy_ = KeptText(text_, bytes_.substr(position_), depth_).Unescaped();
  bytes_ = copy_.raw();
  position_ = 0;
  depth_ = 0;
}

size_t BagScanner::fault_offset() const {
  if (depth_ == text_.depth()) return position_;
  // No escape reaches over a '^', so the pieces between them can be unescaped one by one.
  const std::string_view raw = text_.raw();
  size_t copied = 0;
  std::string piece;
  for (size_t start = copied_from_; start < raw.size();) {
    if (copied == position_) return start;
    const size_t end = std::min(raw.find('^', start + 1), raw.size());
    piece.clear();
    AppendUnescaped(raw.substr(start, end - start), text_.depth(), piece);
    copied += piece.size();
    if (copied > position_) return end - std::min(copied - position_, end - start);
    start = end;
  }
  return raw.size();
}

const KeptText& BagScanner::HomeOf(std::string_view part) const {
  return !copy_.empty() && IsWithin(part, copy_.raw()) ? copy_ : text_;
}

Text BagScanner::KeyOf(const BagEntry& entry) const {
  if (entry.key.find('^') == kNowhere) return automation::FromUtf8(entry.key);
  std::string once;
  AppendUnescaped(entry.key, HomeOf(entry.key).depth(), once);
  std::string key;
  // "^-" is no escape, so no escape reaches over it.
  size_t done = 0;
  for (size_t at; (at = once.find("^-", done)) != kNowhere; done = at + 2) {
    AppendUnescaped(std::string_view(once).substr(done, at - done), 1, key);
    key += '=';
  }
  AppendUnescaped(std::string_view(once).substr(done), 1, key);
  return automation::FromUtf8(key);
}

KeptText BagScanner::TextOf(const BagEntry& entry) const {
  const KeptText& home = HomeOf(entry.value);
  return KeptText(home, entry.value, home.depth() + 1);
}

KeptText BagScanner::WholeOf(const BagEntry& entry) const {
  const KeptText& home = HomeOf(entry.key);
  const size_t start = static_cast<size_t>(entry.key.data() - home.raw().data());
  size_t end = static_cast<size_t>(entry.value.data() - home.raw().data()) + entry.value.size();
  if (entry.tag != '"') {
    end += separator_.size();
  } else if (home.depth() == 0) {
    end += 1 + separator_.size();
  } else {
    end += ReadEscape(home.raw().substr(end)).size;
  }
  return KeptText(home, home.raw().substr(start, end - start), home.depth());
}

bool BagScanner::ValueOf(const BagEntry& entry, Variant& value) const {
  if (entry.tag != '"') return ReadPlain(entry.tag, entry.value, value);
  value = TextOf(entry).ToText();
  return true;
}

}  // namespace vndoc6::bag
