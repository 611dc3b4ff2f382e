// Drawing rows: the container is sent the WM_DRAWITEM that its list would send, with a canvas as
// the device context.
#include "listbox_test.h"

namespace {

using namespace listbox_test;

const int kRowHeight = 20;

class ListBoxPaint : public ListBoxTest {
protected:
    void drawRow(kvtest::Canvas& canvas, int row, UINT state) {
        DRAWITEMSTRUCT draw = {ODT_LISTBOX, KVLB_LIST_ID, static_cast<UINT>(row), ODA_DRAWENTIRE, state, box(),
                               canvas.dc(), RECT{0, 0, canvas.width(), canvas.height()},
                               static_cast<ULONG_PTR>(SendMessageW(box(), LB_GETITEMDATA, row, 0))};
        send(WM_DRAWITEM, KVLB_LIST_ID, reinterpret_cast<LPARAM>(&draw));
    }
    int count(const kvtest::Canvas& canvas, RECT area, COLORREF colour) const {
        int found = 0;
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x) found += canvas.pixel(x, y) == colour;
        return found;
    }
    int listWidth() const {
        RECT client;
        GetClientRect(box(), &client);
        return client.right;
    }
};

TEST_F(ListBoxPaint, SelectionIsHighlightedOrCheckedAndNumbered) {
    build(0);
    click(1);
    kvtest::Canvas canvas(listWidth(), kRowHeight);
    RECT all = {0, 0, canvas.width(), kRowHeight};
    drawRow(canvas, 1, ODS_SELECTED);
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHT), canvas.pixel(canvas.width() - 2, 1));
    EXPECT_GT(count(canvas, all, GetSysColor(COLOR_HIGHLIGHTTEXT)), 10);

    rebuild(kNumbered);
    click(0);
    click(1);
    COLORREF ink = GetSysColor(COLOR_WINDOWTEXT);
    drawRow(canvas, 1, ODS_SELECTED);
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), canvas.pixel(canvas.width() - 2, 1));
    EXPECT_GT(count(canvas, RECT{0, 0, 5, kRowHeight}, ink), 0);  // the number 2
    EXPECT_GT(count(canvas, RECT{6, 2, 22, 18}, ink), 10);         // the check mark right of it
    record.style &= ~KVLB_NUMBERS;
    drawRow(canvas, 1, ODS_SELECTED);
    EXPECT_EQ(0, count(canvas, RECT{0, 0, 5, kRowHeight}, ink));   // no number, the mark centred
    EXPECT_GT(count(canvas, RECT{3, 2, 19, 18}, ink), 10);
    drawRow(canvas, 2, 0);
    EXPECT_EQ(0, count(canvas, RECT{0, 0, 22, kRowHeight}, ink));
}

TEST_F(ListBoxPaint, NumbersFollowTheDrawing) {
    build(kNumbered);
    short given[] = {1, 2, 3, 0, 0, 0};
    Kx1LbResetSel(container, KVLB_RESET_NUMBERS, given);
    kvtest::Canvas canvas(listWidth(), kRowHeight, RGB(255, 0, 255));
    // Drawn unselected: the number goes and the later ones move up; with numbers shown the row
    // is left for the whole list to be drawn again.
    drawRow(canvas, 1, 0);
    EXPECT_EQ((Numbers{1, 0, 2, 0, 0, 0}), numbers());
    EXPECT_EQ(RGB(255, 0, 255), canvas.pixel(canvas.width() - 2, 1));
    EXPECT_TRUE(GetUpdateRect(box(), nullptr, FALSE));
    // Drawn selected without a number: numbered by the list's selection count (rows 0-2).
    record.style &= ~KVLB_NUMBERS;
    drawRow(canvas, 4, ODS_SELECTED);
    EXPECT_EQ((Numbers{1, 0, 2, 0, 3, 0}), numbers());
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), canvas.pixel(canvas.width() - 2, 1));
}

TEST_F(ListBoxPaint, PicturesAreTheLibrarysAndGreyWhenDisabled) {
    items[1].flags = KVLB_ITEM_DISABLED;  // 'C' like item 3's 'Z': picture 101
    build(KVLB_PICTURES);
    kvtest::Canvas canvas(listWidth(), kRowHeight);
    HBITMAP picture = LoadBitmapW(LibraryModule(), MAKEINTRESOURCEW(101));
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(picture);
    DeleteObject(picture);
    int left = record.columnWidths[KVLB_COLUMN_TEXT] + 3, top = 2;  // 16 x 16 centred in 22 x 20
    auto at = [&](int i) { return canvas.pixel(left + i % 16, top + i / 16); };
    drawRow(canvas, 3, 0);
    for (int i = 0; i < 256; ++i)
        ASSERT_EQ(pixels[i] == RGB(192, 192, 192) ? GetSysColor(COLOR_WINDOW) : pixels[i], at(i)) << i;
    drawRow(canvas, 1, 0);
    int coloured = 0;
    for (int i = 0; i < 256; ++i) {
        if (GetRValue(pixels[i]) == GetBValue(pixels[i])) continue;  // greys and the key
        ++coloured;
        EXPECT_TRUE(GetRValue(at(i)) == GetGValue(at(i)) && GetGValue(at(i)) == GetBValue(at(i))) << i;
    }
    EXPECT_GT(coloured, 20);
    RECT text = {0, 0, record.columnWidths[KVLB_COLUMN_TEXT], kRowHeight};
    EXPECT_GT(count(canvas, text, GetSysColor(COLOR_GRAYTEXT)), 10);
    EXPECT_EQ(0, count(canvas, text, GetSysColor(COLOR_WINDOWTEXT)));
}

TEST_F(ListBoxPaint, TheFocusedRowShowsTheAnchorMarker) {
    build(kNumbered | KVLB_ANCHORMARK);
    kvtest::Canvas canvas(listWidth(), kRowHeight);
    const COLORREF marker = RGB(30, 60, 170);
    drawRow(canvas, 2, ODS_FOCUS);
    EXPECT_GT(count(canvas, RECT{0, 0, 5, kRowHeight}, marker), 5);
    EXPECT_EQ(2, record.anchor);
    drawRow(canvas, 3, 0);
    EXPECT_EQ(0, count(canvas, RECT{0, 0, 5, kRowHeight}, marker));
}

}  // namespace
