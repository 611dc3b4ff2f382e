// Drawing rows and toggle buttons: the container is sent the WM_DRAWITEM that its list or button
// would send, with a canvas as the device context.
#include "listbox_test.h"

namespace {

using listbox_test::ListBoxTest;
using Numbers = std::vector<long>;

const unsigned long kNumbered = KVLB_MULTIPLESEL | KVLB_CHECKCOLUMN | KVLB_NUMBERS;
const int kRowHeight = 20;

class ListBoxPaint : public ListBoxTest {
protected:
    int listWidth() const {
        RECT client;
        GetClientRect(box(), &client);
        return client.right;
    }
    void drawRow(kvtest::Canvas& canvas, int row, UINT state) {
        DRAWITEMSTRUCT draw = {};
        draw.CtlType = ODT_LISTBOX;
        draw.CtlID = KVLB_LIST_ID;
        draw.itemID = row;
        draw.itemAction = ODA_DRAWENTIRE;
        draw.itemState = state;
        draw.hwndItem = box();
        draw.hDC = canvas.dc();
        draw.rcItem = RECT{0, 0, canvas.width(), canvas.height()};
        draw.itemData = SendMessageW(box(), LB_GETITEMDATA, row, 0);
        SendMessageW(container, WM_DRAWITEM, KVLB_LIST_ID, reinterpret_cast<LPARAM>(&draw));
    }
    static int count(const kvtest::Canvas& canvas, RECT area, COLORREF colour) {
        int found = 0;
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x) found += canvas.pixel(x, y) == colour;
        return found;
    }
};

TEST_F(ListBoxPaint, SelectedRowsAreHighlightedUnlessTheCheckColumnShowsThem) {
    build(0);
    click(1);
    kvtest::Canvas canvas(listWidth(), kRowHeight);
    RECT all = {0, 0, canvas.width(), canvas.height()};
    drawRow(canvas, 1, ODS_SELECTED);
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHT), canvas.pixel(canvas.width() - 2, 1));
    EXPECT_GT(count(canvas, all, GetSysColor(COLOR_HIGHLIGHTTEXT)), 10);
    drawRow(canvas, 2, 0);
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), canvas.pixel(canvas.width() - 2, 1));
    EXPECT_GT(count(canvas, all, GetSysColor(COLOR_WINDOWTEXT)), 10);
    destroy();

    build(kNumbered);
    click(0);
    click(1);
    COLORREF ink = GetSysColor(COLOR_WINDOWTEXT);
    drawRow(canvas, 1, ODS_SELECTED);
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), canvas.pixel(canvas.width() - 2, 1));
    EXPECT_GT(count(canvas, RECT{0, 0, 5, kRowHeight}, ink), 0);    // the number 2
    EXPECT_GT(count(canvas, RECT{6, 2, 22, 18}, ink), 10);           // the check mark right of it
    record.style &= ~KVLB_NUMBERS;
    drawRow(canvas, 1, ODS_SELECTED);
    EXPECT_EQ(0, count(canvas, RECT{0, 0, 5, kRowHeight}, ink));     // no number, the mark centred
    EXPECT_GT(count(canvas, RECT{3, 2, 19, 18}, ink), 10);
    drawRow(canvas, 2, 0);
    EXPECT_EQ(0, count(canvas, RECT{0, 0, 22, kRowHeight}, ink));
}

