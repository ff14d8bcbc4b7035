#include "schema/signature.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/core/document_events.h"
#include "vndoc6/core/document_kind.h"

namespace vndoc6::automation {

template <>
const EnumInfo& DescribeEnum<EnumVantrelDetailID>() {
  static constexpr EnumValue kValues[] = {
      {"vndLeft", vndLeft},
      {"vndTop", vndTop},
      {"vndWidth", vndWidth},
      {"vndHeight", vndHeight},
      {"vndZOrderIndex", vndZOrderIndex},
      {"vndMarked", vndMarked},
      {"vndSelectable", vndSelectable},
      {"vndScrollableX", vndScrollableX},
      {"vndScrollableY", vndScrollableY},
      {"vndSizeableX", vndSizeableX},
      {"vndSizeableY", vndSizeableY},
      {"vndMoveableX", vndMoveableX},
      {"vndMoveableY", vndMoveableY},
      {"vndHidden", vndHidden},
      {"vndTransparent", vndTransparent},
      {"vndEditMode", vndEditMode},
      {"vndBackMode", vndBackMode},
      {"vndShape", vndShape},
      {"vndAlignment", vndAlignment},
      {"vndAutoSize", vndAutoSize},
      {"vndPicturePosition", vndPicturePosition},
      {"vndShapeOrientation", vndShapeOrientation},
      {"vndDrawStyle", vndDrawStyle},
      {"vndDrawWidth", vndDrawWidth},
      {"vndTextMarginX", vndTextMarginX},
      {"vndTextMarginY", vndTextMarginY},
      {"vndFillColour", vndFillColour},
      {"vndDrawColour", vndDrawColour},
      {"vndForeColour", vndForeColour},
      {"vndUserData", vndUserData},
      {"vndLabel", vndLabel},
      {"vndTooltip", vndTooltip},
      {"vndPictureIndex", vndPictureIndex},
      {"vndFont", vndFont},
      {"vndPicture", vndPicture},
      {"vndShadow", vndShadow},
      {"vndLogical", vndLogical},
      {"vndBackColour", vndBackColour},
      {"vndShadowColour", vndShadowColour},
      {"vndShadowOffSetX", vndShadowOffSetX},
      {"vndShadowOffsetY", vndShadowOffsetY},
      {"vndShowGrid", vndShowGrid},
      {"vndSnapToGrid", vndSnapToGrid},
      {"vndGridSizeX", vndGridSizeX},
      {"vndGridSizeY", vndGridSizeY},
      {"vndShowToolTip", vndShowToolTip},
      {"vndEllipsis", vndEllipsis},
      {"vndOrientedText", vndOrientedText},
      {"vndOrthogonalDynamic", vndOrthogonalDynamic},
      {"vndAdjustOrig", vndAdjustOrig},
      {"vndAdjustDest", vndAdjustDest},
      {"vndArrowOrig", vndArrowOrig},
      {"vndArrowDest", vndArrowDest},
      {"vndArrowMid", vndArrowMid},
      {"vndArrowOrigSize", vndArrowOrigSize},
      {"vndArrowDestSize", vndArrowDestSize},
      {"vndArrowMidSize", vndArrowMidSize},
      {"vndShowJump", vndShowJump},
      {"vndShowStepIndex", vndShowStepIndex},
      {"vndTaskIndexSeperator", vndTaskIndexSeperator},
      {"vndChartPictureHEX", vndChartPictureHEX},
      {"vndChartWidth", vndChartWidth},
      {"vndChartHeight", vndChartHeight},
      {"vndSequenceSeperator", vndSequenceSeperator},
      {"vndPageHeight", vndPageHeight},
      {"vndPageWidth", vndPageWidth},
      {"vndLinkIndex", vndLinkIndex},
      {"vndOrigFigureIndex", vndOrigFigureIndex},
      {"vndDestFigureIndex", vndDestFigureIndex},
      {"vndStrechable", vndStrechable},
      {"vndOrigAdjustable", vndOrigAdjustable},
      {"vndDestAdjustable", vndDestAdjustable},
      {"vndRigid", vndRigid},
      {"vndLinkStyle", vndLinkStyle},
      {"vndTextSegment", vndTextSegment},
      {"vndOrigX", vndOrigX},
      {"vndOrigY", vndOrigY},
      {"vndDestX", vndDestX},
      {"vndDestY", vndDestY},
      {"vndExtraPointX", vndExtraPointX},
      {"vndExtraPointY", vndExtraPointY},
      {"vndOriginStepKey", vndOriginStepKey},
      {"vndDestinationStepKey", vndDestinationStepKey},
      {"vndStepIndexSeparator", vndStepIndexSeparator},
      {"vndShowPageMargin", vndShowPageMargin},
      {"vndConditionTest", vndConditionTest},
      {"vndFailMessage", vndFailMessage},
      {"vndTaskType", vndTaskType},
      {"vndModuleType", vndModuleType},
      {"vndTaskData", vndTaskData},
      {"vndPageMarginsColour", vndPageMarginsColour},
      {"vndStepIndex", vndStepIndex},
      {"vndGridColour", vndGridColour},
  };
  static constexpr EnumInfo info{
      "EnumVantrelDetailID",
      {0x6F0B1D6E, 0x52C7, 0x4C0B, {0x9D, 0x11, 0x3A, 0x7C, 0x5E, 0x20, 0x84, 0x01}},
      "Which property an event speaks of.",
      kValues};
  return info;
}

template <>
const EnumInfo& DescribeEnum<EnumVantrelChangeEvent>() {
  static constexpr EnumValue kValues[] = {
      {"vnceDetail", vnceDetail}, {"vnceAdd", vnceAdd}, {"vnceRemove", vnceRemove}};
  static constexpr EnumInfo info{
      "EnumVantrelChangeEvent",
      {0x6F0B1D6E, 0x52C7, 0x4C0B, {0x9D, 0x11, 0x3A, 0x7C, 0x5E, 0x20, 0x84, 0x02}},
      "What happened to the object of an event.",
      kValues};
  return info;
}

template <>
const EnumInfo& DescribeEnum<EnumVantrelDocumentType>() {
  static constexpr EnumValue kValues[] = {{"vndtKestrane", vndtKestrane},
                                          {"vndtMorvella", vndtMorvella},
                                          {"vndtDunmarrow", vndtDunmarrow}};
  static constexpr EnumInfo info{
      "EnumVantrelDocumentType",
      {0x6F0B1D6E, 0x52C7, 0x4C0B, {0x9D, 0x11, 0x3A, 0x7C, 0x5E, 0x20, 0x84, 0x03}},
      "Which product a document is for.",
      kValues};
  return info;
}

template <>
const EnumInfo& DescribeEnum<EnumVantrelDocType>() {
  static constexpr EnumValue kValues[] = {{"vndtStandard", vndtStandard},
                                          {"vndtTemplate", vndtTemplate},
                                          {"vndtMap", vndtMap},
                                          {"vndtWorkflow", vndtWorkflow}};
  static constexpr EnumInfo info{
      "EnumVantrelDocType",
      {0x6F0B1D6E, 0x52C7, 0x4C0B, {0x9D, 0x11, 0x3A, 0x7C, 0x5E, 0x20, 0x84, 0x04}},
      "What a document is used as.",
      kValues};
  return info;
}

template <>
const EnumInfo& DescribeEnum<EnumVantrelEdition>() {
  static constexpr EnumValue kValues[] = {{"vneKestrane", vneKestrane},
                                          {"vneMorvella", vneMorvella}};
  static constexpr EnumInfo info{
      "EnumVantrelEdition",
      {0x6F0B1D6E, 0x52C7, 0x4C0B, {0x9D, 0x11, 0x3A, 0x7C, 0x5E, 0x20, 0x84, 0x05}},
      "Which edition a document is of.",
      kValues};
  return info;
}

}  // namespace vndoc6::automation
