// The display order: sorting by the column titles, type-ahead, dragging rows, and the list-box
// messages that the host sends to the container with item identifiers.
#include "listbox_test.h"

namespace {

using listbox_test::LibraryCursor;
using listbox_test::ListBoxTest;
using Ids = std::vector<int>;
using Numbers = std::vector<long>;

const unsigned long kColumns = KVLB_HEADERS | KVLB_CHECKCOLUMN | KVLB_PICTURES | KVLB_VALUES | KVLB_SECONDTEXT;
const unsigned long kNumbered = KVLB_MULTIPLESEL | KVLB_CHECKCOLUMN | KVLB_NUMBERS;

class ListBoxOrder : public ListBoxTest {};

TEST_F(ListBoxOrder, TitlesSortAndTheTextTitleTogglesBackToNaturalOrder) {
    build(kColumns | KVLB_MULTIPLESEL);
    const Ids natural = {0, 1, 2, 3, 4, 5};
    const Ids byText = {4, 1, 5, 2, 3, 0};  // Anders Berg Brandt Falk Haas Lindholm
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ(byText, shown());
    EXPECT_EQ(KVLB_SORT_TEXT, record.sortMode);
    EXPECT_EQ(1, notifications(LBN_SELCHANGE));
    clickButton(KVLB_HEADER_TEXT);
    EXPECT_EQ(natural, shown());
    EXPECT_EQ(KVLB_SORT_NATURAL, record.sortMode);
    clickButton(KVLB_HEADER_TEXT);
    clickButton(KVLB_HEADER_SECONDTEXT);  // always natural order
    EXPECT_EQ(natural, shown());
    EXPECT_EQ(KVLB_SORT_NATURAL2, record.sortMode);
    clickButton(KVLB_HEADER_TEXT);  // from mode 32 it goes back to natural order, not to text
    EXPECT_EQ(natural, shown());
    // Pictures from the type letters K C T Z X O: 103 101 105 101 102 107; equal ones keep
    // array order.
    clickButton(KVLB_HEADER_PICTURE);
    EXPECT_EQ((Ids{1, 3, 4, 0, 2, 5}), shown());
    clickButton(KVLB_HEADER_VALUE);
    EXPECT_EQ((Ids{5, 1, 3, 0, 4, 2}), shown());
    click(4);  // item 4
    click(0);  // item 5
    clickButton(KVLB_HEADER_CHECK);
    EXPECT_EQ((Ids{4, 5, 0, 1, 2, 3}), shown());
    EXPECT_EQ((Ids{0, 1}), selectedRows());
    EXPECT_EQ(GetDlgItem(container, KVLB_LIST_ID), GetFocus());  // the list keeps the keyboard
}

TEST_F(ListBoxOrder, TypeAheadFindsTheNextRowByItsFirstLetter) {
    build(0);
    // Rows: Lindholm Berg Falk Haas Anders Brandt.
    key('B', L'B');
    EXPECT_EQ(1, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    key('B', L'b');
    EXPECT_EQ(5, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    key('B', L'b');  // wraps round
    EXPECT_EQ(1, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    EXPECT_EQ((Numbers{0, 1, 0, 0, 0, 0}), numbers());
    key('Q', L'q');  // no match: nothing changes
    key(VK_SPACE, L' ');  // space never searches
    EXPECT_EQ(1, SendMessageW(box(), LB_GETCURSEL, 0, 0));
    kvtest::PumpMessages();
    EXPECT_EQ(3, notifications(LBN_SELCHANGE));
    destroy();
    FreeMemory(record.order);
    record.order = nullptr;
    items[1].selection = 0;

    build(kNumbered);  // multiple selection: the caret moves, nothing is selected
    key('H', L'h');
    EXPECT_EQ(3, SendMessageW(box(), LB_GETCARETINDEX, 0, 0));
    EXPECT_EQ(3, SendMessageW(container, LB_GETCARETINDEX, 0, 0));
    EXPECT_TRUE(selectedRows().empty());
}

TEST_F(ListBoxOrder, DraggingARowMovesItsItemAndRecountsTheNumbers) {
    build(kNumbered | KVLB_DRAGROWS);
    click(1);
    click(3);
    press(rowCentre(3));
    moveTo(rowCentre(0));
    EXPECT_EQ(LibraryCursor(L"move"), GetCursor());
    moveTo(rowCentre(3));
    EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), GetCursor());
    moveTo(POINT{-20, 5});
    EXPECT_EQ(LibraryCursor(L"nofeld"), GetCursor());
    host->clear();
    release(rowCentre(0));
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), GetCursor());
    EXPECT_EQ((Ids{3, 0, 1, 2, 4, 5}), shown());
    EXPECT_EQ((Numbers{0, 2, 0, 1, 0, 0}), numbers());
    EXPECT_EQ((Ids{0, 2}), selectedRows());
    EXPECT_EQ(1, notifications(LBN_SELCHANGE));
    // Released below the last row: the item goes to the end; outside the list: nothing.
    press(rowCentre(1));
    release(POINT{20, rowCentre(5).y + 40});
    EXPECT_EQ((Ids{3, 1, 2, 4, 5, 0}), shown());
    press(rowCentre(0));
    release(POINT{-20, rowCentre(3).y});
    EXPECT_EQ((Ids{3, 1, 2, 4, 5, 0}), shown());
}

