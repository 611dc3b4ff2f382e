// Library start-up, language and resource modules, small system utilities, and the window
// subclass chain.
#pragma once
#include "kvkit_api.h"

// Validates formatted field text: non-zero when `text` is acceptable for the format type.
typedef int(__stdcall* KVFORMATCHECK)(KVSESSION* session, unsigned short formatType,
                                      const wchar_t* text);

// Registers the library's window classes; later calls do nothing once it has succeeded.
KVKIT_API void KVKIT_CALL InitTool(void);
// Stores the language, the module supplying bitmaps and cursors and the module supplying texts,
// dialog templates and menus; registers the "EditButton" class on its first call. Returns 1.
KVKIT_API int KVKIT_CALL Kx1SetLanguage(unsigned short language, HINSTANCE bitmapModule,
                                        HINSTANCE textModule);
// Installs the host's format check (null switches checking off). Returns 1.
KVKIT_API int KVKIT_CALL Kx1SetFormatCheck(KVFORMATCHECK callback);
// A bitmap of the library's own resources by number; the caller owns it. Null when not found.
KVKIT_API HBITMAP KVKIT_CALL KxGetToolBitmap(int id);
// SystemParametersInfoW(SPI_GETNONCLIENTMETRICS) with the structure size forced to 504 bytes.
KVKIT_API int KVKIT_CALL GetNonClientMetrics(NONCLIENTMETRICSW& metrics);
// A new font like the system's small caption font; the caller owns it. Null on failure.
KVKIT_API HFONT KVKIT_CALL GetSysSmallCaptionFont(void);
KVKIT_API int KVKIT_CALL Kx1SetLayeredWindowAttributes(HWND window, COLORREF key, BYTE alpha,
                                                       DWORD flags);
// Both always answer 1: layered windows and GradientFill may be used.
KVKIT_API int KVKIT_CALL Kx1SetLayeredWindowAttributes_Enabled(void);
KVKIT_API int KVKIT_CALL Kx1GradientFill_Enabled(void);
// SHGetFolderPathW from "ShFolder.dll", loaded for this call only; 1 exactly when it gave S_OK.
KVKIT_API int KVKIT_CALL KVSHGetFolderPath(HWND owner, int folder, HANDLE token, DWORD flags,
                                           wchar_t* path);

// Replaces the window's procedure, remembering the previous one in the property "OldProc".
// 0 for a null window or when memory runs out (the window is then untouched).
KVKIT_API int KVKIT_CALL Kx1SetSubProc(HWND window, WNDPROC procedure);
// The remembered previous procedure. With `remove` non-zero the property is taken away and the
// previous procedure put back (as replacement procedures do on WM_DESTROY).
KVKIT_API WNDPROC KVKIT_CALL Kx1GetSubProc(int remove, HWND window);
// Subclasses a list box so that Enter and Space act as a double click.
KVKIT_API int KVKIT_CALL Kx1SetListBoxProc(HWND listBox);
