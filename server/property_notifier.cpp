#include "server/property_notifier.h"

#include <algorithm>
#include <utility>

#include "base/runtime_error.h"
#include "control/dispatch.h"

namespace quillet {
namespace {

ErrorNumber NumberIn(HRESULT result) {
  if (result == E_OUTOFMEMORY) return ErrorNumber::OutOfMemory;
  return HRESULT_FACILITY(result) == FACILITY_CONTROL
             ? static_cast<ErrorNumber>(HRESULT_CODE(result))
             : ErrorNumber::AutomationError;
}

}  // namespace

DWORD PropertyNotifier::Connect(ComPtr<IPropertyNotifySink> sink) {
  m_connections.push_back({m_nextCookie, std::move(sink)});
  return m_nextCookie++;
}

bool PropertyNotifier::Disconnect(DWORD cookie) {
  const auto found = std::ranges::find(m_connections, cookie, &Connection::cookie);
  if (found == m_connections.end()) return false;
  // Letting go of the sink may come back here, so it is done when the list is whole again.
  const ComPtr<IPropertyNotifySink> leaving = std::move(found->sink);
  m_connections.erase(found);
  return true;
}

void PropertyNotifier::Close() noexcept {
  const auto leaving = std::exchange(m_connections, {});
}

bool PropertyNotifier::IsConnected(DWORD cookie) const {
  return std::any_of(m_connections.begin(), m_connections.end(),
                     [&](const Connection& connection) { return connection.cookie == cookie; });
}

void PropertyNotifier::PropertyChanged(std::string_view name) {
  m_dirty = true;
  const DISPID number = NumberOf(name);
  HRESULT failure = S_OK;
  const std::vector<Connection> connections = m_connections;
  for (const Connection& connection : connections) {
    if (!IsConnected(connection.cookie)) continue;
    const HRESULT result = connection.sink->OnChanged(number);
    if (FAILED(result) && result != E_NOTIMPL && SUCCEEDED(failure)) failure = result;
  }
  if (FAILED(failure)) throw RunTimeError(NumberIn(failure), "a notified container failed");
}

}  // namespace quillet
