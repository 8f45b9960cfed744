#pragma once

#include <memory>

#include "control/events.h"
#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"
#include "platform/win32/win32_pictures.h"

namespace quillet {

// Hands the control's events on to one host's sink: by number, arguments from last to first, those
// by reference as references to plain 16-bit integers and floats. A sink's failure is its own.
class EventForwarder : public EventSink {
 public:
  // While the shared count is not 0 the host wants to hear nothing.
  EventForwarder(ComPtr<::IDispatch> sink, std::shared_ptr<const int> frozen)
      : m_sink(std::move(sink)), m_frozen(std::move(frozen)) {}

  void Invoke(Event event, std::span<Variant> arguments) override;

 private:
  ComPtr<::IDispatch> m_sink;
  std::shared_ptr<const int> m_frozen;
};

}  // namespace quillet
