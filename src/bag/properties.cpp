#include "vndoc6/bag/properties.h"

#include <algorithm>
#include <utility>

#include "automation/inside.h"
#include "bag/bag_file.h"
#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "platform/file_system.h"
#include "schema/rows.h"
#include "vndoc6/bag/position.h"

namespace vndoc6 {

using automation::Ref;
using automation::Variant;

namespace {

// Up to here a look at every key is quicker than an index.
constexpr size_t kUnindexed = 16;

}  // namespace

Property::Property(Text key, const Variant& value) : key_(std::move(key)) { SetValue(value); }

Variant Property::Value() const {
  return object_is_value_ ? Variant(Ref<automation::Object>(object_.get())) : value_;
}

void Property::SetValue(const Variant& pvValue) {
  Variant value = pvValue.IsObject() ? Variant() : pvValue.ToStorable();
  automation::Owned<automation::Object> object(pvValue.IsObject() ? pvValue.ToObject().get()
                                                                  : nullptr);
  object_is_value_ = pvValue.IsObject();
  // What was there goes at the end: letting go of an object may run a host's code.
  std::swap(value_, value);
  std::swap(object_, object);
}

void Property::SetObject(automation::Object* poObject) {
  const automation::Owned<automation::Object> previous = std::exchange(object_, poObject);
}

Text Property::ValueTypeName() const {
  return automation::FromUtf8(object_ ? object_->TypeName() : Value().TypeName());
}

void Property::Write(bag::BagWriter& writer) const {
  writer.AddVariant(key_, object_ ? Variant(Object()) : Value());
}

void Property::CopyFrom(const Property& other) {
  if (&other == this) return;
  const Ref<automation::Object> object = other.Object();
  SetValue(other.Value());
  SetObject(object.get());
}

automation::Object* Property::FindParent() const { return bag_.get(); }

void Property::Join(Properties& bag, uint64_t serial) {
  bag_ = &bag;
  serial_ = serial;
  ParentChanged();
}

void Property::Leave() {
  bag_ = nullptr;
  ParentChanged();
}

Property* Properties::Entries::Find(TextView key) const {
  if (list.size() <= kUnindexed) {
    for (const auto& entry : list) {
      if (Inside::own_key(*entry) == key) return entry.get();
    }
    return nullptr;
  }
  if (!IsIndexed()) BuildIndex();
  const auto found = index_.find(key);
  return found != index_.end() ? found->second : nullptr;
}

Property* Properties::Entries::At(const Variant& position) const {
  const auto index = bag::IndexOfPosition(position, list.size());
  return index ? list[*index].get() : nullptr;
}

void Properties::Entries::Append(Property& entry) {
  list.emplace_back(&entry);
  if (!IsIndexed()) return;
  try {
    index_.emplace(Inside::own_key(entry), &entry);
  } catch (...) {
    list.pop_back();
    throw;
  }
}

Ref<Property> Properties::Entries::Remove(TextView key) {
  Ref<Property> removed(Find(key));
  if (!removed) return removed;
  index_.erase(key);
  list.erase(std::partition_point(list.begin(), list.end(), [&](const auto& entry) {
    return entry->serial_ < removed->serial_;
  }));
  return removed;
}

void Properties::Entries::BuildIndex() const {
  std::unordered_map<TextView, Property*> index;
  index.reserve(list.size());
  for (const auto& entry : list) index.emplace(Inside::own_key(*entry), entry.get());
  index_ = std::move(index);
}

void Properties::Add(const Text& psKey, const Variant& pvValue) {
  if (Property* const entry = entries_.Find(psKey)) {
    entry->SetValue(pvValue);
  } else {
    entries_.Append(*NewEntry(psKey, pvValue));
  }
}

Ref<Property> Properties::Item(const Variant& pvIndexKey) const {
  const auto* key = pvIndexKey.If<Text>();
  return key != nullptr ? entries_.Find(*key) : entries_.At(pvIndexKey);
}

void Properties::Remove(const Text& psKey) {
  if (const Ref<Property> removed = entries_.Remove(psKey)) removed->Leave();
}

void Properties::RemoveAll() { Replace({}); }

Ref<Property> Properties::ItemDefault(const Text& psKey, const Variant& pvDefault) const {
  if (Property* const entry = entries_.Find(psKey)) return entry;
  return automation::Make<Property>(psKey, pvDefault);
}

Variant Properties::Value(const Text& psKey, const Variant& pvDefault) const {
  const Property* const entry = entries_.Find(psKey);
  return entry != nullptr ? entry->Value() : pvDefault;
}

Ref<automation::Enumerator> Properties::NewEnum() const {
  return automation::Make<automation::Enumerator>(Snapshot());
}

Text Properties::Key(int32_t plIndex) const {
  const Property* const entry = entries_.At(plIndex);
  return entry != nullptr ? Inside::own_key(*entry) : Text();
}

Ref<Properties> Properties::Clone() const {
  auto clone = automation::Make<Properties>();
  for (const auto& entry : entries_.list) clone->Copy(*entry);
  return clone;
}

bool Properties::WriteToFile(const Text& psFileName, const Text&) const {
  std::string bytes;
  bag::BagWriter writer(bytes);
  Write(writer);
  return platform::ReplaceFileWith(psFileName, bytes);
}

bool Properties::ReadFromFile(const Text& psFileName, const Text&) {
  const auto text = bag::ReadTextFile(psFileName);
  return text && Read(*text);
}

Text Properties::GetText() const {
  return bag::BagTextOf([this](bag::BagWriter& writer) { Write(writer); });
}

void Properties::Merge(Properties* poProperties) {
  // Merging a bag into itself changes nothing.
  if (poProperties == nullptr || poProperties == this) return;
  // What a replaced object lets go of may change the other bag.
  for (const auto& entry : poProperties->Snapshot()) Copy(static_cast<const Property&>(*entry));
}

bool Properties::IsWellFormed(const Text& psText, const Text& psSeparator) const {
  return Inside::Read(*automation::Make<Properties>(), bag::KeptText(psText), psSeparator);
}

void Properties::LoadText(const Variant& pvText, int32_t, int32_t, const Text& psSeparator) {
  Read(bag::KeptText(pvText.ToText()), psSeparator);
}

void Properties::Write(bag::BagWriter& writer) const {
  for (const auto& entry : entries_.list) Inside::Write(*entry, writer);
}

bool Properties::Read(const bag::KeptText& text, TextView separator) {
  bag::BagScanner scanner(text, automation::ToUtf8(separator));
  Entries loaded;
  bag::BagEntry found;
  bool well_formed = true;
  while (scanner.Next(found)) {
    Variant value;
    well_formed = scanner.ValueOf(found, value);
    if (!well_formed) break;
    Text key = scanner.KeyOf(found);
    if (loaded.Find(key) == nullptr) loaded.Append(*NewEntry(std::move(key), value));
  }
  Replace(std::move(loaded));
  return well_formed && !scanner.faulty();
}

void Properties::StoreOwner(automation::Object* owner) {
  owner_ = owner;
  ParentChanged();
}

automation::Object* Properties::FindParent() const { return owner_.get(); }

std::vector<Ref<automation::Object>> Properties::Snapshot() const {
  std::vector<Ref<automation::Object>> entries;
  entries.reserve(entries_.list.size());
  for (const auto& entry : entries_.list) entries.emplace_back(entry.get());
  return entries;
}

Ref<Property> Properties::NewEntry(Text key, const Variant& value) {
  auto entry = automation::Make<Property>(std::move(key), value);
  entry->Join(*this, next_serial_++);
  return entry;
}

void Properties::Copy(const Property& entry) {
  const Text& key = Inside::own_key(entry);
  Ref<Property> copy(entries_.Find(key));
  if (!copy) {
    copy = NewEntry(key, {});
    entries_.Append(*copy);
  }
  Inside::CopyFrom(*copy, entry);
}

void Properties::Replace(Entries entries) {
  // Entries go when the bag has its new ones: what they let go of may look into it.
  std::swap(entries_, entries);
  for (const auto& entry : entries.list) entry->Leave();
}

const automation::ClassInfo& Property::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<Property>(
      "Property", "An entry of a property bag.",
      {0xe51b10e2, 0xbe3c, 0x4245, {0x81, 0xab, 0x6d, 0xf2, 0x57, 0x04, 0x4f, 0x15}},
      {0x23aa0361, 0x32f0, 0x4e7f, {0xa2, 0x26, 0x88, 0x30, 0x92, 0x7c, 0x22, 0x32}},
      std::tuple{
          property<&Property::Key>("Key").restored_by<&Property::RestoreKey>(),
          property<&Property::Value, &Property::SetValue>("Value", "pvValue"),
          property<&Property::Object, &Property::SetObject>("Object", "poObject"),
          property<&Property::ValueTypeName>("TypeName").not_content("follows from the value"),
      });
  return info;
}

