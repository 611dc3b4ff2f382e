// The host side of edit-field buttons: the replacement procedure that lets Alt+Down, a double
// click and a failed format check act as a click on the field's button, and format fields with
// their load-format, delete and save-format buttons.
#include "controls/editbutton.h"
#include "core/library.h"
#include "kvtext.h"

namespace {

const UINT kFormatButtonAttr = EBA_LOADFMT | EBA_FORMATCHECK;
const UINT kDeleteButtonAttr = EBA_CLEAR | EBA_OWNID | EBA_TABSTOP | EBA_OUTSIDE;
const UINT kSaveButtonAttr = EBA_SAVEFMT | EBA_OWNID | EBA_TABSTOP;
const UINT kLoadSaveFieldAttr = EBA_SUBCLASS | EBA_OWNID | EBA_TABSTOP;
const int kDeleteButtonIdOffset = 1000;
const int kFormatTextLimit = 60;

HWND toolOf(HWND host, const wchar_t* property) { return static_cast<HWND>(GetPropW(host, property)); }

void setChanged(HWND host, int changed) {
    SetPropW(host, kChangedProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(changed)));
}

// Acts as a click on the host's button: image buttons report their command to the host's parent,
// edit buttons receive a release. False without a button.
bool triggerButton(HWND host) {
    HWND button = toolOf(host, kToolProperty);
    if (!button) return false;
    if (ButtonAttributes(button) & (EBA_LOADFMT | EBA_SAVEFMT))
        SendMessageW(GetParent(host), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), 0),
                     reinterpret_cast<LPARAM>(button));
    else
        PostMessageW(button, WM_LBUTTONUP, 0, 0);
    return true;
}

// A typed text that fails the host's format check opens the chooser; "Changed" stays set until a
// check passes. An empty field is not checked.
void checkFormat(HWND host) {
    HWND button = toolOf(host, kToolProperty);
    if (!GetPropW(host, kChangedProperty) || !button || !(ButtonAttributes(button) & EBA_FORMATCHECK) ||
        !g_formatCheck)
        return;
    int length = static_cast<int>(SendMessageW(host, EM_LINELENGTH, static_cast<WPARAM>(-1), 0));
    if (length < 1) return;
    auto* text = static_cast<wchar_t*>(GetMemory((length + 1) * sizeof(wchar_t)));
    if (!text) return;
    GetWindowTextW(host, text, length + 1);
    auto formatType = static_cast<unsigned short>(reinterpret_cast<UINT_PTR>(GetPropW(button, kFormatProperty)));
    int accepted = g_formatCheck(nullptr, formatType, text);
    FreeMemory(text);
    if (accepted) setChanged(host, 0);
    else triggerButton(host);
}

const wchar_t* const kToolProperties[] = {kToolProperty, kTool2Property};

void showTools(HWND host, bool show) {
    for (const wchar_t* property : kToolProperties)
        if (HWND tool = toolOf(host, property)) ShowWindow(tool, show ? SW_SHOW : SW_HIDE);
}

void enableTools(HWND host, bool enable) {
    for (const wchar_t* property : kToolProperties)
        if (HWND tool = toolOf(host, property)) EnableWindow(tool, enable);
}

}  // namespace

LRESULT CALLBACK EditFieldProc(HWND host, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CHAR:
        setChanged(host, 1);
        break;
    case WM_KILLFOCUS:
        checkFormat(host);
        break;
    case WM_SYSKEYDOWN:
        if (wParam == VK_DOWN && triggerButton(host)) return 1;
        break;
    case WM_LBUTTONDBLCLK:
        // The button itself reports a click as a double click without the mouse button held;
        // that one goes on to the host's own procedure.
        if ((wParam & MK_LBUTTON) && triggerButton(host)) return 1;
        break;
    case WM_ENABLE:
        enableTools(host, wParam != 0);
        break;
    case WM_SHOWWINDOW:
        showTools(host, wParam != 0);
        break;
    case WM_DESTROY:
        RemovePropW(host, kToolProperty);
        RemovePropW(host, kTool2Property);
        RemovePropW(host, kChangedProperty);
        break;
    }
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, host);
    if (!previous) return 0;
    return CallWindowProcW(previous, host, message, wParam, lParam);
}

HWND __cdecl KxSetDelFormatButton(HWND edit, HWND formatButton, int id) {
    if (!IsWindow(edit) || !IsWindow(formatButton)) return nullptr;
    RECT editRect = RectInParent(edit), formatRect = RectInParent(formatButton);
    int width = formatRect.right - formatRect.left;
    MoveWindow(edit, editRect.left, editRect.top, editRect.right - editRect.left - width,
               editRect.bottom - editRect.top, TRUE);
    RECT moved = formatRect;
    OffsetRect(&moved, -width, 0);
    MoveWindow(formatButton, moved.left, moved.top, width, moved.bottom - moved.top, TRUE);

    HBITMAP bitmap = LoadBitmapW(g_bitmapModule, L"BtnDelFmt");
    HWND button = KxSetEditBtnEx(edit, id + kDeleteButtonIdOffset, bitmap, kDeleteButtonAttr, &moved, 0);
    if (bitmap && (!button || GetPropW(button, kBitmapProperty) != bitmap)) DeleteObject(bitmap);
    if (!button) {
        MoveWindow(edit, editRect.left, editRect.top, editRect.right - editRect.left,
                   editRect.bottom - editRect.top, TRUE);
        MoveWindow(formatButton, formatRect.left, formatRect.top, width,
                   formatRect.bottom - formatRect.top, TRUE);
        return nullptr;
    }
    SetPropW(edit, kTool2Property, button);
    SetWindowPos(button, formatButton, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    return button;
}

HWND KVKIT_CALL KxSetFormatBtn(HWND edit, int id, HBITMAP bitmap, UINT attr, RECT* rect, int ftType) {
    if (!IsWindow(edit)) return nullptr;
    if (HWND existing = GetDlgItem(GetParent(edit), id)) return existing;
    HWND button = KxSetEditBtn(edit, id, bitmap, attr | kFormatButtonAttr, rect);
    if (!button) return nullptr;
    KxSetEditBtnFormatFype(button, ftType);
    HWND deleteButton = KxSetDelFormatButton(edit, button, id);
    if (attr & EBA_SUBCLASS) {
        SendMessageW(edit, EM_LIMITTEXT, kFormatTextLimit, 0);
        SendMessageW(edit, EM_SETREADONLY, TRUE, 0);
    }
    return deleteButton;
}

BOOL KVKIT_CALL KxSetEditBtnFormat_LoadSave(HWND edit, HINSTANCE, int loadId, int saveId,
                                            int ftType, BOOL outside) {
    if (!IsWindow(edit)) return FALSE;
    if (!outside) {
        // Each button takes its width from the edit: save first, so that it ends up rightmost.
        if (saveId > 0 && !KxSetEditBtnEx(edit, saveId, nullptr, kSaveButtonAttr, nullptr, 0))
            return FALSE;
        return KxSetFormatBtn(edit, loadId, nullptr, kLoadSaveFieldAttr, nullptr, ftType) != nullptr;
    }
    HWND deleteButton = KxSetFormatBtn(edit, loadId, nullptr, kLoadSaveFieldAttr | EBA_OUTSIDE,
                                       nullptr, ftType);
    if (saveId < 1) return TRUE;
    // Hosted on the delete button, the save button lands just right of it.
    return KxSetEditBtnEx(deleteButton, saveId, nullptr, kSaveButtonAttr | EBA_OUTSIDE, nullptr, 0) != nullptr;
}
