// Helpers of the colour box tests, and a warm-up that runs the menu, the colour dialog, the caret
// and the clipboard once before the first test, so that what the system keeps cached from them
// does not count as left behind by the first test that uses them.
#include "colorbox_fixture.h"
#include <string.h>

namespace colorbox_test {

const COLORREF kDefaults[20] = {0xFFFFFF, 0xFFFF00, 0xFF00FF, 0xFF0000, 0x00FFFF, 0x00FF00, 0x0000FF,
                                0x808080, 0xC0C0C0, 0x808000, 0x800080, 0x800000, 0x008080, 0x008000,
                                0x000080, 0x000000, 0xC0DCC0, 0xF0CAA6, 0xF0FBFF, 0xA4A0A0};

RECT RectInParent(HWND window) {
    RECT rect;
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

::testing::AssertionResult IsAt(HWND window, RECT expected) {
    RECT actual = RectInParent(window);
    if (EqualRect(&actual, &expected)) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "at (" << actual.left << ", " << actual.top << ", "
                                         << actual.right << ", " << actual.bottom << ")";
}

RECT CellRectOf(HWND box, int index) {
    const ColorBoxRecord& record = *Record(box);
    int size = record.cellSize, columns = record.columns;
    bool automatic = record.flags & KXCB_AUTOCELL;
    if (automatic && index == 0) return RECT{0, 0, columns * size, size};
    int place = automatic ? index - 1 + columns : index;
    int left = place % columns * size, top = place / columns * size;
    return RECT{left, top, left + size, top + size};
}

void PressKey(HWND window, UINT key) {
    PostMessageW(window, WM_KEYDOWN, key, 1);
    PostMessageW(window, WM_KEYUP, key, 0xC0000001);
    kvtest::PumpMessages();
}

void PostMouse(HWND window, UINT message, POINT point, WPARAM keys) {
    PostMessageW(window, message, keys, MAKELPARAM(point.x, point.y));
    kvtest::PumpMessages();
}

// --- modal loops --------------------------------------------------------------------------------

ModalDriver* ModalDriver::current_;

ModalDriver::ModalDriver(const wchar_t* className, std::function<bool(HWND)> action)
    : className_(className), action_(std::move(action)), start_(GetTickCount()) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, 30, tick);
}

ModalDriver::~ModalDriver() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
}

namespace {
struct WindowSearch {
    const wchar_t* className;
    HWND found;
};

BOOL CALLBACK matchWindow(HWND window, LPARAM data) {
    auto* search = reinterpret_cast<WindowSearch*>(data);
    wchar_t name[64];
    if (!IsWindowVisible(window) || !GetClassNameW(window, name, 64) || lstrcmpW(name, search->className)) return TRUE;
    search->found = window;
    return FALSE;
}
}  // namespace

void CALLBACK ModalDriver::tick(HWND, UINT, UINT_PTR, DWORD) {
    ModalDriver* self = current_;
    if (!self) return;
    WindowSearch search = {self->className_, nullptr};
    EnumThreadWindows(GetCurrentThreadId(), matchWindow, reinterpret_cast<LPARAM>(&search));
    DWORD now = GetTickCount();
    if (search.found && !self->acted_ && self->action_(search.found)) {
        self->acted_ = true;
        self->actedAt_ = now;
    } else if (search.found && (self->acted_ ? now - self->actedAt_ > 3000 : now - self->start_ > 5000)) {
        EndMenu();
        PostMessageW(search.found, WM_COMMAND, IDCANCEL, 0);
    }
}

MenuChoice RightClickMenu(HWND window, POINT point, int command) {
    MenuChoice choice;
    ModalDriver driver(L"#32768", [&](HWND menuWindow) {
        auto menu = reinterpret_cast<HMENU>(SendMessageW(menuWindow, MN_GETHMENU, 0, 0));
        if (!menu) return false;
        choice.shown = true;
        choice.canCopy = !(GetMenuState(menu, KXCB_COMMAND_COPY, MF_BYCOMMAND) & MF_GRAYED);
        choice.canPaste = !(GetMenuState(menu, KXCB_COMMAND_PASTE, MF_BYCOMMAND) & MF_GRAYED);
        // The menu's loop takes keys from the thread's queue: down to the item, then Enter.
        int count = GetMenuItemCount(menu), position = 0;
        while (position < count && GetMenuItemID(menu, position) != static_cast<UINT>(command)) ++position;
        if (position == count) {
            EndMenu();
            return true;
        }
        for (int i = 0; i <= position; ++i) PostMessageW(menuWindow, WM_KEYDOWN, VK_DOWN, 0);
        PostMessageW(menuWindow, WM_KEYDOWN, VK_RETURN, 0);
        return true;
    });
    PostMouse(window, WM_RBUTTONDOWN, point, MK_RBUTTON);
    PostMouse(window, WM_RBUTTONUP, point);
    return choice;
}

