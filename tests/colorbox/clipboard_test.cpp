// Copy and paste between colour boxes through the context menu and the real clipboard, which
// every test leaves as it found it.
#include "colorbox_fixture.h"

namespace colorbox_test {
namespace {

class ColorBoxClipboardTest : public ColorBoxTest {
protected:
    ClipboardKeeper keeper_;
};

TEST_F(ColorBoxClipboardTest, CopyFromOneBoxAndPasteIntoAnother) {
    HWND source = createBox(0, 20, 20);
    HWND target = createBox(0, 20, 60, 120, 701);
    const COLORREF targetColours[] = {RGB(255, 0, 0), RGB(0, 255, 0)};
    SendMessageW(target, CBM_SETCOLORS, 2, reinterpret_cast<LPARAM>(targetColours));
    SendMessageW(source, CBM_SETSEL, 9, 0);
    EXPECT_TRUE(RightClickMenu(source, POINT{30, 10}, KXCB_COMMAND_COPY).canCopy);
    COLORREF onClipboard = 0;
    ASSERT_TRUE(ColourOnClipboard(&onClipboard));
    EXPECT_EQ(kDefaults[9], onClipboard);
    EXPECT_TRUE(chosen().empty()) << "copying chooses nothing";

    EXPECT_TRUE(RightClickMenu(target, POINT{30, 10}, KXCB_COMMAND_PASTE).canPaste);
    const ColorBoxRecord& record = *Record(target);
    ASSERT_EQ(3, record.count);
    EXPECT_EQ(kDefaults[9], record.colours[2]);
    EXPECT_EQ(2, record.selected);
    EXPECT_EQ(std::vector<LPARAM>{static_cast<LPARAM>(kDefaults[9])}, chosen(701));
    RightClickMenu(target, POINT{30, 10}, KXCB_COMMAND_PASTE);
    EXPECT_EQ(3, record.count) << "not added twice";
    EXPECT_EQ(2u, chosen(701).size());
}

TEST_F(ColorBoxClipboardTest, MenuOffersOnlyWhatCanBeDone) {
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
    HWND box = createBox();
    MenuChoice none = RightClickMenu(box, POINT{30, 10}, 0);
    ASSERT_TRUE(none.shown);
    EXPECT_FALSE(none.canCopy) << "nothing chosen to copy";
    EXPECT_FALSE(none.canPaste) << "no colour on the clipboard";
    PutColourOnClipboard(RGB(1, 2, 3));
    SendMessageW(box, CBM_SETSEL, 0, 0);
    MenuChoice both = RightClickMenu(box, POINT{30, 10}, 0);
    EXPECT_TRUE(both.canCopy);
    EXPECT_TRUE(both.canPaste);
    EXPECT_EQ(20, Record(box)->count) << "closing the menu does nothing";

    // Pattern boxes have no menu: the right click goes on to the parent.
    host_.clear();
    EXPECT_FALSE(RightClickMenu(createBox(KXCBS_PATTERN, 150, 60), POINT{30, 10}, 0).shown);
    EXPECT_EQ(1, host_.count(WM_CONTEXTMENU));
}

TEST_F(ColorBoxClipboardTest, PopupCopiesTheCellUnderThePointerAndPastesIntoItsGrid) {
    HWND box = createBox();
    HWND popup = open(box);
    EXPECT_TRUE(RightClickMenu(popup, CentreOf(CellRectOf(box, 4)), KXCB_COMMAND_COPY).canCopy);
    COLORREF onClipboard = 0;
    ASSERT_TRUE(ColourOnClipboard(&onClipboard));
    EXPECT_EQ(kDefaults[4], onClipboard);
    EXPECT_EQ(popup, GetCapture()) << "the popup has the mouse back after the menu";
    EXPECT_FALSE(RightClickMenu(popup, POINT{-20, -20}, 0).canCopy) << "no cell there";

    // A new colour grows the grid: the popup is made again, with the colour hot.
    PutColourOnClipboard(RGB(1, 2, 3));
    RightClickMenu(popup, CentreOf(CellRectOf(box, 0)), KXCB_COMMAND_PASTE);
    const ColorBoxRecord& record = *Record(box);
    ASSERT_EQ(21, record.count);
    EXPECT_FALSE(IsWindow(popup));
    HWND grown = record.popup;
    ASSERT_NE(nullptr, grown);
    EXPECT_EQ(grown, GetFocus());
    EXPECT_EQ(20, record.hot);
    EXPECT_TRUE(chosen().empty()) << "pasting into the popup chooses nothing yet";

    // A colour already there just becomes hot.
    PutColourOnClipboard(kDefaults[6]);
    RightClickMenu(grown, CentreOf(CellRectOf(box, 0)), KXCB_COMMAND_PASTE);
    EXPECT_EQ(grown, record.popup);
    EXPECT_EQ(6, record.hot);
    PressKey(grown, VK_RETURN);
    EXPECT_EQ(std::vector<LPARAM>{static_cast<LPARAM>(kDefaults[6])}, chosen());
}

}  // namespace
}  // namespace colorbox_test
