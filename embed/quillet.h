#pragma once

// Everything that a host of the control needs.
//
// A host makes a Stage (the platform, ready-made), opens a window on it, and makes a Control on the
// window's surface. It hands the person's mouse and keys to the window, shows what the window
// captures, and gives it its idle moments. A host with windows or services of its own implements
// the contracts (platform/contracts/) that it wants to stand in for: a Platform is a bundle of
// references, and each may be the host's.

#include "base/runtime_error.h"
#include "base/types.h"
#include "base/variant.h"
#include "control/dispatch.h"
#include "control/events.h"
#include "embed/control.h"
#include "embed/control_window.h"
#include "embed/stage.h"
#include "platform/contracts/platform.h"
#include "platform/contracts/property_bag.h"
#include "platform/contracts/site.h"
#include "platform/contracts/surface.h"
