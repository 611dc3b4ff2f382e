// Menu item texts without mnemonic markers and accelerators.
#include "core/library.h"
#include "include/kvkit_menutext.h"
#include "kvtext.h"

namespace {

const UINT kTextlessTypes = MFT_SEPARATOR | MFT_BITMAP | MFT_OWNERDRAW;

// Removes the accelerator part and the mnemonic markers in place; "&&" leaves one "&".
void stripMenuMarkers(wchar_t* text) {
    wchar_t* out = text;
    for (const wchar_t* in = text; *in && *in != L'\t' && *in != L'\b'; ++in) {
        if (*in == L'&') {
            if (in[1] != L'&') continue;
            ++in;
        }
        *out++ = *in;
    }
    *out = 0;
}

// The item's raw text in a new kvtext buffer; null when there is none.
wchar_t* readItemText(HMENU menu, UINT item, BOOL byPosition) {
    MENUITEMINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = MIIM_FTYPE | MIIM_STRING;
    if (!GetMenuItemInfoW(menu, item, byPosition, &info) || (info.fType & kTextlessTypes)) return nullptr;
    int capacity = static_cast<int>(info.cch) + 1;
    auto* text = static_cast<wchar_t*>(GetMemory(capacity * static_cast<int>(sizeof(wchar_t))));
    if (!text) return nullptr;
    text[0] = 0;
    info.dwTypeData = text;
    info.cch = capacity;
    if (!GetMenuItemInfoW(menu, item, byPosition, &info)) {
        FreeMemory(text);
        return nullptr;
    }
    return text;
}

}  // namespace

wchar_t* KVKIT_CALL GetMenuText(HMENU menu, UINT item, UINT flags, wchar_t* buffer, int capacity) {
    if (!menu || !IsMenu(menu) || (buffer && capacity < 1)) return nullptr;
    wchar_t* text = readItemText(menu, item, (flags & MF_BYPOSITION) != 0);
    if (!text) return nullptr;
    stripMenuMarkers(text);
    if (!buffer) return text;
    kv_strcpy(buffer, text, capacity);
    FreeMemory(text);
    return buffer;
}
