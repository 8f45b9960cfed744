#include "tests/server/event_recorder.h"

#include <utility>

#include "base/runtime_error.h"
#include "control/events.h"
#include "tests/server/control_library.h"

namespace quillet {

EventRecorder::EventRecorder(const ComPtr<::_Twain>& control) {
  As<IConnectionPointContainer>(control)->FindConnectionPoint(kEventInterface, m_point.Receive());
  m_point->Advise(this, &m_cookie);
}

HRESULT EventRecorder::Disconnect() {
  const ComPtr<IConnectionPoint> point = std::exchange(m_point, {});
  return point ? point->Unadvise(m_cookie) : CONNECT_E_NOCONNECTION;
}

std::vector<std::string> EventRecorder::TakeLog() {
  return std::exchange(m_log, {});
}

HRESULT EventRecorder::QueryInterface(REFIID iid, void** object) {
  const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == kEventInterface;
  *object = known ? static_cast<::IDispatch*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT EventRecorder::Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*,
                              EXCEPINFO*, UINT*) {
  std::string line = Describe(static_cast<Event>(event)).name;
  for (UINT i = arguments->cArgs; i-- > 0;) {
    VARIANT text;
    ::VariantInit(&text);
    ::VariantCopyInd(&text, &arguments->rgvarg[i]);
    ::VariantChangeType(&text, &text, 0, VT_I4);
    line.append(" ").append(std::to_string(text.lVal));
  }
  m_log.push_back(line);
  if (onEvent) onEvent(event, *arguments);
  return S_OK;
}

}  // namespace quillet
