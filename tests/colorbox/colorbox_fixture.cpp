// Helpers of the colour box tests, and a warm-up that runs the menu, the colour dialog, the caret
// and the clipboard once before the first test, so that the system objects they leave cached do
// not count as left behind by the first test that uses them.
#include "colorbox_fixture.h"
#include <string.h>

namespace colorbox_test {

const COLORREF kDefaults[20] = {0xFFFFFF, 0xFFFF00, 0xFF00FF, 0xFF0000, 0x00FFFF, 0x00FF00, 0x0000FF,
                                0x808080, 0xC0C0C0, 0x808000, 0x800080, 0x800000, 0x008080, 0x008000,
                                0x000080, 0x000000, 0xC0DCC0, 0xF0CAA6, 0xF0FBFF, 0xA4A0A0};

void PressKey(HWND window, UINT key) {
    PostMessageW(window, WM_KEYDOWN, key, 1);
    PostMessageW(window, WM_KEYUP, key, 0xC0000001);
    kvtest::PumpMessages();
}

void PostMouse(HWND window, UINT message, POINT point, WPARAM keys) {
    PostMessageW(window, message, keys, MAKELPARAM(point.x, point.y));
    kvtest::PumpMessages();
}

POINT CentreOf(const RECT& rect) { return POINT{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}; }

RECT CellRectOf(HWND box, int index) {
    const ColorBoxRecord& record = *Record(box);
    int size = record.cellSize, columns = record.columns;
    bool automatic = record.flags & KXCB_AUTOCELL;
    if (automatic && index == 0) return RECT{0, 0, columns * size, size};
    int place = automatic ? index - 1 + columns : index;
    int left = place % columns * size, top = place / columns * size;
    return RECT{left, top, left + size, top + size};
}

RECT RectInParent(HWND window) {
    RECT rect;
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

std::vector<COLORREF> PopupPixels(HWND popup, int* width) {
    RECT client;
    GetClientRect(popup, &client);
    kvtest::Canvas canvas(client.right, client.bottom, kMagenta);
    SendMessageW(popup, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < client.bottom; ++y)
        for (int x = 0; x < client.right; ++x) pixels.push_back(canvas.pixel(x, y));
    *width = client.right;
    return pixels;
}

// --- modal loops --------------------------------------------------------------------------------

ModalDriver* ModalDriver::current_;

ModalDriver::ModalDriver(const wchar_t* className, Action action)
    : className_(className), action_(std::move(action)), start_(GetTickCount()) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, 30, tick);
}

ModalDriver::~ModalDriver() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
}

namespace {
struct ThreadWindowSearch {
    const wchar_t* className;
    HWND found;
};

BOOL CALLBACK matchThreadWindow(HWND window, LPARAM data) {
    auto* search = reinterpret_cast<ThreadWindowSearch*>(data);
    wchar_t name[64];
    if (IsWindowVisible(window) && GetClassNameW(window, name, 64) && lstrcmpW(name, search->className) == 0) {
        search->found = window;
        return FALSE;
    }
    return TRUE;
}
}  // namespace

