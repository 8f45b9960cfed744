#pragma once

#include <optional>
#include <utility>

#include "platform/contracts/global_memory.h"
#include "platform/portable/dib.h"
#include "twain/protocol.h"

namespace quillet {

// How the glass is to be scanned.
struct ScanSettings {
  TW_FRAME frame;  // in inches from the top-left corner, within the glass
  TW_UINT16 pixelType;
  int xResolution, yResolution;  // dots per inch, as of the test page
};

// An A4 glass with a page on it: the built-in test page, or a picture.
class ScannerGlass {
 public:
  // A picture that says its resolution lies there in its own size, in the top-left corner, white
  // around it; what hangs over is not seen. One that does not is as large as the glass takes.
  void PutPage(Dib page) { m_page = std::move(page); }

  // A new block with a packed bottom-up bitmap: 1 bit (black and white, split at mid grey), 8 bits
  // (greys) or 24, the resolution in its header. Grey is 0.299 red + 0.587 green + 0.114 blue
  // (ITU-R BT.601), rounded to nearest. None when there is no memory.
  GlobalHandle Scan(GlobalMemory& memory, const ScanSettings& settings) const;

 private:
  Dib Look(int xResolution, int yResolution) const;

  std::optional<Dib> m_page;
};

}  // namespace quillet
