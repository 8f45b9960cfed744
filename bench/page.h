#pragma once

#include <cstddef>
#include <memory>

#include "base/types.h"
#include "picture/cPicture24.h"
#include "platform/portable/pixel_memory.h"
#include "platform/portable/portable_platform.h"

namespace quillet::bench {

// The built-in test page at a resolution: its pixels in warm memory, as a picture object on the
// portable platform, and as filled buffers. Shared by all operations on it.
class Page {
 public:
  // The instruction set is what the operations measured on this page use.
  Page(int dotsPerInch, InstructionSet instructions);

  int DotsPerInch() const { return m_dotsPerInch; }
  Long Width() const { return m_width; }
  Long Height() const { return m_height; }
  std::size_t Stride() const { return m_stride; }
  std::size_t ByteCount() const { return m_pixels->Size(); }
  // What the peer reads.
  Byte* Pixels() const { return m_pixels->Data(); }

  Platform& Contracts() const { return m_platform->Contracts(); }
  const PictureRef& AsPicture() const { return m_picture; }
  // An empty buffer, and one that holds the page's pixels itself.
  std::shared_ptr<cPicture24> EmptyBuffer() const;
  std::shared_ptr<cPicture24> FilledBuffer() const;

  // Copies the pixels between two blocks of warm memory that nothing else uses: what everything is
  // compared with. Were its source the peer's, each would find in the caches what the other left.
  void Memcpy() const;

 private:
  int m_dotsPerInch;
  const Kernels* m_kernels;
  Long m_width;
  Long m_height;
  std::size_t m_stride;
  std::unique_ptr<PixelMemory> m_pixels;
  std::unique_ptr<PixelMemory> m_copySource;
  std::unique_ptr<PixelMemory> m_copyTarget;
  std::unique_ptr<PortablePlatform> m_platform;
  PictureRef m_picture;
};

// The page as a new picture object of that platform.
PictureRef PictureOfPage(Platform& platform, int dotsPerInch);

}  // namespace quillet::bench
