// vndoc diff: what differs between two documents.
#include <memory>
#include <ostream>

#include "command.h"
#include "document_json.h"
#include "one_line.h"
#include "vndoc6/content/compare.h"

namespace vndoc {

using vndoc6::Difference;

namespace {

struct DiffOptions {
  std::string left;
  std::string right;
  bool json = false;
  vndoc6::CompareOptions compare;
};

const char* KindName(Difference::Kind kind) {
  switch (kind) {
    case Difference::Kind::kValue:
      return "value";
    case Difference::Kind::kOnlyLeft:
      return "only left";
    case Difference::Kind::kOnlyRight:
      return "only right";
    case Difference::Kind::kOrder:
      return "order";
  }
  return "?";
}

void AppendDifference(const Difference& difference, std::string& out) {
  out.append("  {\"kind\": \"").append(KindName(difference.kind)).append("\", \"object\": ");
  AppendJsonText(difference.object, out);
  out += ", \"class\": \"" + difference.class_name + "\", \"property\": ";
  AppendJsonText(difference.property, out);
  out += ", \"left\": ";
  AppendJson(difference.left, vndoc6::automation::TypeKind::kVariant, out);
  out += ", \"right\": ";
  AppendJson(difference.right, vndoc6::automation::TypeKind::kVariant, out);
  out += '}';
}

void Diff(Context& context, const DiffOptions& options) {
  const auto left = Load(context, options.left);
  const auto right = Load(context, options.right);
  const auto differences = vndoc6::Compare(*left, *right, options.compare);
  std::string text;
  for (const Difference& difference : differences) {
    if (options.json) {
      text += text.empty() ? "[\n" : ",\n";
      AppendDifference(difference, text);
    } else {
      text += OneLine(vndoc6::DescribeDifference(difference)) + '\n';
    }
  }
  if (options.json) text += text.empty() ? "[]\n" : "\n]\n";
  context.out << text;
  if (!differences.empty()) context.status = kFindings;
}

}  // namespace

void AddDiff(CLI::App& app, Context& context) {
  auto* const command =
      app.add_subcommand("diff", "Says what differs between two documents, object by object");
  const auto options = std::make_shared<DiffOptions>();
  command->add_option("LEFT", options->left, "A document")->required();
  command->add_option("RIGHT", options->right, "Another document")->required();
  command->add_flag("--json", options->json, "As JSON");
  command->add_flag("--ignore-identity", options->compare.ignore_identity,
                    "Leave out GUID and IR, which no two documents share");
  command->footer(
      "A line is a property with its values (object/Property: left | right), an object that only\n"
      "the left (-) or the right document (+) has, or one that stands at another position.\n"
      "Exit status: 0 no difference, 1 differences, 2 trouble.");
  command->callback([options, &context] { Diff(context, *options); });
}

}  // namespace vndoc
