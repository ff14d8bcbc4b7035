#include "vndoc6/chart/shapes.h"

namespace vndoc6::automation {

template <>
const EnumInfo& DescribeEnum<EnumVantrelShapes>() {
  static constexpr EnumValue kValues[] = {
      {"vnsEllipse", vnsEllipse},
      {"vnsRectangle", vnsRectangle},
      {"vnsRoundRect", vnsRoundRect},
      {"vnsDiamond", vnsDiamond},
      {"vnsNorthTriangle", vnsNorthTriangle},
      {"vnsSouthTriangle", vnsSouthTriangle},
      {"vnsEastTriangle", vnsEastTriangle},
      {"vnsWestTriangle", vnsWestTriangle},
      {"vnsHexagon", vnsHexagon},
      {"vnsRectEdgeBump", vnsRectEdgeBump},
      {"vnsRectEdgeEtched", vnsRectEdgeEtched},
      {"vnsRectEdgeRaised", vnsRectEdgeRaised},
      {"vnsRectEdgeSunken", vnsRectEdgeSunken},
      {"vnsTriangleRectangle", vnsTriangleRectangle},
      {"vnsPentagon", vnsPentagon},
      {"vnsOctogon", vnsOctogon},
      {"vnsProcess", vnsProcess},
      {"vnsAlternateProcess", vnsAlternateProcess},
      {"vnsDecision", vnsDecision},
      {"vnsData", vnsData},
      {"vnsPredefinedProcess", vnsPredefinedProcess},
      {"vnsInternalStorage", vnsInternalStorage},
      {"vnsDocument", vnsDocument},
      {"vnsMultiDocument", vnsMultiDocument},
      {"vnsTermination", vnsTermination},
      {"vnsPreparation", vnsPreparation},
      {"vnsManualInput", vnsManualInput},
      {"vnsManualOperation", vnsManualOperation},
      {"vnsConnector", vnsConnector},
      {"vnsOffPageConnection", vnsOffPageConnection},
      {"vnsCard", vnsCard},
      {"vnsPunchedTape", vnsPunchedTape},
      {"vnsSummingJunction", vnsSummingJunction},
      {"vnsOr", vnsOr},
      {"vnsCollate68", vnsCollate68},
      {"vnsSort", vnsSort},
      {"vnsExtract", vnsExtract},
      {"vnsMerge", vnsMerge},
      {"vnsStoredData", vnsStoredData},
      {"vnsDelay", vnsDelay},
      {"vnsSequentialAccessStorage", vnsSequentialAccessStorage},
      {"vnsMagneticDisk", vnsMagneticDisk},
      {"vnsDirectAccessStorage", vnsDirectAccessStorage},
      {"vnsDisplay", vnsDisplay},
      {"vnsTransport", vnsTransport},
      {"vnsProcessIso9000", vnsProcessIso9000},
  };
  static constexpr EnumInfo info{
      "EnumVantrelShapes",
      {0x61CEF320, 0x8C4D, 0x4F3C, {0xB8, 0x7F, 0xEA, 0x52, 0x11, 0x53, 0xE1, 0xCC}},
      "The shapes of a figure.",
      kValues};
  return info;
}

}  // namespace vndoc6::automation
