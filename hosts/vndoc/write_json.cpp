#include <ostream>

#include "automation/picture.h"
#include "document_json.h"

namespace vndoc {

using vndoc6::automation::CallKind;
using vndoc6::automation::Picture;

namespace {

// Writes as it walks: a document's JSON is far larger than the document.
class Writer {
 public:
  explicit Writer(std::ostream& out) : out_(out) {}
  ~Writer() { Flush(); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  void WriteObject(Object& object) {
    const ClassInfo* const info = object.GetClassInfo();
    if (info == nullptr) {
      text_ += "null";  // a host's own object: nothing is known about it
      return;
    }
    const WalkPlan& plan = PlanOf(*info);
    if (plan.is_collection) return WriteCollection(object);
    Open('{');
    for (const WalkedMember& member : plan.members) {
      NextLine();
      text_.append("\"").append(member.get->name).append("\": ");
      WriteMember(object, member);
    }
    Close('}');
  }

  void EndLine() { text_ += '\n'; }

 private:
  void WriteCollection(Object& collection) {
    Open('[');
    ForEachIn(collection, [this](Object& member) {
      NextLine();
      WriteObject(member);
    });
    Close(']');
  }

  void WriteMember(Object& object, const WalkedMember& member) {
    if (member.count != nullptr) return WriteIndexed(object, member);
    const Variant value = GetMember(object, *member.get);
    Object* const part = value.IsObject() ? value.ToObject().get() : nullptr;
    if (part != nullptr && dynamic_cast<Picture*>(part) == nullptr) {
      WriteObject(*part);
    } else {
      AppendJson(value, member.get->result.kind, text_);
    }
  }

  void WriteIndexed(Object& object, const WalkedMember& member) {
    const int32_t count = GetMember(object, *member.count).ToLong();
    text_ += '[';
    for (int32_t i = 1; i <= count; ++i) {
      if (i > 1) text_ += ", ";
      const Variant index(i);
      AppendJson(object.InvokeMember(member.get->id, CallKind::kGet, {{&index, 1}, {}}),
                 member.get->result.kind, text_);
    }
    text_ += ']';
  }

  void Open(char bracket) {
    text_ += bracket;
    ++depth_;
    first_ = true;
  }
  void NextLine() {
    if (!first_) text_ += ',';
    first_ = false;
    StartLine();
  }
  void Close(char bracket) {
    --depth_;
    if (!first_) StartLine();
    first_ = false;
    text_ += bracket;
  }
  void StartLine() {
    text_ += '\n';
    text_.append(2 * depth_, ' ');
    constexpr size_t kEnough = 65536;
    if (text_.size() > kEnough) Flush();
  }
  void Flush() {
    out_ << text_;
    text_.clear();
  }

  std::ostream& out_;
  std::string text_;
  size_t depth_ = 0;
  bool first_ = true;
};

}  // namespace

void WriteJson(Object& object, std::ostream& out) {
  Writer writer(out);
  writer.WriteObject(object);
  writer.EndLine();
}

}  // namespace vndoc
