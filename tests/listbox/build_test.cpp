// Building the control from the record: toggle buttons, column titles, the column layout, row
// heights, detaching and destroying, allocation failures, and bad handles.
#include "listbox_test.h"
#include "kvkit2.h"

namespace {

using listbox_test::ListBoxTest;
using Ids = std::vector<int>;

class ListBoxBuild : public ListBoxTest {
protected:
    RECT rectOf(HWND child) const {
        RECT rect;
        GetWindowRect(child, &rect);
        MapWindowPoints(nullptr, container, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    static int captionWidth(const wchar_t* text) {
        HDC dc = GetDC(nullptr);
        HGDIOBJ previous = SelectObject(dc, GetStockObject(ANSI_VAR_FONT));
        SIZE size = {};
        GetTextExtentPoint32W(dc, text, lstrlenW(text), &size);
        SelectObject(dc, previous);
        ReleaseDC(nullptr, dc);
        return size.cx + 6;
    }
    int listClientWidth() const {
        RECT client;
        GetClientRect(box(), &client);
        return client.right;
    }
    void rebuildFresh() {
        destroy();
        FreeMemory(record.order);
        record.order = nullptr;
    }
};

TEST_F(ListBoxBuild, TogglesTitlesAndListFollowTheRecord) {
    lstrcpyW(record.title, L"Company");
    build(KVLB_HEADERS | KVLB_CHECKCOLUMN | KVLB_PICTURES | KVLB_MULTIPLESEL | KVLB_SECONDTEXT, 0xF);
    struct {
        int id;
        const wchar_t* caption;
        bool pressed;
    } toggles[] = {{KVLB_TOGGLE_PICTURES, L"Types", true},
                   {KVLB_TOGGLE_VALUES, L"Values", false},
                   {KVLB_TOGGLE_NUMBERS, L"Order of selection", false},
                   {KVLB_TOGGLE_SECONDTEXT, L"Company", true}};
    int y = 0;
    for (const auto& toggle : toggles) {
        HWND button = GetDlgItem(container, toggle.id);
        ASSERT_NE(nullptr, button) << toggle.id;
        RECT rect = rectOf(button);
        EXPECT_EQ(0, rect.left);
        EXPECT_EQ(y, rect.top);
        EXPECT_EQ(16, rect.right - rect.left);
        wchar_t caption[80];
        GetWindowTextW(button, caption, 80);
        EXPECT_STREQ(toggle.caption, caption);
        EXPECT_EQ(toggle.pressed, (SendMessageW(button, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0) << toggle.id;
        EXPECT_EQ(0x5002000BUL, static_cast<DWORD>(GetWindowLongW(button, GWL_STYLE)));
        y += 16;
    }
    // Type letters K C T Z X O became pictures.
    const long pictures[] = {103, 101, 105, 101, 102, 107};
    for (int i = 0; i < listbox_test::kContactCount; ++i) EXPECT_EQ(pictures[i], items[i].picture);

    // The list right of the toggles, below the titles, multiple selection.
    RECT list = rectOf(box());
    EXPECT_EQ(20, list.left);
    EXPECT_EQ(23, list.top);
    DWORD style = static_cast<DWORD>(GetWindowLongW(box(), GWL_STYLE));
    EXPECT_EQ(0x54021011UL | LBS_MULTIPLESEL | WS_VSCROLL, style);
    // Titles as wide as their captions, the second text half the name title, the text the rest.
    const short* widths = record.columnWidths;
    int name = captionWidth(L"Name"), type = captionWidth(L"Type");
    EXPECT_EQ(22, widths[KVLB_COLUMN_CHECK]);
    EXPECT_EQ(name / 2, widths[KVLB_COLUMN_SECONDTEXT]);
    EXPECT_EQ(type, widths[KVLB_COLUMN_PICTURE]);
    EXPECT_EQ(captionWidth(L"Value"), widths[KVLB_COLUMN_VALUE]);  // written back while hidden
    EXPECT_EQ(listClientWidth() - 22 - name / 2 - type, widths[KVLB_COLUMN_TEXT]);
    struct {
        int id;
        int column;
        const wchar_t* caption;
    } titles[] = {{KVLB_HEADER_CHECK, KVLB_COLUMN_CHECK, L""},
                  {KVLB_HEADER_TEXT, KVLB_COLUMN_TEXT, L"Name"},
                  {KVLB_HEADER_SECONDTEXT, KVLB_COLUMN_SECONDTEXT, L"Company"},
                  {KVLB_HEADER_PICTURE, KVLB_COLUMN_PICTURE, L"Type"}};
    int x = list.left;
    for (const auto& title : titles) {
        HWND button = GetDlgItem(container, title.id);
        ASSERT_TRUE(IsWindowVisible(button)) << title.id;
        RECT rect = rectOf(button);
        EXPECT_EQ(x, rect.left) << title.id;
        EXPECT_EQ(3, rect.top) << title.id;
        EXPECT_EQ(widths[title.column], rect.right - rect.left) << title.id;
        wchar_t caption[80];
        GetWindowTextW(button, caption, 80);
        EXPECT_STREQ(title.caption, caption);
        x = rect.right;
    }
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(container, KVLB_HEADER_VALUE)));
}

TEST_F(ListBoxBuild, ColumnsWithoutTitlesAndSideBySide) {
    build(KVLB_CHECKCOLUMN | KVLB_VALUES | KVLB_ANCHORMARK);  // the marker needs multiple selection
    EXPECT_EQ(3, rectOf(box()).left);
    EXPECT_EQ(3, rectOf(box()).top);
    EXPECT_EQ(22, record.columnWidths[KVLB_COLUMN_CHECK]);
    EXPECT_EQ(16, record.columnWidths[KVLB_COLUMN_VALUE]);
    EXPECT_EQ(listClientWidth() - 38, record.columnWidths[KVLB_COLUMN_TEXT]);
    rebuildFresh();

    record.columns = 3;
    build(KVLB_MULTICOLUMN | KVLB_HEADERS);
    EXPECT_EQ(KVLB_MULTICOLUMN, record.style);  // no titles over several columns
    EXPECT_EQ(nullptr, GetDlgItem(container, KVLB_HEADER_TEXT));
    EXPECT_TRUE(GetWindowLongW(box(), GWL_STYLE) & (WS_HSCROLL | LBS_MULTICOLUMN));
    // 300 - 6 - 1 = 293 wide: columns of 97, the 2 pixels left over taken off.
    RECT row;
    SendMessageW(box(), LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
    EXPECT_EQ(97, row.right - row.left);
    EXPECT_EQ(291, rectOf(box()).right - rectOf(box()).left);
    rebuildFresh();

    // Above 6: a column width in characters, widened by the second text's.
    record.columns = 8;
    record.secondTextChars = 4;
    build(KVLB_MULTICOLUMN | KVLB_SECONDTEXT);
    HDC dc = GetDC(box());
    HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(box(), WM_GETFONT, 0, 0)));
    TEXTMETRICW metrics;
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, previous);
    ReleaseDC(box(), dc);
    int count = 293 / (14 * metrics.tmAveCharWidth + 22);
    SendMessageW(box(), LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
    EXPECT_EQ(293 / (count < 1 ? 1 : count), row.right - row.left);
    EXPECT_EQ(4 * metrics.tmAveCharWidth, record.columnWidths[KVLB_COLUMN_SECONDTEXT]);
}

TEST_F(ListBoxBuild, ResizingLaysTheColumnsOutAgain) {
    build(KVLB_HEADERS | KVLB_VALUES);
    int text = record.columnWidths[KVLB_COLUMN_TEXT];
    RECT before = rectOf(box());
    SetWindowPos(container, nullptr, 0, 0, 400, 260, SWP_NOMOVE | SWP_NOZORDER);
    RECT after = rectOf(box());
    EXPECT_EQ(before.right + 100, after.right);
    EXPECT_EQ(text + 100, record.columnWidths[KVLB_COLUMN_TEXT]);
    EXPECT_EQ(after.left + text + 100, rectOf(GetDlgItem(container, KVLB_HEADER_VALUE)).left);
}

TEST_F(ListBoxBuild, TogglesSwitchTheirColumnsAndHint) {
    record.hintBase = 852;
    build(KVLB_HEADERS | KVLB_PICTURES | KVLB_VALUES, KVLB_HAS_TOGGLE_PICTURES | KVLB_HAS_TOGGLE_VALUES);
    HWND pictures = GetDlgItem(container, KVLB_TOGGLE_PICTURES);
    clickButton(KVLB_TOGGLE_PICTURES);
    EXPECT_EQ(KVLB_HEADERS | KVLB_VALUES, record.style);
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(container, KVLB_HEADER_PICTURE)));
    EXPECT_FALSE(SendMessageW(pictures, BM_GETSTATE, 0, 0) & BST_PUSHED);
    EXPECT_EQ(box(), GetFocus());
    clickButton(KVLB_TOGGLE_PICTURES);
    EXPECT_TRUE(IsWindowVisible(GetDlgItem(container, KVLB_HEADER_PICTURE)));
    EXPECT_TRUE(SendMessageW(pictures, BM_GETSTATE, 0, 0) & BST_PUSHED);
    // The hint of a toggle is language string hintBase + its place.
    HWND values = GetDlgItem(container, KVLB_TOGGLE_VALUES);
    SendMessageW(values, WM_MOUSEMOVE, 0, MAKELPARAM(4, 4));
    wchar_t hint[80] = L"";
    Kx2_GetToolTip(values, hint, 80);
    EXPECT_STREQ(L"Details", hint);
}

