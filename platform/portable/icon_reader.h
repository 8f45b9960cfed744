#pragma once

#include "platform/portable/byte_source.h"
#include "platform/portable/icon_image.h"

namespace quillet {

// Whether the source starts like an ICO or CUR file.
bool LooksLikeIcon(ByteSource& source);

// Reads the largest image of an ICO or CUR file, of equally large ones the deepest. Images stored
// as PNG are passed over. Run-time errors: 481 for content that holds no image we read, or is cut
// short; 7 when there is no memory.
IconImage ReadIcon(ByteSource& source);

}  // namespace quillet
