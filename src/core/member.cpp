#include "core/member.h"

#include "core/scope.h"
#include "document/document.h"

namespace vndoc6 {

automation::Ref<vnDocument> Member::Document() const { return document_.get(); }

void Member::InternalSetDocument(vnDocument* document) {
  document_ = document;
  ParentChanged();
}

vnDocument* Member::InternalDocument() const { return document_.get(); }

Scope* Member::InternalScope() const {
  vnDocument* const document = document_.get();
  return document != nullptr ? &ScopeOf(*document) : nullptr;
}

automation::Object* Member::FindParent() const { return document_.get(); }

automation::Object* Member::OwnerOrDocument(automation::Object* owner) const {
  return owner != nullptr ? owner : document_.get();
}

}  // namespace vndoc6
