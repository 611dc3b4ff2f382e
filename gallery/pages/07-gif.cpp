// Animated GIF pictures: the sample pictures playing in real windows (enlarged four times), and
// strips of the successive frames that those windows drew as the animations played, each with
// the time it came after the animation started.
#include "gallery/gallery.h"
#include <algorithm>
#include <memory>
#include <stdio.h>
#include <vector>
#include "kvkit_gif.h"

namespace {

const int kScale = 4;
const int kStripFrames = 8;
const wchar_t kPanelClass[] = L"KvGalleryGifPanel";

// The frames a playing picture drew, side by side in one bitmap, with the tick of each.
struct Strip {
    SIZE frame = {};
    HDC dc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ previous = nullptr;
    std::vector<DWORD> ticks;

    ~Strip() {
        if (!dc) return;
        SelectObject(dc, previous);
        DeleteObject(bitmap);
        DeleteDC(dc);
    }
    void create(HDC like, SIZE size) {
        frame = size;
        dc = CreateCompatibleDC(like);
        bitmap = CreateCompatibleBitmap(like, size.cx * kStripFrames, size.cy);
        previous = SelectObject(dc, bitmap);
    }
    bool full() const { return ticks.size() >= kStripFrames; }
};

// A window that plays one picture as a host does: the animation invalidates the picture's
// area, and WM_PAINT draws the frame with GIFDraw. The window shows it enlarged, so each paint
// covers the whole window; each frame drawn also goes into the window's strip.
struct Panel {
    void* gif = nullptr;
    SIZE size = {};
    DWORD started = 0;
    std::shared_ptr<Strip> strip;
};

void paintPanel(HWND window, Panel* panel) {
    InvalidateRect(window, nullptr, FALSE);  // the enlarged picture, not just its own-size area
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(window, &ps);
    RECT client;
    GetClientRect(window, &client);
    FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    HDC memory = CreateCompatibleDC(dc);
    HBITMAP picture = CreateCompatibleBitmap(dc, panel->size.cx, panel->size.cy);
    HGDIOBJ old = SelectObject(memory, picture);
    if (GIFDraw(panel->gif, memory, nullptr) == 0) {
        StretchBlt(dc, 0, 0, panel->size.cx * kScale, panel->size.cy * kScale, memory, 0, 0,
                   panel->size.cx, panel->size.cy, SRCCOPY);
        Strip* strip = panel->strip.get();
        if (strip && !strip->full()) {
            BitBlt(strip->dc, int(strip->ticks.size()) * panel->size.cx, 0, panel->size.cx,
                   panel->size.cy, memory, 0, 0, SRCCOPY);
            strip->ticks.push_back(GetTickCount() - panel->started);
        }
    }
    SelectObject(memory, old);
    DeleteObject(picture);
    DeleteDC(memory);
    EndPaint(window, &ps);
}

LRESULT CALLBACK panelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* panel = reinterpret_cast<Panel*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_PAINT:
        if (!panel) break;
        paintPanel(window, panel);
        return 0;
    case WM_DESTROY:
        if (panel) GIFDestroy(panel->gif);
        break;
    case WM_NCDESTROY:
        delete panel;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// A window at (x, y) playing the named sample picture; its frames go into `strip` if given.
HWND createPlayer(HWND page, int x, int y, const wchar_t* name, std::shared_ptr<Strip> strip) {
    static bool registered = false;
    if (!registered) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = panelProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = kPanelClass;
        registered = RegisterClassW(&windowClass) != 0;
    }
    auto* panel = new Panel;
    panel->gif = GIFLoad(nullptr, name, GalleryResourceModule());
    GIFGetSize(panel->gif, &panel->size);
    HWND window = CreateWindowExW(WS_EX_CLIENTEDGE, kPanelClass, nullptr, WS_CHILD | WS_VISIBLE, x,
                                  y, panel->size.cx * kScale + 4, panel->size.cy * kScale + 4,
                                  page, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(panel));
    UpdateWindow(window);  // the picture as loaded, before the strip starts
    if (strip) {
        HDC dc = GetDC(window);
        strip->create(dc, panel->size);
        ReleaseDC(window, dc);
        panel->strip = std::move(strip);
    }
    panel->started = GetTickCount();
    RECT at = {0, 0, panel->size.cx, panel->size.cy};
    GIFStartAnimation(panel->gif, window, at);
    return window;
}

void paintStrip(HDC dc, const Strip& strip, int scale, const wchar_t* title) {
    SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    TextOutW(dc, 4, 2, title, lstrlenW(title));
    int width = strip.frame.cx * scale, height = strip.frame.cy * scale;
    for (size_t i = 0; i < strip.ticks.size(); ++i) {
        int x = 4 + int(i) * (std::max(width, 48) + 10);
        StretchBlt(dc, x, 20, width, height, strip.dc, int(i) * strip.frame.cx, 0, strip.frame.cx,
                   strip.frame.cy, SRCCOPY);
        wchar_t when[16];
        swprintf(when, 16, L"%lu ms", strip.ticks[i]);
        TextOutW(dc, x, 24 + height, when, lstrlenW(when));
    }
}

void build(HWND page) {
    AddLabel(page, 10, 8, 620, 16,
             L"Playing in real windows, enlarged four times: a still picture needs no thread.");
    auto frames = std::make_shared<Strip>(), busy = std::make_shared<Strip>();
    createPlayer(page, 10, 28, L"GIF_STILL", nullptr);
    createPlayer(page, 130, 28, L"GIF_FRAMES", frames);
    createPlayer(page, 270, 28, L"GIF_BUSY", busy);
    AddLabel(page, 10, 136, 110, 16, L"GIF_STILL");
    AddLabel(page, 130, 136, 130, 16, L"GIF_FRAMES");
    AddLabel(page, 270, 136, 120, 16, L"GIF_BUSY");

    // Let both animations play until their strips are full.
    DWORD start = GetTickCount();
    while (!(frames->full() && busy->full()) && GetTickCount() - start < 10000) PumpFor(50);

    HWND stripPanel = CreatePaintedPanel(page, 10, 160, 620, 200, [frames, busy](HDC dc, const RECT&) {
        paintStrip(dc, *frames, 2, L"GIF_FRAMES as drawn (delays 20, 0, 40, 10 hundredths; each "
                                L"frame stays up for the next one's delay):");
        SetViewportOrgEx(dc, 0, 92, nullptr);
        paintStrip(dc, *busy, 3, L"GIF_BUSY as drawn (10 hundredths per frame):");
        SetViewportOrgEx(dc, 0, 0, nullptr);
    });
    UpdateWindow(stripPanel);
    SaveScreenshot(stripPanel, L"07-gif-strip");
}

const bool registered = RegisterGalleryPage({L"07-gif", 640, 370, build});

}  // namespace
