// The documentation comments above the member functions of the classes, read from the headers: the
// one source of help strings and of the reference.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "vndoc6/automation/class_info.h"

namespace vndoc6 {

class DocComments {
 public:
  // Reads every header below the folders.
  static DocComments ReadFolders(std::initializer_list<std::filesystem::path> folders);
  // Reads one header, laid out as clang-format does.
  void ReadHeader(std::string_view text);

  // The comment directly above a class; empty when there is none.
  std::string OfClass(std::string_view class_name) const;
  // The comment directly above what gives a published member of a class: the function of that name,
  // or else the accessor with Get or Value before it, or else the one that sets it; in the class
  // itself before the ones that it derives from. Raises std::runtime_error when there is none.
  std::string OfMember(std::string_view class_name, std::string_view member) const;
  // Of a property's put: that of the function that sets it, or else the member's.
  std::string OfPut(std::string_view class_name, std::string_view member) const;
  // Of a row of a member table.
  std::string OfRow(const automation::ClassInfo& info, const automation::MemberInfo& row) const;
  // That of an event: of "__vnDocument" the native listener's in DocumentListener.
  std::string OfEvent(std::string_view event_interface, std::string_view event) const;

 private:
  struct Class {
    std::string comment;
    std::vector<std::string> bases;
    std::map<std::string, std::string, std::less<>> functions;
  };
  // Null when none of the names, which are tried in their order, has one.
  const std::string* Find(std::string_view class_name,
                          std::initializer_list<std::string> functions) const;

  std::map<std::string, Class, std::less<>> classes_;
};

// What fits a line of help: "Free text. Setting it reports nothing." gives "Free text."
std::string FirstSentence(std::string_view comment);

}  // namespace vndoc6
