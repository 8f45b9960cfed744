#include "platform/portable/resample.h"

#include <cstring>
#include <utility>
#include <vector>

#include "platform/portable/resample_kernels.h"

namespace quillet {
namespace {

using resample::BlendPlan;
using resample::Level;
using resample::Span;
using resample::SpanScale;

constexpr resample::Kernels kScalar{resample::scalar::AverageRows,  resample::scalar::AverageLevels,
                                    resample::scalar::AverageBytes, resample::scalar::BlendLevels,
                                    resample::scalar::BlendBytes,   resample::scalar::BlendRows,
                                    resample::scalar::HalveRows};
#ifdef QUILLET_X86
constexpr resample::Kernels kAvx2{resample::avx2::AverageRows,    resample::avx2::AverageLevels,
                                  resample::scalar::AverageBytes, resample::scalar::BlendLevels,
                                  resample::avx2::BlendBytes,     resample::avx2::BlendRows,
                                  resample::avx2::HalveRows};
#endif

const resample::Kernels& KernelsOf([[maybe_unused]] InstructionSet set) {
#ifdef QUILLET_X86
  if (set == InstructionSet::Avx2) return kAvx2;
#endif
  return kScalar;
}

// The spans of an axis that shrinks or keeps its size.
struct Spans {
  Spans(Long size, Long newSize) : at(static_cast<std::size_t>(newSize)) {
    if (newSize == size) {
      for (Long i = 0; i < size; ++i) {
        at[static_cast<std::size_t>(i)] = {i, i, std::uint64_t{1} << scale.bits, 0};
      }
      return;
    }
    // In units of which a source pixel has newSize and a target pixel has size.
    const std::int64_t pixel = newSize;
    const std::int64_t length = size;
    if (length > pixel * resample::kNarrowRatio) scale.bits = resample::kWideWeightBits;
    const auto weight = [&](std::int64_t covered) {
      const auto scaled = static_cast<std::uint64_t>(covered) << scale.bits;
      return (scaled + static_cast<std::uint64_t>(length / 2)) / static_cast<std::uint64_t>(length);
    };
    scale.weightInner = weight(pixel);
    std::int64_t begin = 0;
    for (Span& span : at) {
      const std::int64_t end = begin + length;
      const std::int64_t first = begin / pixel;
      const std::int64_t last = (end - 1) / pixel;
      span = {static_cast<Long>(first), static_cast<Long>(last),
              weight((first + 1) * pixel - begin), weight(end - last * pixel)};
      begin = end;
    }
  }

  std::vector<Span> at;
  SpanScale scale;
};

// The pass within a row, from bytes to levels or from levels to bytes.
class RowPass {
 public:
  RowPass(const resample::Kernels& kernels, Long width, Long newWidth)
      : m_kernels(kernels),
        m_shrinks(newWidth < width),
        m_newWidth(newWidth),
        m_spans(m_shrinks ? Spans(width, newWidth) : Spans(0, 0)),
        m_blend(m_shrinks ? BlendPlan(0, 0) : BlendPlan(width, newWidth)) {}

  void operator()(const Byte* source, Level* target) const {
    if (m_shrinks) {
      m_kernels.AverageBytes(source, m_spans.at.data(), m_spans.scale, m_newWidth, target);
    } else {
      m_kernels.BlendBytes(source, m_blend, target);
    }
  }

  void operator()(const Level* source, Byte* target) const {
    if (m_shrinks) {
      m_kernels.AverageLevels(source, m_spans.at.data(), m_spans.scale, m_newWidth, target);
    } else {
      m_kernels.BlendLevels(source, m_blend, target);
    }
  }

 private:
  const resample::Kernels& m_kernels;
  bool m_shrinks;
  Long m_newWidth;
  Spans m_spans;
  BlendPlan m_blend;
};

std::vector<Level> LevelRow(Long width) {
  return std::vector<Level>(
      static_cast<std::size_t>(3 * std::ptrdiff_t{width} + resample::kLevelPadding));
}

}  // namespace

void Resample24(const Byte* source, std::ptrdiff_t sourceStride, Long width, Long height,
                Byte* target, std::ptrdiff_t targetStride, Long newWidth, Long newHeight,
                InstructionSet set) {
  const resample::Kernels& kernels = KernelsOf(set);
  if (newWidth == width && newHeight == height) {
    const auto rowBytes = static_cast<std::size_t>(3 * std::int64_t{width});
    for (Long y = 0; y < height; ++y) {
      std::memcpy(target + y * targetStride, source + y * sourceStride, rowBytes);
    }
    return;
  }
  // Halves need no rounding between the passes.
  if (width % 2 == 0 && height % 2 == 0 && newWidth == width / 2 && newHeight == height / 2) {
    for (Long y = 0; y < newHeight; ++y) {
      const Byte* upper = source + 2 * std::ptrdiff_t{y} * sourceStride;
      kernels.HalveRows(upper, upper + sourceStride, newWidth, target + y * targetStride);
    }
    return;
  }
  const RowPass rowPass(kernels, width, newWidth);
  if (newHeight < height || (newHeight == height && newWidth < width)) {
    // Fewer rows first: less is left to do within them.
    const Spans spans(height, newHeight);
    std::vector<Level> levels = LevelRow(width);
    for (Long y = 0; y < newHeight; ++y) {
      kernels.AverageRows(source, sourceStride, spans.at[static_cast<std::size_t>(y)], spans.scale,
                          3 * std::ptrdiff_t{width}, levels.data());
      rowPass(levels.data(), target + y * targetStride);
    }
    return;
  }
  // Each source row is resampled once, and kept while target rows lie beside it.
  const BlendPlan plan(height, newHeight);
  std::vector<Level> upper = LevelRow(newWidth);
  std::vector<Level> lower = LevelRow(newWidth);
  Long upperRow = -1;
  Long lowerRow = -1;
  for (Long y = 0; y < newHeight; ++y) {
    const auto [first, weight] = plan.at[static_cast<std::size_t>(y)];
    if (upperRow != first) {
      std::swap(upper, lower);
      std::swap(upperRow, lowerRow);
    }
    if (upperRow != first) {
      rowPass(source + first * sourceStride, upper.data());
      upperRow = first;
    }
    if (weight != 0 && lowerRow != first + 1) {
      rowPass(source + (first + 1) * sourceStride, lower.data());
      lowerRow = first + 1;
    }
    kernels.BlendRows(upper.data(), lower.data(), weight, 3 * std::ptrdiff_t{newWidth},
                      target + y * targetStride);
  }
}

}  // namespace quillet
