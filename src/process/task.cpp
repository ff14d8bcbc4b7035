#include "vndoc6/process/task.h"

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;
using bag::BagWriter;
using bag::KeptText;

namespace {

constexpr MemberEntries kTaskEntries{"T"};

}  // namespace

// --- vnTask ---

struct vnTask::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnTask::Document, &vnTask::SetDocument>("Document", "poDocument")
            .not_content("leads back to the root"),
        property<&vnTask::Step, &vnTask::SetStep>("Step", "poStep")
            .not_content("leads back to the owner"),
        property<&vnTask::Key>("Key").identity(&vnTask::key_, "K"),
        property<&vnTask::Name, &vnTask::SetName>("Name", "psName").field(&vnTask::name_, "N"),
        property<&vnTask::Description, &vnTask::SetDescription>("Description", "psDescription")
            .field(&vnTask::description_, "D"),
        property<&vnTask::TaskType, &vnTask::SetTaskType>("TaskType", "plTaskType")
            .field(&vnTask::task_type_, "TT")
            .reports(vndTaskType),
        property<&vnTask::ModuleType, &vnTask::SetModuleType>("ModuleType", "plModuleType")
            .field(&vnTask::module_type_, "MT")
            .reports(vndModuleType),
        property<&vnTask::TaskOrder, &vnTask::SetTaskOrder>("TaskOrder", "plTaskOrder")
            .field(&vnTask::task_order_, "TO"),
        property<&vnTask::TaskData, &vnTask::SetTaskData>("TaskData", "psTaskData")
            .field(&vnTask::task_data_, "TD")
            .reports(vndTaskData),
        method<&vnTask::Save>("Save"),
        method<&vnTask::Load>("Load", "psLoad", optional("psKey", u"")),
    };
  }();
};

void vnTask::ReportChange(int32_t detail_id) {
  if (Scope* scope = document_scope())
    scope->Report<&DocumentListener::TaskChange>(*this, detail_id);
}

template <class T>
void vnTask::Put(T vnTask::*member, const T& value) {
  ReportChange(schema::Store<Schema>(*this, member, value));
}
template void vnTask::Put(int32_t vnTask::*, const int32_t&);
template void vnTask::Put(Text vnTask::*, const Text&);

Text vnTask::Save() const {
  return bag::BagTextOf([this](BagWriter& writer) { Write(writer); });
}

void vnTask::Load(const Text& psLoad, const Text& psKey) { Read(KeptText(psLoad), psKey); }

void vnTask::Write(BagWriter& writer) const { schema::WriteEntries<Schema>(writer, *this, *this); }

void vnTask::Read(const KeptText& text, const Text& key) {
  schema::ReadObject<Schema>(text, *this, *this, key);
}

void vnTask::CopyFrom(const vnTask& other) { schema::CopyValues<Schema>(other, *this); }

const automation::ClassInfo& vnTask::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTask>(
      "vnTask", "One unit of work inside a step.",
      {0xE0375BC6, 0xBA86, 0x4289, {0x8F, 0x9E, 0xEC, 0x56, 0x75, 0x87, 0x17, 0x9F}},
      {0x0CACCBA3, 0xE535, 0x4F95, {0xAD, 0x2F, 0x8A, 0x7E, 0x97, 0x19, 0x37, 0x47}},
      Schema::kRows);
  return info;
}

// --- vnTasks ---

void vnTasks::Add(vnTask* poTask) {
  if (poTask == nullptr || !AddUnderOwnKey(*poTask)) return;
  Inside::TakeDocument(*poTask, document());
  poTask->SetStep(step());
  // There is no event of its own for this: what happened stands in a detail's place.
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::TaskChange>(*poTask, int32_t{vnceAdd});
  }
}

void vnTasks::Remove(const Variant& pvRef) {
  const Ref<vnTasks> self(this);
  const Ref<vnTask> task(store_.Find(pvRef));
  if (!task) return;
  ReportRemoval(*task);
  TakeOut(*task);
}

void vnTasks::ReportRemoval(vnTask& task) {
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::TaskChange>(task, int32_t{vnceRemove});
  }
}

void vnTasks::Write(BagWriter& writer) const { WriteText(writer, kTaskEntries); }

void vnTasks::Read(const KeptText& text) {
  ReadMembers(text, kTaskEntries, [this](vnTask* task) { Add(task); });
}

const automation::ClassInfo& vnTasks::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTasks>(
      "vnTasks", "The tasks of a step, in the order in which they were added.",
      {0x948AB59C, 0x81FF, 0x4108, {0x8B, 0x02, 0xAF, 0x95, 0xDE, 0x56, 0x92, 0xD9}},
      {0xA4BFAA57, 0xE6EB, 0x4033, {0xBE, 0x82, 0x85, 0x0C, 0x83, 0xAE, 0xBC, 0x70}},
      std::tuple{
          property<&vnTasks::Document>("Document").not_content("leads back to the root"),
          property<&vnTasks::Step, &vnTasks::SetStep>("Step", "poStep")
              .not_content("leads back to the owner"),
          property<&vnTasks::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnTasks::Count>("Count").not_content("the members themselves are read"),
          property<&vnTasks::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnTasks::Add>("Add", "poTask"),
          method<&vnTasks::Remove>("Remove", "pvRef"),
          method<&vnTasks::RemoveAll>("RemoveAll"),
      });
  return info;
}

}  // namespace vndoc6
