// Member: what every object below a document has in common.
#pragma once

#include "automation/object.h"

#include "core/scope.h"
namespace vndoc6 {

class Scope;
class vnDocument;

class Member : public automation::Object {
 public:
  // The document this object belongs to; Nothing until it is given one, and again when the
  // document is gone.
  automation::Ref<vnDocument> Document() const;

  // --- Inside the library; hosts have no use for these. ---
  virtual void InternalSetDocument(vnDocument* document);
  vnDocument* InternalDocument() const;
  // Null without a document.
  Scope* InternalScope() const;

 protected:
  automation::Object* FindParent() const override;
  // `owner` when it is there, else the document: for classes with a nearer owner.
  automation::Object* OwnerOrDocument(automation::Object* owner) const;

 private:
  automation::Weak<vnDocument> document_;
};

}  // namespace vndoc6
