#pragma once

#include "platform/portable/byte_source.h"
#include "platform/portable/dib.h"
#include "platform/portable/replacing_file.h"

namespace quillet {

// The first frame at its place on the canvas, over the background, where it is not transparent. At
// 1, 4 or 8 bits by the size of its palette; 24 where a full palette has no room for the
// background. CodecError; RunTimeError 75 when the source cannot be read.
Dib ReadGif(ByteSource& source, PaletteColor background);

// Up to 256 colours exactly, more with an adaptive palette and error diffusion. The format holds no
// resolution. Errors as of ReplacingFile; CodecError for more than 65535 pixels a side.
void WriteGif(const Dib& dib, ReplacingFile& file);

}  // namespace quillet
