// Feeds arbitrary bytes to the PNG reader. scripts/fuzz builds and runs it.
#include <cstddef>
#include <new>

#include "platform/portable/codec_error.h"
#include "platform/portable/codec_png.h"

extern "C" int LLVMFuzzerTestOneInput(const quillet::Byte* data, std::size_t size) {
  quillet::MemorySource source({data, size});
  try {
    quillet::ReadPng(source, {});
  } catch (const quillet::CodecError&) {
    // How bad input is told.
  } catch (const std::bad_alloc&) {
  }
  return 0;
}
