// The colour box's popup: opening and placement, keys, mouse and caret, choosing and leaving, and
// the system colour dialog behind the more-colours button.
#include "colorbox_fixture.h"

namespace colorbox_test {
namespace {

::testing::AssertionResult caretAtCell(HWND box, int index) {
    POINT caret = {-1, -1};
    GetCaretPos(&caret);
    RECT cell = CellRectOf(box, index);
    if (caret.x == cell.left && caret.y == cell.top) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "caret at " << caret.x << ", " << caret.y;
}

// A point of `window`'s client area in the client coordinates of `other`.
POINT pointIn(HWND other, HWND window, POINT point) {
    MapWindowPoints(window, other, &point, 1);
    return point;
}

TEST_F(ColorBoxTest, DownKeyOpensThePopupAndEscapeClosesIt) {
    HWND box = createBox();  // at (150, 20), 120 x 22
    HWND arrow = GetDlgItem(box, KXCB_ID_ARROW);
    SendMessageW(box, CBM_SETSEL, 9, 0);
    HWND popup = open(box);
    ASSERT_NE(nullptr, popup);
    EXPECT_EQ(host_.handle(), GetParent(popup));
    EXPECT_EQ(KXCB_ID_POPUP, GetDlgCtrlID(popup));
    EXPECT_TRUE(IsAt(popup, RECT{270 - 82, 42, 270, 42 + 102})) << "below, right edges aligned";
    EXPECT_EQ(popup, GetFocus());
    EXPECT_EQ(popup, GetCapture());
    EXPECT_FALSE(IsWindowEnabled(arrow));
    EXPECT_EQ(9, Record(box)->hot);
    EXPECT_TRUE(caretAtCell(box, 9));
    PressKey(popup, VK_RIGHT);
    PressKey(popup, VK_ESCAPE);
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_EQ(box, GetFocus());
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_TRUE(IsWindowEnabled(arrow));
    EXPECT_TRUE(chosen().empty());
    EXPECT_EQ(9, SendMessageW(box, CBM_GETSEL, 0, 0));

    struct Case {
        int x, y, width;
        RECT expected;  // in the host's 400 x 300 client area
    };
    for (const Case& c : {Case{150, 270, 120, {188, 168, 270, 270}},  // no room below: above
                          Case{0, 60, 40, {0, 82, 82, 184}},           // not left of the parent
                          Case{380, 60, 120, {318, 82, 400, 184}}}) {  // the box passes the edge
        HWND other = createBox(0, c.x, c.y, c.width, 701);
        EXPECT_TRUE(IsAt(open(other), c.expected)) << c.x << ", " << c.y;
        DestroyWindow(other);
    }
}

TEST_F(ColorBoxTest, ArrowClickOpensThePopupAndAClickOutsideClosesIt) {
    HWND box = createBox();
    HWND arrow = GetDlgItem(box, KXCB_ID_ARROW);
    PostMouse(arrow, WM_LBUTTONDOWN, POINT{7, 10}, MK_LBUTTON);
    PostMouse(arrow, WM_LBUTTONUP, POINT{7, 10});
    HWND popup = Record(box)->popup;
    ASSERT_NE(nullptr, popup);
    EXPECT_TRUE(IsWindowVisible(popup));
    EXPECT_EQ(popup, GetCapture()) << "taken after the arrow let the mouse go";

    // Holding the mouse, the popup gets a second click on the arrow: outside it, so it closes.
    PostMouse(popup, WM_LBUTTONDOWN, pointIn(popup, arrow, POINT{7, 10}), MK_LBUTTON);
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_NE(popup, GetCapture());
    EXPECT_TRUE(GetFocus() == box || GetFocus() == arrow);

    HWND edit = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_BORDER, 10, 200, 100, 22, 801);
    popup = open(box);
    PostMouse(popup, WM_LBUTTONDOWN, pointIn(popup, host_, CentreOf(RectInParent(edit))), MK_LBUTTON);
    EXPECT_EQ(edit, GetFocus()) << "the window clicked gets the focus";
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_TRUE(chosen().empty());
}

TEST_F(ColorBoxTest, ArrowKeysMoveTheHotCellWrappingAtTheEnds) {
    HWND box = createBox();
    SendMessageW(box, CBM_ADDCOLOR, 0, RGB(1, 2, 3));  // 21 cells: the last row holds one
    SendMessageW(box, CBM_SETSEL, 0, 0);
    HWND popup = open(box);
    struct Step {
        UINT key;
        int hot;
    };
    const Step steps[] = {{VK_LEFT, 20}, {VK_RIGHT, 0}, {VK_UP, 20}, {VK_DOWN, 0}, {VK_RIGHT, 1},
                          {VK_UP, 20},  // no cell below column 1: the last cell
                          {VK_LEFT, 19}, {VK_LEFT, 18}, {VK_LEFT, 17}, {VK_DOWN, 20}, {VK_UP, 16}};
    for (const Step& step : steps) {
        PressKey(popup, step.key);
        ASSERT_EQ(step.hot, Record(box)->hot) << "key " << step.key;
        EXPECT_TRUE(caretAtCell(box, step.hot));
    }
    PressKey(popup, VK_ESCAPE);
    EXPECT_EQ(0, SendMessageW(box, CBM_GETSEL, 0, 0)) << "moving chooses nothing";

    SendMessageW(box, CBM_SETAUTO, 0, 0);  // the automatic cell is the whole first row
    popup = open(box);
    for (const Step& step : {Step{VK_DOWN, 1}, Step{VK_UP, 0}, Step{VK_UP, 17}, Step{VK_DOWN, 0}, Step{VK_LEFT, 20}}) {
        PressKey(popup, step.key);
        ASSERT_EQ(step.hot, Record(box)->hot) << "key " << step.key;
    }
}

TEST_F(ColorBoxTest, KeysChooseOrLeave) {
    HWND before = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_TABSTOP | WS_BORDER, 10, 20, 100, 22, 801);
    HWND box = createBox();
    HWND after = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_TABSTOP | WS_BORDER, 10, 60, 100, 22, 802);
    SendMessageW(box, CBM_SETSEL, 2, 0);
    HWND popup = open(box);
    PressKey(popup, VK_RIGHT);
    PressKey(popup, VK_RETURN);
    EXPECT_EQ(std::vector<LPARAM>{static_cast<LPARAM>(kDefaults[3])}, chosen());
    EXPECT_EQ(3, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_EQ(box, GetFocus());
    popup = open(box);
    PressKey(popup, VK_DOWN);
    PressKey(popup, VK_SPACE);
    EXPECT_EQ(static_cast<LPARAM>(kDefaults[7]), chosen().back());

    // Tab and Shift+Tab go to the neighbours, choosing nothing.
    popup = open(box);
    PressKey(popup, VK_RIGHT);
    PressKey(popup, VK_TAB);
    EXPECT_EQ(after, GetFocus());
    EXPECT_FALSE(IsWindowVisible(popup));
    popup = open(box);
    kvtest::HoldKeys({VK_SHIFT});
    PressKey(popup, VK_TAB);
    kvtest::HoldKeys({});
    EXPECT_EQ(before, GetFocus());
    EXPECT_EQ(2u, chosen().size());
    EXPECT_EQ(7, SendMessageW(box, CBM_GETSEL, 0, 0));

    // A pattern box tells the pattern's index.
    HWND patterns = createBox(KXCBS_PATTERN, 150, 100, 120, 701);
    popup = open(patterns);
    PressKey(popup, VK_RIGHT);
    PressKey(popup, VK_RETURN);
    EXPECT_EQ(std::vector<LPARAM>{0}, chosen(701)) << "no cell was hot: the first one after Right";
}

