#pragma once

#include "platform/portable/byte_source.h"
#include "platform/portable/dib.h"
#include "platform/portable/replacing_file.h"

namespace quillet {

// Grey files give 8 bits, all others 24. Resolution is kept, the orientation that a camera noted is
// not applied. A file that ends before its pixels do is refused; one with damage inside gives what
// can be read. CodecError; RunTimeError 75 when the source cannot be read.
Dib ReadJpeg(ByteSource& source);

// Grey when the palette is, else colour with the colours at half the resolution. The quality is
// brought to 1..100. Errors as of ReplacingFile, CodecError for sizes that the format cannot hold.
void WriteJpeg(const Dib& dib, int quality, ReplacingFile& file);

}  // namespace quillet
