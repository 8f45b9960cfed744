#pragma once

#include "server/connection_point.h"
#include "server/part.h"

namespace quillet {

// The points to which hosts connect their sinks.
class ConnectionsPart final : public Part<IConnectionPointContainer> {
 public:
  ConnectionsPart(ControlCore& core, Module& module) noexcept
      : Part(core), m_module(module), m_events(core, module), m_properties(core, module) {}

  // Ends all connections.
  void Close() noexcept;

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

 private:
  Module& m_module;
  EventPoint m_events;
  PropertyPoint m_properties;
};

}  // namespace quillet
