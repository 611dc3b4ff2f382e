// Navigation bar: the "KVNavigClass" window class, its window procedure, the record and the
// exports that add, remove, rename, select and query groups and entries.
#include "controls/navigation_internal.h"
#include "core/library.h"
#include "graphics/memory_dc.h"
#include "graphics/thumbnail.h"
#include "include/kvkit_bitmap.h"
#include "include/kvkit_paint.h"
#include "include/kvkit_resample.h"
#include <windowsx.h>
#include "kvtext.h"

namespace {

ATOM g_navigationClass;  // registered by the first KNg_Create

const int kNavigationIcon = 2100;
const int kDefaultIconSize = 16;
const int kSmallestIconSize = 8;
const int kLargestIconSize = 64;

// --- records ----------------------------------------------------------------------------------

wchar_t* copyText(const wchar_t* text) {
    int length = lstrlenW(text);
    auto* copy = static_cast<wchar_t*>(GetMemory((length + 1) * sizeof(wchar_t)));
    if (copy) kv_strcpy(copy, text, length + 1);
    return copy;
}

void releaseItem(NavItem& item) {
    FreeMemory(item.text);
    if (item.icon) DeleteObject(item.icon);
}

bool insertItem(NavBar& bar, int index, const NavItem& item) {
    void* grown = ReallocMemory(bar.items, (bar.itemCount + 1) * sizeof(NavItem));
    if (!grown) return false;
    bar.items = static_cast<NavItem*>(grown);
    MoveMemory(&bar.items[index + 1], &bar.items[index], (bar.itemCount - index) * sizeof(NavItem));
    bar.items[index] = item;
    ++bar.itemCount;
    return true;
}

// Removes `count` items from `index` on, releasing what they hold.
void removeItems(NavBar& bar, int index, int count) {
    for (int i = index; i < index + count; ++i) releaseItem(bar.items[i]);
    MoveMemory(&bar.items[index], &bar.items[index + count],
               (bar.itemCount - index - count) * sizeof(NavItem));
    bar.itemCount -= count;
    if (bar.itemCount == 0) {
        FreeMemory(bar.items);
        bar.items = nullptr;
    }
}

// The index after a group's last entry.
int endOfGroup(const NavBar& bar, int groupIndex) {
    int end = groupIndex + 1;
    while (end < bar.itemCount && !IsNavGroup(bar.items[end])) ++end;
    return end;
}

// The entry icon: the picture resized (proportions kept) so that its longer side is the icon
// size, centred on a square of its transparent colour `key`. The key is taken from the caller's
// picture, since a shrinking stretch may blend the corner pixel. Null when `icon` is no bitmap or
// the copy cannot be made at that size.
HBITMAP makeEntryIcon(HBITMAP icon, int size, COLORREF key) {
    int width, height;
    if (!BitmapSize(icon, &width, &height) || width <= 0 || height <= 0) return nullptr;
    int fitWidth = width >= height ? size : MulDiv(width, size, height);
    int fitHeight = height >= width ? size : MulDiv(height, size, width);
    return FitPictureOnSquare(icon, fitWidth, fitHeight, size, key);
}

// --- window procedure -------------------------------------------------------------------------

bool createRecord(HWND window) {
    auto* bar = static_cast<NavBar*>(Mres(sizeof(NavBar)));
    if (!bar) return false;
    bar->window = window;
    bar->nextId = 1;
    bar->iconSize = kDefaultIconSize;
    SetNavFont(*bar, nullptr);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(bar));
    return true;
}

void releaseRecord(NavBar* bar) {
    SetWindowLongPtrW(bar->window, GWLP_USERDATA, 0);
    for (int i = 0; i < bar->itemCount; ++i) releaseItem(bar->items[i]);
    FreeMemory(bar->items);
    if (bar->boldFont) DeleteObject(bar->boldFont);
    FreeMemory(bar);
}

void onPaint(const NavBar& bar) {
    tagKVPAINTSTRUCT paint;
    HDC dc = KVBeginPaint(bar.window, &paint, 0);
    if (dc) PaintNavBar(bar, dc, paint.client);
    KVEndPaint(&paint);
}

// Gaining the focus without a focused row puts it on the selected entry (on its group while the
// group is closed), else on the first group.
void onFocusChange(NavBar& bar, bool gained) {
    if (gained && FindNavItem(bar, bar.focused) < 0) {
        int top, height;
        bar.focused = bar.selected ? KNg_GetGroup(bar.window, bar.selected) : 0;
        if (bar.selected && NavRowOf(bar, bar.selected, &top, &height)) bar.focused = bar.selected;
        if (!bar.focused && bar.itemCount) bar.focused = bar.items[0].id;
    }
    InvalidateNavItem(bar, bar.focused);
}

