// Version of the kvkit interface that these headers describe. The DLL's version resource and
// KxGetVersion carry the same numbers, so a host can tell whether the kvkit.dll it loaded is at
// least as new as the headers it was compiled against:
//
//   if (KxGetVersion() < KVKIT_VERSION) ...  // an older DLL than the headers
#pragma once

// The version's numbers: a new major version changes the interface incompatibly.
#define KVKIT_VERSION_MAJOR 1
#define KVKIT_VERSION_MINOR 0
#define KVKIT_VERSION_PATCH 0
// "major.minor.patch", the version resource's FileVersion and ProductVersion texts.
#define KVKIT_VERSION_STRING "1.0.0"
// The three numbers packed as major << 16 | minor << 8 | patch, as KxGetVersion returns them.
#define KVKIT_VERSION \
    ((KVKIT_VERSION_MAJOR << 16) | (KVKIT_VERSION_MINOR << 8) | KVKIT_VERSION_PATCH)

#ifndef RC_INVOKED
#include "kvkit_api.h"

// The version of the kvkit.dll that is loaded, packed as KVKIT_VERSION.
KVKIT_API DWORD KVKIT_CALL KxGetVersion(void);
#endif
