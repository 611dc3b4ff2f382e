// Combo box helpers: first-letter selection for extended combo boxes, lookup by item data, the
// sorted insertion index and the drop-down width.
#include "core/library.h"
#include "include/kvkit_combobox.h"
#include <commctrl.h>
#include <algorithm>
#include "kvtext.h"

namespace {

const int kFirstLetterCapacity = 4;  // enough of an item's text to read its first letter
const int kItemTextLength = 260;
const int kIndentWidth = 10;         // per indent level of an extended combo box's item
const int kImageWidth = 22;          // the image of an extended combo box's item
const int kDropdownMargin = 5;

wchar_t upperCase(wchar_t character) {
    return static_cast<wchar_t>(reinterpret_cast<UINT_PTR>(
        CharUpperW(reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(character)))));
}

bool isComboBoxEx(HWND window) {
    wchar_t name[32];
    return GetClassNameW(window, name, 32) && lstrcmpiW(name, WC_COMBOBOXEXW) == 0;
}

int itemCount(HWND combo) { return static_cast<int>(SendMessageW(combo, CB_GETCOUNT, 0, 0)); }

// Reads an extended combo box item's text (and indent level); false when there is no such item.
bool readExItem(HWND comboEx, int index, wchar_t* text, int capacity, int* indent = nullptr) {
    COMBOBOXEXITEMW item = {};
    item.mask = CBEIF_TEXT | (indent ? CBEIF_INDENT : 0);
    item.iItem = index;
    item.pszText = text;
    item.cchTextMax = capacity;
    text[0] = 0;
    if (!SendMessageW(comboEx, CBEM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item))) return false;
    if (indent) *indent = item.iIndent;
    return true;
}

int textWidth(HDC dc, const wchar_t* text) {
    SIZE size = {};
    GetTextExtentPoint32W(dc, text, lstrlenW(text), &size);
    return size.cx;
}

int widestExItem(HWND comboEx, HDC dc) {
    int widest = 0, count = itemCount(comboEx);
    for (int i = 0; i < count; ++i) {
        wchar_t text[kItemTextLength + 1];
        if (readExItem(comboEx, i, text, kItemTextLength + 1)) widest = std::max(widest, textWidth(dc, text));
    }
    return widest;
}

// -1 when memory for an item's text runs out.
int widestPlainItem(HWND combo, HDC dc) {
    int widest = 0, count = itemCount(combo);
    for (int i = 0; i < count; ++i) {
        int length = static_cast<int>(SendMessageW(combo, CB_GETLBTEXTLEN, i, 0));
        if (length < 0) continue;
        auto* text = static_cast<wchar_t*>(GetMemory((length + 1) * sizeof(wchar_t)));
        if (!text) return -1;
        if (SendMessageW(combo, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(text)) >= 0)
            widest = std::max(widest, textWidth(dc, text));
        FreeMemory(text);
    }
    return widest;
}

}  // namespace

int KVKIT_CALL Kx1ComboBoxEx_CheckKey(HWND combo, UINT, unsigned short key, LPARAM) {
    if (!IsWindow(combo)) return -1;
    int count = itemCount(combo);
    if (count <= 0) return -1;
    wchar_t wanted = upperCase(key);
    int current = static_cast<int>(SendMessageW(combo, CB_GETCURSEL, 0, 0));
    int start = (current < 0 ? 0 : current) + 1;
    HWND comboEx = GetParent(combo);
    for (int i = 0; i < count; ++i) {
        int index = (start + i) % count;
        wchar_t text[kFirstLetterCapacity];
        if (!readExItem(comboEx, index, text, kFirstLetterCapacity)) continue;
        if (upperCase(text[0]) != wanted) continue;
        SendMessageW(combo, CB_SETCURSEL, index, 0);
        PostMessageW(comboEx, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(combo), CBN_SELENDOK), 0);
        return index;
    }
    return -1;
}

int KVKIT_CALL Kx1ComboBoxEx_GetItemWithData(HWND combo, LPARAM data) {
    int count = itemCount(combo);
    for (int i = 0; i < count; ++i)
        if (SendMessageW(combo, CB_GETITEMDATA, i, 0) == data) return i;
    return -1;
}

int KVKIT_CALL Kx1ComboBoxEx_GetSortIndex(HWND comboEx, const wchar_t* text) {
    if (!IsWindow(comboEx) || !text) return -1;
    int count = itemCount(comboEx);
    if (count <= 0) return 0;
    for (int i = 0; i < count; ++i) {
        wchar_t itemText[kItemTextLength + 1];
        readExItem(comboEx, i, itemText, kItemTextLength + 1);
        if (lstrcmpW(itemText, text) > 0) return i;
    }
    return count;
}

LRESULT KVKIT_CALL Kx1ComboxEx_SubProc(HWND combo, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_KEYDOWN &&
        Kx1ComboBoxEx_CheckKey(combo, message, static_cast<unsigned short>(wParam), lParam) >= 0)
        return 1;
    WNDPROC previous = Kx1GetSubProc(message == WM_DESTROY, combo);
    return previous ? CallWindowProcW(previous, combo, message, wParam, lParam) : 0;
}

int KVKIT_CALL KxCbSetDropdownWidth(HWND combo, HFONT font) {
    if (!IsWindow(combo)) return 0;
    bool extended = isComboBoxEx(combo);
    if (!font) font = reinterpret_cast<HFONT>(SendMessageW(combo, WM_GETFONT, 0, 0));
    HDC dc = GetDC(combo);
    HGDIOBJ previousFont = font ? SelectObject(dc, font) : nullptr;
    int width = extended ? widestExItem(combo, dc) : widestPlainItem(combo, dc);
    if (previousFont) SelectObject(dc, previousFont);
    ReleaseDC(combo, dc);
    if (extended) {
        wchar_t text[kFirstLetterCapacity];
        int indent = 0;
        readExItem(combo, 0, text, kFirstLetterCapacity, &indent);
        width += kIndentWidth * indent + kImageWidth;
    }
    if (width < 1) return width;
    width += kDropdownMargin + GetSystemMetrics(SM_CXVSCROLL);
    SendMessageW(combo, CB_SETDROPPEDWIDTH, width, 0);
    return width;
}
