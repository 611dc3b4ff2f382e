// Columns, header values, the sort arrow's ownership, cells, row values and custom-draw colours.
#include "listview_fixture.h"

namespace {

HBITMAP solidBitmap(COLORREF colour) {
    return kvtest::MakeBitmap(8, 8, [colour](int, int) { return colour; });
}

// The library's arrow bitmap, loaded the way the library loads it.
std::vector<COLORREF> arrowPixels(int id) {
    auto bitmap = static_cast<HBITMAP>(LoadImageW(GetModuleHandleW(L"kvkit.dll"), MAKEINTRESOURCEW(id),
                                                  IMAGE_BITMAP, 0, 0, 0x1060));
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(bitmap);
    DeleteObject(bitmap);
    return pixels;
}

}  // namespace

TEST_F(ListViewTest, ColumnsAppendOnlyUnlessRebuiltFromColumnZero) {
    addColumns({L"Name", L"Amount", L"Date"});
    EXPECT_EQ(-1, KxListView_AddHeader(list, L"Between", 1, 50));
    EXPECT_EQ(3, columnCount());
    EXPECT_EQ(3, KxListView_AddHeader(list, L"Image", 3, 50));
    EXPECT_EQ(HDF_BITMAP_ON_RIGHT, headerItem(3).fmt & (HDF_BITMAP_ON_RIGHT | HDF_BITMAP));
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 3));  // never sorted

    EXPECT_EQ(0, KxListView_AddHeaderEx(list, L"Fresh", 0, 120, 1));
    EXPECT_EQ(1, columnCount());
    EXPECT_EQ(120, ListView_GetColumnWidth(list, 0));

    EXPECT_TRUE(KxListView_SetHeader(list, L"Renamed", 0, 0));
    EXPECT_EQ(120, ListView_GetColumnWidth(list, 0));  // width 0 leaves the width alone
    EXPECT_TRUE(KxListView_SetHeader(list, nullptr, 0, 70));
    EXPECT_EQ(70, ListView_GetColumnWidth(list, 0));
}

TEST_F(ListViewTest, ClearHeaderCountsAndDeletesTheArrowWithItsColumn) {
    EXPECT_EQ(0, KxListView_ClearHeader(list));
    EXPECT_EQ(-1, KxListView_GetSortColumn(list, 0, nullptr));  // a header without columns
    addColumns({L"A", L"B", L"C"});
    HBITMAP arrow = solidBitmap(RGB(0, 0, 255));
    ASSERT_TRUE(KxListView_SetHeaderBitmap(list, arrow, 1, 1));
    EXPECT_EQ(3, KxListView_ClearHeader(list));
    EXPECT_EQ(0, columnCount());
    EXPECT_FALSE(kvtest::IsGdiObject(arrow));
}

TEST_F(ListViewTest, WithoutHeaderEverythingReportsFailure) {
    HWND plain = host->createChild(L"STATIC", L"", WS_CHILD, 0, 0, 10, 10, 101);
    EXPECT_EQ(-1, KxListView_AddHeader(plain, L"A", 0, 10));
    EXPECT_EQ(0, KxListView_ClearHeader(plain));
    EXPECT_EQ(0, KxListView_SetHeaderData(plain, 0, 5));
    EXPECT_EQ(0, KxListView_GetHeaderData(plain, 0));
    HBITMAP bitmap = solidBitmap(RGB(1, 2, 3));
    EXPECT_EQ(0, KxListView_SetHeaderBitmap(plain, bitmap, 0, 1));
    EXPECT_EQ(0, KxListView_SetSortBitmap(plain, 0, 1, 1));
    EXPECT_EQ(0, KxListView_GetSortColumn(plain, 0, nullptr));
    EXPECT_TRUE(kvtest::IsGdiObject(bitmap));  // not taken over on failure
    DeleteObject(bitmap);
}

