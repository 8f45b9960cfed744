// A whole scan: the enabled source, the message loop, the native transfer.

#include <array>
#include <cstring>
#include <new>
#include <span>

#include "base/runtime_error.h"
#include "twain/cTwain.h"
#include "twain/conversation.h"
#include "twain/packed_dib.h"

namespace quillet {
namespace {

constexpr std::size_t kFileHeaderSize = 14;

// The header of a BMP file around a packed bitmap, little-endian.
std::array<Byte, kFileHeaderSize> BitmapFileHeader(const PackedDib& dib) {
  std::array<Byte, kFileHeaderSize> header{'B', 'M'};
  const auto put = [&](std::size_t offset, std::size_t value) {
    for (std::size_t i = 0; i < 4; ++i) header[offset + i] = static_cast<Byte>(value >> (8 * i));
  };
  put(2, dib.size + kFileHeaderSize);
  put(10, dib.rowsOffset + kFileHeaderSize);
  return header;
}

}  // namespace

Long cTwain::Acquire(PictureRef& picTarget, Integer iResolution, Long lColorType,
                     bool bShowProgress, bool bShowInterface, const std::string& Title) {
  if (m_busy) return 1;
  const BusyGuard busy(m_busy);
  m_PixelType = lColorType;
  return Converse(Title, [&] {
    if (Negotiate(iResolution, lColorType, bShowProgress) != 0) return Long{1};
    return EnableAndTransfer(picTarget, bShowInterface);
  });
}

Long cTwain::EnableAndTransfer(PictureRef& picTarget, bool bShowInterface) {
  TW_USERINTERFACE userInterface{static_cast<TW_BOOL>(bShowInterface ? 1 : 0), 1, m_hWndMsg};
  const TW_UINT16 enabled = CallSource(DG_CONTROL, DAT_USERINTERFACE, MSG_ENABLEDS, &userInterface);
  // CHECKSTATUS: enabled, but with its own dialog although asked to go without.
  if (enabled != TWRC_SUCCESS && enabled != TWRC_CHECKSTATUS) return 1;

  UniqueGlobal hDib(m_platform.memory, GlobalHandle::None);
  const Long result = AwaitImage() ? Transfer(picTarget, hDib) : 0;
  const TW_UINT16 disabled =
      CallSource(DG_CONTROL, DAT_USERINTERFACE, MSG_DISABLEDS, &userInterface);
  return result == 0 && disabled == TWRC_SUCCESS ? 0 : 1;
}

// Pumps the thread's messages until the source has an image (true) or asks to be closed (false).
// The thread's quit message, or a queue that fails, ends the wait like an image: the transfer is
// tried.
bool cTwain::AwaitImage() {
  MSG message;
  while (m_platform.messages.GetMessageA(message) > 0) {
    TW_EVENT event{&message, MSG_NULL};
    CallSource(DG_CONTROL, DAT_EVENT, MSG_PROCESSEVENT, &event);
    if (event.TWMessage == MSG_XFERREADY) return true;
    if (event.TWMessage == MSG_CLOSEDSREQ) return false;
    m_platform.messages.TranslateMessage(message);
    m_platform.messages.DispatchMessageA(message);
  }
  return true;
}

// The image is discarded when the source does not let the transfer end. Memory that is not freed by
// then goes before the source is disabled.
Long cTwain::Transfer(PictureRef& picTarget, UniqueGlobal& hDib) {
  const TW_UINT16 answer = CallSource(DG_IMAGE, DAT_IMAGENATIVEXFER, MSG_GET, &hDib.out());
  if (answer != TWRC_XFERDONE) {
    hDib.Free();
    EndTransfer();
    return 1;
  }
  const bool ended = EndTransfer();
  const Long result = ended ? DibToPicture(hDib, picTarget) : 1;
  if (result != 0) hDib.Free();
  return result;
}

// Further images that the source has pending are discarded: it could not be disabled otherwise.
bool cTwain::EndTransfer() {
  TW_PENDINGXFERS pending{};
  if (CallSource(DG_CONTROL, DAT_PENDINGXFERS, MSG_ENDXFER, &pending) != TWRC_SUCCESS) return false;
  if (pending.Count == 0) return true;
  pending = {};
  CallSource(DG_CONTROL, DAT_PENDINGXFERS, MSG_RESET, &pending);
  return true;
}

// By way of a BMP file that the platform's picture loader reads. The image's memory is freed before
// the loader asks for the picture's.
Long cTwain::DibToPicture(UniqueGlobal& hDib, PictureRef& picTarget) try {
  std::string fileName;
  {
    const GlobalLockGuard lock(m_platform.memory, hDib.get());
    const auto* block = static_cast<const Byte*>(lock.get());
    if (!block) return 1;
    const auto dib = PackedDib::Measure(block, m_platform.memory.GlobalSize(hDib.get()));
    if (!dib) return 1;
    const auto header = BitmapFileHeader(*dib);
    fileName = m_platform.files.GetTempFileNameA(m_platform.files.GetTempPathA(), "ptw");
    const std::array<std::span<const Byte>, 2> pieces{header, std::span(block, dib->size)};
    m_platform.files.WriteFile(fileName, pieces);
  }
  hDib.Free();
  picTarget = m_platform.pictures.LoadPicture(fileName);
  try {
    m_platform.files.DeleteFile(fileName);
  } catch (const RunTimeError&) {
    // The picture is there; the file is only left behind.
  }
  return 0;
} catch (const RunTimeError&) {
  return 1;
} catch (const std::bad_alloc&) {
  return 1;
}

}  // namespace quillet
