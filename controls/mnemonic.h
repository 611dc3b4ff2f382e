// The mnemonic rule shared by the tab manager and property sheets. Internal.
#pragma once
#include <windows.h>
#include <commctrl.h>

// True when `text` holds "&" directly followed by `character` in upper or in lower case.
inline bool HasMnemonic(const wchar_t* text, wchar_t character) {
    auto upper = static_cast<wchar_t>(reinterpret_cast<UINT_PTR>(
        CharUpperW(reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(character)))));
    auto lower = static_cast<wchar_t>(reinterpret_cast<UINT_PTR>(
        CharLowerW(reinterpret_cast<LPWSTR>(static_cast<UINT_PTR>(character)))));
    for (; *text; ++text)
        if (text[0] == L'&' && (text[1] == upper || text[1] == lower)) return true;
    return false;
}

// True when the title of tab `index` of a tab control, read up to `textLength` characters (at
// most 159), has the mnemonic `character`.
inline bool TabHasMnemonic(HWND tabs, int index, int textLength, wchar_t character) {
    wchar_t text[160] = L"";
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = (textLength < 159 ? textLength : 159) + 1;
    if (!SendMessageW(tabs, TCM_GETITEMW, index, reinterpret_cast<LPARAM>(&item))) return false;
    return HasMnemonic(item.pszText, character);
}
