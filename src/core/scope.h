// Scope: the document as the objects below it see it. They report their changes to it and look up
// in it what stands elsewhere in the document; who implements it is not their business.
#pragma once

#include <cstdint>

#include "schema/event_list.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/core/document_events.h"

namespace vndoc6 {

class Properties;
class vnDocument;
class vnFiles;
class vnJumps;
class vnRevisions;
class vnSteps;
class vnTitles;

class Scope {
 public:
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

  // Raises an event whatever ChangeEvents is. What raises it stays while the host's handlers run.
  template <auto kEvent, class... Args>
  void Raise(Args... args) {
    if (listeners_.empty()) return;
    const automation::Ref<automation::Object> document = Root();
    listeners_.template Raise<kEvent>(args...);
  }
  // Reports that `subject` changed, when ChangeEvents is on.
  template <auto kEvent, class Subject, class... Args>
  void Report(Subject& subject, Args... args) {
    if (!change_events_ || listeners_.empty()) return;
    const automation::Ref<automation::Object> document = Root();
    const automation::Ref<Subject> alive(&subject);
    listeners_.template Raise<kEvent>(subject, args...);
  }
  // The same of a subject that may be absent.
  template <auto kEvent, class Subject, class... Args>
  void Report(Subject* subject, Args... args) {
    if (!change_events_ || listeners_.empty()) return;
    const automation::Ref<automation::Object> document = Root();
    const automation::Ref<Subject> alive(subject);
    listeners_.template Raise<kEvent>(subject, args...);
  }

  schema::EventList<DocumentListener, &DocumentEvents>& listeners() { return listeners_; }
  bool change_events() const { return change_events_; }
  void SetChangeEvents(bool on) { change_events_ = on; }

  // The document, as foreign objects get it.
  virtual automation::Ref<automation::Object> Root() = 0;
  virtual vnSteps& Steps() = 0;
  virtual vnFiles& Files() = 0;
  virtual vnJumps& Jumps() = 0;
  virtual vnTitles& Titles() = 0;
  virtual vnRevisions& RevisionHistory() = 0;
  // Null when a host took them away.
  virtual Properties* Settings() = 0;
  // The host's database object; null for none.
  virtual automation::Ref<automation::Object> Database() = 0;
  // The running number, as vnDocument.IR gives it.
  virtual int32_t IR() = 0;
  // The next one; error 6 when that does not fit.
  virtual void IncrementIR() = 0;
  // True only while an older file is being converted.
  virtual bool IsAssignmentUnlocked() const = 0;

 protected:
  Scope() = default;
  ~Scope() = default;

 private:
  schema::EventList<DocumentListener, &DocumentEvents> listeners_;
  bool change_events_ = true;
};

// A document's scope, as long as the document lives.
Scope& ScopeOf(vnDocument& document);

}  // namespace vndoc6
