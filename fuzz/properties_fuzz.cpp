// Feeds arbitrary text to the reader of property files; what it accepts must survive being written.
// scripts/fuzz builds and runs it.
#include <cstddef>
#include <cstdlib>
#include <stdexcept>

#include "embed/property_text.h"

extern "C" int LLVMFuzzerTestOneInput(const quillet::Byte* data, std::size_t size) {
  std::string written;
  try {
    written = quillet::FormatProperties(
        quillet::ParseProperties({reinterpret_cast<const char*>(data), size}));
  } catch (const std::runtime_error&) {
    return 0;  // how bad input is told
  }
  if (quillet::FormatProperties(quillet::ParseProperties(written)) != written) std::abort();
  return 0;
}