TEST_F(ColorBoxTest, MouseChoosesTheCellItIsReleasedOn) {
    HWND box = createBox();
    HWND popup = open(box);
    POINT seven = CentreOf(CellRectOf(box, 7));
    PostMouse(popup, WM_LBUTTONDOWN, seven, MK_LBUTTON);
    EXPECT_EQ(7, Record(box)->hot);
    EXPECT_TRUE(caretAtCell(box, 7));
    EXPECT_TRUE(chosen().empty());
    PostMouse(popup, WM_LBUTTONUP, seven);
    EXPECT_EQ(std::vector<LPARAM>{static_cast<LPARAM>(kDefaults[7])}, chosen());
    EXPECT_FALSE(IsWindowVisible(popup));

    popup = open(box);  // the press slides over to another cell
    PostMouse(popup, WM_LBUTTONDOWN, CentreOf(CellRectOf(box, 2)), MK_LBUTTON);
    PostMouse(popup, WM_MOUSEMOVE, CentreOf(CellRectOf(box, 3)), MK_LBUTTON);
    EXPECT_EQ(3, Record(box)->hot);
    PostMouse(popup, WM_LBUTTONUP, CentreOf(CellRectOf(box, 3)));
    EXPECT_EQ(static_cast<LPARAM>(kDefaults[3]), chosen().back());
}

