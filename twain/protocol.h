#pragma once

// The part of the TWAIN 1.9 protocol that the control speaks, declared from its published layout.
//
// Structures are packed on 2-byte boundaries. Handles and pointers have the platform's own width;
// the sizes that the standard gives are those for 32-bit pointers.

#include <cstddef>
#include <cstdint>

#include "platform/contracts/handles.h"

namespace quillet {

using TW_INT16 = std::int16_t;
using TW_UINT16 = std::uint16_t;
using TW_INT32 = std::int32_t;
using TW_UINT32 = std::uint32_t;
using TW_BOOL = TW_UINT16;
// 32 characters of the ANSI code page and a terminator, padded to an even size.
using TW_STR32 = char[34];

// Data groups.
inline constexpr TW_UINT32 DG_CONTROL = 0x0001;
inline constexpr TW_UINT32 DG_IMAGE = 0x0002;

// Data argument types.
inline constexpr TW_UINT16 DAT_NULL = 0x0000;
inline constexpr TW_UINT16 DAT_CAPABILITY = 0x0001;
inline constexpr TW_UINT16 DAT_EVENT = 0x0002;
inline constexpr TW_UINT16 DAT_IDENTITY = 0x0003;
inline constexpr TW_UINT16 DAT_PARENT = 0x0004;
inline constexpr TW_UINT16 DAT_PENDINGXFERS = 0x0005;
inline constexpr TW_UINT16 DAT_STATUS = 0x0008;
inline constexpr TW_UINT16 DAT_USERINTERFACE = 0x0009;
inline constexpr TW_UINT16 DAT_IMAGELAYOUT = 0x0102;
inline constexpr TW_UINT16 DAT_IMAGENATIVEXFER = 0x0104;

// Messages. Their numbers repeat among data argument types.
inline constexpr TW_UINT16 MSG_NULL = 0x0000;
inline constexpr TW_UINT16 MSG_GET = 0x0001;
inline constexpr TW_UINT16 MSG_GETCURRENT = 0x0002;
inline constexpr TW_UINT16 MSG_GETDEFAULT = 0x0003;
inline constexpr TW_UINT16 MSG_GETFIRST = 0x0004;
inline constexpr TW_UINT16 MSG_GETNEXT = 0x0005;
inline constexpr TW_UINT16 MSG_SET = 0x0006;
inline constexpr TW_UINT16 MSG_RESET = 0x0007;
inline constexpr TW_UINT16 MSG_XFERREADY = 0x0101;
inline constexpr TW_UINT16 MSG_CLOSEDSREQ = 0x0102;
inline constexpr TW_UINT16 MSG_OPENDSM = 0x0301;
inline constexpr TW_UINT16 MSG_CLOSEDSM = 0x0302;
inline constexpr TW_UINT16 MSG_OPENDS = 0x0401;
inline constexpr TW_UINT16 MSG_CLOSEDS = 0x0402;
inline constexpr TW_UINT16 MSG_USERSELECT = 0x0403;
inline constexpr TW_UINT16 MSG_DISABLEDS = 0x0501;
inline constexpr TW_UINT16 MSG_ENABLEDS = 0x0502;
inline constexpr TW_UINT16 MSG_PROCESSEVENT = 0x0601;
inline constexpr TW_UINT16 MSG_ENDXFER = 0x0701;

// Return codes.
inline constexpr TW_UINT16 TWRC_SUCCESS = 0;
inline constexpr TW_UINT16 TWRC_FAILURE = 1;
inline constexpr TW_UINT16 TWRC_CHECKSTATUS = 2;
inline constexpr TW_UINT16 TWRC_CANCEL = 3;
inline constexpr TW_UINT16 TWRC_DSEVENT = 4;
inline constexpr TW_UINT16 TWRC_NOTDSEVENT = 5;
inline constexpr TW_UINT16 TWRC_XFERDONE = 6;
inline constexpr TW_UINT16 TWRC_ENDOFLIST = 7;

// Condition codes, answered to DAT_STATUS.
inline constexpr TW_UINT16 TWCC_SUCCESS = 0;
inline constexpr TW_UINT16 TWCC_BUMMER = 1;
inline constexpr TW_UINT16 TWCC_LOWMEMORY = 2;
inline constexpr TW_UINT16 TWCC_NODS = 3;
inline constexpr TW_UINT16 TWCC_MAXCONNECTIONS = 4;
inline constexpr TW_UINT16 TWCC_OPERATIONERROR = 5;
inline constexpr TW_UINT16 TWCC_BADPROTOCOL = 9;
inline constexpr TW_UINT16 TWCC_BADVALUE = 10;
inline constexpr TW_UINT16 TWCC_SEQERROR = 11;
inline constexpr TW_UINT16 TWCC_BADDEST = 12;
inline constexpr TW_UINT16 TWCC_CAPUNSUPPORTED = 13;
inline constexpr TW_UINT16 TWCC_CAPBADOPERATION = 14;

// Capabilities.
inline constexpr TW_UINT16 CAP_XFERCOUNT = 0x0001;
inline constexpr TW_UINT16 ICAP_PIXELTYPE = 0x0101;
inline constexpr TW_UINT16 ICAP_UNITS = 0x0102;
inline constexpr TW_UINT16 ICAP_XFERMECH = 0x0103;
inline constexpr TW_UINT16 CAP_SUPPORTEDCAPS = 0x1005;
inline constexpr TW_UINT16 CAP_INDICATORS = 0x100B;
inline constexpr TW_UINT16 CAP_UICONTROLLABLE = 0x100E;
inline constexpr TW_UINT16 ICAP_PHYSICALWIDTH = 0x1111;
inline constexpr TW_UINT16 ICAP_PHYSICALHEIGHT = 0x1112;
inline constexpr TW_UINT16 ICAP_XRESOLUTION = 0x1118;
inline constexpr TW_UINT16 ICAP_YRESOLUTION = 0x1119;
inline constexpr TW_UINT16 ICAP_BITDEPTH = 0x112B;

// Containers and item types.
inline constexpr TW_UINT16 TWON_ARRAY = 3;
inline constexpr TW_UINT16 TWON_ENUMERATION = 4;
inline constexpr TW_UINT16 TWON_ONEVALUE = 5;
inline constexpr TW_UINT16 TWON_RANGE = 6;
inline constexpr TW_UINT16 TWTY_INT16 = 1;
inline constexpr TW_UINT16 TWTY_UINT16 = 4;
inline constexpr TW_UINT16 TWTY_BOOL = 6;
inline constexpr TW_UINT16 TWTY_FIX32 = 7;

// Values of capabilities.
inline constexpr TW_UINT16 TWPT_BW = 0;
inline constexpr TW_UINT16 TWPT_GRAY = 1;
inline constexpr TW_UINT16 TWPT_RGB = 2;
inline constexpr TW_UINT16 TWUN_INCHES = 0;
inline constexpr TW_UINT16 TWSX_NATIVE = 0;

inline constexpr TW_UINT16 TWLG_ENGLISH_USA = 13;
inline constexpr TW_UINT16 TWCY_USA = 1;

#pragma pack(push, 2)

struct TW_VERSION {
  TW_UINT16 MajorNum;
  TW_UINT16 MinorNum;
  TW_UINT16 Language;
  TW_UINT16 Country;
  TW_STR32 Info;
};

struct TW_IDENTITY {
  TW_UINT32 Id;
  TW_VERSION Version;
  TW_UINT16 ProtocolMajor;
  TW_UINT16 ProtocolMinor;
  TW_UINT32 SupportedGroups;
  TW_STR32 Manufacturer;
  TW_STR32 ProductFamily;
  TW_STR32 ProductName;
};

// Worth Whole + Frac / 65536.
struct TW_FIX32 {
  TW_INT16 Whole;
  TW_UINT16 Frac;
};

struct TW_CAPABILITY {
  TW_UINT16 Cap;
  TW_UINT16 ConType;
  GlobalHandle hContainer;
};

// A 16-bit value sits in the low half of Item; a TW_FIX32 fills it.
struct TW_ONEVALUE {
  TW_UINT16 ItemType;
  TW_UINT32 Item;
};

// The heads of the containers of several values; the values follow, in the width of their type.
struct TW_ARRAY {
  TW_UINT16 ItemType;
  TW_UINT32 NumItems;
};

struct TW_ENUMERATION {
  TW_UINT16 ItemType;
  TW_UINT32 NumItems;
  TW_UINT32 CurrentIndex;
  TW_UINT32 DefaultIndex;
};

struct TW_RANGE {
  TW_UINT16 ItemType;
  TW_UINT32 MinValue;
  TW_UINT32 MaxValue;
  TW_UINT32 StepSize;
  TW_UINT32 DefaultValue;
  TW_UINT32 CurrentValue;
};

struct TW_FRAME {
  TW_FIX32 Left;
  TW_FIX32 Top;
  TW_FIX32 Right;
  TW_FIX32 Bottom;
};

struct TW_IMAGELAYOUT {
  TW_FRAME Frame;
  TW_UINT32 DocumentNumber;
  TW_UINT32 PageNumber;
  TW_UINT32 FrameNumber;
};

struct TW_USERINTERFACE {
  TW_BOOL ShowUI;
  TW_BOOL ModalUI;
  WindowHandle hParent;
};

struct TW_EVENT {
  void* pEvent;
  TW_UINT16 TWMessage;
};

struct TW_PENDINGXFERS {
  TW_UINT16 Count;
  TW_UINT32 EOJ;
};

struct TW_STATUS {
  TW_UINT16 ConditionCode;
  TW_UINT16 Reserved;
};

#pragma pack(pop)

static_assert(sizeof(TW_VERSION) == 42);
static_assert(sizeof(TW_IDENTITY) == 156);
static_assert(offsetof(TW_IDENTITY, ProtocolMajor) == 46);
static_assert(offsetof(TW_IDENTITY, SupportedGroups) == 50);
static_assert(offsetof(TW_IDENTITY, Manufacturer) == 54);
static_assert(offsetof(TW_IDENTITY, ProductFamily) == 88);
static_assert(offsetof(TW_IDENTITY, ProductName) == 122);
static_assert(sizeof(TW_FIX32) == 4);
static_assert(sizeof(TW_ONEVALUE) == 6);
static_assert(sizeof(TW_ARRAY) == 6);
static_assert(sizeof(TW_ENUMERATION) == 14);
static_assert(sizeof(TW_RANGE) == 22);
static_assert(sizeof(TW_IMAGELAYOUT) == 28);
static_assert(sizeof(TW_PENDINGXFERS) == 6);
static_assert(sizeof(TW_STATUS) == 4);
// With 32-bit pointers: 8, 8 and 6 bytes.
static_assert(sizeof(TW_CAPABILITY) == 4 + sizeof(void*));
static_assert(sizeof(TW_USERINTERFACE) == 4 + sizeof(void*));
static_assert(sizeof(TW_EVENT) == 2 + sizeof(void*));

}  // namespace quillet
