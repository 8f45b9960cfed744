#pragma once

#include <memory>

#include "picture/kernels/kernels.h"
#include "platform/contracts/census.h"
#include "platform/contracts/platform.h"

namespace quillet {

class PortableBitmaps;
class PortablePictures;
class PortableSurface;
class WindowTable;

// The platform layer for any POSIX machine: bitmaps, pictures and surfaces in memory.
//
// Pictures and surfaces made here may outlive it: they share what they need.
class PortablePlatform {
 public:
  // The instruction set for resampling, which the processor must have.
  explicit PortablePlatform(InstructionSet instructions = BestKernels().set);
  PortablePlatform(const PortablePlatform&) = delete;
  PortablePlatform& operator=(const PortablePlatform&) = delete;
  ~PortablePlatform();

  Platform& Contracts() noexcept { return m_contracts; }
  CensusCounts Census() const;

  // A surface whose picture box measures insideWidth x insideHeight pixels inside the border while
  // no scroll bar shows.
  std::shared_ptr<PortableSurface> CreateSurface(int insideWidth, int insideHeight);

 private:
  std::shared_ptr<PortableBitmaps> m_bitmaps;
  std::shared_ptr<PortablePictures> m_pictures;
  std::shared_ptr<WindowTable> m_windows;
  Platform m_contracts;
};

}  // namespace quillet
