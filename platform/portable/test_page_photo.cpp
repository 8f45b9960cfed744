#include "platform/portable/test_page_photo.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "base/rounding.h"

namespace quillet {
namespace {

using Light = TestPhoto::Light;

Light Mix(const Light& a, const Light& b, double part) {
  return {a.red + (b.red - a.red) * part, a.green + (b.green - a.green) * part,
          a.blue + (b.blue - a.blue) * part};
}

Light Scaled(const Light& light, double factor) {
  return {light.red * factor, light.green * factor, light.blue * factor};
}

// From 0 to 1 without a corner at either end.
double Smooth(double part) {
  return part * part * (3 - 2 * part);
}

// 0 up to `from`, 1 beyond `to`, without a corner in between.
double SmoothStep(double from, double to, double value) {
  return Smooth(std::clamp((value - from) / (to - from), 0.0, 1.0));
}

// 0 to 1 for each lattice point and seed.
double Hash(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  std::uint32_t bits = static_cast<std::uint32_t>(x) * 0x8DA6B343u;
  bits ^= static_cast<std::uint32_t>(y) * 0xD8163841u;
  bits ^= seed * 0xCB1AB31Fu;
  bits ^= bits >> 15;
  bits *= 0x2C1B3C6Du;
  bits ^= bits >> 12;
  bits *= 0x297A2D39u;
  bits ^= bits >> 15;
  return (bits >> 8) / 16777215.0;
}

// Smooth noise from 0 to 1 with cells of 2^shift units.
double Noise(std::int32_t x, std::int32_t y, int shift, std::uint32_t seed) {
  const std::int32_t column = x >> shift, row = y >> shift;
  const double part = 1.0 / (1 << shift);
  const double u = Smooth((x - column * (1 << shift)) * part);
  const double v = Smooth((y - row * (1 << shift)) * part);
  const double top = Hash(column, row, seed) * (1 - u) + Hash(column + 1, row, seed) * u;
  const double bottom = Hash(column, row + 1, seed) * (1 - u) + Hash(column + 1, row + 1, seed) * u;
  return top * (1 - v) + bottom * v;
}

// Sum of noises, each half as strong and twice as fine as the one before; about 0 to 1.
double Clouds(std::int32_t x, std::int32_t y, int shift, int octaves, std::uint32_t seed) {
  double sum = 0, weight = 0.5;
  for (int octave = 0; octave < octaves; ++octave, weight /= 2)
    sum += weight * Noise(x, y, shift - octave, seed + static_cast<std::uint32_t>(octave));
  return sum;
}

// The picture is kWidth wide whatever its size on the page; y grows downwards from its top.
constexpr std::int32_t kWidth = 1 << 16;
constexpr std::int32_t kStep = 32;  // between two samples of a ridge
constexpr std::int32_t kShore = 29500;
constexpr std::int32_t kMeadow = 40500;
constexpr std::int32_t kSunX = 47000, kSunY = 15500;

Light Sky(std::int32_t x, std::int32_t y) {
  const double down = static_cast<double>(y) / kShore;
  Light light = Mix({0.24, 0.46, 0.74}, {0.70, 0.80, 0.88}, SmoothStep(0.0, 0.62, down));
  light = Mix(light, {0.99, 0.85, 0.66}, SmoothStep(0.35, 0.95, down));
  const double cloud = SmoothStep(0.44, 0.66, Clouds(x / 2, y * 2, 13, 5, 11));
  const Light white = Mix({0.97, 0.97, 0.98}, {0.99, 0.86, 0.74}, SmoothStep(0.1, 0.7, down));
  light = Mix(light, white, 0.85 * cloud * (1 - SmoothStep(0.45, 0.9, down)));
  const double dx = (x - kSunX) / 9000.0, dy = (y - kSunY) / 9000.0;
  const double away = dx * dx + dy * dy;
  light = Mix(light, {1.0, 0.93, 0.76}, 0.75 / (1 + 2.2 * away));
  return Mix(light, {1.0, 0.99, 0.93}, 1 - SmoothStep(0.012, 0.020, away));
}

// A range of hills in front of another: where its ridge runs and how it is lit.
struct Range {
  std::int32_t base, height;
  int shift, octaves;
  std::uint32_t seed;
  Light dark, bright;
  double haze;
  bool snow;
};

constexpr Range kRanges[] = {
    {31280, 21000, 14, 7, 101, {0.34, 0.40, 0.52}, {0.66, 0.66, 0.70}, 0.42, true},
    {30840, 13000, 13, 7, 229, {0.20, 0.30, 0.36}, {0.46, 0.50, 0.46}, 0.24, false},
    {30470, 6500, 12, 8, 367, {0.07, 0.17, 0.14}, {0.28, 0.38, 0.22}, 0.08, false},
};

// Ridges are soft over this much height.
constexpr double kEdge = 40;

std::vector<double> SampledRidge(std::int32_t base, std::int32_t height, int shift, int octaves,
                                 std::uint32_t seed) {
  std::vector<double> samples;
  for (std::int32_t x = 0; x <= kWidth + kStep; x += kStep)
    samples.push_back(base - height * Clouds(x, 0, shift, octaves, seed));
  return samples;
}

double RidgeAt(const std::vector<double>& samples, std::int32_t x) {
  const std::int32_t inside = std::clamp(x, 0, kWidth);
  const auto index = static_cast<std::size_t>(inside / kStep);
  const double part = static_cast<double>(inside % kStep) / kStep;
  return samples[index] + (samples[index + 1] - samples[index]) * part;
}

Light Rock(const Range& range, std::int32_t x, std::int32_t y, double top) {
  // The slope towards the sun, on the upper right, is the brighter one.
  const int texture = range.shift - 2;
  const std::uint32_t seed = range.seed + 50;
  const double slope = Clouds(x + 260, y - 260, texture, 5, seed) - Clouds(x, y, texture, 5, seed);
  Light rock = Mix(range.dark, range.bright, std::clamp(0.42 + 5.0 * slope, 0.0, 1.0));
  if (range.snow) {
    const double above = top + 3200 + 5200 * (Clouds(x, y, 11, 4, 71) - 0.5) - y;
    const Light snow = Mix({0.62, 0.70, 0.84}, {1.0, 0.98, 0.95}, 0.5 + 6.0 * slope);
    rock = Mix(rock, snow, SmoothStep(-500, 900, above) * SmoothStep(18500, 15500, top));
  }
  const double mist = range.haze + 0.4 * SmoothStep(0.55, 1.0, (y - top) / range.height);
  return Mix(rock, {0.86, 0.82, 0.78}, std::clamp(mist, 0.0, 1.0));
}

Light Meadow(std::int32_t x, std::int32_t y) {
  const double near = std::clamp((y - kMeadow + 1500) / 7000.0, 0.0, 1.0);
  const double blades = Clouds(x * 3, y / 2, 10, 4, 503);
  const double patches = Clouds(x, y * 2, 12, 4, 547);
  Light light = Mix({0.16, 0.25, 0.08}, {0.52, 0.58, 0.20}, SmoothStep(0.25, 0.75, blades));
  light = Mix(light, {0.60, 0.52, 0.24}, 0.55 * SmoothStep(0.45, 0.7, patches));
  const double flower = Noise(x, y, 7, 577) * Noise(x, y, 11, 593);
  const Light petal =
      Hash(x >> 9, y >> 9, 601) < 0.5 ? Light{0.86, 0.16, 0.14} : Light{0.97, 0.86, 0.30};
  light = Mix(light, petal, SmoothStep(0.60, 0.68, flower));
  return Scaled(light, 1.05 - 0.45 * near);
}

struct Tree {
  std::int32_t x, foot, height;
};

constexpr Tree kTrees[] = {
    {3300, 43800, 27500}, {8200, 43000, 21500},  {12300, 42300, 14500},
    {15300, 41700, 9800}, {58400, 42000, 10800}, {62600, 43100, 18800},
};

// A fir: tiers of branches that widen downwards, ragged at their ends.
Light Trees(std::int32_t x, std::int32_t y, Light light) {
  for (const Tree& tree : kTrees) {
    const double down = static_cast<double>(y - tree.foot + tree.height) / tree.height;
    const std::int32_t side = x - tree.x;
    const double away = side < 0 ? -side : side;
    if (down < 0 || down > 1 || away > 0.3 * down * tree.height + kEdge) continue;
    const std::int32_t tier = tree.height / 11;
    const double inTier = static_cast<double>((y - tree.foot + tree.height) % tier) / tier;
    const double rough = Clouds(x * 2, y * 2, 11, 4, 701) - 0.47;
    const double needles = down * (0.62 + 0.38 * inTier) * (1 + 1.1 * rough) * 0.19 * tree.height;
    const double reach = std::max(down > 0.95 ? 0.0 : needles, 0.012 * tree.height);
    const double lit = 0.5 + side / (2 * reach + 1) + 2.2 * rough - 0.25 * inTier;
    const Light green = Mix({0.03, 0.08, 0.06}, {0.27, 0.33, 0.14}, std::clamp(lit, 0.0, 1.0));
    light = Mix(light, green, SmoothStep(reach + kEdge, reach - kEdge, away));
  }
  return light;
}

}  // namespace

TestPhoto::TestPhoto(const PageBox& box) : m_box(box) {
  for (const Range& range : kRanges)
    m_ridges.push_back(
        SampledRidge(range.base, range.height, range.shift, range.octaves, range.seed));
  m_bank = SampledRidge(kMeadow + 1300, 2600, 13, 6, 809);
}

// The nearest range that is there hides what is behind it, so the search begins in front.
TestPhoto::Light TestPhoto::Hills(std::int32_t x, std::int32_t y, std::size_t ranges) const {
  if (ranges == 0) return Sky(x, y);
  const Range& range = kRanges[ranges - 1];
  const double top = RidgeAt(m_ridges[ranges - 1], x);
  if (y <= top - kEdge) return Hills(x, y, ranges - 1);
  const Light rock = Rock(range, x, y, top);
  if (y >= top + kEdge) return rock;
  return Mix(Hills(x, y, ranges - 1), rock, SmoothStep(top - kEdge, top + kEdge, y));
}

TestPhoto::Light TestPhoto::Lake(std::int32_t x, std::int32_t y) const {
  const double near = static_cast<double>(y - kShore) / (kMeadow - kShore);
  // Ripples lie flat, and spread towards the viewer.
  const double ripple = Clouds(x / 4, y * 3, 10, 4, 401) - 0.47;
  const auto mirrorX = ToLong(x + 1500 * ripple * near);
  const auto mirrorY = ToLong(kShore - 1.55 * (y - kShore) - 5200 * ripple * near);
  const Light mirror = Hills(mirrorX, std::min(mirrorY, kShore), m_ridges.size());
  Light light = Mix(Scaled(mirror, 0.86), {0.10, 0.26, 0.34}, 0.22 + 0.25 * near);
  const double column = (x - kSunX) / (1800.0 + 4200.0 * near);
  const double glint = SmoothStep(0.10, 0.26, ripple) / (1 + column * column * 2);
  light = Mix(light, {1.0, 0.95, 0.82}, 0.8 * glint);
  return Mix(light, {0.90, 0.88, 0.82}, 0.5 * SmoothStep(450, 0, y - kShore));
}

PageColor TestPhoto::At(int column, int row, PagePoint point) const {
  const double unit = kWidth / (m_box.right - m_box.left);
  const std::int32_t x = ToLong((point.x - m_box.left) * unit);
  const std::int32_t y = ToLong((point.y - m_box.top) * unit);
  const double bank = RidgeAt(m_bank, x);
  const double grass = SmoothStep(bank - kEdge, bank + kEdge, y);
  Light light{};
  if (grass < 1) light = y < kShore ? Hills(x, y, m_ridges.size()) : Lake(x, y);
  if (grass > 0) light = Mix(light, Meadow(x, y), grass);
  light = Trees(x, y, light);

  const double dx = (x - 0.5 * kWidth) / 40000.0, dy = (y - 22000) / 32000.0;
  const double vignette = 1 - 0.22 * (dx * dx + dy * dy) * (dx * dx + dy * dy);
  const double grain = 6 * (Hash(column, row, 907) - 0.5);
  const auto toByte = [&](double value) {
    return ToByte(std::clamp(255 * value * vignette + grain, 0.0, 255.0));
  };
  return {toByte(light.red), toByte(light.green), toByte(light.blue)};
}

}  // namespace quillet
