// Stand-in for the sibling toolkit: tooltips on any window, and the "kx2ImgButton" class.
#define KVKIT2_BUILDING
#include "kvkit2.h"
#include <commctrl.h>

namespace {

const wchar_t kTipProperty[] = L"kx2Tip";
const wchar_t kPressedProperty[] = L"kx2Pressed";

HWND tooltipFor(HWND window, bool create) {
    HWND owner = GetAncestor(window, GA_ROOT);
    if (!owner) owner = window;
    HWND tip = static_cast<HWND>(GetPropW(owner, kTipProperty));
    if (tip || !create) return tip;
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_BAR_CLASSES};
    InitCommonControlsEx(&init);
    tip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                          CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner,
                          nullptr, nullptr, nullptr);
    if (tip) SetPropW(owner, kTipProperty, tip);
    return tip;
}

TOOLINFOW toolFor(HWND window) {
    TOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = GetParent(window) ? GetParent(window) : window;
    tool.uId = reinterpret_cast<UINT_PTR>(window);
    return tool;
}

void paintButton(HWND button) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(button, &paint);
    RECT rect;
    GetClientRect(button, &rect);
    bool pressed = GetPropW(button, kPressedProperty) != nullptr;
    FillRect(dc, &rect, GetSysColorBrush(COLOR_BTNFACE));
    DrawEdge(dc, &rect, pressed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
    wchar_t caption[128];
    GetWindowTextW(button, caption, 128);
    HFONT font = reinterpret_cast<HFONT>(SendMessageW(GetParent(button), WM_GETFONT, 0, 0));
    HGDIOBJ oldFont = SelectObject(dc, font ? font : GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(IsWindowEnabled(button) ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    if (pressed) OffsetRect(&rect, 1, 1);
    DrawTextW(dc, caption, -1, &rect, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(dc, oldFont);
    EndPaint(button, &paint);
}

void setPressed(HWND button, bool pressed) {
    if (pressed) SetPropW(button, kPressedProperty, reinterpret_cast<HANDLE>(1));
    else RemovePropW(button, kPressedProperty);
    InvalidateRect(button, nullptr, FALSE);
}

void click(HWND button) {
    SendMessageW(GetParent(button), WM_COMMAND,
                 MAKEWPARAM(GetDlgCtrlID(button), BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

LRESULT CALLBACK imageButtonProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_PAINT:
        paintButton(button);
        return 0;
    case WM_LBUTTONDOWN:
        SetCapture(button);
        setPressed(button, true);
        return 0;
    case WM_LBUTTONUP: {
        bool wasPressed = GetPropW(button, kPressedProperty) != nullptr;
        ReleaseCapture();
        setPressed(button, false);
        POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
        RECT rect;
        GetClientRect(button, &rect);
        if (wasPressed && PtInRect(&rect, point)) click(button);
        return 0;
    }
    case WM_KEYUP:
        if (wParam == VK_SPACE) click(button);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_BUTTON;
    case WM_DESTROY:
        RemovePropW(button, kPressedProperty);
        break;
    }
    return DefWindowProcW(button, message, wParam, lParam);
}

void registerImageButton(HINSTANCE module) {
    WNDCLASSW windowClass = {};
    windowClass.style = CS_GLOBALCLASS | CS_PARENTDC;
    windowClass.lpfnWndProc = imageButtonProc;
    windowClass.hInstance = module;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = KX2_IMGBUTTON_CLASS;
    RegisterClassW(&windowClass);
}

}  // namespace

int WINAPI Kx2_SetToolTip(HWND window, const wchar_t* text) {
    if (!IsWindow(window)) return 0;
    bool removing = !text || !*text;
    HWND tip = tooltipFor(window, !removing);
    if (!tip) return removing ? 1 : 0;
    TOOLINFOW tool = toolFor(window);
    SendMessageW(tip, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    if (removing) return 1;
    tool.lpszText = const_cast<wchar_t*>(text);
    return SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool)) ? 1 : 0;
}

int WINAPI Kx2_GetToolTip(HWND window, wchar_t* text, int capacity) {
    if (!text || capacity <= 0) return 0;
    text[0] = 0;
    HWND tip = tooltipFor(window, false);
    if (!tip) return 0;
    wchar_t buffer[1024] = {};
    TOOLINFOW tool = toolFor(window);
    tool.lpszText = buffer;
    if (!SendMessageW(tip, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&tool))) return 0;
    lstrcpynW(text, buffer, capacity);
    return lstrlenW(text);
}

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(module);
        registerImageButton(module);
    }
    return TRUE;
}
