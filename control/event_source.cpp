#include "control/event_source.h"

#include <algorithm>
#include <utility>

#include "base/runtime_error.h"
#include "control/attempt.h"

namespace quillet {
namespace {

// What a sink left in an argument, as the number kind that the argument had; the value before where
// that cannot be.
Variant Settled(const Variant& before, const Variant& left) {
  Variant settled = before;
  Attempt([&] {
    if (std::holds_alternative<Single>(before))
      settled = VariantToSingle(left);
    else
      settled = VariantToInteger(left);
  });
  return settled;
}

}  // namespace

EventSource::~EventSource() {
  // The sinks die while the list is whole: they may still ask to be disconnected.
  const auto leaving = std::exchange(m_connections, {});
}

int EventSource::Connect(std::shared_ptr<EventSink> sink) {
  if (!sink) throw RunTimeError(ErrorNumber::InvalidProcedureCall, "no sink");
  m_connections.push_back({m_nextCookie, std::move(sink)});
  return m_nextCookie++;
}

bool EventSource::Disconnect(int cookie) {
  const auto found = std::ranges::find(m_connections, cookie, &Connection::cookie);
  if (found == m_connections.end()) return false;
  // It may be the last to hold the sink, which dies when the list is whole again.
  const std::shared_ptr<EventSink> leaving = std::move(found->sink);
  m_connections.erase(found);
  return true;
}

bool EventSource::IsConnected(int cookie) const {
  return std::ranges::find(m_connections, cookie, &Connection::cookie) != m_connections.end();
}

void EventSource::Raise(Event event, std::span<Variant> arguments) {
  const auto& parameters = Describe(event).parameters;
  const bool byReference = !parameters.empty() && parameters.front().byReference;
  std::vector<Variant> values(arguments.begin(), arguments.end());
  const std::vector<Connection> connections = m_connections;
  for (const Connection& connection : connections) {
    if (!IsConnected(connection.cookie)) continue;
    try {
      connection.sink->Invoke(event, arguments);
    } catch (...) {
      // The sink's own trouble: a host's handler has nobody to report to from inside an event.
    }
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (byReference) values[i] = Settled(values[i], arguments[i]);
      arguments[i] = values[i];
    }
  }
}

}  // namespace quillet
