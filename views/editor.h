// Pieces shared by the list-view and tree-view editors. Internal.
#pragma once
#include <windows.h>

// Gives the control the focus, which ends (and reports) an edit still open in it, and destroys
// an editor with the id that is left over (one that had lost the focus already).
void CloseOpenEditor(HWND control, int id);

// A visible edit box with a border (or a drop-down list) over the given rectangle of the
// control, in the control's font, named by `id`. Null when it cannot be created.
HWND CreateEditor(HWND control, HINSTANCE module, int id, bool dropDown, const RECT& place);

// Width of the first `length` characters of `text` in the control's font.
int PrefixWidth(HWND control, const wchar_t* text, int length);

// Fills an edit box with `text`, all of it selected, limited to `textLimit` characters when that
// is 0 or more.
void FillEditBox(HWND editor, const wchar_t* text, int textLimit);

// What the editor holds when it closes, in a new kvtext block (null when memory runs out): an
// edit box's text, or the selected entry of a drop-down list, whose index (-1: none) goes to
// *selected. *length receives the text's length.
wchar_t* EditorText(HWND editor, bool dropDown, int* selected, int* length);

// Index of a drop-down list's selected entry, -1 when none.
int EditorSelection(HWND editor);

// True once the editor's window is hidden on its way out (it is being destroyed itself or with
// its control): the focus it loses then must not destroy it again.
inline bool EditorIsClosing(HWND editor) { return !IsWindowVisible(editor); }

// Calls the procedure that the editor had before it was subclassed; the destroy message takes
// the subclass away.
LRESULT ForwardEditorMessage(HWND editor, UINT message, WPARAM wParam, LPARAM lParam);
