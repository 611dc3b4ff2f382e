// Navigation window, tree printing, splash and diagnostic windows. The page shows a navigation
// bar with two groups and a selected entry (32-pixel pictures resized to the bar's 24), and the
// first page of a customer tree printed into an enhanced metafile: the whole page, and its top
// left part at full size, which a movable frame marks on the whole page. Further screenshots:
// the module list sorted by module name, the splash window, and the bitmap chooser over the
// library's own bitmaps.
#include "gallery/gallery.h"
#include <commctrl.h>
#include <stdio.h>
#include <string>
#include "kvkit_diagnostics.h"
#include "kvkit_draw.h"
#include "kvkit_listview.h"
#include "kvkit_navigation.h"
#include "kvkit_treeprint.h"
#include "kvkit_treeview.h"
#include "kvtext.h"

namespace {

const COLORREF kMagenta = RGB(255, 0, 255);
const int kPreviewLeft = 230, kPreviewTop = 40, kPreviewWidth = 320;
const RECT kDetail = {40, 40, 560, 150};  // part of the printed page shown at full size

struct PageState {
    HWND page;
    HENHMETAFILE printed;
    int pages;
    RECT pageSize;
    std::wstring chosen;
};
PageState g_page;

// --- pictures ---------------------------------------------------------------------------------

// A picture of width x height on magenta (the transparent colour), drawn by `paint`.
template <typename Paint>
HBITMAP picture(int width, int height, Paint paint) {
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    HGDIOBJ old = SelectObject(dc, bitmap);
    HBRUSH background = CreateSolidBrush(kMagenta);
    RECT all = {0, 0, width, height};
    FillRect(dc, &all, background);
    DeleteObject(background);
    paint(dc);
    SelectObject(dc, old);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return bitmap;
}

HBITMAP people(COLORREF colour) {
    return picture(32, 32, [&](HDC dc) {
        FillShape(dc, colour, true, 10, 2, 22, 14);
        FillShape(dc, colour, true, 4, 16, 28, 40);
    });
}

HBITMAP building(COLORREF colour) {
    return picture(32, 32, [&](HDC dc) {
        FillShape(dc, colour, false, 4, 6, 28, 31);
        for (int y = 10; y < 26; y += 6)
            for (int x = 8; x < 24; x += 7) FillShape(dc, RGB(250, 240, 160), false, x, y, x + 4, y + 4);
    });
}

// A calendar leaf with `rows` lines of days marked.
HBITMAP calendar(int rows) {
    return picture(32, 32, [&](HDC dc) {
        FillShape(dc, RGB(255, 255, 255), false, 3, 4, 29, 30);
        FillShape(dc, RGB(200, 50, 50), false, 3, 4, 29, 11);
        for (int row = 0; row < rows; ++row) FillShape(dc, RGB(70, 110, 190), false, 7, 14 + row * 5, 25, 17 + row * 5);
    });
}

// --- navigation bar ---------------------------------------------------------------------------

void buildBar(HWND page) {
    HWND bar = KNg_Create(page, 1401, 10, 10, 200, 440, 24);
    int customers = KNg_AddGroup(bar, L"Customers", 0);
    int calendarGroup = KNg_AddGroup(bar, L"Calendar", 0);
    struct {
        int group;
        HBITMAP icon;
        const wchar_t* text;
    } entries[] = {
        {customers, building(RGB(70, 110, 190)), L"All customers"},
        {customers, building(RGB(200, 140, 30)), L"Key accounts"},
        {customers, people(RGB(60, 160, 90)), L"Contacts"},
        {calendarGroup, calendar(1), L"Today"},
        {calendarGroup, calendar(2), L"This week"},
        {calendarGroup, calendar(4), L"This month"},
    };
    int keyAccounts = 0;
    for (int i = 0; i < 6; ++i) {
        int entry = KNg_AddEntry(bar, entries[i].group, entries[i].icon, entries[i].text, 100 + i, 0);
        if (i == 1) keyAccounts = entry;
        DeleteObject(entries[i].icon);  // the bar keeps its own copies
    }
    KNg_Select(bar, keyAccounts);
}

// --- printed tree -----------------------------------------------------------------------------

HIMAGELIST stateImages() {
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 3, 0);
    for (int image = 0; image < 3; ++image) {
        HBITMAP box = picture(16, 16, [&](HDC dc) {
            if (image == 0) return;
            FillShape(dc, RGB(255, 255, 255), false, 2, 2, 15, 15);
            if (image != 2) return;
            HPEN pen = CreatePen(PS_SOLID, 2, RGB(0, 0, 0));
            HGDIOBJ old = SelectObject(dc, pen);
            MoveToEx(dc, 4, 8, nullptr);
            LineTo(dc, 7, 11);
            LineTo(dc, 12, 5);
            SelectObject(dc, old);
            DeleteObject(pen);
        });
        ImageList_AddMasked(images, box, kMagenta);
        DeleteObject(box);
    }
    return images;
}

