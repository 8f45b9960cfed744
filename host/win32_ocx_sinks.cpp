#include "host/win32_ocx_sinks.h"

#include <algorithm>
#include <vector>

#include "host/win32_call_result.h"
#include "server/twain_interfaces.h"

namespace quillet {
namespace {

// The control's events have numbers of two kinds, by value or by reference.
Variant ValueOf(const VARIANTARG& argument) {
  switch (argument.vt) {
    case VT_I2:
      return Integer{argument.iVal};
    case VT_BYREF | VT_I2:
      return Integer{*argument.piVal};
    case VT_R4:
      return Single{argument.fltVal};
    case VT_BYREF | VT_R4:
      return Single{*argument.pfltVal};
    default:
      return {};
  }
}

void Store(const Variant& value, VARIANTARG& argument) {
  if (argument.vt == (VT_BYREF | VT_I2)) *argument.piVal = VariantToInteger(value);
  if (argument.vt == (VT_BYREF | VT_R4)) *argument.pfltVal = VariantToSingle(value);
}

}  // namespace

OcxConnection::OcxConnection(::IUnknown& control, REFIID source, ::IUnknown& sink) {
  ComPtr<IConnectionPointContainer> points;
  RequireCall(control.QueryInterface(IID_IConnectionPointContainer, points.ReceiveVoid()));
  RequireCall(points->FindConnectionPoint(source, m_point.Receive()));
  RequireCall(m_point->Advise(&sink, &m_cookie));
}

OcxConnection::~OcxConnection() {
  m_point->Unadvise(m_cookie);
}

HRESULT OcxEventSink::QueryInterface(REFIID iid, void** object) {
  return Counted::QueryInterface(iid == kEventInterface ? IID_IDispatch : iid, object);
}

HRESULT OcxEventSink::Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS* given, VARIANT*,
                             EXCEPINFO*, UINT*) {
  const auto known = [&](const EventDescription& event) {
    return static_cast<DISPID>(event.number) == number;
  };
  const auto event = std::ranges::find_if(EventTable(), known);
  if (event == EventTable().end()) return DISP_E_MEMBERNOTFOUND;
  if (!given || given->cArgs != event->kinds.size()) return DISP_E_BADPARAMCOUNT;
  try {
    const std::span<VARIANTARG> lastToFirst(given->rgvarg, given->cArgs);
    std::vector<Variant> arguments;
    std::transform(lastToFirst.rbegin(), lastToFirst.rend(), std::back_inserter(arguments),
                   ValueOf);
    const auto host = m_host;
    host->Invoke(event->number, arguments);
    for (std::size_t i = 0; i < arguments.size(); ++i)
      Store(arguments[i], lastToFirst[arguments.size() - 1 - i]);
    return S_OK;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

HRESULT OcxPropertySink::OnChanged(DISPID number) {
  const auto host = m_host;
  if (const Member* property = FindMember(number, Access::Get))
    host->PropertyChanged(property->name);
  return S_OK;
}

}  // namespace quillet
