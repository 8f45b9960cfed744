#pragma once

#include <string>

#include "base/types.h"
#include "platform/contracts/platform.h"
#include "twain/protocol.h"

namespace quillet {

// One TWAIN conversation per call: a hidden message window, the source manager, the default source,
// and everything closed again before the call returns. No state of the conversation outlives it.
//
// Every procedure answers 0 for success and 1 for failure. A missing source manager is the one
// thing that leaves as a run-time error (53 or 48), after the window is destroyed.
//
// Re-entrancy: host code runs inside the acquisition's message loop. A further Acquire or
// SelectDataSource from there is refused with 1 and disturbs nothing.
class cTwain {
 public:
  explicit cTwain(Platform& platform) : m_platform(platform) {}

  // One whole scan. On success picTarget holds the new picture unless the user closed the source's
  // dialog; otherwise it is untouched, except that a source which cannot be disabled after a good
  // transfer still answers 1.
  Long Acquire(PictureRef& picTarget, Integer iResolution, Long lColorType, bool bShowProgress,
               bool bShowInterface, const std::string& Title);

  // Lets the user choose which source is the default.
  Long SelectDataSource(const std::string& Title);

 private:
  class BusyGuard;

  // The conversation's frame: window, manager, source around the procedure's own work.
  template <typename Work>
  Long Converse(const std::string& Title, Work&& work);

  Long OpenSource(std::string Title);
  Long CloseSource();

  // Negotiation with the open source.
  Long Negotiate(Integer iResolution, Long lColorType, bool bShowProgress);
  Long DisableIndicators();
  Long CheckUIControllable();
  Long SetFullLayout();
  Long SetResolution(Integer iResolution);
  Long SetPixelType();
  Long SetBitDepth();
  Long SetTransferCount();
  Long SetOneValue(TW_UINT16 Cap, TW_UINT16 ItemType, TW_UINT32 Item);
  bool ReadOneValue(TW_UINT16 Cap, TW_UINT32& Item);

  // The enabled source.
  Long EnableAndTransfer(PictureRef& picTarget, bool bShowInterface);
  bool AwaitImage();
  Long Transfer(PictureRef& picTarget, UniqueGlobal& hDib);
  bool EndTransfer();
  Long DibToPicture(UniqueGlobal& hDib, PictureRef& picTarget);

  // The one way to the manager: to itself, or through it to the open source.
  TW_UINT16 CallManager(TW_UINT16 argumentType, TW_UINT16 message, void* pData);
  TW_UINT16 CallSource(TW_UINT32 group, TW_UINT16 argumentType, TW_UINT16 message, void* pData);

  Platform& m_platform;
  bool m_busy = false;

  WindowHandle m_hWndMsg = WindowHandle::None;
  TW_IDENTITY m_AppIdentity{};
  TW_IDENTITY m_SourceIdentity{};
  Long m_PixelType = 0;
};

}  // namespace quillet
