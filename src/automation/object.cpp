#include "vndoc6/automation/object.h"

#include <atomic>
#include <utility>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::automation {
namespace {

// Of all threads. In a cache line of its own, for whoever reads what lies beside it would wait.
alignas(64) constinit std::atomic<size_t> live_count = 0;

}  // namespace

namespace detail {

void ReleaseAnchor(Anchor* anchor) noexcept {
  if (--anchor->count == 0) delete anchor;
}

void ThrowAbsent() { throw Error(kObjectNotSet); }

}  // namespace detail

Object::Object() { live_count.fetch_add(1, std::memory_order_relaxed); }

Object::~Object() {
  live_count.fetch_sub(1, std::memory_order_relaxed);
  if (companion_ != nullptr) companion_->OnObjectGone();
  if (anchor_ == nullptr) return;
  anchor_->object = nullptr;
  detail::ReleaseAnchor(anchor_);
}

size_t Object::LiveCount() { return live_count.load(std::memory_order_relaxed); }

detail::Anchor* Object::MakeAnchor() {
  if (anchor_ == nullptr) anchor_ = new detail::Anchor{this, 1};
  ++anchor_->count;
  return anchor_;
}

void Object::HoldParent() {
  parent_ = FindParent();
  if (parent_ != nullptr) parent_->AddRef();
}

void Object::LeaveParent() {
  // The parent goes last: it may own this object, and this object may be its last holder.
  Object* parent = std::exchange(parent_, nullptr);
  DestroyIfUnused();
  if (parent != nullptr) parent->Release();
}

void Object::Disown() {
  --owned_;
  DestroyIfUnused();
}

void Object::DestroyIfUnused() {
  if (held_ > 0 || owned_ > 0) return;
  // From here on the object is gone for whoever points at it weakly, and what it lets go of may
  // take and drop references to it without destroying it again.
  owned_ = 1;
  if (anchor_ != nullptr) anchor_->object = nullptr;
  delete this;
}

void Object::ParentChanged() {
  if (held_ == 0) return;
  Object* const parent = FindParent();
  if (parent == parent_) return;
  if (parent != nullptr) parent->AddRef();
  Object* const previous = std::exchange(parent_, parent);
  if (previous != nullptr) previous->Release();
}

std::string_view Object::TypeName() const {
  const ClassInfo* info = GetClassInfo();
  return info != nullptr ? info->name() : std::string_view("Object");
}

int32_t Object::FindMember(std::u16string_view name) {
  const ClassInfo* info = GetClassInfo();
  return info != nullptr ? info->FindMember(name) : kNoMember;
}

Variant Object::InvokeMember(int32_t id, CallKind kind, const Arguments& arguments) {
  const ClassInfo* info = GetClassInfo();
  if (info == nullptr) throw Error(kNotSupported);
  return info->Invoke(*this, id, kind, arguments);
}

Variant Object::DefaultValue() {
  if (GetClassInfo() != nullptr) throw Error(kTypeMismatch);
  try {
    return InvokeMember(kDefaultMember, CallKind::kGet | CallKind::kCall, {});
  } catch (const Error& error) {
    const int32_t number = error.number();
    const bool unreadable =
        number == kNotSupported || number == kArgumentNotOptional || number == kWrongArgumentCount;
    if (unreadable) throw Error(kTypeMismatch);
    throw;
  }
}

}  // namespace vndoc6::automation
