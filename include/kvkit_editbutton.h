// Edit-field buttons: a small push button of the class "EditButton" at the right end of an edit
// field or combo box that opens the field's chooser (or clears the field), date fields whose
// button opens the calendar, and format fields with load-format, delete and save-format buttons.
//
// Buttons created without EBA_OWNID have the control identifier 1999; the positioning exports
// find the button of a window by that identifier. A button owns the bitmap it is given and
// deletes it when it is destroyed (image buttons, which draw their caption, leave it alone).
#pragma once
#include "kvkit_api.h"

// Attribute word of a button (the `attr` argument, kept in the button's property "attr").
const UINT EBA_OUTSIDE = 0x0001;      // the host keeps its size; the button sits right of it
const UINT EBA_DISABLED = 0x0002;     // created disabled
const UINT EBA_TABSTOP = 0x0004;      // WS_TABSTOP (else WS_CLIPSIBLINGS) and a shortcut tooltip
const UINT EBA_INSIDE = 0x0008;       // a child of the host itself; the host keeps its size
const UINT EBA_OWNID = 0x0010;        // the given identifier (else 1999), WM_COMMAND notification,
                                      // placed after the host in the tab order
const UINT EBA_SUBCLASS = 0x0020;     // Alt+Down, a double click and the format check on the host
                                      // act as a click
const UINT EBA_NOTIFYEDIT = 0x0040;   // the host hears WM_LBUTTONDBLCLK even with EBA_OWNID
const UINT EBA_FLAT = 0x0080;         // topmost, no caption, painted flat in "BkColor"
const UINT EBA_FORMATCHECK = 0x0100;  // the host's changed text is checked when it loses the focus
const UINT EBA_RCLICK = 0x0200;       // right clicks are reported too
const UINT EBA_LOADFMT = 0x1000;      // a "kx2ImgButton" captioned "load format" (string 72)
const UINT EBA_SAVEFMT = 0x2000;      // a "kx2ImgButton" captioned "save format" (string 73)
const UINT EBA_CLEAR = 0x4000;        // captioned with string 76; a click empties the host

// The identifier of buttons created without EBA_OWNID.
const int EDITBUTTON_ID = 1999;

// Attaches a button to `host` and returns it (or the host's existing button with that identifier,
// shown again if it was hidden). `rect` (optional) is the host's rectangle in its parent's client
// coordinates (with EBA_INSIDE in the host's own, default its client rectangle). The button is
// 20 pixels wide, or the bitmap's width + 4. `tooltipKey` 0..4 picks the shortcut tooltip of a
// captionless EBA_TABSTOP button. Null on failure, with the host left as it was.
KVKIT_API HWND KVKIT_CALL KxSetEditBtnEx(HWND host, int id, HBITMAP bitmap, UINT attr, RECT* rect,
                                         int tooltipKey);
// KxSetEditBtnEx with tooltip key 0.
KVKIT_API HWND KVKIT_CALL KxSetEditBtn(HWND host, int id, HBITMAP bitmap, UINT attr, RECT* rect);

// A load-format image button with format check (attr | EBA_LOADFMT | EBA_FORMATCHECK) whose
// format type is `ftType`, and its delete button; with EBA_SUBCLASS the edit is limited to 60
// characters and made read-only. Returns the delete button, or the existing child `id` of the
// edit's parent; 0 on failure.
KVKIT_API HWND KVKIT_CALL KxSetFormatBtn(HWND edit, int id, HBITMAP bitmap, UINT attr, RECT* rect,
                                         int ftType);
// A clear button (identifier id + 1000, bitmap "BtnDelFmt" of the resource module) right of the
// format button, which moves left by its own width while the edit shrinks by as much. Returns
// the delete button or null.
KVKIT_API HWND __cdecl KxSetDelFormatButton(HWND edit, HWND formatButton, int id);
// A format field: load-format, delete and (saveId > 0) save-format buttons, inside the edit's
// rectangle or (`outside`) right of it. `ignored` is not used. 1 when the last button was made.
KVKIT_API BOOL KVKIT_CALL KxSetEditBtnFormat_LoadSave(HWND edit, HINSTANCE ignored, int loadId,
                                                      int saveId, int ftType, BOOL outside);
// Sets the format type that the format check receives. The result of SetProp.
KVKIT_API BOOL KVKIT_CALL KxSetEditBtnFormatFype(HWND button, int ftType);
// Sets the face colour of a flat button. The result of SetProp.
KVKIT_API BOOL KVKIT_CALL KxSetEditBtnBkColor(HWND button, COLORREF colour);

// Date fields: the dialog's controls fromId and (toId >= 0) toId get buttons with the identifiers
// fromId + 200 and toId + 200 (null bitmap: the library's calendar glyph) that open the calendar;
// with both, the calendar chooses a range. Alt+Down and a double click open it too; a typed date
// is normalised when the field loses the focus. Controls that are subclassed already are left
// alone. 0 when fromId is missing or memory runs out (nothing is changed then).
KVKIT_API BOOL KVKIT_CALL KxSetDateBtn(KVSESSION* session, HWND dialog, HBITMAP bitmap, int fromId,
                                       int toId, UINT attr);
// ShowWindow on the button of a date field made by KxSetDateBtn; 0 for any other window.
KVKIT_API BOOL KVKIT_CALL KxShowEditBtn(HWND dateControl, int showCmd);

// The three below work on the button with identifier 1999 among the children of `parent`.
// Hides it and gives its width back to the host (unless EBA_OUTSIDE or EBA_INSIDE). 0 without
// a button.
KVKIT_API BOOL KVKIT_CALL KxHideEditBtn(HWND parent);
// Moves host and button into `rect` (default: the host's rectangle): the host shrinks by the
// button's width (unless EBA_OUTSIDE or EBA_INSIDE) and the button takes the right end, with
// EBA_OUTSIDE too. 0 without a button.
KVKIT_API BOOL KVKIT_CALL KxMoveEditBtn(HWND parent, HWND host, RECT* rect);
// Destroys it. 0 without a button.
KVKIT_API BOOL KVKIT_CALL KxDestrEditBtn(HWND parent);
// The button with identifier 1999 among the host's siblings, or null.
KVKIT_API HWND KVKIT_CALL KxGetEditBtn(HWND host);
// The button with identifier 1999 among the children of `parent`, or null.
KVKIT_API HWND KVKIT_CALL KxGetEditBtnParent(HWND parent);
// Whether the window is of the class "EditButton".
KVKIT_API BOOL KVKIT_CALL KxIsEditBtn(HWND window);
