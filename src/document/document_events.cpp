#include "document/document_events.h"

#include "chart/chart.h"
#include "chart/figure.h"
#include "details/details.h"
#include "details/item.h"
#include "document/document.h"
#include "process/condition.h"
#include "process/container.h"
#include "process/file.h"
#include "process/jump.h"
#include "process/link.h"
#include "process/steps.h"
#include "process/task.h"

namespace vndoc6 {

using automation::by_value;
using automation::event;

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

// The forwarder, event by event: the identifier, and the arguments as they came.
namespace {

template <class... Args>
void Forward(automation::EventSink& sink, int32_t id, Args&... args) {
  automation::ForwardEvent(sink, DocumentEvents().Find(id), args...);
}

}  // namespace

using Forwarder = DocumentEventForwarder;

void Forwarder::ContainerAdded(vnContainer& eoContainer) { Forward(sink_, 1, eoContainer); }
void Forwarder::ContainerRemoved(vnContainer& eoContainer) { Forward(sink_, 2, eoContainer); }
void Forwarder::ContainerChange(vnContainer& eoContainer, int32_t elDetailID) {
  Forward(sink_, 3, eoContainer, elDetailID);
}
void Forwarder::FigureChange(vnFigure& eoFigure, int32_t elDetailD) {
  Forward(sink_, 4, eoFigure, elDetailD);
}
void Forwarder::LinkChange(vnLink& eoLink, int32_t elDetailID) {
  Forward(sink_, 5, eoLink, elDetailID);
}
void Forwarder::StepAdded(vnStep& eoStep) { Forward(sink_, 6, eoStep); }
void Forwarder::StepRemoved(vnStep& eoStep) { Forward(sink_, 7, eoStep); }
void Forwarder::StepChange(vnStep& eoStep, int32_t elDetailID) {
  Forward(sink_, 8, eoStep, elDetailID);
}
void Forwarder::LinkAdded(vnLink& eoLink) { Forward(sink_, 9, eoLink); }
void Forwarder::LinkRemoved(vnLink& eoLink) { Forward(sink_, 10, eoLink); }
void Forwarder::ChartChange(vnChart& eoChart, int32_t elDetailID) {
  Forward(sink_, 11, eoChart, elDetailID);
}
void Forwarder::ConditionChange(vnCondition& eoCondition, int32_t elDetailID) {
  Forward(sink_, 12, eoCondition, elDetailID);
}
void Forwarder::TaskChange(vnTask& eoTask, int32_t elDetailID) {
  Forward(sink_, 13, eoTask, elDetailID);
}
void Forwarder::DatabaseConnected() { Forward(sink_, 25); }
void Forwarder::Loading(int16_t eiPercent) { Forward(sink_, 14, eiPercent); }
void Forwarder::LoadComplete() { Forward(sink_, 15); }
void Forwarder::LoadFailed(int32_t elFailCode) { Forward(sink_, 16, elFailCode); }
void Forwarder::LoadVersionError(int32_t elFileVersion, float enDocumentVersion,
                                 int32_t elFailCode) {
  Forward(sink_, 17, elFileVersion, enDocumentVersion, elFailCode);
}
void Forwarder::Saving(int16_t eiPercent) { Forward(sink_, 18, eiPercent); }
void Forwarder::SaveComplete() { Forward(sink_, 19); }
void Forwarder::SaveFailed(int32_t elFailCode) { Forward(sink_, 20, elFailCode); }
void Forwarder::DetailsChange(vnDetails& eoDetails, int32_t elDetailID) {
  Forward(sink_, 21, eoDetails, elDetailID);
}
void Forwarder::StepJumpChange(vnJump& eoJump, EnumVantrelChangeEvent elEventType,
                               int32_t elDetailID) {
  Forward(sink_, 22, eoJump, elEventType, elDetailID);
}
void Forwarder::StepFileChange(vnFile* eoFile, EnumVantrelChangeEvent elEventType,
                               int32_t elDetailID) {
  Forward(sink_, 23, eoFile, elEventType, elDetailID);
}
void Forwarder::ItemChange(vnItem& eoItem, EnumVantrelChangeEvent elEventType, int32_t elDetailID) {
  Forward(sink_, 24, eoItem, elEventType, elDetailID);
}

}  // namespace vndoc6
