#pragma once

#include <array>
#include <functional>
#include <string>

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

// In place, as ours.
std::function<void()> Invert(const Page& page);
// Each to a grey picture and back to three channels.
std::function<void()> GrayScale(const Page& page);
std::function<void()> BlackWhite(const Page& page);
// Every channel times `factor`, plus `offset`.
std::function<void()> Scale(const Page& page, double factor, double offset);
// To hue, lightness and saturation, the lightness scaled, and back; of noise instead of the page.
std::function<void()> Lighten(const Page& page, double factor);
std::function<void()> LightenNoise(const Page& page, double factor);
// A 3x3 kernel, rows from the top.
std::function<void()> Filter(const Page& page, std::array<float, 9> kernel);
// The format is that of the name's ending; JPEG with quality 75.
std::function<void()> WriteImage(const Page& page, std::string fileName);
std::function<void()> ReadImage(std::string fileName);
// memcmp: OpenCV has no comparison that stops.
std::function<void()> Compare(const Page& page);

}  // namespace quillet::bench::peer
