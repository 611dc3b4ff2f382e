// The display order: sorting by the column titles, type-ahead, dragging rows, and the list-box
// messages that the host sends to the container with item identifiers.
#include "listbox_test.h"

namespace {

using namespace listbox_test;

class ListBoxOrder : public ListBoxTest {};

TEST_F(ListBoxOrder, TitlesSortAndTheTextTitleTogglesBackToNaturalOrder) {
    build(KVLB_HEADERS | KVLB_CHECKCOLUMN | KVLB_PICTURES | KVLB_VALUES | KVLB_MULTIPLESEL);
    const Ids natural = {0, 1, 2, 3, 4, 5};
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ((Ids{4, 1, 5, 2, 3, 0}), shown());
    EXPECT_EQ(1, notifications(LBN_SELCHANGE));
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ(natural, shown());
    EXPECT_EQ(KVLB_SORT_NATURAL, record.sortMode);
    clickButton(KVLB_HEADER_TEXT);
    clickButton(KVLB_HEADER_SECONDTEXT);  // always natural order
    EXPECT_EQ(natural, shown());
    clickButton(KVLB_HEADER_TEXT);  // from mode 32 back to natural order, not to text
    EXPECT_EQ(natural, shown());
    // Pictures of the type letters K C T Z X O: 103 101 105 101 102 107; ties keep array order.
    clickButton(KVLB_HEADER_PICTURE);
    EXPECT_EQ((Ids{1, 3, 4, 0, 2, 5}), shown());
    clickButton(KVLB_HEADER_VALUE);
    EXPECT_EQ((Ids{5, 1, 3, 0, 4, 2}), shown());
    click(4);
    click(0);
    clickButton(KVLB_HEADER_CHECK);  // selected first by number
    EXPECT_EQ((Ids{4, 5, 0, 1, 2, 3}), shown());
    EXPECT_EQ((Ids{0, 1}), selectedRows());
    EXPECT_EQ(box(), GetFocus());  // the list keeps the keyboard
}

TEST_F(ListBoxOrder, TypeAheadFindsTheNextRowByItsFirstLetter) {
    build(0);  // Lindholm Berg Falk Haas Anders Brandt
    key('B', L'B');
    key('B', L'b');
    EXPECT_EQ(5, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    key('B', L'b');  // wraps round
    key('Q', L'q');  // no match: nothing changes
    key(VK_SPACE, L' ');  // never searches
    EXPECT_EQ(1, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    EXPECT_EQ((Numbers{0, 1, 0, 0, 0, 0}), numbers());
    kvtest::PumpMessages();
    EXPECT_EQ(3, notifications(LBN_SELCHANGE));

    rebuild(kNumbered);  // multiple selection: the caret moves, nothing is selected
    key('H', L'h');
    EXPECT_EQ(3, send(LB_GETCARETINDEX, 0));
    EXPECT_TRUE(selectedRows().empty());
}

TEST_F(ListBoxOrder, DraggingARowMovesItsItemAndRecountsTheNumbers) {
    build(kNumbered | KVLB_DRAGROWS);
    click(1);
    click(3);
    mouse(WM_LBUTTONDOWN, rowCentre(3));
    mouse(WM_MOUSEMOVE, rowCentre(0));
    EXPECT_EQ(LoadCursorW(LibraryModule(), L"move"), GetCursor());
    mouse(WM_MOUSEMOVE, rowCentre(3));
    EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), GetCursor());
    mouse(WM_MOUSEMOVE, POINT{-20, 5});
    EXPECT_EQ(LoadCursorW(LibraryModule(), L"nofeld"), GetCursor());
    host->clear();
    mouse(WM_LBUTTONUP, rowCentre(0));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), GetCursor());
    EXPECT_EQ((Ids{3, 0, 1, 2, 4, 5}), shown());
    EXPECT_EQ((Numbers{0, 2, 0, 1, 0, 0}), numbers());
    EXPECT_EQ(1, notifications(LBN_SELCHANGE));
    // Below the last row: to the end; outside the list: nowhere.
    mouse(WM_LBUTTONDOWN, rowCentre(1));
    mouse(WM_LBUTTONUP, POINT{20, rowCentre(5).y + 40});
    mouse(WM_LBUTTONDOWN, rowCentre(0));
    mouse(WM_LBUTTONUP, POINT{-20, rowCentre(3).y});
    EXPECT_EQ((Ids{3, 1, 2, 4, 5, 0}), shown());

    // Numbers that fall in display order (row 0 numbered 2 above row 1 numbered 1) arm no drag.
    short falling[] = {0, 1, 0, 2, 0, 0};
    Kx1LbResetSel(container, KVLB_RESET_NUMBERS, falling);
    SetCursor(LoadCursorW(nullptr, IDC_IBEAM));
    mouse(WM_LBUTTONDOWN, rowCentre(2));
    mouse(WM_MOUSEMOVE, rowCentre(4));
    EXPECT_EQ(LoadCursorW(nullptr, IDC_IBEAM), GetCursor());
    mouse(WM_LBUTTONUP, rowCentre(4));
    EXPECT_EQ((Ids{3, 1, 2, 4, 5, 0}), shown());
}

