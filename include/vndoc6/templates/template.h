// vnTemplate and vnTemplates: reusable texts, kept in numbered lists of a template library.
#pragma once

#include <cstdint>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/collections/numbered_collection.h"
#include "vndoc6/core/document_events.h"

namespace vndoc6 {

class vnTemplateLibrary;
class vnTemplates;

class vnTemplate : public automation::Object, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The library of the list that the template was added to; Nothing before.
  automation::Ref<vnTemplateLibrary> TemplateLibrary() const;
  // The template's number in its list; 0 until it is added to one. It stays in the list under the
  // number it was added with.
  int32_t ID() const { return id_; }
  void SetID(int32_t plID) { id_ = plID; }
  // The list's name and the ID: "fig3".
  Text Key() const;
  // The name that users see. Setting it reports 1, changed or not.
  const Text& DisplayName() const { return display_name_; }
  void SetDisplayName(const Text& psDisplayName) { Put(&vnTemplate::display_name_, psDisplayName); }
  // What the template is for; free text. Setting it reports 2, changed or not.
  const Text& Description() const { return description_; }
  void SetDescription(const Text& psDescription) { Put(&vnTemplate::description_, psDescription); }
  // The text itself, plain or rich. Setting it reports 3, changed or not.
  const Text& Value() const { return value_; }
  void SetValue(const Text& psValue) { Put(&vnTemplate::value_, psValue); }
  // Whatever the host keeps with the template; reports nothing. Saved, unless it is an object.
  automation::Variant TagVariant() const;
  void SetTagVariant(const automation::Variant& pvTagVariant);
  // Value with its rich-text fields as tags; tag_text.h says how.
  Text TagProcessorValue() const;
  // The list that the template was added to; Nothing before.
  automation::Ref<vnTemplates> Templates() const;

 protected:
  friend struct Inside;
  void StoreTemplates(vnTemplates* templates);
  void Write(bag::BagWriter& writer);
  // The key says nothing.
  void Read(const bag::KeptText& text, const Text& key);

  automation::Object* FindParent() const override;

 private:
  struct Schema;
  void Put(Text vnTemplate::*member, const Text& value);
  void ReportChange(int32_t detail_id);
  void WriteTag(bag::BagWriter& writer);
  void ReadTag(bag::BagReader& reader);

  int32_t id_ = 0;
  Text display_name_;
  Text description_;
  Text value_;
  automation::Variant tag_value_;  // never an object
  // Owned: a template of the same library must not hold the library from outside.
  automation::Owned<automation::Object> tag_object_;
  automation::Weak<vnTemplates> templates_;
};

// A list of templates. Its members are found by position, by the text of their ID ("3") and by
// their key ("fig3").
class vnTemplates : public NumberedCollection<vnTemplate, automation::Object> {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The library that the list belongs to; Nothing when there is none.
  automation::Ref<vnTemplateLibrary> TemplateLibrary() const;
  // The template at a 1-based position (a number), or with an ID ("3") or a key ("fig3"); Nothing
  // when there is none.
  automation::Ref<vnTemplate> Item(const automation::Variant& pvIndexKey) const;
  // Adds a template, numbering one whose ID is 0. Nothing happens when the number is taken.
  void Add(vnTemplate* poTemplate);
  // Takes a template out; nothing happens when there is none.
  void Remove(const automation::Variant& pvRef);
  // A new template; it is not in the list when its number is taken.
  automation::Ref<vnTemplate> NewItem(const Text& psDisplayName = u"New Item");

 protected:
  friend struct Inside;
  void StoreTemplateLibrary(vnTemplateLibrary* library);
  // Passes a change of a template on to the library.
  void RaiseChange(vnTemplate& changed, EnumVantrelChangeEvent type, int32_t detail_id);
  void Write(bag::BagWriter& writer) const;
  void Read(const bag::KeptText& text);

  automation::Object* FindParent() const override;

 private:
  // What the store finds a member by: a key without the list's name.
  automation::Variant StoreKey(const automation::Variant& position_or_key) const;

  automation::Weak<vnTemplateLibrary> library_;
};

}  // namespace vndoc6
