// The library's version as it was built, for hosts that check the DLL they loaded.
#include "core/library.h"
#include "include/kvkit_version.h"

DWORD KVKIT_CALL KxGetVersion(void) { return KVKIT_VERSION; }
