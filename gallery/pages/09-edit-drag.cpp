// In-place editing and dragging, each photographed while under way:
// - 09-edit-drag-edit: a customer list whose City cell was edited, Tab pressed, and the Orders
//   cell of the same row now being typed into;
// - 09-edit-drag-tree: a customer tree with "Roth Bau" dragged by the mouse over "Falk
//   Logistik": the drag image at the mouse and the drop highlight on the target;
// - 09-edit-drag-rect: the "Address" block of a contact form picked up and moved over the form
//   as a dimmed photograph.
// The page's own screenshot shows the results: the edits stored, the item moved after its
// target, and the form drawn with the block where it was dropped.
#include "gallery/gallery.h"
#include <commctrl.h>
#include <stdio.h>
#include "kvkit_drag.h"
#include "kvkit_edit.h"
#include "kvkit_listview.h"
#include "kvkit_search.h"
#include "kvkit_treeview.h"
#include "kvtext.h"

namespace {

const int kListId = 901;
const int kTreeId = 902;
const COLORREF kMagenta = RGB(255, 0, 255);

struct PageState {
    HWND page;
    HWND container;
    HWND list;
    HWND tree;
    HWND form;
    HIMAGELIST treeImages;
    POINT block;       // the address block's top-left corner on the form
    POINT dragCorner;  // where the dragged photograph stands
    int edits;         // end-of-edit notifications received
};
PageState g_page;

// --- the list ---------------------------------------------------------------------------------

void onEndEdit(NMLVDISPINFOW* info) {
    ++g_page.edits;
    if (info->item.pszText)
        ListView_SetItemText(g_page.list, info->item.iItem, info->item.iSubItem % KX_LISTEDIT_DOUBLECLICKED,
                             info->item.pszText);
    FreeMemory(info->item.pszText);
}

INT_PTR CALLBACK containerProc(HWND, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_NOTIFY: {
        auto* header = reinterpret_cast<NMHDR*>(lParam);
        if (header->hwndFrom == g_page.list && header->code == LVN_BEGINLABELEDITW) {
            // The editor asks for a neighbouring cell: edit it.
            auto* info = reinterpret_cast<NMLVDISPINFOW*>(lParam);
            KxListView_SetEdit(g_page.list, nullptr, info->item.iItem, info->item.iSubItem, 0, 6,
                               nullptr, 0);
            return TRUE;
        }
        if (header->hwndFrom == g_page.list && header->code == LVN_ENDLABELEDITW) {
            onEndEdit(reinterpret_cast<NMLVDISPINFOW*>(lParam));
            return TRUE;
        }
        if (header->hwndFrom == g_page.tree && header->code == TVN_BEGINDRAGW) {
            KxTreeView_OnBeginDrag(g_page.tree, reinterpret_cast<NMTREEVIEWW*>(lParam));
            return TRUE;
        }
        return FALSE;
    }
    case WM_MOUSEMOVE:
        KxTreeView_OnMouseMove(g_page.container, g_page.tree, static_cast<short>(LOWORD(lParam)),
                               static_cast<short>(HIWORD(lParam)));
        return TRUE;
    case WM_LBUTTONUP:
        KxTreeView_OnLButtonUp(g_page.tree);
        return TRUE;
    case WM_TIMER:
        if (wParam != 0) return FALSE;
        KxTreeView_OnTimer(g_page.tree);
        return TRUE;
    case WM_CAPTURECHANGED:
        KxTreeView_OnCancelDrag(g_page.tree);
        return FALSE;
    case WM_DESTROY:
        ImageList_Destroy(TreeView_SetImageList(g_page.tree, nullptr, TVSIL_NORMAL));
        return FALSE;
    }
    return FALSE;
}

void typeInto(HWND window, const wchar_t* text) {
    for (; *text; ++text) SendMessageW(window, WM_CHAR, *text, 1);
}

void buildList() {
    g_page.list = AddControl(g_page.container, WC_LISTVIEWW, LVS_REPORT | LVS_SHOWSELALWAYS, 10, 54,
                              280, 250, kListId);
    ListView_SetExtendedListViewStyle(g_page.list, LVS_EX_GRIDLINES);
    KxListView_AddHeader(g_page.list, L"Customer", 0, 110);
    KxListView_AddHeader(g_page.list, L"City", 1, 90);
    KxListView_AddHeader(g_page.list, L"Orders", 2, 60);
    const wchar_t* const rows[][3] = {{L"Berg & Co", L"Bremen", L"12"}, {L"Falk Logistik", L"Fulda", L"3"},
                                      {L"Haas AG", L"Hameln", L"40"},   {L"Hofmann KG", L"Kiel", L"7"},
                                      {L"Lind GmbH", L"Jena", L"21"},   {L"Roth Bau", L"Celle", L"5"}};
    int row = 0;
    for (const auto& cells : rows) {
        for (int column = 0; column < 3; ++column)
            KxListView_AddSpalte(g_page.list, row, column, cells[column], -1, column == 0 ? 100 + row : 0);
        ++row;
    }
}

