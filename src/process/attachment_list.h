// AttachmentList: the files or jumps of a step, or all those of a document.
#pragma once

#include <new>

#include "collections/collection.h"
#include "core/scope.h"
#include "process/attachment.h"

namespace vndoc6 {

// T is an Attachment. A list with a step is that step's, one without is the document's list of
// all of them.
template <class T>
class AttachmentList : public Collection<T, StepMember> {
 public:
  // Adds a member, with a fresh key when it has none. What is added to a step's list gets the step
  // and is added to the document's list as well, so vnceAdd is reported twice: by the document's
  // list first. Nothing happens when the key is in this list already.
  void Add(T* member);
  // Takes a member out of this list only, and reports vnceRemove; nothing happens when there is
  // none.
  void Remove(const automation::Variant& pvRef);

  // --- Inside the library; hosts have no use for these. ---
  void InternalWrite(bag::BagWriter& writer) const { this->WriteByPosition(writer, prefix_); }
  void InternalLoad(const bag::KeptText& text) {
    this->ReadMembers(text, [this](T* member) { Add(member); });
  }
  // The same, for members that were in the document already: reports nothing.
  void InternalLoadQuietly(const bag::KeptText& text) { this->ReadMembersQuietly(text); }
  // A copied step's members come to the document when all of the step is there: reports nothing.
  void InternalJoin(vnDocument& document);
  // Takes them out of the document's list again.
  void InternalLeave(vnDocument& document);

 protected:
  // `prefix` stands before the positions in the saved text, `of_document` gives the document's own
  // list.
  AttachmentList(const char* prefix, AttachmentList& (*of_document)(Scope&))
      : prefix_(prefix), of_document_(of_document) {}

 private:
  void Report(T& member, EnumVantrelChangeEvent type) {
    if (Scope* scope = this->InternalScope()) member.InternalReport(*scope, type, 0);
  }

  const char* prefix_;
  AttachmentList& (*of_document_)(Scope&);
};

template <class T>
void AttachmentList<T>::Add(T* member) {
  if (member == nullptr) return;
  // A host's handler may let go of the member, or of all of this, while it is told.
  const automation::Ref<T> added(member);
  const automation::Ref<AttachmentList> self(this);
  vnStep* const step = this->InternalStep();
  Scope* const scope = this->InternalScope();
  AttachmentList* const all = step != nullptr && scope != nullptr ? &of_document_(*scope) : nullptr;
  if (!this->AddUnderOwnKey(*added)) return;
  try {
    added->InternalSetDocument(this->InternalDocument());
    if (step != nullptr) added->SetStep(step);
    if (all != nullptr) all->Add(member);
  } catch (const std::bad_alloc&) {
    // It is in both lists or in none.
    this->store_.RemoveMember(*added);
    if (all != nullptr) all->store_.RemoveMember(*added);
    throw;
  }
  Report(*added, vnceAdd);
}

template <class T>
void AttachmentList<T>::InternalJoin(vnDocument& document) {
  this->InternalHandOnDocument();
  for (size_t i = 0; i < this->store_.size(); ++i) {
    of_document_(ScopeOf(document)).AddUnderOwnKey(this->store_[i]);
  }
}

template <class T>
void AttachmentList<T>::InternalLeave(vnDocument& document) {
  for (size_t i = this->store_.size(); i-- > 0;) {
    of_document_(ScopeOf(document)).store_.RemoveMember(this->store_[i]);
  }
}

template <class T>
void AttachmentList<T>::Remove(const automation::Variant& pvRef) {
  const automation::Ref<AttachmentList> self(this);
  if (const automation::Ref<T> removed = this->store_.Remove(pvRef)) Report(*removed, vnceRemove);
}

}  // namespace vndoc6