TEST_F(ListViewTest, HeaderBitmapIsOwnedAndDeletedWhenReplaced) {
    addColumns({L"A", L"B", L"C"});
    HBITMAP first = solidBitmap(RGB(255, 0, 0));
    HBITMAP second = solidBitmap(RGB(0, 255, 0));
    HBITMAP third = solidBitmap(RGB(0, 0, 255));

    EXPECT_TRUE(KxListView_SetHeaderBitmap(list, first, 0, 0));
    EXPECT_EQ(first, arrowOf(0));
    EXPECT_EQ(HDF_BITMAP | HDF_BITMAP_ON_RIGHT, headerItem(0).fmt & 0x3000);

    // Clear-others where the arrow already sits on the target: replaced there, old one deleted.
    EXPECT_TRUE(KxListView_SetHeaderBitmap(list, second, 0, 1));
    EXPECT_FALSE(kvtest::IsGdiObject(first));
    EXPECT_EQ(second, arrowOf(0));

    EXPECT_TRUE(KxListView_SetHeaderBitmap(list, third, 2, 1));
    EXPECT_FALSE(kvtest::IsGdiObject(second));
    EXPECT_EQ(nullptr, arrowOf(0));
    EXPECT_EQ(0, headerItem(0).fmt & 0x3000);
    EXPECT_EQ(third, arrowOf(2));

    // A negative column with clear-others only takes the arrow away.
    EXPECT_EQ(0, KxListView_SetHeaderBitmap(list, nullptr, -1, 1));
    EXPECT_FALSE(kvtest::IsGdiObject(third));
    EXPECT_EQ(nullptr, arrowOf(2));
}

TEST_F(ListViewTest, SortBitmapStoresDirectionAndShowsTheMatchingArrow) {
    addColumns({L"A", L"B"});
    EXPECT_EQ(1, KxListView_SetSortBitmap(list, 1, 1, 1));
    EXPECT_EQ(1, KxListView_GetHeaderData(list, 1));
    HBITMAP up = arrowOf(1);
    ASSERT_TRUE(up);
    EXPECT_EQ(arrowPixels(1000), kvtest::BitmapPixels(up));

    EXPECT_EQ(1, KxListView_SetSortBitmap(list, 0, 0, 1));
    EXPECT_EQ(0, KxListView_GetHeaderData(list, 0));
    EXPECT_EQ(1, KxListView_GetHeaderData(list, 1));  // the other column keeps its value
    EXPECT_EQ(nullptr, arrowOf(1));
    EXPECT_EQ(arrowPixels(1001), kvtest::BitmapPixels(arrowOf(0)));
    EXPECT_NE(arrowPixels(1000), arrowPixels(1001));

    EXPECT_EQ(0, KxListView_SetSortBitmap(list, 5, 1, 1));
}

TEST_F(ListViewTest, LastColumnTakesTheRemainingWidth) {
    KxListView_AddHeader(list, L"A", 0, 100);
    KxListView_AddHeader(list, L"B", 1, 50);
    KxListView_AddHeader(list, L"C", 2, 10);
    RECT client;
    GetClientRect(list, &client);
    EXPECT_EQ(1, KxListView_SetLastColumnWidth(list, 2));
    EXPECT_EQ(client.right - 150, ListView_GetColumnWidth(list, 2));

    KxListView_SetHeader(list, L"A rather long column title", 0, 5);
    EXPECT_EQ(1, KxListView_SetLastColumnWidth(list, 0));
    EXPECT_GT(ListView_GetColumnWidth(list, 0), 60);
}

TEST_F(ListViewTest, RowsCellsValuesAndImages) {
    addColumns({L"A", L"B"});
    EXPECT_EQ(0, KxListView_AddSpalte(list, 0, 0, L"first", 3, 42));
    EXPECT_EQ(0, KxListView_AddSpalte(list, 0, -1, L"inserted before", -1, 0));
    EXPECT_TRUE(KxListView_AddSpalte(list, 1, 1, L"cell", 1, 0));
    EXPECT_EQ(0, KxListView_AddSpalte(list, 9, 1, L"no such row", -1, 0));
    EXPECT_EQ(2, rowCount());
    EXPECT_EQ(L"inserted before", cell(0, 0));
    EXPECT_EQ(L"first", cell(1, 0));
    EXPECT_EQ(L"cell", cell(1, 1));

    EXPECT_EQ(0, KxListView_GetItemData(list, 0));
    EXPECT_EQ(42, KxListView_GetItemData(list, 1));
    EXPECT_TRUE(KxListView_SetItemData(list, 0, -9));
    EXPECT_EQ(-9, KxListView_GetItemData(list, 0));
    EXPECT_EQ(0, KxListView_SetItemData(list, 5, 1));
    EXPECT_EQ(0, KxListView_GetItemData(list, 5));

    EXPECT_EQ(3, KxListView_GetItemBmp(list, 1, 0));
    EXPECT_EQ(0, KxListView_SetItemBmp(list, 1, 0, 3));  // unchanged: not written
    EXPECT_TRUE(KxListView_SetItemBmp(list, 1, 0, 4));
    EXPECT_EQ(4, KxListView_GetItemBmp(list, 1, 0));
    EXPECT_EQ(-1, KxListView_GetItemBmp(list, 7, 0));
    EXPECT_EQ(0, KxListView_SetItemBmp(list, 7, 0, 1));
}

