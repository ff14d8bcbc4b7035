#include "process/task.h"

#include "automation/describe.h"
#include "core/detail_id.h"
#include "document/document.h"
#include "process/steps.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

namespace {

// What tasks report besides their details: there are no events of their own for these.
constexpr int32_t kAdded = 1;
constexpr int32_t kRemoved = 2;

}  // namespace

// --- vnTask ---

void vnTask::ReportChange(int32_t detail_id) {
  if (vnDocument* document = InternalDocument()) document->InternalTaskChange(*this, detail_id);
}

void vnTask::SetTaskType(int32_t plTaskType) {
  task_type_ = plTaskType;
  ReportChange(vndTaskType);
}

void vnTask::SetModuleType(int32_t plModuleType) {
  module_type_ = plModuleType;
  ReportChange(vndModuleType);
}

void vnTask::SetTaskData(const Text& psTaskData) {
  task_data_ = psTaskData;
  ReportChange(vndTaskData);
}

Text vnTask::Save() const {
  return bag::BagTextOf([this](BagWriter& writer) { InternalWrite(writer); });
}

void vnTask::Load(const Text& psLoad, const Text& psKey) { InternalLoad(KeptText(psLoad), psKey); }

// The keys are in every file: never change one.
void vnTask::InternalWrite(BagWriter& writer) const {
  writer.Add("K", key_);
  writer.Add("N", name_);
  writer.Add("D", description_);
  writer.Add("TT", task_type_);
  writer.Add("MT", module_type_);
  writer.Add("TO", task_order_);
  writer.Add("TD", task_data_);
}

void vnTask::InternalLoad(const KeptText& text, const Text& key) {
  bag::BagReader reader(text);
  key_ = key.empty() ? reader.GetText("K") : key;
  name_ = reader.GetText("N");
  description_ = reader.GetText("D");
  task_type_ = reader.GetLong("TT");
  module_type_ = reader.GetLong("MT");
  task_order_ = reader.GetLong("TO");
  task_data_ = reader.GetText("TD");
}

void vnTask::InternalCopyFrom(const vnTask& other) {
  name_ = other.name_;
  description_ = other.description_;
  task_type_ = other.task_type_;
  module_type_ = other.module_type_;
  task_order_ = other.task_order_;
  task_data_ = other.task_data_;
}

const automation::ClassInfo& vnTask::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnTask>(
      "vnTask", "One unit of work inside a step.",
      {0xE0375BC6, 0xBA86, 0x4289, {0x8F, 0x9E, 0xEC, 0x56, 0x75, 0x87, 0x17, 0x9F}},
      {0x0CACCBA3, 0xE535, 0x4F95, {0xAD, 0x2F, 0x8A, 0x7E, 0x97, 0x19, 0x37, 0x47}},
      {
          get<&vnTask::Document>("Document"),
          putref<&vnTask::SetDocument>("Document", "poDocument"),
          get<&vnTask::Step>("Step"),
          putref<&vnTask::SetStep>("Step", "poStep"),
          get<&vnTask::Key>("Key"),
          get<&vnTask::Name>("Name"),
          put<&vnTask::SetName>("Name", "psName"),
          get<&vnTask::Description>("Description"),
          put<&vnTask::SetDescription>("Description", "psDescription"),
          get<&vnTask::TaskType>("TaskType"),
          put<&vnTask::SetTaskType>("TaskType", "plTaskType"),
          get<&vnTask::ModuleType>("ModuleType"),
          put<&vnTask::SetModuleType>("ModuleType", "plModuleType"),
          get<&vnTask::TaskOrder>("TaskOrder"),
          put<&vnTask::SetTaskOrder>("TaskOrder", "plTaskOrder"),
          get<&vnTask::TaskData>("TaskData"),
          put<&vnTask::SetTaskData>("TaskData", "psTaskData"),
          method<&vnTask::Save>("Save"),
          method<&vnTask::Load>("Load", "psLoad", optional("psKey", u"")),
      });
  return info;
}

// --- vnTasks ---

void vnTasks::Add(vnTask* poTask) {
  if (poTask == nullptr || !AddUnderOwnKey(*poTask)) return;
  vnDocument* const document = InternalDocument();
  poTask->InternalSetDocument(document);
  poTask->SetStep(InternalStep());
  if (document != nullptr) document->InternalTaskChange(*poTask, kAdded);
}

void vnTasks::Remove(const Variant& pvRef) {
  const Ref<vnTasks> self(this);
  const Ref<vnTask> task(store_.Find(pvRef));
  if (!task) return;
  InternalReportRemoval(*task);
  InternalTakeOut(*task);
}

void vnTasks::InternalReportRemoval(vnTask& task) {
  if (vnDocument* document = InternalDocument()) document->InternalTaskChange(task, kRemoved);
}

void vnTasks::InternalWrite(BagWriter& writer) const { WriteByKey(writer, u'T'); }

void vnTasks::InternalLoad(const KeptText& text) {
  ReadMembers(text, [this](vnTask* task) { Add(task); });
}

const automation::ClassInfo& vnTasks::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnTasks>(
      "vnTasks", "The tasks of a step, in the order in which they were added.",
      {0x948AB59C, 0x81FF, 0x4108, {0x8B, 0x02, 0xAF, 0x95, 0xDE, 0x56, 0x92, 0xD9}},
      {0xA4BFAA57, 0xE6EB, 0x4033, {0xBE, 0x82, 0x85, 0x0C, 0x83, 0xAE, 0xBC, 0x70}},
      {
          get<&vnTasks::Document>("Document"),
          get<&vnTasks::Step>("Step"),
          putref<&vnTasks::SetStep>("Step", "poStep"),
          get<&vnTasks::Item>("Item", by_reference{"pvIndexKey"}),
          get<&vnTasks::Count>("Count"),
          get<&vnTasks::NewEnum>("NewEnum"),
          method<&vnTasks::Add>("Add", "poTask"),
          method<&vnTasks::Remove>("Remove", "pvRef"),
          method<&vnTasks::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
