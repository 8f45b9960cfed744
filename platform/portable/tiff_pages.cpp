#include "platform/portable/tiff_pages.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/portable/codec_error.h"
#include "platform/portable/codec_tiff.h"
#include "platform/portable/file_errors.h"

namespace quillet {
namespace {

constexpr std::size_t kMostPages = 65535;
constexpr std::uint64_t kBufferSize = std::uint64_t{256} << 10;
constexpr std::uint64_t kSmallRead = std::uint64_t{4} << 10;
constexpr int kDeepest = 4;

constexpr std::uint16_t kLong = 4;
constexpr std::uint16_t kLong8 = 16;

// Bytes of a value of that type; 0 for types unknown.
int SizeOfType(std::uint16_t type) {
  switch (type) {
    case 1:
    case 2:
    case 6:
    case 7:
      return 1;
    case 3:
    case 8:
      return 2;
    case 4:
    case 9:
    case 11:
    case 13:
      return 4;
    case 5:
    case 10:
    case 12:
    case 16:
    case 17:
    case 18:
      return 8;
    default:
      return 0;
  }
}

bool IsUnsigned(std::uint16_t type) {
  return type == 3 || type == kLong || type == 13 || type == kLong8 || type == 18;
}

bool IsSubdirectory(std::uint16_t tag) {
  constexpr std::uint16_t kInteroperability = 40965;
  return tag == TIFFTAG_SUBIFD || tag == TIFFTAG_EXIFIFD || tag == TIFFTAG_GPSIFD ||
         tag == kInteroperability;
}

}  // namespace

TiffPages::TiffPages(ByteSource& source) : m_source(source), m_budget(source.Size() * 2) {
  Byte header[16]{};
  if (source.Read(0, header) < 8) RefuseImage("the file is cut short");
  m_bigEndian = header[0] == 'M';
  if (header[0] != header[1] || (header[0] != 'M' && header[0] != 'I')) RefuseImage("no TIFF file");
  const std::uint64_t version = Load(header + 2, 2);
  m_is64 = version == 43;
  if (version != 42 && !(m_is64 && Load(header + 4, 2) == 8)) RefuseImage("no TIFF file");

  const std::uint64_t countSize = m_is64 ? 8 : 2;
  const std::uint64_t entrySize = m_is64 ? 20 : 12;
  std::uint64_t next = Load(header + (m_is64 ? 8 : 4), m_is64 ? 8 : 4);
  while (next != 0) {
    if (!m_seen.insert(next).second) RefuseImage("the pages loop");
    if (m_pages.size() == kMostPages) RefuseImage("too many pages");
    m_pages.push_back(next);
    const std::vector<Byte> count = ReadBytes(next, countSize);
    const std::uint64_t entries = Load(count.data(), static_cast<int>(countSize));
    if (entries > std::numeric_limits<std::uint16_t>::max()) RefuseImage("too many tags");
    const int linkSize = m_is64 ? 8 : 4;
    const std::vector<Byte> link =
        ReadBytes(next + countSize + entries * entrySize, static_cast<std::uint64_t>(linkSize));
    next = Load(link.data(), linkSize);
  }
  if (m_pages.empty()) RefuseImage("no page");
}

void TiffPages::CopyTo(ReplacingFile& file) {
  m_file = &file;
  std::vector<Byte> header{Byte(m_bigEndian ? 'M' : 'I'), Byte(m_bigEndian ? 'M' : 'I')};
  Store(m_is64 ? 43 : 42, 2, header);
  if (m_is64) Store(8, 4, header);
  if (m_is64 && m_bigEndian) std::copy_n("\0\10\0", 4, header.begin() + 4);
  m_linkOfNext = header.size();
  Store(0, m_is64 ? 8 : 4, header);
  Append(header.data(), header.size());

  for (const std::uint64_t page : m_pages) {
    std::vector<Entry> entries;
    ReadDirectory(page, entries);
    if (!CanCopy(entries)) {
      DecodePage(page);
      continue;
    }
    const std::uint64_t link = m_linkOfNext;
    const std::uint64_t directory = CopyDirectory(std::move(entries), 0);
    std::vector<Byte> bytes;
    Store(directory, m_is64 ? 8 : 4, bytes);
    Patch(link, bytes);
  }
  Flush();
}

std::uint64_t TiffPages::Load(const Byte* bytes, int size) const noexcept {
  std::uint64_t value = 0;
  for (int i = 0; i < size; ++i) value = value << 8 | bytes[m_bigEndian ? i : size - 1 - i];
  return value;
}

void TiffPages::Store(std::uint64_t value, int size, std::vector<Byte>& bytes) const {
  if (size == 4 && value > std::numeric_limits<std::uint32_t>::max()) {
    throw CodecError(CodecStatus::ValueOverflow, "more than 4 GB");
  }
  for (int i = 0; i < size; ++i) {
    bytes.push_back(static_cast<Byte>(value >> 8 * (m_bigEndian ? size - 1 - i : i)));
  }
}

std::vector<Byte> TiffPages::ReadBytes(std::uint64_t offset, std::uint64_t size) {
  if (offset > m_source.Size() || size > m_source.Size() - offset) {
    RefuseImage("the file is cut short");
  }
  std::vector<Byte> bytes(static_cast<std::size_t>(size));
  if (m_source.Read(offset, bytes) != bytes.size()) RefuseImage("the file is cut short");
  return bytes;
}

void TiffPages::Spend(std::uint64_t bytes) {
  if (bytes > m_budget) RefuseImage("more data than the file holds");
  m_budget -= bytes;
}

std::uint64_t TiffPages::ReadDirectory(std::uint64_t offset, std::vector<Entry>& entries) {
  const int countSize = m_is64 ? 8 : 2;
  const int wordSize = m_is64 ? 8 : 4;
  const std::size_t entrySize = m_is64 ? 20 : 12;
  const std::uint64_t count =
      Load(ReadBytes(offset, static_cast<std::uint64_t>(countSize)).data(), countSize);
  if (count > std::numeric_limits<std::uint16_t>::max()) RefuseImage("too many tags");
  Spend(count * entrySize);
  const std::vector<Byte> table =
      ReadBytes(offset + static_cast<std::uint64_t>(countSize), count * entrySize);
  for (std::size_t at = 0; at < table.size(); at += entrySize) {
    Entry entry;
    entry.tag = static_cast<std::uint16_t>(Load(&table[at], 2));
    entry.type = static_cast<std::uint16_t>(Load(&table[at + 2], 2));
    entry.count = Load(&table[at + 4], wordSize);
    const int size = SizeOfType(entry.type);
    if (size == 0) continue;
    if (entry.count > m_source.Size()) RefuseImage("a tag leaves the file");
    const std::uint64_t bytes = entry.count * static_cast<std::uint64_t>(size);
    const Byte* const field = &table[at + 4 + static_cast<std::size_t>(wordSize)];
    if (bytes <= static_cast<std::uint64_t>(wordSize)) {
      entry.value.assign(field, field + bytes);
    } else {
      Spend(bytes);
      entry.value = ReadBytes(Load(field, wordSize), bytes);
    }
    entries.push_back(std::move(entry));
  }
  return count;
}

TiffPages::Entry* TiffPages::Find(std::vector<Entry>& entries, std::uint16_t tag) {
  const auto found = std::ranges::find(entries, tag, &Entry::tag);
  return found == entries.end() ? nullptr : &*found;
}

std::vector<std::uint64_t> TiffPages::Numbers(const Entry& entry) const {
  const int size = SizeOfType(entry.type);
  std::vector<std::uint64_t> numbers;
  for (std::size_t at = 0; at < entry.value.size(); at += static_cast<std::size_t>(size)) {
    numbers.push_back(Load(&entry.value[at], size));
  }
  return numbers;
}

void TiffPages::SetOffsets(Entry& entry, const std::vector<std::uint64_t>& offsets) const {
  entry.type = m_is64 ? kLong8 : kLong;
  entry.value.clear();
  for (const std::uint64_t offset : offsets) Store(offset, m_is64 ? 8 : 4, entry.value);
}

// Whether all data is reached through blocks whose number and sizes are told.
bool TiffPages::CanCopy(std::vector<Entry>& entries) {
  if (Find(entries, TIFFTAG_JPEGIFOFFSET)) return false;
  for (const auto& [offsetTag, sizeTag] :
       {std::pair{TIFFTAG_STRIPOFFSETS, TIFFTAG_STRIPBYTECOUNTS},
        std::pair{TIFFTAG_TILEOFFSETS, TIFFTAG_TILEBYTECOUNTS}}) {
    const Entry* const offsets = Find(entries, static_cast<std::uint16_t>(offsetTag));
    const Entry* const sizes = Find(entries, static_cast<std::uint16_t>(sizeTag));
    if (offsets && sizes && offsets->count == sizes->count && IsUnsigned(offsets->type) &&
        IsUnsigned(sizes->type)) {
      return true;
    }
  }
  return false;
}

std::uint64_t TiffPages::CopyDirectory(std::vector<Entry> entries, int level) {
  constexpr std::uint16_t kFreeOffsets = 288;
  constexpr std::uint16_t kFreeByteCounts = 289;
  std::erase_if(entries, [&](const Entry& entry) {
    return entry.tag == kFreeOffsets || entry.tag == kFreeByteCounts ||
           (IsSubdirectory(entry.tag) && (level == kDeepest || !IsUnsigned(entry.type)));
  });
  for (const auto& [offsetTag, sizeTag] :
       {std::pair{TIFFTAG_STRIPOFFSETS, TIFFTAG_STRIPBYTECOUNTS},
        std::pair{TIFFTAG_TILEOFFSETS, TIFFTAG_TILEBYTECOUNTS}}) {
    Entry* const offsets = Find(entries, static_cast<std::uint16_t>(offsetTag));
    const Entry* const sizes = Find(entries, static_cast<std::uint16_t>(sizeTag));
    if (!offsets || !sizes) continue;
    if (offsets->count != sizes->count || !IsUnsigned(offsets->type) || !IsUnsigned(sizes->type)) {
      RefuseImage("blocks without sizes");
    }
    CopyBlocks(*offsets, *sizes);
  }
  for (Entry& entry : entries) {
    if (IsSubdirectory(entry.tag)) CopySubdirectories(entry, level);
  }
  std::erase_if(entries,
                [](const Entry& entry) { return IsSubdirectory(entry.tag) && entry.count == 0; });
  return WriteDirectory(entries);
}

void TiffPages::CopyBlocks(Entry& offsets, const Entry& sizes) {
  std::vector<std::uint64_t> positions = Numbers(offsets);
  const std::vector<std::uint64_t> lengths = Numbers(sizes);
  for (std::size_t i = 0; i < positions.size(); ++i) {
    // A block of no bytes stands for one that was left out.
    if (lengths[i] != 0) positions[i] = CopyRange(positions[i], lengths[i]);
  }
  SetOffsets(offsets, positions);
}

// Each is followed once; what cannot be read, or was met before, is left out.
void TiffPages::CopySubdirectories(Entry& entry, int level) {
  std::vector<std::uint64_t> copies;
  for (const std::uint64_t offset : Numbers(entry)) {
    if (!m_seen.insert(offset).second) continue;
    std::vector<Entry> entries;
    ReadDirectory(offset, entries);
    if (Find(entries, TIFFTAG_JPEGIFOFFSET)) continue;
    copies.push_back(CopyDirectory(std::move(entries), level + 1));
  }
  entry.count = copies.size();
  SetOffsets(entry, copies);
}

std::uint64_t TiffPages::WriteDirectory(const std::vector<Entry>& entries) {
  const std::size_t wordSize = m_is64 ? 8 : 4;
  std::vector<Byte> table;
  Store(entries.size(), m_is64 ? 8 : 2, table);
  for (const Entry& entry : entries) {
    Store(entry.tag, 2, table);
    Store(entry.type, 2, table);
    Store(entry.count, static_cast<int>(wordSize), table);
    if (entry.value.size() <= wordSize) {
      table.insert(table.end(), entry.value.begin(), entry.value.end());
      table.insert(table.end(), wordSize - entry.value.size(), Byte{0});
    } else {
      Align();
      Store(m_written + m_buffer.size(), static_cast<int>(wordSize), table);
      Append(entry.value.data(), entry.value.size());
    }
  }
  Align();
  const std::uint64_t start = m_written + m_buffer.size();
  m_linkOfNext = start + table.size();
  Store(0, static_cast<int>(wordSize), table);
  Append(table.data(), table.size());
  return start;
}

std::uint64_t TiffPages::CopyRange(std::uint64_t offset, std::uint64_t size) {
  if (offset > m_source.Size() || size > m_source.Size() - offset) {
    RefuseImage("the file is cut short");
  }
  Spend(size);
  Align();
  const std::uint64_t start = m_written + m_buffer.size();
  while (size > 0) {
    const std::uint64_t end = m_blockStart + m_block.size();
    if (offset < m_blockStart || offset >= end) {
      // Blocks mostly follow each other: then ever more is read at once.
      m_readAhead = offset == end ? std::min(m_readAhead * 2, kBufferSize) : kSmallRead;
      const std::uint64_t wanted = std::min(std::max(m_readAhead, size), kBufferSize);
      m_block.resize(static_cast<std::size_t>(wanted));
      m_blockStart = offset;
      m_block.resize(m_source.Read(offset, m_block));
      if (m_block.empty()) RefuseImage("the file is cut short");
    }
    const std::size_t at = static_cast<std::size_t>(offset - m_blockStart);
    const std::size_t count =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_block.size() - at, size));
    Append(&m_block[at], count);
    offset += count;
    size -= count;
  }
  return start;
}

