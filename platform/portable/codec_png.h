#pragma once

#include "platform/portable/byte_source.h"
#include "platform/portable/dib.h"
#include "platform/portable/replacing_file.h"

namespace quillet {

// Grey and palette files keep a depth of 1, 4 or 8 bits (2 bits give 8, 16 give 8), all others give
// 24. What is not opaque lies over the background. Resolution is kept. CodecError; RunTimeError 75
// when the source cannot be read.
Dib ReadPng(ByteSource& source, PaletteColor background);

// At 1, 4 or 8 bits where the picture has them, else 24. Errors as of ReplacingFile, CodecError.
void WritePng(const Dib& dib, ReplacingFile& file);

}  // namespace quillet
