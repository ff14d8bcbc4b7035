// vndoc from-json: a document from what `show --json` wrote.
#include <memory>
#include <ostream>
#include <sstream>

#include "common/properties.h"
#include "document_json.h"

namespace vndoc {

using vndoc6::Properties;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;

namespace {

struct FromJsonOptions {
  std::string json;
  std::string file;
};

Json Parse(Context& context, const std::string& file) {
  const std::string bytes = ReadBytes(context, file);
  try {
    return Json::parse(bytes);
  } catch (const Json::parse_error& error) {
    throw Failure(file + ": not JSON, at byte " + std::to_string(error.byte));
  }
}

// The values of the JSON that the document did not take, by their path: what is read only and
// follows from nothing else, or breaks a rule of the library.
void CollectLost(const Json& wanted, const Json& made, const std::string& path,
                 std::vector<std::string>& lost) {
  if (wanted.type() != made.type() || !wanted.is_structured() || wanted.size() > made.size()) {
    if (wanted != made) lost.push_back(path);
    return;
  }
  for (const auto& [name, value] : wanted.items()) {
    std::string place = path;
    if (!place.empty()) place += '/';
    place += name;
    if (wanted.is_array()) {
      CollectLost(value, made[std::stoul(name)], place, lost);
    } else if (made.contains(name)) {
      CollectLost(value, made[name], place, lost);
    }
  }
}

// The key of the details comes from a file and from nowhere else. The keys are those of the file
// format.
void KeepDetailsKey(const Json& json, const std::string& file) {
  const auto details = json.find("Details");
  if (details == json.end() || !details->contains("Key")) return;
  const Text name = FromUtf8(file);
  const auto whole = Make<Properties>();
  if (!whole->ReadFromFile(name, {})) throw Failure(file + ": can't be read again");
  const auto part = Make<Properties>();
  part->LoadText(whole->Value(u"D", Variant(u"")), 0, 0, u":");
  part->SetValue(u"K", Variant(FromJson((*details)["Key"]).ToText()));
  whole->SetValue(u"D", Variant(part->GetText()));
  if (!whole->WriteToFile(name, {})) throw Failure(file + ": can't be written again");
}

// Reads the file again: what counts is what it holds now.
void WarnOfLost(Context& context, const Json& wanted, const std::string& file) {
  std::stringstream made;
  WriteJson(*Load(context, file), made);
  std::vector<std::string> lost;
  CollectLost(wanted, Json::parse(made), "", lost);
  for (const std::string& path : lost) {
    context.err << "vndoc: " << path << ": the document has another value\n";
  }
}

void Convert(Context& context, const FromJsonOptions& options) {
  const Json json = Parse(context, options.json);
  try {
    SaveAs(context, *DocumentFromJson(json), options.file);
  } catch (const Failure& failure) {
    throw Failure(options.json + ": " + failure.what());
  }
  KeepDetailsKey(json, options.file);
  WarnOfLost(context, json, options.file);
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
