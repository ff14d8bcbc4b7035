// Member: what every object below a document has in common.
#pragma once

#include <functional>

#include "vndoc6/automation/object.h"

namespace vndoc6 {

class Scope;
class vnDocument;

class Member : public automation::Object {
 public:
  // The document this object belongs to; Nothing until it is given one, and again when the
  // document is gone.
  automation::Ref<vnDocument> Document() const;

 protected:
  friend struct Inside;
  virtual void TakeDocument(vnDocument* document);
  vnDocument* document() const;
  // Null without a document.
  Scope* document_scope() const;
  // Remembers what of the object is kept as text. What it gives makes that text again of what was
  // read since, unless somebody outside holds a part of it. Empty where there is nothing to do.
  virtual std::function<void()> RememberUnread() { return {}; }

  automation::Object* FindParent() const override;
  // `owner` when it is there, else the document: for classes with a nearer owner.
  automation::Object* OwnerOrDocument(automation::Object* owner) const;

 private:
  automation::Weak<vnDocument> document_;
};

}  // namespace vndoc6