void TiffPages::DecodePage(std::uint64_t directory) {
  // The library finds the end of the written pages by walking through all of them, every time.
  constexpr int kMostDecoded = 256;
  constexpr std::int64_t kMostPixels = std::int64_t{1} << 30;
  if (++m_decodedPages > kMostDecoded) RefuseImage("too many pages that cannot be copied");
  const Dib dib = ReadTiffPage(m_source, directory, {});
  m_decodedPixels += std::int64_t{dib.Width()} * dib.Height();
  if (m_decodedPixels > kMostPixels) RefuseImage("too large pages that cannot be copied");
  Flush();
  {
    const bool first = m_linkOfNext < 16 && m_written <= 16;
    const char* const mode = !first   ? "a"
                             : m_is64 ? (m_bigEndian ? "wb8" : "wl8")
                                      : (m_bigEndian ? "wb" : "wl");
    const UniqueTiff tiff = OpenTiff(m_file->Descriptor(), mode);
    if (!tiff) throw CodecError(CodecStatus::Win32Error, "TIFF cannot be written");
    WriteTiffPage(tiff.get(), dib);
  }
  const off_t end = lseek(m_file->Descriptor(), 0, SEEK_END);
  if (end < 0) ThrowFileError("", errno);
  m_written = static_cast<std::uint64_t>(end);
  m_linkOfNext = LastLink();
}