LRESULT dialogCode(const MSG* message) {
    LRESULT code = DLGC_WANTARROWS | DLGC_WANTCHARS;
    // Enter chooses the focused row instead of pressing the dialog's default button.
    if (message && message->message == WM_KEYDOWN && message->wParam == VK_RETURN)
        code |= DLGC_WANTMESSAGE;
    return code;
}

LRESULT CALLBACK navigationProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE && !createRecord(window)) return FALSE;
    auto* bar = reinterpret_cast<NavBar*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (!bar) return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
    case WM_PAINT:
        onPaint(*bar);
        return 0;
    case WM_PRINTCLIENT: {
        RECT client;
        GetClientRect(window, &client);
        PaintNavBar(*bar, reinterpret_cast<HDC>(wParam), client);
        return 0;
    }
    case WM_ERASEBKGND:
        return 1;  // painting covers the whole client area
    case WM_SIZE:
        UpdateNavScrollBar(*bar);
        InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_SETFONT:
        SetNavFont(*bar, reinterpret_cast<HFONT>(wParam));
        UpdateNavScrollBar(*bar);
        if (LOWORD(lParam)) InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(bar->font);
    case WM_MOUSEMOVE:
        OnNavMouseMove(*bar, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return 0;
    case WM_MOUSELEAVE:
        OnNavMouseLeave(*bar);
        return 0;
    case WM_LBUTTONDOWN:
        OnNavButtonDown(*bar, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return 0;
    case WM_LBUTTONUP:
        OnNavButtonUp(*bar, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return 0;
    case WM_CAPTURECHANGED:
        bar->pressed = 0;
        return 0;
    case WM_KEYDOWN:
        OnNavKeyDown(*bar, static_cast<UINT>(wParam));
        return 0;
    case WM_CHAR:
        OnNavChar(*bar, static_cast<wchar_t>(wParam));
        return 0;
    case WM_GETDLGCODE:
        return dialogCode(reinterpret_cast<const MSG*>(lParam));
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        onFocusChange(*bar, message == WM_SETFOCUS);
        return 0;
    case WM_VSCROLL:
        OnNavVScroll(*bar, LOWORD(wParam));
        return 0;
    case WM_MOUSEWHEEL:
        OnNavMouseWheel(*bar, GET_WHEEL_DELTA_WPARAM(wParam));
        return 0;
    case WM_DESTROY:
        releaseRecord(bar);
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool registerNavigationClass() {
    if (g_navigationClass) return true;
    WNDCLASSW windowClass = {};
    windowClass.style = CS_GLOBALCLASS;
    windowClass.lpfnWndProc = navigationProc;
    windowClass.hInstance = g_libraryModule;
    windowClass.hIcon = LoadIconW(g_libraryModule, MAKEINTRESOURCEW(kNavigationIcon));
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = KNG_CLASS;
    g_navigationClass = RegisterClassW(&windowClass);
    return g_navigationClass != 0;
}

// The item of the bar that is a group (`wantGroup`) or an entry; null otherwise.
NavItem* findKind(NavBar* bar, int id, bool wantGroup) {
    int index = bar ? FindNavItem(*bar, id) : -1;
    if (index < 0 || IsNavGroup(bar->items[index]) != wantGroup) return nullptr;
    return &bar->items[index];
}

void contentChanged(NavBar& bar) {
    UpdateNavScrollBar(bar);
    InvalidateRect(bar.window, nullptr, FALSE);
}

}  // namespace

// --- shared with the painting and input sources ----------------------------------------------

NavBar* NavBarOf(HWND window) {
    if (!window || !g_navigationClass || !IsWindow(window)) return nullptr;
    if (GetClassLongW(window, GCW_ATOM) != g_navigationClass) return nullptr;
    return reinterpret_cast<NavBar*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

int FindNavItem(const NavBar& bar, int id) {
    if (id <= 0) return -1;
    for (int i = 0; i < bar.itemCount; ++i)
        if (bar.items[i].id == id) return i;
    return -1;
}

bool ExpandNavGroup(NavBar& bar, int group, bool expand) {
    NavItem* item = findKind(&bar, group, true);
    if (!item) return false;
    item->expanded = expand ? 1 : 0;
    if (!expand) {
        // The focus does not stay on a hidden entry.
        int focused = FindNavItem(bar, bar.focused);
        if (focused >= 0 && bar.items[focused].group == group) bar.focused = group;
    }
    bar.hot = 0;
    contentChanged(bar);
    return true;
}

void ChooseNavItem(NavBar& bar, int id) {
    int index = FindNavItem(bar, id);
    if (index < 0) return;
    KNGNOTIFY note = {};
    note.header.hwndFrom = bar.window;
    note.header.idFrom = GetDlgCtrlID(bar.window);
    note.item = id;
    if (IsNavGroup(bar.items[index])) {
        bool expand = !bar.items[index].expanded;
        ExpandNavGroup(bar, id, expand);
        note.header.code = KNGN_GROUPEXPAND;
        note.group = id;
        note.expanded = expand ? 1 : 0;
    } else {
        InvalidateNavItem(bar, bar.selected);
        bar.selected = id;
        InvalidateNavItem(bar, id);
        note.header.code = KNGN_SELECT;
        note.group = bar.items[index].group;
        note.value = bar.items[index].value;
    }
    // Last: the parent may change or destroy the bar while it handles the notification.
    SendMessageW(GetParent(bar.window), WM_NOTIFY, note.header.idFrom, reinterpret_cast<LPARAM>(&note));
}

void SetNavFont(NavBar& bar, HFONT font) {
    bar.font = font;
    HFONT used = font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    LOGFONTW description = {};
    GetObjectW(used, sizeof(description), &description);
    description.lfWeight = FW_BOLD;
    HFONT bold = CreateFontIndirectW(&description);
    if (bar.boldFont) DeleteObject(bar.boldFont);
    bar.boldFont = bold;
    HDC screen = GetDC(nullptr);
    HGDIOBJ previous = SelectObject(screen, used);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(screen, &metrics);
    SelectObject(screen, previous);
    ReleaseDC(nullptr, screen);
    bar.textHeight = metrics.tmHeight;
}

// --- exports ----------------------------------------------------------------------------------

HWND KVKIT_CALL KNg_Create(HWND parent, int id, int x, int y, int width, int height,
                           int iconSize) {
    if (!parent || !IsWindow(parent)) return nullptr;
    if (iconSize == 0) iconSize = kDefaultIconSize;
    if (iconSize < kSmallestIconSize || iconSize > kLargestIconSize) return nullptr;
    if (!registerNavigationClass()) return nullptr;
    HWND window = CreateWindowExW(0, KNG_CLASS, L"",
                                  WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_CLIPSIBLINGS,
                                  x, y, width, height, parent,
                                  reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                  g_libraryModule, nullptr);
    NavBar* bar = NavBarOf(window);
    if (!bar) return nullptr;
    bar->iconSize = iconSize;
    contentChanged(*bar);
    return window;
}

int KVKIT_CALL KNg_AddGroup(HWND window, const wchar_t* text, int before) {
    NavBar* bar = NavBarOf(window);
    if (!bar || !text) return 0;
    int index = bar->itemCount;
    if (before) {
        if (!findKind(bar, before, true)) return 0;
        index = FindNavItem(*bar, before);
    }
    NavItem item = {};
    item.id = bar->nextId;
    item.expanded = 1;
    item.text = copyText(text);
    if (!item.text || !insertItem(*bar, index, item)) {
        FreeMemory(item.text);
        return 0;
    }
    ++bar->nextId;
    contentChanged(*bar);
    return item.id;
}

int KVKIT_CALL KNg_AddEntry(HWND window, int group, HBITMAP icon, const wchar_t* text,
                            LPARAM value, int before) {
    NavBar* bar = NavBarOf(window);
    if (!bar || !text || !findKind(bar, group, true)) return 0;
    int index = endOfGroup(*bar, FindNavItem(*bar, group));
    if (before) {
        NavItem* next = findKind(bar, before, false);
        if (!next || next->group != group) return 0;
        index = FindNavItem(*bar, before);
    }
    NavItem item = {};
    item.id = bar->nextId;
    item.group = group;
    item.value = value;
    item.text = copyText(text);
    if (icon) {
        item.iconKey = Kx1GetBmBkColor(icon);
        item.icon = makeEntryIcon(icon, bar->iconSize, item.iconKey);
    }
    if (!item.text || (icon && !item.icon) || !insertItem(*bar, index, item)) {
        releaseItem(item);
        return 0;
    }
    ++bar->nextId;
    contentChanged(*bar);
    return item.id;
}

int KVKIT_CALL KNg_Remove(HWND window, int id) {
    NavBar* bar = NavBarOf(window);
    int index = bar ? FindNavItem(*bar, id) : -1;
    if (index < 0) return 0;
    int end = IsNavGroup(bar->items[index]) ? endOfGroup(*bar, index) : index + 1;
    for (int i = index; i < end; ++i) {
        int gone = bar->items[i].id;
        if (bar->selected == gone) bar->selected = 0;
        if (bar->focused == gone) bar->focused = 0;
        if (bar->hot == gone) bar->hot = 0;
        if (bar->pressed == gone) bar->pressed = 0;
    }
    removeItems(*bar, index, end - index);
    contentChanged(*bar);
    return 1;
}

int KVKIT_CALL KNg_SetText(HWND window, int id, const wchar_t* text) {
    NavBar* bar = NavBarOf(window);
    int index = bar ? FindNavItem(*bar, id) : -1;
    if (index < 0 || !text) return 0;
    wchar_t* copy = copyText(text);
    if (!copy) return 0;
    FreeMemory(bar->items[index].text);
    bar->items[index].text = copy;
    InvalidateNavItem(*bar, id);
    return 1;
}

wchar_t* KVKIT_CALL KNg_GetText(HWND window, int id) {
    NavBar* bar = NavBarOf(window);
    int index = bar ? FindNavItem(*bar, id) : -1;
    return index < 0 ? nullptr : copyText(bar->items[index].text);
}

int KVKIT_CALL KNg_SetValue(HWND window, int entry, LPARAM value) {
    NavItem* item = findKind(NavBarOf(window), entry, false);
    if (!item) return 0;
    item->value = value;
    return 1;
}

LPARAM KVKIT_CALL KNg_GetValue(HWND window, int entry) {
    NavItem* item = findKind(NavBarOf(window), entry, false);
    return item ? item->value : 0;
}

int KVKIT_CALL KNg_Select(HWND window, int entry) {
    NavBar* bar = NavBarOf(window);
    if (!bar) return 0;
    if (entry) {
        NavItem* item = findKind(bar, entry, false);
        if (!item) return 0;
        ExpandNavGroup(*bar, item->group, true);
        bar->focused = entry;
    }
    InvalidateNavItem(*bar, bar->selected);
    bar->selected = entry;
    InvalidateNavItem(*bar, entry);
    if (entry) EnsureNavItemVisible(*bar, entry);
    return 1;
}

int KVKIT_CALL KNg_GetSelection(HWND window) {
    NavBar* bar = NavBarOf(window);
    return bar ? bar->selected : 0;
}

int KVKIT_CALL KNg_Expand(HWND window, int group, int expand) {
    NavBar* bar = NavBarOf(window);
    return bar && ExpandNavGroup(*bar, group, expand != 0) ? 1 : 0;
}

int KVKIT_CALL KNg_IsExpanded(HWND window, int group) {
    NavItem* item = findKind(NavBarOf(window), group, true);
    return item ? item->expanded : -1;
}

int KVKIT_CALL KNg_GetCount(HWND window, int group) {
    NavBar* bar = NavBarOf(window);
    if (!bar || (group && !findKind(bar, group, true))) return -1;
    int count = 0;
    for (int i = 0; i < bar->itemCount; ++i) count += bar->items[i].group == group;
    return count;
}

int KVKIT_CALL KNg_GetItem(HWND window, int group, int index) {
    NavBar* bar = NavBarOf(window);
    if (!bar || index < 0 || (group && !findKind(bar, group, true))) return 0;
    for (int i = 0; i < bar->itemCount; ++i)
        if (bar->items[i].group == group && index-- == 0) return bar->items[i].id;
    return 0;
}

int KVKIT_CALL KNg_GetGroup(HWND window, int id) {
    NavBar* bar = NavBarOf(window);
    int index = bar ? FindNavItem(*bar, id) : -1;
    if (index < 0) return 0;
    return IsNavGroup(bar->items[index]) ? id : bar->items[index].group;
}

int KVKIT_CALL KNg_FindValue(HWND window, LPARAM value) {
    NavBar* bar = NavBarOf(window);
    if (!bar) return 0;
    for (int i = 0; i < bar->itemCount; ++i)
        if (!IsNavGroup(bar->items[i]) && bar->items[i].value == value) return bar->items[i].id;
    return 0;
}

int KVKIT_CALL KNg_GetItemRect(HWND window, int id, RECT* rect) {
    NavBar* bar = NavBarOf(window);
    int top, height;
    if (!bar || !rect || !NavRowOf(*bar, id, &top, &height)) return 0;
    RECT client;
    GetClientRect(window, &client);
    SetRect(rect, 0, top - bar->scrollTop, client.right, top - bar->scrollTop + height);
    return 1;
}
