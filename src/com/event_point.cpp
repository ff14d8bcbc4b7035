#include "com/event_point.h"

#include <algorithm>

#include "com/com_enumerator.h"
#include "com/entry.h"
#include "com/variants.h"

namespace vndoc6::com {
namespace {

using automation::EventInfo;
using automation::EventParameter;
using automation::TypeKind;
using automation::Variant;

// The arguments of one event for one sink, in the reversed order of automation. A sink may write
// to those passed by reference, so each sink has arguments of its own.
class EventArguments {
 public:
  EventArguments(const EventInfo& event, std::span<const Variant> arguments)
      : values_(arguments.size()), passed_(arguments.size()) {
    const size_t last = arguments.size() - 1;
    for (size_t i = 0; i < arguments.size(); ++i) {
      WriteVariant(arguments[i], values_[last - i]);
      passed_[last - i] = Pass(event.parameters[i], values_[last - i]);
    }
  }

  DISPPARAMS Params() { return {passed_.data(), nullptr, static_cast<UINT>(passed_.size()), 0}; }

 private:
  static VARIANT Pass(const EventParameter& parameter, VARIANT& value) {
    if (!parameter.by_reference) return value;
    if (parameter.type.kind != TypeKind::kVariant) return ReferenceTo(value);
    VARIANT reference;
    VariantInit(&reference);
    reference.vt = VT_BYREF | VT_VARIANT;
    reference.pvarVal = &value;
    return reference;
  }

  std::vector<OwnedVariant> values_;
  std::vector<VARIANT> passed_;
};

}  // namespace

EventPoint::~EventPoint() {
  if (source_ != nullptr && HasSinks()) source_->Disconnect(this);
}

HRESULT EventPoint::QueryInterface(REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = iid == IID_IUnknown || iid == IID_IConnectionPoint ? this : nullptr;
  if (*out == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT EventPoint::GetConnectionInterface(IID* iid) {
  if (iid == nullptr) return E_POINTER;
  *iid = iid_;
  return S_OK;
}

HRESULT EventPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) return E_POINTER;
  *container = ComPtr<IConnectionPointContainer>(&container_).Detach();
  return S_OK;
}

HRESULT EventPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (cookie == nullptr || sink == nullptr) return E_POINTER;
  *cookie = 0;
  // What the host runs meanwhile may let go of the object.
  const ComPtr<IConnectionPoint> running(this);
  return Enter([&] {
    const ComPtr<IUnknown> given(sink);
    auto dispatch = given.As<IDispatch>(iid_);
    if (!dispatch) dispatch = given.As<IDispatch>();
    if (!dispatch) return CONNECT_E_CANNOTCONNECT;
    // Both or neither, should memory run out.
    connections_.reserve(connections_.size() + 1);
    if (connections_.empty()) source_->Connect(this);
    connections_.push_back({++last_cookie_, std::move(dispatch)});
    *cookie = last_cookie_;
    return S_OK;
  });
}

HRESULT EventPoint::Unadvise(DWORD cookie) {
  const ComPtr<IConnectionPoint> running(this);
  return Enter([&] {
    const auto found = Find(cookie);
    if (found == connections_.end()) return CONNECT_E_NOCONNECTION;
    // Released last: the sink's end may call anything.
    const ComPtr<IDispatch> leaving = std::move(found->sink);
    connections_.erase(found);
    if (connections_.empty()) source_->Disconnect(this);
    return S_OK;
  });
}

HRESULT EventPoint::EnumConnections(IEnumConnections** connections) {
  if (connections == nullptr) return E_POINTER;
  *connections = nullptr;
  return Enter([&] {
    std::vector<ConnectedSink> all;
    for (const Connection& connection : connections_) {
      all.push_back({ComPtr<IUnknown>(connection.sink.get()), connection.cookie});
    }
    *connections =
        MakeCom<ComEnumerator<IEnumConnections, Snapshot<ConnectedSink>>>(Snapshot(std::move(all)))
            .Detach();
    return S_OK;
  });
}

std::vector<EventPoint::Connection>::iterator EventPoint::Find(DWORD cookie) {
  return std::find_if(connections_.begin(), connections_.end(),
                      [&](const Connection& connection) { return connection.cookie == cookie; });
}

void EventPoint::OnEvent(const EventInfo& event, std::span<const Variant> arguments) {
  // Sinks may disconnect, and let go of the object, while they are called.
  const ComPtr<IConnectionPoint> running(this);
  const std::vector<Connection> snapshot = connections_;
  for (const Connection& connection : snapshot) {
    if (Find(connection.cookie) == connections_.end()) continue;
    EventArguments passed(event, arguments);
    DISPPARAMS params = passed.Params();
    // What a sink answers concerns nobody: hosts that don't handle an event fail here too.
    connection.sink->Invoke(event.id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params,
                            nullptr, nullptr, nullptr);
  }
}

}  // namespace vndoc6::com
