#include "vndoc6/core/member.h"

#include "core/scope.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {

automation::Ref<vnDocument> Member::Document() const { return document_.get(); }

void Member::TakeDocument(vnDocument* document) {
  document_ = document;
  ParentChanged();
}

vnDocument* Member::document() const { return document_.get(); }

Scope* Member::document_scope() const {
  vnDocument* const document = document_.get();
  return document != nullptr ? &ScopeOf(*document) : nullptr;
}

automation::Object* Member::FindParent() const { return document_.get(); }

automation::Object* Member::OwnerOrDocument(automation::Object* owner) const {
  return owner != nullptr ? owner : document_.get();
}

}  // namespace vndoc6
