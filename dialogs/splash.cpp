// Splash window: the application's logo with a few text lines, centred on the main window's
// monitor, closed by its timer, a click or a call.
#include "core/library.h"
#include "graphics/memory_dc.h"
#include "include/kvkit_bitmap.h"
#include "include/kvkit_diagnostics.h"
#include "include/kvkit_resample.h"
#include "kvtext.h"

namespace {

ATOM g_splashClass;  // registered by the first splash
const wchar_t kSplashClass[] = L"KVSplashClass";
const UINT_PTR kCloseTimer = 1;
const int kTextMargin = 12;

// Per-window record, in GWLP_USERDATA.
struct Splash {
    HBITMAP logo;      // owned copy
    wchar_t* lines;    // kvtext block, or null
    COLORREF textColour;
    HFONT font;        // owned, or null
};

void releaseSplash(Splash* splash) {
    if (splash->logo) DeleteObject(splash->logo);
    if (splash->font) DeleteObject(splash->font);
    FreeMemory(splash->lines);
    FreeMemory(splash);
}

void paintSplash(const Splash& splash, HDC dc, const RECT& client) {
    {
        MemoryDC logo(dc, splash.logo);
        if (logo.ok()) BitBlt(dc, 0, 0, client.right, client.bottom, logo.dc(), 0, 0, SRCCOPY);
    }
    if (!splash.lines) return;
    HGDIOBJ previousFont = splash.font ? SelectObject(dc, splash.font) : nullptr;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, splash.textColour);
    RECT text = {kTextMargin, 0, client.right - kTextMargin, 0};
    UINT format = DT_LEFT | DT_NOPREFIX | DT_WORDBREAK;
    DrawTextW(dc, splash.lines, -1, &text, format | DT_CALCRECT);
    int height = text.bottom - text.top;
    SetRect(&text, kTextMargin, client.bottom - kTextMargin - height, client.right - kTextMargin,
            client.bottom - kTextMargin);
    DrawTextW(dc, splash.lines, -1, &text, format);
    if (previousFont) SelectObject(dc, previousFont);
}

LRESULT CALLBACK splashProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* splash = reinterpret_cast<Splash*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_PAINT: {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        RECT client;
        GetClientRect(window, &client);
        if (splash) paintSplash(*splash, dc, client);
        EndPaint(window, &paint);
        return 0;
    }
    case WM_PRINTCLIENT: {
        RECT client;
        GetClientRect(window, &client);
        if (splash) paintSplash(*splash, reinterpret_cast<HDC>(wParam), client);
        return 0;
    }
    case WM_ERASEBKGND:
        return 1;  // the logo covers the whole window
    case WM_MOUSEACTIVATE:
        return MA_NOACTIVATE;
    case WM_TIMER:
        if (wParam == kCloseTimer) DestroyWindow(window);
        return 0;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
        DestroyWindow(window);
        return 0;
    case WM_DESTROY:
        KillTimer(window, kCloseTimer);
        if (splash) releaseSplash(splash);
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool registerSplashClass() {
    if (g_splashClass) return true;
    WNDCLASSW windowClass = {};
    windowClass.style = CS_GLOBALCLASS;
    windowClass.lpfnWndProc = splashProc;
    windowClass.hInstance = g_libraryModule;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kSplashClass;
    g_splashClass = RegisterClassW(&windowClass);
    return g_splashClass != 0;
}

bool isSplash(HWND window) {
    return window && g_splashClass && IsWindow(window) &&
           GetClassLongW(window, GCW_ATOM) == g_splashClass;
}

// The work area of the main window's monitor: the caller's window, else the session's, else the
// primary monitor's.
RECT mainWorkArea(HWND mainWindow) {
    if (!mainWindow || !IsWindow(mainWindow)) mainWindow = GlobalSession()->mainWindow;
    HMONITOR monitor = mainWindow && IsWindow(mainWindow)
                           ? MonitorFromWindow(mainWindow, MONITOR_DEFAULTTONEAREST)
                           : MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY);
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    GetMonitorInfoW(monitor, &info);
    return info.rcWork;
}

// A copy of the logo that fits into two thirds of the work area, proportions kept.
HBITMAP fittedLogo(HBITMAP logo, const RECT& area) {
    int width, height;
    if (!BitmapSize(logo, &width, &height) || width <= 0 || height <= 0) return nullptr;
    HBITMAP copy = HBitmapDuplicate(logo);
    int widest = (area.right - area.left) * 2 / 3, highest = (area.bottom - area.top) * 2 / 3;
    if (!copy || (width <= widest && height <= highest)) return copy;
    double scale = static_cast<double>(widest) / width;
    if (static_cast<double>(highest) / height < scale) scale = static_cast<double>(highest) / height;
    int fitWidth = static_cast<int>(width * scale), fitHeight = static_cast<int>(height * scale);
    return Kx1ShrinkBitmapEx2(copy, fitWidth > 0 ? fitWidth : 1, fitHeight > 0 ? fitHeight : 1, 0, 1);
}

wchar_t* copyText(const wchar_t* text) {
    int length = lstrlenW(text);
    auto* copy = static_cast<wchar_t*>(GetMemory((length + 1) * sizeof(wchar_t)));
    if (copy) kv_strcpy(copy, text, length + 1);
    return copy;
}

}  // namespace

HWND KVKIT_CALL KxSplash_Show(HWND mainWindow, HBITMAP logo, const wchar_t* lines,
                              COLORREF textColour, int milliseconds) {
    if (!registerSplashClass()) return nullptr;
    RECT area = mainWorkArea(mainWindow);
    auto* splash = static_cast<Splash*>(Mres(sizeof(Splash)));
    if (!splash) return nullptr;
    splash->textColour = textColour;
    splash->logo = fittedLogo(logo, area);
    splash->lines = lines ? copyText(lines) : nullptr;
    splash->font = lines ? GetSysSmallCaptionFont() : nullptr;
    int width, height;
    if (!BitmapSize(splash->logo, &width, &height) || (lines && !splash->lines)) {
        releaseSplash(splash);
        return nullptr;
    }
    RECT place = {0, 0, width, height};
    OffsetRect(&place, (area.left + area.right - width) / 2, (area.top + area.bottom - height) / 2);
    HWND window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, kSplashClass, L"",
                                  WS_POPUP | WS_BORDER, place.left, place.top, width, height,
                                  nullptr, nullptr, g_libraryModule, nullptr);
    if (!window) {
        releaseSplash(splash);
        return nullptr;
    }
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(splash));
    // The border takes from the client area: the window grows by it so that the whole logo shows.
    RECT frame = {0, 0, width, height};
    AdjustWindowRectEx(&frame, WS_POPUP | WS_BORDER, FALSE, WS_EX_TOPMOST | WS_EX_TOOLWINDOW);
    SetWindowPos(window, nullptr, place.left + frame.left, place.top + frame.top,
                 frame.right - frame.left, frame.bottom - frame.top, SWP_NOZORDER | SWP_NOACTIVATE);
    if (milliseconds > 0) SetTimer(window, kCloseTimer, milliseconds, nullptr);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    UpdateWindow(window);
    return window;
}

int KVKIT_CALL KxSplash_Close(HWND splash) {
    if (!isSplash(splash)) return 0;
    DestroyWindow(splash);
    return 1;
}