TEST_F(ListBoxBuild, RowHeightAndPictureColumnFollowTheBitmapArray) {
    HBITMAP bitmaps[] = {kvtest::MakeBitmap(20, 40, [](int, int) { return RGB(9, 9, 9); }),
                         kvtest::MakeBitmap(30, 24, [](int, int) { return RGB(9, 9, 9); })};
    record.bitmaps = bitmaps;
    record.bitmapCount = 2;
    items[0].picture = 1;
    build(KVLB_BITMAPARRAY | KVLB_PICTURES);
    EXPECT_EQ(42, SendMessageW(box(), LB_GETITEMHEIGHT, 0, 0));
    EXPECT_EQ(32, record.columnWidths[KVLB_COLUMN_PICTURE]);
    EXPECT_EQ(1, items[0].picture);  // indices, not type letters
    destroy();
    for (HBITMAP bitmap : bitmaps) DeleteObject(bitmap);
}

TEST_F(ListBoxBuild, DetachAndDestroyInAnyOrder) {
    build(KVLB_MULTIPLESEL | KVLB_HEADERS);
    click(1);
    clickButton(KVLB_HEADER_TEXT);
    KVLB_LIST* out = nullptr;
    EXPECT_EQ(reinterpret_cast<LRESULT>(&record), SendMessageW(container, KVLB_DETACH, 0, reinterpret_cast<LPARAM>(&out)));
    EXPECT_EQ(&record, out);
    EXPECT_EQ(1, SendMessageW(container, LB_GETSEL, 1, 0));  // still attached
    EXPECT_EQ(reinterpret_cast<LRESULT>(&record), SendMessageW(container, KVLB_DETACH, 1, reinterpret_cast<LPARAM>(&out)));
    EXPECT_EQ(0, rows());
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_GETSEL, 1, 0));
    EXPECT_EQ(0, Kx1LbResetSel(container, KVLB_RESET_CLEAR, nullptr));
    EXPECT_EQ(0, SendMessageW(container, KVLB_DETACH, 0, reinterpret_cast<LPARAM>(&out)));
    EXPECT_EQ(nullptr, out);
    press(POINT{10, 10});
    release(POINT{10, 10});
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ(KVLB_SORT_TEXT, record.sortMode);
    destroy();

    // The record, its order and its numbers go on to a new container, which sorts it again.
    build(KVLB_MULTIPLESEL | KVLB_HEADERS);
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
    EXPECT_EQ((Ids{1}), selectedRows());
    // Building again on the same container keeps the pictures once turned from letters.
    EXPECT_EQ(1, SendMessageW(container, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record)));
    EXPECT_EQ(103, items[0].picture);
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
    host.reset();  // the parent goes first, with the record attached
    EXPECT_EQ(KVLB_SORT_TEXT, record.sortMode);

    host = std::make_unique<kvtest::HostWindow>(400, 300);
    container = CreateWindowExW(0, L"KVListbox", L"", WS_CHILD, 0, 0, 100, 100, *host, nullptr, nullptr, nullptr);
    EXPECT_EQ(0, SendMessageW(container, KVLB_BUILD, 0, 0));
    EXPECT_FALSE(IsWindow(container));  // a container that cannot be built destroys itself
}

