// Window subclass chain: one remembered previous procedure per window, kept in a kvtext cell
// behind the property "OldProc".
#include "core/library.h"
#include "kvtext.h"

namespace {

const wchar_t kOldProcProperty[] = L"OldProc";

// Enter and Space act as a double click on the list box.
LRESULT CALLBACK listBoxReplacementProc(HWND listBox, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_KEYDOWN && (wParam == VK_RETURN || wParam == VK_SPACE)) {
        WORD id = LOWORD(GetWindowLongW(listBox, GWL_ID));
        SendMessageW(GetParent(listBox), WM_COMMAND, MAKEWPARAM(id, LBN_DBLCLK),
                     reinterpret_cast<LPARAM>(listBox));
        return 0;
    }
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, listBox);
    if (!previous) return 0;
    return CallWindowProcW(previous, listBox, message, wParam, lParam);
}

}  // namespace

int KVKIT_CALL Kx1SetSubProc(HWND window, WNDPROC procedure) {
    if (!window) return 0;
    auto* cell = static_cast<WNDPROC*>(GetMemory(sizeof(WNDPROC)));
    if (!cell) return 0;
    // The previous procedure is saved before the new one takes over.
    *cell = reinterpret_cast<WNDPROC>(GetWindowLongW(window, GWL_WNDPROC));
    SetWindowLongW(window, GWL_WNDPROC, reinterpret_cast<LONG>(procedure));
    SetPropW(window, kOldProcProperty, cell);
    return 1;
}

WNDPROC KVKIT_CALL Kx1GetSubProc(int remove, HWND window) {
    if (!window) return nullptr;
    if (!remove) {
        auto* cell = static_cast<WNDPROC*>(GetPropW(window, kOldProcProperty));
        return cell ? *cell : nullptr;
    }
    auto* cell = static_cast<WNDPROC*>(RemovePropW(window, kOldProcProperty));
    if (!cell || !*cell) return nullptr;
    WNDPROC previous = *cell;
    SetWindowLongW(window, GWL_WNDPROC, reinterpret_cast<LONG>(previous));
    FreeMemory(cell);
    return previous;
}

int KVKIT_CALL Kx1SetListBoxProc(HWND listBox) { return Kx1SetSubProc(listBox, listBoxReplacementProc); }
