// Movable frame: a hollow window (a band with eight handles) that the user drags and resizes to
// choose a rectangle on the screen, reporting it to its owner. The window's class saves the
// screen under it, so that windows beneath need not repaint while it follows the mouse; with the
// inverted flag a drag shows an inverted outline instead and the frame follows at the release.
#include "core/library.h"
#include "include/kvkit_colour.h"
#include "include/kvkit_diagnostics.h"
#include <windowsx.h>
#include "kvtext.h"

namespace {

ATOM g_frameClass;  // registered by the first frame
const wchar_t kFrameClass[] = L"KVMoveFrameClass";
const int kDefaultThickness = 4;
const int kLargestThickness = 16;
const int kHandleFactor = 3;     // a handle is this many band widths square
const int kMinimumHandles = 3;   // a frame is at least this many handles wide and high
const int kKeyStep = 1, kControlKeyStep = 10;

// Per-window record, in GWLP_USERDATA.
struct MoveFrame {
    HWND window;
    HWND owner;
    int thickness;
    COLORREF colour;
    int flags;
    RECT rect;          // on the screen
    int dragPart;       // HTCAPTION (move) or an edge or corner code while dragging, else 0
    POINT dragStart;    // screen point where the drag began
    RECT dragFrom;      // the rectangle when the drag began
    RECT dragTo;        // where the drag has taken it
    bool outlineShown;  // the inverted outline of dragTo is on the screen
};

int handleSize(const MoveFrame& frame) { return frame.thickness * kHandleFactor; }
int smallestSize(const MoveFrame& frame) { return handleSize(frame) * kMinimumHandles; }
int width(const RECT& rect) { return rect.right - rect.left; }
int height(const RECT& rect) { return rect.bottom - rect.top; }

// The eight handles in window coordinates, corners first (in hit-test code order below).
void handleRects(const MoveFrame& frame, RECT handles[8]) {
    int size = handleSize(frame), w = width(frame.rect), h = height(frame.rect);
    int midX = (w - size) / 2, midY = (h - size) / 2;
    SetRect(&handles[0], 0, 0, size, size);
    SetRect(&handles[1], w - size, 0, w, size);
    SetRect(&handles[2], 0, h - size, size, h);
    SetRect(&handles[3], w - size, h - size, w, h);
    SetRect(&handles[4], midX, 0, midX + size, size);
    SetRect(&handles[5], midX, h - size, midX + size, h);
    SetRect(&handles[6], 0, midY, size, midY + size);
    SetRect(&handles[7], w - size, midY, w, midY + size);
}
const int kHandleParts[8] = {HTTOPLEFT, HTTOPRIGHT, HTBOTTOMLEFT, HTBOTTOMRIGHT,
                             HTTOP,     HTBOTTOM,   HTLEFT,       HTRIGHT};

// The window's shape: the band and the handles; the inside is not part of the window.
void applyShape(const MoveFrame& frame) {
    int w = width(frame.rect), h = height(frame.rect), band = frame.thickness;
    HRGN shape = CreateRectRgn(0, 0, w, h);
    HRGN inside = CreateRectRgn(band, band, w - band, h - band);
    CombineRgn(shape, shape, inside, RGN_DIFF);
    DeleteObject(inside);
    RECT handles[8];
    handleRects(frame, handles);
    for (const RECT& handle : handles) {
        HRGN square = CreateRectRgnIndirect(&handle);
        CombineRgn(shape, shape, square, RGN_OR);
        DeleteObject(square);
    }
    if (!SetWindowRgn(frame.window, shape, TRUE)) DeleteObject(shape);  // else the window owns it
}

int hitPart(const MoveFrame& frame, POINT point) {
    RECT handles[8];
    handleRects(frame, handles);
    for (int i = 0; i < 8; ++i)
        if (PtInRect(&handles[i], point)) return kHandleParts[i];
    RECT whole = {0, 0, width(frame.rect), height(frame.rect)};
    RECT inside = whole;
    InflateRect(&inside, -frame.thickness, -frame.thickness);
    return PtInRect(&whole, point) && !PtInRect(&inside, point) ? HTCAPTION : HTNOWHERE;
}

// The rectangle `from` with the part dragged by (dx, dy), never below the smallest size.
RECT dragged(const MoveFrame& frame, int part, const RECT& from, int dx, int dy) {
    RECT to = from;
    int smallest = smallestSize(frame);
    if (part == HTCAPTION) {
        OffsetRect(&to, dx, dy);
        return to;
    }
    if (part == HTLEFT || part == HTTOPLEFT || part == HTBOTTOMLEFT)
        to.left = from.left + dx < from.right - smallest ? from.left + dx : from.right - smallest;
    if (part == HTRIGHT || part == HTTOPRIGHT || part == HTBOTTOMRIGHT)
        to.right = from.right + dx > from.left + smallest ? from.right + dx : from.left + smallest;
    if (part == HTTOP || part == HTTOPLEFT || part == HTTOPRIGHT)
        to.top = from.top + dy < from.bottom - smallest ? from.top + dy : from.bottom - smallest;
    if (part == HTBOTTOM || part == HTBOTTOMLEFT || part == HTBOTTOMRIGHT)
        to.bottom = from.bottom + dy > from.top + smallest ? from.bottom + dy : from.top + smallest;
    return to;
}

RECT atLeastSmallest(const MoveFrame& frame, RECT rect) {
    int smallest = smallestSize(frame);
    if (width(rect) < smallest) rect.right = rect.left + smallest;
    if (height(rect) < smallest) rect.bottom = rect.top + smallest;
    return rect;
}

void placeFrame(MoveFrame& frame, const RECT& rect) {
    bool resized = width(rect) != width(frame.rect) || height(rect) != height(frame.rect);
    frame.rect = rect;
    SetWindowPos(frame.window, nullptr, rect.left, rect.top, width(rect), height(rect),
                 SWP_NOZORDER | SWP_NOACTIVATE);
    if (resized) applyShape(frame);
}

// Inverts the band of `rect` on the screen; doing it twice restores the screen.
void invertOutline(const MoveFrame& frame, const RECT& rect) {
    HDC screen = GetDCEx(GetDesktopWindow(), nullptr, DCX_WINDOW | DCX_CACHE | DCX_LOCKWINDOWUPDATE);
    if (!screen) return;
    int band = frame.thickness, w = width(rect), h = height(rect);
    PatBlt(screen, rect.left, rect.top, w, band, DSTINVERT);
    PatBlt(screen, rect.left, rect.bottom - band, w, band, DSTINVERT);
    PatBlt(screen, rect.left, rect.top + band, band, h - 2 * band, DSTINVERT);
    PatBlt(screen, rect.right - band, rect.top + band, band, h - 2 * band, DSTINVERT);
    ReleaseDC(GetDesktopWindow(), screen);
}

void showOutline(MoveFrame& frame, const RECT& rect) {
    if (frame.outlineShown) invertOutline(frame, frame.dragTo);
    frame.dragTo = rect;
    invertOutline(frame, rect);
    frame.outlineShown = true;
}

void hideOutline(MoveFrame& frame) {
    if (frame.outlineShown) invertOutline(frame, frame.dragTo);
    frame.outlineShown = false;
}

void notifyChanged(const MoveFrame& frame) {
    if (frame.owner) {
        RECT rect = frame.rect;
        SendMessageW(frame.owner, KXMOVEFRAME_CHANGED, reinterpret_cast<WPARAM>(frame.window),
                     reinterpret_cast<LPARAM>(&rect));
    }
}

// Ends the frame: the owner learns the rectangle (or null when cancelled), then it closes.
void finish(MoveFrame& frame, bool confirmed) {
    HWND window = frame.window;
    RECT rect = frame.rect;
    if (frame.owner)
        SendMessageW(frame.owner, KXMOVEFRAME_DONE, reinterpret_cast<WPARAM>(window),
                     confirmed ? reinterpret_cast<LPARAM>(&rect) : 0);
    DestroyWindow(window);
}

POINT screenPoint(HWND window, LPARAM lParam) {
    POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    ClientToScreen(window, &point);
    return point;
}

// --- input ------------------------------------------------------------------------------------

void onButtonDown(MoveFrame& frame, LPARAM lParam) {
    POINT point = {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    int part = hitPart(frame, point);
    if (part == HTNOWHERE) return;
    SetCapture(frame.window);
    frame.dragPart = part;  // after SetCapture: an earlier capture of ours ending clears it
    frame.dragStart = screenPoint(frame.window, lParam);
    frame.dragFrom = frame.rect;
    frame.dragTo = frame.rect;
    if (frame.flags & KXMOVEFRAME_INVERTED) showOutline(frame, frame.rect);
}

void onMouseMove(MoveFrame& frame, LPARAM lParam) {
    if (!frame.dragPart) return;
    POINT point = screenPoint(frame.window, lParam);
    RECT to = dragged(frame, frame.dragPart, frame.dragFrom, point.x - frame.dragStart.x,
                      point.y - frame.dragStart.y);
    if (frame.flags & KXMOVEFRAME_INVERTED) showOutline(frame, to);
    else placeFrame(frame, to);
}

// Ends a drag; `keep` false puts the frame back where the drag began.
void endDrag(MoveFrame& frame, bool keep) {
    if (!frame.dragPart) return;
    RECT to = frame.flags & KXMOVEFRAME_INVERTED ? frame.dragTo : frame.rect;
    frame.dragPart = 0;
    hideOutline(frame);
    if (GetCapture() == frame.window) ReleaseCapture();
    placeFrame(frame, keep ? to : frame.dragFrom);
    if (keep && !EqualRect(&to, &frame.dragFrom)) notifyChanged(frame);
}

void onKeyDown(MoveFrame& frame, UINT key) {
    if (key == VK_ESCAPE) {
        if (frame.dragPart) endDrag(frame, false);
        else finish(frame, false);
        return;
    }
    if (key == VK_RETURN) {
        finish(frame, true);
        return;
    }
    int step = GetKeyState(VK_CONTROL) < 0 ? kControlKeyStep : kKeyStep;
    int dx = key == VK_LEFT ? -step : key == VK_RIGHT ? step : 0;
    int dy = key == VK_UP ? -step : key == VK_DOWN ? step : 0;
    if ((!dx && !dy) || frame.dragPart) return;
    int part = GetKeyState(VK_SHIFT) < 0 ? HTBOTTOMRIGHT : HTCAPTION;
    placeFrame(frame, dragged(frame, part, frame.rect, dx, dy));
    notifyChanged(frame);
}

// --- painting ---------------------------------------------------------------------------------

void paintFrame(const MoveFrame& frame, HDC dc) {
    RECT whole = {0, 0, width(frame.rect), height(frame.rect)};
    HBRUSH band = CreateSolidBrush(frame.colour);
    FillRect(dc, &whole, band);
    DeleteObject(band);
    HBRUSH handleFill = CreateSolidBrush(AdjustColorBrightness(frame.colour, 60));
    HBRUSH handleEdge = CreateSolidBrush(AdjustColorBrightness(frame.colour, -60));
    RECT handles[8];
    handleRects(frame, handles);
    for (const RECT& handle : handles) {
        FillRect(dc, &handle, handleFill);
        FrameRect(dc, &handle, handleEdge);
    }
    DeleteObject(handleEdge);
    DeleteObject(handleFill);
}

const wchar_t* cursorFor(int part) {
    switch (part) {
    case HTLEFT:
    case HTRIGHT:
        return IDC_SIZEWE;
    case HTTOP:
    case HTBOTTOM:
        return IDC_SIZENS;
    case HTTOPLEFT:
    case HTBOTTOMRIGHT:
        return IDC_SIZENWSE;
    case HTTOPRIGHT:
    case HTBOTTOMLEFT:
        return IDC_SIZENESW;
    default:
        return IDC_SIZEALL;
    }
}

LRESULT CALLBACK frameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* frame = reinterpret_cast<MoveFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!frame) return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
    case WM_PAINT: {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        paintFrame(*frame, dc);
        EndPaint(window, &paint);
        return 0;
    }
    case WM_PRINTCLIENT:
        paintFrame(*frame, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETCURSOR: {
        POINT point;
        GetCursorPos(&point);
        ScreenToClient(window, &point);
        SetCursor(LoadCursorW(nullptr, cursorFor(frame->dragPart ? frame->dragPart : hitPart(*frame, point))));
        return TRUE;
    }
    case WM_LBUTTONDOWN:
        onButtonDown(*frame, lParam);
        return 0;
    case WM_MOUSEMOVE:
        onMouseMove(*frame, lParam);
        return 0;
    case WM_LBUTTONUP:
        endDrag(*frame, true);
        return 0;
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lParam) != window) endDrag(*frame, false);  // taken away
        return 0;
    case WM_LBUTTONDBLCLK:
        finish(*frame, true);
        return 0;
    case WM_KEYDOWN:
        onKeyDown(*frame, static_cast<UINT>(wParam));
        return 0;
    case WM_DESTROY:
        hideOutline(*frame);
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        FreeMemory(frame);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool registerFrameClass() {
    if (g_frameClass) return true;
    WNDCLASSW windowClass = {};
    windowClass.style = CS_GLOBALCLASS | CS_DBLCLKS | CS_SAVEBITS;
    windowClass.lpfnWndProc = frameProc;
    windowClass.hInstance = g_libraryModule;
    windowClass.lpszClassName = kFrameClass;
    g_frameClass = RegisterClassW(&windowClass);
    return g_frameClass != 0;
}

