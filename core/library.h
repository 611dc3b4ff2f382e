// Process-wide state of the library and the helpers that every family shares. Internal.
#pragma once
#include "include/kvkit_core.h"

// Written once by the module entry point.
extern HINSTANCE g_libraryModule;
// Written by Kx1SetLanguage.
extern unsigned short g_language;
extern HINSTANCE g_bitmapModule;  // bitmaps and cursors of the host
extern HINSTANCE g_textModule;    // texts, dialog templates and menus of the host
// Written by Kx1SetFormatCheck.
extern KVFORMATCHECK g_formatCheck;

// Longest language string the library reads, without its terminator.
const int kLanguageStringLength = 80;

// Reads language string `id` from the text module into a new kvtext buffer of up to
// `maxLength` characters (and a terminator); the caller frees it with FreeMemory. Null when the
// string is missing or memory runs out.
wchar_t* LoadLanguageString(UINT id, int maxLength = kLanguageStringLength);

// Clipboard format "szClipBoard_Color", registered with the colour box classes.
extern UINT g_colorClipboardFormat;

// Multi-column list box: the procedure of the "KVListbox" class.
KVKIT_API LRESULT KVKIT_CALL Kx1LbProc(HWND container, UINT message, WPARAM wParam, LPARAM lParam);

// Window procedures of the dialog painting classes that InitTool registers.
LRESULT CALLBACK DlgPaintWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK DlgTippWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
