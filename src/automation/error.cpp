#include "vndoc6/automation/error.h"

#include <algorithm>
#include <iterator>

namespace vndoc6::automation {
namespace {

struct NumberedText {
  int32_t number;
  const char16_t* text;
};

constexpr NumberedText kDescriptions[] = {
    {kInvalidCall, u"Invalid procedure call or argument."},
    {kOverflow, u"Overflow."},
    {kOutOfMemory, u"Out of memory."},
    {kSubscriptOutOfRange, u"Subscript out of range."},
    {kTypeMismatch, u"Type mismatch."},
    {kPathFileAccess, u"Path/File access error."},
    {kObjectNotSet, u"Object variable not set."},
    {kCannotCreateObject, u"Can't create object."},
    {kNotSupported, u"Object doesn't support this property or method."},
    {kNamedArgumentNotFound, u"Named argument not found."},
    {kArgumentNotOptional, u"Argument not optional."},
    {kWrongArgumentCount, u"Wrong number of arguments or invalid property assignment."},
    {kWrongState, u"Can't use method in current state."},
    {kReadOnlyProperty, u"Can't assign to read-only property."},
};

}  // namespace

Text DescribeError(int32_t number) {
  const auto* found = std::find_if(std::begin(kDescriptions), std::end(kDescriptions),
                                   [&](const NumberedText& row) { return row.number == number; });
  return found != std::end(kDescriptions) ? found->text : u"Automation error.";
}

Error::Error(int32_t number, Text description, Text source)
    : number_(number),
      description_(description.empty() ? DescribeError(number) : std::move(description)),
      source_(std::move(source)) {
  what_ = "error " + std::to_string(number_) + ": " + ToUtf8(description_);
  if (!source_.empty()) what_ += " (" + ToUtf8(source_) + ")";
}

}  // namespace vndoc6::automation
