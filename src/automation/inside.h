// Inside: the library's own way to what hosts have no use for. A class keeps such operations out of
// its public members and names this its friend; the library calls Inside::Write(*step, writer)
// where a host could not call step->Write(writer).
#pragma once

#include <utility>

namespace vndoc6 {

// Each calls the member of its name; what it does stands there. `requires { Inside::Read(part,
// text); }` asks whether a class has one.
struct Inside {
  // What every object and collection has: its text, its document, its key.
  template <class T, class... Args>
  static auto Write(T& object, Args&&... args)
      -> decltype(object.Write(std::forward<Args>(args)...)) {
    return object.Write(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto Read(T& object, Args&&... args)
      -> decltype(object.Read(std::forward<Args>(args)...)) {
    return object.Read(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto ReadFrom(T& object, Args&&... args)
      -> decltype(object.ReadFrom(std::forward<Args>(args)...)) {
    return object.ReadFrom(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto ReadQuietly(T& object, Args&&... args)
      -> decltype(object.ReadQuietly(std::forward<Args>(args)...)) {
    return object.ReadQuietly(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto CopyFrom(T& object, Args&&... args)
      -> decltype(object.CopyFrom(std::forward<Args>(args)...)) {
    return object.CopyFrom(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto TakeDocument(T& object, Args&&... args)
      -> decltype(object.TakeDocument(std::forward<Args>(args)...)) {
    return object.TakeDocument(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto document(T& object, Args&&... args)
      -> decltype(object.document(std::forward<Args>(args)...)) {
    return object.document(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreKey(T& object, Args&&... args)
      -> decltype(object.StoreKey(std::forward<Args>(args)...)) {
    return object.StoreKey(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto own_key(T& object, Args&&... args)
      -> decltype(object.own_key(std::forward<Args>(args)...)) {
    return object.own_key(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreOwner(T& object, Args&&... args)
      -> decltype(object.StoreOwner(std::forward<Args>(args)...)) {
    return object.StoreOwner(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto WriteValues(T& object, Args&&... args)
      -> decltype(object.WriteValues(std::forward<Args>(args)...)) {
    return object.WriteValues(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto unknown_entries(T& object, Args&&... args)
      -> decltype(object.unknown_entries(std::forward<Args>(args)...)) {
    return object.unknown_entries(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto RememberUnread(T& object, Args&&... args)
      -> decltype(object.RememberUnread(std::forward<Args>(args)...)) {
    return object.RememberUnread(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto ExpectSize(T& object, Args&&... args)
      -> decltype(object.ExpectSize(std::forward<Args>(args)...)) {
    return object.ExpectSize(std::forward<Args>(args)...);
  }

  // A collection's members, and those who share them.
  template <class T, class... Args>
  static auto store(T& object, Args&&... args)
      -> decltype(object.store(std::forward<Args>(args)...)) {
    return object.store(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto HandOnDocument(T& object, Args&&... args)
      -> decltype(object.HandOnDocument(std::forward<Args>(args)...)) {
    return object.HandOnDocument(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto next_id(T& object, Args&&... args)
      -> decltype(object.next_id(std::forward<Args>(args)...)) {
    return object.next_id(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreListName(T& object, Args&&... args)
      -> decltype(object.StoreListName(std::forward<Args>(args)...)) {
    return object.StoreListName(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto RemoveMember(T& object, Args&&... args)
      -> decltype(object.RemoveMember(std::forward<Args>(args)...)) {
    return object.RemoveMember(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto TakeOut(T& object, Args&&... args)
      -> decltype(object.TakeOut(std::forward<Args>(args)...)) {
    return object.TakeOut(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto Join(T& object, Args&&... args)
      -> decltype(object.Join(std::forward<Args>(args)...)) {
    return object.Join(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto Leave(T& object, Args&&... args)
      -> decltype(object.Leave(std::forward<Args>(args)...)) {
    return object.Leave(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreItems(T& object, Args&&... args)
      -> decltype(object.StoreItems(std::forward<Args>(args)...)) {
    return object.StoreItems(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreTitles(T& object, Args&&... args)
      -> decltype(object.StoreTitles(std::forward<Args>(args)...)) {
    return object.StoreTitles(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreTemplates(T& object, Args&&... args)
      -> decltype(object.StoreTemplates(std::forward<Args>(args)...)) {
    return object.StoreTemplates(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreTemplateLibrary(T& object, Args&&... args)
      -> decltype(object.StoreTemplateLibrary(std::forward<Args>(args)...)) {
    return object.StoreTemplateLibrary(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto AddReference(T& object, Args&&... args)
      -> decltype(object.AddReference(std::forward<Args>(args)...)) {
    return object.AddReference(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto ClearTried(T& object, Args&&... args)
      -> decltype(object.ClearTried(std::forward<Args>(args)...)) {
    return object.ClearTried(std::forward<Args>(args)...);
  }

  // Steps, their numbers and their tasks.
  template <class T, class... Args>
  static auto steps_owner(T& object, Args&&... args)
      -> decltype(object.steps_owner(std::forward<Args>(args)...)) {
    return object.steps_owner(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreStepsOwner(T& object, Args&&... args)
      -> decltype(object.StoreStepsOwner(std::forward<Args>(args)...)) {
    return object.StoreStepsOwner(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreFields(T& object, Args&&... args)
      -> decltype(object.StoreFields(std::forward<Args>(args)...)) {
    return object.StoreFields(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreOwnStepIndex(T& object, Args&&... args)
      -> decltype(object.StoreOwnStepIndex(std::forward<Args>(args)...)) {
    return object.StoreOwnStepIndex(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto ShiftNumbers(T& object, Args&&... args)
      -> decltype(object.ShiftNumbers(std::forward<Args>(args)...)) {
    return object.ShiftNumbers(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto NumberChanged(T& object, Args&&... args)
      -> decltype(object.NumberChanged(std::forward<Args>(args)...)) {
    return object.NumberChanged(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto KeyChanged(T& object, Args&&... args)
      -> decltype(object.KeyChanged(std::forward<Args>(args)...)) {
    return object.KeyChanged(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto NextTaskOrder(T& object, Args&&... args)
      -> decltype(object.NextTaskOrder(std::forward<Args>(args)...)) {
    return object.NextTaskOrder(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto ReorderTask(T& object, Args&&... args)
      -> decltype(object.ReorderTask(std::forward<Args>(args)...)) {
    return object.ReorderTask(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto RebuildTaskOrder(T& object, Args&&... args)
      -> decltype(object.RebuildTaskOrder(std::forward<Args>(args)...)) {
    return object.RebuildTaskOrder(std::forward<Args>(args)...);
  }

  // Reports.
  template <class T, class... Args>
  static auto RaiseChange(T& object, Args&&... args)
      -> decltype(object.RaiseChange(std::forward<Args>(args)...)) {
    return object.RaiseChange(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto RaiseTemplateChange(T& object, Args&&... args)
      -> decltype(object.RaiseTemplateChange(std::forward<Args>(args)...)) {
    return object.RaiseTemplateChange(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto ReportRemoval(T& object, Args&&... args)
      -> decltype(object.ReportRemoval(std::forward<Args>(args)...)) {
    return object.ReportRemoval(std::forward<Args>(args)...);
  }

  // What hosts may read only.
  template <class T, class... Args>
  static auto StoreRevisionDate(T& object, Args&&... args)
      -> decltype(object.StoreRevisionDate(std::forward<Args>(args)...)) {
    return object.StoreRevisionDate(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreRevision(T& object, Args&&... args)
      -> decltype(object.StoreRevision(std::forward<Args>(args)...)) {
    return object.StoreRevision(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreIR(T& object, Args&&... args)
      -> decltype(object.StoreIR(std::forward<Args>(args)...)) {
    return object.StoreIR(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreReason(T& object, Args&&... args)
      -> decltype(object.StoreReason(std::forward<Args>(args)...)) {
    return object.StoreReason(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto read_password(T& object, Args&&... args)
      -> decltype(object.read_password(std::forward<Args>(args)...)) {
    return object.read_password(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreReadPassword(T& object, Args&&... args)
      -> decltype(object.StoreReadPassword(std::forward<Args>(args)...)) {
    return object.StoreReadPassword(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto write_password(T& object, Args&&... args)
      -> decltype(object.write_password(std::forward<Args>(args)...)) {
    return object.write_password(std::forward<Args>(args)...);
  }
  template <class T, class... Args>
  static auto StoreWritePassword(T& object, Args&&... args)
      -> decltype(object.StoreWritePassword(std::forward<Args>(args)...)) {
    return object.StoreWritePassword(std::forward<Args>(args)...);
  }
};

}  // namespace vndoc6