std::uint64_t TiffPages::LastLink() {
  const int wordSize = m_is64 ? 8 : 4;
  const std::uint64_t countSize = m_is64 ? 8 : 2;
  const auto load = [&](std::uint64_t position, int size) {
    Byte bytes[8]{};
    if (pread(m_file->Descriptor(), bytes, static_cast<std::size_t>(size),
              static_cast<off_t>(position)) != size) {
      throw CodecError(CodecStatus::Win32Error);
    }
    return Load(bytes, size);
  };
  std::uint64_t link = m_is64 ? 8 : 4;
  for (std::size_t page = 0; page <= kMostPages; ++page) {
    const std::uint64_t directory = load(link, wordSize);
    if (directory == 0) break;
    const std::uint64_t count = load(directory, static_cast<int>(countSize));
    link = directory + countSize + count * (m_is64 ? 20 : 12);
  }
  return link;
}

void TiffPages::Append(const Byte* bytes, std::size_t size) {
  m_buffer.insert(m_buffer.end(), bytes, bytes + size);
  if (m_buffer.size() >= kBufferSize) Flush();
}

// Values and directories start at even offsets.
void TiffPages::Align() {
  constexpr Byte kZero = 0;
  if ((m_written + m_buffer.size()) % 2 != 0) Append(&kZero, 1);
}

void TiffPages::Patch(std::uint64_t position, const std::vector<Byte>& bytes) {
  if (position >= m_written) {
    std::ranges::copy(bytes, m_buffer.begin() + static_cast<std::ptrdiff_t>(position - m_written));
    return;
  }
  // A link may lie on both sides of what is written.
  Flush();
  if (pwrite(m_file->Descriptor(), bytes.data(), bytes.size(), static_cast<off_t>(position)) !=
      static_cast<ssize_t>(bytes.size())) {
    ThrowFileError("", errno);
  }
}

void TiffPages::Flush() {
  m_file->Write(m_buffer);
  m_written += m_buffer.size();
  m_buffer.clear();
}

}  // namespace quillet
