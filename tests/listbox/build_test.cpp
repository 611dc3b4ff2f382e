// Building the control from the record: toggle buttons, column titles, the column layout, row
// heights, detaching and destroying, the parent's font, allocation failures and bad handles.
#include "listbox_test.h"
#include "kvkit2.h"

namespace {

using namespace listbox_test;

class ListBoxBuild : public ListBoxTest {
protected:
    RECT rectOf(HWND window) const {
        RECT rect;
        GetWindowRect(window, &rect);
        MapWindowPoints(nullptr, container, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    // Left, top, width and height in the container.
    std::vector<int> placeOf(HWND window) const {
        RECT rect = rectOf(window);
        return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
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
    int listWidth() const {
        RECT client;
        GetClientRect(box(), &client);
        return client.right;
    }
    std::wstring text(HWND window) const {
        wchar_t buffer[80] = L"";
        GetWindowTextW(window, buffer, 80);
        return buffer;
    }
};

TEST_F(ListBoxBuild, TogglesTitlesAndListFollowTheRecord) {
    lstrcpyW(record.title, L"Company");
    build(KVLB_HEADERS | KVLB_CHECKCOLUMN | KVLB_PICTURES | KVLB_MULTIPLESEL | KVLB_SECONDTEXT, 0xF);
    // Toggles stacked at the left, pressed while their feature is on.
    const wchar_t* toggles[] = {L"Types", L"Values", L"Order of selection", L"Company"};
    for (int i = 0; i < 4; ++i) {
        HWND button = child(KVLB_TOGGLE_PICTURES + i);
        EXPECT_EQ((std::vector<int>{0, 16 * i, 16, 16}), placeOf(button));
        EXPECT_EQ(toggles[i], text(button));
        EXPECT_EQ(i == 0 || i == 3, (SendMessageW(button, BM_GETSTATE, 0, 0) & BST_PUSHED) != 0) << i;
    }
    const long pictures[] = {103, 101, 105, 101, 102, 107};  // from K C T Z X O
    for (int i = 0; i < 6; ++i) EXPECT_EQ(pictures[i], items[i].picture);
    EXPECT_EQ(20, rectOf(box()).left);  // right of the toggles, below the titles
    EXPECT_EQ(23, rectOf(box()).top);
    EXPECT_EQ(0x54021011UL | LBS_MULTIPLESEL | WS_VSCROLL, static_cast<DWORD>(GetWindowLongW(box(), GWL_STYLE)));
    // Titles as wide as their captions + 6, the second text half the text title, the text the rest.
    const short* widths = record.columnWidths;
    int name = captionWidth(L"Name"), type = captionWidth(L"Type");
    EXPECT_EQ(22, widths[KVLB_COLUMN_CHECK]);
    EXPECT_EQ(name / 2, widths[KVLB_COLUMN_SECONDTEXT]);
    EXPECT_EQ(type, widths[KVLB_COLUMN_PICTURE]);
    EXPECT_EQ(listWidth() - 22 - name / 2 - type, widths[KVLB_COLUMN_TEXT]);
    int x = 20, column = 0;
    for (const wchar_t* caption : {L"", L"Name", L"Company", L"Type"}) {
        HWND title = child(KVLB_HEADER_CHECK + column);
        EXPECT_EQ((std::vector<int>{x, 3, widths[column], 20}), placeOf(title)) << column;
        EXPECT_EQ(caption, text(title));
        x += widths[column++];
    }
    EXPECT_FALSE(IsWindowVisible(child(KVLB_HEADER_VALUE)));
}

TEST_F(ListBoxBuild, ColumnsWithoutTitlesSideBySideAndResized) {
    build(KVLB_CHECKCOLUMN | KVLB_VALUES | KVLB_ANCHORMARK);  // the marker needs multiple selection
    EXPECT_EQ(3, rectOf(box()).left);
    EXPECT_EQ(16, record.columnWidths[KVLB_COLUMN_VALUE]);
    EXPECT_EQ(listWidth() - 22 - 16, record.columnWidths[KVLB_COLUMN_TEXT]);
    SetWindowPos(container, nullptr, 0, 0, 400, 260, SWP_NOMOVE | SWP_NOZORDER);
    EXPECT_EQ(listWidth() - 22 - 16, record.columnWidths[KVLB_COLUMN_TEXT]);
    EXPECT_EQ(396, rectOf(box()).right);

    // Several columns: no titles; 293 pixels make three columns of 97, the 2 left over taken off.
    record.columns = 3;
    rebuild(KVLB_MULTICOLUMN | KVLB_HEADERS);
    EXPECT_EQ(KVLB_MULTICOLUMN, record.style);
    EXPECT_EQ(nullptr, child(KVLB_HEADER_TEXT));
    RECT row;
    SendMessageW(box(), LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
    EXPECT_EQ(97, row.right - row.left);
    EXPECT_EQ(291, rectOf(box()).right - rectOf(box()).left);

    // Above 6, a column width in characters, widened by the second text's.
    record.columns = 8;
    record.secondTextChars = 4;
    rebuild(KVLB_MULTICOLUMN | KVLB_SECONDTEXT);
    HDC dc = GetDC(box());
    TEXTMETRICW metrics;
    GetTextMetricsW(dc, &metrics);  // the list has the host's font: none, the system's
    ReleaseDC(box(), dc);
    int count = 293 / (14 * metrics.tmAveCharWidth + 22);
    SendMessageW(box(), LB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&row));
    EXPECT_EQ(293 / (count < 1 ? 1 : count), row.right - row.left);
    EXPECT_EQ(4 * metrics.tmAveCharWidth, record.columnWidths[KVLB_COLUMN_SECONDTEXT]);
}

TEST_F(ListBoxBuild, TogglesSwitchTheirColumnsAndHint) {
    record.hintBase = 852;
    build(KVLB_HEADERS | KVLB_PICTURES | KVLB_VALUES, KVLB_HAS_TOGGLE_PICTURES | KVLB_HAS_TOGGLE_VALUES);
    clickButton(KVLB_TOGGLE_PICTURES);
    EXPECT_EQ(KVLB_HEADERS | KVLB_VALUES, record.style);
    EXPECT_FALSE(IsWindowVisible(child(KVLB_HEADER_PICTURE)));
    EXPECT_FALSE(SendMessageW(child(KVLB_TOGGLE_PICTURES), BM_GETSTATE, 0, 0) & BST_PUSHED);
    EXPECT_EQ(box(), GetFocus());
    clickButton(KVLB_TOGGLE_PICTURES);
    EXPECT_TRUE(IsWindowVisible(child(KVLB_HEADER_PICTURE)));
    EXPECT_TRUE(SendMessageW(child(KVLB_TOGGLE_PICTURES), BM_GETSTATE, 0, 0) & BST_PUSHED);
    SendMessageW(child(KVLB_TOGGLE_VALUES), WM_MOUSEMOVE, 0, MAKELPARAM(4, 4));
    wchar_t hint[80] = L"";
    Kx2_GetToolTip(child(KVLB_TOGGLE_VALUES), hint, 80);
    EXPECT_STREQ(L"Details", hint);  // language string hintBase + 1
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
    EXPECT_EQ(1, items[0].picture);  // an index, not a type letter
    destroy();
    for (HBITMAP bitmap : bitmaps) DeleteObject(bitmap);
}

TEST_F(ListBoxBuild, DetachAndDestroyInAnyOrder) {
    build(KVLB_MULTIPLESEL | KVLB_HEADERS);
    click(1);
    clickButton(KVLB_HEADER_TEXT);
    KVLB_LIST* out = nullptr;
    EXPECT_EQ(reinterpret_cast<LRESULT>(&record), send(KVLB_DETACH, 0, reinterpret_cast<LPARAM>(&out)));
    EXPECT_EQ(&record, out);
    EXPECT_EQ(1, send(LB_GETSEL, 1));  // still attached
    send(KVLB_DETACH, 1, reinterpret_cast<LPARAM>(&out));
    EXPECT_EQ(0, rows());
    EXPECT_EQ(LB_ERR, send(LB_GETSEL, 1));
    EXPECT_EQ(0, Kx1LbResetSel(container, KVLB_RESET_CLEAR, nullptr));
    EXPECT_EQ(0, send(KVLB_DETACH, 0, reinterpret_cast<LPARAM>(&out)));
    EXPECT_EQ(nullptr, out);
    mouse(WM_LBUTTONDOWN, POINT{10, 10});
    mouse(WM_LBUTTONUP, POINT{10, 10});
    clickButton(KVLB_HEADER_TEXT);
    destroy();

    // The record goes on to a new container with its order, numbers and sort mode.
    build(KVLB_MULTIPLESEL | KVLB_HEADERS);
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
    EXPECT_EQ((Ids{1}), selectedRows());
    EXPECT_EQ(1, send(KVLB_BUILD, 0, reinterpret_cast<LPARAM>(&record)));  // built again in place
    EXPECT_EQ(103, items[0].picture);  // turned from its letter once only
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
    host.reset();  // the parent goes first, with the record attached

    host = std::make_unique<kvtest::HostWindow>(400, 300);
    container = CreateWindowExW(0, L"KVListbox", L"", WS_CHILD, 0, 0, 100, 100, *host, nullptr, nullptr, nullptr);
    EXPECT_EQ(0, send(KVLB_BUILD, 0, 0));
    EXPECT_FALSE(IsWindow(container));  // a container that cannot be built destroys itself
}

TEST_F(ListBoxBuild, TheInnerListDeletesTheFontItTookFromTheParent) {
    LOGFONTW description = {};
    description.lfHeight = -12;
    HFONT font = CreateFontIndirectW(&description);
    host->setHandler([font](HWND, UINT message, WPARAM, LPARAM, LRESULT* result) {
        *result = reinterpret_cast<LRESULT>(font);
        return message == WM_GETFONT;
    });
    build(0);
    EXPECT_EQ(reinterpret_cast<LRESULT>(font), SendMessageW(box(), WM_GETFONT, 0, 0));
    destroy();
    EXPECT_FALSE(kvtest::IsGdiObject(font));
}

TEST_F(ListBoxBuild, AllocationFailuresSkipTheirStep) {
    // Each allocation of a full build failing in turn (captions, subclass cells, the display
    // order, which the refill makes again, the sort's scratch): the control is built all the
    // same, its rows agree with the display order, and nothing is left behind.
    for (int nth = 1; nth <= 16; ++nth) {
        record.sortMode = KVLB_SORT_TEXT;
        KvText_FailAllocation(nth);
        rebuild(KVLB_HEADERS | KVLB_MULTIPLESEL | KVLB_CHECKCOLUMN | KVLB_SECONDTEXT, 0xF);
        KvText_FailAllocation(0);
        ASSERT_TRUE(IsWindow(container)) << nth;
        EXPECT_EQ(6, rows()) << nth;
        shown();
    }
    // A list without children: its subclass cell (1), then its display order (2).
    record.sortMode = 0;
    KvText_FailAllocation(1);
    rebuild(KVLB_MULTIPLESEL);
    EXPECT_EQ(nullptr, GetPropW(box(), L"OldProc"));
    EXPECT_EQ(6, rows());
    KvText_FailAllocation(2);
    rebuild(KVLB_MULTIPLESEL);
    EXPECT_EQ(0, rows());
    EXPECT_EQ(nullptr, record.order);
    EXPECT_EQ(1, Kx1LbResetSel(container, KVLB_RESET_CLEAR, nullptr));  // the refill makes it
    EXPECT_EQ(6, rows());
    // The sort's scratch: the order and the mode stay, the list is filled all the same.
    rebuild(KVLB_HEADERS);
    KvText_FailAllocation(1);
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ((Ids{0, 1, 2, 3, 4, 5}), shown());
    EXPECT_EQ(0, record.sortMode);
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
        EXPECT_EQ(0, Kx1LbBtnSubProc(window, WM_DESTROY, 0, 0));
    }
    EXPECT_EQ(nullptr, GetWindow(*host, GW_CHILD));  // nothing is built on a window of another class
    for (const char* name : {"Kx1LbProc", "Kx1LbListSubProc", "Kx1LbBtnSubProc", "Kx1LbResetSel",
                             "Kx1LbSelectChar", "Kx1GetLbMousePos", "KlSetListProc", "KlMoveItem"})
        EXPECT_NE(nullptr, GetProcAddress(LibraryModule(), name)) << name;
}

}  // namespace
