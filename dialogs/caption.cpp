// The painted caption of tool windows: its geometry inside the window frame, its painting, and
// the hit-testing and close-button tracking that a comctl32 subclass adds to the window. The
// subclass stacks safely on windows that the host subclasses itself.
#include "core/library.h"
#include "include/kvkit_caption.h"
#include "include/kvkit_draw.h"
#include "graphics/memory_dc.h"
#include <commctrl.h>
#include <windowsx.h>

namespace {

const UINT_PTR kCaptionSubclassId = 0x4B43;
const int kPadding = 2;        // around the icon, the title's height and the close button
const int kIconSize = 16;
const int kTitleGap = 4;       // between icon, title and close button
const int kTitleCapacity = 256;
const UINT kTitleFormat = DT_LEFT | DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS;

// Subclass state bits, kept as the subclass's reference data.
const DWORD_PTR kTracking = 0x1;    // the close button holds the mouse capture
const DWORD_PTR kPressed = 0x2;     // and the pointer is over it
const DWORD_PTR kActiveLook = 0x4;  // the last WM_NCACTIVATE asked for the active colours

// Parts of the caption in window coordinates (origin at the window's top-left corner).
struct CaptionLayout {
    RECT band;
    RECT icon;   // empty without an icon
    RECT title;
    RECT close;  // empty without WS_SYSMENU
};

LRESULT CALLBACK captionSubclass(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);

int width(const RECT& rect) { return rect.right - rect.left; }

// The frame the window's style gives, left/top/right/bottom as insets. A WS_CAPTION style
// counts as the dialog frame that comes with it.
RECT frameInsets(HWND window) {
    DWORD style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
    DWORD exStyle = static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE));
    if ((style & WS_CAPTION) == WS_CAPTION) style &= ~WS_BORDER;
    RECT outer = {0, 0, 0, 0};
    AdjustWindowRectEx(&outer, style, FALSE, exStyle & ~WS_EX_CLIENTEDGE);
    return RECT{-outer.left, -outer.top, outer.right, outer.bottom};
}

int captionHeight() {
    HFONT font = GetSysSmallCaptionFont();
    HDC screen = GetDC(nullptr);
    HGDIOBJ old = SelectObject(screen, font ? font : GetStockObject(DEFAULT_GUI_FONT));
    TEXTMETRICW metrics = {};
    GetTextMetricsW(screen, &metrics);
    SelectObject(screen, old);
    ReleaseDC(nullptr, screen);
    if (font) DeleteObject(font);
    int content = metrics.tmHeight > kIconSize ? metrics.tmHeight : kIconSize;
    return content + 2 * kPadding;
}

HICON smallIcon(HWND window) {
    auto icon = reinterpret_cast<HICON>(SendMessageW(window, WM_GETICON, ICON_SMALL2, 0));
    if (!icon) icon = reinterpret_cast<HICON>(GetClassLongPtrW(window, GCLP_HICONSM));
    if (!icon) icon = reinterpret_cast<HICON>(GetClassLongPtrW(window, GCLP_HICON));
    return icon;
}

CaptionLayout captionLayout(HWND window, bool withIcon) {
    RECT frame = frameInsets(window), windowRect;
    GetWindowRect(window, &windowRect);
    CaptionLayout layout = {};
    layout.band = RECT{frame.left, frame.top, width(windowRect) - frame.right,
                       frame.top + captionHeight()};
    int height = layout.band.bottom - layout.band.top;
    int left = layout.band.left + kPadding, right = layout.band.right;
    if (withIcon) {
        int top = layout.band.top + (height - kIconSize) / 2;
        layout.icon = RECT{left, top, left + kIconSize, top + kIconSize};
        left = layout.icon.right;
    }
    if (GetWindowLongW(window, GWL_STYLE) & WS_SYSMENU) {
        int size = height - 2 * kPadding;
        layout.close = RECT{right - kPadding - size, layout.band.top + kPadding, right - kPadding,
                            layout.band.top + kPadding + size};
        right = layout.close.left;
    }
    layout.title = RECT{left + kTitleGap, layout.band.top, right - kTitleGap, layout.band.bottom};
    return layout;
}

DWORD_PTR captionState(HWND window) {
    DWORD_PTR state = 0;
    GetWindowSubclass(window, captionSubclass, kCaptionSubclassId, &state);
    return state;
}

bool isActive(HWND window) {
    WINDOWINFO info = {};
    info.cbSize = sizeof(info);
    return GetWindowInfo(window, &info) && (info.dwWindowStatus & WS_ACTIVECAPTION);
}

