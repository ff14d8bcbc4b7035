// vndoc from-json: a document from what `show --json` wrote.
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>

#include "document_json.h"
#include "json_reader.h"
#include "json_values.h"
#include "scratch_folder.h"
#include "vndoc6/content/walk.h"

namespace vndoc {

using vndoc6::PassingRead;
using vndoc6::automation::CallKind;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::TypeKind;

namespace {

struct FromJsonOptions {
  std::string json;
  std::string file;
};

// A JSON that is read twice: what can be read once only is put aside.
class JsonFile {
 public:
  JsonFile(Context& context, const std::string& file) : name_(file), path_(FromUtf8(file)) {
    std::error_code not_there;
    if (file != "-" && std::filesystem::is_regular_file(path_, not_there)) return;
    std::ifstream stream;
    if (file != "-") stream = Open();
    folder_.emplace();
    path_ = folder_->Name("json");
    std::ofstream(path_, std::ios::binary) << (file == "-" ? context.in : stream).rdbuf();
  }

  const std::string& name() const { return name_; }
  std::ifstream Open() const {
    errno = 0;
    std::ifstream stream(path_, std::ios::binary);
    if (!stream) throw Failure(name_ + ": " + std::strerror(errno != 0 ? errno : EIO));
    return stream;
  }

 private:
  std::string name_;
  std::filesystem::path path_;
  std::optional<ScratchFolder> folder_;
};

// Tells of the values of a JSON that a document did not take: what is read only and follows from
// nothing else, or breaks a rule of the library.
class LostValues : public ContentSink {
 public:
  LostValues(vnDocument& document, std::ostream& out) : out_(out) {
    open_.push_back({&document, "", nullptr, nullptr, 0});
  }

  void Begin(const ContentMember& part) override {
    const Open& above = open_.back();
    Ref<Object> object;
    if (above.object) object = Get(*above.object, part, 0).ToObject();
    if (above.object && !object) Tell(part.member->name);
    open_.push_back({object, Below(part.member->name), nullptr, nullptr, 0});
  }

  void BeginMember() override {
    Open& list = open_.back();
    const std::string position = std::to_string(++list.position);
    if (list.object && !list.members) list.members = Enumerate(*list.object);
    Ref<Object> member;
    if (list.members && !list.members->Next(member)) Tell(position);
    std::unique_ptr<PassingRead> reading;
    if (member) reading = std::make_unique<PassingRead>(*member);
    open_.push_back({member, Below(position), nullptr, std::move(reading), 0});
  }

  void End() override { open_.pop_back(); }

  void Value(const ContentMember& member, const Variant& value, int32_t index) override {
    const Ref<Object>& object = open_.back().object;
    if (!object || IsSame(value, Get(*object, member, index), member.member->result.kind)) return;
    Tell(member.member->name + (index == 0 ? "" : "/" + std::to_string(index)));
  }

 private:
  struct Open {
    Ref<Object> object;  // null when it is lost, and told of
    std::string path;
    Ref<vndoc6::automation::Enumerator> members;
    std::unique_ptr<PassingRead> reading;
    int32_t position;
  };

  static Variant Get(Object& object, const ContentMember& content, int32_t index) {
    const Variant argument(index);
    const std::span<const Variant> arguments(&argument, index == 0 ? 0 : 1);
    const Variant value = object.InvokeMember(content.member->id, CallKind::kGet, {arguments, {}});
    // What a host's own object holds is its text.
    const bool is_foreign =
        content.member->result.kind == TypeKind::kDispatch && value.IsObject() && value.ToObject();
    return is_foreign ? vndoc6::automation::Get(*value.ToObject(), u"Text") : value;
  }

  static bool IsSame(const Variant& wanted, const Variant& made, TypeKind type) {
    const TypeKind written = type == TypeKind::kVariant ? type : TypeKind::kVoid;
    std::string json_wanted, json_made;
    AppendJson(wanted, written, json_wanted);
    AppendJson(made, written, json_made);
    // 3 and 3.0 are one number.
    using nlohmann::json;
    return json_wanted == json_made || json::parse(json_wanted) == json::parse(json_made);
  }

  std::string Below(const std::string& name) const {
    const std::string& path = open_.back().path;
    return path.empty() ? name : path + '/' + name;
  }
  void Tell(const std::string& name) {
    out_ << "vndoc: " << Below(name) << ": the document has another value\n";
  }

  std::ostream& out_;
  std::vector<Open> open_;
};

Ref<vnDocument> Read(const JsonFile& json) {
  std::ifstream text = json.Open();
  try {
    return DocumentFromJson(text);
  } catch (const Failure& failure) {
    throw Failure(json.name() + ": " + failure.what());
  }
}

void Convert(Context& context, const FromJsonOptions& options) {
  const JsonFile json(context, options.json);
  SaveAs(context, *Read(json), options.file);
  // What counts is what the file holds now.
  const Ref<vnDocument> document = Load(context, options.file);
  LostValues lost(*document, context.err);
  std::ifstream text = json.Open();
  ReadJson(text, vnDocument::classInfo(), lost);
}

}  // namespace

void AddFromJson(CLI::App& app, Context& context) {
  auto* const command =
      app.add_subcommand("from-json", "Makes a document from what show --json wrote");
  const auto options = std::make_shared<FromJsonOptions>();
  command->add_option("JSON", options->json, "The JSON; - is standard input")->required();
  command->add_option("FILE", options->file, "The document to make")->required();
  command->footer(
      "Left-out members keep the value they have in a new document. Passwords are in no JSON: set\n"
      "them with vndoc edit FILE call SetReadPassword and SetWritePassword.");
  command->callback([options, &context] { Convert(context, *options); });
}

}  // namespace vndoc
