// The same content in RapidJSON: an object an object, a member a property.
#pragma once

#include <cstddef>
#include <string>

#include "bench/content.h"

namespace vndoc6::bench {

std::string JsonBytes(const Content<std::string>& content);

// Parses in place and visits every value. Gives a number that depends on all of them.
size_t ParseAndWalkJson(std::string& bytes);

}  // namespace vndoc6::bench
