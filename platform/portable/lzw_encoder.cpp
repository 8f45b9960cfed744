#include "platform/portable/lzw_encoder.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace quillet {
namespace {

constexpr std::uint32_t kClear = 256;
constexpr std::uint32_t kEnd = 257;
constexpr std::uint32_t kFirstString = 258;
// With so many codes the table starts anew, while the next code still fits into 12 bits for readers
// that are one string ahead.
constexpr std::uint32_t kFull = 4094;
constexpr int kFewestBits = 9;
constexpr int kMostBits = 12;

// How many bytes lie between two looks at whether the strings still fit what comes.
constexpr std::uint64_t kCheckDistance = 10000;

class CodeWriter {
 public:
  explicit CodeWriter(Byte* target) : m_begin(target), m_end(target) {}

  void Put(std::uint32_t code, int bits) {
    m_bits = m_bits << bits | code;
    m_count += bits;
    while (m_count >= 8) {
      m_count -= 8;
      *m_end++ = static_cast<Byte>(m_bits >> m_count);
    }
  }
  std::uint64_t BitCount() const {
    return static_cast<std::uint64_t>(m_end - m_begin) * 8 + static_cast<std::uint64_t>(m_count);
  }
  // Fills the last byte with zeros.
  std::span<Byte> Finish() {
    if (m_count > 0) Put(0, 8 - m_count);
    return {m_begin, m_end};
  }

 private:
  Byte* m_begin;
  Byte* m_end;
  std::uint32_t m_bits = 0;
  int m_count = 0;  // of the lowest bits, not yet written
};

// How many zeros there are at the start, of the first `most` bytes.
std::size_t ZerosAt(const Byte* bytes, std::size_t most) {
  std::size_t count = 0;
  std::uint64_t eight = 0;
  for (; count + sizeof eight <= most; count += sizeof eight) {
    std::memcpy(&eight, bytes + count, sizeof eight);
    if (eight != 0) break;
  }
  while (count < most && bytes[count] == 0) ++count;
  return count;
}

}  // namespace

// The strings that have codes. One of two bytes and more is known by the code of all but the last
// byte, and that byte.
struct LzwEncoder::Strings {
  // Twice as many as there are strings, so that places are found soon: 32 KB.
  static constexpr int kPlaceBits = 13;
  // Byte, code of what is before it and code of the whole: 8, 12 and 12 bits.
  static constexpr std::uint32_t kNone = ~std::uint32_t{0};

  void Clear() {
    places.fill(kNone);
    zeros = 1;
  }

  // Where the string is: its code is the entry less the key. Else, the entry being kNone, where it
  // belongs.
  std::size_t PlaceOf(std::uint32_t key) const {
    constexpr std::uint32_t kGoldenRatio = 0x9E3779B1;
    std::size_t place = key * kGoldenRatio >> (32 - kPlaceBits);
    while (places[place] - key > 0xFFF && places[place] != kNone)
      place = (place + 1) % places.size();
    return place;
  }

  void Add(std::size_t place, std::uint32_t key, std::uint32_t code) {
    places[place] = key | code;
    // One zero more than the longest string of them.
    if (key == std::uint32_t{zeroCodes[zeros]} << kMostBits)
      zeroCodes[++zeros] = static_cast<std::uint16_t>(code);
  }

  std::array<std::uint32_t, std::size_t{1} << kPlaceBits> places;
  // The codes of strings of zeros by their length, which is 1 to `zeros`.
  std::array<std::uint16_t, kFull> zeroCodes{};
  std::size_t zeros = 1;
};

LzwEncoder::LzwEncoder() : m_strings(std::make_unique<Strings>()) {}

LzwEncoder::~LzwEncoder() = default;

std::span<Byte> LzwEncoder::Encode(std::span<const Byte> strip) {
  // A byte takes 12 bits at most; Clear and End come on top of thousands.
  m_output.resize(2 * strip.size() + 16);
  CodeWriter writer(m_output.data());
  Strings& strings = *m_strings;
  const std::size_t size = strip.size();

  int bits = kFewestBits;
  std::uint32_t next = kFirstString;
  std::uint64_t bitsBefore = 0;  // the last Clear
  std::size_t start = 0;         // of the bytes after it
  std::uint64_t check = kCheckDistance;
  std::uint64_t ratio = 0;
  const auto startAnew = [&](std::size_t at) {
    bitsBefore = writer.BitCount();
    writer.Put(kClear, bits);
    strings.Clear();
    bits = kFewestBits;
    next = kFirstString;
    start = at;
    ratio = 0;
  };
  // When a string has been coded, and the one that is a byte longer has got the next code. Whether
  // codes became longer or all strings were dropped.
  const auto count = [&](std::size_t at) {
    if (++next == kFull)
      startAnew(at);
    else if (next == 1u << bits)
      ++bits;
    else
      return false;
    return true;
  };

  startAnew(0);
  std::uint32_t known = strip[0];  // the code of the string so far
  for (std::size_t i = 1;;) {
    // Without looking up one zero after the other.
    if (known == 0) {
      const std::size_t more = ZerosAt(strip.data() + i, std::min(strings.zeros - 1, size - i));
      known = strings.zeroCodes[more + 1];
      i += more;
    }
    std::uint32_t key = 0;
    std::size_t place = 0;
    for (;; ++i) {
      if (i == size) {
        writer.Put(known, bits);
        count(size);
        writer.Put(kEnd, bits);
        return writer.Finish();
      }
      key = std::uint32_t{strip[i]} << 24 | known << kMostBits;
      place = strings.PlaceOf(key);
      if (strings.places[place] == Strings::kNone) break;
      known = strings.places[place] - key;
    }
    writer.Put(known, bits);
    strings.Add(place, key, next);
    known = strip[i++];
    if (count(i)) continue;
    // Strings that no longer fit are dropped. Counted as libtiff counts, so that files stay alike.
    const std::uint64_t bytes = i - start;
    if (bytes < check) continue;
    check = bytes + kCheckDistance;
    const std::uint64_t newRatio = (bytes << 8) / (writer.BitCount() - bitsBefore);
    if (newRatio > ratio)
      ratio = newRatio;
    else
      startAnew(i);
  }
}

}  // namespace quillet
