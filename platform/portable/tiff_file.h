#pragma once

#include <tiffio.h>

#include <exception>
#include <memory>

#include "platform/portable/byte_source.h"

namespace quillet {

struct TiffCloser {
  void operator()(TIFF* tiff) const noexcept { TIFFClose(tiff); }
};
using UniqueTiff = std::unique_ptr<TIFF, TiffCloser>;

// Opens the source for libtiff, which reads its first directory; null when that fails. The source
// must outlive the result. Warnings and messages go nowhere; a block of memory is at most what a
// picture of 2^30 pixels takes.
UniqueTiff OpenTiff(ByteSource& source);

// Opens a file for libtiff: "w" for a new file, "a" to add pages. The descriptor stays the
// caller's.
UniqueTiff OpenTiff(int descriptor, const char* mode);

}  // namespace quillet