TEST_F(ListBoxBuild, TheInnerListDeletesTheFontItTookFromTheParent) {
    LOGFONTW description = {};
    description.lfHeight = -12;
    lstrcpyW(description.lfFaceName, L"Tahoma");
    HFONT font = CreateFontIndirectW(&description);
    host->setHandler([font](HWND, UINT message, WPARAM, LPARAM, LRESULT* result) {
        if (message != WM_GETFONT) return false;
        *result = reinterpret_cast<LRESULT>(font);
        return true;
    });
    build(0);
    EXPECT_EQ(reinterpret_cast<LRESULT>(font), SendMessageW(box(), WM_GETFONT, 0, 0));
    destroy();
    EXPECT_FALSE(kvtest::IsGdiObject(font));
}

TEST_F(ListBoxBuild, AllocationFailuresSkipTheirStep) {
    // Each allocation of a full build failing in turn (captions, subclass cells, the display
    // order, which the refill makes again, the sort's scratch): the control is still built, its
    // rows agree with the display order, and nothing is left behind.
    for (int nth = 1; nth <= 16; ++nth) {
        record.sortMode = KVLB_SORT_TEXT;
        KvText_FailAllocation(nth);
        build(KVLB_HEADERS | KVLB_MULTIPLESEL | KVLB_CHECKCOLUMN | KVLB_SECONDTEXT, 0xF);
        KvText_FailAllocation(0);
        ASSERT_TRUE(IsWindow(container)) << nth;
        EXPECT_EQ(6, rows()) << nth;
        shown();
        rebuildFresh();
    }

    // A list without children: its subclass cell, then its display order.
    record.sortMode = 0;
    KvText_FailAllocation(1);
    build(KVLB_MULTIPLESEL);
    EXPECT_EQ(nullptr, GetPropW(box(), L"OldProc"));
    EXPECT_EQ(6, rows());
    rebuildFresh();
    KvText_FailAllocation(2);
    build(KVLB_MULTIPLESEL);
    EXPECT_EQ(0, rows());
    EXPECT_EQ(nullptr, record.order);
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_CLEAR, nullptr));  // the refill makes it
    EXPECT_EQ(6, rows());
    rebuildFresh();

    // The sort's scratch: the order and the mode stay, the list is still filled.
    build(KVLB_HEADERS);
    KvText_FailAllocation(1);
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ((Ids{0, 1, 2, 3, 4, 5}), shown());
    EXPECT_EQ(0, record.sortMode);
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
}

