#include "templates/tag_text.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace vndoc6 {
namespace {

constexpr TextView kGenerator = u"{\\*\\generator VNDoc6;}";
// What may stand before the generator: words of the header, and the first words of its groups.
constexpr TextView kHeaderWords[] = {
    u"rtf",       u"fbidis",    u"ansi",        u"mac",        u"pc",      u"pca",
    u"ansicpg",   u"uc",        u"fromtext",    u"fromhtml",   u"deff",    u"adeff",
    u"stshfdbch", u"stshfloch", u"stshfhich",   u"stshfbi",    u"deflang", u"deflangfe",
    u"adeflang",  u"themelang", u"themelangfe", u"themelangcs"};
constexpr TextView kHeaderGroups[] = {
    u"fonttbl",      u"filetbl",   u"colortbl",          u"defchp", u"defpap", u"stylesheet",
    u"latentstyles", u"listtable", u"listoverridetable", u"pgptbl", u"revtbl", u"rsidtbl",
    u"mmathPr"};
// Between words of an instruction. Line ends mean nothing in rich text, so none comes from there,
// and the blank that closes a control word is not taken for the end of a word.
constexpr char16_t kWordEnd = u'\n';

bool IsLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}
bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool IsLineEnd(char16_t unit) { return unit == u'\r' || unit == u'\n'; }

enum class TokenKind { kOpen, kClose, kWord, kSymbol, kText, kLineEnd };

struct Token {
  TokenKind kind;
  TextView text;  // all of it, as it stands there
  TextView word;  // of a control word: its letters
};

// Takes rich text apart. Every unit of the text is in exactly one token.
class TokenReader {
 public:
  explicit TokenReader(TextView text) : text_(text) {}
  size_t position() const { return position_; }

  bool Next(Token& token) {
    if (position_ >= text_.size()) return false;
    const size_t start = position_;
    token.kind = Take(token);
    token.text = text_.substr(start, position_ - start);
    return true;
  }

 private:
  TokenKind Take(Token& token) {
    const char16_t unit = text_[position_];
    if (unit == u'\\') return TakeControl(token);
    ++position_;
    if (unit == u'{') return TokenKind::kOpen;
    if (unit == u'}') return TokenKind::kClose;
    if (IsLineEnd(unit)) return TokenKind::kLineEnd;
    position_ = std::min(text_.find_first_of(u"{}\\\r\n", position_), text_.size());
    return TokenKind::kText;
  }

  TokenKind TakeControl(Token& token) {
    const size_t start = position_;
    const char16_t first = At(start + 1);
    if (!IsLetter(first)) {
      // A character by its code is four units, any other escaped character two.
      position_ = std::min(start + (first == u'\'' ? 4 : 2), text_.size());
      return TokenKind::kSymbol;
    }
    ++position_;
    while (IsLetter(At(position_))) ++position_;
    token.word = text_.substr(start + 1, position_ - start - 1);
    const size_t number = TakeNumber();
    if (At(position_) == u' ') ++position_;
    // A binary run: that many units which mean nothing here, braces among them.
    if (token.word == u"bin") position_ += std::min(number, text_.size() - position_);
    return TokenKind::kWord;
  }

  // The number of a control word; 0 for none and for a negative one.
  size_t TakeNumber() {
    const bool negative = At(position_) == u'-' && IsDigit(At(position_ + 1));
    if (negative) ++position_;
    size_t number = 0;
    for (; IsDigit(At(position_)); ++position_) {
      number = std::min(number * 10 + static_cast<size_t>(At(position_) - u'0'), text_.size());
    }
    return negative ? 0 : number;
  }

  char16_t At(size_t at) const { return at < text_.size() ? text_[at] : u'\0'; }

  TextView text_;
  size_t position_ = 0;
};

// Takes the next word off an instruction, without its quotes.
TextView TakeWord(TextView& instruction) {
  instruction.remove_prefix(std::min(instruction.find_first_not_of(kWordEnd), instruction.size()));
  const bool quoted = instruction.starts_with(u'"');
  if (quoted) instruction.remove_prefix(1);
  const size_t end = std::min(instruction.find(quoted ? u'"' : kWordEnd), instruction.size());
  const TextView word = instruction.substr(0, end);
  instruction.remove_prefix(std::min(end + 1, instruction.size()));
  return word;
}

// The field's name, from its instruction; empty when there is none.
Text FieldName(TextView instruction) {
  TextView word = TakeWord(instruction);
  if (automation::EqualsAsciiFolded("MERGEFIELD", word)) word = TakeWord(instruction);
  // An escaped backslash begins a switch.
  if (word.starts_with(u"\\\\")) return {};
  Text name(word);
  std::replace(name.begin(), name.end(), kWordEnd, u' ');
  return name;
}

// Copies rich text, and when a field group closes, puts its tag in the place of what was copied.
class FieldReplacer {
 public:
  void Take(const Token& token) {
    if (token.kind == TokenKind::kOpen) groups_.push_back(OpenGroup());
    out_ += token.text;
    if (token.kind == TokenKind::kClose) {
      CloseGroup();
    } else if (token.kind != TokenKind::kOpen && !groups_.empty()) {
      TakeContent(token, groups_.back());
    }
  }
  bool found_field() const { return found_field_; }
  Text& out() { return out_; }