// Edits Falk's city, presses Tab and types the order count: the photograph is taken while the
// second cell is being edited; Enter then stores it.
void editList() {
    HWND editor = KxListView_SetEdit(g_page.list, nullptr, 1, 1, 0, 20, nullptr, 0);
    typeInto(editor, L"Kassel");
    SendMessageW(editor, WM_CHAR, VK_TAB, 1);  // the parent starts the next cell's edit
    editor = GetDlgItem(g_page.list, KX_LISTEDIT_ID);
    typeInto(editor, L"14");
    SaveScreenshot(g_page.page, L"09-edit-drag-edit");
    SendMessageW(editor, WM_CHAR, VK_RETURN, 1);
}

// --- the tree ---------------------------------------------------------------------------------

void addImage(HIMAGELIST images, COLORREF colour, bool round) {
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 16, 16);
    HGDIOBJ old = SelectObject(dc, bitmap);
    HBRUSH background = CreateSolidBrush(kMagenta), fill = CreateSolidBrush(colour);
    RECT all = {0, 0, 16, 16};
    FillRect(dc, &all, background);
    HGDIOBJ oldBrush = SelectObject(dc, fill);
    if (round) Ellipse(dc, 2, 2, 14, 14);
    else Rectangle(dc, 2, 3, 14, 15);
    SelectObject(dc, oldBrush);
    SelectObject(dc, old);
    ImageList_AddMasked(images, bitmap, kMagenta);
    DeleteObject(fill);
    DeleteObject(background);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
}

void buildTree() {
    g_page.tree = AddControl(g_page.container, WC_TREEVIEWW, TVS_HASLINES | TVS_SHOWSELALWAYS, 305, 54,
                              240, 250, kTreeId);
    g_page.treeImages = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 2, 0);
    addImage(g_page.treeImages, RGB(70, 110, 190), false);
    addImage(g_page.treeImages, RGB(220, 140, 40), true);
    TreeView_SetImageList(g_page.tree, g_page.treeImages, TVSIL_NORMAL);
    const wchar_t* const customers[] = {L"Berg & Co", L"Falk Logistik", L"Haas AG", L"Hofmann KG",
                                        L"Lind GmbH", L"Nagel Druck", L"Roth Bau", L"Stein Verlag"};
    LPARAM value = 1;
    for (const wchar_t* name : customers) {
        int image = value % 3 == 0 ? 1 : 0;
        KxTreeView_InsertItem(g_page.tree, nullptr, nullptr, nullptr, nullptr, &image, name, value++, 0);
    }
}

POINT onLabel(HTREEITEM item, int dx) {
    RECT rect;
    TreeView_GetItemRect(g_page.tree, item, &rect, TRUE);
    POINT point = {rect.left + dx, (rect.top + rect.bottom) / 2};
    ClientToScreen(g_page.tree, &point);
    return point;
}

void mouseButton(DWORD flag) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flag;
    SendInput(1, &input, sizeof(input));
}

// Drags "Roth Bau" with the mouse onto "Falk Logistik"; the photograph is taken while the mouse
// rests there, then the button is released.
void dragTreeItem() {
    HTREEITEM source = KxTreeView_GetItemWithData(g_page.tree, nullptr, 7, nullptr);
    HTREEITEM target = KxTreeView_GetItemWithData(g_page.tree, nullptr, 2, nullptr);
    POINT start = onLabel(source, 10);
    SetCursorPos(start.x, start.y);
    PumpFor(30);
    mouseButton(MOUSEEVENTF_LEFTDOWN);
    SetCursorPos(start.x + 4, start.y - 12);
    PumpFor(60);
    for (int step = 1; step <= 4; ++step) {
        POINT over = onLabel(target, 70);
        SetCursorPos(start.x + (over.x - start.x) * step / 4, start.y + (over.y - start.y) * step / 4);
        PumpFor(40);
    }
    // The screenshot repaints the tree; the drag's timer draws the image again before the shot.
    SaveScreenshot(g_page.page, L"09-edit-drag-tree");
    mouseButton(MOUSEEVENTF_LEFTUP);
    PumpFor(60);
}

// --- the form ---------------------------------------------------------------------------------

const int kBlockWidth = 200, kBlockHeight = 92;

