#pragma once

#include <functional>

#include "bench/page.h"

// OpenCV on one thread, from the page's pixels into memory that is warm already. Null where the
// build found no OpenCV.
namespace quillet::bench::peer {

const char* Version();

std::function<void()> Flip(const Page& page);
std::function<void()> Reverse(const Page& page);
std::function<void()> Rotate(const Page& page);
std::function<void()> Crop(const Page& page, Long left, Long top, Long width, Long height);
// Area average for smaller sizes, bilinear for larger ones.
std::function<void()> Resize(const Page& page, Long width, Long height);

}  // namespace quillet::bench::peer
