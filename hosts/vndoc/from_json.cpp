// vndoc from-json: a document from what `show --json` wrote.
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <streambuf>

#include "document_json.h"
#include "json_tree.h"
#include "scratch_folder.h"
#include "vndoc6/bag/properties.h"

namespace vndoc {

using vndoc6::Properties;
using vndoc6::automation::Make;
using vndoc6::automation::ToUtf8;

namespace {

struct FromJsonOptions {
  std::string json;
  std::string file;
};

bool SameScalars(const JsonNode& left, const JsonNode& right) {
  if (left.IsNumber() && right.IsNumber()) return left.real() == right.real();
  if (left.kind() != right.kind() || left.IsStructure()) return false;
  if (left.IsText()) return left.text() == right.text();
  return left.kind() == JsonKind::kNull || left.boolean() == right.boolean();
}

// The values of the JSON that the document did not take, by their path: what is read only and
// follows from nothing else, or breaks a rule of the library.
void CollectLost(const JsonNode& wanted, const JsonNode& made, const std::string& path,
                 std::vector<std::string>& lost) {
  if (wanted.kind() != made.kind() || !wanted.IsStructure() || wanted.size() > made.size()) {
    if (!SameScalars(wanted, made)) lost.push_back(path);
    return;
  }
  const std::string above = path.empty() ? path : path + '/';
  if (wanted.IsObject()) {
    for (const JsonNode value : wanted) {
      const auto other = made.Find(value.key());
      if (other) CollectLost(value, *other, above + std::string(value.key()), lost);
    }
    return;
  }
  size_t position = 0;
  auto other = made.begin();
  for (const JsonNode value : wanted) {
    CollectLost(value, *other, above + std::to_string(++position), lost);
    ++other;
  }
}

// The key of the details comes from a file and from nowhere else. The keys are those of the file
// format.
void KeepDetailsKey(const JsonTree& json, const Text& file) {
  const auto details = json.root().Find("Details");
  const auto key = details ? details->Find("Key") : std::nullopt;
  if (!key) return;
  const auto whole = Make<Properties>();
  if (!whole->ReadFromFile(file, {})) throw Failure("a temporary file can't be read again");
  const auto part = Make<Properties>();
  part->LoadText(whole->Value(u"D", Variant(u"")), 0, 0, u":");
  part->SetValue(u"K", Variant(FromJson(*key).ToText()));
  whole->SetValue(u"D", Variant(part->GetText()));
  if (!whole->WriteToFile(file, {})) throw Failure("a temporary file can't be written again");
}

// Compares what is written to it with a text.
class Comparison : public std::streambuf {
 public:
  explicit Comparison(std::string_view expected) : expected_(expected) {}
  bool is_same() const { return is_same_ && expected_.empty(); }

 private:
  std::streamsize xsputn(const char* bytes, std::streamsize size) override {
    const std::string_view written(bytes, static_cast<size_t>(size));
    is_same_ = is_same_ && expected_.starts_with(written);
    if (is_same_) expected_.remove_prefix(written.size());
    return size;
  }
  int_type overflow(int_type) override { return traits_type::eof(); }

  std::string_view expected_;
  bool is_same_ = true;
};

// Reads the file again: what counts is what it holds now. What show wrote comes back the same to
// the last byte, as a rule.
void WarnOfLost(Context& context, const std::string& bytes, const JsonTree& wanted,
                const std::string& file) {
  const auto document = Load(context, file);
  Comparison comparison(bytes);
  std::ostream compared(&comparison);
  WriteJson(*document, compared);
  if (comparison.is_same()) return;
  std::ostringstream made;
  WriteJson(*document, made);
  std::vector<std::string> lost;
  CollectLost(wanted.root(), JsonTree(made.view()).root(), "", lost);
  for (const std::string& path : lost) {
    context.err << "vndoc: " << path << ": the document has another value\n";
  }
}

// Nothing is at the file's name until all of it is made.
void MakeFile(Context& context, const JsonTree& json, Ref<vnDocument> document,
              const std::string& file) {
  const ScratchFolder folder;
  const Text name = folder.Name("made");
  SaveAs(context, *document, ToUtf8(name));
  document = nullptr;
  KeepDetailsKey(json, name);
  WriteBytes(context, file, ReadBytes(context, ToUtf8(name)));
}

void Convert(Context& context, const FromJsonOptions& options) {
  const std::string bytes = ReadBytes(context, options.json);
  std::optional<JsonTree> json;
  Ref<vnDocument> document;
  try {
    json.emplace(bytes);
    document = DocumentFromJson(*json);
  } catch (const Failure& failure) {
    throw Failure(options.json + ": " + failure.what());
  }
  MakeFile(context, *json, std::move(document), options.file);
  WarnOfLost(context, bytes, *json, options.file);
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
