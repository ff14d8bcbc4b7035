// EventPoint: where hosts connect to the events of an object, IConnectionPoint of its one source
// interface. Part of the object's face and counted with it.
#pragma once

#include <vector>

#include "com/com.h"
#include "vndoc6/automation/event_info.h"

namespace vndoc6::com {

class EventPoint final : public IConnectionPoint, private automation::EventSink {
 public:
  // `container` is what the connection point is counted with.
  EventPoint(IConnectionPointContainer& container, automation::EventSource& source)
      : container_(container), source_(&source), iid_(ToIid(source.Events().id)) {}
  EventPoint(const EventPoint&) = delete;
  EventPoint& operator=(const EventPoint&) = delete;
  ~EventPoint();

  bool HasSinks() const { return !connections_.empty(); }
  // The object is gone: there is nothing left to disconnect from.
  void OnSourceGone() { source_ = nullptr; }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return container_.AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return container_.Release(); }

  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

 private:
  struct Connection {
    DWORD cookie;
    ComPtr<IDispatch> sink;
  };
  std::vector<Connection>::iterator Find(DWORD cookie);
  void OnEvent(const automation::EventInfo& event,
               std::span<const automation::Variant> arguments) override;

  IConnectionPointContainer& container_;
  automation::EventSource* source_;
  const IID iid_;
  std::vector<Connection> connections_;
  DWORD last_cookie_ = 0;
};

}  // namespace vndoc6::com
