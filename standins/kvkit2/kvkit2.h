// kvkit2: the sibling toolkit's tooltip helper and its image-button class "kx2ImgButton".
// This header describes the stand-in built by this project.
#pragma once
#include <windows.h>

#ifdef KVKIT2_BUILDING
#define KVKIT2_API extern "C"
#else
#define KVKIT2_API extern "C" __declspec(dllimport)
#endif

// Sets (or replaces) the tooltip text shown over the window; a null or empty text removes it.
// The tooltip window belongs to the window's top-level parent and is found again by the property
// "kx2Tip". Returns 1 on success.
KVKIT2_API int WINAPI Kx2_SetToolTip(HWND window, const wchar_t* text);
// The text of the window's tooltip into a buffer of `capacity` characters; returns its length,
// 0 when the window has none.
KVKIT2_API int WINAPI Kx2_GetToolTip(HWND window, wchar_t* text, int capacity);

// Image button: a push button that draws its caption on a raised face (sunken while pressed) and
// sends WM_COMMAND with BN_CLICKED to its parent when clicked. The class is registered when the
// DLL is loaded.
#define KX2_IMGBUTTON_CLASS L"kx2ImgButton"
