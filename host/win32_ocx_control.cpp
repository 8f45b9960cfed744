#include "host/win32_ocx_control.h"

#include <utility>

#include "host/win32_call_result.h"
#include "host/win32_late_call.h"
#include "host/win32_ocx_bag.h"
#include "server/twain_interfaces.h"

namespace quillet {
namespace {

template <typename Interface>
ComPtr<Interface> Require(::IUnknown& object) {
  ComPtr<Interface> found;
  RequireCall(object.QueryInterface(__uuidof(Interface), found.ReceiveVoid()));
  return found;
}

}  // namespace

OcxControl::OcxControl(IClassFactory& factory, Win32Pictures& pictures, int width, int height)
    : m_pictures(pictures), m_window(width, height) {
  RequireCall(factory.CreateInstance(nullptr, IID_IOleObject, m_object.ReceiveVoid()));
  RequireCall(m_object->SetClientSite(&m_window.ControlsSite()));
}

// Whatever runs in the control meanwhile keeps it; it is told nothing more of this host.
OcxControl::~OcxControl() {
  m_events.reset();
  m_changes.reset();
  m_object->Close(OLECLOSE_NOSAVE);
  m_object->SetClientSite(nullptr);
  m_object = {};
}

void OcxControl::Listen(std::shared_ptr<HostListener> listener) {
  const auto events = MakeCounted<OcxEventSink>(listener);
  m_events.emplace(*m_object.get(), kEventInterface, *events.get());
  const auto changes = MakeCounted<OcxPropertySink>(std::move(listener));
  m_changes.emplace(*m_object.get(), IID_IPropertyNotifySink, *changes.get());
}

void OcxControl::Start() {
  if (m_started) return;
  m_started = true;
  RequireCall(Require<IPersistStreamInit>(*m_object.get())->InitNew());
  Show();
}

// What happens while the control finds its place is none of the host's events.
void OcxControl::Show() {
  const auto control = Require<IOleControl>(*m_object.get());
  RequireCall(control->FreezeEvents(TRUE));
  m_window.Show(*m_object.get());
  RequireCall(control->FreezeEvents(FALSE));
}

AttendedWindow& OcxControl::Window() {
  Start();
  return m_window;
}

Variant OcxControl::Invoke(const Member& member, std::span<Variant> arguments) {
  Start();
  const auto control = Require<::IDispatch>(*m_object.get());
  const auto user = m_window.DialogUser();
  const Win32DialogUser::Attending attending(*user);
  return CallByName(*control.get(), member, arguments, m_pictures);
}

void OcxControl::ReadProperties(PropertyBag& bag) {
  const auto settings = MakeCounted<OcxBag>(bag, m_pictures);
  const auto persist = Require<IPersistPropertyBag>(*m_object.get());
  const HRESULT result = persist->Load(settings.get(), nullptr);
  settings->Close();
  RequireCall(result);
  if (!std::exchange(m_started, true)) Show();
}

void OcxControl::WriteProperties(PropertyBag& bag) {
  Start();
  const auto settings = MakeCounted<OcxBag>(bag, m_pictures);
  const auto persist = Require<IPersistPropertyBag>(*m_object.get());
  const HRESULT result = persist->Save(settings.get(), FALSE, FALSE);
  settings->Close();
  RequireCall(result);
}

}  // namespace quillet
