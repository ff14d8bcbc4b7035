// The level parts of lines between two layers: each on a track that no other uses there, in an
// order in which lines that need not cross do not (G. Sander, "Layout of Directed Hypergraphs with
// Orthogonal Hyperedges", 2004).
#pragma once

#include <cstddef>
#include <vector>

namespace vndoc6::drawing {

// A line that comes down at one place and goes on at another.
struct Run {
  double upper = 0;
  double lower = 0;
};

// The run's track, from the top down. Where lines would have to change places with each other, one
// goes on two tracks, with a bend between them.
struct Track {
  size_t track = 0;
  bool bent = false;
  double middle = 0;  // where it leaves its first track for its second
  size_t second = 0;
};

struct Tracks {
  std::vector<Track> of_run;
  size_t count = 0;
};

// `straight`: where other lines go straight down.
Tracks ChooseTracks(const std::vector<Run>& runs, const std::vector<double>& straight);

}  // namespace vndoc6::drawing
