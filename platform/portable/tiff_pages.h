#pragma once

#include <cstdint>
#include <unordered_set>
#include <vector>

#include "platform/portable/byte_source.h"
#include "platform/portable/replacing_file.h"

namespace quillet {

// Copies the pages of a TIFF file, in either byte order, 32- or 64-bit, into a new file of the same
// kind: the encoded strips or tiles as they are, every tag, subordinate directories. Nothing is
// decoded but a page that refers to its data from inside them.
//
// A hostile file can neither loop nor grow: directories are followed once, no more is copied than
// twice the file's size, and no more decoded than 256 pages of 2^30 pixels together.
class TiffPages {
 public:
  // CodecError for what is no TIFF file, or one whose chain of pages loops or leaves the file.
  explicit TiffPages(ByteSource& source);

  // Writes them to the file, which is empty. CodecError, also ValueOverflow for more than 4 GB in a
  // 32-bit file; errors of ReplacingFile.
  void CopyTo(ReplacingFile& file);

 private:
  struct Entry {
    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint64_t count = 0;
    std::vector<Byte> value;  // in the file's byte order
  };

  std::uint64_t Load(const Byte* bytes, int size) const noexcept;
  void Store(std::uint64_t value, int size, std::vector<Byte>& bytes) const;
  std::vector<Byte> ReadBytes(std::uint64_t offset, std::uint64_t size);
  void Spend(std::uint64_t bytes);

  std::uint64_t ReadDirectory(std::uint64_t offset, std::vector<Entry>& entries);
  static Entry* Find(std::vector<Entry>& entries, std::uint16_t tag);
  std::vector<std::uint64_t> Numbers(const Entry& entry) const;
  void SetOffsets(Entry& entry, const std::vector<std::uint64_t>& offsets) const;

  static bool CanCopy(std::vector<Entry>& entries);
  // The new offset of the directory's copy.
  std::uint64_t CopyDirectory(std::vector<Entry> entries, int level);
  void CopyBlocks(Entry& offsets, const Entry& sizes);
  void CopySubdirectories(Entry& entry, int level);
  std::uint64_t WriteDirectory(const std::vector<Entry>& entries);
  std::uint64_t CopyRange(std::uint64_t offset, std::uint64_t size);
  void DecodePage(std::uint64_t directory);

  void Append(const Byte* bytes, std::size_t size);
  void Align();
  void Patch(std::uint64_t position, const std::vector<Byte>& bytes);
  void Flush();
  // Where the link to the next page of the written file is.
  std::uint64_t LastLink();

  ByteSource& m_source;
  bool m_bigEndian = false;
  bool m_is64 = false;
  std::vector<std::uint64_t> m_pages;
  std::unordered_set<std::uint64_t> m_seen;
  std::uint64_t m_budget;
  int m_decodedPages = 0;
  std::int64_t m_decodedPixels = 0;

  // What was read ahead.
  std::vector<Byte> m_block;
  std::uint64_t m_blockStart = 0;
  std::uint64_t m_readAhead = 0;

  ReplacingFile* m_file = nullptr;
  std::vector<Byte> m_buffer;      // not yet written
  std::uint64_t m_written = 0;     // bytes in the file
  std::uint64_t m_linkOfNext = 0;  // of the directory written last
};

}  // namespace quillet
