// Shared declarations of the kvkit interface: linkage and calling convention of the exports.
#pragma once
#include <windows.h>

// Declares an export of kvkit.dll: C linkage, imported from the DLL by its users.
#ifdef KVKIT_BUILDING
#define KVKIT_API extern "C"
#else
#define KVKIT_API extern "C" __declspec(dllimport)
#endif

// Every export uses the stdcall convention unless its declaration says __cdecl.
#define KVKIT_CALL __stdcall

struct KVSESSION;
