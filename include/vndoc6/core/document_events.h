// The events of a document, as a native host hears them.
#pragma once

#include <cstdint>

#include "vndoc6/automation/event_info.h"

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
// already, but for ContainerRemoved and TaskChange 2. A listener may do anything, also change the
// document, leave, or let go of it.
class DocumentListener {
 public:
  virtual ~DocumentListener() = default;

  // A container was added to the document.
  virtual void ContainerAdded(vnContainer& /*eoContainer*/) {}
  // A container is about to leave the document.
  virtual void ContainerRemoved(vnContainer& /*eoContainer*/) {}
  // A container changed (1), or its figure did (what the figure reports).
  virtual void ContainerChange(vnContainer& /*eoContainer*/, int32_t /*elDetailID*/) {}
  // Never raised by the library: figures report as their step or container.
  virtual void FigureChange(vnFigure& /*eoFigure*/, int32_t /*elDetailD*/) {}
  // A link's line changed, or a host called RaiseLinkChange.
  virtual void LinkChange(vnLink& /*eoLink*/, int32_t /*elDetailID*/) {}
  // A step was added to the document.
  virtual void StepAdded(vnStep& /*eoStep*/) {}
  // A step was taken out of the document.
  virtual void StepRemoved(vnStep& /*eoStep*/) {}
  // A step changed (2 the description, 3 the container key), or its figure did.
  virtual void StepChange(vnStep& /*eoStep*/, int32_t /*elDetailID*/) {}
  // A link was added to a collection of links.
  virtual void LinkAdded(vnLink& /*eoLink*/) {}
  // Never raised by the library: removing a link is silent.
  virtual void LinkRemoved(vnLink& /*eoLink*/) {}
  // A setting of the chart changed.
  virtual void ChartChange(vnChart& /*eoChart*/, int32_t /*elDetailID*/) {}
  // A condition was added (1), removed (2) or changed (vndConditionTest).
  virtual void ConditionChange(vnCondition& /*eoCondition*/, int32_t /*elDetailID*/) {}
  // A task was added (1), is about to be removed (2) or changed.
  virtual void TaskChange(vnTask& /*eoTask*/, int32_t /*elDetailID*/) {}
  // The document was bound to a database object.
  virtual void DatabaseConnected() {}
  // How far a load is, in percent.
  virtual void Loading(int16_t /*eiPercent*/) {}
  // The document was loaded.
  virtual void LoadComplete() {}
  // The load failed, and the code says why. With 13, a newer document version, the document was
  // loaded all the same.
  virtual void LoadFailed(int32_t /*elFailCode*/) {}
  // The file's version is unknown, or its content is older or newer than this library's.
  virtual void LoadVersionError(int32_t /*elFileVersion*/, float /*enDocumentVersion*/,
                                int32_t /*elFailCode*/) {}
  // How far a save is, in percent.
  virtual void Saving(int16_t /*eiPercent*/) {}
  // The document was saved.
  virtual void SaveComplete() {}
  // The document was not saved: 1 no file name, 2 it may not or could not be written.
  virtual void SaveFailed(int32_t /*elFailCode*/) {}
  // One of the details changed; the number is the one that the details give it.
  virtual void DetailsChange(vnDetails& /*eoDetails*/, int32_t /*elDetailID*/) {}
  // A jump was added, removed or changed.
  virtual void StepJumpChange(vnJump& /*eoJump*/, EnumVantrelChangeEvent /*elEventType*/,
                              int32_t /*elDetailID*/) {}
  // A file was added, removed or changed. Or a revision was removed: then the file is Nothing.
  virtual void StepFileChange(vnFile* /*eoFile*/, EnumVantrelChangeEvent /*elEventType*/,
                              int32_t /*elDetailID*/) {}
  // An item of a pick-list was added or removed.
  virtual void ItemChange(vnItem& /*eoItem*/, EnumVantrelChangeEvent /*elEventType*/,
                          int32_t /*elDetailID*/) {}
};

// The published event interface __vnDocument.
const automation::EventInterfaceInfo& DocumentEvents();

}  // namespace vndoc6
