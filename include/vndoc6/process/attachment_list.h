// AttachmentList: the files or jumps of a step, or all those of a document.
#pragma once

#include "vndoc6/collections/collection.h"
#include "vndoc6/process/attachment.h"

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

 protected:
  friend struct Inside;
  // `entries` are what the saved text has, `of_document` gives the document's own list.
  AttachmentList(const MemberEntries& entries, AttachmentList& (*of_document)(Scope&))
      : entries_(entries), of_document_(of_document) {}
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);
  // The same, for members that were in the document already: reports nothing.
  void ReadQuietly(const bag::KeptText& text);
  // A copied step's members come to the document when all of the step is there: reports nothing.
  void Join(vnDocument& document);
  // Takes them out of the document's list again.
  void Leave(vnDocument& document);

 private:
  void Report(T& member, EnumVantrelChangeEvent type);

  const MemberEntries& entries_;
  AttachmentList& (*of_document_)(Scope&);
};

}  // namespace vndoc6
