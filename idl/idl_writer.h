// Writes the published contract, the interface definition, from the member tables
// and the documentation comments.
#pragma once

#include <string>
#include <string_view>

#include "doc_comments.h"

namespace vndoc6 {

// The whole text of VNDoc6.idl.
std::string WriteIdl(const DocComments& comments);

// A text in quotes, as interface definitions and C++ write it.
std::string Quoted(std::string_view text);

}  // namespace vndoc6
