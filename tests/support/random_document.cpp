#include "tests/support/random_document.h"

#include <limits>

#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/content/content.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"

namespace vndoc6::testing {

using automation::CallKind;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::Object;
using automation::Ref;
using automation::TypeKind;
using automation::Variant;

namespace {

constexpr size_t kMostMembers = 3;

Text NameOf(const MemberInfo& member) { return automation::FromUtf8(member.name); }

int32_t AnyLong(Random& random) {
  constexpr int32_t kEdges[] = {0,
                                -1,
                                1,
                                15,
                                75,
                                120,
                                0xC0C0C0,
                                std::numeric_limits<int32_t>::max(),
                                std::numeric_limits<int32_t>::min()};
  if (Below(random, 2) == 0) return kEdges[Below(random, std::size(kEdges))];
  return static_cast<int32_t>(Below(random, 2) == 0 ? random() : random() % 100);
}

template <class Real>
Real AnyReal(Random& random) {
  using Limits = std::numeric_limits<Real>;
  const Real edges[] = {0,
                        -Real{0},
                        1,
                        -1,
                        Real(0.1),
                        Limits::max(),
                        Limits::lowest(),
                        Limits::min(),
                        Limits::denorm_min(),
                        Limits::infinity(),
                        -Limits::infinity(),
                        Limits::quiet_NaN()};
  if (Below(random, 3) == 0) return edges[Below(random, std::size(edges))];
  const auto numerator = static_cast<Real>(static_cast<int32_t>(random()));
  return numerator / static_cast<Real>(1 + random() % 1000);
}

int64_t AnyInt64(Random& random) {
  return static_cast<int64_t>((uint64_t{random()} << 32) | random());
}

}  // namespace

Variant RandomContent::Value(const automation::TypeInfo& type) {
  switch (type.kind) {
    case TypeKind::kBoolean:
      return OneIn(2);
    case TypeKind::kShort:
      return static_cast<int16_t>(random_());
    case TypeKind::kLong:
    case TypeKind::kEnum:
      return AnyLong(random_);
    case TypeKind::kSingle:
      return AnyReal<float>(random_);
    case TypeKind::kDouble:
      return AnyReal<double>(random_);
    case TypeKind::kCurrency:
      return automation::Currency{AnyInt64(random_)};
    case TypeKind::kDate:
      return automation::Date{AnyReal<double>(random_)};
    case TypeKind::kText:
      return HostileText(random_);
    case TypeKind::kVariant:
      return AnyValue();
    default:
      return {};
  }
}

Variant RandomContent::AnyValue() {
  constexpr TypeKind kKinds[] = {TypeKind::kBoolean, TypeKind::kShort,  TypeKind::kLong,
                                 TypeKind::kSingle,  TypeKind::kDouble, TypeKind::kCurrency,
                                 TypeKind::kDate,    TypeKind::kText};
  const size_t choice = Below(random_, std::size(kKinds) + 3);
  if (choice < std::size(kKinds)) return Value({kKinds[choice]});
  if (choice == std::size(kKinds)) return automation::Null();
  if (choice == std::size(kKinds) + 1) return automation::ErrorValue{AnyLong(random_)};
  return {};
}

Ref<automation::Picture> RandomContent::Picture() {
  std::vector<uint8_t> bytes(Below(random_, 20));
  for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random_());
  return automation::services().make_picture(std::move(bytes));
}

Text RandomContent::Key() {
  return HostileText(random_, 4) + u"#" + automation::NumberText(next_key_++);
}

void RandomContent::Fill(Object& object) {
  CallMakers(object);
  PutProperties(object);
  FillParts(object);
  if (ContentReader::IsCollection(object)) AddMembers(object);
}

// NewStep, NewTask and their like.
void RandomContent::CallMakers(Object& object) {
  for (const MemberInfo& member : object.GetClassInfo()->members()) {
    if (member.kind != CallKind::kCall || !std::string_view(member.name).starts_with("New")) {
      continue;
    }
    std::vector<Variant> arguments;
    for (const automation::ParameterInfo& parameter : member.parameters) {
      if (!parameter.optional) arguments.push_back(Value(parameter.type));
    }
    for (size_t calls = Below(random_, 3); calls > 0; --calls) {
      automation::Call(object, NameOf(member), arguments);
    }
  }
}

