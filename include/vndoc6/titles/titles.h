// vnTitle and vnTitles: the roles, people or groups that steps and details refer to. A document
// does not store them: a title handler, an object of the host's, reads them from wherever the wider
// system keeps them.
#pragma once

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/collections/keyed_store.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

class Properties;
class vnTitleRefs;
class vnTitles;

// Whether a title handler needs the document's database. Published: never change one.
enum VNHandlerRequiresDirect : int32_t {
  VNRDNotRequired = 0,
  VNRDRequired = 1,
  VNRDUnknown = 2,  // the handler can't be created or can't tell
};
template <>
const automation::EnumInfo& automation::DescribeEnum<VNHandlerRequiresDirect>();

// A plain record: setting its members reports nothing.
class vnTitle : public Member {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The handler's number for the title; its meaning is the handler's.
  int32_t ID() const { return id_; }
  void SetID(int32_t plID) { id_ = plID; }
  // The name that users see.
  const Text& DisplayName() const { return display_name_; }
  void SetDisplayName(const Text& psDisplayName) { display_name_ = psDisplayName; }
  // What the role or person does; free text.
  const Text& Description() const { return description_; }
  void SetDescription(const Text& psDescription) { description_ = psDescription; }
  // The list that the title was added to; Nothing before.
  automation::Ref<vnTitles> Titles() const;
  // The text that references name the title by. A title stays in its list under the one it was
  // added with.
  const Text& Ref() const { return ref_; }
  void SetRef(const Text& psRef) { ref_ = psRef; }

 protected:
  friend struct Inside;
  void StoreTitles(vnTitles* titles);

  automation::Object* FindParent() const override;

 private:
  int32_t id_ = 0;
  Text ref_;
  Text display_name_;
  Text description_;
  automation::Weak<vnTitles> titles_;
};

// Reading the list consults the title handler that the document's Properties name under
// "Titles Handler", once: the list is emptied and the handler adds to it. A handler that can't be
// created or fails counts as consulted and raises nothing. While a handler works, reading the list
// gives what is in it so far.
//
// A handler has the members RequiresDirect (Boolean, get), Document (put), Database (put, only
// used when RequiresDirect is True) and LoadTitles, which calls Document.Titles.AddTitle for each
// title and gives 0 when that succeeded.
class vnTitles : public Member {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnTitles();
  ~vnTitles() override;

  // The title at a 1-based position (a number) or with a reference text; Nothing when there is
  // none. Consults the handler first, as Count and NewEnum do.
  automation::Ref<vnTitle> Item(const automation::Variant& pvIndexKey);
  // How many titles there are; consults the handler first.
  int32_t Count();
  // Walks the titles there are now, in order; consults the handler first.
  automation::Ref<automation::Enumerator> NewEnum();
  // Takes a title out, by position or reference; nothing happens when there is none.
  void Remove(const automation::Variant& pvRef);
  // Empties the list; the handler is not consulted again for that.
  void RemoveAll() { store_.Clear(); }
  // Adds a title and gives it. When psReference is taken, the new title is not in the list and
  // belongs to no document. What is added before the handler was consulted is dropped by the
  // consultation.
  automation::Ref<vnTitle> AddTitle(int32_t plID, const Text& psReference,
                                    const Text& psDisplayName, const Text& psDescription = {});
  // Settings of hosts and handlers; not saved.
  automation::Ref<Properties> GetProperties() const;

  // Whether the document's title handler works: consults it, and is True when it filled the list.
  bool HandlerAvailable();
  // Whether the document names a title handler, working or not.
  bool UsingHandler() const { return !HandlerName().empty(); }
  // Makes the next read consult the handler again.
  void Reset() { tried_ = false; }
  // A new, empty list of references to titles of this document.
  automation::Ref<vnTitleRefs> TitleRefsObj() const;
  // What the document's Properties hold under "Titles Handler"; empty when that is missing, is no
  // text, or there is no document.
  Text HandlerName() const;
  // Whether the title handler needs the document's database; VNRDUnknown when it can't tell.
  // Creates the handler to ask it, unless it is one that is known.
  VNHandlerRequiresDirect HandlerRequiresDirect();

 private:
  friend struct Inside;
  // The titles must be read again: a load completed or a database was bound.
  void ClearTried() { Reset(); }

  // The list itself, its handler consulted. A handler may let go of everything: who looks at the
  // list afterwards holds on to this.
  automation::Ref<vnTitles> Consulted();
  void Consult();
  bool LoadFromHandler(Scope& scope);

  KeyedStore<vnTitle> store_;
  automation::Owned<Properties> properties_;
  bool tried_ = false;
  bool handler_loaded_ = false;
  bool consulting_ = false;
};

}  // namespace vndoc6