const automation::ClassInfo& Properties::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<Properties>(
      "Properties", "A property bag: values under keys, in order.",
      {0xb256d7b1, 0x8f18, 0x48b6, {0xa5, 0x87, 0xe1, 0x92, 0x6a, 0x1b, 0x15, 0x4b}},
      {0x54a9f0f8, 0x01c4, 0x4e5b, {0xbc, 0xc0, 0x08, 0x0a, 0xa6, 0x47, 0xe8, 0xca}},
      std::tuple{
          method<&Properties::Add>("Add", "psKey", "pvValue")
              .restored_by<&Properties::RestoreEntry>(),
          property<&Properties::Item>("Item", "pvIndexKey"),
          property<&Properties::Count>("Count").not_content("the members themselves are read"),
          method<&Properties::Remove>("Remove", "psKey"),
          method<&Properties::RemoveAll>("RemoveAll"),
          property<&Properties::ItemDefault>("ItemDefault", "psKey", "pvDefault"),
          property<&Properties::Value>("Value", "psKey", "pvDefault"),
          method<&Properties::SetValue>("SetValue", "psKey", "pvValue"),
          property<&Properties::Exists>("Exists", "psKey"),
          property<&Properties::NewEnum>("NewEnum").not_content("the members themselves are read"),
          property<&Properties::Key>("Key", "plIndex"),
          property<&Properties::IsEmpty>("IsEmpty").not_content("the entries themselves are read"),
          method<&Properties::Clone>("Clone"),
          method<&Properties::WriteToFile>("WriteToFile", "psFileName",
                                           optional("psReserved", u"")),
          method<&Properties::ReadFromFile>("ReadFromFile", "psFileName",
                                            optional("psReserved", u"")),
          method<&Properties::SaveText>("SaveText"),
          property<&Properties::GetText>("Text").not_content("the entries themselves are read"),
          method<&Properties::Merge>("Merge", "poProperties"),
          method<&Properties::IsWellFormed>("IsWellFormed", "psText",
                                            optional("psSeparator", u":")),
          method<&Properties::LoadText>("LoadText", "pvText", optional("plReserved1", int32_t{0}),
                                        optional("plReserved2", int32_t{0}),
                                        optional("psSeparator", u":")),
      });
  return info;
}

}  // namespace vndoc6
