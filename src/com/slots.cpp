#include "automation/slots_windows.h"

#include <atomic>

#include "com/entry.h"
#include "com/face.h"
#include "com/objects.h"
#include "com/variants.h"

namespace vndoc6::automation {

namespace {

com::Face& FaceOf(const DualHead& head) { return *static_cast<const com::FaceHead&>(head).face; }

}  // namespace

Running::Running(const DualHead& self) : self_(self), object_(*self.object) {
  FaceOf(self_).AddRef();
}
Running::~Running() { FaceOf(self_).Release(); }

namespace abi {

using com::BstrText;
using com::MakeBstr;

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
  return com::ReadVariant(reinterpret_cast<const VARIANT&>(value));
}

void WriteAny(const Variant& value, AnyValue& out) {
  com::WriteVariant(value, reinterpret_cast<VARIANT&>(out));
}

Ref<Object> ReadObject(void* object) { return com::ImportObject(static_cast<IUnknown*>(object)); }

void* WriteObject(const Ref<Object>& object) {
  if (!object) return nullptr;
  if (com::IsEnumerator(*object)) return com::ExportEnumerator(*object).Detach();
  return com::ExportObject(*object).Detach();
}

Code ReportFault(const Object& object) noexcept {
  return com::SetErrorObject(com::CaughtFault(), com::ToIid(object.GetClassInfo()->interface_id()));
}

Code RefuseCall() noexcept {
  // An earlier call's error would be taken for this one's.
  SetErrorInfo(0, nullptr);
  return E_POINTER;
}

}  // namespace abi

}  // namespace vndoc6::automation