// Until the first WM_NCACTIVATE the caption looks as the window's activation is.
bool attachCaption(HWND window) {
    DWORD_PTR state;
    if (GetWindowSubclass(window, captionSubclass, kCaptionSubclassId, &state)) return true;
    return SetWindowSubclass(window, captionSubclass, kCaptionSubclassId,
                             isActive(window) ? kActiveLook : 0) != FALSE;
}

// A push-button face with a cross, which moves down and right while the button is pressed. The
// cross is drawn rather than taken from a symbol font, which not every system has.
void paintCloseButton(HDC dc, const RECT& button, bool pressed) {
    RECT face = button;
    DrawFrameControl(dc, &face, DFC_BUTTON, DFCS_BUTTONPUSH | (pressed ? DFCS_PUSHED : 0));
    int size = button.right - button.left;
    int inset = size / 4 + 1, shift = pressed ? 1 : 0;
    int left = button.left + inset + shift, top = button.top + inset + shift;
    int right = button.right - inset + shift, bottom = button.bottom - inset + shift;
    HPEN pen = CreatePen(PS_SOLID, size >= 12 ? 2 : 1, GetSysColor(COLOR_BTNTEXT));
    HGDIOBJ old = SelectObject(dc, pen);
    MoveToEx(dc, left, top, nullptr);
    LineTo(dc, right - 1, bottom - 1);
    MoveToEx(dc, right - 1, top, nullptr);
    LineTo(dc, left, bottom - 1);
    SelectObject(dc, old);
    DeleteObject(pen);
}

// Paints the band at its own origin into `dc`.
void paintBand(HWND window, HDC dc, const CaptionLayout& layout, HICON icon, bool active,
               DWORD_PTR state) {
    RECT band = {0, 0, width(layout.band), layout.band.bottom - layout.band.top};
    POINT origin = {layout.band.left, layout.band.top};
    Kx1GradientFill(dc, GetSysColor(active ? COLOR_ACTIVECAPTION : COLOR_INACTIVECAPTION),
                    GetSysColor(active ? COLOR_GRADIENTACTIVECAPTION : COLOR_GRADIENTINACTIVECAPTION),
                    0, 0, &band);
    if (icon)
        DrawIconEx(dc, layout.icon.left - origin.x, layout.icon.top - origin.y, icon, kIconSize,
                   kIconSize, 0, nullptr, DI_NORMAL);
    wchar_t title[kTitleCapacity];
    int length = GetWindowTextW(window, title, kTitleCapacity);
    RECT titleRect = layout.title;
    OffsetRect(&titleRect, -origin.x, -origin.y);
    if (length > 0 && titleRect.right > titleRect.left) {
        HFONT font = GetSysSmallCaptionFont();
        HGDIOBJ old = SelectObject(dc, font ? font : GetStockObject(DEFAULT_GUI_FONT));
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, GetSysColor(active ? COLOR_CAPTIONTEXT : COLOR_INACTIVECAPTIONTEXT));
        DrawTextW(dc, title, length, &titleRect, kTitleFormat);
        SelectObject(dc, old);
        if (font) DeleteObject(font);
    }
    if (!IsRectEmpty(&layout.close)) {
        RECT close = layout.close;
        OffsetRect(&close, -origin.x, -origin.y);
        paintCloseButton(dc, close, (state & kPressed) != 0);
    }
}

// The caption part under a point in screen coordinates: HTCLOSE, HTCAPTION or HTNOWHERE.
LRESULT hitTest(HWND window, POINT screen) {
    RECT windowRect;
    GetWindowRect(window, &windowRect);
    POINT point = {screen.x - windowRect.left, screen.y - windowRect.top};
    CaptionLayout layout = captionLayout(window, false);
    if (!PtInRect(&layout.band, point)) return HTNOWHERE;
    return PtInRect(&layout.close, point) ? HTCLOSE : HTCAPTION;
}

POINT screenPoint(LPARAM lParam) { return POINT{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)}; }

POINT clientToScreen(HWND window, LPARAM lParam) {
    POINT point = screenPoint(lParam);
    ClientToScreen(window, &point);
    return point;
}

// Replaces the `bits` of the state by `values` and draws the caption again if that changed it.
void setCaptionState(HWND window, DWORD_PTR bits, DWORD_PTR values) {
    DWORD_PTR state = captionState(window);
    DWORD_PTR changed = (state & ~bits) | (values & bits);
    if (changed == state) return;
    SetWindowSubclass(window, captionSubclass, kCaptionSubclassId, changed);
    NcDrawCaption(window, nullptr, KXNC_CURRENT);
}

