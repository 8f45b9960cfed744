// Feeds arbitrary bytes to the GIF reader. Build with clang:
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -I. fuzz/gif_fuzz.cpp
//       base/{rounding,runtime_error}.cpp
//       platform/portable/{bitmap_convert,byte_source,codec_format,dib,file_errors,
//       pixel_memory,replacing_file,codec_gif,color_quantizer}.cpp -lgif
#include <cstddef>
#include <new>

#include "platform/portable/codec_error.h"
#include "platform/portable/codec_gif.h"

extern "C" int LLVMFuzzerTestOneInput(const quillet::Byte* data, std::size_t size) {
  quillet::MemorySource source({data, size});
  try {
    quillet::ReadGif(source, {});
  } catch (const quillet::CodecError&) {
    // How bad input is told.
  } catch (const std::bad_alloc&) {
  }
  return 0;
}
