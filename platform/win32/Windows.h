#pragma once

// The one way into the Windows API; never included by a public header.
#ifndef _WIN32
#error "platform/win32 is the Windows backend; it builds for Windows only"
#endif

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
