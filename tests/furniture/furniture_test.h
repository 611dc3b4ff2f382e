// Helpers of the window furniture tests.
#pragma once
#include <ostream>
#include <vector>
#include "kvtest.h"

inline bool operator==(const RECT& a, const RECT& b) { return EqualRect(&a, &b) != 0; }
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

namespace furniture_test {

RECT windowRect(HWND window);
SIZE clientSize(HWND window);
RECT workArea();
// The top-level windows of the given class.
std::vector<HWND> windowsOfClass(const wchar_t* className);
// What the window paints into its client area for WM_PRINTCLIENT, row by row.
std::vector<COLORREF> printedClient(HWND window);
// Size of `text` laid out by DrawText in the window's font.
SIZE textExtent(HWND window, const wchar_t* text, int maxWidth);
// One row of the horizontal gradient the library's gradient export draws.
std::vector<COLORREF> gradientRow(COLORREF from, COLORREF to, int width, int height, int row);
// A window that is gone.
HWND DestroyedWindow();

// The first hint, bubble and caption fill system caches that stay (the tooltip class, shared
// icons, fonts); that happens once, before the first test counts what it leaves behind.
class FurnitureTest : public kvtest::KvTest {
public:
    static void SetUpTestSuite();
};

}  // namespace furniture_test
