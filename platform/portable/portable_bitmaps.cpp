#include "platform/portable/portable_bitmaps.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <utility>

#include "platform/portable/transfer.h"

namespace quillet {
namespace {

constexpr std::uint32_t kUncompressed = 0;

// The format that a 40-byte header alone can describe. A palette it cannot hold is taken as even
// steps from black to white.
std::optional<Dib::Format> FormatOf(const BITMAPINFOHEADER& header) {
  const std::int64_t height = std::int64_t{header.biHeight};
  if (header.biSize != sizeof(BITMAPINFOHEADER) || header.biCompression != kUncompressed ||
      header.biWidth < 1 || height == 0 || height == std::numeric_limits<Long>::min()) {
    return std::nullopt;
  }
  Dib::Format format{.width = header.biWidth,
                     .height = static_cast<Long>(height < 0 ? -height : height),
                     .depth = header.biBitCount,
                     .topDown = height < 0,
                     .xPelsPerMeter = header.biXPelsPerMeter,
                     .yPelsPerMeter = header.biYPelsPerMeter};
  switch (format.depth) {
    case 1:
    case 4:
    case 8: {
      const int last = (1 << format.depth) - 1;
      for (int i = 0; i <= last; ++i) {
        const Byte gray = static_cast<Byte>(i * 255 / last);
        format.palette.push_back({gray, gray, gray});
      }
      break;
    }
    case 16:
      format.masks = kMasks16;
      break;
    case 24:
      break;
    case 32:
      format.masks = kMasks32;
      break;
    default:
      return std::nullopt;
  }
  return format;
}

// What a service answers when there is no memory for what it was asked.
template <typename Action>
auto OrWithoutMemory(decltype(std::declval<Action>()()) answer, Action&& action) noexcept {
  try {
    return action();
  } catch (const std::bad_alloc&) {
    return answer;
  }
}

}  // namespace

bool PortableBitmaps::GetObjectA(BitmapHandle bitmap, BITMAP& record) const {
  const Dib* const dib = FindBitmap(bitmap);
  if (!dib) return false;
  record = {.bmType = 0,
            .bmWidth = dib->Width(),
            .bmHeight = dib->Height(),
            .bmWidthBytes = static_cast<Long>(dib->Stride()),
            .bmPlanes = 1,
            .bmBitsPixel = static_cast<std::uint16_t>(dib->Depth())};
  return true;
}

BitmapHandle PortableBitmaps::CopyImage(BitmapHandle bitmap, Long width, Long height) {
  const Bitmap* const source = Find(bitmap);
  if (!source || width < 0 || height < 0) return BitmapHandle::None;
  const Dib& dib = source->dib;
  const bool ownSize = width == 0 && height == 0;
  if (width == 0) width = dib.Width();
  if (height == 0) height = dib.Height();
  return OrWithoutMemory(BitmapHandle::None, [&] {
    if (width != dib.Width() || height != dib.Height()) {
      return AddBitmap(Stretch(dib, width, height, m_instructions, m_reserve));
    }
    Dib copy = *CopyOf(bitmap);
    if (!ownSize) copy.ForgetResolution();  // as for every size asked for
    return AddBitmap(std::move(copy));
  });
}

DCHandle PortableBitmaps::CreateCompatibleDC() {
  return OrWithoutMemory(DCHandle::None, [&] {
    const DCHandle dc{NewHandle()};
    Context& context = m_contexts[dc];
    try {
      context.own = AddBitmap(
          Dib({.width = 1, .height = 1, .depth = 1, .palette = {{0, 0, 0}, {255, 255, 255}}}));
    } catch (...) {
      m_contexts.erase(dc);
      throw;
    }
    context.selected = context.own;
    Bitmap& own = m_bitmaps.at(context.own);
    own.dib.WritableBits()[0] = 0;
    own.ownedBy = own.selectedInto = dc;
    return dc;
  });
}

BitmapHandle PortableBitmaps::SelectObject(DCHandle dc, BitmapHandle bitmap) {
  Context* const context = Find(dc);
  Bitmap* const selection = Find(bitmap);
  if (!context || !selection || selection->released) return BitmapHandle::None;
  if (selection->ownedBy != DCHandle::None && selection->ownedBy != dc) return BitmapHandle::None;
  if (selection->selectedInto == dc) return bitmap;
  if (selection->selectedInto != DCHandle::None) return BitmapHandle::None;

  const BitmapHandle previous = std::exchange(context->selected, bitmap);
  selection->selectedInto = dc;
  Deselect(previous);
  return previous;
}

BitmapHandle PortableBitmaps::CreateDIBSection(DCHandle dc, const BITMAPINFOHEADER& header,
                                               void*& bits) {
  if (!Find(dc)) return BitmapHandle::None;
  return OrWithoutMemory(BitmapHandle::None, [&] {
    std::optional<Dib::Format> format = FormatOf(header);
    if (!format) return BitmapHandle::None;
    const BitmapHandle section = AddBitmap(Dib(std::move(*format), m_reserve));
    Bitmap& bitmap = m_bitmaps.at(section);
    bitmap.bitsExposed = true;
    bits = bitmap.dib.WritableBits();
    return section;
  });
}

int PortableBitmaps::SetDIBitsToDevice(DCHandle dc, Long width, Long height, const void* bits,
                                       const BITMAPINFOHEADER& header) {
  Bitmap* const target = Selected(dc);
  if (!target || target->inPicture || !bits || width < 1 || height < 1) return 0;
  return OrWithoutMemory(0, [&] {
    const std::optional<Dib::Format> format = FormatOf(header);
    if (!format) return 0;
    target->dib.MakeWritable();
    Dib& dib = target->dib;
    const std::ptrdiff_t stride =
        static_cast<std::ptrdiff_t>(DibStride(format->width, format->depth));
    const Byte* const block = static_cast<const Byte*>(bits);

    if (format->depth == 24 && dib.Depth() == 24 && format->width == dib.Width() &&
        format->height == dib.Height() && format->topDown == dib.GetFormat().topDown &&
        width >= dib.Width() && height >= dib.Height()) {
      std::memmove(dib.WritableBits(), block, static_cast<std::size_t>(stride * dib.Height()));
      ClearAlignment(dib.WritableBits(), dib.RowBytes(), stride, dib.Height());
      return static_cast<int>(dib.Height());
    }
    const Long scanLines = std::min(height, format->height);
    const PixelRows source = format->topDown
                                 ? PixelRows{block, stride, &*format}
                                 : PixelRows{block + (scanLines - 1) * stride, -stride, &*format};
    const Long rows = std::min(scanLines, dib.Height());
    TransferPixels(source, {}, dib, {}, std::min({width, format->width, dib.Width()}), rows);
    return static_cast<int>(rows);
  });
}

int PortableBitmaps::GetDIBits(DCHandle dc, BitmapHandle bitmap, Long rows, void* bits,
                               const BITMAPINFOHEADER& header) {
  const Dib* const dib = FindBitmap(bitmap);
  if (!Find(dc) || !dib || !bits || rows < 1) return 0;
  return OrWithoutMemory(0, [&] {
    const std::optional<Dib::Format> format = FormatOf(header);
    if (!format || format->depth != 24 || format->width != dib->Width()) return 0;
    const Long count = std::min({rows, format->height, dib->Height()});
    ReadRows24(*dib, count, format->topDown, static_cast<Byte*>(bits));
    return static_cast<int>(count);
  });
}

bool PortableBitmaps::BitBlt(DCHandle destination, Long width, Long height, DCHandle source, Long x,
                             Long y) {
  Bitmap* const target = Selected(destination);
  const Bitmap* const origin = Selected(source);
  if (!target || !origin || target->inPicture) return false;

  // The part of the destination that has source pixels, from (left, top) to (right, bottom).
  const auto clip = [](std::int64_t offset, std::int64_t size, std::int64_t available,
                       std::int64_t room) {
    const std::int64_t begin = std::max<std::int64_t>(0, -offset);
    const std::int64_t end = std::min({size, room, available - offset});
    return std::pair{begin, end};
  };
  const auto [left, right] = clip(x, width, origin->dib.Width(), target->dib.Width());
  const auto [top, bottom] = clip(y, height, origin->dib.Height(), target->dib.Height());
  if (left >= right || top >= bottom) return true;
  const PixelPoint to{static_cast<Long>(left), static_cast<Long>(top)};
  const PixelPoint from{static_cast<Long>(left + x), static_cast<Long>(top + y)};
  const Long columns = static_cast<Long>(right - left);
  const Long rows = static_cast<Long>(bottom - top);
  return OrWithoutMemory(false, [&] {
    target->dib.MakeWritable();
    const Dib& pixels = origin->dib;
    TransferPixels({pixels.Row(0), pixels.StrideDown(), &pixels.GetFormat()}, from, target->dib, to,
                   columns, rows);
    return true;
  });
}

bool PortableBitmaps::DeleteDC(DCHandle dc) {
  const Context* const context = Find(dc);
  if (!context) return false;
  Deselect(context->selected);
  m_bitmaps.erase(context->own);
  m_contexts.erase(dc);
  return true;
}

bool PortableBitmaps::DeleteObject(BitmapHandle bitmap) {
  const Bitmap* const entry = Find(bitmap);
  if (!entry || entry->inPicture || entry->ownedBy != DCHandle::None ||
      entry->selectedInto != DCHandle::None) {
    return false;
  }
  m_bitmaps.erase(bitmap);
  return true;
}

BitmapHandle PortableBitmaps::AddBitmap(Dib dib) {
  const BitmapHandle handle{NewHandle()};
  m_bitmaps.emplace(handle, Bitmap{.dib = std::move(dib)});
  return handle;
}

BitmapHandle PortableBitmaps::AddIcon(IconImage icon) {
  const BitmapHandle handle{NewHandle()};
  m_icons.emplace(handle, std::move(icon));
  return handle;
}

const IconImage* PortableBitmaps::FindIcon(BitmapHandle icon) const {
  const auto found = m_icons.find(icon);
  return found == m_icons.end() ? nullptr : &found->second;
}

const Dib* PortableBitmaps::FindBitmap(BitmapHandle bitmap) const {
  const auto found = m_bitmaps.find(bitmap);
  return found == m_bitmaps.end() ? nullptr : &found->second.dib;
}

std::optional<Dib> PortableBitmaps::CopyOf(BitmapHandle bitmap) const {
  const auto found = m_bitmaps.find(bitmap);
  if (found == m_bitmaps.end()) return std::nullopt;
  Dib copy = found->second.dib;
  if (found->second.bitsExposed && !found->second.inPicture) copy.MakeWritable();
  return copy;
}

bool PortableBitmaps::GiveToPicture(BitmapHandle bitmap) {
  Bitmap* const entry = Find(bitmap);
  if (!entry || entry->inPicture || entry->ownedBy != DCHandle::None) return false;
  entry->inPicture = true;
  return true;
}

void PortableBitmaps::ReleaseByPicture(BitmapHandle handle) {
  if (m_icons.erase(handle) == 1) return;
  Bitmap* const bitmap = Find(handle);
  if (!bitmap) return;
  if (bitmap->selectedInto == DCHandle::None) {
    m_bitmaps.erase(handle);
  } else {
    bitmap->released = true;
  }
}

int PortableBitmaps::BitmapCount() const {
  return static_cast<int>(m_bitmaps.size() - m_contexts.size());
}

// Odd, so that no window has the same.
std::uintptr_t PortableBitmaps::NewHandle() {
  const auto used = [&](std::uintptr_t value) {
    return m_bitmaps.contains(BitmapHandle{value}) || m_icons.contains(BitmapHandle{value}) ||
           m_contexts.contains(DCHandle{value});
  };
  std::uintptr_t handle;
  do {
    handle = m_next;
    m_next = m_next >= 0x7FFFFFFD ? 1 : m_next + 2;
  } while (used(handle));
  return handle;
}

PortableBitmaps::Bitmap* PortableBitmaps::Find(BitmapHandle bitmap) {
  const auto found = m_bitmaps.find(bitmap);
  return found == m_bitmaps.end() ? nullptr : &found->second;
}

PortableBitmaps::Context* PortableBitmaps::Find(DCHandle dc) {
  const auto found = m_contexts.find(dc);
  return found == m_contexts.end() ? nullptr : &found->second;
}

PortableBitmaps::Bitmap* PortableBitmaps::Selected(DCHandle dc) {
  const Context* const context = Find(dc);
  return context ? Find(context->selected) : nullptr;
}

void PortableBitmaps::Deselect(BitmapHandle bitmap) {
  Bitmap* const entry = Find(bitmap);
  entry->selectedInto = DCHandle::None;
  if (entry->released) m_bitmaps.erase(bitmap);
}

}  // namespace quillet
