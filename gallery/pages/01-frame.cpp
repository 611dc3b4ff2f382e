// Library frame: the library's own pictures, texts from the language module, the small caption
// font, the theme state, and a list box where Enter and Space act as a double click.
#include "gallery/gallery.h"
#include <stdio.h>
#include "kvkit_core.h"
#include "kvkit_theme.h"

namespace {

void paintPictures(HDC dc, const RECT&) {
    HMODULE library = GetModuleHandleW(L"kvkit.dll");
    SetBkMode(dc, TRANSPARENT);
    HGDIOBJ oldFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    const wchar_t* arrows[] = {L"btaob", L"btaun", L"btali", L"btare"};
    TextOutW(dc, 8, 6, L"Arrows (x3)", 11);
    for (int i = 0; i < 4; ++i) {
        HBITMAP bitmap = LoadBitmapW(library, arrows[i]);
        DrawBitmapScaled(dc, bitmap, 8 + i * 36, 24, 3);
        DeleteObject(bitmap);
    }
    TextOutW(dc, 170, 6, L"Sort arrows, glyphs, grip, marker (x3)", 38);
    int ids[] = {1000, 1001, 1500, 1600, 108};
    int x = 170;
    for (int id : ids) {
        HBITMAP bitmap = KxGetToolBitmap(id);
        BITMAP info;
        GetObjectW(bitmap, sizeof(info), &info);
        DrawBitmapScaled(dc, bitmap, x, 24, 3);
        x += info.bmWidth * 3 + 10;
        DeleteObject(bitmap);
    }
    TextOutW(dc, 8, 86, L"Tool bitmaps 2000-2003 (x2)", 27);
    for (int i = 0; i < 4; ++i) {
        HBITMAP bitmap = KxGetToolBitmap(2000 + i);
        DrawBitmapScaled(dc, bitmap, 8 + i * 40, 104, 2);
        DeleteObject(bitmap);
    }
    HFONT caption = GetSysSmallCaptionFont();
    SelectObject(dc, caption);
    TextOutW(dc, 200, 110, L"Small caption font", 18);
    SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    DeleteObject(caption);
    wchar_t theme[128];
    swprintf(theme, 128, L"Themes: IsAppThemed=%d, OpenThemeData=%p -> classic drawing",
             KxIsAppThemed(), static_cast<void*>(KxOpenThemeData(nullptr, L"BUTTON")));
    TextOutW(dc, 8, 146, theme, lstrlenW(theme));
    SelectObject(dc, oldFont);
}

void build(HWND page) {
    CreatePaintedPanel(page, 10, 10, 500, 170, paintPictures);
    AddLabel(page, 10, 190, 300, 16, L"Language module strings (months 7020-7031):");
    HWND list = CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", nullptr,
                                WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOTIFY, 10, 210, 200, 140,
                                page, reinterpret_cast<HMENU>(300), nullptr, nullptr);
    SendMessageW(list, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    for (UINT id = 7020; id <= 7031; ++id) {
        wchar_t text[81];
        if (LoadStringW(GalleryLanguageModule(), id, text, 81) > 0)
            SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    }
    SendMessageW(list, LB_SETCURSEL, 2, 0);
    Kx1SetListBoxProc(list);
    AddLabel(page, 220, 210, 290, 60,
             L"This list box is subclassed with Kx1SetListBoxProc: Enter and Space send the "
             L"parent a double-click notification.");
    CreateWindowExW(0, L"KVListbox", nullptr, WS_CHILD | WS_VISIBLE | WS_BORDER, 220, 280, 120, 70,
                    page, nullptr, nullptr, nullptr);
    AddLabel(page, 350, 290, 160, 40, L"A registered \"KVListbox\" window");
}

const bool registered = RegisterGalleryPage(
    {L"01-frame", 520, 360, build,
     L"The library frame: its own pictures (arrows, sort arrows, glyphs, grip, tool bitmaps), "
     L"texts from the language module, the small caption font, the theme state, and a list box "
     L"where Enter and Space act as a double click."});

}  // namespace
