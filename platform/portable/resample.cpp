#include "platform/portable/resample.h"

#include <cstring>
#include <utility>
#include <vector>

#include "platform/portable/resample_kernels.h"

namespace quillet {
namespace {

using resample::AveragePlan;
using resample::BlendPlan;
using resample::Level;

constexpr resample::Kernels kScalar{resample::scalar::AverageRows,  resample::scalar::AverageLevels,
                                    resample::scalar::AverageBytes, resample::scalar::BlendLevels,
                                    resample::scalar::BlendBytes,   resample::scalar::BlendRows,
                                    resample::scalar::BlendRows,    resample::scalar::HalveRows};
#ifdef QUILLET_X86
constexpr resample::Kernels kAvx2{resample::avx2::AverageRows,       resample::avx2::AverageLevels,
                                  resample::avx2::AverageBytes,      resample::scalar::BlendLevels,
                                  resample::avx2::BlendBytes,        resample::avx2::BlendRows,
                                  resample::avx2::StreamBlendedRows, resample::avx2::HalveRows};
#endif

// What is written is not read again before so much else is that no cache keeps it.
constexpr std::ptrdiff_t kStreamedSize = std::ptrdiff_t{32} << 20;

const resample::Kernels& KernelsOf([[maybe_unused]] InstructionSet set) {
#ifdef QUILLET_X86
  if (set == InstructionSet::Avx2) return kAvx2;
#endif
  return kScalar;
}

// The pass within a row, from bytes to levels or from levels to bytes.
class RowPass {
 public:
  RowPass(const resample::Kernels& kernels, Long width, Long newWidth)
      : m_kernels(kernels),
        m_shrinks(newWidth < width),
        m_average(m_shrinks ? AveragePlan(width, newWidth) : AveragePlan(0, 0)),
        m_blend(m_shrinks ? BlendPlan(0, 0) : BlendPlan(width, newWidth)) {}

  void operator()(const Byte* source, Level* target) const {
    if (m_shrinks) {
      m_kernels.AverageBytes(source, m_average, target);
    } else {
      m_kernels.BlendBytes(source, m_blend, target);
    }
  }

  void operator()(const Level* source, Byte* target) const {
    if (m_shrinks) {
      m_kernels.AverageLevels(source, m_average, target);
    } else {
      m_kernels.BlendLevels(source, m_blend, target);
    }
  }

 private:
  const resample::Kernels& m_kernels;
  bool m_shrinks;
  AveragePlan m_average;
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
    const AveragePlan plan(height, newHeight);
    std::vector<Level> levels = LevelRow(width);
    for (Long y = 0; y < newHeight; ++y) {
      kernels.AverageRows(source, sourceStride, plan.at[static_cast<std::size_t>(y)], plan.scale,
                          3 * std::ptrdiff_t{width}, levels.data());
      rowPass(levels.data(), target + y * targetStride);
    }
    return;
  }
  // Each source row is resampled once, and kept while target rows lie beside it.
  const auto blendRows =
      newHeight * targetStride >= kStreamedSize ? kernels.StreamBlendedRows : kernels.BlendRows;
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
    blendRows(upper.data(), lower.data(), weight, 3 * std::ptrdiff_t{newWidth},
              target + y * targetStride);
  }
}

}  // namespace quillet
