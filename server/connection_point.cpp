#include "server/connection_point.h"

#include <algorithm>
#include <utility>

#include "server/entry.h"
#include "server/enumerator.h"
#include "server/event_forwarder.h"
#include "server/twain_interfaces.h"

namespace quillet {

struct ConnectionPoint::ConnectionTraits {
  using Held = Connection;
  static CONNECTDATA Give(const Connection& connection) {
    return {ComPtr<::IUnknown>(connection.sink).release(), connection.cookie};
  }
};

void ConnectionPoint::Close() noexcept {
  const auto leaving = std::exchange(m_connections, {});
  for (const Connection& connection : leaving) Disconnect(connection.cookie);
}

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  const bool known = iid == IID_IConnectionPoint || iid == IID_IUnknown;
  *object = known ? static_cast<IConnectionPoint*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = m_interface;
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (!container) return E_POINTER;
  return m_core.Identity().QueryInterface(IID_IConnectionPointContainer,
                                          reinterpret_cast<void**>(container));
}

HRESULT ConnectionPoint::Advise(::IUnknown* sink, DWORD* cookie) {
  if (!sink || !cookie) return E_POINTER;
  *cookie = 0;
  return EnterControl(m_core, [&]() -> HRESULT {
    ComPtr<::IUnknown> connected;
    if (FAILED(sink->QueryInterface(IID_IUnknown, connected.ReceiveVoid()))) return E_FAIL;
    m_connections.reserve(m_connections.size() + 1);
    *cookie = Connect(*sink);
    if (*cookie == 0) return CONNECT_E_CANNOTCONNECT;
    m_connections.push_back({*cookie, connected});
    return S_OK;
  });
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
  return EnterControl(m_core, [&]() -> HRESULT {
    const auto found = std::ranges::find(m_connections, cookie, &Connection::cookie);
    if (found == m_connections.end()) return CONNECT_E_NOCONNECTION;
    // Letting go of the sink may come back here, so it is done when the list is whole again.
    const ComPtr<::IUnknown> leaving = std::move(found->sink);
    m_connections.erase(found);
    Disconnect(cookie);
    return S_OK;
  });
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  if (!connections) return E_POINTER;
  *connections = nullptr;
  return EnterControl(m_core, [&] {
    return Enumerator<IEnumConnections, CONNECTDATA, ConnectionTraits>::Create(
        m_module, m_connections, connections);
  });
}

EventPoint::EventPoint(ControlCore& core, Module& module) noexcept
    : ConnectionPoint(core, module, kEventInterface) {}

DWORD EventPoint::Connect(::IUnknown& sink) {
  ComPtr<::IDispatch> dispatch;
  // A sink answers for the event interface or, late-bound, for IDispatch: the functions are the
  // same.
  if (FAILED(sink.QueryInterface(kEventInterface, dispatch.ReceiveVoid())) &&
      FAILED(sink.QueryInterface(IID_IDispatch, dispatch.ReceiveVoid())))
    return 0;
  return static_cast<DWORD>(m_core.ControlItself().Connect(
      std::make_shared<EventForwarder>(std::move(dispatch), m_core.FrozenEvents())));
}

bool EventPoint::Disconnect(DWORD cookie) noexcept {
  return m_core.ControlItself().Disconnect(static_cast<int>(cookie));
}

PropertyPoint::PropertyPoint(ControlCore& core, Module& module) noexcept
    : ConnectionPoint(core, module, IID_IPropertyNotifySink) {}

DWORD PropertyPoint::Connect(::IUnknown& sink) {
  ComPtr<IPropertyNotifySink> notified;
  if (FAILED(sink.QueryInterface(IID_IPropertyNotifySink, notified.ReceiveVoid()))) return 0;
  return m_core.Notifier().Connect(std::move(notified));
}

bool PropertyPoint::Disconnect(DWORD cookie) noexcept {
  return m_core.Notifier().Disconnect(cookie);
}

}  // namespace quillet
