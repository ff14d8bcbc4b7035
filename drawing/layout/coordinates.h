// Where cells stand across: U. Brandes, B. Koepf, "Fast and Simple Horizontal Coordinate
// Assignment" (2001), with ports, and with frames and main paths straight before all else.
#pragma once

#include "layered.h"

namespace vndoc6::drawing {

// How far the place of a cell is from that of its right neighbour at least.
double Distance(const Cell& left, const Cell& right);

// How far a segment is from straight: the x of its lower end less that of its upper end.
double Skew(const LayeredGraph& graph, const Segment& segment);

// Gives the cells their places: the average of the four alignments.
void AlignCells(LayeredGraph& graph);

}  // namespace vndoc6::drawing
