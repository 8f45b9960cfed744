#include "platform/portable/icon_reader.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <tuple>
#include <utility>

#include "base/runtime_error.h"
#include "platform/portable/bitmap_convert.h"
#include "platform/portable/bmp_reader.h"
#include "platform/portable/little_endian.h"

namespace quillet {
namespace {

constexpr std::size_t kDirectoryHeaderSize = 6;
constexpr std::size_t kDirectoryEntrySize = 16;
constexpr std::uint16_t kIcons = 1;
constexpr std::uint16_t kCursors = 2;

[[noreturn]] void Refuse(const char* reason) {
  throw RunTimeError(ErrorNumber::InvalidPicture, reason);
}

struct Candidate {
  DibLayout layout;
  int hotSpotX = 0;
  int hotSpotY = 0;
};

// The image's layout, with the height of the colours alone: the header counts the mask too.
DibLayout ReadImageLayout(ByteSource& source, std::uint64_t offset) {
  DibLayout layout = ReadDibLayout(source, offset, std::nullopt);
  Dib::Format& format = layout.format;
  if (format.topDown || format.height % 2 != 0) Refuse("an icon of odd height");
  format.height /= 2;
  // The mask's place follows from the size of the colours, which only plain rows tell.
  if (layout.compression != DibCompression::None &&
      layout.compression != DibCompression::BitFields) {
    Refuse("an icon of compressed rows");
  }
  return layout;
}

bool IsPng(ByteSource& source, std::uint64_t offset) {
  constexpr std::array<Byte, 4> kSignature{0x89, 'P', 'N', 'G'};
  std::array<Byte, 4> start{};
  return source.Read(offset, start) == start.size() && start == kSignature;
}

Candidate FindBest(ByteSource& source) {
  std::array<Byte, kDirectoryHeaderSize> header{};
  source.Read(0, header);
  const bool cursors = LoadWord(&header[2]) == kCursors;
  const int count = LoadWord(&header[4]);

  std::optional<Candidate> best;
  const auto rank = [](const Dib::Format& format) {
    return std::tuple(std::int64_t{format.width} * format.height, format.depth);
  };
  for (int i = 0; i < count; ++i) {
    std::array<Byte, kDirectoryEntrySize> entry{};
    const std::uint64_t at =
        kDirectoryHeaderSize + kDirectoryEntrySize * static_cast<std::uint64_t>(i);
    if (source.Read(at, entry) != entry.size()) Refuse("the file is cut short");
    const std::uint32_t offset = LoadDword(&entry[12]);
    if (IsPng(source, offset)) continue;
    Candidate candidate{ReadImageLayout(source, offset)};
    if (cursors) {
      candidate.hotSpotX = LoadWord(&entry[4]);
      candidate.hotSpotY = LoadWord(&entry[6]);
    }
    if (!best || rank(candidate.layout.format) > rank(best->layout.format)) {
      best = std::move(candidate);
    }
  }
  if (!best) Refuse("no image but PNG ones in the icon");
  return std::move(*best);
}

// The fourth bytes, where any of them says something.
bool TakeOpacity(const Dib& colors, IconImage& icon) {
  if (colors.Depth() != 32) return false;
  Byte any = 0;
  Byte* target = icon.bgra.data();
  for (Long y = 0; y < colors.Height(); ++y) {
    const Byte* row = colors.Row(y);
    for (Long x = 0; x < colors.Width(); ++x, row += 4, target += 4) {
      target[3] = row[3];
      any |= row[3];
    }
  }
  return any != 0;
}

void TakeMask(const Dib& mask, IconImage& icon) {
  Byte* target = icon.bgra.data();
  for (Long y = 0; y < mask.Height(); ++y) {
    const Byte* const row = mask.Row(y);
    for (Long x = 0; x < mask.Width(); ++x, target += 4) {
      const bool transparent = (row[x / 8] >> (7 - x % 8) & 1) != 0;
      target[3] = transparent ? 0 : 255;
    }
  }
}

IconImage Decode(ByteSource& source, const Candidate& candidate) {
  const DibLayout& layout = candidate.layout;
  const Dib colors = ReadDibPixels(source, layout, layout.colorsEnd);
  const Long width = colors.Width();
  const std::size_t rowPixels = static_cast<std::size_t>(width);

  IconImage icon{.width = width,
                 .height = colors.Height(),
                 .hotSpotX = candidate.hotSpotX,
                 .hotSpotY = candidate.hotSpotY,
                 .bgra = {}};
  icon.bgra.resize(rowPixels * static_cast<std::size_t>(colors.Height()) * 4);
  const RowConverter reader(colors.GetFormat());
  std::vector<Byte> row(rowPixels * 3);
  Byte* target = icon.bgra.data();
  for (Long y = 0; y < colors.Height(); ++y) {
    reader.To24(colors.Row(y), 0, width, row.data());
    for (std::size_t x = 0; x < rowPixels; ++x, target += 4) {
      std::copy_n(&row[x * 3], 3, target);
    }
  }
  if (TakeOpacity(colors, icon)) return icon;

  DibLayout mask;
  mask.format = {.width = width, .height = colors.Height(), .depth = 1, .topDown = false};
  const std::uint64_t colorBytes =
      static_cast<std::uint64_t>(colors.Stride()) * static_cast<std::uint64_t>(colors.Height());
  TakeMask(ReadDibPixels(source, mask, layout.colorsEnd + colorBytes), icon);
  return icon;
}

}  // namespace

bool LooksLikeIcon(ByteSource& source) {
  std::array<Byte, kDirectoryHeaderSize> header{};
  if (source.Read(0, header) != header.size()) return false;
  const std::uint16_t type = LoadWord(&header[2]);
  return LoadWord(&header[0]) == 0 && (type == kIcons || type == kCursors) &&
         LoadWord(&header[4]) != 0;
}

IconImage ReadIcon(ByteSource& source) {
  if (!LooksLikeIcon(source)) Refuse("no icon file");
  try {
    return Decode(source, FindBest(source));
  } catch (const std::bad_alloc&) {
    throw RunTimeError(ErrorNumber::OutOfMemory);
  }
}

}  // namespace quillet
