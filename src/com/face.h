// Face: the COM object that hosts see instead of an object of the model. An object has one face at
// the most, so that its identity is one for all hosts; the face holds the object for as long as a
// host holds the face.
#pragma once

#include <memory>
#include <optional>

#include "com/com.h"
#include "com/event_point.h"
#include "com/face_head.h"
#include "com/host_reference.h"
#include "vndoc6/automation/event_info.h"
#include "vndoc6/automation/object.h"

namespace vndoc6::com {

// Answered only by the faces of this module, with a pointer to their FaceHead.
const IID& FaceIid();

class Face final : public automation::Companion,
                   public IProvideClassInfo2,
                   public ISupportErrorInfo,
                   public IConnectionPointContainer {
 public:
  // The object's face, made when there is none.
  static ComPtr<IDispatch> Of(automation::Object& object);

  // The part of QueryInterface, AddRef and Release that all interfaces share.
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP GetClassInfo(ITypeInfo** type_info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override;

  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

  void OnObjectGone() override;

 private:
  explicit Face(automation::Object& object);
  ~Face();

  bool IsDualInterface(REFIID iid) const;
  void* Find(REFIID iid);
  EventPoint& Events();
  void Wake();
  void Rest();

  FaceHead head_;
  const automation::ClassInfo* const class_info_;
  automation::EventSource* const event_source_;
  ULONG count_ = 0;
  // While a host holds the face:
  automation::Ref<automation::Object> held_;
  std::optional<HostReference> host_reference_;

  std::unique_ptr<EventPoint> events_;
};

}  // namespace vndoc6::com
