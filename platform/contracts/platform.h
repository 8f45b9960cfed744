#pragma once

#include "platform/contracts/bitmap_services.h"
#include "platform/contracts/picture_services.h"

namespace quillet {

// What lives as long as the process, handed by reference to everything that needs it.
struct Platform {
  BitmapServices& bitmaps;
  PictureServices& pictures;
};

}  // namespace quillet