TEST_F(ListViewTest, SelectionIsTheFirstSelectedRow) {
    addColumns({L"A"});
    for (int value = 10; value < 15; ++value) addRow(value, {L"row"});
    LPARAM value = 77;
    EXPECT_EQ(-1, KxListView_GetSelection(list, &value));
    EXPECT_EQ(77, value);  // untouched
    ListView_SetItemState(list, 3, LVIS_SELECTED, LVIS_SELECTED);
    ListView_SetItemState(list, 2, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(2, KxListView_GetSelection(list, &value));
    EXPECT_EQ(12, value);
}

// Row filtering is seen in the painted list below; here the stages and the colour rules.
TEST_F(ListViewTest, ItemColorFontStages) {
    HWND dialog = CreateWindowExW(0, WC_DIALOG, L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(dialog);
    kvtest::Canvas canvas(10, 10);
    HFONT font = CreateFontW(-20, 0, 0, 0, FW_BOLD, 0, 0, 0, 0, 0, 0, 0, 0, L"Arial");
    NMLVCUSTOMDRAW draw = {};
    draw.nmcd.hdc = canvas.dc();
    draw.nmcd.dwDrawStage = CDDS_PREPAINT;
    EXPECT_EQ(CDRF_NOTIFYITEMDRAW, KxListView_SetItemColorFont(dialog, list, &draw, -1, 0, 0, nullptr));
    EXPECT_EQ(CDRF_NOTIFYITEMDRAW, GetWindowLongW(dialog, DWLP_MSGRESULT));

    draw.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
    draw.clrText = draw.clrTextBk = RGB(1, 1, 1);
    EXPECT_EQ(CDRF_NEWFONT, KxListView_SetItemColorFont(dialog, list, &draw, -1, RGB(9, 0, 0), CLR_INVALID, font));
    EXPECT_EQ(RGB(9, 0, 0), draw.clrText);
    EXPECT_EQ(RGB(1, 1, 1), draw.clrTextBk);  // -1 leaves the colour alone
    EXPECT_EQ(font, GetCurrentObject(canvas.dc(), OBJ_FONT));

    // On a focused, selected row the highlight colours swap so the row stays readable.
    draw.nmcd.uItemState = CDIS_FOCUS | CDIS_SELECTED;
    KxListView_SetItemColorFont(dialog, list, &draw, -1, GetSysColor(COLOR_HIGHLIGHT),
                                GetSysColor(COLOR_HIGHLIGHTTEXT), nullptr);
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHTTEXT), draw.clrText);
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHT), draw.clrTextBk);
    draw.nmcd.uItemState = CDIS_SELECTED;
    KxListView_SetItemColorFont(dialog, list, &draw, -1, GetSysColor(COLOR_HIGHLIGHT), CLR_INVALID, nullptr);
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHT), draw.clrText);

    draw.nmcd.dwDrawStage = CDDS_POSTPAINT;
    EXPECT_EQ(CDRF_DODEFAULT, KxListView_SetItemColorFont(dialog, list, &draw, -1, 0, 0, nullptr));
    SelectObject(canvas.dc(), GetStockObject(SYSTEM_FONT));
    DeleteObject(font);
    DestroyWindow(dialog);
}

TEST_F(ListViewTest, ItemColorFontPaintsTheFilteredRow) {
    addColumns({L"A"});
    for (int value = 1; value <= 3; ++value) addRow(value, {L"x"});
    const COLORREF red = RGB(255, 0, 0);
    host->setHandler([&](HWND, UINT message, WPARAM, LPARAM lParam, LRESULT* result) {
        auto* notify = reinterpret_cast<NMHDR*>(lParam);
        if (message != WM_NOTIFY || notify->hwndFrom != list || notify->code != NM_CUSTOMDRAW) return false;
        *result = KxListView_SetItemColorFont(*host, list, reinterpret_cast<NMLVCUSTOMDRAW*>(lParam), 2,
                                              RGB(255, 255, 255), red, nullptr);
        return true;
    });
    RECT client;
    GetClientRect(list, &client);
    kvtest::Canvas canvas(client.right, client.bottom);
    SendMessageW(list, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT | PRF_ERASEBKGND);
    for (int row = 0; row < 3; ++row) {
        RECT label;
        ListView_GetItemRect(list, row, &label, LVIR_LABEL);
        COLORREF background = canvas.pixel(label.right - 3, (label.top + label.bottom) / 2);
        if (row == 1) EXPECT_EQ(red, background) << "row " << row;
        else EXPECT_NE(red, background) << "row " << row;
    }
}
