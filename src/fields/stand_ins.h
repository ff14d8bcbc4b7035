// FieldDefs, FieldValues and FormDef: what a document keeps field definitions, field values and
// forms in when the host has no objects of its own for them. They know nothing of their texts.
#pragma once

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"

namespace vndoc6 {

// What the three have in common: the text they were loaded from, given back unchanged.
class StandIn : public automation::Object {
 public:
  // The text that the object was loaded from, given back unchanged.
  const Text& GetText() const { return text_; }
  void SetText(const Text& psText) { text_ = psText; }

 private:
  Text text_;
};

class FieldDefs : public StandIn {
 public:
  // The database that the document was bound to; Nothing before.
  automation::Ref<automation::Object> Database() const { return database_.get(); }
  void SetDatabase(automation::Object* poDatabase) { database_ = poDatabase; }

  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

 private:
  automation::Owned<automation::Object> database_;
};

class FieldValues : public StandIn {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }
};

class FormDef : public StandIn {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }
};

}  // namespace vndoc6
