#pragma once

#include "platform/portable/dib.h"
#include "platform/portable/replacing_file.h"

namespace quillet {

// A BMP file at the picture's depth, with its palette and resolution. Errors as of ReplacingFile;
// CodecError for more bytes than the format can say.
void WriteBmp(const Dib& dib, ReplacingFile& file);

}  // namespace quillet
