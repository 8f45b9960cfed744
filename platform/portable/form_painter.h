#pragma once

#include "platform/contracts/modal_forms.h"
#include "platform/portable/raster.h"

namespace quillet {

// A form with title bar and frame in the classic look, at 96 dots to the inch.
Raster PaintForm(const Form& form);

}  // namespace quillet
