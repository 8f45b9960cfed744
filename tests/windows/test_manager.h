#pragma once

#include "platform/win32/sdk.h"
#include "twain/protocol.h"

namespace quillet {

using ManagerEntry = TW_UINT16(WINAPI*)(TW_IDENTITY* pOrigin, TW_IDENTITY* pDest, TW_UINT32 group,
                                        TW_UINT16 argumentType, TW_UINT16 message, void* pData);

}  // namespace quillet
