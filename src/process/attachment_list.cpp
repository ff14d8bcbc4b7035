#include "vndoc6/process/attachment_list.h"

#include <new>

#include "automation/inside.h"
#include "collections/collection_text.h"
#include "core/scope.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"

namespace vndoc6 {

template <class T>
void AttachmentList<T>::Write(bag::BagWriter& writer) const {
  this->WriteText(writer, entries_);
}

template <class T>
void AttachmentList<T>::Read(const bag::KeptText& text) {
  this->ReadMembers(text, entries_, [this](T* member) { Add(member); });
}

template <class T>
void AttachmentList<T>::ReadQuietly(const bag::KeptText& text) {
  this->ReadMembersQuietly(text, entries_);
}

template <class T>
void AttachmentList<T>::Report(T& member, EnumVantrelChangeEvent type) {
  if (Scope* scope = this->document_scope()) Inside::RaiseChange(member, *scope, type, 0);
}

template <class T>
void AttachmentList<T>::Add(T* member) {
  if (member == nullptr) return;
  // A host's handler may let go of the member, or of all of this, while it is told.
  const automation::Ref<T> added(member);
  const automation::Ref<AttachmentList> self(this);
  vnStep* const step = this->step();
  Scope* const scope = this->document_scope();
  AttachmentList* const all = step != nullptr && scope != nullptr ? &of_document_(*scope) : nullptr;
  if (!this->AddUnderOwnKey(*added)) return;
  try {
    Inside::TakeDocument(*added, this->document());
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
void AttachmentList<T>::Join(vnDocument& document) {
  this->HandOnDocument();
  for (size_t i = 0; i < this->store_.size(); ++i) {
    of_document_(ScopeOf(document)).AddUnderOwnKey(this->store_[i]);
  }
}

template <class T>
void AttachmentList<T>::Leave(vnDocument& document) {
  for (size_t i = this->store_.size(); i-- > 0;) {
    of_document_(ScopeOf(document)).store_.RemoveMember(this->store_[i]);
  }
}

template <class T>
void AttachmentList<T>::Remove(const automation::Variant& pvRef) {
  const automation::Ref<AttachmentList> self(this);
  if (const automation::Ref<T> removed = this->store_.Remove(pvRef)) Report(*removed, vnceRemove);
}

template class AttachmentList<vnFile>;
template class AttachmentList<vnJump>;

}  // namespace vndoc6
