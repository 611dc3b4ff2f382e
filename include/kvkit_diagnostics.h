// Splash and diagnostic windows: a splash window that shows the application's logo while it
// starts, a window listing the modules loaded into the process with their versions, a movable
// frame with which the user chooses a rectangle on the screen, and a dialog that shows the bitmap
// resources of a module as thumbnails to choose one. Texts and the dialog template come from the
// language module; pictures are resized with the library's resampling.
#pragma once
#include "kvkit_api.h"

// --- splash window ----------------------------------------------------------------------------

// Shows a copy of `logo` (the caller keeps its bitmap; a logo larger than two thirds of the work
// area is shrunk with the library's resampling) in a borderless topmost window, centred on the
// work area of the monitor of `mainWindow` (null: the session's main window; neither: the primary
// monitor). `lines` (may be null; lines separated by "\n") are drawn over the logo's lower left
// part in `textColour`, in the small caption font. The window closes after `milliseconds` (0 or
// less: not by time), when it is clicked, or by KxSplash_Close; it never takes the activation.
// It is painted before the function returns, so that a host busy starting up still shows it.
// Returns the window; null when `logo` is no bitmap, memory runs out or the window cannot be made.
KVKIT_API HWND KVKIT_CALL KxSplash_Show(HWND mainWindow, HBITMAP logo, const wchar_t* lines,
                                        COLORREF textColour, int milliseconds);
// Closes a splash window before its time. 0 when `splash` is no splash window.
KVKIT_API int KVKIT_CALL KxSplash_Close(HWND splash);

// --- module list ------------------------------------------------------------------------------

// Fills a report list view with one row per module loaded into the process, in load order: file
// name, file version and product version (from the fixed part of the module's version resource,
// as "major.minor.build.revision"; empty when it has none) and path. The columns (titles: texts
// 17101 to 17104 of the language module) replace the list view's columns; rows carry the values
// 1, 2, ... Returns the number of modules; 0 for a window that is no list view or when the
// modules cannot be listed.
KVKIT_API int KVKIT_CALL KxModuleList_Fill(HWND listView);
// Copies a report list view (or the list of a module list window) to the clipboard as text: the
// column titles, then every row, cells separated by tabs and lines ended by CR LF. 1 when copied;
// 0 for no list view, or when memory runs out or the clipboard cannot be had.
KVKIT_API int KVKIT_CALL KxModuleList_Copy(HWND window);
// Opens the module list window (title: text 17100), owned by the top-level window of `owner`
// (may be null) and centred over it, kept on its monitor (without an owner: centred on the
// primary monitor). There is one per process: a second call fills it
// again and brings it to the front. A click on a column title sorts the rows by that column with
// the library's list view sort (a second click the other way round). The context menu (the
// library's menu 2110, with the language module's texts 17110 to 17112 where it has them) and the
// keys Ctrl+C, F5 and Esc copy the list, fill it again and close the window. Returns the window,
// or null when it cannot be made.
KVKIT_API HWND KVKIT_CALL KxModuleList_Show(HWND owner);

// --- movable frame ----------------------------------------------------------------------------

// Flags of KxMoveFrame_Create.
const int KXMOVEFRAME_INVERTED = 0x1;  // a drag shows an inverted outline; the frame follows at
                                       // the release. Without it the frame follows the mouse,
                                       // its class saving the screen under it (save-under).

// Messages sent to the frame's owner; wParam is the frame window.
const UINT KXMOVEFRAME_CHANGED = 2010;  // lParam: const RECT*, the new rectangle (screen), after
                                        // each move or resize by the mouse or the keyboard
const UINT KXMOVEFRAME_DONE = 2011;     // lParam: const RECT* when the user confirmed (double
                                        // click, Enter), null when cancelled (Esc); then the
                                        // frame closes

// Shows a frame around `rect` (screen coordinates) for the user to move and resize: a band of
// `thickness` pixels (0: 4; at most 16) in `colour`, with eight square handles. Dragging a
// handle moves its edges, dragging the band elsewhere moves the whole frame; the arrow keys move
// it by a pixel (with Ctrl by ten), with Shift they move the right and bottom edges. The inside
// is left out of the window, so what lies under it stays visible and clickable. A frame is never
// smaller than three handles each way. Returns the frame window; null for a null rectangle, a
// thickness out of range, or when the window cannot be made.
KVKIT_API HWND KVKIT_CALL KxMoveFrame_Create(HWND owner, const RECT* rect, int thickness,
                                             COLORREF colour, int flags);
// The frame's rectangle in screen coordinates. 0 when `frame` is no movable frame or `rect` null.
KVKIT_API int KVKIT_CALL KxMoveFrame_GetRect(HWND frame, RECT* rect);
// Moves the frame to `rect` (kept to the smallest size), without notifying. 0 when `frame` is no
// movable frame or `rect` null.
KVKIT_API int KVKIT_CALL KxMoveFrame_SetRect(HWND frame, const RECT* rect);

// --- bitmap chooser ---------------------------------------------------------------------------

// Opens the modal bitmap chooser (dialog template 2075 of the language module: list view 100,
// text 101, OK and Cancel) over `owner`. It shows every bitmap resource of `module` as a
// thumbnail of `thumbnailSize` pixels square (0: 48; 16 to 256), resized with the library's
// resampling and at most three times enlarged, labelled with its name or number; the text shows
// the selected picture's size. The dialog can be resized. `selected` (may be null) names the
// picture selected at the start: a name, "#" and a number, or MAKEINTRESOURCE of a number. A
// double click, Enter or OK chooses. Returns the chosen picture's identifier in a new kvtext block
// that the caller frees with FreeMemory: its name, or "#" followed by its number (LoadBitmapW
// takes either form); null when cancelled, for a null module, a module without bitmaps, a
// missing template, a size out of range, or when memory runs out.
KVKIT_API wchar_t* KVKIT_CALL KxChooseBitmap(HWND owner, HINSTANCE module,
                                             const wchar_t* selected, int thumbnailSize);
