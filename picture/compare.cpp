#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#include "base/runtime_error.h"
#include "picture/cPicture24.h"
#include "picture/source_context.h"

namespace quillet {
namespace {

// Small enough for the rows of two pictures to stay in the second-level cache until they are
// compared.
constexpr std::ptrdiff_t kStripBytes = 128 * 1024;

}  // namespace

// Rows of a buffer's image as 24-bit pixels: its own array where it holds one; of a picture nobody
// has read a strip at a time, so that a difference further up spares reading the rest. The content
// must not be empty and must stay while this lives.
class cPicture24::RowReader {
 public:
  RowReader(BitmapServices& services, const Content& content, Long width, Long height,
            Long stripRows)
      : m_services(services), m_held(std::get_if<DibSection>(&content)) {
    if (m_held) return;
    m_from.emplace(services, BitmapOf(content), width, height);
    m_strip.emplace(DibSection::Create(services, width, stripRows));
    m_to.emplace(services);
    m_target.emplace(services, m_to->get(), m_strip->Bitmap());
    if (!*m_target) throw RunTimeError(ErrorNumber::OutOfMemory);
  }

  // At most stripRows of them; they stay until the next call.
  const Byte* Rows(Long first, Long count) {
    if (m_held) return m_held->Bits() + first * m_held->Stride();
    if (!m_services.BitBlt(m_to->get(), m_strip->Width(), count, m_from->get(), 0, first))
      throw RunTimeError(ErrorNumber::OutOfMemory);
    return m_strip->Bits();
  }

 private:
  BitmapServices& m_services;
  const DibSection* m_held;
  std::optional<SourceContext> m_from;
  std::optional<DibSection> m_strip;
  std::optional<UniqueDC> m_to;
  std::optional<SelectGuard> m_target;
};

bool cPicture24::Compare(const ObjectRef& other) {
  const auto picture = std::dynamic_pointer_cast<Picture>(other);
  if (!picture) return false;
  cPicture24 buffer(m_platform);
  buffer.CopyFromPicture(picture);
  return Compare(buffer);
}

bool cPicture24::Compare(const cPicture24& other) {
  if (m_width < 1 || m_width != other.m_width || m_height != other.m_height) return false;
  // One bitmap has the same pixels as itself.
  if (BitmapOf(m_content) == BitmapOf(other.m_content)) return true;
  const std::ptrdiff_t stride = 3 * std::ptrdiff_t{m_width} + RowAlignment(m_width);
  const Long stripRows =
      static_cast<Long>(std::clamp<std::ptrdiff_t>(kStripBytes / stride, 1, m_height));
  RowReader ours(m_platform.bitmaps, m_content, m_width, m_height, stripRows);
  RowReader theirs(m_platform.bitmaps, other.m_content, m_width, m_height, stripRows);
  for (Long y = 0; y < m_height; y += stripRows) {
    const Long rows = std::min(stripRows, m_height - y);
    const auto bytes = static_cast<std::size_t>(stride * rows);
    if (std::memcmp(ours.Rows(y, rows), theirs.Rows(y, rows), bytes) != 0) return false;
  }
  return true;
}

}  // namespace quillet
