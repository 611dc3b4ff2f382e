// Resizable dialogs: a contact dialog built from an in-memory template, laid out by the engine
// at its design size and enlarged, with a page dialog placed into its tab control. The page
// window draws the outlines of every child at both sizes.
#include "gallery/gallery.h"
#include "gallery/dialog_template.h"
#include <commctrl.h>
#include <vector>
#include "kvkit_sizedlg.h"

namespace {

// Control identifiers of the contact dialog and of its tab page.
const int kNameLabel = 1001, kMailLabel = 1002;
const int kNameEdit = 101, kBrowse = 102, kMailEdit = 103, kTab = 110, kHelp = 120;
const int kContacts = 201, kNotes = 202;

// Labels only move down; Browse keeps to the right edge; Help keeps to the bottom left corner.
// Everything else takes the defaults: edits stretch horizontally, the tab and the page scale,
// OK and Cancel keep to the bottom right corner.
const KXSIZE_ATTR kAttributes[] = {
    {kNameLabel, KXSIZE_MOVE_TOP},
    {kMailLabel, KXSIZE_MOVE_TOP},
    {kBrowse, KXSIZE_MOVE_TOP | KXSIZE_ANCHOR_RIGHT},
    {kHelp, KXSIZE_ANCHOR_BOTTOM},
};

INT_PTR CALLBACK pageProc(HWND, UINT message, WPARAM, LPARAM) {
    return message == WM_INITDIALOG;
}

void fillContacts(HWND list) {
    SendMessageW(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    const wchar_t* columns[] = {L"Name", L"Company", L"City"};
    for (int i = 0; i < 3; ++i) {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.cx = 90;
        column.pszText = const_cast<wchar_t*>(columns[i]);
        SendMessageW(list, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
    const wchar_t* rows[][3] = {{L"Ada Berger", L"Nordlicht AG", L"Bremen"},
                                {L"Carl Dorn", L"Dorn & Co", L"Kassel"},
                                {L"Eva Falk", L"Falk Logistik", L"Ulm"},
                                {L"Gero Hahn", L"Hahn Bau", L"Trier"}};
    for (int row = 0; row < 4; ++row) {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        item.pszText = const_cast<wchar_t*>(rows[row][0]);
        SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
        for (int column = 1; column < 3; ++column) {
            item.iSubItem = column;
            item.pszText = const_cast<wchar_t*>(rows[row][column]);
            SendMessageW(list, LVM_SETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
        }
    }
}

// The engine takes the tab's page area when it registers the tab, so the tabs go in first.
void addTabs(HWND tab) {
    const wchar_t* tabs[] = {L"Contacts", L"Notes"};
    for (int i = 0; i < 2; ++i) {
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<wchar_t*>(tabs[i]);
        SendMessageW(tab, TCM_INSERTITEMW, i, reinterpret_cast<LPARAM>(&item));
    }
}

// Puts a page dialog into the tab's page area and hands it to the engine the way the tab
// manager does: the page is laid out from the tab's page area, its children from their own.
void addContactsPage(HWND dialog) {
    HWND tab = GetDlgItem(dialog, kTab);
    DialogTemplate page(WS_CHILD | WS_VISIBLE | DS_CONTROL, 2, 200, 80);
    page.item(WC_LISTVIEWW, L"", LVS_REPORT | WS_BORDER, 0, 0, 10, 10, kContacts);
    page.item(L"Edit", L"Called on Monday; wants the new price list.",
              ES_MULTILINE | ES_WANTRETURN | WS_BORDER | WS_VSCROLL, 0, 0, 10, 10, kNotes);
    HWND contacts = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), page.data(), dialog,
                                               pageProc, 0);
    RECT area;
    GetWindowRect(tab, &area);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&area), 2);
    SendMessageW(tab, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    int width = area.right - area.left, height = area.bottom - area.top;
    SetWindowPos(contacts, HWND_TOP, area.left, area.top, width, height, 0);
    int split = height * 2 / 3;
    MoveWindow(GetDlgItem(contacts, kContacts), 4, 4, width - 8, split - 6, FALSE);
    MoveWindow(GetDlgItem(contacts, kNotes), 4, split + 2, width - 8, height - split - 6, FALSE);
    fillContacts(GetDlgItem(contacts, kContacts));
    // The page sits out the pass that follows its registration; running that pass now lets the
    // next resize lay the page out.
    Kx1SizeDlgAddChilds(contacts, 1, 1, kTab);
    KxSizeDlg(dialog, 0, 0);
}

INT_PTR CALLBACK contactDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        addTabs(GetDlgItem(dialog, kTab));
        KxSizeDlgStart(dialog, sizeof(kAttributes) / sizeof(kAttributes[0]), kAttributes, 1);
        addContactsPage(dialog);
        return TRUE;
    case WM_SIZING:
        SetWindowLongPtrW(dialog, DWLP_MSGRESULT, KxSizingDlg(dialog, static_cast<UINT>(wParam), lParam));
        return TRUE;
    case WM_SIZE:
        KxSizeDlg(dialog, static_cast<UINT>(wParam), lParam);
        return TRUE;
    case WM_DESTROY:
        KxSizeDlgEnd(dialog);
        return FALSE;
    }
    return FALSE;
}

