#pragma once

#include <vector>

#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"
#include "server/control_core.h"
#include "server/module.h"

namespace quillet {

// A point to which sinks of one interface connect. It lives in the control's object and keeps that
// alive while it is held.
class ConnectionPoint : public IConnectionPoint {
 public:
  ConnectionPoint(ControlCore& core, Module& module, REFIID sinkInterface) noexcept
      : m_core(core), m_module(module), m_interface(sinkInterface) {}
  ConnectionPoint(const ConnectionPoint&) = delete;
  ConnectionPoint& operator=(const ConnectionPoint&) = delete;

  REFIID Interface() const noexcept { return m_interface; }
  // Ends all connections.
  void Close() noexcept;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return m_core.Identity().AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return m_core.Identity().Release(); }
  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(::IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

 protected:
  ~ConnectionPoint() = default;

  // The cookie, which is not used twice; 0 for a sink that has not the point's interface.
  virtual DWORD Connect(::IUnknown& sink) = 0;
  virtual bool Disconnect(DWORD cookie) noexcept = 0;

  ControlCore& m_core;

 private:
  struct Connection {
    DWORD cookie;
    ComPtr<::IUnknown> sink;
  };
  struct ConnectionTraits;

  Module& m_module;
  const IID m_interface;
  std::vector<Connection> m_connections;
};

// Where hosts connect for the control's events, and for changes of its properties.
class EventPoint final : public ConnectionPoint {
 public:
  EventPoint(ControlCore& core, Module& module) noexcept;

 private:
  DWORD Connect(::IUnknown& sink) override;
  bool Disconnect(DWORD cookie) noexcept override;
};

class PropertyPoint final : public ConnectionPoint {
 public:
  PropertyPoint(ControlCore& core, Module& module) noexcept;

 private:
  DWORD Connect(::IUnknown& sink) override;
  bool Disconnect(DWORD cookie) noexcept override;
};

}  // namespace quillet
