#include "com/vtable_thunk.h"

#include <atomic>

#include "com/entry.h"
#include "com/objects.h"
#include "com/variants.h"

namespace vndoc6::com::abi {

namespace {

// The memory of the last text that came in, for the next call in any apartment. A call made from
// within another finds none.
class SpareText {
 public:
  ~SpareText() { Take(); }
  std::unique_ptr<Text> Take() { return std::unique_ptr<Text>(text_.exchange(nullptr)); }
  void Keep(std::unique_ptr<Text> text) {
    constexpr size_t kLargest = 4096;  // what a large text needed goes back to the system
    if (text->capacity() > kLargest) return;
    const std::unique_ptr<Text> previous(text_.exchange(text.release()));
  }

 private:
  std::atomic<Text*> text_ = nullptr;
};

SpareText spare;

}  // namespace

static_assert(std::is_same_v<Code, HRESULT>);
static_assert(sizeof(Money) == sizeof(CY) && alignof(Money) == alignof(CY));
static_assert(sizeof(AnyValue) == sizeof(VARIANT) && alignof(AnyValue) == alignof(VARIANT));
static_assert(sizeof(String) == sizeof(BSTR) && sizeof(char16_t) == sizeof(OLECHAR));

IncomingText::IncomingText(String string) : text_(spare.Take()) {
  if (text_ == nullptr) text_ = std::make_unique<Text>();
  text_->assign(BstrText(reinterpret_cast<BSTR>(string)));
}

IncomingText::~IncomingText() { spare.Keep(std::move(text_)); }

String WriteString(TextView text) { return reinterpret_cast<String>(MakeBstr(text)); }

Variant ReadAny(const AnyValue& value) {
  return ReadVariant(reinterpret_cast<const VARIANT&>(value));
}

void WriteAny(const Variant& value, AnyValue& out) {
  WriteVariant(value, reinterpret_cast<VARIANT&>(out));
}

Ref<Object> ReadObject(void* object) { return ImportObject(static_cast<IUnknown*>(object)); }

void* WriteObject(const Ref<Object>& object) {
  if (!object) return nullptr;
  if (IsEnumerator(*object)) return ExportEnumerator(*object).Detach();
  return ExportObject(*object).Detach();
}

Code ReportFault(const Object& object) noexcept {
  return SetErrorObject(CaughtFault(), ToIid(object.GetClassInfo()->interface_id()));
}

Code RefuseCall() noexcept {
  // An earlier call's error would be taken for this one's.
  SetErrorInfo(0, nullptr);
  return E_POINTER;
}

}  // namespace vndoc6::com::abi
