// The face of the library's small push buttons (edit-field buttons, scroller arrows). Internal.
#pragma once
#include <windows.h>

// Paints a button face into `client`: raised, or sunken while `pressed`; the picture (may be
// null) centred and drawn transparent on light grey 0xC0C0C0, as a greyscale copy while the
// button is disabled; a focus rectangle inset by 2 while it has the focus.
void PaintButtonFace(HDC dc, const RECT& client, bool pressed, HBITMAP picture, bool enabled,
                     bool focused);
// The picture part of the face alone (for buttons with a face of their own): centred,
// transparent on light grey, greyscale while disabled. Nothing for a null picture.
void DrawButtonPicture(HDC dc, const RECT& client, HBITMAP picture, bool enabled);
