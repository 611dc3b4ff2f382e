// Helpers of the resizable-dialog tests: a host window that hands WM_SIZE to the engine as a
// dialog procedure does, and rectangles of windows.
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

// A resizable window with a 400 x 300 client area, the design size of every test.
class Dialog : public kvtest::HostWindow {
public:
    explicit Dialog(DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE) : HostWindow(400, 300, style) {
        setHandler([](HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT*) {
            if (message == WM_SIZE) KxSizeDlg(window, static_cast<UINT>(wParam), lParam);
            return false;
        });
    }
    // By default at the rectangle that the tests design their children at.
    HWND add(const wchar_t* className, DWORD style, int id, RECT r = {41, 61, 143, 87}) {
        return createChild(className, L"", style | WS_VISIBLE, r.left, r.top, r.right - r.left,
                           r.bottom - r.top, id);
    }
    RECT rect(int id) const { return rectOf(GetDlgItem(handle(), id)); }
    // Gives the client area this size; the layout pass follows from WM_SIZE.
    void resize(int width, int height) {
        RECT client, frame = windowRect(handle());
        GetClientRect(handle(), &client);
        SetWindowPos(handle(), nullptr, 0, 0, frame.right - frame.left - client.right + width,
                     frame.bottom - frame.top - client.bottom + height, SWP_NOMOVE | SWP_NOZORDER);
    }
};

}  // namespace sizedlg_test
