// Feeds arbitrary bytes to the BMP and icon readers. scripts/fuzz builds and runs it.
#include <cstddef>

#include "base/runtime_error.h"
#include "platform/portable/bmp_reader.h"
#include "platform/portable/icon_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const quillet::Byte* data, std::size_t size) {
  quillet::MemorySource source({data, size});
  try {
    if (quillet::LooksLikeIcon(source)) {
      quillet::ReadIcon(source);
    } else {
      quillet::ReadBmp(source);
    }
  } catch (const quillet::RunTimeError&) {
    // How bad input is told.
  }
  return 0;
}
