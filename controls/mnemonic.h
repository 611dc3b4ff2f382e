// The mnemonic rule shared by the tab manager and property sheets. Internal.
#pragma once
#include <windows.h>

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
