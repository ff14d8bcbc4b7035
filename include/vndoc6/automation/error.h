// The one exception of the library: an automation error with number, description and source.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "vndoc6/automation/text.h"

namespace vndoc6::automation {

// Error numbers leave the process (COM hosts see 0x800A0000 + number). Never change one.
enum ErrorNumber : int32_t {
  kInvalidCall = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kTypeMismatch = 13,
  kPathFileAccess = 75,
  kObjectNotSet = 91,
  kCannotCreateObject = 429,
  kNotSupported = 438,
  kNamedArgumentNotFound = 448,
  kArgumentNotOptional = 449,
  kWrongArgumentCount = 450,
  kWrongState = 2198,
  kReadOnlyProperty = 2199,
};

class Error : public std::exception {
 public:
  // An empty description stands for the number's customary one.
  explicit Error(int32_t number, Text description = {}, Text source = {});

  int32_t number() const { return number_; }
  const Text& description() const { return description_; }
  const Text& source() const { return source_; }
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  int32_t number_;
  Text description_;
  Text source_;
  std::string what_;
};

// A late-bound call that did not reach its member: no such member, or arguments that don't fit.
class BindingError : public Error {
 public:
  explicit BindingError(int32_t number) : Error(number) {}
};

// A binding error that names the argument at fault (0 = first).
class ArgumentError : public BindingError {
 public:
  ArgumentError(int32_t number, int index) : BindingError(number), index_(index) {}
  int index() const { return index_; }

 private:
  int index_;
};

// Runs `body`, which reads or converts an argument. A value that does not fit becomes an error that
// names the argument; what else goes wrong, in a host's object that is asked, goes on as it is.
template <class Body>
auto ForArgument(int index, Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const Error& error) {
    if (error.number() != kTypeMismatch && error.number() != kOverflow) throw;
    throw ArgumentError(error.number(), index);
  }
}

// The customary description of an error number ("Type mismatch.").
Text DescribeError(int32_t number);

}  // namespace vndoc6::automation
