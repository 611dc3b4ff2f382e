// Edit-field buttons: the "EditButton" window class (input, painting, notifications), attaching a
// button to a host control with its shortcut tooltip, and the exports that show, hide, move, find
// and destroy buttons.
#include "controls/editbutton.h"
#include <wchar.h>
#include <wctype.h>
#include "controls/buttonface.h"
#include "core/library.h"
#include "kvkit2.h"
#include "kvtext.h"

const wchar_t kAttrProperty[] = L"attr";
const wchar_t kParentProperty[] = L"Parent";
const wchar_t kBitmapProperty[] = L"Bm";
const wchar_t kColourProperty[] = L"BkColor";
const wchar_t kFormatProperty[] = L"FtType";
const wchar_t kToolProperty[] = L"hwndTool";
const wchar_t kTool2Property[] = L"hwndTool2";
const wchar_t kChangedProperty[] = L"Changed";

namespace {

const wchar_t kEditButtonClass[] = L"EditButton";
const wchar_t kImageButtonClass[] = L"kx2ImgButton";
const int kButtonWidth = 20;       // without a bitmap
const int kPictureMargin = 4;      // added to a bitmap's width
const UINT kImageButtonStyle = 0x8000;
const UINT kLoadFormatStyle = 0x40;
const UINT kSaveFormatStyle = 0x80;
const UINT kLoadFormatText = 72, kSaveFormatText = 73, kClearText = 76, kModifierText = 16573;
const int kCaptionModifierLength = 9;   // the modifier's name beside a caption
const int kKeyTableModifierLength = 19;
const int kMnemonicCaptionLength = 48;

// Tooltip texts of captionless buttons, by tooltip key.
const UINT kTooltipKeys[] = {14018, 16697, 16696, 16698, 72};

// One flag for all buttons: only one can hold the mouse capture at a time.
bool g_pressed;

// --- input ------------------------------------------------------------------------------------

void redrawNow(HWND button) { RedrawWindow(button, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

void onLeftButtonDown(HWND button) {
    SetCapture(button);
    g_pressed = true;
    redrawNow(button);
}

// A release inside the button is a click: the host hears a double click, or the parent a command.
void onLeftButtonUp(HWND button, LPARAM lParam) {
    ReleaseCapture();
    g_pressed = false;
    redrawNow(button);
    UINT attr = ButtonAttributes(button);
    HWND target = static_cast<HWND>(GetPropW(button, kParentProperty));
    if (!target) return;
    WPARAM command = MAKEWPARAM(GetDlgCtrlID(button), 0);
    if (attr & EBA_CLEAR) {
        SetWindowTextW(target, L"");
        SendMessageW(GetParent(target), WM_COMMAND, command, reinterpret_cast<LPARAM>(button));
        return;
    }
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    ClientToScreen(button, &point);
    RECT frame;
    GetWindowRect(button, &frame);
    if (!PtInRect(&frame, point)) return;
    if (attr & EBA_INSIDE) ScreenToClient(target, &point);
    if ((attr & EBA_NOTIFYEDIT) || !(attr & EBA_OWNID))
        SendMessageW(target, WM_LBUTTONDBLCLK, 0, MAKELPARAM(point.x, point.y));
    else
        SendMessageW(target, WM_COMMAND, command, reinterpret_cast<LPARAM>(button));
}

// Right clicks are not hit-tested.
void onRightButtonUp(HWND button) {
    ReleaseCapture();
    UINT attr = ButtonAttributes(button);
    HWND target = static_cast<HWND>(GetPropW(button, kParentProperty));
    if (!(attr & EBA_RCLICK) || !target) return;
    if ((attr & EBA_OWNID) && !(attr & EBA_NOTIFYEDIT))
        SendMessageW(target, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(button), WM_RBUTTONUP),
                     reinterpret_cast<LPARAM>(button));
    else
        SendMessageW(target, WM_LBUTTONDBLCLK, MK_RBUTTON, 0);
}

// Alt with the caption's mnemonic clicks a clear button.
void onSysKeyUp(HWND button, WPARAM key) {
    if (!(ButtonAttributes(button) & EBA_CLEAR) || GetKeyState(VK_MENU) >= 0) return;
    wchar_t caption[kMnemonicCaptionLength + 1];
    GetWindowTextW(button, caption, kMnemonicCaptionLength + 1);
    const wchar_t* ampersand = wcschr(caption, L'&');
    if (ampersand && ampersand[1] && towupper(ampersand[1]) == towupper(static_cast<wchar_t>(key)))
        SendMessageW(button, WM_LBUTTONUP, 0, 0);
}

// Drawn in XOR, so that gaining and losing the focus toggle it.
void toggleFocusRect(HWND button) {
    RECT focus;
    GetClientRect(button, &focus);
    InflateRect(&focus, -2, -2);
    HDC dc = GetDC(button);
    DrawFocusRect(dc, &focus);
    ReleaseDC(button, dc);
}

void onDestroy(HWND button) {
    RemovePropW(button, kParentProperty);
    // Date fields share one bitmap between two buttons: the first one destroyed deletes it.
    HGDIOBJ bitmap = RemovePropW(button, kBitmapProperty);
    BITMAP info;
    if (bitmap && GetObjectW(bitmap, sizeof(info), &info)) DeleteObject(bitmap);
    RemovePropW(button, kAttrProperty);
    RemovePropW(button, kColourProperty);
    RemovePropW(button, kFormatProperty);
}

// --- painting ---------------------------------------------------------------------------------

struct PropertySearch {
    const wchar_t* name;
    bool found;
};

BOOL CALLBACK matchProperty(HWND, LPWSTR name, HANDLE, ULONG_PTR data) {
    auto* search = reinterpret_cast<PropertySearch*>(data);
    if (IS_INTRESOURCE(name) || lstrcmpiW(name, search->name) != 0) return TRUE;
    search->found = true;
    return FALSE;
}

// GetProp cannot tell a property holding 0 (black) from a missing one.
bool hasProperty(HWND window, const wchar_t* name) {
    PropertySearch search = {name, false};
    EnumPropsExW(window, matchProperty, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

void paintFlat(HWND button, HDC dc, const RECT& client, HBITMAP picture, bool enabled, bool focused) {
    if (hasProperty(button, kColourProperty)) {
        auto colour = static_cast<COLORREF>(reinterpret_cast<UINT_PTR>(GetPropW(button, kColourProperty)));
        HBRUSH brush = CreateSolidBrush(colour);
        FillRect(dc, &client, brush);
        DeleteObject(brush);
    }
    DrawButtonPicture(dc, client, picture, enabled);
    if (focused) {
        RECT focus = client;
        InflateRect(&focus, -2, -2);
        DrawFocusRect(dc, &focus);
    }
}

void onPaint(HWND button) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(button, &paint);
    RECT client;
    GetClientRect(button, &client);
    auto picture = static_cast<HBITMAP>(GetPropW(button, kBitmapProperty));
    bool enabled = IsWindowEnabled(button) != FALSE;
    bool focused = GetFocus() == button;
    if (ButtonAttributes(button) & EBA_FLAT)
        paintFlat(button, dc, client, picture, enabled, focused);
    else
        PaintButtonFace(dc, client, g_pressed, picture, enabled, focused);
    EndPaint(button, &paint);
}

// --- creation ---------------------------------------------------------------------------------

int buttonWidth(HBITMAP bitmap) {
    BITMAP info;
    if (bitmap && GetObjectW(bitmap, sizeof(info), &info)) return info.bmWidth + kPictureMargin;
    return kButtonWidth;
}

bool isClass(HWND window, const wchar_t* className) {
    wchar_t name[32];
    return GetClassNameW(window, name, 32) && lstrcmpiW(name, className) == 0;
}

// "Text (Alt+X)": the text without its "&", the modifier key's name and the mnemonic.
void setShortcutTooltip(HWND button, const wchar_t* text, wchar_t mnemonic, int modifierLength) {
    wchar_t* modifier = LoadLanguageString(kModifierText, modifierLength);
    if (!modifier) return;
    wchar_t plain[kLanguageStringLength + 1];
    kv_strcpy(plain, text, kLanguageStringLength + 1);
    StringRemoveChar(plain, L'&');
    wchar_t tooltip[2 * kLanguageStringLength];
    _snwprintf(tooltip, 2 * kLanguageStringLength, L"%ls (%ls+%lc)", plain, modifier,
               static_cast<wint_t>(towupper(mnemonic)));
    tooltip[2 * kLanguageStringLength - 1] = 0;
    FreeMemory(modifier);
    Kx2_SetToolTip(button, tooltip);
}

// A caption's mnemonic, or for a captionless tab stop the text of the key table.
void addTooltip(HWND button, const wchar_t* caption, UINT attr, int tooltipKey) {
    if (caption && *caption) {
        const wchar_t* ampersand = wcschr(caption, L'&');
        if (ampersand && ampersand[1])
            setShortcutTooltip(button, caption, ampersand[1], kCaptionModifierLength);
        return;
    }
    const int keyCount = sizeof(kTooltipKeys) / sizeof(kTooltipKeys[0]);
    if (!(attr & EBA_TABSTOP) || tooltipKey < 0 || tooltipKey >= keyCount) return;
    wchar_t* text = LoadLanguageString(kTooltipKeys[tooltipKey]);
    if (!text) return;
    const wchar_t* ampersand = wcschr(text, L'&');
    wchar_t mnemonic = ampersand && ampersand[1] ? ampersand[1] : text[0];
    if (mnemonic) setShortcutTooltip(button, text, mnemonic, kKeyTableModifierLength);
    FreeMemory(text);
}

// What a button is made of, by its attributes. `caption` is a kvtext buffer or null.
struct ButtonKind {
    const wchar_t* className;
    bool imageButton;  // draws its caption, not a picture
    wchar_t* caption;
    DWORD style;
    DWORD exStyle;
};

// False only when an image button's caption cannot be loaded.
bool chooseKind(UINT attr, ButtonKind* kind) {
    kind->className = kEditButtonClass;
    kind->imageButton = false;
    kind->caption = nullptr;
    kind->style = WS_CHILD | WS_VISIBLE | ((attr & EBA_TABSTOP) ? WS_TABSTOP : WS_CLIPSIBLINGS);
    kind->exStyle = 0;
    if (attr & EBA_FLAT) {
        kind->exStyle = WS_EX_TOPMOST;
    } else if (attr & (EBA_LOADFMT | EBA_SAVEFMT)) {
        bool load = (attr & EBA_LOADFMT) != 0;
        kind->caption = LoadLanguageString(load ? kLoadFormatText : kSaveFormatText);
        if (!kind->caption) return false;
        kind->className = kImageButtonClass;
        kind->imageButton = true;
        kind->style |= kImageButtonStyle | (load ? kLoadFormatStyle : kSaveFormatStyle);
    } else if (attr & EBA_CLEAR) {
        kind->caption = LoadLanguageString(kClearText);
    }
    return true;
}

bool resizesHost(UINT attr) { return !(attr & (EBA_OUTSIDE | EBA_INSIDE)); }

void moveWindow(HWND window, const RECT& rect) {
    MoveWindow(window, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
}

// Widens the host by the button's width, unless the button did not take room from it.
void giveWidthBack(HWND button) {
    HWND host = static_cast<HWND>(GetPropW(button, kParentProperty));
    if (!host || !resizesHost(ButtonAttributes(button))) return;
    RECT client, rect = RectInParent(host);
    GetClientRect(button, &client);
    MoveWindow(host, rect.left, rect.top, rect.right - rect.left + client.right,
               rect.bottom - rect.top, TRUE);
}

}  // namespace

RECT RectInParent(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

void DetachEditButton(HWND button) {
    if (GetWindowLongW(button, GWL_STYLE) & WS_VISIBLE) giveWidthBack(button);
    RemovePropW(button, kBitmapProperty);
    DestroyWindow(button);
}

LRESULT CALLBACK EdBtnProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_LBUTTONDOWN:
        if (IsWindowEnabled(button)) onLeftButtonDown(button);
        return 0;
    case WM_LBUTTONUP:
        if (IsWindowEnabled(button)) onLeftButtonUp(button, lParam);
        return 0;
    case WM_RBUTTONDOWN:
        if (IsWindowEnabled(button)) SetCapture(button);
        return 0;
    case WM_RBUTTONUP:
        if (IsWindowEnabled(button)) onRightButtonUp(button);
        return 0;
    case WM_KEYDOWN:
        if (wParam == VK_SPACE) PostMessageW(button, WM_LBUTTONDOWN, 0, 0);
        return 0;
    case WM_KEYUP:
        if (wParam == VK_SPACE) PostMessageW(button, WM_LBUTTONUP, 0, 0);
        return 0;
    case WM_SYSKEYUP:
        onSysKeyUp(button, wParam);
        break;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        toggleFocusRect(button);
        return 0;
    case WM_ENABLE:
        InvalidateRect(button, nullptr, TRUE);
        return 0;
    case WM_PAINT:
        onPaint(button);
        return 0;
    case WM_DESTROY:
        onDestroy(button);
        return 0;
    }
    return DefWindowProcW(button, message, wParam, lParam);
}

HWND KVKIT_CALL KxSetEditBtnEx(HWND host, int id, HBITMAP bitmap, UINT attr, RECT* rect,
                               int tooltipKey) {
    if (!IsWindow(host)) return nullptr;
    HWND container = (attr & EBA_INSIDE) ? host : GetParent(host);
    if (!container) return nullptr;
    RECT original = RectInParent(host);
    RECT rc = original;
    if (rect) rc = *rect;
    else if (attr & EBA_INSIDE) GetClientRect(host, &rc);
    if (!(attr & EBA_OWNID)) id = EDITBUTTON_ID;
    int width = buttonWidth(bitmap);
    int rcWidth = rc.right - rc.left, rcHeight = rc.bottom - rc.top;

    // A hidden button is shown again and takes its room back.
    HWND existing = GetDlgItem(container, id);
    if (existing) {
        if (GetWindowLongW(existing, GWL_STYLE) & WS_VISIBLE) return existing;
        ShowWindow(existing, SW_SHOW);
        if (resizesHost(attr)) MoveWindow(host, rc.left, rc.top, rcWidth - width, rcHeight, TRUE);
        return existing;
    }

    ButtonKind kind;
    if (!chooseKind(attr, &kind)) return nullptr;
    if (resizesHost(attr)) MoveWindow(host, rc.left, rc.top, rcWidth - width, rcHeight, TRUE);
    // A combo box's rectangle includes its drop-down list.
    int height = rcHeight;
    if (rect && isClass(host, L"Combobox")) height = original.bottom - original.top;
    int x = rc.right - ((attr & EBA_OUTSIDE) ? 0 : width);
    HWND button = CreateWindowExW(kind.exStyle, kind.className, kind.caption ? kind.caption : L"",
                                  kind.style, x, rc.top, width, height, container,
                                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                  g_libraryModule, nullptr);
    if (button) addTooltip(button, kind.caption, attr, tooltipKey);
    FreeMemory(kind.caption);
    if (!button) {
        if (resizesHost(attr)) moveWindow(host, original);
        return nullptr;
    }

    if (attr & EBA_OWNID)
        SetWindowPos(button, host, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
    if (attr & EBA_DISABLED) EnableWindow(button, FALSE);
    // Image buttons draw their caption: a bitmap given for one stays the caller's.
    if (!kind.imageButton) SetPropW(button, kBitmapProperty, bitmap);
    bool notifiesContainer = (attr & EBA_OWNID) && !(attr & (EBA_NOTIFYEDIT | EBA_CLEAR));
    SetPropW(button, kParentProperty, notifiesContainer ? container : host);
    SetPropW(button, kAttrProperty, reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(attr)));

    if (attr & EBA_SUBCLASS) {
        if (!Kx1SetSubProc(host, EditFieldProc)) {
            RemovePropW(button, kBitmapProperty);
            DestroyWindow(button);
            if (resizesHost(attr)) moveWindow(host, original);
            return nullptr;
        }
        SetPropW(host, kToolProperty, button);
    }
    return button;
}

HWND KVKIT_CALL KxSetEditBtn(HWND host, int id, HBITMAP bitmap, UINT attr, RECT* rect) {
    return KxSetEditBtnEx(host, id, bitmap, attr, rect, 0);
}

BOOL KVKIT_CALL KxSetEditBtnFormatFype(HWND button, int ftType) {
    return SetPropW(button, kFormatProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(ftType)));
}

BOOL KVKIT_CALL KxSetEditBtnBkColor(HWND button, COLORREF colour) {
    BOOL set = SetPropW(button, kColourProperty, reinterpret_cast<HANDLE>(static_cast<UINT_PTR>(colour)));
    if (set) InvalidateRect(button, nullptr, TRUE);
    return set;
}

HWND KVKIT_CALL KxGetEditBtnParent(HWND parent) {
    return parent ? GetDlgItem(parent, EDITBUTTON_ID) : nullptr;
}

HWND KVKIT_CALL KxGetEditBtn(HWND host) {
    return host ? KxGetEditBtnParent(GetParent(host)) : nullptr;
}

BOOL KVKIT_CALL KxIsEditBtn(HWND window) { return window && isClass(window, kEditButtonClass); }

BOOL KVKIT_CALL KxHideEditBtn(HWND parent) {
    HWND button = KxGetEditBtnParent(parent);
    if (!button) return FALSE;
    if (!(GetWindowLongW(button, GWL_STYLE) & WS_VISIBLE)) return TRUE;
    ShowWindow(button, SW_HIDE);
    giveWidthBack(button);
    return TRUE;
}

BOOL KVKIT_CALL KxMoveEditBtn(HWND parent, HWND host, RECT* rect) {
    HWND button = KxGetEditBtnParent(parent);
    if (!button) return FALSE;
    UINT attr = ButtonAttributes(button);
    RECT rc;
    if (rect) rc = *rect;
    else if (!IsWindow(host)) return FALSE;
    else if (attr & EBA_INSIDE) GetClientRect(host, &rc);
    else rc = RectInParent(host);
    RECT client;
    GetClientRect(button, &client);
    int width = client.right, height = rc.bottom - rc.top;
    if (resizesHost(attr) && IsWindow(host))
        MoveWindow(host, rc.left, rc.top, rc.right - rc.left - width, height, TRUE);
    // Unlike at creation, an outside button also takes the right end of the rectangle.
    MoveWindow(button, rc.right - width, rc.top, width, height, TRUE);
    return TRUE;
}

BOOL KVKIT_CALL KxDestrEditBtn(HWND parent) {
    HWND button = KxGetEditBtnParent(parent);
    return button && DestroyWindow(button);
}