TEST_F(ListBoxPaint, NumbersFollowTheDrawingAndShownNumbersRedrawTheList) {
    build(kNumbered);
    short numbers[] = {1, 2, 3, 0, 0, 0};
    Kx1LbResetSel(container, KVLB_RESET_NUMBERS, numbers);
    kvtest::Canvas canvas(listWidth(), kRowHeight, RGB(255, 0, 255));
    // Drawn unselected: the number goes and the later ones move up; with numbers shown the row
    // is left for the whole list to be drawn again.
    drawRow(canvas, 1, 0);
    EXPECT_EQ((Numbers{1, 0, 2, 0, 0, 0}), this->numbers());
    EXPECT_EQ(RGB(255, 0, 255), canvas.pixel(canvas.width() - 2, 1));
    RECT update;
    EXPECT_TRUE(GetUpdateRect(box(), &update, FALSE));
    // Drawn selected without a number: numbered by the list's selection count (rows 0-2).
    record.style &= ~KVLB_NUMBERS;
    drawRow(canvas, 4, ODS_SELECTED);
    EXPECT_EQ((Numbers{1, 0, 2, 0, 3, 0}), this->numbers());
    EXPECT_EQ(GetSysColor(COLOR_WINDOW), canvas.pixel(canvas.width() - 2, 1));
}

TEST_F(ListBoxPaint, PicturesAreTheLibrarysAndGreyWhenDisabled) {
    items[1].flags = KVLB_ITEM_DISABLED;  // 'C' and 'Z' (item 3) both show picture 101
    build(KVLB_PICTURES);
    kvtest::Canvas canvas(listWidth(), kRowHeight);
    HBITMAP picture = LoadBitmapW(listbox_test::LibraryModule(), MAKEINTRESOURCEW(101));
    int width = 0, height = 0;
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(picture, &width, &height);
    DeleteObject(picture);
    int left = record.columnWidths[KVLB_COLUMN_TEXT] + (22 - width) / 2, top = (kRowHeight - height) / 2;
    const COLORREF key = RGB(192, 192, 192);

    drawRow(canvas, 3, 0);
    int shown = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            COLORREF expected = pixels[y * width + x] == key ? GetSysColor(COLOR_WINDOW) : pixels[y * width + x];
            shown += canvas.pixel(left + x, top + y) == expected;
        }
    EXPECT_EQ(width * height, shown);

    drawRow(canvas, 1, 0);
    int grey = 0, coloured = 0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (pixels[y * width + x] == key || GetRValue(pixels[y * width + x]) == GetBValue(pixels[y * width + x]))
                continue;
            COLORREF drawn = canvas.pixel(left + x, top + y);
            ++coloured;
            grey += GetRValue(drawn) == GetGValue(drawn) && GetGValue(drawn) == GetBValue(drawn);
        }
    EXPECT_GT(coloured, 20);
    EXPECT_EQ(coloured, grey);
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

TEST_F(ListBoxPaint, TogglesLookPressedWhileTheirColumnIsOn) {
    build(KVLB_PICTURES, KVLB_HAS_TOGGLE_PICTURES | KVLB_HAS_TOGGLE_VALUES);
    auto drawToggle = [&](int id) {
        kvtest::Canvas canvas(16, 16);
        DRAWITEMSTRUCT draw = {};
        draw.CtlType = ODT_BUTTON;
        draw.CtlID = id;
        draw.itemAction = ODA_DRAWENTIRE;
        draw.hwndItem = GetDlgItem(container, id);
        draw.hDC = canvas.dc();
        draw.rcItem = RECT{0, 0, 16, 16};
        SendMessageW(container, WM_DRAWITEM, id, reinterpret_cast<LPARAM>(&draw));
        std::vector<COLORREF> pixels;
        for (int y = 0; y < 16; ++y)
            for (int x = 0; x < 16; ++x) pixels.push_back(canvas.pixel(x, y));
        return pixels;
    };
    std::vector<COLORREF> on = drawToggle(KVLB_TOGGLE_PICTURES), off = drawToggle(KVLB_TOGGLE_VALUES);
    EXPECT_NE(on[0], off[0]);  // sunken and raised edges
    EXPECT_EQ(on, drawToggle(KVLB_TOGGLE_PICTURES));
    clickButton(KVLB_TOGGLE_VALUES);
    std::vector<COLORREF> pressed = drawToggle(KVLB_TOGGLE_VALUES);
    EXPECT_EQ(on[0], pressed[0]);
    EXPECT_NE(off, pressed);
}

}  // namespace