MoveFrame* frameOf(HWND window) {
    if (!window || !g_frameClass || !IsWindow(window) || GetClassLongW(window, GCW_ATOM) != g_frameClass)
        return nullptr;
    return reinterpret_cast<MoveFrame*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

}  // namespace

HWND KVKIT_CALL KxMoveFrame_Create(HWND owner, const RECT* rect, int thickness, COLORREF colour,
                                   int flags) {
    if (!rect) return nullptr;
    if (thickness == 0) thickness = kDefaultThickness;
    if (thickness < 1 || thickness > kLargestThickness) return nullptr;
    if (owner && !IsWindow(owner)) return nullptr;
    if (!registerFrameClass()) return nullptr;
    auto* frame = static_cast<MoveFrame*>(Mres(sizeof(MoveFrame)));
    if (!frame) return nullptr;
    frame->owner = owner;
    frame->thickness = thickness;
    frame->colour = colour;
    frame->flags = flags;
    frame->rect = atLeastSmallest(*frame, *rect);
    const RECT& place = frame->rect;
    frame->window = CreateWindowExW(WS_EX_TOPMOST | WS_EX_TOOLWINDOW, kFrameClass, L"", WS_POPUP,
                                    place.left, place.top, width(place), height(place), owner,
                                    nullptr, g_libraryModule, nullptr);
    if (!frame->window) {
        FreeMemory(frame);
        return nullptr;
    }
    SetWindowLongPtrW(frame->window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(frame));
    applyShape(*frame);
    ShowWindow(frame->window, SW_SHOW);
    UpdateWindow(frame->window);
    return frame->window;
}

int KVKIT_CALL KxMoveFrame_GetRect(HWND window, RECT* rect) {
    MoveFrame* frame = frameOf(window);
    if (!frame || !rect) return 0;
    *rect = frame->rect;
    return 1;
}

int KVKIT_CALL KxMoveFrame_SetRect(HWND window, const RECT* rect) {
    MoveFrame* frame = frameOf(window);
    if (!frame || !rect) return 0;
    placeFrame(*frame, atLeastSmallest(*frame, *rect));
    return 1;
}
