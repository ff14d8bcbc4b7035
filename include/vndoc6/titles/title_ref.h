// vnTitleRef and vnTitleRefs: who performs or approves something, as references to titles.
#pragma once

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/collections/collection.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

class vnTitles;

// A reference to a title of the document, with the name that the title had, so that a document
// reads sensibly where its title handler is absent. In a document without a handler: free text.
class vnTitleRef : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The title's reference text; empty when cleared. Setting it takes the title's name along;
  // nothing changes when no title has that reference, or when the document's title handler is not
  // available.
  const Text& Ref() const { return ref_; }
  // Refers to a title and takes its name along. Nothing changes when no title has that reference,
  // or when the document's title handler is not available.
  void SetRef(const Text& psRef);
  // The name last taken from the title, or the free text.
  const Text& DisplayNameCache() const { return display_name_cache_; }
  // The title's name as it is now, "." when the title is gone. Without an available handler, what
  // DisplayNameCache gives. Reading does not refresh the cache.
  Text DisplayName();
  // A free text, in a document without a handler; nothing changes otherwise, for titles bear their
  // handler's names.
  void SetDisplayName(const Text& psDisplayName);
  // Empties the reference and its cached name.
  void Clear();

 private:
  friend struct Inside;
  void Write(bag::BagWriter& writer) const;
  // Without what the text had beside them: for copies.
  void WriteValues(bag::BagWriter& writer) const;
  // The key says nothing. Looks nothing up among the titles.
  void Read(const bag::KeptText& text, const Text& key = {});

  struct Schema;
  void RestoreRef(const Text& ref) { ref_ = ref; }
  void RestoreDisplayName(const Text& name);
  // Nothing without a document.
  automation::Ref<vnTitles> DocumentTitles() const;

  Text ref_;
  Text display_name_cache_;
};

// With a title handler a list of references to titles; without one at most one entry of free text.
class vnTitleRefs : public Collection<vnTitleRef> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // With a handler: the reference with that text, added when the list has none. A text that no
  // title has makes an empty reference. Without a handler: the single entry, now of that text.
  // Nothing when pvRef has no form as text.
  automation::Ref<vnTitleRef> Add(const automation::Variant& pvRef);

 private:
  friend struct Inside;
  // Enters a reference under its text, unless that is taken; in a document without a handler it
  // takes the place of what was there.
  void AddReference(vnTitleRef& reference);
  void Write(bag::BagWriter& writer) const;
  void WriteValues(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);

  bool UsingHandler() const;
  void RestoreReference(vnTitleRef* reference);
  automation::Ref<vnTitleRef> AddTitle(const Text& ref);
  automation::Ref<vnTitleRef> AddFreeText(const Text& text);
};

}  // namespace vndoc6
