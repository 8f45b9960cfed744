#include "embed/win32_display.h"

#include <cstddef>
#include <limits>

#include "base/runtime_error.h"

namespace quillet {
namespace {

bool IsUserInput(UINT message) {
  return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
         (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
         (message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK);
}

// The rows of a top-down 24-bit section, as RGB without padding.
std::vector<Byte> RgbOf(const Byte* bits, int width, int height) {
  const std::size_t rowLength = 3 * static_cast<std::size_t>(width);
  const std::size_t stride = (rowLength + 3) / 4 * 4;
  std::vector<Byte> rgb(rowLength * static_cast<std::size_t>(height));
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y)
    for (std::size_t x = 0; x < rowLength; ++x)
      rgb[y * rowLength + x] = bits[y * stride + x / 3 * 3 + (2 - x % 3)];
  return rgb;
}

}  // namespace

RECT OutsideFor(SIZE frame, int width, int height) {
  const auto tooFar = [](int size) {
    return size < 0 || size > std::numeric_limits<Integer>::max();
  };
  if (tooFar(width) || tooFar(height)) throw RunTimeError(ErrorNumber::InvalidPropertyValue);
  return {0, 0, width + frame.cx, height + frame.cy};
}

void RunWaitingMessages(HWND window) {
  ::MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0,
                        PM_REMOVE | PM_QS_INPUT | PM_QS_POSTMESSAGE | PM_QS_SENDMESSAGE))
    if (!IsUserInput(message.message)) ::DispatchMessageW(&message);
  ::RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

Snapshot SnapshotOf(HWND window) {
  RECT outside{};
  if (!::GetWindowRect(window, &outside)) return {};
  Snapshot snapshot{outside.right - outside.left, outside.bottom - outside.top, {}};
  ::BITMAPINFO header{};
  header.bmiHeader.biSize = sizeof(header.bmiHeader);
  header.bmiHeader.biWidth = snapshot.width;
  header.bmiHeader.biHeight = -snapshot.height;
  header.bmiHeader.biPlanes = 1;
  header.bmiHeader.biBitCount = 24;
  void* bits = nullptr;
  const HBITMAP section = ::CreateDIBSection(nullptr, &header, DIB_RGB_COLORS, &bits, nullptr, 0);
  if (!section) throw RunTimeError(ErrorNumber::OutOfMemory);
  const HDC source = ::GetDCEx(window, nullptr, DCX_WINDOW | DCX_CACHE);
  const HDC target = ::CreateCompatibleDC(nullptr);
  const HGDIOBJ previous = ::SelectObject(target, section);
  ::BitBlt(target, 0, 0, snapshot.width, snapshot.height, source, 0, 0, SRCCOPY);
  ::GdiFlush();
  ::SelectObject(target, previous);
  ::DeleteDC(target);
  ::ReleaseDC(window, source);
  snapshot.rgb = RgbOf(static_cast<const Byte*>(bits), snapshot.width, snapshot.height);
  ::DeleteObject(section);
  return snapshot;
}

AttendedWindow::Place PlaceOf(HWND window, const TwipScale& scale) {
  RECT place{};
  ::GetWindowRect(window, &place);
  ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<::POINT*>(&place), 2);
  return {.left = scale.Wide(place.left),
          .top = scale.High(place.top),
          .width = scale.Wide(place.right - place.left),
          .height = scale.High(place.bottom - place.top),
          .visible = (::GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0};
}

}  // namespace quillet
