// kvtext: memory, bounded strings, language-aware comparison, dialog-text wrappers and the
// session record of the suite. This header describes the stand-in built by this project.
#pragma once
#include <windows.h>
#include <stddef.h>

#ifdef KVTEXT_BUILDING
#define KVTEXT_API extern "C"
#else
#define KVTEXT_API extern "C" __declspec(dllimport)
#endif

// The session record. Its layout is the text library's; the offsets that other modules read are
// fixed here and checked below.
#pragma pack(push, 1)
struct KVSESSION {
    DWORD size;                 // sizeof(KVSESSION)
    HWND mainWindow;            // the application's main window, or null
    HINSTANCE resourceModule;   // module holding the application's bitmaps and icons
    LCID collation;             // locale used by StringCmpEx / StringCmpLenEx; 0 = user default
    BYTE reserved1[71 - 16];
    DWORD language;             // language value, at byte 71
    BYTE reserved2[1247 - 75];
    BYTE display;               // display settings byte, at byte 1247
    BYTE reserved3[8];
};
#pragma pack(pop)
static_assert(offsetof(KVSESSION, mainWindow) == 4, "session main window offset");
static_assert(offsetof(KVSESSION, resourceModule) == 8, "session resource module offset");
static_assert(offsetof(KVSESSION, collation) == 12, "session collation offset");
static_assert(offsetof(KVSESSION, language) == 71, "session language offset");
static_assert(offsetof(KVSESSION, display) == 1247, "session display byte offset");
static_assert(sizeof(KVSESSION) == 1256, "session size");

// --- memory -----------------------------------------------------------------------------------
// GetMemory returns an uninitialised block (filled with 0xCD so that reliance on zeroes shows);
// Mres returns a zeroed one. Every block goes back through FreeMemory (null is accepted).
KVTEXT_API void* WINAPI GetMemory(int bytes);
KVTEXT_API void* WINAPI Mres(int bytes);
// Resizes a block (null behaves as GetMemory). On failure returns null and the old block stays.
KVTEXT_API void* WINAPI ReallocMemory(void* block, int bytes);
// Appends `bytes` bytes at `data` to a block that holds `usedBytes`; returns the (possibly moved)
// block, or null on failure with the old block untouched. A null block starts a new one.
KVTEXT_API void* WINAPI AddMemory(void* block, int usedBytes, const void* data, int bytes);
// Appends to a growing buffer with spare capacity: *usedBytes and *capacityBytes describe it, and
// the capacity grows in steps of `growBytes` (at least what the append needs). Returns the
// (possibly moved) block and updates both counters, or null on failure with nothing changed.
KVTEXT_API void* WINAPI AddMemoryMax(void* block, int* usedBytes, int* capacityBytes,
                                     const void* data, int bytes, int growBytes);
KVTEXT_API void WINAPI FreeMemory(void* block);

// Stand-in test hooks: number of blocks not yet freed, and a failure injected into the nth
// allocation from now (1 = the next one; 0 switches injection off). Allocations made by
// GetMemory, Mres, ReallocMemory, AddMemory and AddMemoryMax all count.
KVTEXT_API int WINAPI KvText_LiveAllocations(void);
KVTEXT_API void WINAPI KvText_FailAllocation(int nth);

// --- strings ----------------------------------------------------------------------------------
// Copies at most capacity - 1 characters and always terminates (capacity counts the terminator).
KVTEXT_API wchar_t* WINAPI kv_strcpy(wchar_t* destination, const wchar_t* source, int capacity);
// Appends within the same capacity rule; the result is always terminated.
KVTEXT_API wchar_t* WINAPI kv_strcat(wchar_t* destination, const wchar_t* source, int capacity);
// Removes every occurrence of `character` in place; returns how many were removed.
KVTEXT_API int WINAPI StringRemoveChar(wchar_t* text, wchar_t character);
// Compares like CompareStringW and returns -1, 0 or 1. Flag 4 (and NORM_IGNORECASE, 1) compare
// without regard to case; a locale of 0 means the user's default.
KVTEXT_API int WINAPI kv_CompareString(LCID locale, DWORD flags, const wchar_t* a, int lengthA,
                                       const wchar_t* b, int lengthB);
// Collation comparison under the session's collation locale: -1, 0 or 1. Option 0 compares without
// regard to case; any other option is passed to CompareStringW as its flags.
KVTEXT_API int WINAPI StringCmpEx(LCID collation, const wchar_t* a, const wchar_t* b, DWORD option);
// As StringCmpEx over at most `length` characters of each text.
KVTEXT_API int WINAPI StringCmpLenEx(LCID collation, const wchar_t* a, const wchar_t* b,
                                     DWORD option, int length);

// --- dialog text ------------------------------------------------------------------------------
KVTEXT_API int WINAPI KV_64BitAligned_GetDlgItemText(HWND dialog, int id, wchar_t* text, int capacity);
KVTEXT_API BOOL WINAPI KV_64BitAligned_SetDlgItemText(HWND dialog, int id, const wchar_t* text);

// --- session ----------------------------------------------------------------------------------
// The process-wide session (zeroed, size set, collation 0 at load).
KVTEXT_API KVSESSION* WINAPI GlobalSession(void);
