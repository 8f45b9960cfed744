#pragma once

#include "platform/win32/com_ptr.h"
#include "platform/win32/sdk.h"

namespace quillet {

class ControlCore;

// The control's place in its container: the client site, the extent, and whether it is active in a
// window there, and the one that has the user's keys.
//
// The container may call back from every call that is made to it, and undo what is being done.
class Embedding {
 public:
  explicit Embedding(ControlCore& core) noexcept : m_core(core) {}
  Embedding(const Embedding&) = delete;
  Embedding& operator=(const Embedding&) = delete;

  // Taking the site away ends the activity in it.
  void SetClientSite(IOleClientSite* site);
  const ComPtr<IOleClientSite>& ClientSite() const noexcept { return m_clientSite; }

  bool IsActive() const noexcept { return static_cast<bool>(m_inPlaceSite); }
  // Shows the control in the container's window; with the keys when `withKeys`.
  HRESULT Activate(bool withKeys);
  // Gives the keys back; takes the control out of the window.
  void DeactivateKeys();
  void Deactivate();
  // The user went into the control.
  void Entered();

  // The control's place in the container's window, and the part of that window it may show in.
  HRESULT SetRectangles(const RECT& place, const RECT& visible);

  // In units of 0.01 mm. A control that is active has the extent of its place.
  SIZEL Extent() const;
  HRESULT SetExtent(const SIZEL& extent);

 private:
  HRESULT StandIn(IOleInPlaceSite& site);
  HRESULT TakeKeys();

  ControlCore& m_core;
  ComPtr<IOleClientSite> m_clientSite;
  ComPtr<IOleInPlaceSite> m_inPlaceSite;  // while active
  ComPtr<IOleInPlaceFrame> m_frame;
  ComPtr<IOleInPlaceUIWindow> m_document;
  bool m_hasKeys = false;
};

}  // namespace quillet
