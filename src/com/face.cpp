#include "com/face.h"

#include "com/com_enumerator.h"
#include "com/dual_vtable.h"
#include "com/entry.h"
#include "com/type_library.h"

namespace vndoc6::com {

using automation::Object;

const IID& FaceIid() {
  // A process may have two copies of the DLL loaded, and each takes the other's objects for a
  // host's: the address makes the identifier this module's own.
  static const IID iid = [] {
    IID own{0xde1416f5, 0x1774, 0x430c, {0xb6, 0xee, 0x92, 0xc4, 0x54, 0xd4, 0x1c, 0x76}};
    const IID* const address = &iid;
    std::memcpy(own.Data4, &address, sizeof address);
    return own;
  }();
  return iid;
}

ComPtr<IDispatch> Face::Of(Object& object) {
  auto* face = static_cast<Face*>(object.companion());
  if (face == nullptr) face = new Face(object);
  return ComPtr<IDispatch>(reinterpret_cast<IDispatch*>(&face->head_));
}

Face::Face(Object& object)
    : head_{{DualVtable(object.GetClassInfo()), &object}, this},
      class_info_(object.GetClassInfo()),
      event_source_(dynamic_cast<automation::EventSource*>(&object)) {
  object.SetCompanion(this);
}

Face::~Face() {
  if (head_.object != nullptr) {
    // Sinks leave while the object is there to leave from.
    events_.reset();
    head_.object->SetCompanion(nullptr);
  }
}

void Face::OnObjectGone() {
  if (events_ != nullptr) events_->OnSourceGone();
  head_.object = nullptr;
  delete this;
}

ULONG Face::AddRef() {
  if (++count_ == 1) Wake();
  return count_;
}

ULONG Face::Release() {
  const ULONG left = --count_;
  if (left == 0) Rest();
  return left;
}

void Face::Wake() {
  held_ = automation::Ref<Object>(head_.object);
  host_reference_.emplace();
}

// A host that dropped the document but holds one of its steps still hears of the document's
// events: a face with connected sinks stays, without holding the object, until that is gone.
void Face::Rest() {
  // The DLL stays until everything is gone that goes with the object: the sinks and objects of the
  // host that are let go of may run code of the host's, which may ask whether it can be unloaded.
  const HostReference staying;
  host_reference_.reset();
  // May destroy the object, and a face that stays with it.
  const automation::Ref<Object> last = std::exchange(held_, nullptr);
  if (events_ == nullptr || !events_->HasSinks()) delete this;
}

bool Face::IsDualInterface(REFIID iid) const {
  return class_info_ != nullptr && iid == ToIid(class_info_->interface_id());
}

void* Face::Find(REFIID iid) {
  if (iid == IID_IDispatch || iid == IID_IUnknown || iid == FaceIid() || IsDualInterface(iid)) {
    return &head_;
  }
  if (iid == IID_ISupportErrorInfo) return static_cast<ISupportErrorInfo*>(this);
  if (class_info_ != nullptr && (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)) {
    return static_cast<IProvideClassInfo2*>(this);
  }
  if (event_source_ != nullptr && iid == IID_IConnectionPointContainer) {
    return static_cast<IConnectionPointContainer*>(this);
  }
  return nullptr;
}

HRESULT Face::QueryInterface(REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = Find(iid);
  if (*out == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT Face::GetClassInfo(ITypeInfo** type_info) {
  if (type_info == nullptr) return E_POINTER;
  *type_info = nullptr;
  return Enter([&] { return FindTypeInfo(ToIid(class_info_->class_id()), type_info); });
}

HRESULT Face::GetGUID(DWORD kind, GUID* guid) {
  if (guid == nullptr) return E_POINTER;
  *guid = GUID_NULL;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID || event_source_ == nullptr) return E_INVALIDARG;
  return Enter([&] {
    *guid = ToIid(event_source_->Events().id);
    return S_OK;
  });
}

HRESULT Face::InterfaceSupportsErrorInfo(REFIID iid) {
  return IsDualInterface(iid) ? S_OK : S_FALSE;
}

EventPoint& Face::Events() {
  if (events_ == nullptr) events_ = std::make_unique<EventPoint>(*this, *event_source_);
  return *events_;
}

HRESULT Face::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (points == nullptr) return E_POINTER;
  *points = nullptr;
  return Enter([&] {
    std::vector<ComPtr<IConnectionPoint>> all{ComPtr<IConnectionPoint>(&Events())};
    *points = MakeCom<ComEnumerator<IEnumConnectionPoints, Snapshot<ComPtr<IConnectionPoint>>>>(
                  Snapshot(std::move(all)))
                  .Detach();
    return S_OK;
  });
}

HRESULT Face::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (point == nullptr) return E_POINTER;
  *point = nullptr;
  return Enter([&] {
    if (iid != ToIid(event_source_->Events().id)) return CONNECT_E_NOCONNECTION;
    *point = ComPtr<IConnectionPoint>(&Events()).Detach();
    return S_OK;
  });
}

}  // namespace vndoc6::com
