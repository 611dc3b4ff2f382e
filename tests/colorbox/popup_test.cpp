// The colour box's popup: opening and placement, keys, mouse, caret, committing, leaving, and
// the system colour dialog behind the more-colours button.
#include "colorbox_fixture.h"

namespace colorbox_test {
namespace {

POINT caretPosition() {
    POINT caret = {-1, -1};
    GetCaretPos(&caret);
    return caret;
}

// The point of `window`'s client area in the client coordinates of `other`.
POINT pointIn(HWND other, HWND window, POINT point) {
    MapWindowPoints(window, other, &point, 1);
    return point;
}

TEST_F(ColorBoxTest, DownKeyOpensThePopupBelowTheBoxAndEscapeClosesIt) {
    HWND box = createBox();  // at (150, 20), 120 x 22
    HWND arrow = GetDlgItem(box, KXCB_ID_ARROW);
    SendMessageW(box, CBM_SETSEL, 9, 0);
    HWND popup = open(box);
    ASSERT_NE(nullptr, popup);
    EXPECT_TRUE(IsWindowVisible(popup));
    EXPECT_EQ(host_.handle(), GetParent(popup));
    EXPECT_EQ(KXCB_ID_POPUP, GetDlgCtrlID(popup));
    EXPECT_TRUE(GetWindowLongW(popup, GWL_STYLE) & WS_BORDER);
    EXPECT_EQ(popup, GetFocus());
    EXPECT_EQ(popup, GetCapture());
    EXPECT_FALSE(IsWindowEnabled(arrow));
    EXPECT_EQ(9, Record(box)->hot);
    EXPECT_TRUE(SameRect(RECT{270 - 82, 42, 270, 42 + 102}, RectInParent(popup)));
    POINT caret = caretPosition();
    EXPECT_EQ(20, caret.x);  // cell 9: second column, third row
    EXPECT_EQ(40, caret.y);

    PressKey(popup, VK_ESCAPE);
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_EQ(box, GetFocus());
    EXPECT_EQ(nullptr, GetCapture());
    EXPECT_TRUE(IsWindowEnabled(arrow));
    EXPECT_TRUE(chosen().empty());
    EXPECT_EQ(9, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(popup, open(box)) << "kept for the next opening";
    PressKey(popup, VK_ESCAPE);
}

TEST_F(ColorBoxTest, PopupStaysInsideTheParent) {
    struct Case {
        int x, y, width;
        RECT expected;  // in the host's client area (400 x 300)
    };
    const Case cases[] = {
        {150, 270, 120, {188, 270 - 102, 270, 270}},  // no room below: above the box
        {0, 20, 40, {0, 42, 82, 144}},                // not left of the parent
        {380, 20, 120, {400 - 82, 42, 400, 144}},     // the box reaches past the parent
    };
    for (const Case& c : cases) {
        HWND box = createBox(0, c.x, c.y, c.width);
        HWND popup = open(box);
        EXPECT_TRUE(SameRect(c.expected, RectInParent(popup))) << c.x << ", " << c.y;
        PressKey(popup, VK_ESCAPE);
        DestroyWindow(box);
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
    EXPECT_EQ(popup, GetCapture()) << "the arrow let the mouse go before the popup took it";

    // The popup holds the mouse: a second click on the arrow reaches it, outside its area.
    PostMouse(popup, WM_LBUTTONDOWN, pointIn(popup, arrow, POINT{7, 10}), MK_LBUTTON);
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_NE(popup, GetCapture());
    HWND focus = GetFocus();
    EXPECT_TRUE(focus == box || focus == arrow);
    EXPECT_TRUE(chosen().empty());

    // A click on another control gives it the focus.
    HWND edit = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_BORDER, 10, 200, 100, 22, 801);
    popup = open(box);
    RECT editRect = RectInParent(edit);
    PostMouse(popup, WM_LBUTTONDOWN, pointIn(popup, host_, CentreOf(editRect)), MK_LBUTTON);
    EXPECT_EQ(edit, GetFocus());
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
    const Step steps[] = {
        {VK_LEFT, 20}, {VK_RIGHT, 0}, {VK_UP, 20}, {VK_DOWN, 0},   // around the ends
        {VK_RIGHT, 1}, {VK_UP, 20},                                // no cell below column 1
        {VK_LEFT, 19}, {VK_LEFT, 18}, {VK_LEFT, 17}, {VK_DOWN, 20}, {VK_UP, 16}, {VK_DOWN, 20},
    };
    for (const Step& step : steps) {
        PressKey(popup, step.key);
        ASSERT_EQ(step.hot, Record(box)->hot) << "key " << step.key;
        RECT cell = CellRectOf(box, step.hot);
        POINT caret = caretPosition();
        EXPECT_EQ(cell.left, caret.x);
        EXPECT_EQ(cell.top, caret.y);
    }
    PressKey(popup, VK_ESCAPE);
    EXPECT_EQ(0, SendMessageW(box, CBM_GETSEL, 0, 0)) << "moving chooses nothing";

    // With an automatic cell the first row is one cell.
    SendMessageW(box, CBM_SETAUTO, 0, 0);
    popup = open(box);
    const Step automatic[] = {{VK_DOWN, 1}, {VK_UP, 0}, {VK_UP, 17}, {VK_DOWN, 0}, {VK_LEFT, 20}, {VK_RIGHT, 0}};
    for (const Step& step : automatic) {
        PressKey(popup, step.key);
        ASSERT_EQ(step.hot, Record(box)->hot) << "key " << step.key;
    }
    PressKey(popup, VK_ESCAPE);
}

TEST_F(ColorBoxTest, EnterAndSpaceChooseTheHotCell) {
    HWND box = createBox();
    SendMessageW(box, CBM_SETSEL, 2, 0);
    HWND popup = open(box);
    PressKey(popup, VK_RIGHT);
    PressKey(popup, VK_RETURN);
    EXPECT_EQ(std::vector<LPARAM>{static_cast<LPARAM>(kDefaults[3])}, chosen());
    EXPECT_EQ(3, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_EQ(box, GetFocus());

    popup = open(box);
    EXPECT_EQ(3, Record(box)->hot);
    PressKey(popup, VK_DOWN);
    PressKey(popup, VK_SPACE);
    EXPECT_EQ(2u, chosen().size());
    EXPECT_EQ(static_cast<LPARAM>(kDefaults[7]), chosen().back());

    // A pattern box tells the pattern's index.
    HWND patterns = createBox(KXCBS_PATTERN, 150, 100, 120, 22, 701);
    SendMessageW(patterns, CBM_SETSEL, 0, 0);
    popup = open(patterns);
    PressKey(popup, VK_RIGHT);
    PressKey(popup, VK_RETURN);
    EXPECT_EQ(std::vector<LPARAM>{1}, chosen(701));
}

TEST_F(ColorBoxTest, EscapeAndTabLeaveWithoutChoosing) {
    HWND before = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_TABSTOP | WS_BORDER, 10, 20, 100, 22, 801);
    HWND box = createBox();
    HWND after = host_.createChild(L"Edit", L"", WS_VISIBLE | WS_TABSTOP | WS_BORDER, 10, 60, 100, 22, 802);
    HWND popup = open(box);
    PressKey(popup, VK_RIGHT);
    PressKey(popup, VK_TAB);
    EXPECT_EQ(after, GetFocus());
    EXPECT_FALSE(IsWindowVisible(popup));

    popup = open(box);
    BYTE keys[256];
    GetKeyboardState(keys);
    keys[VK_SHIFT] = 0x80;
    SetKeyboardState(keys);
    PressKey(popup, VK_TAB);
    keys[VK_SHIFT] = 0;
    SetKeyboardState(keys);
    EXPECT_EQ(before, GetFocus());
    EXPECT_FALSE(IsWindowVisible(popup));
    EXPECT_TRUE(chosen().empty());
    EXPECT_EQ(-1, SendMessageW(box, CBM_GETSEL, 0, 0));
}

TEST_F(ColorBoxTest, MouseChoosesTheCellItIsReleasedOn) {
    HWND box = createBox();
    HWND popup = open(box);
    POINT seven = CentreOf(CellRectOf(box, 7));
    PostMouse(popup, WM_LBUTTONDOWN, seven, MK_LBUTTON);
    EXPECT_EQ(7, Record(box)->hot);
    EXPECT_EQ(CellRectOf(box, 7).left, caretPosition().x);
    EXPECT_TRUE(IsWindowVisible(popup));
    EXPECT_TRUE(chosen().empty());
    PostMouse(popup, WM_LBUTTONUP, seven);
    EXPECT_EQ(std::vector<LPARAM>{static_cast<LPARAM>(kDefaults[7])}, chosen());
    EXPECT_EQ(7, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_FALSE(IsWindowVisible(popup));

    // The press slides over to another cell.
    popup = open(box);
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
    EXPECT_TRUE(record.popup == nullptr || !IsWindowVisible(record.popup));
}

TEST_F(ColorBoxTest, CancelledColourDialogKeepsThePopupOpen) {
    HWND box = createBox(KXCBS_MORECOLORS);
    HWND popup = open(box);
    HWND more = GetDlgItem(popup, KXCB_ID_MORE);
    ColourDialogAnswer answer;
    {
        ModalDriver driver(L"#32770", AnswerColourDialog(&answer, false));
        PostMessageW(popup, WM_SYSCHAR, '.', 0x20000000);  // Alt+"." presses the button
        kvtest::PumpMessages();
        EXPECT_TRUE(driver.acted());
    }
    EXPECT_TRUE(answer.shown);
    EXPECT_TRUE(IsWindowVisible(popup));
    EXPECT_EQ(popup, GetFocus());
    EXPECT_EQ(popup, GetCapture());
    EXPECT_EQ(20, Record(box)->count);
    EXPECT_TRUE(chosen().empty());

    // Pressed and let go away from it, the button keeps the focus; when it loses it the popup
    // closes.
    PostMouse(popup, WM_LBUTTONDOWN, CentreOf(RectInParent(more)), MK_LBUTTON);
    PostMouse(more, WM_LBUTTONUP, POINT{-40, -40});
    EXPECT_EQ(more, GetFocus());
    EXPECT_TRUE(IsWindowVisible(popup));
    SetFocus(host_);
    kvtest::PumpMessages();
    EXPECT_FALSE(IsWindowVisible(popup));
}

TEST_F(ColorBoxTest, DestroyingTheBoxTakesTheOpenPopupAlong) {
    HWND box = createBox();
    HWND popup = open(box);
    ASSERT_EQ(popup, GetFocus());
    DestroyWindow(box);
    EXPECT_FALSE(IsWindow(popup));
    EXPECT_NE(popup, GetCapture());
}

}  // namespace
}  // namespace colorbox_test