TEST_F(ColorBoxTest, MoreColoursAddsAndChoosesTheDialogsColour) {
    HWND box = createBox(KXCBS_MORECOLORS);
    SendMessageW(box, CBM_SETSEL, 3, 0);
    HWND popup = open(box);
    HWND more = GetDlgItem(popup, KXCB_ID_MORE);
    ASSERT_NE(nullptr, more);
    ColourDialogAnswer answer;
    {
        ModalDriver driver(L"#32770", AnswerColourDialog(&answer, true, RGB(12, 34, 56)));
        // The popup passes the press on; the button then holds the mouse and takes the release.
        PostMouse(popup, WM_LBUTTONDOWN, CentreOf(RectInParent(more)), MK_LBUTTON);
        EXPECT_EQ(more, GetCapture());
        EXPECT_TRUE(IsWindowVisible(popup)) << "the focus went to the popup's own button";
        PostMouse(more, WM_LBUTTONUP, POINT{5, 5});
        EXPECT_TRUE(driver.acted());
    }
    EXPECT_EQ(RGB(0, 0, 255), answer.initial) << "the dialog starts at the hot cell's colour";
    const ColorBoxRecord& record = *Record(box);
    ASSERT_EQ(21, record.count);
    EXPECT_EQ(RGB(12, 34, 56), record.colours[20]);
    EXPECT_EQ(20, record.selected);
    EXPECT_EQ(std::vector<LPARAM>{RGB(12, 34, 56)}, chosen());
    EXPECT_EQ(box, GetFocus());
}

TEST_F(ColorBoxTest, CancelledColourDialogKeepsThePopupOpen) {
    HWND box = createBox(KXCBS_MORECOLORS);
    HWND popup = open(box);
    HWND more = GetDlgItem(popup, KXCB_ID_MORE);
    {
        ColourDialogAnswer answer;
        ModalDriver driver(L"#32770", AnswerColourDialog(&answer, false));
        PostMessageW(popup, WM_SYSCHAR, '.', 0x20000000);  // Alt+"." presses the button
        kvtest::PumpMessages();
        EXPECT_TRUE(driver.acted());
    }
    EXPECT_TRUE(IsWindowVisible(popup));
    EXPECT_EQ(popup, GetFocus());
    EXPECT_EQ(popup, GetCapture());
    EXPECT_EQ(20, Record(box)->count);
    EXPECT_TRUE(chosen().empty());

    // Pressed and let go away from it, the button keeps the focus; when it loses it, the popup
    // closes.
    PostMouse(popup, WM_LBUTTONDOWN, CentreOf(RectInParent(more)), MK_LBUTTON);
    PostMouse(more, WM_LBUTTONUP, POINT{-40, -40});
    EXPECT_EQ(more, GetFocus());
    EXPECT_TRUE(IsWindowVisible(popup));
    SetFocus(host_);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindowVisible(popup));

    open(box);  // destroying the box takes the open popup along
    DestroyWindow(box);
    EXPECT_FALSE(IsWindow(popup));
    EXPECT_NE(popup, GetCapture());
}

}  // namespace
}  // namespace colorbox_test
