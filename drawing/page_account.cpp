#include "page_account.h"

#include "addresses.h"
#include "markup.h"

namespace vndoc6::drawing {
namespace {

std::string NamedLink(const Attachment& attachment, const std::string& address) {
  const Text& name = attachment.DisplayName();
  if (attachment.FileName().empty()) return Shown(name);
  const std::string file = Code(attachment.FileName());
  return name.empty() ? LinkTo(address, file) : LinkTo(address, Shown(name)) + " " + file;
}

}  // namespace

std::string Account::StepName(size_t place) const {
  vnStep& step = *procedure.steps[place - 1];
  const Text label = step.Label();
  const int32_t index = step.StepIndex();
  return (index > 0 ? std::to_string(index) + ". " : std::string()) +
         (label.empty() ? words(Word::kUnnamedStep) : Shown(label));
}

std::string Account::StepLink(size_t place) const {
  return "<a href=\"#step-" + std::to_string(place) + "\">" + StepName(place) + "</a>";
}

std::string Account::Condition(vnCondition& condition) {
  std::string shown = Shown(condition.DisplayName());
  if (!condition.ConditionTest().empty()) shown += " " + Code(condition.ConditionTest());
  if (!condition.FailMessage().empty()) shown += " &ndash; " + Shown(condition.FailMessage());
  return shown + Others(condition, "div");
}

std::string Account::LinkConditions(vnLink& link) {
  const std::string when = std::string(words(Word::kIf)) + " ";
  std::string conditions;
  if (!link.ConditionExpression().empty()) {
    conditions += Element("div", when + Code(link.ConditionExpression()));
  }
  ForEach(link.Conditions(), [&](vnCondition& condition) {
    conditions += Element("div", when + Condition(condition));
  });
  return conditions + Others(link, "div");
}

std::string Account::FileLink(const Attachment& attachment) const {
  return NamedLink(attachment, AddressOf(attachment.FileName(), options.folder));
}

std::string Account::JumpLink(const Attachment& jump) const {
  const Text report = options.report_of ? options.report_of(jump.FileName()) : Text();
  return NamedLink(jump,
                   report.empty() ? AddressOf(jump.FileName(), options.folder) : AddressOf(report));
}

std::string Account::Others(automation::Object& object, const char* element) {
  std::string out;
  for (const OtherValue& value : other_values.Of(object)) {
    out += Element(element, Code(automation::FromUtf8(value.name)) + " " + Shown(value.value));
  }
  return out;
}

}  // namespace vndoc6::drawing
