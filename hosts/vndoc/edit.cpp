// vndoc edit: any member of any object in a document, by path.
#include <memory>
#include <ostream>

#include "command.h"
#include "document_json.h"
#include "member_path.h"
#include "vndoc6/automation/picture.h"

namespace vndoc {
namespace {

constexpr const char* kHelp =
    "PATH names a member: Details/Title, Steps/3/Label, Steps/ItemByStepIndex(2)/Tasks/Count.\n"
    "In a collection a number is a position and anything else a key; Item(\"3\") is the key 3.\n"
    "`vndoc members` lists the classes, `vndoc members vnStep` the members of one.\n"
    "\n"
    "  vndoc edit plan.vn6 get Steps/1           an object is shown as JSON\n"
    "  vndoc edit plan.vn6 set Steps/1/Label \"Pay the invoice\"\n"
    "  vndoc edit plan.vn6 set Steps/1/Figure/Shape vnsDecision\n"
    "  vndoc edit plan.vn6 set Steps/1/Figure/Picture @logo.bmp\n"
    "  vndoc edit plan.vn6 call Details/NewRevision \"Reviewed\"\n"
    "  vndoc edit plan.vn6 call CopyStep @Steps/1    an object is named by @ and its path\n"
    "\n"
    "set and call save the document. Other vndoc processes wait meanwhile; what they saved is "
    "kept.";

struct EditOptions {
  std::string file;
  std::string action;
  std::string path;
  std::vector<std::string> values;
  std::string output;
};

void WriteValue(const Variant& value, std::ostream& out) {
  if (value.IsObject()) {
    Object* const object = value.ToObject().get();
    if (object != nullptr && object->GetClassInfo() != nullptr) return WriteJson(*object, out);
  }
  std::string text;
  if (value.IsObject() || value.kind() == vndoc6::automation::ValueKind::kError ||
      value.kind() == vndoc6::automation::ValueKind::kNull) {
    AppendJson(value, vndoc6::automation::TypeKind::kVariant, text);
  } else {
    text = vndoc6::automation::ToUtf8(value.ToText());
  }
  out << text << '\n';
}

void Change(Context& context, const EditOptions& options, vnDocument& document) {
  const Ref<Object> root(&document);
  const Place place = FindPlace(root, options.path);
  if (options.action == "set") {
    if (options.values.size() != 1) throw Failure("set takes one value");
    SetAt(root, place, options.values.front());
  } else {
    const Variant result = CallAt(root, place, options.values);
    if (!result.IsEmpty()) WriteValue(result, context.out);
  }
}

void Read(Context& context, const EditOptions& options) {
  if (!options.values.empty()) throw Failure("get takes no value");
  const Ref<Object> root(Load(context, options.file));
  WriteValue(GetAt(root, FindPlace(root, options.path)), context.out);
}

void Edit(Context& context, const EditOptions& options) {
  if (options.action == "get") return Read(context, options);
  if (options.output.empty()) {
    return ChangeDocument(context, options.file, [&](vnDocument& document) {
      Change(context, options, document);
      return true;
    });
  }
  const auto document = Load(context, options.file, true);
  Change(context, options, *document);
  SaveAs(context, *document, options.output);
}

}  // namespace

void AddEdit(CLI::App& app, Context& context) {
  auto* const command =
      app.add_subcommand("edit", "Reads, sets or calls any member of any object in a document");
  const auto options = std::make_shared<EditOptions>();
  command->add_option("FILE", options->file, "The document")->required();
  command->add_option("ACTION", options->action, "What to do")
      ->required()
      ->check(CLI::IsMember({"get", "set", "call"}));
  command->add_option("PATH", options->path, "The member")->required();
  command->add_option("VALUE", options->values,
                      "The new value, or the arguments; behind -- when one begins with -");
  command->add_option("-o,--output", options->output, "Save under this name instead");
  AddForce(*command, context);
  command->footer(kHelp);
  command->callback([options, &context] { Edit(context, *options); });
}

}  // namespace vndoc