TEST_F(ListBoxBuild, BadHandlesGiveTheFailureResults) {
    HWND dead = CreateWindowExW(0, L"listbox", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(dead);
    for (HWND window : {static_cast<HWND>(nullptr), dead, host->handle()}) {
        EXPECT_EQ(0, Kx1LbResetSel(window, KVLB_RESET_CLEAR, nullptr));
        EXPECT_EQ(0, Kx1LbProc(window, KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record)));
        EXPECT_EQ(LB_ERR, Kx1LbProc(window, LB_GETSEL, 0, 0));
        EXPECT_EQ(0, Kx1LbProc(window, KVLB_DETACH, 1, 0));
        if (window == host->handle()) continue;
        EXPECT_EQ(-2, Kx1LbSelectChar(window, 'a', 1, 0, 0, 0));
        EXPECT_EQ(-1, Kx1GetLbMousePos(window, 1, 1));
        EXPECT_EQ(0, KlSetListProc(window, nullptr));
        EXPECT_EQ(0, KlMoveItem(window, 0));
        EXPECT_EQ(0, Kx1LbListSubProc(window, WM_LBUTTONDOWN, 0, 0));
        EXPECT_EQ(0, Kx1LbListSubProc(window, WM_DESTROY, 0, 0));
        EXPECT_EQ(0, Kx1LbBtnSubProc(window, WM_MOUSEMOVE, 0, 0));
    }
    EXPECT_EQ(nullptr, GetWindow(*host, GW_CHILD));  // no window but a container is built on
}

TEST_F(ListBoxBuild, ExportsResolveByName) {
    for (const char* name : {"Kx1LbProc", "Kx1LbListSubProc", "Kx1LbBtnSubProc", "Kx1LbResetSel",
                             "Kx1LbSelectChar", "Kx1GetLbMousePos", "KlSetListProc", "KlMoveItem"})
        EXPECT_NE(nullptr, GetProcAddress(listbox_test::LibraryModule(), name)) << name;
    WNDCLASSW windowClass;
    ASSERT_TRUE(GetClassInfoW(listbox_test::LibraryModule(), L"KVListbox", &windowClass));
    EXPECT_EQ(reinterpret_cast<WNDPROC>(GetProcAddress(listbox_test::LibraryModule(), "Kx1LbProc")),
              windowClass.lpfnWndProc);
}

}  // namespace
