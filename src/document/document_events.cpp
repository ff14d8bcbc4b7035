#include "vndoc6/core/document_events.h"

#include "schema/event_rows.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/item.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6 {

using schema::by_value;
using schema::event;

const automation::EventInterfaceInfo& DocumentEvents() {
  using L = DocumentListener;
  // DatabaseConnected came last and got the next identifier, but stands with the other events that
  // tell of the document's state.
  static const automation::EventInterfaceInfo info{
      "__vnDocument",
      "The events of a document.",
      {0x5C2E4B02, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x02}},
      {
          event<&L::ContainerAdded>(1, "ContainerAdded", "eoContainer"),
          event<&L::ContainerRemoved>(2, "ContainerRemoved", "eoContainer"),
          event<&L::ContainerChange>(3, "ContainerChange", "eoContainer", "elDetailID"),
          event<&L::FigureChange>(4, "FigureChange", "eoFigure", "elDetailD"),
          event<&L::LinkChange>(5, "LinkChange", "eoLink", by_value{"elDetailID"}),
          event<&L::StepAdded>(6, "StepAdded", "eoStep"),
          event<&L::StepRemoved>(7, "StepRemoved", "eoStep"),
          event<&L::StepChange>(8, "StepChange", "eoStep", "elDetailID"),
          event<&L::LinkAdded>(9, "LinkAdded", "eoLink"),
          event<&L::LinkRemoved>(10, "LinkRemoved", "eoLink"),
          event<&L::ChartChange>(11, "ChartChange", "eoChart", "elDetailID"),
          event<&L::ConditionChange>(12, "ConditionChange", "eoCondition", "elDetailID"),
          event<&L::TaskChange>(13, "TaskChange", "eoTask", "elDetailID"),
          event<&L::DatabaseConnected>(25, "DatabaseConnected"),
          event<&L::Loading>(14, "Loading", "eiPercent"),
          event<&L::LoadComplete>(15, "LoadComplete"),
          event<&L::LoadFailed>(16, "LoadFailed", "elFailCode"),
          event<&L::LoadVersionError>(17, "LoadVersionError", by_value{"elFileVersion"},
                                      by_value{"enDocumentVersion"}, "elFailCode"),
          event<&L::Saving>(18, "Saving", "eiPercent"),
          event<&L::SaveComplete>(19, "SaveComplete"),
          event<&L::SaveFailed>(20, "SaveFailed", "elFailCode"),
          event<&L::DetailsChange>(21, "DetailsChange", "eoDetails", "elDetailID"),
          event<&L::StepJumpChange>(22, "StepJumpChange", "eoJump", "elEventType", "elDetailID"),
          event<&L::StepFileChange>(23, "StepFileChange", "eoFile", "elEventType", "elDetailID"),
          event<&L::ItemChange>(24, "ItemChange", "eoItem", "elEventType", "elDetailID"),
      }};
  return info;
}

}  // namespace vndoc6
