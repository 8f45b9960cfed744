#pragma once

// The one way to the system headers. Code that includes it calls the system with `::`, since the
// contracts' records and methods have the system's names, and names the wide form of a function
// (`::CreateFileW`) or the ANSI one outright.

// Wide text: macros that stand for no particular form mean that one.
#ifndef UNICODE
#define UNICODE
#endif
#ifndef _UNICODE
#define _UNICODE
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif

// They depend on one another, so their order stays.
// clang-format off
#include <windows.h>
#include <ole2.h>
#include <olectl.h>
#include <objsafe.h>
#include <propidl.h>
#include <gdiplus.h>
#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>
// clang-format on

// Macros that would rename methods of ours, or words that code uses.
#undef CopyFile
#undef CreateFile
#undef CreateWindow
#undef CreateWindowEx
#undef DeleteFile
#undef DispatchMessage
#undef GetMessage
#undef GetObject
#undef GetTempFileName
#undef GetTempPath
#undef LoadCursor
#undef LoadIcon
#undef LoadImage
#undef LoadLibrary
#undef MessageBox
#undef MoveFile
#undef PeekMessage
#undef PostMessage
#undef ReplaceFile
#undef SendMessage
#undef ShellExecute
#undef Yield
#undef DELETE
#undef ERROR
#undef far
#undef interface
#undef near
#undef small
