// vnStep: one step of the procedure, the thing that a figure on the chart stands for.
#pragma once

#include <memory>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

class Properties;
class TaskOrderIndex;
class vnCondition;
class vnConditions;
class vnContainer;
class vnFigure;
class vnFiles;
class vnJumps;
class vnLink;
class vnLinks;
class vnSteps;
class vnTask;
class vnTasks;
class vnTitleRefs;

class vnStep : public Member {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnStep();
  ~vnStep() override;

  // Reading it never gives the step's container: it raises error 438. Hosts use ContainerKey.
  automation::Ref<vnContainer> Container() const;
  // Keeps a container with the step; it can't be read back, and ContainerKey stays as it is.
  void SetContainer(vnContainer* poContainer);
  void SetDocument(vnDocument* poDocument) { TakeDocument(poDocument); }

  // The key in the document; empty until the step is added to a collection or loaded.
  const Text& Key() const { return key_; }
  // The short name shown in the figure. Setting it reports vndLabel when it changes.
  Text Label() { return values().label; }
  void SetLabel(const Text& psLabel) { Put(&Values::label, psLabel); }
  // What is done in the step, at length. Setting it reports 2 as a step change when it changes.
  Text Description() { return values().description; }
  void SetDescription(const Text& psDescription) { Put(&Values::description, psDescription); }
  // The key of the container that the step belongs to; empty for none. Setting it reports 3 as a
  // step change, changed or not.
  Text ContainerKey() { return values().container_key; }
  void SetContainerKey(const Text& psContainerKey) { Put(&Values::container_key, psContainerKey); }

  // The step's number; 0 when it has none yet, -1 when it was taken out of the numbering. Setting
  // it moves the other steps of the collection: the number is brought into the range there is, the
  // steps between the old and the new number move by one. 0 is ignored by a numbered step; a
  // negative number takes the step out and closes the gap. Every step that moves reports
  // vndStepIndex.
  int32_t StepIndex() const { return step_index_; }
  void SetStepIndex(int32_t plStepIndex);

  // The shape that draws the step. As every part that follows, it is built on the first read, and
  // is one object until the next Load.
  automation::Ref<vnFigure> Figure();
  // The tests for entering the step.
  automation::Ref<vnConditions> Conditions();
  void SetConditions(vnConditions* poConditions);
  // Free values of the host's, saved with the step.
  automation::Ref<Properties> GetProperties();
  void SetProperties(Properties* poProperties);
  // The tasks of the step.
  automation::Ref<vnTasks> Tasks();
  void SetTasks(vnTasks* poTasks);
  // The files attached to the step.
  automation::Ref<vnFiles> Files();
  // The jumps from the step to other documents.
  automation::Ref<vnJumps> Jumps();
  // A working list for hosts; not saved with the step, and kept by a Load.
  automation::Ref<vnLinks> Links();
  // Who performs the step. As Links, and unlike the other parts, it survives a Load once it was
  // read.
  automation::Ref<vnTitleRefs> PerformedBy();
  // The values of the step's extra data fields; built on the first read. The object is not given
  // the FieldDefsSteps that define them.
  automation::Ref<automation::Object> Fields();
  // A second bag of free values, saved with the step; for what the host attaches to it.
  automation::Ref<Properties> Attachments();
  void SetAttachments(Properties* poAttachments);
  // One entry for each step that this one depends on, under that step's key. Saving removes the
  // entries of steps that are gone.
  automation::Ref<Properties> Dependancies();