HIMAGELIST itemImages() {
    HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 3, 0);
    HBITMAP pictures[] = {
        picture(16, 16, [](HDC dc) { FillShape(dc, RGB(70, 110, 190), false, 2, 3, 14, 15); }),
        picture(16, 16, [](HDC dc) {
            FillShape(dc, RGB(60, 160, 90), true, 5, 1, 11, 7);
            FillShape(dc, RGB(60, 160, 90), true, 2, 8, 14, 18);
        }),
        picture(16, 16, [](HDC dc) { FillShape(dc, RGB(220, 30, 30), true, 0, 8, 8, 16); }),
    };
    for (HBITMAP bitmap : pictures) {
        ImageList_AddMasked(images, bitmap, kMagenta);
        DeleteObject(bitmap);
    }
    ImageList_SetOverlayImage(images, 2, 1);
    return images;
}

// Customers with contacts, some checked and marked, printed with every item into a metafile.
void printTree(HWND page) {
    HWND tree = CreateWindowExW(0, WC_TREEVIEWW, L"", WS_CHILD | TVS_HASBUTTONS | TVS_LINESATROOT,
                                0, 0, 10, 10, page, nullptr, GetModuleHandleW(nullptr), nullptr);
    HIMAGELIST states = stateImages(), images = itemImages();
    TreeView_SetImageList(tree, states, TVSIL_STATE);
    TreeView_SetImageList(tree, images, TVSIL_NORMAL);
    static const wchar_t* const kCustomers[] = {L"Berg & Co", L"Falk Logistik", L"Haas AG", L"Hofmann KG",
                                                L"Lind GmbH", L"Roth Bau", L"Stein Optik", L"Wolf Medien"};
    static const wchar_t* const kContacts[] = {L"Anna", L"Ben", L"Carl", L"Dora", L"Eva", L"Finn", L"Greta"};
    int image = 0, contactImage = 1, serial = 0;
    for (const wchar_t* name : kCustomers) {
        HTREEITEM customer = KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, &image, name, 0, 0);
        KxTreeView_SetCheckState(tree, customer, serial % 3 == 0);
        if (serial % 2 == 0) KxTreeView_SetItemState(tree, customer, 1, TVIS_BOLD);
        for (const wchar_t* contact : kContacts) {
            wchar_t text[80];
            swprintf(text, 80, L"%ls %ls", contact, name);
            HTREEITEM item = KxTreeView_InsertItem(tree, nullptr, customer, nullptr, nullptr, &contactImage,
                                                   text, 0, 0);
            KxTreeView_SetCheckState(tree, item, ++serial % 4 == 0);
            if (serial % 5 == 0) KxTreeView_SetMark(tree, item, 1);
        }
    }
    // The metafile's frame is the whole page (in hundredths of a millimetre), so that playing it
    // into a rectangle maps the page, not just what was drawn on it.
    HDC screen = GetDC(nullptr);
    RECT frame = {0, 0, GetDeviceCaps(screen, HORZSIZE) * 100, GetDeviceCaps(screen, VERTSIZE) * 100};
    SetRect(&g_page.pageSize, 0, 0, GetDeviceCaps(screen, HORZRES), GetDeviceCaps(screen, VERTRES));
    ReleaseDC(nullptr, screen);
    HDC dc = CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
    g_page.pages = KxTreeView_Print(tree, dc, nullptr, L"Customers and contacts", KXTREEPRINT_ALLITEMS);
    g_page.printed = CloseEnhMetaFile(dc);
    DestroyWindow(tree);
    ImageList_Destroy(states);
    ImageList_Destroy(images);
}

// Plays the records of the first page (up to the first end-group comment) into `dc`, whose
// coordinates have been set up for the page.
int CALLBACK playFirstPage(HDC dc, HANDLETABLE* table, const ENHMETARECORD* record, int objects, LPARAM data) {
    auto* ended = reinterpret_cast<bool*>(data);
    if (*ended) return 1;
    if (record->iType == EMR_GDICOMMENT) {
        auto* comment = reinterpret_cast<const EMRGDICOMMENT*>(record);
        auto* words = reinterpret_cast<const DWORD*>(comment->Data);
        if (comment->cbData >= 8 && words[0] == GDICOMMENT_IDENTIFIER && words[1] == GDICOMMENT_ENDGROUP)
            *ended = true;
    }
    PlayEnhMetaFileRecord(dc, table, record, objects);
    return 1;
}

// The first page, scaled into the panel (`scale` 0: fit) from the page point `origin`.
void paintPage(HDC dc, const RECT& client, POINT origin, double scale) {
    if (scale == 0) scale = static_cast<double>(client.right) / g_page.pageSize.right;
    // The page's frame: the whole page mapped so that `origin` lands on the panel's corner.
    RECT frame = {static_cast<LONG>(-origin.x * scale), static_cast<LONG>(-origin.y * scale),
                  static_cast<LONG>((g_page.pageSize.right - origin.x) * scale),
                  static_cast<LONG>((g_page.pageSize.bottom - origin.y) * scale)};
    bool ended = false;
    SetStretchBltMode(dc, HALFTONE);
    EnumEnhMetaFile(dc, g_page.printed, playFirstPage, &ended, &frame);
}