TEST_F(ListBoxOrder, DraggingIsNotArmedWhenNumbersFallInDisplayOrder) {
    build(kNumbered | KVLB_DRAGROWS);
    click(3);
    click(1);  // row 1 numbered 2 above row 3 numbered 1
    SetCursor(LoadCursorW(nullptr, IDC_IBEAM));
    press(rowCentre(0));
    moveTo(rowCentre(4));
    EXPECT_EQ(LoadCursorW(nullptr, IDC_IBEAM), GetCursor());
    release(rowCentre(4));
    EXPECT_EQ((Ids{0, 1, 2, 3, 4, 5}), shown());
    EXPECT_EQ((Numbers{0, 2, 0, 1, 0, 0}), numbers());
}

TEST_F(ListBoxOrder, MessagesTakeIdentifiersInPlaceOfRows) {
    build(kNumbered);
    click(1);
    click(2);
    click(4);
    // Deleting an unknown identifier changes nothing.
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_DELETESTRING, 42, 0));
    EXPECT_EQ((Ids{0, 1, 2, 3, 4, 5}), shown());
    // Deleting the second of three selections hides it and closes up the numbers.
    EXPECT_EQ(5, SendMessageW(container, LB_DELETESTRING, 2, 0));
    EXPECT_EQ((Ids{0, 1, 3, 4, 5}), shown());
    EXPECT_EQ(KVLB_ITEM_HIDDEN, items[2].flags);
    EXPECT_EQ((Numbers{0, 1, 0, 0, 2, 0}), numbers());
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_DELETESTRING, 2, 0));
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_SETSEL, TRUE, 2));
    // Shown again in front of row 1; a shown item cannot be added twice.
    EXPECT_EQ(1, SendMessageW(container, LB_INSERTSTRING, 1, 2));
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_ADDSTRING, 0, 2));
    EXPECT_EQ((Ids{0, 2, 1, 3, 4, 5}), shown());
    EXPECT_EQ(0, items[2].flags);

    EXPECT_EQ(0, SendMessageW(container, LB_SETSEL, TRUE, 5));
    EXPECT_EQ(3, SendMessageW(container, LB_GETSEL, 5, 0));
    EXPECT_EQ(0, SendMessageW(container, LB_GETSEL, 3, 0));
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_GETSEL, 42, 0));
    EXPECT_EQ(0, SendMessageW(container, LB_SETSEL, FALSE, -1));
    EXPECT_TRUE(selectedRows().empty());

    wchar_t text[40] = L"";
    EXPECT_EQ(4, SendMessageW(container, LB_GETTEXT, 3, reinterpret_cast<LPARAM>(text)));
    EXPECT_STREQ(L"Haas", text);
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_GETTEXT, 42, reinterpret_cast<LPARAM>(text)));
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_GETTEXT, 3, 0));
    // Finding by the start of the text, whatever its case.
    EXPECT_EQ(5, SendMessageW(container, LB_FINDSTRING, 0, reinterpret_cast<LPARAM>(L"bRA")));
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_FINDSTRING, 0, reinterpret_cast<LPARAM>(L"Zorn")));
    EXPECT_TRUE(selectedRows().empty());
    EXPECT_EQ(3, SendMessageW(container, LB_SELECTSTRING, 0, reinterpret_cast<LPARAM>(L"ha")));
    EXPECT_TRUE(selectedRows().empty());  // multiple selection selects only when asked to
    EXPECT_EQ(3, SendMessageW(container, LB_GETCARETINDEX, 0, 0));
    EXPECT_EQ(3, SendMessageW(container, LB_SELECTSTRING, 1, reinterpret_cast<LPARAM>(L"ha")));
    EXPECT_EQ((Ids{3}), selectedRows());
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_SETCURSEL, 3, 0));  // single selection only
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_SETCARETINDEX, 42, 0));
    EXPECT_EQ(0, SendMessageW(container, LB_SETCARETINDEX, -1, 0));
    EXPECT_EQ(0, SendMessageW(container, LB_GETCARETINDEX, 0, 0));
    EXPECT_EQ(0, record.anchor);
    // Every other message goes to the inner list as it is.
    EXPECT_EQ(6, SendMessageW(container, LB_GETCOUNT, 0, 0));
    EXPECT_EQ(1, SendMessageW(container, LB_GETSELCOUNT, 0, 0));
}

TEST_F(ListBoxOrder, SingleSelectionMessages) {
    items[4].flags = KVLB_ITEM_DISABLED;
    build(0);
    EXPECT_EQ(3, SendMessageW(container, LB_SETCURSEL, 3, 0));
    EXPECT_EQ(3, SendMessageW(container, LB_GETCURSEL, 0, 0));
    EXPECT_EQ(LB_ERR, SendMessageW(container, LB_SETCURSEL, 4, 0));  // disabled
    EXPECT_EQ(2, SendMessageW(container, LB_SELECTSTRING, 0, reinterpret_cast<LPARAM>(L"f")));
    EXPECT_EQ((Numbers{0, 0, 1, 0, 0, 0}), numbers());
    EXPECT_EQ(2, SendMessageW(box(), LB_GETCURSEL, 0, 0));
}

}  // namespace