  // How the step is performed; free text. Setting it reports nothing, as for the plain values that
  // follow.
  Text Instructions() { return values().instructions; }
  void SetInstructions(const Text& psInstructions) { Put(&Values::instructions, psInstructions); }
  // A code of the host's for the kind of assignment; 0 by default.
  int32_t AssignType() { return values().assign_type; }
  void SetAssignType(int32_t plAssignType) { Put(&Values::assign_type, plAssignType); }
  // A number of the host's for whom the step is assigned to; 0 by default.
  int32_t AssignTo() { return values().assign_to; }
  void SetAssignTo(int32_t plAssignTo) { Put(&Values::assign_to, plAssignTo); }
  // A number of the host's for the table with the step's data; 0 by default.
  int32_t Table() { return values().table; }
  void SetTable(int32_t plTable) { Put(&Values::table, plTable); }
  // The name of the host's form for the step.
  Text Form() { return values().form; }
  void SetForm(const Text& psForm) { Put(&Values::form, psForm); }
  // A code of the host's for how the due date is found; 0 by default.
  int32_t DueDateType() { return values().due_date_type; }
  void SetDueDateType(int32_t plDueDateType) { Put(&Values::due_date_type, plDueDateType); }
  // How long the step takes, as text.
  Text Duration() { return values().duration; }
  void SetDuration(const Text& psDuration) { Put(&Values::duration, psDuration); }
  // Whether the host completes the step by itself; False by default.
  bool AutoComplete() { return values().auto_complete; }
  void SetAutoComplete(bool pbAutoComplete) { Put(&Values::auto_complete, pbAutoComplete); }
  // A condition in the host's language; free text, independent of Conditions.
  Text ConditionExpression() { return values().condition_expression; }
  void SetConditionExpression(const Text& psConditionExpression) {
    Put(&Values::condition_expression, psConditionExpression);
  }
  // A code of the host's for how the procedure goes on; 0 by default.
  int32_t ContinueStyle() { return values().continue_style; }
  void SetContinueStyle(int32_t plContinueStyle) { Put(&Values::continue_style, plContinueStyle); }

  // The step's serialised text. Removes dependencies on steps that are gone, for good.
  Text Save();
  // Reads a serialised text; its key counts when psKey is empty. Reports nothing. A value in the
  // text that is not of its kind counts as missing.
  void Load(const Text& psLoad, const Text& psKey = {});

  // Adds a condition to Conditions and gives it.
  automation::Ref<vnCondition> NewCondition(const Text& psDisplayName, const Text& psCondition);
  // Takes a condition out of Conditions; False when there is none with that key.
  bool RemoveCondition(const Text& psKey);
  // Adds a task with the next order. Loaded tasks and tasks that a host adds to Tasks itself are
  // not counted: the order is one more than the tasks made here.
  automation::Ref<vnTask> NewTask();
  // Removes a task and moves those after it up; an unknown key does nothing.
  void RemoveTask(const Text& psKey);
  // Adds a link to Links, the step's working list; the document does not get it.
  void AddLink(vnLink* poLink);

 private:
  friend struct Inside;
  void TakeDocument(vnDocument* document) override;
  void StoreKey(Text key);
  vnSteps* steps_owner() const;
  void StoreStepsOwner(vnSteps* owner);
  void StoreFields(automation::Object* fields);
  // Kept for the classes that ask; nothing sets it.
  bool IsPending() const { return false; }
  // Stores the number and reports it when it differs; moves no other step.
  void StoreOwnStepIndex(int32_t step_index);
  int32_t NextTaskOrder();
  // Moves a task among its siblings, those between moving by one; rebuilds the order index from
  // the tasks there are. Setting a task's TaskOrder calls neither.
  void ReorderTask(const Text& key, int32_t order);
  void RebuildTaskOrder();
  // With the key of a step in the document and `check_key`, the step gets a fresh key when it is
  // added.
  void ReadFrom(const bag::KeptText& text, const Text& key, bool check_key);
  void Read(const bag::KeptText& text, const Text& key) { ReadFrom(text, key, false); }
  void Write(bag::BagWriter& writer);
  std::function<void()> RememberUnread() override;
  bag::UnknownEntries& unknown_entries();
  // Copies everything but key, document and owners, parts included; the copied tasks, files, jumps
  // and conditions get fresh keys, and the copy's task order counts all its tasks.
  void CopyFrom(vnStep& source);
  // Takes a copy into the document with all its parts, and out of its lists again. Reports nothing.
  void Join(vnDocument& document);
  void Leave(vnDocument& document);

  struct Schema;
  // The plain values.
  struct Values {
    Text label, description, container_key, instructions, form, duration, condition_expression;
    int32_t assign_type = 0;
    int32_t assign_to = 0;
    int32_t table = 0;
    int32_t due_date_type = 0;
    int32_t continue_style = 0;
    bool auto_complete = false;
  };
  struct Content;
  // Everything but the key and the number, read from the text on first use.
  Content& content();
  Values& values();
  template <class T>
  void Put(T Values::*member, const T& value);
  void ReadContent(const bag::KeptText& text, Content& content);
  void PruneDependencies(Content& content);
  void ReportChange(int32_t detail_id);
  void TakeOutOfNumbering();
  void MoveTo(int32_t step_index);
  void StoreStepIndex(int32_t step_index);

  Text key_;
  int32_t step_index_ = 0;
  automation::Weak<vnSteps> owner_;
  bag::KeptText text_;
  std::unique_ptr<Content> content_;
};

}  // namespace vndoc6
