#pragma once

#include <memory>
#include <span>
#include <vector>

#include "control/events.h"

namespace quillet {

// The connected sinks of one control, called in the order in which they connected.
//
// Re-entrancy: a sink may connect, disconnect and raise from inside an event, and its
// destructor may too. One that is disconnected meanwhile is not called any more; one that is
// connected meanwhile gets the next event.
class EventSource {
 public:
  EventSource() = default;
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;
  ~EventSource();

  // Returns the cookie that Disconnect takes; cookies are not used twice. Run-time error 5 for no
  // sink.
  int Connect(std::shared_ptr<EventSink> sink);
  // False when nothing is connected under that cookie.
  bool Disconnect(int cookie);

  bool HasSinks() const noexcept { return !m_connections.empty(); }

  // Arguments by reference are shared: each sink sees what the one before left in them, as a number
  // of the argument's kind; what cannot be one is dropped. So is what a sink throws: it stops
  // neither the others nor the control.
  void Raise(Event event, std::span<Variant> arguments);

 private:
  struct Connection {
    int cookie;
    std::shared_ptr<EventSink> sink;
  };

  bool IsConnected(int cookie) const;

  std::vector<Connection> m_connections;
  int m_nextCookie = 1;
};

}  // namespace quillet
