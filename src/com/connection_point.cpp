#include "com/connection_point.h"

#include "com/com_error.h"
#include "com/enumerator.h"

namespace tessary::com {
namespace {

constexpr ErrorOrigin kOrigin{IID_IConnectionPoint, L"Tessary"};

struct Connection {
  DWORD cookie;
  ComPtr<IDispatch> sink;
};

void CopyConnection(const Connection& connection, CONNECTDATA* out) {
  *out = {ComPtr<IDispatch>(connection.sink).Detach(), connection.cookie};
}

void CopyPoint(const ComPtr<IConnectionPoint>& point, IConnectionPoint** out) {
  *out = ComPtr<IConnectionPoint>(point).Detach();
}

using ConnectionEnumerator = Enumerator<IEnumConnections, Connection, CONNECTDATA, CopyConnection>;
using PointEnumerator =
    Enumerator<IEnumConnectionPoints, ComPtr<IConnectionPoint>, IConnectionPoint*, CopyPoint>;

}  // namespace

std::vector<ComPtr<IDispatch>> ConnectionPoint::Sinks() const {
  std::vector<ComPtr<IDispatch>> sinks;
  for (const auto& [cookie, sink] : sinks_) sinks.push_back(sink);
  return sinks;
}

template <class Body>
HRESULT ConnectionPoint::Run(Body&& body) {
  return Guarded(kOrigin, [&] {
    if (!thread_.IsCurrent()) throw ComError{RPC_E_WRONG_THREAD};
    body();
  });
}

STDMETHODIMP ConnectionPoint::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IConnectionPoint) return E_NOINTERFACE;
  *object = static_cast<IConnectionPoint*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = events_;
  return S_OK;
}

STDMETHODIMP ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (!container) return E_POINTER;
  *container = ComPtr<IConnectionPointContainer>::Share(&owner_).Detach();
  return S_OK;
}

STDMETHODIMP ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  return Run([&] {
    RequirePointer(cookie);
    *cookie = 0;
    RequirePointer(sink);
    ComPtr<IDispatch> events;
    if (FAILED(sink->QueryInterface(events_, events.PutVoid()))) {
      events = ComPtr<IDispatch>::Query(sink);
    }
    if (!events) throw ComError{CONNECT_E_CANNOTCONNECT};
    sinks_.emplace(++last_cookie_, std::move(events));
    *cookie = last_cookie_;
  });
}

STDMETHODIMP ConnectionPoint::Unadvise(DWORD cookie) {
  return Run([&] {
    const auto found = sinks_.find(cookie);
    if (found == sinks_.end()) throw ComError{CONNECT_E_NOCONNECTION};
    const ComPtr<IDispatch> released = std::move(found->second);  // after it is out of the list
    sinks_.erase(found);
  });
}

STDMETHODIMP ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  return Run([&] {
    RequirePointer(connections);
    *connections = nullptr;
    std::vector<Connection> items;
    for (const auto& [cookie, sink] : sinks_) items.push_back({cookie, sink});
    *connections = ConnectionEnumerator::Make(std::move(items)).Detach();
  });
}

ComPtr<IEnumConnectionPoints> EnumerateConnectionPoint(ConnectionPoint& point) {
  std::vector<ComPtr<IConnectionPoint>> points;
  points.push_back(ComPtr<IConnectionPoint>::Share(&point));
  return PointEnumerator::Make(std::move(points));
}

}  // namespace tessary::com
