// Calls that the system makes through the slots of the built DLL, knowing no more than its type
// library: each property's get and put, beside the same late-bound call.
#include "tests/windows/slots.h"
#include "com/host_for_tests.h"
#include "com/variants.h"
#include "tests/windows/server.h"

namespace vndoc6::com {
namespace {

using automation::CallKind;
using automation::ClassInfo;
using automation::MemberInfo;

class SlotsTest : public ServerTest {};

// A call of the member's slot, made by the system from the type library alone.
Answer CallSlot(ITypeInfo& slots, const ComPtr<IDispatch>& object, const MemberInfo& member,
                std::vector<Value> arguments = {}) {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{arguments.data(), arguments.empty() ? nullptr : &put,
                    static_cast<UINT>(arguments.size()), static_cast<UINT>(arguments.size())};
  EXCEPINFO exception{};
  Answer answer;
  answer.code = slots.Invoke(object.get(), member.id, static_cast<WORD>(member.kind), &params,
                             &answer.value, &exception, &answer.argument);
  TakeString(exception.bstrDescription);
  TakeString(exception.bstrSource);
  SetErrorInfo(0, nullptr);
  return answer;
}

// A value of the same type that is not the same.
Value Changed(const Value& value) {
  switch (value.vt) {
    case VT_BOOL:
      return value.boolVal == VARIANT_FALSE;
    case VT_BSTR:
      return L"another text";
    case VT_R4:
    case VT_R8:
    case VT_DATE:
      return 40000.25;
    default:
      return 7;
  }
}

// Objects are told apart by whether they are there: some gets make a new one each time.
bool IsSame(const Value& left, const Value& right) {
  if (left.vt != right.vt) return false;
  if (left.vt == VT_UNKNOWN || left.vt == VT_DISPATCH) {
    return (left.punkVal == nullptr) == (right.punkVal == nullptr);
  }
  return ReadVariant(left) == ReadVariant(right);
}

TEST_F(SlotsTest, EveryPropertyDoesWhatTheLateBoundCallDoes) {
  int gets = 0, changes = 0;
  for (const PublishedClass& published : PublishedClasses()) {
    const ClassInfo& info = published.info();
    const ComPtr<IDispatch> object = server_.Create(info.name()),
                            twin = server_.Create(info.name());
    ComPtr<ITypeInfo> type;
    ASSERT_EQ(object->GetTypeInfo(0, 0, type.Receive()), S_OK);
    const ComPtr<ITypeInfo> slots = SlotsOf(*type.get());
    const auto get = [](const ComPtr<IDispatch>& from, const MemberInfo& member) {
      return Invoke(from, member.id, DISPATCH_PROPERTYGET);
    };
    for (const MemberInfo& member : info.members()) {
      SCOPED_TRACE(std::string(info.name()) + "." + member.name);
      const bool readable = info.Find(member.id, CallKind::kGet) != nullptr;
      if (member.kind == CallKind::kGet && member.parameters.empty()) {
        const Answer late = get(object, member), early = CallSlot(*slots.get(), object, member);
        EXPECT_EQ(SUCCEEDED(early.code), SUCCEEDED(late.code));
        EXPECT_TRUE(FAILED(late.code) || IsSame(early.value, late.value));
        ++gets;
      } else if (member.kind == CallKind::kPut && member.parameters.size() == 1 && readable) {
        const Value before = get(object, member).value, value = Changed(before);
        const Answer early = CallSlot(*slots.get(), object, member, {value});
        const Answer late =
            Invoke(twin, member.id, DISPATCH_PROPERTYPUT, {}, {{DISPID_PROPERTYPUT, value}});
        EXPECT_EQ(SUCCEEDED(early.code), SUCCEEDED(late.code));
        const Value after = get(object, member).value;
        EXPECT_TRUE(IsSame(after, get(twin, member).value));
        if (!IsSame(after, before)) ++changes;
      }
    }
  }
  EXPECT_GT(gets, 300);
  EXPECT_GT(changes, 190);
}

}  // namespace
}  // namespace vndoc6::com
