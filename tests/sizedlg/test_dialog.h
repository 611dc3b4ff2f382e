// Real dialogs from in-memory templates for the resizable-dialog tests. Children are created by
// the dialog manager from the template and then placed in pixels, so that expected rectangles do
// not depend on the dialog font.
#pragma once
#include <windows.h>
#include <iosfwd>
#include <vector>
#include "kvkit_sizedlg.h"

namespace sizedlg_test {

struct TemplateItem {
    const wchar_t* className;
    DWORD style;  // WS_CHILD | WS_VISIBLE are added
    int id;
    const wchar_t* text = L"";
};

// Design client size used by most tests.
const int kDesignWidth = 400;
const int kDesignHeight = 300;

class TestDialog {
public:
    explicit TestDialog(const std::vector<TemplateItem>& items,
                        DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_VISIBLE,
                        HWND parent = nullptr);
    ~TestDialog();
    TestDialog(const TestDialog&) = delete;
    TestDialog& operator=(const TestDialog&) = delete;

    HWND handle() const { return window_; }
    operator HWND() const { return window_; }
    HWND item(int id) const { return GetDlgItem(window_, id); }

    // While on, WM_SIZE goes to KxSizeDlg and WM_SIZING to KxSizingDlg, as a host dialog does.
    void forwardSizing(bool on) { forward_ = on; }
    int sizeMessages() const { return sizeMessages_; }

    // Resizes the window so that its client area gets the given size.
    void setClientSize(int width, int height);
    SIZE clientSize() const;
    SIZE windowSize() const;
    // Places a child in client pixels.
    void place(int id, int left, int top, int right, int bottom);
    // A window's rectangle in the client coordinates of its parent.
    static RECT rectOf(HWND child);
    RECT rect(int id) const { return rectOf(item(id)); }

private:
    static INT_PTR CALLBACK dialogProc(HWND, UINT, WPARAM, LPARAM);
    HWND window_ = nullptr;
    bool forward_ = false;
    int sizeMessages_ = 0;
};

}  // namespace sizedlg_test

// Rectangles compare field by field and print readably.
bool operator==(const RECT& a, const RECT& b);
inline bool operator!=(const RECT& a, const RECT& b) { return !(a == b); }
std::ostream& operator<<(std::ostream& out, const RECT& rect);
inline RECT Rect(int left, int top, int right, int bottom) { return RECT{left, top, right, bottom}; }
