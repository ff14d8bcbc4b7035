// The goals: how the measurements must compare, and the table that shows whether they do.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace vndoc6::bench {

// Every value that each measurement gave. A count that a benchmark reports stands under
// "<benchmark>#<counter>", seconds under the benchmark's own name.
using Results = std::map<std::string, std::vector<double>>;

// Prints a row for each goal whose measurements are there. Gives the number of those whose ratio is
// worse than what was reached before by more than the factor `margin`. With `small`, of documents
// of the small size.
int PrintGoals(const Results& results, bool small, double margin);

}  // namespace vndoc6::bench