void CALLBACK ModalDriver::tick(HWND, UINT, UINT_PTR, DWORD) {
    ModalDriver* self = current_;
    if (!self) return;
    ThreadWindowSearch search = {self->className_, nullptr};
    EnumThreadWindows(GetCurrentThreadId(), matchThreadWindow, reinterpret_cast<LPARAM>(&search));
    DWORD now = GetTickCount();
    if (search.found && !self->acted_ && self->action_(search.found)) {
        self->acted_ = true;
        self->actedAt_ = now;
        return;
    }
    bool overdue = self->acted_ ? now - self->actedAt_ > 3000 : now - self->start_ > 5000;
    if (search.found && overdue) {  // end the modal loop rather than hang
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
        choice.copyState = GetMenuState(menu, KXCB_COMMAND_COPY, MF_BYCOMMAND);
        choice.pasteState = GetMenuState(menu, KXCB_COMMAND_PASTE, MF_BYCOMMAND);
        int position = -1;
        for (int i = 0; i < GetMenuItemCount(menu); ++i)
            if (GetMenuItemID(menu, i) == static_cast<UINT>(command)) position = i;
        if (position < 0) {
            EndMenu();
            return true;
        }
        // The menu's own loop takes the keys from the thread's queue.
        for (int i = 0; i <= position; ++i) PostMessageW(menuWindow, WM_KEYDOWN, VK_DOWN, 0);
        PostMessageW(menuWindow, WM_KEYDOWN, VK_RETURN, 0);
        return true;
    });
    PostMouse(window, WM_RBUTTONDOWN, point, MK_RBUTTON);
    PostMouse(window, WM_RBUTTONUP, point);
    return choice;
}

std::function<bool(HWND)> AnswerColourDialog(ColourDialogAnswer* answer, bool accept, COLORREF colour) {
    // The red, green and blue fields of the full colour dialog.
    const int kRed = 706, kGreen = 707, kBlue = 708;
    return [=](HWND dialog) {
        answer->shown = true;
        answer->initial = RGB(GetDlgItemInt(dialog, kRed, nullptr, FALSE),
                              GetDlgItemInt(dialog, kGreen, nullptr, FALSE),
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
// Formats whose data are GDI objects or metafiles, not memory.
bool isMemoryFormat(UINT format) {
    switch (format) {
    case CF_BITMAP:
    case CF_DSPBITMAP:
    case CF_PALETTE:
    case CF_METAFILEPICT:
    case CF_DSPMETAFILEPICT:
    case CF_ENHMETAFILE:
    case CF_DSPENHMETAFILE:
    case CF_OWNERDISPLAY:
        return false;
    }
    return true;
}

UINT colourFormat() { return RegisterClipboardFormatW(L"szClipBoard_Color"); }
}  // namespace

ClipboardKeeper::ClipboardKeeper() {
    if (!OpenClipboard(nullptr)) return;
    for (UINT format = EnumClipboardFormats(0); format; format = EnumClipboardFormats(format)) {
        if (!isMemoryFormat(format)) continue;
        HANDLE data = GetClipboardData(format);
        const BYTE* bytes = data ? static_cast<const BYTE*>(GlobalLock(data)) : nullptr;
        if (!bytes) continue;
        saved_.push_back({format, std::vector<BYTE>(bytes, bytes + GlobalSize(data))});
        GlobalUnlock(data);
    }
    CloseClipboard();
}

ClipboardKeeper::~ClipboardKeeper() {
    if (!OpenClipboard(nullptr)) return;
    EmptyClipboard();
    for (const Entry& entry : saved_) {
        HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, entry.bytes.size());
        if (!data) continue;
        memcpy(GlobalLock(data), entry.bytes.data(), entry.bytes.size());
        GlobalUnlock(data);
        if (!SetClipboardData(entry.format, data)) GlobalFree(data);
    }
    CloseClipboard();
}

void PutColourOnClipboard(COLORREF colour) {
    HGLOBAL data = GlobalAlloc(GMEM_MOVEABLE, sizeof(COLORREF));
    *static_cast<COLORREF*>(GlobalLock(data)) = colour;
    GlobalUnlock(data);
    OpenClipboard(nullptr);
    EmptyClipboard();
    if (!SetClipboardData(colourFormat(), data)) GlobalFree(data);
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
        HWND box = host.createChild(L"szColorBoxClass", L"", WS_VISIBLE | KXCBS_MORECOLORS, 10, 10,
                                    120, 22, kBoxId);
        SendMessageW(box, CBM_SETSEL, 1, 0);
        PressKey(box, VK_DOWN);
        HWND popup = Record(box)->popup;
        PressKey(popup, VK_RIGHT);
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
