#include "tests/endurance/numbered_document.h"

#include "vndoc6/automation/error.h"
#include "vndoc6/details/details.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"

namespace vndoc6::testing {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;

constexpr int32_t kSteps = 3;
constexpr int32_t kRepeats = 100;

Text Digits(int32_t number) { return automation::FromUtf8(std::to_string(number)); }

// Long, and no part of it like the same part for another number.
Text LongText(int32_t number) {
  Text text;
  for (int32_t i = 0; i < kRepeats; ++i) text += Digits(number) + u'\u00E9';
  return text;
}

}  // namespace

Ref<vnDocument> NumberedDocument(int32_t number) {
  auto document = Make<vnDocument>();
  for (int32_t i = 0; i < kSteps; ++i) {
    document->NewStep();
    document->Links()->Add(Make<vnLink>().get());
  }
  SetNumber(*document, number);
  return document;
}

void SetNumber(vnDocument& document, int32_t number) {
  const Text digits = Digits(number);
  const Text long_text = LongText(number);
  document.Details()->SetTitle(digits);
  for (int32_t i = 1; i <= kSteps; ++i) {
    document.Steps()->Item(Variant(i))->SetLabel(digits);
    document.Steps()->Item(Variant(i))->SetInstructions(long_text);
    document.Links()->Item(Variant(i))->SetText(digits);
  }
  document.SetConnectionString(long_text);
}

std::optional<int32_t> NumberOf(vnDocument& document) {
  const Text digits = document.Details()->Title();
  if (digits.empty() || document.Steps()->Count() != kSteps ||
      document.Links()->Count() != kSteps) {
    return std::nullopt;
  }
  const int32_t number = Variant(digits).ToLong();
  const Text long_text = LongText(number);
  for (int32_t i = 1; i <= kSteps; ++i) {
    const Ref<vnStep> step = document.Steps()->Item(Variant(i));
    if (step->Label() != digits || step->Instructions() != long_text ||
        document.Links()->Item(Variant(i))->Text() != digits) {
      return std::nullopt;
    }
  }
  if (document.ConnectionString() != long_text) return std::nullopt;
  return number;
}

std::optional<int32_t> NumberInFile(const Text& name) {
  const auto document = Make<vnDocument>();
  try {
    if (!document->Load(name, u"")) return std::nullopt;
  } catch (const automation::Error&) {
    // What is no document counts as one of the older format, for which there is no converter here.
    return std::nullopt;
  }
  return NumberOf(*document);
}

}  // namespace vndoc6::testing
