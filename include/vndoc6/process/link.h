// vnLink: joins two steps. vnLinks: the links of a document, or a working list of a step.
#pragma once

#include <memory>
#include <utility>

#include "vndoc6/collections/collection.h"

namespace vndoc6 {

class vnCondition;
class vnConditions;
class vnLine;

// Setting a link's properties reports nothing: hosts do, with vnDocument.RaiseLinkChange.
class vnLink : public Member {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnLink();
  ~vnLink() override;

  void SetDocument(vnDocument* poDocument) { TakeDocument(poDocument); }
  // The key in its collection; empty until the link is added to one or loaded.
  const vndoc6::Text& Key() const { return key_; }
  // What is written at the link's line.
  const vndoc6::Text& Text() { return values().text; }
  void SetText(const vndoc6::Text& psText) { values().text = psText; }
  // What users see when they point at the link's line.
  const vndoc6::Text& Tooltip() { return values().tooltip; }
  void SetTooltip(const vndoc6::Text& psTooltip) { values().tooltip = psTooltip; }
  // The key of the step that the link leaves. Nobody checks that there is such a step.
  const vndoc6::Text& OriginStepKey() { return values().origin_step_key; }
  void SetOriginStepKey(const vndoc6::Text& psOriginStepKey) {
    values().origin_step_key = psOriginStepKey;
  }
  // The key of the step that the link leads to. Nobody checks that there is such a step.
  const vndoc6::Text& DestinationStepKey() { return values().destination_step_key; }
  void SetDestinationStepKey(const vndoc6::Text& psDestinationStepKey) {
    values().destination_step_key = psDestinationStepKey;
  }
  // The connector that draws the link; built on the first read.
  automation::Ref<vnLine> Line();
  // Another connector in its place; Nothing has one built on the next read. It keeps the link that
  // it was given.
  void SetLine(vnLine* poLine);
  // The tests for taking this path; built on the first read.
  automation::Ref<vnConditions> Conditions();
  // Other tests in their place; Nothing has the collection built on the next read.
  void SetConditions(vnConditions* poConditions);
  // Free text, in the host's language; independent of Conditions.
  const vndoc6::Text& ConditionExpression() { return values().condition_expression; }
  void SetConditionExpression(const vndoc6::Text& psConditionExpression) {
    values().condition_expression = psConditionExpression;
  }

  // The link's serialised text.
  vndoc6::Text Save();
  // Reads a serialised text; its key counts when psKey is empty. Reports nothing. The line and the
  // conditions are built anew on the next read.
  void Load(const vndoc6::Text& psLoad, const vndoc6::Text& psKey = {});

  // Adds a condition of this link to Conditions and gives it.
  automation::Ref<vnCondition> NewCondition(const vndoc6::Text& psDisplayName,
                                            const vndoc6::Text& psCondition);
  // Takes a condition out of Conditions; False when there is none with that key.
  bool RemoveCondition(const vndoc6::Text& psKey);

 private:
  friend struct Inside;
  void TakeDocument(vnDocument* document) override;
  void StoreKey(vndoc6::Text key) { key_ = std::move(key); }
  void Write(bag::BagWriter& writer);
  void Read(const bag::KeptText& text, const vndoc6::Text& key);
  std::function<void()> RememberUnread() override;
  bag::UnknownEntries& unknown_entries();

  struct Schema;
  struct Values {
    vndoc6::Text text, tooltip, origin_step_key, destination_step_key, condition_expression;
  };
  struct Content;
  // Everything but the key, read from the text on first use: most links of a document that is
  // loaded are saved again unread.
  Content& content();
  void ReadContent(const bag::KeptText& text, Content& content);
  Values& values();

  vndoc6::Text key_;
  bag::KeptText unread_;
  std::unique_ptr<Content> content_;
};

class vnLinks : public Collection<vnLink> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  void SetDocument(vnDocument* poDocument) { TakeDocument(poDocument); }

  // Adds a link, with a fresh key when it has none. Raises LinkAdded. Nothing happens when its key
  // is in the collection already.
  void Add(vnLink* poLink);
  // Takes a link out; raises nothing.
  void Remove(const automation::Variant& pvRef);

 private:
  friend struct Inside;
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);
  // The same, for links that were in the document already: raises nothing.
  void ReadQuietly(const bag::KeptText& text);
};

}  // namespace vndoc6
