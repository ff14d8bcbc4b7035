#include "tests/support/random_calls.h"

#include <limits>
#include <string_view>
#include <utility>

#include "automation/scoped_value.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/published/published.h"

namespace vndoc6::testing {

using automation::CallKind;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::Object;
using automation::Ref;
using automation::TypeKind;
using automation::Variant;

namespace {

constexpr size_t kMostObjects = 24;
constexpr size_t kMostTexts = 16;
// Texts that hold texts of their own kind would double with every call.
constexpr size_t kLongestText = 400;
constexpr int kDeepest = 3;

automation::EventSource* SourceIn(const Ref<Object>& object) {
  return dynamic_cast<automation::EventSource*>(object.get());
}

}  // namespace

RandomCalls::RandomCalls(std::span<const uint8_t> bytes, Text folder)
    : bytes_(bytes), folder_(std::move(folder)), texts_{u"",     u"a",
                                                        u"A",    u"K=~64\"a\":",
                                                        u"\"",   u"Titles Handler",
                                                        u"fig1", u"12"} {}

RandomCalls::~RandomCalls() {
  depth_ = kDeepest;  // no more calls from handlers
  for (const Ref<Object>& source : sources_) SourceIn(source)->Disconnect(this);
}

uint8_t RandomCalls::Next() {
  if (bytes_.empty()) return 0;
  const uint8_t byte = bytes_.front();
  bytes_ = bytes_.subspan(1);
  return byte;
}

void RandomCalls::Run() {
  while (!bytes_.empty()) Step();
}

void RandomCalls::Step() {
  const uint8_t choice = Next();
  if (objects_.empty() || choice < 16) {
    Create();
  } else if (choice < 32) {
    Release();
  } else if (choice < 40) {
    Listen();
  } else {
    Call();
  }
}

void RandomCalls::Create() {
  const auto classes = PublishedClasses();
  // Every other object is a document: most of the rest lives below one.
  const uint8_t choice = Next();
  Keep(Variant(classes[choice < 128 ? 0 : choice % classes.size()].info().Create()));
}

void RandomCalls::Keep(const Variant& result) {
  if (result.IsObject() && result.ToObject()) {
    if (objects_.size() >= kMostObjects) Release();
    objects_.push_back(result.ToObject());
  } else if (result.IsText() && result.ToText().size() <= kLongestText) {
    if (texts_.size() >= kMostTexts) texts_.erase(texts_.begin());
    texts_.push_back(result.ToText());
  }
}

void RandomCalls::Release() {
  const auto released = objects_.begin() + static_cast<std::ptrdiff_t>(Below(objects_.size()));
  const Ref<Object> object = *released;
  objects_.erase(released);
}

// Joins the listeners of a source of events, or leaves those of the first one joined.
void RandomCalls::Listen() {
  if (!sources_.empty() && Below(3) == 0) {
    const Ref<Object> source = sources_.front();
    sources_.erase(sources_.begin());
    SourceIn(source)->Disconnect(this);
    return;
  }
  for (const Ref<Object>& object : objects_) {
    if (SourceIn(object) == nullptr || sources_.size() > 3) continue;
    SourceIn(object)->Connect(this);
    sources_.push_back(object);
    return;
  }
}

void RandomCalls::OnEvent(const automation::EventInfo& /*event*/,
                          std::span<const Variant> arguments) {
  if (depth_ >= kDeepest || Below(4) != 0) return;
  for (const Variant& argument : arguments) Keep(argument);
  Step();
}

void RandomCalls::Call() {
  const automation::ScopedValue<int> deeper(depth_, depth_ + 1, int(depth_));
  // Alive while it is called, as whoever calls an object holds it.
  const Ref<Object> object(&AnyObject());
  const ClassInfo* info = object->GetClassInfo();
  if (info == nullptr) return;
  const MemberInfo& member = info->members()[Below(info->members().size())];
  std::vector<Variant> arguments;
  for (const automation::ParameterInfo& parameter : member.parameters) {
    if (parameter.optional && Below(2) == 0) break;
    arguments.push_back(Argument(parameter));
  }
  if (Below(32) == 0) arguments.emplace_back(AnyLong());
  called_.insert(std::string(info->name()) + "." + member.name);
  try {
    const Variant result = object->InvokeMember(member.id, member.kind, {arguments, {}});
    // A jump that is added to the document it opened is a ring, the host's own to break.
    if (std::string_view(member.name) != "JumpDocument") Keep(result);
  } catch (const automation::Error&) {
    // What a host would see.
  }
}

Variant RandomCalls::Argument(const automation::ParameterInfo& parameter) {
  if (std::string_view(parameter.name) == "psFileName") {
    constexpr TextView kFiles[] = {u"a", u"b", u"nowhere/c"};
    return folder_ + Text(kFiles[Below(std::size(kFiles))]);
  }
  if (Below(16) == 0) return AnyValue();
  switch (parameter.type.kind) {
    case TypeKind::kClass:
    case TypeKind::kDispatch:
    case TypeKind::kFont:
    case TypeKind::kPicture:
      return ObjectArgument(parameter.type);
    case TypeKind::kText:
      return AnyText();
    case TypeKind::kLong:
    case TypeKind::kEnum:
      return AnyLong();
    case TypeKind::kBoolean:
      return Below(2) == 0;
    default:
      return AnyValue();
  }
}

Variant RandomCalls::ObjectArgument(const automation::TypeInfo& type) {
  if (Below(12) == 0) return Ref<Object>();
  if (type.kind == TypeKind::kFont) return automation::services().make_font();
  // Whoever takes any object may hold it, and so itself: such a ring is the host's own to break.
  if (type.kind != TypeKind::kClass) return automation::services().make_picture({1, 2, 3});
  std::vector<Ref<Object>> fitting;
  for (const Ref<Object>& object : objects_) {
    if (object->GetClassInfo() == &type.class_info()) fitting.push_back(object);
  }
  if (fitting.empty() || Below(4) == 0) return type.class_info().Create();
  return fitting[Below(fitting.size())];
}

Variant RandomCalls::AnyValue() {
  switch (Below(12)) {
    case 0:
      return {};
    case 1:
      return automation::Null();
    case 2:
      return true;
    case 3:
      return static_cast<int16_t>(AnyLong());
    case 4:
      return static_cast<float>(AnyLong()) / 3;
    case 5:
      return std::numeric_limits<double>::quiet_NaN();
    case 6:
      return automation::Currency{AnyLong()};
    case 7:
      return automation::Date{static_cast<double>(AnyLong())};
    case 8:
      return automation::kMissing;
    case 9:
      return automation::services().make_picture({});
    case 10:
      return AnyText();
    default:
      return AnyLong();
  }
}

int32_t RandomCalls::AnyLong() {
  constexpr int32_t kFarOnes[] = {std::numeric_limits<int32_t>::max(),
                                  std::numeric_limits<int32_t>::min(), 32768, 0x00C0C0C0};
  const uint8_t choice = Next();
  if (choice < 128) return choice % 8;
  if (choice < 192) return -(choice % 4);
  return choice < 224 ? choice : kFarOnes[choice % std::size(kFarOnes)];
}

Text RandomCalls::AnyText() {
  if (Below(4) != 0) return texts_[Below(texts_.size())];
  Text text;
  for (size_t left = Below(12); left > 0; --left) text += static_cast<char16_t>(Next());
  return text;
}

}  // namespace vndoc6::testing
