// vnCondition: one named test of a link or a step. vnConditions: the tests of one of them.
#pragma once

#include <utility>

#include "vndoc6/collections/collection.h"

namespace vndoc6 {

class vnLink;

class vnCondition : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  void SetDocument(vnDocument* poDocument) { TakeDocument(poDocument); }
  // The link that the condition was made for; Nothing for a step's.
  automation::Ref<vnLink> Link() const;
  void SetLink(vnLink* poLink);
  // The key in its collection; empty until the condition is added to one or loaded.
  const Text& Key() const { return key_; }
  // The name that users see. Setting it reports nothing.
  const Text& DisplayName() const { return display_name_; }
  void SetDisplayName(const Text& psDisplayName) { display_name_ = psDisplayName; }
  // The test itself, in the host's language. Setting it reports vndConditionTest, changed or not.
  const Text& ConditionTest() const { return condition_test_; }
  void SetConditionTest(const Text& psConditionTest) {
    Put(&vnCondition::condition_test_, psConditionTest);
  }
  // What users are told when the test fails. Setting it reports vndConditionTest as well, changed
  // or not.
  const Text& FailMessage() const { return fail_message_; }
  void SetFailMessage(const Text& psFailMessage) {
    Put(&vnCondition::fail_message_, psFailMessage);
  }

  // The condition's serialised text.
  Text Save() const;
  // Reads a serialised text; its key counts when psKey is empty. Reports nothing.
  void Load(const Text& psLoad, const Text& psKey = {});

 protected:
  friend struct Inside;
  void StoreKey(Text key) { key_ = std::move(key); }
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text, const Text& key);
  // Everything but the key and the owners. Reports nothing.
  void CopyFrom(const vnCondition& other);

  automation::Object* FindParent() const override;

 private:
  struct Schema;
  void Put(Text vnCondition::*member, const Text& value);

  automation::Weak<vnLink> link_;
  Text key_;
  Text display_name_;
  Text condition_test_;
  Text fail_message_;
};

class vnConditions : public Collection<vnCondition> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The link whose tests these are; it can't be read back. Conditions get their own from
  // vnLink.NewCondition alone.
  void SetLink(vnLink* poLink);

  // Adds a condition, with a fresh key when it has none, and gives it this collection's document.
  // Reports 1 as a condition change. Nothing is added when its key is in the collection already.
  void Add(vnCondition* poCondition);
  // Takes a condition out and reports 2 as a condition change; nothing happens when there is none.
  void Remove(const automation::Variant& pvRef);

 protected:
  friend struct Inside;
  // Remove; whether there was one.
  bool RemoveMember(const automation::Variant& ref);
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);

  automation::Object* FindParent() const override;

 private:
  automation::Weak<vnLink> link_;
};

}  // namespace vndoc6
