#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/win32/com_ptr.h"
#include "server/twain_interfaces.h"

namespace quillet {

// A sink of the control's events, connected as long as it lives unless it lets go before. It
// records them as "MouseDown 1 0 10 20"; a handler may change what is passed by reference.
class EventRecorder : public ::IDispatch {
 public:
  explicit EventRecorder(const ComPtr<::_Twain>& control);
  EventRecorder(const EventRecorder&) = delete;
  EventRecorder& operator=(const EventRecorder&) = delete;
  virtual ~EventRecorder() { Disconnect(); }

  HRESULT Disconnect();
  ULONG References() const { return m_references; }
  std::vector<std::string> TakeLog();

  std::function<void(DISPID event, DISPPARAMS& arguments)> onEvent;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override { return --m_references; }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  STDMETHODIMP Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                      UINT*) override;

 private:
  ComPtr<IConnectionPoint> m_point;
  DWORD m_cookie = 0;
  ULONG m_references = 1;
  std::vector<std::string> m_log;
};

}  // namespace quillet
