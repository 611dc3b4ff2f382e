// Arrow-button scrollers (a page counter at both ends of its range, stacked arrows, and overlays
// laid along the edges of a picture) and colour boxes: closed, open with an automatic cell and
// the more-colours button, and the pattern variant open. Extra screenshots show the popups.
#include "gallery/gallery.h"
#include "kvtext.h"
#include "kvkit_colorbox.h"
#include "kvkit_draw.h"
#include "kvkit_scroll.h"

namespace {

HFONT guiFont() { return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT)); }

wchar_t* kvString(const wchar_t* text) {
    int bytes = (lstrlenW(text) + 1) * sizeof(wchar_t);
    auto* copy = static_cast<wchar_t*>(GetMemory(bytes));
    if (copy) CopyMemory(copy, text, bytes);
    return copy;
}

HWND pageCounter(HWND page, int id, int x, int y, int current, int pages) {
    wchar_t text[40];
    wsprintfW(text, L"Page %d of %d", current, pages);
    HWND counter = KVScroll_CreateWindow(page, id, x, y, 170, 22, KVS_REPEAT, nullptr,
                                         kvString(text), guiFont(), 0, 0);
    KVScroll_SetScrollRange(counter, SB_CTL, 1, pages, FALSE);
    KVScroll_SetScrollPos(counter, SB_CTL, current, TRUE);
    return counter;
}

void paintPicture(HDC dc, const RECT& client) {
    RECT area = client;
    Kx1GradientFill(dc, RGB(40, 90, 160), RGB(230, 200, 120), 0, 1, &area);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(255, 255, 255));
    HGDIOBJ previous = SelectObject(dc, guiFont());
    DrawTextW(dc, L"A picture beneath two overlays", -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(dc, previous);
}

HWND colourBox(HWND page, int id, DWORD style, int x, int y, int width) {
    HWND box = CreateWindowExW(0, L"szColorBoxClass", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | style, x, y,
                               width, 22, page, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                               GetModuleHandleW(nullptr), nullptr);
    return box;
}

void showPopup(HWND page, HWND box, const wchar_t* screenshot) {
    SendMessageW(box, WM_KEYDOWN, VK_DOWN, 0);
    PumpFor(100);
    SaveScreenshot(page, screenshot);
    auto* record = reinterpret_cast<ColorBoxRecord*>(GetWindowLongPtrW(box, GWLP_USERDATA));
    if (record && record->popup) SendMessageW(record->popup, WM_KEYDOWN, VK_ESCAPE, 0);
    PumpFor(50);
}

void build(HWND page) {
    AddLabel(page, 10, 10, 250, 16, L"Page counter, held arrows repeat:");
    pageCounter(page, 300, 10, 30, 3, 12);
    pageCounter(page, 301, 10, 60, 12, 12);
    AddLabel(page, 190, 64, 80, 16, L"at the end");
    AddLabel(page, 10, 92, 170, 16, L"Stacked arrows (no text):");
    HWND stacked = KVScroll_CreateWindow(page, 302, 190, 88, 18, 32, KVS_NOTEXT | KVS_VERTICAL,
                                         nullptr, nullptr, nullptr, 0, 0);
    KVScroll_SetScrollRange(stacked, SB_CTL, 0, 9, FALSE);
    KVScroll_SetScrollPos(stacked, SB_CTL, 4, TRUE);

    AddLabel(page, 10, 130, 250, 16, L"Overlays at the bottom and right edges:");
    RECT picture = {10, 150, 270, 330};
    CreatePaintedPanel(page, picture.left, picture.top, picture.right - picture.left,
                       picture.bottom - picture.top, paintPicture);
    HWND bottom = KVScroll_CreateWindow(page, 303, 0, 0, 20, 20, KVS_OVERLAY | KVS_ALIGNFAR, nullptr,
                                        nullptr, nullptr, 0, 0);
    KVScroll_UpdWndPos(bottom, &picture, 0);
    KVScroll_SetScrollRange(bottom, SB_CTL, 0, 5, FALSE);
    KVScroll_SetScrollPos(bottom, SB_CTL, 2, TRUE);
    HWND right = KVScroll_CreateWindow(page, 304, 0, 0, 20, 20,
                                       KVS_OVERLAY | KVS_VERTICAL | KVS_ALIGNFAR | KVS_HIDEDISABLED,
                                       nullptr, nullptr, nullptr, 0, 0);
    RECT rightEdge = picture;
    rightEdge.bottom -= 24;  // clear of the bottom overlay
    KVScroll_UpdWndPos(right, &rightEdge, 0);
    KVScroll_SetScrollRange(right, SB_CTL, 0, 5, FALSE);
    KVScroll_SetScrollPos(right, SB_CTL, 5, TRUE);  // at the end: the lower arrow is hidden

    AddLabel(page, 300, 10, 150, 16, L"Colour box:");
    HWND plain = colourBox(page, 400, 0, 300, 30, 140);
    SendMessageW(plain, CBM_FINDCOLOR, 0, RGB(255, 0, 0));
    AddLabel(page, 300, 70, 170, 16, L"Automatic cell, more colours:");
    HWND automatic = colourBox(page, 401, KXCBS_MORECOLORS, 300, 90, 140);
    SendMessageW(automatic, CBM_SETAUTO, static_cast<WPARAM>(-2), GetSysColor(COLOR_WINDOWTEXT));
    SendMessageW(automatic, CBM_SETSEL, 12, 0);
    AddLabel(page, 460, 10, 100, 16, L"Patterns:");
    HWND patterns = colourBox(page, 402, KXCBS_PATTERN, 460, 30, 100);
    SendMessageW(patterns, CBM_SETSEL, 3, 0);

    showPopup(page, automatic, L"12-scroller-colourbox-open");
    showPopup(page, patterns, L"12-scroller-colourbox-patterns");
    SetFocus(plain);
}

const bool registered = RegisterGalleryPage({L"12-scroller-colourbox", 580, 350, build});

}  // namespace
