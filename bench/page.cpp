#include "bench/page.h"

#include <cstring>
#include <stdexcept>

#include "platform/portable/test_page.h"

namespace quillet::bench {
namespace {

// The test page without a last column or row that would make its size odd: the half of the size
// measured is exactly a half (2480x3508 and 4960x7016).
TestPageSize EvenSizeOfPage(int dotsPerInch) {
  const TestPageSize size = SizeOfTestPage(dotsPerInch);
  return {size.width / 2 * 2, size.height / 2 * 2};
}

// Draws that much of the page.
void DrawPage(int dotsPerInch, Byte* rows, std::size_t stride) {
  const TestPageSize whole = SizeOfTestPage(dotsPerInch);
  const TestPageSize size = EvenSizeOfPage(dotsPerInch);
  const std::size_t wholeStride = 3 * static_cast<std::size_t>(whole.width);
  PixelMemory page(wholeStride * static_cast<std::size_t>(whole.height));
  RenderTestPage(dotsPerInch, page.Data(), static_cast<std::ptrdiff_t>(wholeStride));
  for (std::size_t y = 0; y < static_cast<std::size_t>(size.height); ++y) {
    std::memcpy(rows + y * stride, page.Data() + y * wholeStride,
                3 * static_cast<std::size_t>(size.width));
  }
}

}  // namespace

Page::Page(int dotsPerInch, InstructionSet instructions)
    : m_dotsPerInch(dotsPerInch),
      m_kernels(KernelsFor(instructions)),
      m_width(EvenSizeOfPage(dotsPerInch).width),
      m_height(EvenSizeOfPage(dotsPerInch).height),
      m_stride((3 * static_cast<std::size_t>(m_width) + 3) / 4 * 4),
      m_pixels(std::make_unique<PixelMemory>(m_stride * static_cast<std::size_t>(m_height))),
      m_copySource(std::make_unique<PixelMemory>(m_pixels->Size())),
      m_copyTarget(std::make_unique<PixelMemory>(m_pixels->Size())),
      m_platform(std::make_unique<PortablePlatform>("", instructions)),
      m_picture(PictureOfPage(m_platform->Contracts(), dotsPerInch)) {
  DrawPage(dotsPerInch, m_pixels->Data(), m_stride);
  std::memcpy(m_copySource->Data(), m_pixels->Data(), m_pixels->Size());
  std::memset(m_copyTarget->Data(), 0, m_copyTarget->Size());
}

std::shared_ptr<cPicture24> Page::EmptyBuffer() const {
  return std::make_shared<cPicture24>(Contracts(), nullptr, *m_kernels);
}

std::shared_ptr<cPicture24> Page::FilledBuffer() const {
  auto buffer = EmptyBuffer();
  buffer->CopyFromPicture(m_picture);
  buffer->Flip();  // the first operation fetches the pixels
  buffer->Flip();
  return buffer;
}

void Page::Memcpy() const {
  std::memcpy(m_copyTarget->Data(), m_copySource->Data(), m_copySource->Size());
}

PictureRef PictureOfPage(Platform& platform, int dotsPerInch) {
  const TestPageSize size = EvenSizeOfPage(dotsPerInch);
  DibSection section = DibSection::Create(platform.bitmaps, size.width, size.height);
  DrawPage(dotsPerInch, section.Bits(), static_cast<std::size_t>(section.Stride()));
  PictureRef picture = platform.pictures.OleCreatePictureIndirect(section.Bitmap());
  if (!picture) throw std::runtime_error("no memory for the page");
  static_cast<void>(section.Owner().release());
  return picture;
}

}  // namespace quillet::bench
