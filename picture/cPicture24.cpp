#include "picture/cPicture24.h"

#include <cstdint>
#include <cstring>
#include <utility>

#include "base/rounding.h"
#include "base/runtime_error.h"
#include "picture/source_context.h"

namespace quillet {
namespace {

// Whether an interval of any position and length lies within 0 .. limit.
bool IsWithin(std::int64_t position, std::int64_t length, Long limit) {
  return position >= 0 && position + length <= limit;
}

}  // namespace

cPicture24::cPicture24(Platform& platform, ProgressHandler progress, const Kernels& kernels)
    : m_platform(platform), m_progress(std::move(progress)), m_kernels(kernels) {}

// The content must not be empty.
BitmapHandle cPicture24::BitmapOf(const Content& content) {
  if (const auto* section = std::get_if<DibSection>(&content)) return section->Bitmap();
  return std::get<Deferred>(content).picture->Handle();
}

void cPicture24::Clear() {
  Take();
}

// Moves the content out and leaves the buffer empty.
cPicture24::Content cPicture24::Take() {
  m_width = m_height = 0;
  return std::exchange(m_content, std::monostate());
}

void cPicture24::Restore(Content content, Long width, Long height) {
  m_content = std::move(content);
  m_width = width;
  m_height = height;
}

void cPicture24::Hold(DibSection section) {
  const Long width = section.Width();
  const Long height = section.Height();
  Restore(std::move(section), width, height);
}

void cPicture24::Defer(PictureRef picture, bool unseen, Long width, Long height) {
  Restore(Deferred{std::move(picture), unseen}, width, height);
}

void cPicture24::CopyFromPicture(const PictureRef& picture) {
  Clear();
  BITMAP record;
  if (!picture || !m_platform.bitmaps.GetObjectA(picture->Handle(), record)) return;
  if (record.bmWidth < 1 || record.bmHeight < 1 || record.bmBitsPixel < 1) return;
  Defer(picture, false, record.bmWidth, record.bmHeight);
}

PictureRef cPicture24::CopyToPicture() {
  if (m_width < 1) return nullptr;
  const Long width = m_width;
  const Long height = m_height;
  auto* deferred = std::get_if<Deferred>(&m_content);
  if (!deferred || !deferred->unseen) {
    DibSection section = TakePixels();
    Defer(CreatePicture(section.Owner()), true, width, height);
    deferred = &std::get<Deferred>(m_content);
  }
  deferred->unseen = false;
  return deferred->picture;
}

// The bitmap passes to the picture.
PictureRef cPicture24::CreatePicture(UniqueBitmap& bitmap) {
  PictureRef picture = m_platform.pictures.OleCreatePictureIndirect(bitmap.get());
  if (!picture) throw RunTimeError(ErrorNumber::OutOfMemory);
  static_cast<void>(bitmap.release());
  return picture;
}

// The one place where deferred pixels are fetched. The buffer must not be empty and is so
// afterwards.
DibSection cPicture24::TakePixels() {
  const Long width = m_width;
  const Long height = m_height;
  Content content = Take();
  if (auto* section = std::get_if<DibSection>(&content)) return std::move(*section);
  return DibSection::CopyOf(m_platform.bitmaps, BitmapOf(content), width, height);
}

std::vector<Byte> cPicture24::GetBits() {
  if (m_width < 1) return {};
  Hold(TakePixels());
  const auto& section = std::get<DibSection>(m_content);
  return std::vector<Byte>(section.Bits(), section.Bits() + section.ByteCount());
}

bool cPicture24::Crop(Long lLeft, Long lTop, Long lWidth, Long lHeight) {
  if (m_width < 1) return false;
  BitmapServices& services = m_platform.bitmaps;
  const Long width = m_width;
  const Long height = m_height;
  const bool inside = IsWithin(lLeft, lWidth, width) && IsWithin(lTop, lHeight, height);
  const Content content = Take();
  DibSection result = DibSection::Create(services, lWidth, lHeight);
  if (!inside) std::memset(result.Bits(), 0, result.ByteCount());
  {
    const SourceContext from(services, BitmapOf(content), width, height);
    const UniqueDC to(services);
    const SelectGuard target(services, to.get(), result.Bitmap());
    if (!target || !services.BitBlt(to.get(), lWidth, lHeight, from.get(), lLeft, lTop))
      throw RunTimeError(ErrorNumber::OutOfMemory);
  }
  Hold(std::move(result));
  return true;
}

void cPicture24::RaiseProgress(Long row, Long height) const {
  if (!m_progress) return;
  m_progress(height > 1 ? ToInteger(static_cast<double>(row) / (height - 1) * 100) : Integer{100});
}

}  // namespace quillet
