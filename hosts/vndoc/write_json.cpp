#include <ostream>
#include <unordered_map>
#include <vector>

#include "document_json.h"
#include "vndoc6/content/walk.h"

namespace vndoc {

using vndoc6::Content;
using vndoc6::ContentReader;
using vndoc6::automation::CallKind;
using vndoc6::automation::TypeKind;

namespace {

// Writes as it walks: a document's JSON is far larger than the document.
class Writer : public vndoc6::ContentVisitor {
 public:
  explicit Writer(std::ostream& out) : out_(out) {}

  void OnObjectBegin(TextView name, Object& object) override {
    if (!levels_.empty()) {
      NextLine();
      if (!levels_.back().is_list) WriteName(vndoc6::automation::ToUtf8(name));
    }
    const bool is_list = ContentReader::IsCollection(object);
    text_ += is_list ? '[' : '{';
    levels_.push_back({is_list, true, object.GetClassInfo()});
  }

  void OnObjectEnd(Object&) override {
    CloseRow();
    const Level level = levels_.back();
    levels_.pop_back();
    if (!level.is_empty) StartLine();
    text_ += level.is_list ? ']' : '}';
  }

  // The members are all there is to say of a collection.
  void OnValue(const Content& content) override {
    if (levels_.back().is_list) return;
    if (content.index <= 1) {
      NextLine();
      WriteName(content.name);
      if (content.index == 1) text_ += '[';
    } else {
      while (++row_size_ < content.index) text_ += ", 0";
      text_ += ", ";
    }
    row_size_ = content.index;
    AppendJson(content.value, IsOfAnyType(content) ? TypeKind::kVariant : TypeKind::kVoid, text_);
  }

  void Finish() {
    text_ += '\n';
    Flush();
  }

 private:
  struct Level {
    bool is_list;
    bool is_empty;
    const ClassInfo* info;
  };

  bool IsOfAnyType(const Content& content) {
    const auto [known, is_new] = any_type_.try_emplace(content.name.data(), false);
    if (is_new) {
      const ClassInfo& info = *levels_.back().info;
      const auto* const member =
          info.Find(info.FindMember(vndoc6::automation::FromUtf8(content.name)), CallKind::kGet);
      known->second = member->result.kind == TypeKind::kVariant;
    }
    return known->second;
  }

  void WriteName(std::string_view name) { text_.append("\"").append(name).append("\": "); }

  void NextLine() {
    CloseRow();
    if (!levels_.back().is_empty) text_ += ',';
    levels_.back().is_empty = false;
    StartLine();
  }

  void CloseRow() {
    if (row_size_ > 0) text_ += ']';
    row_size_ = 0;
  }

  void StartLine() {
    text_ += '\n';
    text_.append(2 * levels_.size(), ' ');
    constexpr size_t kEnough = 65536;
    if (text_.size() > kEnough) Flush();
  }

  void Flush() {
    out_ << text_;
    text_.clear();
  }

  std::ostream& out_;
  std::string text_;
  std::vector<Level> levels_;
  int32_t row_size_ = 0;  // 0 outside of a row
  // By the place of the name in its member table: each table has names of its own.
  std::unordered_map<const char*, bool> any_type_;
};

}  // namespace

void WriteJson(Object& object, std::ostream& out) {
  Writer writer(out);
  vndoc6::Walk(object, writer);
  writer.Finish();
}

}  // namespace vndoc
