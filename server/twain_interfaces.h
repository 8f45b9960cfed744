#pragma once

#include "platform/win32/sdk.h"

// The interfaces of the type library, as the interface compiler writes them for C++.
#include "quillet_idl.h"

namespace quillet {

// GUIDs of the type library (quillet.idl).
inline constexpr GUID kLibraryId{
    0xC027A250, 0x509B, 0x48BB, {0xA9, 0x8E, 0x2C, 0x3B, 0x27, 0x90, 0x5E, 0x82}};
inline constexpr GUID kControlClass{
    0x0D034ABE, 0x7E78, 0x4411, {0xB2, 0x8B, 0xD9, 0xB4, 0x6A, 0x7C, 0xE9, 0xBF}};
inline constexpr GUID kTwainInterface{
    0x142C0A60, 0x34EF, 0x41E4, {0xA5, 0x08, 0x38, 0x8C, 0xA6, 0x7E, 0x6A, 0x28}};
inline constexpr GUID kEventInterface{
    0x3091C391, 0xAF54, 0x4270, {0x91, 0x09, 0x4E, 0x4F, 0x09, 0x1F, 0xA5, 0x93}};
inline constexpr WORD kLibraryMajor = 2;
inline constexpr WORD kLibraryMinor = 0;

// How the control wants to be treated by its container (OLEMISC).
inline constexpr DWORD kMiscStatus = OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE |
                                     OLEMISC_INSIDEOUT | OLEMISC_ACTIVATEWHENVISIBLE |
                                     OLEMISC_SETCLIENTSITEFIRST;

}  // namespace quillet
