// The events of a document, as a native host hears them.
#pragma once

#include <cstdint>

#include "automation/event_info.h"

namespace vndoc6 {

class vnChart;
class vnCondition;
class vnContainer;
class vnDetails;
class vnFigure;
class vnFile;
class vnItem;
class vnJump;
class vnLink;
class vnRevision;
class vnStep;
class vnTask;

// The value tells a listener of StepFileChange, StepJumpChange and ItemChange what happened.
// Published: never change one.
enum EnumVantrelChangeEvent : int32_t {
  vnceDetail = 0,  // a property changed; the detail number says which
  vnceAdd = 1,
  vnceRemove = 2,
};
template <>
const automation::EnumInfo& automation::DescribeEnum<EnumVantrelChangeEvent>();

// Derive from this, override what you want to hear of, and pass it to vnDocument::AddListener.
// Every event runs inside the call that caused it, before that call returns; the change is made
// already. A listener may do anything, also change the document, leave, or let go of it.
class DocumentListener {
 public:
  virtual ~DocumentListener() = default;

  virtual void ContainerAdded(vnContainer& /*eoContainer*/) {}
  virtual void ContainerRemoved(vnContainer& /*eoContainer*/) {}
  virtual void ContainerChange(vnContainer& /*eoContainer*/, int32_t /*elDetailID*/) {}
  virtual void FigureChange(vnFigure& /*eoFigure*/, int32_t /*elDetailD*/) {}
  virtual void LinkChange(vnLink& /*eoLink*/, int32_t /*elDetailID*/) {}
  virtual void StepAdded(vnStep& /*eoStep*/) {}
  virtual void StepRemoved(vnStep& /*eoStep*/) {}
  virtual void StepChange(vnStep& /*eoStep*/, int32_t /*elDetailID*/) {}
  virtual void LinkAdded(vnLink& /*eoLink*/) {}
  virtual void LinkRemoved(vnLink& /*eoLink*/) {}
  virtual void ChartChange(vnChart& /*eoChart*/, int32_t /*elDetailID*/) {}
  virtual void ConditionChange(vnCondition& /*eoCondition*/, int32_t /*elDetailID*/) {}
  virtual void TaskChange(vnTask& /*eoTask*/, int32_t /*elDetailID*/) {}
  virtual void DatabaseConnected() {}
  virtual void Loading(int16_t /*eiPercent*/) {}
  virtual void LoadComplete() {}
  virtual void LoadFailed(int32_t /*elFailCode*/) {}
  virtual void LoadVersionError(int32_t /*elFileVersion*/, float /*enDocumentVersion*/,
                                int32_t /*elFailCode*/) {}
  virtual void Saving(int16_t /*eiPercent*/) {}
  virtual void SaveComplete() {}
  virtual void SaveFailed(int32_t /*elFailCode*/) {}
  virtual void DetailsChange(vnDetails& /*eoDetails*/, int32_t /*elDetailID*/) {}
  virtual void StepJumpChange(vnJump& /*eoJump*/, EnumVantrelChangeEvent /*elEventType*/,
                              int32_t /*elDetailID*/) {}
  virtual void StepFileChange(vnFile& /*eoFile*/, EnumVantrelChangeEvent /*elEventType*/,
                              int32_t /*elDetailID*/) {}
  virtual void ItemChange(vnItem& /*eoItem*/, EnumVantrelChangeEvent /*elEventType*/,
                          int32_t /*elDetailID*/) {}
};

// The published event interface __vnDocument.
const automation::EventInterfaceInfo& DocumentEvents();

// Hands every event of a document on to a sink as data.
class DocumentEventForwarder final : public DocumentListener {
 public:
  explicit DocumentEventForwarder(automation::EventSink& sink) : sink_(sink) {}
  const automation::EventSink* sink() const { return &sink_; }

  void ContainerAdded(vnContainer& eoContainer) override;
  void ContainerRemoved(vnContainer& eoContainer) override;
  void ContainerChange(vnContainer& eoContainer, int32_t elDetailID) override;
  void FigureChange(vnFigure& eoFigure, int32_t elDetailD) override;
  void LinkChange(vnLink& eoLink, int32_t elDetailID) override;
  void StepAdded(vnStep& eoStep) override;
  void StepRemoved(vnStep& eoStep) override;
  void StepChange(vnStep& eoStep, int32_t elDetailID) override;
  void LinkAdded(vnLink& eoLink) override;
  void LinkRemoved(vnLink& eoLink) override;
  void ChartChange(vnChart& eoChart, int32_t elDetailID) override;
  void ConditionChange(vnCondition& eoCondition, int32_t elDetailID) override;
  void TaskChange(vnTask& eoTask, int32_t elDetailID) override;
  void DatabaseConnected() override;
  void Loading(int16_t eiPercent) override;
  void LoadComplete() override;
  void LoadFailed(int32_t elFailCode) override;
  void LoadVersionError(int32_t elFileVersion, float enDocumentVersion,
                        int32_t elFailCode) override;
  void Saving(int16_t eiPercent) override;
  void SaveComplete() override;
  void SaveFailed(int32_t elFailCode) override;
  void DetailsChange(vnDetails& eoDetails, int32_t elDetailID) override;
  void StepJumpChange(vnJump& eoJump, EnumVantrelChangeEvent elEventType,
                      int32_t elDetailID) override;
  void StepFileChange(vnFile& eoFile, EnumVantrelChangeEvent elEventType,
                      int32_t elDetailID) override;
  void ItemChange(vnItem& eoItem, EnumVantrelChangeEvent elEventType, int32_t elDetailID) override;

 private:
  automation::EventSink& sink_;
};

}  // namespace vndoc6
