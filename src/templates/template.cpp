#include "vndoc6/templates/template.h"

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "collections/collection_text.h"
#include "schema/rows.h"
#include "templates/tag_text.h"
#include "vndoc6/templates/template_library.h"

namespace vndoc6 {
namespace {

using automation::Variant;

// What a template's change reports. Published: never change one.
enum DetailNumber : int32_t { kDisplayName = 1, kDescription = 2, kValue = 3 };

}  // namespace

struct vnTemplate::Schema {
  // The keys are in every file: never change one.
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnTemplate::TemplateLibrary>("TemplateLibrary")
            .not_content("leads back to the root"),
        property<&vnTemplate::ID, &vnTemplate::SetID>("ID", "plID").field(&vnTemplate::id_, "ID"),
        property<&vnTemplate::Key>("Key"),
        property<&vnTemplate::DisplayName, &vnTemplate::SetDisplayName>("DisplayName",
                                                                        "psDisplayName")
            .field(&vnTemplate::display_name_, "DisplayName")
            .reports(kDisplayName),
        property<&vnTemplate::Description, &vnTemplate::SetDescription>("Description",
                                                                        "psDescription")
            .field(&vnTemplate::description_, "Description")
            .reports(kDescription),
        property<&vnTemplate::Value, &vnTemplate::SetValue>("Value", "psValue")
            .field(&vnTemplate::value_, "Value")
            .reports(kValue),
        property<&vnTemplate::TagVariant, &vnTemplate::SetTagVariant>("TagVariant", "pvTagVariant")
            .own_entry("TagVariant", &vnTemplate::WriteTag, &vnTemplate::ReadTag),
        putref<&vnTemplate::SetTagVariant>("TagVariant", "pvTagVariant"),
        property<&vnTemplate::TagProcessorValue>("TagProcessorValue")
            .not_content("follows from Value"),
        property<&vnTemplate::Templates>("Templates").not_content("leads back to the owner"),
    };
  }();
};

automation::Ref<vnTemplates> vnTemplate::Templates() const { return templates_.get(); }

automation::Ref<vnTemplateLibrary> vnTemplate::TemplateLibrary() const {
  return templates_ ? templates_->TemplateLibrary() : nullptr;
}

Text vnTemplate::Key() const {
  const Text number = automation::NumberText(id_);
  return templates_ ? templates_->ListName() + number : number;
}

void vnTemplate::Put(Text vnTemplate::*member, const Text& value) {
  ReportChange(schema::Store<Schema>(*this, member, value));
}

void vnTemplate::ReportChange(int32_t detail_id) {
  if (templates_) Inside::RaiseChange(*templates_.get(), *this, vnceDetail, detail_id);
}

Variant vnTemplate::TagVariant() const {
  return tag_object_ ? Variant(automation::Ref<automation::Object>(tag_object_.get())) : tag_value_;
}

void vnTemplate::SetTagVariant(const Variant& pvTagVariant) {
  const bool is_object = pvTagVariant.IsObject();
  tag_value_ = is_object ? Variant() : pvTagVariant.ToStorable();
  tag_object_ = is_object ? pvTagVariant.ToObject().get() : nullptr;
}

Text vnTemplate::TagProcessorValue() const { return TagProcessorText(value_); }

void vnTemplate::StoreTemplates(vnTemplates* templates) {
  templates_ = templates;
  ParentChanged();
}

automation::Object* vnTemplate::FindParent() const { return templates_.get(); }

void vnTemplate::Write(bag::BagWriter& writer) {
  schema::WriteEntries<Schema>(writer, *this, *this);
}

void vnTemplate::Read(const bag::KeptText& text, const Text& key) {
  schema::ReadObject<Schema>(text, *this, *this, key);
}

void vnTemplate::WriteTag(bag::BagWriter& writer) {
  if (!tag_value_.IsEmpty()) writer.AddVariant(u"TagVariant", tag_value_);
}
void vnTemplate::ReadTag(bag::BagReader& reader) {
  // No object is saved, so a picture in a file comes from elsewhere and would be lost again.
  const Variant tag = reader.Get("TagVariant").value_or(Variant());
  SetTagVariant(tag.IsObject() ? Variant() : tag);
}

