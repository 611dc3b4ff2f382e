// Dragging, against floors measured in the same run:
//   rectangle image - one move of a 300 x 200 dimmed photograph over a 640 x 480 window, against
//                     the window painting its whole client area once (what the save-under spares);
//   list row drop   - the drop that moves row 9,000 of a 10,000-row, four-column list to row 10,
//                     against one insert and one delete of a row in the same list.
#include "bench.h"
#include <commctrl.h>
#include <string>
#include "kvkit_drag.h"
#include "kvkit_listview.h"

namespace {

HBITMAP g_pattern;

LRESULT CALLBACK paintedProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcW(window, message, wParam, lParam);
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    HDC source = CreateCompatibleDC(dc);
    HGDIOBJ old = SelectObject(source, g_pattern);
    BitBlt(dc, 0, 0, 640, 480, source, 0, 0, SRCCOPY);
    SelectObject(source, old);
    DeleteDC(source);
    EndPaint(window, &paint);
    return 0;
}

HWND paintedWindow() {
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = paintedProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"KvBenchPainted";
    RegisterClassW(&windowClass);
    RECT frame = {0, 0, 640, 480};
    AdjustWindowRect(&frame, WS_POPUP, FALSE);
    HDC screen = GetDC(nullptr);
    g_pattern = CreateCompatibleBitmap(screen, 640, 480);
    HDC dc = CreateCompatibleDC(screen);
    HGDIOBJ old = SelectObject(dc, g_pattern);
    for (int y = 0; y < 480; y += 16)
        for (int x = 0; x < 640; x += 16) {
            HBRUSH brush = CreateSolidBrush(RGB(x / 3, y / 2, (x + y) / 5));
            RECT cell = {x, y, x + 16, y + 16};
            FillRect(dc, &cell, brush);
            DeleteObject(brush);
        }
    SelectObject(dc, old);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    HWND window = CreateWindowExW(0, L"KvBenchPainted", L"", WS_POPUP | WS_VISIBLE, 0, 0,
                                  frame.right - frame.left, frame.bottom - frame.top, nullptr,
                                  nullptr, GetModuleHandleW(nullptr), nullptr);
    UpdateWindow(window);
    return window;
}

void pump() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
}

void benchRectangle() {
    HWND window = paintedWindow();
    double repaint = bench::SecondsPerCall([&] {
        InvalidateRect(window, nullptr, FALSE);
        UpdateWindow(window);
    }, 50);
    RECT photo = {100, 100, 400, 300};
    Kx1BeginDrag(window, &photo);
    int step = 0;
    double move = bench::SecondsPerCall([&] {
        ++step;
        Kx1Drag(window, 100 + step % 200, 100 + (step * 3) % 150);
    }, 50);
    Kx1EndDrag(window, 100, 100, nullptr);
    bench::Report("repaint of a 640 x 480 window (floor)", repaint, repaint);
    bench::Report("rectangle drag: one move of 300 x 200", move, repaint);
    DestroyWindow(window);
    DeleteObject(g_pattern);
}

void benchListDrop() {
    HWND parent = CreateWindowExW(0, L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 500, 400, nullptr,
                                  nullptr, nullptr, nullptr);
    HWND list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT, 0, 0, 500,
                                400, parent, nullptr, nullptr, nullptr);
    for (int column = 0; column < 4; ++column)
        KxListView_AddHeader(list, (L"Column " + std::to_wstring(column)).c_str(), column, 100);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    for (int row = 0; row < 10000; ++row)
        for (int column = 0; column < 4; ++column)
            KxListView_AddSpalte(list, row, column, (L"Cell " + std::to_wstring(row * 4 + column)).c_str(),
                                 -1, column ? 0 : row + 1);
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    double floor = bench::SecondsPerCall([&] {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = 10;
        item.pszText = const_cast<wchar_t*>(L"Cell");
        SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        SendMessageW(list, LVM_DELETEITEM, 9001, 0);
    }, 20);
    // A drag begun on row 9,000 with the mouse over row 10 (begin and move are not timed).
    RECT target;
    double drop = 0;
    for (int round = 0; round < 5; ++round) {
        NMLISTVIEW notify = {};
        notify.iItem = 9000;
        KxListView_OnBeginDrag(list, &notify);
        SendMessageW(list, LVM_ENSUREVISIBLE, 10, FALSE);
        target.left = LVIR_LABEL;
        SendMessageW(list, LVM_GETITEMRECT, 10, reinterpret_cast<LPARAM>(&target));
        KxListView_OnMouseMove(list, list, target.left + 5, (target.top + target.bottom) / 2);
        double seconds = bench::SecondsPerCall([&] { KxListView_OnLButtonUp(parent, list, 0, 0); }, 1, 1);
        if (round == 0 || seconds < drop) drop = seconds;
        pump();
    }
    bench::Report("insert and delete of a row (floor)", floor, floor);
    bench::Report("list drop: row 9,000 of 10,000 to row 10", drop, floor);
    DestroyWindow(parent);
}

}  // namespace

int main() {
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&init);
    benchRectangle();
    benchListDrop();
    return 0;
}
