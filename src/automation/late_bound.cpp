#include "vndoc6/automation/late_bound.h"

#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::automation {
namespace {

int32_t MemberId(Object& object, TextView name) {
  const int32_t id = object.FindMember(name);
  if (id == kNoMember) {
    throw Error(kNotSupported, DescribeError(kNotSupported) + u" (\"" + Text(name) + u"\")");
  }
  return id;
}

std::span<const Variant> Span(std::initializer_list<Variant> arguments) {
  return {arguments.begin(), arguments.size()};
}

}  // namespace

Variant Get(Object& object, TextView name, std::initializer_list<Variant> arguments) {
  return object.InvokeMember(MemberId(object, name), CallKind::kGet, {Span(arguments), {}});
}

Variant Call(Object& object, TextView name, std::span<const Variant> arguments) {
  return object.InvokeMember(MemberId(object, name), CallKind::kCall | CallKind::kGet,
                             {arguments, {}});
}

Variant CallByReference(Object& object, TextView name, std::initializer_list<Variant> arguments) {
  return object.InvokeMember(MemberId(object, name), CallKind::kCall | CallKind::kGet,
                             {Span(arguments), {}, 1});
}

Variant Call(Object& object, TextView name, std::initializer_list<Variant> arguments) {
  return Call(object, name, Span(arguments));
}

void Put(Object& object, TextView name, std::initializer_list<Variant> arguments) {
  const bool by_reference = arguments.size() > 0 && (arguments.end() - 1)->IsObject();
  const CallKind kind = by_reference ? CallKind::kPutRef | CallKind::kPut : CallKind::kPut;
  object.InvokeMember(MemberId(object, name), kind, {Span(arguments), {}});
}

Ref<Enumerator> Enumerate(Object& object) {
  const Variant result = object.InvokeMember(kNewEnumMember, CallKind::kGet | CallKind::kCall, {});
  auto* enumerator = dynamic_cast<Enumerator*>(result.ToObject().get());
  if (enumerator == nullptr) throw Error(kNotSupported);
  return Ref<Enumerator>(enumerator);
}

}  // namespace vndoc6::automation
