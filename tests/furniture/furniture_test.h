// Helpers of the window furniture tests: rectangles, the work area, windows of a class, and the
// pixels a window paints for WM_PRINTCLIENT.
#pragma once
#include <ostream>
#include <vector>
#include "kvtest.h"

inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

namespace furniture_test {

inline RECT windowRect(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    return rect;
}

inline SIZE clientSize(HWND window) {
    RECT rect = {};
    GetClientRect(window, &rect);
    return SIZE{rect.right, rect.bottom};
}

inline RECT workArea() {
    RECT area;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return area;
}

struct ClassSearch {
    const wchar_t* name;
    std::vector<HWND> found;
};

inline BOOL CALLBACK collectOfClass(HWND window, LPARAM data) {
    auto* search = reinterpret_cast<ClassSearch*>(data);
    wchar_t name[64];
    if (GetClassNameW(window, name, 64) && lstrcmpiW(name, search->name) == 0)
        search->found.push_back(window);
    return TRUE;
}

// The top-level windows of this thread of the given class.
inline std::vector<HWND> windowsOfClass(const wchar_t* className) {
    ClassSearch search = {className, {}};
    EnumThreadWindows(GetCurrentThreadId(), collectOfClass, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

// What the window paints into its client area, through WM_PRINTCLIENT.
inline std::vector<COLORREF> printedClient(HWND window, int* width, int* height) {
    SIZE size = clientSize(window);
    kvtest::Canvas canvas(size.cx, size.cy, RGB(1, 2, 3));
    SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x) pixels.push_back(canvas.pixel(x, y));
    *width = size.cx;
    *height = size.cy;
    return pixels;
}

// Text extent of `text` in the window's font (WM_GETFONT), as DrawText lays it out.
inline SIZE textExtent(HWND window, const wchar_t* text, int maxWidth, UINT format) {
    HDC dc = GetDC(window);
    auto font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    HGDIOBJ old = SelectObject(dc, font ? font : GetStockObject(DEFAULT_GUI_FONT));
    RECT bounds = {0, 0, maxWidth, 0};
    DrawTextW(dc, text, -1, &bounds, format | DT_CALCRECT);
    SelectObject(dc, old);
    ReleaseDC(window, dc);
    return SIZE{bounds.right, bounds.bottom};
}

// The horizontal gradient the library draws, painted by its own gradient export.
std::vector<COLORREF> gradientRow(COLORREF from, COLORREF to, int width, int height, int row);

// Base fixture: the first use of tooltips, system icons and caption fonts fills system caches
// that stay; that happens once, before the first test counts its objects.
class FurnitureTest : public kvtest::KvTest {
public:
    static void SetUpTestSuite();
};

}  // namespace furniture_test