HWND createContactDialog(HWND owner) {
    DialogTemplate contact(WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME, 9, 260,
                           170, L"Contact - resizable");
    contact.item(L"Static", L"Name:", SS_LEFT, 7, 9, 36, 8, kNameLabel);
    contact.item(L"Edit", L"Nordlicht AG", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, 46, 7, 150, 12, kNameEdit);
    contact.item(L"Button", L"Browse...", BS_PUSHBUTTON | WS_TABSTOP, 200, 6, 53, 14, kBrowse);
    contact.item(L"Static", L"E-mail:", SS_LEFT, 7, 25, 36, 8, kMailLabel);
    contact.item(L"Edit", L"info@nordlicht.example", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, 46, 23,
                 207, 12, kMailEdit);
    contact.item(WC_TABCONTROLW, L"", WS_CLIPSIBLINGS | WS_TABSTOP, 7, 42, 246, 100, kTab);
    contact.item(L"Button", L"Help", BS_PUSHBUTTON | WS_TABSTOP, 7, 149, 50, 14, kHelp);
    contact.item(L"Button", L"OK", BS_DEFPUSHBUTTON | WS_TABSTOP, 146, 149, 50, 14, IDOK);
    contact.item(L"Button", L"Cancel", BS_PUSHBUTTON | WS_TABSTOP, 203, 149, 50, 14, IDCANCEL);
    return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), contact.data(), owner,
                                      contactDialogProc, 0);
}

// Outlines of the dialog's children (and the page's), in dialog client coordinates.
struct Outlines {
    SIZE client;
    std::vector<RECT> children;
};
Outlines g_design, g_enlarged;

BOOL CALLBACK collectChild(HWND child, LPARAM lParam) {
    auto* outlines = reinterpret_cast<Outlines*>(lParam);
    HWND dialog = GetAncestor(child, GA_ROOT);
    RECT rect;
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&rect), 2);
    outlines->children.push_back(rect);
    return TRUE;
}

Outlines outlinesOf(HWND dialog) {
    Outlines outlines;
    RECT client;
    GetClientRect(dialog, &client);
    outlines.client = SIZE{client.right, client.bottom};
    EnumChildWindows(dialog, collectChild, reinterpret_cast<LPARAM>(&outlines));
    return outlines;
}

void drawOutlines(HDC dc, const Outlines& outlines, int x, int y, const wchar_t* title, COLORREF colour) {
    wchar_t caption[80];
    wsprintfW(caption, L"%s: %d x %d (half size)", title, outlines.client.cx, outlines.client.cy);
    TextOutW(dc, x, y, caption, lstrlenW(caption));
    y += 18;
    HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(NULL_BRUSH));
    HPEN frame = CreatePen(PS_SOLID, 1, RGB(128, 128, 128));
    HPEN pen = CreatePen(PS_SOLID, 1, colour);
    HGDIOBJ oldPen = SelectObject(dc, frame);
    Rectangle(dc, x, y, x + outlines.client.cx / 2 + 1, y + outlines.client.cy / 2 + 1);
    SelectObject(dc, pen);
    for (const RECT& rect : outlines.children)
        Rectangle(dc, x + rect.left / 2, y + rect.top / 2, x + rect.right / 2, y + rect.bottom / 2);
    SelectObject(dc, oldPen);
    SelectObject(dc, oldBrush);
    DeleteObject(pen);
    DeleteObject(frame);
}

void paintOutlines(HDC dc, const RECT&) {
    HGDIOBJ oldFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    drawOutlines(dc, g_design, 8, 8, L"Design", RGB(0, 70, 200));
    drawOutlines(dc, g_enlarged, 16 + g_design.client.cx / 2, 8, L"Enlarged", RGB(200, 40, 40));
    SelectObject(dc, oldFont);
}

void build(HWND page) {
    HWND dialog = createContactDialog(page);
    if (!dialog) {
        AddLabel(page, 10, 10, 400, 16, L"The contact dialog could not be created.");
        return;
    }
    RECT frame;
    GetWindowRect(page, &frame);
    SetWindowPos(dialog, HWND_TOP, frame.left, frame.bottom + 10, 0, 0, SWP_NOSIZE);
    ShowWindow(dialog, SW_SHOWNA);
    PumpFor(200);
    g_design = outlinesOf(dialog);
    SaveScreenshot(dialog, L"05-sizedlg-design");

    RECT design;
    GetWindowRect(dialog, &design);
    SetWindowPos(dialog, nullptr, 0, 0, (design.right - design.left) * 8 / 5,
                 (design.bottom - design.top) * 3 / 2, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    PumpFor(200);
    g_enlarged = outlinesOf(dialog);
    SaveScreenshot(dialog, L"05-sizedlg-enlarged");
    DestroyWindow(dialog);

    CreatePaintedPanel(page, 10, 10, 680, 330, paintOutlines);
}

const bool registered = RegisterGalleryPage(
    {L"05-sizedlg", 700, 350, build,
     L"Resizable dialogs: a contact dialog laid out by the engine at its design size and "
     L"enlarged, with a page dialog placed into its tab control."});

}  // namespace