automation::Ref<vnTemplateLibrary> vnTemplates::TemplateLibrary() const { return library_.get(); }

void vnTemplates::StoreTemplateLibrary(vnTemplateLibrary* library) {
  library_ = library;
  ParentChanged();
}

automation::Object* vnTemplates::FindParent() const { return library_.get(); }

void vnTemplates::Write(bag::BagWriter& writer) const { WriteNumbered(writer); }

void vnTemplates::RaiseChange(vnTemplate& changed, EnumVantrelChangeEvent type, int32_t detail_id) {
  if (library_) Inside::RaiseTemplateChange(*library_.get(), changed, type, detail_id);
}

Variant vnTemplates::StoreKey(const Variant& position_or_key) const {
  const Text* const key = position_or_key.If<Text>();
  const size_t prefix = ListName().size();
  if (key == nullptr || !automation::EqualsFolded(TextView(*key).substr(0, prefix), ListName())) {
    return position_or_key;
  }
  return Variant(TextView(*key).substr(prefix));
}

automation::Ref<vnTemplate> vnTemplates::Item(const Variant& pvIndexKey) const {
  return store_.Find(StoreKey(pvIndexKey));
}

void vnTemplates::Add(vnTemplate* poTemplate) {
  if (poTemplate == nullptr || !AddNumbered(*poTemplate)) return;
  Inside::StoreTemplates(*poTemplate, this);
  RaiseChange(*poTemplate, vnceAdd, 0);
}

void vnTemplates::Remove(const Variant& pvRef) {
  const automation::Ref<vnTemplate> removed = store_.Remove(StoreKey(pvRef));
  if (removed) RaiseChange(*removed, vnceRemove, 0);
}

automation::Ref<vnTemplate> vnTemplates::NewItem(const Text& psDisplayName) {
  automation::Ref<vnTemplate> created = automation::Make<vnTemplate>();
  created->SetDisplayName(psDisplayName);
  Add(created.get());
  return created;
}

void vnTemplates::Read(const bag::KeptText& text) {
  const automation::Ref<vnTemplates> self(this);
  ReadNumbered(text, [this](vnTemplate* loaded) { Add(loaded); });
}

const automation::ClassInfo& vnTemplate::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTemplate>(
      "vnTemplate", "A text that hosts reuse.",
      {0x80396AD9, 0xB21D, 0x422E, {0x95, 0xE8, 0x75, 0x80, 0xEA, 0x9C, 0x33, 0xAF}},
      {0x090C5AEE, 0x8C7E, 0x407C, {0xB5, 0x25, 0x25, 0xE0, 0x0C, 0x44, 0x7F, 0x27}},
      Schema::kRows);
  return info;
}

const automation::ClassInfo& vnTemplates::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnTemplates>(
      "vnTemplates", "A numbered list of templates in a template library.",
      {0xE1B2BE9C, 0x3AF7, 0x4714, {0xA8, 0x31, 0xE0, 0x86, 0x08, 0xB0, 0xE5, 0x83}},
      {0x84ADD16A, 0x9A81, 0x4FD6, {0xB8, 0xF6, 0x6A, 0x5E, 0x15, 0x59, 0x26, 0x1F}},
      std::tuple{
          property<&vnTemplates::TemplateLibrary>("TemplateLibrary")
              .not_content("leads back to the root"),
          property<&vnTemplates::Item>("Item", by_reference{"pvIndexKey"}),
          property<&vnTemplates::Count>("Count").not_content("the members themselves are read"),
          property<&vnTemplates::NewEnum>("NewEnum").not_content("the members themselves are read"),
          method<&vnTemplates::Add>("Add", "poTemplate"),
          method<&vnTemplates::Remove>("Remove", "pvRef"),
          method<&vnTemplates::RemoveAll>("RemoveAll"),
          method<&vnTemplates::NewItem>("NewItem", optional("psDisplayName", u"New Item")),
          property<&vnTemplates::ListName>("ListName"),
      });
  return info;
}

}  // namespace vndoc6
