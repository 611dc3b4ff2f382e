// Edit-field buttons: what the button, the edit-side and date procedures and the format buttons
// share. Internal.
#pragma once
#include "include/kvkit_editbutton.h"

// Window procedure of the "EditButton" class.
LRESULT CALLBACK EdBtnProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam);
// Replacement procedure of hosts attached with EBA_SUBCLASS.
LRESULT CALLBACK EditFieldProc(HWND host, UINT message, WPARAM wParam, LPARAM lParam);

// Properties of a button.
extern const wchar_t kAttrProperty[];     // attribute word
extern const wchar_t kParentProperty[];   // the window that hears the click
extern const wchar_t kBitmapProperty[];   // the owned face bitmap
extern const wchar_t kColourProperty[];   // face colour of flat buttons
extern const wchar_t kFormatProperty[];   // format type for the format check
// Properties of a host.
extern const wchar_t kToolProperty[];     // its button (EBA_SUBCLASS)
extern const wchar_t kTool2Property[];    // its delete-format button
extern const wchar_t kChangedProperty[];  // 1 after typing, 0 once the format check passed

inline UINT ButtonAttributes(HWND button) {
    return static_cast<UINT>(reinterpret_cast<UINT_PTR>(GetPropW(button, kAttrProperty)));
}

// The window's rectangle in its parent's client coordinates.
RECT RectInParent(HWND window);

// Takes a button away again: the host gets its width back (unless the button sat outside or
// inside it) and the button is destroyed without deleting its bitmap, which stays the caller's.
void DetachEditButton(HWND button);
