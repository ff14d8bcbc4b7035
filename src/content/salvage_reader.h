// Reads what is left of a damaged document file.
#pragma once

#include <vector>

#include "content/salvage_entries.h"
#include "content/salvage_tree.h"

namespace vndoc6::salvage {

// The document, with all that came up in it anywhere, each object in the place that it belongs to.
Node ReadDocument(const DamagedFile& file, std::vector<Damage>& damages);

}  // namespace vndoc6::salvage
