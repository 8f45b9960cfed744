#pragma once

#include <cstdint>

#include "platform/portable/byte_source.h"
#include "platform/portable/dib.h"
#include "platform/portable/replacing_file.h"
#include "platform/portable/tiff_file.h"

namespace quillet {

// Whether the first page can be decoded as far as its tags tell; CodecError where not.
void CheckTiff(ByteSource& source);

// The first page. Grey and palette pages of 1, 4 and 8 bits keep their depth, of other depths they
// give 8; all others give 24. What is not opaque lies over the background. Resolution is kept, the
// orientation is not applied. CodecError.
Dib ReadTiff(ByteSource& source, PaletteColor background);
// The page whose directory starts there.
Dib ReadTiffPage(ByteSource& source, std::uint64_t directory, PaletteColor background);

// Writes the picture as a page of the open file: black and white as Group 4, all else as LZW, with
// a predictor where it pays. CodecError Win32Error when it cannot be written.
void WriteTiffPage(TIFF* tiff, const Dib& dib);
// As the only page. Errors also as of ReplacingFile.
void WriteTiff(const Dib& dib, ReplacingFile& file);

}  // namespace quillet