void drawField(HDC dc, int x, int y, const wchar_t* label, const wchar_t* value) {
    RECT labelRect = {x, y, x + 60, y + 20};
    DrawTextW(dc, label, -1, &labelRect, DT_SINGLELINE | DT_VCENTER);
    RECT field = {x + 62, y, x + 190, y + 20};
    FillRect(dc, &field, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    FrameRect(dc, &field, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
    InflateRect(&field, -4, 0);
    DrawTextW(dc, value, -1, &field, DT_SINGLELINE | DT_VCENTER);
}

void paintForm(HDC dc, const RECT& client) {
    HBRUSH face = CreateSolidBrush(RGB(236, 240, 246));
    FillRect(dc, &client, face);
    DeleteObject(face);
    HGDIOBJ oldFont = SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
    SetBkMode(dc, TRANSPARENT);
    drawField(dc, 10, 10, L"Name", L"Petra Falk");
    drawField(dc, 10, 36, L"Phone", L"0661 48 22");
    // The address block, with a coloured title bar, where the user put it.
    POINT at = g_page.block;
    RECT block = {at.x, at.y, at.x + kBlockWidth, at.y + kBlockHeight};
    HBRUSH tint = CreateSolidBrush(RGB(250, 232, 200));
    FillRect(dc, &block, tint);
    DeleteObject(tint);
    FrameRect(dc, &block, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    RECT title = {at.x + 1, at.y + 1, at.x + kBlockWidth - 1, at.y + 18};
    HBRUSH bar = CreateSolidBrush(RGB(200, 90, 40));
    FillRect(dc, &title, bar);
    DeleteObject(bar);
    SetTextColor(dc, RGB(255, 255, 255));
    InflateRect(&title, -4, 0);
    DrawTextW(dc, L"Address", -1, &title, DT_SINGLELINE | DT_VCENTER);
    SetTextColor(dc, RGB(0, 0, 0));
    drawField(dc, at.x + 4, at.y + 24, L"Street", L"Am Markt 3");
    drawField(dc, at.x + 4, at.y + 48, L"City", L"36037 Fulda");
    SelectObject(dc, oldFont);
}

// After the repaint of the screenshot: the drag is taken up again where it stood.
VOID CALLBACK redrawDraggedBlock(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    POINT at = g_page.dragCorner;
    Kx1ResumeDrag(g_page.form, at.x, at.y, 0);
    Kx1Drag(g_page.form, at.x + 1, at.y + 1);
    g_page.dragCorner = {at.x + 1, at.y + 1};
}

// Picks up the address block and moves it right and down over the form in steps.
void dragFormBlock() {
    RECT block = {g_page.block.x, g_page.block.y, g_page.block.x + kBlockWidth, g_page.block.y + kBlockHeight};
    Kx1BeginDrag(g_page.form, &block);
    POINT at = g_page.block;
    for (int step = 1; step <= 6; ++step) {
        at = {g_page.block.x + step * 7, g_page.block.y + step * 11};
        Kx1Drag(g_page.form, at.x, at.y);
        PumpFor(20);
    }
    g_page.dragCorner = at;
    Kx1StopDrag(g_page.form, 0, 0, 0);
    SetTimer(nullptr, 0, 60, redrawDraggedBlock);
    SaveScreenshot(g_page.page, L"09-edit-drag-rect");
    RECT dropped;
    Kx1EndDrag(g_page.form, g_page.dragCorner.x, g_page.dragCorner.y, &dropped);
    // The host moves the block to where it was dropped and repaints.
    g_page.block = {dropped.left, dropped.top};
    InvalidateRect(g_page.form, nullptr, FALSE);
}

void build(HWND page) {
    g_page = PageState();
    g_page.page = page;
    g_page.block = {10, 66};
    struct {
        DLGTEMPLATE header;
        WORD menu, windowClass, title;
    } empty = {};
    empty.header.style = DS_CONTROL | WS_CHILD | WS_VISIBLE;
    g_page.container = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &empty.header, page,
                                                  containerProc, 0);
    MoveWindow(g_page.container, 0, 0, 860, 360, FALSE);
    AddLabel(g_page.container, 10, 8, 280, 40,
             L"In-place editing: City edited, Tab pressed, Orders being typed (Enter stores it).");
    AddLabel(g_page.container, 305, 8, 240, 40,
             L"Dragging \"Roth Bau\" with the mouse onto \"Falk Logistik\" (drop highlight).");
    AddLabel(g_page.container, 560, 8, 290, 40,
             L"The \"Address\" block dragged over the form as a dimmed photograph.");
    buildList();
    buildTree();
    g_page.form = CreatePaintedPanel(g_page.container, 560, 54, 290, 250, paintForm);
    SetForegroundWindow(page);
    UpdateWindow(page);
    PumpFor(100);

    editList();
    dragTreeItem();
    dragFormBlock();

    wchar_t caption[200];
    HTREEITEM moved = KxTreeView_GetItemWithData(g_page.tree, nullptr, 7, nullptr);
    HTREEITEM before = TreeView_GetPrevSibling(g_page.tree, moved);
    wchar_t* after = KxTreeView_GetItemText(g_page.tree, before);
    wchar_t city[32] = L"", orders[8] = L"";
    ListView_GetItemText(g_page.list, 1, 1, city, 32);
    ListView_GetItemText(g_page.list, 1, 2, orders, 8);
    swprintf(caption, 200,
             L"Afterwards: %d edits reported, Falk now \"%ls\", %ls orders; \"Roth Bau\" moved after "
             L"\"%ls\"; the block dropped at (%ld, %ld).",
             g_page.edits, city, orders, after ? after : L"", g_page.block.x, g_page.block.y);
    FreeMemory(after);
    AddLabel(g_page.container, 10, 316, 840, 36, caption);
    SetFocus(g_page.list);
}

const bool registered = RegisterGalleryPage({L"09-edit-drag", 860, 360, build});

}  // namespace
