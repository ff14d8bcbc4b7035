// The shapes that a figure can have.
#pragma once

#include <cstdint>

#include "vndoc6/automation/class_info.h"

namespace vndoc6 {

// Published, the spelling of vnsOctogon and vnsCollate68 included: never change one. A figure
// stores any other number too.
enum EnumVantrelShapes : int32_t {
  vnsEllipse = 0,
  vnsRectangle = 1,
  vnsRoundRect = 2,
  vnsDiamond = 3,
  vnsNorthTriangle = 4,
  vnsSouthTriangle = 5,
  vnsEastTriangle = 6,
  vnsWestTriangle = 7,
  vnsHexagon = 8,
  vnsRectEdgeBump = 9,
  vnsRectEdgeEtched = 10,
  vnsRectEdgeRaised = 11,
  vnsRectEdgeSunken = 12,
  vnsTriangleRectangle = 13,
  vnsPentagon = 14,
  vnsOctogon = 15,
  vnsProcess = 50,
  vnsAlternateProcess = 51,
  vnsDecision = 52,
  vnsData = 53,
  vnsPredefinedProcess = 54,
  vnsInternalStorage = 55,
  vnsDocument = 56,
  vnsMultiDocument = 57,
  vnsTermination = 58,
  vnsPreparation = 59,
  vnsManualInput = 60,
  vnsManualOperation = 61,
  vnsConnector = 62,
  vnsOffPageConnection = 63,
  vnsCard = 64,
  vnsPunchedTape = 65,
  vnsSummingJunction = 66,
  vnsOr = 67,
  vnsCollate68 = 68,
  vnsSort = 69,
  vnsExtract = 70,
  vnsMerge = 71,
  vnsStoredData = 72,
  vnsDelay = 73,
  vnsSequentialAccessStorage = 74,
  vnsMagneticDisk = 75,
  vnsDirectAccessStorage = 76,
  vnsDisplay = 77,
  vnsTransport = 78,
  vnsProcessIso9000 = 79,
};

template <>
const automation::EnumInfo& automation::DescribeEnum<EnumVantrelShapes>();

}  // namespace vndoc6