TEST_F(ListBoxOrder, MessagesTakeIdentifiersInPlaceOfRows) {
    build(kNumbered);
    for (int row : {1, 2, 4}) click(row);
    EXPECT_EQ(LB_ERR, send(LB_DELETESTRING, 42));  // an unknown identifier changes nothing
    EXPECT_EQ((Ids{0, 1, 2, 3, 4, 5}), shown());
    // Deleting the second of three selections hides it and closes up the numbers.
    EXPECT_EQ(5, send(LB_DELETESTRING, 2));
    EXPECT_EQ((Ids{0, 1, 3, 4, 5}), shown());
    EXPECT_EQ(KVLB_ITEM_HIDDEN, items[2].flags);
    EXPECT_EQ((Numbers{0, 1, 0, 0, 2, 0}), numbers());
    EXPECT_EQ(LB_ERR, send(LB_SETSEL, TRUE, 2));
    EXPECT_EQ(1, send(LB_INSERTSTRING, 1, 2));  // shown again in front of row 1, once only
    EXPECT_EQ(LB_ERR, send(LB_ADDSTRING, 0, 2));
    EXPECT_EQ((Ids{0, 2, 1, 3, 4, 5}), shown());

    EXPECT_EQ(0, send(LB_SETSEL, TRUE, 5));
    EXPECT_EQ(3, send(LB_GETSEL, 5));
    EXPECT_EQ(LB_ERR, send(LB_GETSEL, 42));
    EXPECT_EQ(1, send(LB_GETCURSEL, 0));  // the first numbered item in array order
    EXPECT_EQ(0, send(LB_SETSEL, FALSE, -1));
    EXPECT_TRUE(selectedRows().empty());
    wchar_t text[40] = L"";
    EXPECT_EQ(4, send(LB_GETTEXT, 3, reinterpret_cast<LPARAM>(text)));
    EXPECT_STREQ(L"Haas", text);
    // Found by the start of the text, whatever its case; selected only when asked to.
    EXPECT_EQ(5, send(LB_FINDSTRING, 0, reinterpret_cast<LPARAM>(L"bRA")));
    EXPECT_EQ(LB_ERR, send(LB_FINDSTRING, 0, reinterpret_cast<LPARAM>(L"Zorn")));
    EXPECT_EQ(3, send(LB_SELECTSTRING, 0, reinterpret_cast<LPARAM>(L"ha")));
    EXPECT_TRUE(selectedRows().empty());
    EXPECT_EQ(3, send(LB_GETCARETINDEX, 0));
    EXPECT_EQ(3, send(LB_SELECTSTRING, 1, reinterpret_cast<LPARAM>(L"ha")));
    EXPECT_EQ((Ids{3}), selectedRows());
    EXPECT_EQ(0, send(LB_SETCARETINDEX, -1));
    EXPECT_EQ(0, record.anchor);
    EXPECT_EQ(6, send(LB_GETCOUNT, 0));  // any other message goes to the inner list as it is

    rebuild(0);
    items[4].flags = KVLB_ITEM_DISABLED;
    EXPECT_EQ(3, send(LB_SETCURSEL, 3));
    EXPECT_EQ(LB_ERR, send(LB_SETCURSEL, 4));
    EXPECT_EQ(2, send(LB_SELECTSTRING, 0, reinterpret_cast<LPARAM>(L"f")));
    EXPECT_EQ((Numbers{0, 0, 1, 0, 0, 0}), numbers());
}

}  // namespace
