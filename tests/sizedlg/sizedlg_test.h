// Helpers of the resizable-dialog tests: real dialogs from in-memory templates that hand WM_SIZE
// to the engine, and rectangles of windows.
#pragma once
#include <ostream>
#include "kvtest.h"
#include "kvkit_sizedlg.h"

inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}
inline RECT Rect(int left, int top, int right, int bottom) { return RECT{left, top, right, bottom}; }

namespace sizedlg_test {

inline RECT windowRect(HWND window) {
    RECT rect;
    GetWindowRect(window, &rect);
    return rect;
}

// In the client coordinates of the parent.
inline RECT rectOf(HWND window) {
    RECT rect = windowRect(window);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

// A real modeless dialog, made from an in-memory template, resized to a 400 x 300 client area,
// the design size of every test. Its dialog procedure hands WM_SIZE to the engine, as a host's
// dialog procedure does, unless told not to.
class Dialog {
public:
    explicit Dialog(DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE) {
        struct {
            DLGTEMPLATE header;
            WORD menu, windowClass, title;  // none, the dialog class, no title
        } dialogTemplate = {};
        dialogTemplate.header.style = style;
        dialogTemplate.header.cx = 200;
        dialogTemplate.header.cy = 150;
        window_ = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &dialogTemplate.header,
                                             nullptr, dialogProc, reinterpret_cast<LPARAM>(this));
        resize(400, 300);
        kvtest::PumpMessages();
    }
    ~Dialog() {
        if (IsWindow(window_)) DestroyWindow(window_);
        kvtest::PumpMessages();
    }
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    HWND handle() const { return window_; }
    operator HWND() const { return window_; }
    void forwardSizeMessages(bool forward) { forwardSize_ = forward; }

    // By default at the rectangle that the tests design their children at.
    HWND add(const wchar_t* className, DWORD style, int id, RECT r = {41, 61, 143, 87}) {
        HWND child = CreateWindowExW(0, className, L"", style | WS_CHILD | WS_VISIBLE, r.left,
                                     r.top, r.right - r.left, r.bottom - r.top, window_,
                                     reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                     GetModuleHandleW(nullptr), nullptr);
        SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
        return child;
    }
    RECT rect(int id) const { return rectOf(GetDlgItem(window_, id)); }
    // Gives the client area this size; the layout pass follows from WM_SIZE.
    void resize(int width, int height) {
        RECT client, frame = windowRect(window_);
        GetClientRect(window_, &client);
        SetWindowPos(window_, nullptr, 0, 0, frame.right - frame.left - client.right + width,
                     frame.bottom - frame.top - client.bottom + height, SWP_NOMOVE | SWP_NOZORDER);
    }

private:
    static INT_PTR CALLBACK dialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == WM_INITDIALOG) {
            SetWindowLongPtrW(window, DWLP_USER, lParam);
            return TRUE;
        }
        auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
        if (message == WM_SIZE && self && self->forwardSize_)
            KxSizeDlg(window, static_cast<UINT>(wParam), lParam);
        return FALSE;
    }

    HWND window_ = nullptr;
    bool forwardSize_ = true;
};

}  // namespace sizedlg_test