std::function<bool(HWND)> AnswerColourDialog(ColourDialogAnswer* answer, bool accept, COLORREF colour) {
    const int kRed = 706, kGreen = 707, kBlue = 708;  // the full dialog's colour fields
    return [=](HWND dialog) {
        answer->initial = RGB(GetDlgItemInt(dialog, kRed, nullptr, FALSE), GetDlgItemInt(dialog, kGreen, nullptr, FALSE),
                              GetDlgItemInt(dialog, kBlue, nullptr, FALSE));
        if (accept) {
            SetDlgItemInt(dialog, kRed, GetRValue(colour), FALSE);
            SetDlgItemInt(dialog, kGreen, GetGValue(colour), FALSE);
            SetDlgItemInt(dialog, kBlue, GetBValue(colour), FALSE);
        }
        PostMessageW(dialog, WM_COMMAND, accept ? IDOK : IDCANCEL, 0);
        return true;
    };
}

// --- clipboard ----------------------------------------------------------------------------------

namespace {
UINT colourFormat() { return RegisterClipboardFormatW(L"szClipBoard_Color"); }

void putOnClipboard(UINT format, const void* bytes, size_t size) {
    HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, size);
    memcpy(GlobalLock(data), bytes, size);
    GlobalUnlock(data);
    if (!SetClipboardData(format, data)) GlobalFree(data);
}
}  // namespace

ClipboardKeeper::ClipboardKeeper() {
    if (!OpenClipboard(nullptr)) return;
    for (UINT format = EnumClipboardFormats(0); format; format = EnumClipboardFormats(format)) {
        bool handles = format == CF_BITMAP || format == CF_PALETTE || format == CF_METAFILEPICT ||
                       format == CF_ENHMETAFILE || (format >= CF_OWNERDISPLAY && format <= CF_DSPENHMETAFILE);
        HANDLE data = handles ? nullptr : GetClipboardData(format);
        auto* bytes = data ? static_cast<const BYTE*>(GlobalLock(data)) : nullptr;
        if (!bytes) continue;
        saved_.emplace_back(format, std::vector<BYTE>(bytes, bytes + GlobalSize(data)));
        GlobalUnlock(data);
    }
    CloseClipboard();
}

ClipboardKeeper::~ClipboardKeeper() {
    if (!OpenClipboard(nullptr)) return;
    EmptyClipboard();
    for (const auto& entry : saved_) putOnClipboard(entry.first, entry.second.data(), entry.second.size());
    CloseClipboard();
}

void PutColourOnClipboard(COLORREF colour) {
    OpenClipboard(nullptr);
    EmptyClipboard();
    putOnClipboard(colourFormat(), &colour, sizeof(colour));
    CloseClipboard();
}

bool ColourOnClipboard(COLORREF* colour) {
    if (!OpenClipboard(nullptr)) return false;
    HANDLE data = GetClipboardData(colourFormat());
    bool found = data && GlobalSize(data) >= sizeof(COLORREF);
    if (found) {
        *colour = *static_cast<const COLORREF*>(GlobalLock(data));
        GlobalUnlock(data);
    }
    CloseClipboard();
    return found;
}

// --- warm-up ------------------------------------------------------------------------------------

namespace {
class ColourBoxWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        ClipboardKeeper keeper;
        kvtest::HostWindow host;
        HWND box = host.createChild(L"szColorBoxClass", L"", WS_VISIBLE | KXCBS_MORECOLORS, 10, 10, 120, 22, kBoxId);
        SendMessageW(box, CBM_SETSEL, 1, 0);
        PressKey(box, VK_DOWN);
        HWND popup = Record(box)->popup;
        {
            ColourDialogAnswer answer;
            ModalDriver driver(L"#32770", AnswerColourDialog(&answer, false));
            PostMessageW(popup, WM_SYSCHAR, '.', 0);
            kvtest::PumpMessages();
        }
        PressKey(popup, VK_ESCAPE);
        RightClickMenu(box, POINT{10, 10}, KXCB_COMMAND_COPY);
        RightClickMenu(box, POINT{10, 10}, KXCB_COMMAND_PASTE);
        DestroyWindow(box);
        kvtest::PumpFor(100);
    }
};

::testing::Environment* const kWarmUp = ::testing::AddGlobalTestEnvironment(new ColourBoxWarmUp);
}  // namespace

}  // namespace colorbox_test
