#include "server/control_object.h"

#include "server/com_error.h"

namespace quillet {

HRESULT ControlObject::Create(Module& module, ::IUnknown* outer, REFIID iid, void** object) {
  *object = nullptr;
  if (outer && iid != IID_IUnknown) return CLASS_E_NOAGGREGATION;
  try {
    auto* control = new ControlObject(module, outer);
    const HRESULT result = control->Find(iid, object);
    control->EndReference();
    return result;
  } catch (...) {
    return Report(CurrentError(), iid);
  }
}

ControlObject::ControlObject(Module& module, ::IUnknown* outer)
    : m_use(module),
      m_core(outer ? *outer : m_inner, module.PlatformOfThisThread()),
      m_connections(m_core, module) {}

HRESULT ControlObject::Find(REFIID iid, void** object) noexcept {
  if (!object) return E_POINTER;
  const struct {
    const IID& iid;
    ::IUnknown* part;
  } kParts[] = {
      {IID_IUnknown, &m_inner},
      {kTwainInterface, &m_twain},
      {IID_IDispatch, &m_twain},
      {IID_ISupportErrorInfo, &m_errorInfo},
      {IID_IOleObject, &m_oleObject},
      {IID_IOleControl, &m_oleControl},
      {IID_IOleWindow, &m_inPlace},
      {IID_IOleInPlaceObject, &m_inPlace},
      {IID_IOleInPlaceActiveObject, &m_active},
      {IID_IViewObject, &m_view},
      {IID_IViewObject2, &m_view},
      {IID_IPersist, &m_persistStream},
      {IID_IPersistStreamInit, &m_persistStream},
      {IID_IPersistPropertyBag, &m_persistBag},
      {IID_IConnectionPointContainer, &m_connections},
      {IID_IProvideClassInfo, &m_classInfo},
      {IID_IProvideClassInfo2, &m_classInfo},
      {IID_IObjectSafety, &m_objectSafety},
  };
  *object = nullptr;
  for (const auto& entry : kParts) {
    if (entry.iid != iid) continue;
    entry.part->AddRef();
    *object = entry.part;
    return S_OK;
  }
  return E_NOINTERFACE;
}

ULONG ControlObject::EndReference() noexcept {
  const ULONG left = --m_references;
  if (left != 0 || !m_core.OnOwnThread()) return left;
  // The container is called for the last time, and may take references meanwhile.
  ++m_references;
  m_connections.Close();
  m_core.Close();
  const ULONG taken = --m_references;
  if (taken == 0) delete this;
  return taken;
}

}  // namespace quillet
