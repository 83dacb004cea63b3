#pragma once

#include <map>
#include <vector>

#include "com/com_ptr.h"
#include "com/system.h"
#include "com/thread_state.h"

namespace tessary::com {

// Where sinks of one event interface register. It is part of the object that raises the events:
// its references count as references to that object.
class ConnectionPoint final : public IConnectionPoint {
 public:
  ConnectionPoint(IConnectionPointContainer& owner, const ThreadState& thread, const IID& events)
      : owner_(owner), thread_(thread), events_(events) {}

  // The sinks as they are now; each stays alive while it is being called.
  std::vector<ComPtr<IDispatch>> Sinks() const;
  bool HasSinks() const { return !sinks_.empty(); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return owner_.Release(); }
  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

 private:
  template <class Body>
  HRESULT Run(Body&& body);

  IConnectionPointContainer& owner_;
  const ThreadState& thread_;
  const IID& events_;
  std::map<DWORD, ComPtr<IDispatch>> sinks_;
  DWORD last_cookie_ = 0;
};

// The enumeration of an object that has one connection point.
ComPtr<IEnumConnectionPoints> EnumerateConnectionPoint(ConnectionPoint& point);

}  // namespace tessary::com