 private:
  enum class Role { kOther, kField, kInstruction };
  struct Group {
    size_t start;  // in out_
    Role role;
    bool begins = true;    // nothing yet that says what it is
    bool starred = false;  // begins with "\*"
  };

  Group OpenGroup() {
    const bool within = !groups_.empty() && groups_.back().role == Role::kInstruction;
    if (!groups_.empty()) groups_.back().begins = false;
    return {out_.size(), within ? Role::kInstruction : Role::kOther};
  }

  void CloseGroup() {
    if (groups_.empty()) return;
    const Group group = groups_.back();
    groups_.pop_back();
    if (group.role != Role::kField) return;
    const Text name = FieldName(instructions_.back());
    instructions_.pop_back();
    if (name.empty()) return;
    out_.resize(group.start);
    out_.append(u"{<").append(name).append(u">}");
  }

  void TakeContent(const Token& token, Group& group) {
    if (token.kind == TokenKind::kLineEnd) return;
    if (group.begins && token.text == u"\\*") {
      group.starred = true;
      return;
    }
    if (group.begins) {
      group.begins = false;
      if (token.kind == TokenKind::kWord) SetRole(token.word, group);
    }
    if (group.role == Role::kInstruction) AddToInstruction(token);
  }

  void SetRole(TextView first_word, Group& group) {
    if (first_word == u"field" && !group.starred) {
      group.role = Role::kField;
      instructions_.emplace_back();
      found_field_ = true;
    } else if (first_word == u"fldinst" && IsInField()) {
      group.role = Role::kInstruction;
    } else if (group.starred) {
      group.role = Role::kOther;
    }
  }
  bool IsInField() const {
    return groups_.size() > 1 && groups_[groups_.size() - 2].role == Role::kField;
  }

  // Formatting is no part of an instruction; characters are, as they stand there. A character by
  // its number keeps the blank behind it: a digit may follow.
  void AddToInstruction(const Token& token) {
    if (token.kind == TokenKind::kWord && token.word != u"u") return;
    Text& instruction = instructions_.back();
    instruction += token.text;
    if (token.kind == TokenKind::kText) {
      std::replace(instruction.end() - static_cast<std::ptrdiff_t>(token.text.size()),
                   instruction.end(), u' ', kWordEnd);
    }
  }

  Text out_;
  std::vector<Group> groups_;
  std::vector<Text> instructions_;  // of the fields that are open
  bool found_field_ = false;
};

// Finds where the generator is named, and where it would be: behind the header.
class GeneratorFinder {
 public:
  struct Range {
    size_t begin, end;
  };

  explicit GeneratorFinder(TextView text) : reader_(text) {
    Token token{};
    for (size_t begin = 0; reader_.Next(token); begin = reader_.position()) {
      if (token.kind == TokenKind::kOpen) {
        if (depth_++ == 1) group_ = {begin, {}, true};
      } else if (token.kind == TokenKind::kClose) {
        if (--depth_ == 0) return;
        if (depth_ == 1) TakeGroup();
      } else if (token.kind != TokenKind::kLineEnd) {
        Take(token);
      }
    }
  }

  const std::vector<Range>& found() const { return found_; }
  size_t place() const { return place_; }

 private:
  // In the document's own group.
  struct Group {
    size_t begin;
    TextView word;  // that says what it is
    bool begins;    // nothing yet that says so
  };

  void Take(const Token& token) {
    const TextView word = token.kind == TokenKind::kWord ? token.word : TextView();
    if (depth_ == 1) return TakeHeader(word, kHeaderWords);
    if (depth_ != 2 || !group_.begins || token.text == u"\\*") return;
    group_.begins = false;
    group_.word = word;
  }

  void TakeGroup() {
    if (group_.word == u"generator") {
      found_.push_back({group_.begin, reader_.position()});
    } else {
      TakeHeader(group_.word, kHeaderGroups);
    }
  }

  void TakeHeader(TextView word, std::span<const TextView> known) {
    in_header_ = in_header_ && std::find(known.begin(), known.end(), word) != known.end();
    if (in_header_) place_ = reader_.position();
  }

  TokenReader reader_;
  size_t depth_ = 0;
  Group group_{};
  bool in_header_ = true;
  size_t place_ = 0;
  std::vector<Range> found_;
};

// Names this library as the generator, in the place of those that were named.
Text WithGenerator(TextView value) {
  const GeneratorFinder finder(value);
  std::vector<GeneratorFinder::Range> replaced = finder.found();
  if (replaced.empty()) replaced.push_back({finder.place(), finder.place()});
  Text out(value.substr(0, replaced.front().begin));
  out += kGenerator;
  for (size_t i = 0; i < replaced.size(); ++i) {
    const size_t next = i + 1 < replaced.size() ? replaced[i + 1].begin : value.size();
    out += value.substr(replaced[i].end, next - replaced[i].end);
  }
  return out;
}

}  // namespace

Text TagProcessorText(TextView value) {
  TokenReader reader(value);
  FieldReplacer replacer;
  Token token;
  const bool opened = reader.Next(token) && token.kind == TokenKind::kOpen;
  if (opened) replacer.Take(token);
  if (!opened || !reader.Next(token) || token.kind != TokenKind::kWord || token.word != u"rtf") {
    return Text(value);
  }
  do {
    replacer.Take(token);
  } while (reader.Next(token));
  return replacer.found_field() ? std::move(replacer.out()) : WithGenerator(value);
}

}  // namespace vndoc6
