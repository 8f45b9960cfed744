#include "control/event_source.h"

#include <algorithm>
#include <utility>

#include "base/runtime_error.h"

namespace quillet {

int EventSource::Connect(std::shared_ptr<EventSink> sink) {
  if (!sink) throw RunTimeError(ErrorNumber::InvalidProcedureCall, "no sink");
  m_connections.push_back({m_nextCookie, std::move(sink)});
  return m_nextCookie++;
}

bool EventSource::Disconnect(int cookie) {
  return std::erase_if(m_connections, [&](const Connection& connection) {
           return connection.cookie == cookie;
         }) > 0;
}

bool EventSource::IsConnected(int cookie) const {
  return std::any_of(m_connections.begin(), m_connections.end(),
                     [&](const Connection& connection) { return connection.cookie == cookie; });
}

void EventSource::Raise(Event event, std::span<Variant> arguments) {
  const auto& parameters = Describe(event).parameters;
  const bool byValue = !parameters.empty() && !parameters.front().byReference;
  const std::vector<Variant> values(arguments.begin(), arguments.end());
  const std::vector<Connection> connections = m_connections;
  for (const Connection& connection : connections) {
    if (!IsConnected(connection.cookie)) continue;
    if (byValue) std::copy(values.begin(), values.end(), arguments.begin());
    try {
      connection.sink->Invoke(event, arguments);
    } catch (...) {
      // The sink's own trouble: a host's handler has nobody to report to from inside an event.
    }
  }
}

}  // namespace quillet
