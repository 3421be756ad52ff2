// The one place that says how the Windows headers are included.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
// The order matters: these stand on windows.h.
#include <objbase.h>
#include <oleauto.h>
