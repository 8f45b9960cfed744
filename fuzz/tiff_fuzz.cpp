// Feeds arbitrary bytes to the TIFF reader. Build with clang:
//   clang++ -std=c++20 -g -O1 -fsanitize=fuzzer,address,undefined -I. fuzz/tiff_fuzz.cpp
//       base/{rounding,runtime_error}.cpp
//       platform/portable/{bitmap_convert,byte_source,codec_format,dib,file_errors,
//       pixel_memory,replacing_file,codec_tiff_reader,codec_tiff_writer,tiff_file}.cpp -ltiff
#include <cstddef>
#include <new>

#include "platform/portable/codec_error.h"
#include "platform/portable/codec_tiff.h"

extern "C" int LLVMFuzzerTestOneInput(const quillet::Byte* data, std::size_t size) {
  quillet::MemorySource source({data, size});
  try {
    quillet::ReadTiff(source, {});
  } catch (const quillet::CodecError&) {
    // How bad input is told.
  } catch (const std::bad_alloc&) {
  }
  return 0;
}
