#pragma once

#include <memory>

#include "host/hosted_control.h"
#include "host/win32_counted.h"

namespace quillet {

// A connection of a control to a sink, as long as this lives.
class OcxConnection {
 public:
  // RequireCall's errors when the control has no such source, or refuses.
  OcxConnection(::IUnknown& control, REFIID source, ::IUnknown& sink);
  OcxConnection(const OcxConnection&) = delete;
  OcxConnection& operator=(const OcxConnection&) = delete;
  ~OcxConnection();

 private:
  ComPtr<IConnectionPoint> m_point;
  DWORD m_cookie = 0;
};

// Hands a control's events on to the host. What the host leaves in the by-reference arguments goes
// back to the control.
class OcxEventSink final : public Counted<::IDispatch> {
 public:
  explicit OcxEventSink(std::shared_ptr<EventSink> host) : m_host(std::move(host)) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*, EXCEPINFO*,
                      UINT*) override;

 private:
  std::shared_ptr<EventSink> m_host;
};

// Hands the names of properties that changed on to the host.
class OcxPropertySink final : public Counted<IPropertyNotifySink> {
 public:
  explicit OcxPropertySink(std::shared_ptr<Site> host) : m_host(std::move(host)) {}

  STDMETHODIMP OnChanged(DISPID number) override;
  STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

 private:
  std::shared_ptr<Site> m_host;
};

}  // namespace quillet