// --- other windows ----------------------------------------------------------------------------

HBITMAP splashLogo() {
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP logo = CreateCompatibleBitmap(screen, 420, 240);
    HGDIOBJ old = SelectObject(dc, logo);
    RECT all = {0, 0, 420, 240};
    Kx1GradientFill(dc, RGB(20, 50, 120), RGB(70, 130, 200), 0, 1, &all);
    FillShape(dc, RGB(250, 190, 40), true, 30, 40, 110, 120);
    FillShape(dc, RGB(240, 240, 240), true, 62, 72, 142, 152);
    HFONT font = CreateFontW(-52, 0, 0, 0, FW_BOLD, 0, 0, 0, 0, 0, 0, ANTIALIASED_QUALITY, 0, L"Arial");
    HGDIOBJ oldFont = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(255, 255, 255));
    TextOutW(dc, 160, 70, L"Korvane", 7);
    SelectObject(dc, oldFont);
    DeleteObject(font);
    SelectObject(dc, old);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return logo;
}

void showModuleList(HWND page) {
    HWND window = KxModuleList_Show(page);
    HWND list = GetDlgItem(window, 100);
    KxListView_SortItemsNew(list, 0, KX_SORT_TEXT, 0, -1, -1, KX_SORT_TEXT, 0, GlobalSession(), 0);
    int row = 0;
    for (int count = ListView_GetItemCount(list); row < count; ++row) {
        wchar_t name[40] = L"";
        ListView_GetItemText(list, row, 0, name, 40);
        if (lstrcmpiW(name, L"kvkit.dll") == 0) break;
    }
    ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(list, row, FALSE);
    PumpFor(100);
    SaveScreenshot(window, L"14-navigation-modules");
    DestroyWindow(window);
}

void showSplash(HWND page) {
    HBITMAP logo = splashLogo();
    HWND splash = KxSplash_Show(page, logo, L"Version 4.2.0 (build 1187)\nLicensed to Berg & Co, Bremen",
                                RGB(255, 255, 255), 5000);
    DeleteObject(logo);
    SaveScreenshot(splash, L"14-navigation-splash");
    KxSplash_Close(splash);
}

// While the chooser runs: take the screenshot, then press Enter on the preselected picture.
VOID CALLBACK driveChooser(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    HWND dialog = GetLastActivePopup(g_page.page);
    if (!dialog || dialog == g_page.page) return;
    SaveScreenshot(dialog, L"14-navigation-chooser");
    PostMessageW(dialog, WM_COMMAND, IDOK, 0);
}

void showChooser(HWND page) {
    SetTimer(nullptr, 0, 400, driveChooser);
    wchar_t* chosen = KxChooseBitmap(page, GetModuleHandleW(L"kvkit.dll"), L"#2002", 40);
    g_page.chosen = chosen ? chosen : L"nothing";
    FreeMemory(chosen);
}

// --- page -------------------------------------------------------------------------------------

void build(HWND page) {
    g_page.page = page;
    buildBar(page);
    printTree(page);
    showModuleList(page);
    showSplash(page);
    showChooser(page);

    double scale = static_cast<double>(kPreviewWidth) / g_page.pageSize.right;
    int previewHeight = static_cast<int>(g_page.pageSize.bottom * scale);
    CreatePaintedPanel(page, kPreviewLeft, kPreviewTop, kPreviewWidth, previewHeight,
                       [](HDC dc, const RECT& client) { paintPage(dc, client, {0, 0}, 0); });
    int detailTop = kPreviewTop + previewHeight + 24;
    CreatePaintedPanel(page, kPreviewLeft, detailTop, kDetail.right - kDetail.left,
                       kDetail.bottom - kDetail.top, [](HDC dc, const RECT& client) {
                           paintPage(dc, client, {kDetail.left, kDetail.top}, 1.0);
                       });
    wchar_t caption[200];
    swprintf(caption, 200, L"KxTreeView_Print into a metafile: page 1 of %d, and its top left part at full "
                           L"size (the movable frame marks it). Chooser returned \"%ls\".",
             g_page.pages, g_page.chosen.c_str());
    AddLabel(page, kPreviewLeft, 4, 520, 32, caption);
    AddLabel(page, kPreviewLeft, detailTop - 20, 520, 18, L"At full size:");

    // A movable frame around the part shown at full size.
    RECT marked = {kPreviewLeft + static_cast<LONG>(kDetail.left * scale) - 2,
                   kPreviewTop + static_cast<LONG>(kDetail.top * scale) - 2,
                   kPreviewLeft + static_cast<LONG>(kDetail.right * scale) + 2,
                   kPreviewTop + static_cast<LONG>(kDetail.bottom * scale) + 2};
    MapWindowPoints(page, nullptr, reinterpret_cast<POINT*>(&marked), 2);
    KxMoveFrame_Create(page, &marked, 2, RGB(220, 40, 40), 0);  // owned: closes with the page
    PumpFor(100);
}

const bool registered = RegisterGalleryPage({L"14-navigation", 760, 460, build});

}  // namespace
