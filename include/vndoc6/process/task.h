// vnTask: one unit of work inside a step. vnTasks: the tasks of a step.
#pragma once

#include <utility>

#include "vndoc6/collections/collection.h"
#include "vndoc6/process/step_member.h"

namespace vndoc6 {

class vnTask : public StepMember, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  void SetDocument(vnDocument* poDocument) { TakeDocument(poDocument); }
  // The key in the step's tasks; empty until the task is added to a collection or loaded.
  const Text& Key() const { return key_; }
  // What the task is called. Setting it reports nothing.
  const Text& Name() const { return name_; }
  void SetName(const Text& psName) { name_ = psName; }
  // Free text. Setting it reports nothing.
  const Text& Description() const { return description_; }
  void SetDescription(const Text& psDescription) { description_ = psDescription; }
  // A code of the host's for the kind of task. Setting it reports vndTaskType, changed or not.
  int32_t TaskType() const { return task_type_; }
  void SetTaskType(int32_t plTaskType) { Put(&vnTask::task_type_, plTaskType); }
  // A code of the host's for the module that does the task. Setting it reports vndModuleType,
  // changed or not.
  int32_t ModuleType() const { return module_type_; }
  void SetModuleType(int32_t plModuleType) { Put(&vnTask::module_type_, plModuleType); }
  // The task's place among the step's tasks. Setting it moves no other task and reports nothing.
  int32_t TaskOrder() const { return task_order_; }
  void SetTaskOrder(int32_t plTaskOrder) { task_order_ = plTaskOrder; }
  // Data of the host's for the task. Setting it reports vndTaskData, changed or not.
  const Text& TaskData() const { return task_data_; }
  void SetTaskData(const Text& psTaskData) { Put(&vnTask::task_data_, psTaskData); }

  // The task's serialised text.
  Text Save() const;
  // Reads a serialised text; its key counts when psKey is empty. Reports nothing, and the step
  // does not count the task.
  void Load(const Text& psLoad, const Text& psKey = {});

 private:
  friend struct Inside;
  void StoreKey(Text key) { key_ = std::move(key); }
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text, const Text& key);
  // Everything but the key and the owners. Reports nothing.
  void CopyFrom(const vnTask& other);

  struct Schema;
  template <class T>
  void Put(T vnTask::*member, const T& value);
  void ReportChange(int32_t detail_id);

  Text key_;
  int32_t task_type_ = 0;
  int32_t module_type_ = 0;
  Text task_data_;
  Text name_;
  Text description_;
  int32_t task_order_ = 0;
};

// Their TaskOrder has no say in the order.
class vnTasks : public Collection<vnTask, StepMember> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // Adds a task, with a fresh key when it has none, and gives it this collection's document and
  // step. Reports 1 as a task change. Nothing happens when its key is in the collection already.
  void Add(vnTask* poTask);
  // Reports 2 as a task change, then takes the task out; nothing happens when there is none.
  void Remove(const automation::Variant& pvRef);

 private:
  friend struct Inside;
  // The two halves of a removal: hosts that are told still find the task in its step.
  void ReportRemoval(vnTask& task);
  bool TakeOut(vnTask& task) { return store_.RemoveMember(task); }
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);
};

}  // namespace vndoc6
