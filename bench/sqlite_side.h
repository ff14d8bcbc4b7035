// The same content in SQLite: a table a class, a row an object, a column a property.
#pragma once

#include <cstddef>
#include <string>

#include "bench/content.h"

namespace vndoc6::bench {

// Creates the file. Throws std::runtime_error on failure.
void WriteDatabase(const std::string& file, const Content<std::string>& content);
// Reads every column of every row. Gives a number that depends on all of them.
size_t ReadDatabase(const std::string& file);

}  // namespace vndoc6::bench
