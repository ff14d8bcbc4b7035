// Object: the base of everything a host can hold, with the lifetime rule of the whole library.
//
// Every object has two counts. Ref<T> is a reference from outside: a host's, or a local variable's
// while a call runs. Owned<T> is a parent's hold on its child. An object lives while either count
// is above zero. While an object is held from outside it holds its parent from outside as well, so
// any reference into a document keeps the whole document alive, and no counts ever form a cycle:
// parents own down with one count, children hold up with the other, and only while somebody looks.
//
// Weak<T> is a child's pointer to its parent or its document: it never keeps anything alive, and
// reads as null once the object it named is gone.
//
// Using any of the three while it is null (-> or *) raises error 91; get() does not ask.
//
// Objects of one document belong to one thread at a time; different documents may be used on
// different threads at once. A document may be handed on to another thread. Two documents that have
// an object in common, such as a picture that was put into both, a step that was added to both, or
// the document that a jump of the other has opened, count as one document here; an object without a
// document counts as a document of its own. (So the counts are not atomic.)
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>

namespace vndoc6::automation {

class ClassInfo;
class Variant;
struct Arguments;
class Object;
enum class CallKind : uint8_t;

namespace detail {
// What weak pointers share; outlives its object as long as one of them is left.
struct Anchor {
  Object* object;
  uint32_t count;  // the weak pointers, and one for the object itself
};
void ReleaseAnchor(Anchor* anchor) noexcept;

// Raises error 91, for an absent object that is used. Out of line, so that a use costs one test.
[[noreturn]] void ThrowAbsent();
template <class T>
T* Present(T* object) {
  if (object == nullptr) [[unlikely]]
    ThrowAbsent();
  return object;
}
}  // namespace detail

// What an outer layer keeps with an object, such as the object that COM hosts see instead of it.
class Companion {
 public:
  // The object is being destroyed.
  virtual void OnObjectGone() = 0;

 protected:
  ~Companion() = default;
};

template <class T>
class Weak {
 public:
  Weak() = default;
  Weak(T* object);
  Weak(const Weak& other) : anchor_(other.anchor_) {
    if (anchor_ != nullptr) ++anchor_->count;
  }
  Weak(Weak&& other) noexcept : anchor_(std::exchange(other.anchor_, nullptr)) {}
  Weak& operator=(Weak other) noexcept {
    std::swap(anchor_, other.anchor_);
    return *this;
  }
  ~Weak() {
    if (anchor_ != nullptr) detail::ReleaseAnchor(anchor_);
  }
  T* get() const;
  T* operator->() const { return detail::Present(get()); }
  explicit operator bool() const { return get() != nullptr; }

 private:
  detail::Anchor* anchor_ = nullptr;
};

class Object {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // The class's member table; null for a foreign object (one that the host supplied), which
  // overrides FindMember and InvokeMember instead.
  virtual const ClassInfo* GetClassInfo() const { return nullptr; }
  // The class name; for a foreign object whatever its own type information says.
  virtual std::string_view TypeName() const;

  // Late-bound calls, as described in late_bound.h. FindMember gives kNoMember for an unknown name.
  virtual int32_t FindMember(std::u16string_view name);
  virtual Variant InvokeMember(int32_t id, CallKind kind, const Arguments& arguments);
  // What stands for the object where a plain value is wanted: a foreign object's default member,
  // read without arguments. Error 13 where there is none to read so, as for the library's own
  // objects: their default members look something up.
  virtual Variant DefaultValue();

  // The two counts; only Ref, Owned and the COM door call these.
  void AddRef() {
    if (held_++ == 0) HoldParent();
  }
  void Release() {
    if (--held_ == 0) LeaveParent();
  }
  void Own() { ++owned_; }
  // Whether anybody outside has a reference to it.
  bool IsHeld() const { return held_ > 0; }
  void Disown();

  // The object's companion, null for none. Only the COM door uses it.
  Companion* companion() const { return companion_; }
  void SetCompanion(Companion* companion) { companion_ = companion; }

  // How many objects of the library exist: zero again when everything is released.
  static size_t LiveCount();

 protected:
  Object();
  virtual ~Object();

  // What this object holds while it is held from outside: its owner, or else its document; null
  // for none. A class calls ParentChanged after whatever changes the answer.
  virtual Object* FindParent() const { return nullptr; }
  void ParentChanged();

 private:
  template <class T>
  friend class Weak;
  detail::Anchor* MakeAnchor();
  void HoldParent();
  void LeaveParent();
  void DestroyIfUnused();

  uint32_t held_ = 0;
  uint32_t owned_ = 1;  // by its maker, until Make hands it out
  detail::Anchor* anchor_ = nullptr;
  Companion* companion_ = nullptr;
  Object* parent_ = nullptr;  // as long as it is held
};

template <class T>
Weak<T>::Weak(T* object)
    : anchor_(object != nullptr ? static_cast<Object*>(object)->MakeAnchor() : nullptr) {}

template <class T>
T* Weak<T>::get() const {
  return anchor_ != nullptr ? static_cast<T*>(anchor_->object) : nullptr;
}

// The shared shape of Ref and Owned: a counting pointer that differs only in which count it keeps.
template <class T, void (Object::*kTake)(), void (Object::*kGive)()>
class CountedPointer {
 public:
  CountedPointer() = default;
  CountedPointer(std::nullptr_t) {}
  CountedPointer(T* object) : object_(object) { Take(); }
  CountedPointer(const CountedPointer& other) : object_(other.object_) { Take(); }
  CountedPointer(CountedPointer&& other) noexcept
      : object_(std::exchange(other.object_, nullptr)) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  CountedPointer(const CountedPointer<U, kTake, kGive>& other) : object_(other.get()) {
    Take();
  }
  CountedPointer& operator=(CountedPointer other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~CountedPointer() {
    if (object_ != nullptr) (static_cast<Object*>(object_)->*kGive)();
  }

  T* get() const { return object_; }
  T& operator*() const { return *detail::Present(object_); }
  T* operator->() const { return detail::Present(object_); }
  explicit operator bool() const { return object_ != nullptr; }
  friend bool operator==(const CountedPointer& left, const CountedPointer& right) {
    return left.object_ == right.object_;
  }
  friend bool operator==(const CountedPointer& left, std::nullptr_t) {
    return left.object_ == nullptr;
  }

 private:
  void Take() {
    if (object_ != nullptr) (static_cast<Object*>(object_)->*kTake)();
  }
  T* object_ = nullptr;
};

template <class T>
using Ref = CountedPointer<T, &Object::AddRef, &Object::Release>;
template <class T>
using Owned = CountedPointer<T, &Object::Own, &Object::Disown>;

// The only way to make an object. It can't go while it is being constructed, whoever takes and
// drops references to it then.
template <class T, class... Args>
Ref<T> Make(Args&&... args) {
  const auto object = new T(std::forward<Args>(args)...);
  Ref<T> made(object);
  static_cast<Object*>(object)->Disown();
  return made;
}

}  // namespace vndoc6::automation
