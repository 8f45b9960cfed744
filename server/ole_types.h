#pragma once

// Stands for the header that the interface compiler expects of ole_types.idl: the system's own.
#include "platform/win32/sdk.h"