void RandomContent::PutProperties(Object& object) {
  for (const MemberInfo& member : object.GetClassInfo()->members()) {
    if (member.kind == CallKind::kPut || member.kind == CallKind::kPutRef) Put(object, member);
  }
}

void RandomContent::Put(Object& object, const MemberInfo& member) {
  const std::string_view name = member.name;
  const automation::TypeInfo& type = member.parameters.back().type;
  std::vector<Variant> arguments;
  if (member.parameters.size() == 2) arguments.emplace_back(static_cast<int32_t>(random_() % 9));
  if (type.kind == TypeKind::kPicture) {
    arguments.emplace_back(OneIn(3) ? Ref<automation::Picture>() : Picture());
  } else if (type.kind == TypeKind::kFont) {
    const Ref<automation::Font> font = automation::services().make_font();
    PutProperties(*font);
    arguments.emplace_back(font);
  } else if (name == "Key") {
    arguments.emplace_back(Key());
  } else if (name == "ID") {
    arguments.emplace_back(next_key_++);
  } else if (type.kind == TypeKind::kClass || type.kind == TypeKind::kDispatch ||
             member.kind == CallKind::kPutRef) {
    // Owners and parts stay those that the object was made with.
    return;
  } else {
    arguments.push_back(Value(type));
  }
  try {
    object.InvokeMember(member.id, member.kind, {arguments, {}});
    put_.insert(std::string(object.TypeName()) + "." + member.name);
  } catch (const automation::Error& error) {
    // What only the conversion of older files may set.
    if (error.number() != automation::kReadOnlyProperty) throw;
  }
}

void RandomContent::FillParts(Object& object) {
  for (const ContentMember& content : ContentOf(*object.GetClassInfo())) {
    const bool foreign = content.member->result.kind == TypeKind::kDispatch;
    if (content.part == nullptr && !foreign) continue;
    const Variant part = object.InvokeMember(content.member->id, CallKind::kGet, {});
    if (part.ToObject() && part.ToObject()->GetClassInfo() != nullptr) Fill(*part.ToObject());
  }
}

void RandomContent::AddMembers(Object& collection) {
  for (const MemberInfo& member : collection.GetClassInfo()->members()) {
    if (std::string_view(member.name) != "Add") continue;
    for (size_t left = Below(random_, kMostMembers + 1); left > 0; --left) {
      AddMember(collection, member);
    }
  }
  for (const ListMember& member : ContentReader::Members(collection)) Fill(*member.object);
}

void RandomContent::AddMember(Object& collection, const MemberInfo& add) {
  std::vector<Variant> arguments;
  for (const automation::ParameterInfo& parameter : add.parameters) {
    if (parameter.type.kind != TypeKind::kClass) {
      // References to titles are made of texts; a bag takes any value.
      const bool is_reference = add.parameters.size() == 1;
      arguments.push_back(is_reference ? Variant(HostileText(random_)) : Value(parameter.type));
      continue;
    }
    const Ref<Object> member = parameter.type.class_info().Create();
    // The keys of some can't be put, but loaded.
    if (member->FindMember(u"Load") != automation::kNoMember) {
      automation::Call(*member, u"Load", {u"", Key()});
    } else if (member->GetClassInfo()->Find(member->FindMember(u"Key"), CallKind::kPut) !=
               nullptr) {
      automation::Put(*member, u"Key", {Key()});
    }
    arguments.emplace_back(member);
  }
  // An entry of a bag may be a picture.
  if (add.parameters.size() == 2 && OneIn(4)) arguments.back() = Variant(Picture());
  automation::Call(collection, u"Add", arguments);
}

Ref<vnDocument> RandomDocument(RandomContent& content) {
  const auto document = automation::Make<vnDocument>();
  content.Fill(*document);
  const Ref<vnSteps> steps = document->Steps();
  const auto any_step = [&] {
    const size_t position = Below(content.random(), static_cast<size_t>(steps->Count()));
    return steps->Item(Variant(static_cast<int32_t>(position + 1)));
  };
  for (int32_t i = 0; i < steps->Count(); ++i) {
    any_step()->Dependancies()->Add(any_step()->Key(), content.Value({TypeKind::kVariant}));
    const auto link = automation::Make<vnLink>();
    link->SetOriginStepKey(any_step()->Key());
    link->SetDestinationStepKey(any_step()->Key());
    document->Links()->Add(link.get());
  }
  return document;
}

}  // namespace vndoc6::testing
