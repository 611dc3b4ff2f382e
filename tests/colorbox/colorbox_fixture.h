// Helpers of the colour box tests: boxes on a host window, keys and clicks posted as the user's
// arrive, a driver for the modal menu and colour dialog, and a keeper of the clipboard.
#pragma once
#include <functional>
#include <vector>
#include "kvtest.h"
#include "kvkit_colorbox.h"

namespace colorbox_test {

const int kBoxId = 700;
extern const COLORREF kDefaults[20];  // the colours a new box starts with

inline ColorBoxRecord* Record(HWND box) {
    return reinterpret_cast<ColorBoxRecord*>(GetWindowLongPtrW(box, GWLP_USERDATA));
}
inline POINT CentreOf(const RECT& r) { return POINT{(r.left + r.right) / 2, (r.top + r.bottom) / 2}; }
// The window's rectangle in its parent's client area, and a check of it.
RECT RectInParent(HWND window);
::testing::AssertionResult IsAt(HWND window, RECT expected);
// The cell's rectangle in the popup.
RECT CellRectOf(HWND box, int index);
// Posts a key press or a mouse message (at a client point) and dispatches it.
void PressKey(HWND window, UINT key);
void PostMouse(HWND window, UINT message, POINT point, WPARAM keys = 0);

class ColorBoxTest : public kvtest::KvTest {
protected:
    HWND createBox(DWORD style = 0, int x = 150, int y = 20, int width = 120, int id = kBoxId) {
        return host_.createChild(L"szColorBoxClass", L"", WS_VISIBLE | WS_TABSTOP | style, x, y,
                                 width, 22, id);
    }
    // Opens the popup with the Down key.
    HWND open(HWND box) {
        PressKey(box, VK_DOWN);
        return Record(box)->popup;
    }
    // The values the box's notifications brought the host, in order.
    std::vector<LPARAM> chosen(int id = kBoxId) const {
        std::vector<LPARAM> values;
        for (const kvtest::RecordedMessage& m : host_.messages(KXCBN_CHOSEN))
            if (static_cast<int>(m.wParam) == id) values.push_back(m.lParam);
        return values;
    }
    kvtest::HostWindow host_;
};

// Acts on the next menu ("#32768") or dialog ("#32770") of this thread from a thread timer,
// which runs inside the modal loop; the action returns true once it has done its part. The loop
// is ended a few seconds later whatever happens, so that a failing test cannot hang.
class ModalDriver {
public:
    ModalDriver(const wchar_t* className, std::function<bool(HWND)> action);
    ~ModalDriver();
    bool acted() const { return acted_; }

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD);
    static ModalDriver* current_;
    const wchar_t* className_;
    std::function<bool(HWND)> action_;
    UINT_PTR timer_;
    DWORD start_, actedAt_ = 0;
    bool acted_ = false;
};

// Right-clicks the box or popup at a client point, records the menu's item states and picks
// `command` (0: none).
struct MenuChoice {
    bool shown = false;
    bool canCopy = false;
    bool canPaste = false;
};
MenuChoice RightClickMenu(HWND window, POINT point, int command);

// Answers the colour dialog: notes the colour it starts with, then enters `colour` and presses OK,
// or presses Cancel.
struct ColourDialogAnswer {
    COLORREF initial = 0xFFFFFFFF;
};
std::function<bool(HWND)> AnswerColourDialog(ColourDialogAnswer* answer, bool accept, COLORREF colour = 0);

// Keeps what the clipboard holds (its memory formats) and puts it back when it goes.
class ClipboardKeeper {
public:
    ClipboardKeeper();
    ~ClipboardKeeper();

private:
    std::vector<std::pair<UINT, std::vector<BYTE>>> saved_;
};
// One colour on the clipboard in the boxes' format, and reading it back.
void PutColourOnClipboard(COLORREF colour);
bool ColourOnClipboard(COLORREF* colour);

}  // namespace colorbox_test
