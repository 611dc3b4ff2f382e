// Helpers of the colour box tests: boxes on a host window, keys and clicks posted as the user's
// would arrive, a driver for the modal menu and colour dialog, and a keeper of the clipboard.
#pragma once
#include <functional>
#include <vector>
#include "kvtest.h"
#include "kvkit_colorbox.h"

namespace colorbox_test {

const int kBoxId = 700;
const COLORREF kMagenta = RGB(255, 0, 255);

// The twenty colours a new box starts with.
extern const COLORREF kDefaults[20];

inline ColorBoxRecord* Record(HWND box) {
    return reinterpret_cast<ColorBoxRecord*>(GetWindowLongPtrW(box, GWLP_USERDATA));
}

// Posts a key press to the window and dispatches it.
void PressKey(HWND window, UINT key);
// Posts a mouse message at a point of the window's client area and dispatches it.
void PostMouse(HWND window, UINT message, POINT point, WPARAM keys = 0);
POINT CentreOf(const RECT& rect);
inline bool SameRect(const RECT& a, const RECT& b) { return EqualRect(&a, &b) != 0; }
// The cell's rectangle in the popup, from the record the box keeps.
RECT CellRectOf(HWND box, int index);
// The window's rectangle in its parent's client coordinates.
RECT RectInParent(HWND window);
// The popup painted into a canvas of its client size.
std::vector<COLORREF> PopupPixels(HWND popup, int* width);

class ColorBoxTest : public kvtest::KvTest {
protected:
    HWND createBox(DWORD style = 0, int x = 150, int y = 20, int width = 120, int height = 22,
                   int id = kBoxId) {
        return host_.createChild(L"szColorBoxClass", L"", WS_VISIBLE | WS_TABSTOP | style, x, y,
                                 width, height, id);
    }
    // Opens the popup with the Down key, as the user does.
    HWND open(HWND box) {
        PressKey(box, VK_DOWN);
        return Record(box)->popup;
    }
    // The values of the notifications the box posted to the host, in order.
    std::vector<LPARAM> chosen(int id = kBoxId) const {
        std::vector<LPARAM> values;
        for (const kvtest::RecordedMessage& m : host_.messages(KXCBN_CHOSEN))
            if (static_cast<int>(m.wParam) == id) values.push_back(m.lParam);
        return values;
    }

    kvtest::HostWindow host_;
};

// Acts on the next menu ("#32768") or dialog ("#32770") that this thread opens, from a thread
// timer that runs inside the modal loop. The action gets the window and returns true once it
// has done its part. Whatever happens, the modal loop is ended a few seconds later, so that a
// failing test cannot hang.
class ModalDriver {
public:
    using Action = std::function<bool(HWND)>;
    ModalDriver(const wchar_t* className, Action action);
    ~ModalDriver();
    ModalDriver(const ModalDriver&) = delete;
    ModalDriver& operator=(const ModalDriver&) = delete;
    bool acted() const { return acted_; }

private:
    static void CALLBACK tick(HWND, UINT, UINT_PTR, DWORD);
    static ModalDriver* current_;
    const wchar_t* className_;
    Action action_;
    UINT_PTR timer_;
    DWORD start_;
    DWORD actedAt_ = 0;
    bool acted_ = false;
};

// The state of the context menu's items when it showed, and a command to pick (0: none).
struct MenuChoice {
    UINT copyState = 0xFFFFFFFF;
    UINT pasteState = 0xFFFFFFFF;
    bool shown = false;
};
// Opens the context menu of a box or popup with a right click at `point` and picks `command`.
MenuChoice RightClickMenu(HWND window, POINT point, int command);

// The system colour dialog's RGB fields and what the driver read from them.
struct ColourDialogAnswer {
    COLORREF initial = 0xFFFFFFFF;  // the colour the dialog started with
    bool shown = false;
};
// Answers the next colour dialog: reads its starting colour, enters `colour` and presses OK,
// or presses Cancel when `accept` is false.
std::function<bool(HWND)> AnswerColourDialog(ColourDialogAnswer* answer, bool accept,
                                             COLORREF colour = 0);

// Keeps what the clipboard holds (its memory formats) and puts it back when it goes.
class ClipboardKeeper {
public:
    ClipboardKeeper();
    ~ClipboardKeeper();

private:
    struct Entry {
        UINT format;
        std::vector<BYTE> bytes;
    };
    std::vector<Entry> saved_;
};

// Puts one colour on the clipboard in the boxes' format; reads it back (false when absent).
void PutColourOnClipboard(COLORREF colour);
bool ColourOnClipboard(COLORREF* colour);

}  // namespace colorbox_test