// The close button follows the pointer while it holds the capture, like a push button.
void trackCloseButton(HWND window, POINT screen) {
    bool over = hitTest(window, screen) == HTCLOSE;
    setCaptionState(window, kTracking | kPressed, kTracking | (over ? kPressed : 0));
}

void releaseCloseButton(HWND window, POINT screen) {
    bool over = hitTest(window, screen) == HTCLOSE;
    setCaptionState(window, kTracking | kPressed, 0);
    ReleaseCapture();
    if (over) SendMessageW(window, WM_SYSCOMMAND, SC_CLOSE, MAKELPARAM(screen.x, screen.y));
}

LRESULT CALLBACK captionSubclass(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR state) {
    switch (message) {
    case WM_NCHITTEST: {
        LRESULT hit = hitTest(window, screenPoint(lParam));
        if (hit != HTNOWHERE) return hit;
        break;
    }
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
        if (wParam != HTCLOSE) break;
        SetCapture(window);
        setCaptionState(window, kTracking | kPressed, kTracking | kPressed);
        return 0;
    case WM_MOUSEMOVE:
        if (!(state & kTracking)) break;
        trackCloseButton(window, clientToScreen(window, lParam));
        return 0;
    case WM_LBUTTONUP:
        if (!(state & kTracking)) break;
        releaseCloseButton(window, clientToScreen(window, lParam));
        return 0;
    case WM_CAPTURECHANGED:
        if (state & kTracking) setCaptionState(window, kTracking | kPressed, 0);
        break;
    case WM_NCACTIVATE: {
        LRESULT result = DefSubclassProc(window, message, wParam, lParam);
        DWORD_PTR look = wParam ? kActiveLook : 0;
        SetWindowSubclass(window, captionSubclass, kCaptionSubclassId,
                          (captionState(window) & ~kActiveLook) | look);
        NcDrawCaption(window, nullptr, KXNC_CURRENT);
        return result;
    }
    case WM_SETTEXT:
    case WM_SETICON: {
        LRESULT result = DefSubclassProc(window, message, wParam, lParam);
        NcDrawCaption(window, nullptr, KXNC_CURRENT);
        return result;
    }
    case WM_NCDESTROY:
        RemoveWindowSubclass(window, captionSubclass, kCaptionSubclassId);
        break;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace

int KVKIT_CALL NcGetCaptionCxCy(HWND window, int* cx, int* cy) {
    if (!window || !IsWindow(window)) return 0;
    CaptionLayout layout = captionLayout(window, false);
    if (cx) *cx = width(layout.band);
    if (cy) *cy = layout.band.bottom - layout.band.top;
    return 1;
}

int KVKIT_CALL NcGetClientRect(HWND window, const RECT* windowRect, RECT* client) {
    if (!window || !IsWindow(window) || !client) return 0;
    RECT rect;
    if (windowRect)
        rect = *windowRect;
    else
        GetWindowRect(window, &rect);
    RECT frame = frameInsets(window);
    rect.left += frame.left;
    rect.top += frame.top + captionHeight();
    rect.right -= frame.right;
    rect.bottom -= frame.bottom;
    if (rect.right < rect.left) rect.right = rect.left;
    if (rect.bottom < rect.top) rect.bottom = rect.top;
    *client = rect;
    return 1;
}

int KVKIT_CALL NcDrawCaption(HWND window, HDC dc, int active) {
    if (!window || !IsWindow(window) || !attachCaption(window)) return 0;
    HICON icon = smallIcon(window);
    CaptionLayout layout = captionLayout(window, icon != nullptr);
    int bandWidth = width(layout.band), bandHeight = layout.band.bottom - layout.band.top;
    if (bandWidth <= 0 || bandHeight <= 0) return 1;
    bool activeColours = active == KXNC_CURRENT ? (captionState(window) & kActiveLook) != 0
                                                : active != KXNC_INACTIVE;
    HDC target = dc ? dc : GetWindowDC(window);
    if (!target) return 0;
    // Painted off-screen first, so that the band never flickers.
    HBITMAP buffer = CreateCompatibleBitmap(target, bandWidth, bandHeight);
    bool painted = false;
    {
        MemoryDC memory(target, buffer);
        if (memory.ok()) {
            paintBand(window, memory.dc(), layout, icon, activeColours, captionState(window));
            painted = BitBlt(target, layout.band.left, layout.band.top, bandWidth, bandHeight,
                             memory.dc(), 0, 0, SRCCOPY) != FALSE;
        }
    }
    if (buffer) DeleteObject(buffer);
    if (!dc) ReleaseDC(window, target);
    return painted ? 1 : 0;
}
