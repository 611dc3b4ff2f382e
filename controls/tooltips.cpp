// Tooltips for a window or a rectangle of it, and the process-wide auto-pop delay.
#include "core/library.h"
#include "include/kvkit_tooltips.h"
#include <commctrl.h>

namespace {

static_assert(sizeof(TOOLINFOW) == 48, "tool description size");

// Given to every tooltip created from now on; -1 leaves the system's default.
DWORD g_autoPopDelay = 0xFFFFFFFF;

TOOLINFOW toolOf(HWND window, UINT_PTR id) {
    TOOLINFOW tool = {};
    tool.cbSize = sizeof(tool);
    tool.hwnd = window;
    tool.uId = id;
    return tool;
}

// The client area of `area` in `window`'s client coordinates, or `window`'s own.
RECT toolRect(HWND window, HWND area) {
    RECT rect = {};
    if (area) {
        GetClientRect(area, &rect);
        MapWindowPoints(area, window, reinterpret_cast<POINT*>(&rect), 2);
    } else {
        GetClientRect(window, &rect);
    }
    return rect;
}

HWND createTooltip(HWND owner, DWORD style, HINSTANCE instance) {
    HWND tip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, style, CW_USEDEFAULT,
                               CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr,
                               instance, nullptr);
    SetWindowPos(tip, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    return tip;
}

// A tool that the control refuses is signalled by an empty message box on the window; the
// tooltip is set up all the same.
void addTool(HWND tip, TOOLINFOW& tool) {
    if (!SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool)))
        MessageBoxW(tool.hwnd, L"", L"", MB_OK);
    SendMessageW(tip, TTM_ACTIVATE, TRUE, 0);
    SendMessageW(tip, TTM_SETDELAYTIME, TTDT_AUTOPOP, static_cast<LPARAM>(g_autoPopDelay));
}

UINT toolFlags(int noSubclass) { return noSubclass ? 0 : TTF_SUBCLASS; }

}  // namespace

HWND KVKIT_CALL KxToolTip_Create(HWND window, HWND area, const wchar_t* text, int, int noSubclass) {
    if (!IsWindow(window) || (area && !IsWindow(area))) return nullptr;
    HWND tip = createTooltip(window, WS_POPUP | TTS_NOPREFIX | TTS_ALWAYSTIP, nullptr);
    TOOLINFOW tool = toolOf(window, GetDlgCtrlID(window));
    tool.uFlags = toolFlags(noSubclass);
    tool.rect = toolRect(window, area);
    tool.lpszText = const_cast<wchar_t*>(text);
    addTool(tip, tool);
    return tip;
}

HWND KVKIT_CALL KxToolTip_CreateRect(HWND window, RECT* rect, wchar_t* text, UINT flags,
                                     int noSubclass) {
    if (!IsWindow(window) || !rect) return nullptr;
    DWORD style = WS_POPUP | TTS_ALWAYSTIP | ((flags & 1) ? TTS_BALLOON : 0);
    HWND tip = createTooltip(window, style, g_libraryModule);
    TOOLINFOW tool = toolOf(window, KXTOOLTIP_RECT_ID);
    tool.uFlags = toolFlags(noSubclass);
    tool.rect = *rect;
    tool.lpszText = text;
    addTool(tip, tool);
    return tip;
}

int KVKIT_CALL KxToolTip_RelayMessage(HWND tip, HWND from, UINT message, WPARAM wParam,
                                      LPARAM lParam) {
    if (!IsWindow(tip)) return 0;
    DWORD position = GetMessagePos();
    MSG relayed = {from, message, wParam, lParam, static_cast<DWORD>(GetMessageTime()),
                   {static_cast<short>(LOWORD(position)), static_cast<short>(HIWORD(position))}};
    SendMessageW(tip, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&relayed));
    return 1;
}

int KVKIT_CALL KxToolTip_SetRect(HWND tip, HWND window, HWND area, RECT*) {
    if (!IsWindow(tip)) return 0;
    TOOLINFOW tool = toolOf(window, GetDlgCtrlID(window));
    tool.rect = toolRect(window, area);
    SendMessageW(tip, TTM_NEWTOOLRECTW, 0, reinterpret_cast<LPARAM>(&tool));
    return 1;
}

BOOL KVKIT_CALL KxToolTip_SetTitle(HWND tip, const wchar_t* title, UINT icon) {
    return SendMessageW(tip, TTM_SETTITLEW, icon, reinterpret_cast<LPARAM>(title)) == 1;
}

int KVKIT_CALL KxToolTip_UpdateText(HWND tip, HWND window, wchar_t* text) {
    if (!IsWindow(tip)) return 0;
    TOOLINFOW tool = toolOf(window, GetDlgCtrlID(window));
    tool.lpszText = text;
    SendMessageW(tip, TTM_UPDATETIPTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
    return 1;
}

void KVKIT_CALL KxSetTooltipDuration(DWORD milliseconds) { g_autoPopDelay = milliseconds; }
