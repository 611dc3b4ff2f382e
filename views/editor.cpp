// Pieces shared by the list-view and tree-view editors: making the editor window, measuring a
// fixed prefix, and reading what the user entered.
#include "views/editor.h"
#include "include/kvkit_core.h"
#include "kvtext.h"

void CloseOpenEditor(HWND control, int id) {
    if (GetFocus() != control) SetFocus(control);
    HWND editor = GetDlgItem(control, id);
    if (!editor) return;
    SetFocus(control);
    if (IsWindow(editor)) DestroyWindow(editor);
}

HWND CreateEditor(HWND control, HINSTANCE module, int id, bool dropDown, const RECT& place) {
    DWORD style = WS_CHILD | WS_VISIBLE |
                  (dropDown ? CBS_DROPDOWNLIST | WS_VSCROLL : WS_BORDER | ES_AUTOHSCROLL);
    HWND editor = CreateWindowExW(0, dropDown ? L"Combobox" : L"Edit", L"", style, place.left,
                                  place.top, place.right - place.left, place.bottom - place.top,
                                  control, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                  module, nullptr);
    if (editor) SendMessageW(editor, WM_SETFONT, SendMessageW(control, WM_GETFONT, 0, 0), FALSE);
    return editor;
}

int PrefixWidth(HWND control, const wchar_t* text, int length) {
    HDC dc = GetDC(control);
    if (!dc) return 0;
    HGDIOBJ font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
    HGDIOBJ previous = font ? SelectObject(dc, font) : nullptr;
    SIZE size = {};
    GetTextExtentPoint32W(dc, text, length, &size);
    if (previous) SelectObject(dc, previous);
    ReleaseDC(control, dc);
    return size.cx;
}

void FillEditBox(HWND editor, const wchar_t* text, int textLimit) {
    if (textLimit >= 0) SendMessageW(editor, EM_LIMITTEXT, textLimit, 0);
    SetWindowTextW(editor, text);
    SendMessageW(editor, EM_SETSEL, 0, -1);
}

int EditorSelection(HWND editor) {
    LRESULT selected = SendMessageW(editor, CB_GETCURSEL, 0, 0);
    return selected == CB_ERR ? -1 : static_cast<int>(selected);
}

wchar_t* EditorText(HWND editor, bool dropDown, int* selected, int* length) {
    int textLength = 0;
    if (dropDown) {
        *selected = EditorSelection(editor);
        if (*selected >= 0) {
            LRESULT entryLength = SendMessageW(editor, CB_GETLBTEXTLEN, *selected, 0);
            textLength = entryLength == CB_ERR ? 0 : static_cast<int>(entryLength);
        }
    } else {
        textLength = GetWindowTextLengthW(editor);
    }
    auto* text = static_cast<wchar_t*>(GetMemory((textLength + 1) * sizeof(wchar_t)));
    *length = 0;
    if (!text) return nullptr;
    text[0] = 0;
    if (!dropDown) {
        GetWindowTextW(editor, text, textLength + 1);
    } else if (*selected >= 0 && textLength > 0) {
        SendMessageW(editor, CB_GETLBTEXT, *selected, reinterpret_cast<LPARAM>(text));
    }
    *length = lstrlenW(text);
    return text;
}

LRESULT ForwardEditorMessage(HWND editor, UINT message, WPARAM wParam, LPARAM lParam) {
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, editor);
    if (!previous) return 0;
    return CallWindowProcW(previous, editor, message, wParam, lParam);
}
