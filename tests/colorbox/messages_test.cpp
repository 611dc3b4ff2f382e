// Colour box messages, grid geometry, painting and pattern brushes.
#include <algorithm>
#include "colorbox_fixture.h"

namespace colorbox_test {
namespace {

const COLORREF kMagenta = RGB(255, 0, 255);

// Distinct colours that are not among the defaults.
std::vector<COLORREF> freshColours(int count) {
    std::vector<COLORREF> colours;
    for (int i = 0; i < count; ++i) colours.push_back(RGB(10 + i, 20 + 2 * i, 30 + 3 * i));
    return colours;
}

TEST_F(ColorBoxTest, NewBoxesStartWithTheirRecord) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"Kx1ColorWndProc", "Kx1ColorWndChildProc", "KxCreatePatternBrush"})
        EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
    HWND box = createBox(KXCBS_MORECOLORS);
    const ColorBoxRecord& record = *Record(box);
    EXPECT_EQ(KXCB_MOREBUTTON, record.flags);
    EXPECT_EQ(box, record.box);
    EXPECT_EQ(-1, record.hot);
    EXPECT_EQ(-1, record.selected);
    ASSERT_EQ(20, record.count);
    EXPECT_TRUE(std::equal(kDefaults, kDefaults + 20, record.colours));
    EXPECT_EQ(4, record.columns);
    EXPECT_EQ(5, record.rows);
    EXPECT_EQ(20, record.cellSize);
    HWND arrow = GetDlgItem(box, KXCB_ID_ARROW);
    EXPECT_TRUE(IsAt(arrow, RECT{104, 1, 119, 21}));
    EXPECT_EQ(0x5000000Bu, static_cast<DWORD>(GetWindowLongW(arrow, GWL_STYLE)));
    MoveWindow(box, 150, 20, 200, 30, TRUE);
    EXPECT_TRUE(IsAt(arrow, RECT{184, 1, 199, 29})) << "the arrow keeps to the right edge";

    const ColorBoxRecord& patterns = *Record(createBox(KXCBS_PATTERN, 150, 60));
    EXPECT_EQ(KXCB_PATTERNS, patterns.flags);
    EXPECT_EQ(12, patterns.count);
    EXPECT_EQ(nullptr, patterns.colours);
    EXPECT_EQ(3, patterns.rows);

    // The record, then the colours: either missing fails the creation.
    for (int failing : {1, 2}) {
        KvText_FailAllocation(failing);
        EXPECT_EQ(nullptr, createBox()) << failing;
    }
}

TEST_F(ColorBoxTest, SelectingFindingAndAddingColours) {
    HWND box = createBox();
    EXPECT_EQ(6, SendMessageW(box, CBM_SETSEL, 6, 0));
    EXPECT_EQ(6, Record(box)->hot);
    EXPECT_EQ(20, SendMessageW(box, CBM_SETSEL, 20, 0)) << "out of range: returned, not selected";
    EXPECT_EQ(6, SendMessageW(box, CBM_GETSEL, 0, 0));
    COLORREF colour = 0;
    EXPECT_EQ(6, SendMessageW(box, CBM_GETCOLOR, 0, reinterpret_cast<LPARAM>(&colour)));
    EXPECT_EQ(RGB(255, 0, 0), colour);
    EXPECT_EQ(-1, SendMessageW(box, CBM_GETCOLOR, 0, 0));
    EXPECT_EQ(13, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(0, 128, 0)));
    EXPECT_EQ(13, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(-1, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(1, 2, 3)));

    EXPECT_EQ(20, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(1, 2, 3)));
    EXPECT_EQ(6, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(255, 0, 0))) << "present: its index";
    EXPECT_EQ(0, SendMessageW(box, CBM_INSERTCOLOR, 0, RGB(4, 5, 6)));
    EXPECT_EQ(14, SendMessageW(box, CBM_GETSEL, 0, 0)) << "the selection stays on its colour";
    EXPECT_EQ(22, SendMessageW(box, CBM_INSERTCOLOR, 99, RGB(7, 8, 9))) << "out of range: appended";
    EXPECT_EQ(22, SendMessageW(box, CBM_INSERTCOLOR, 3, RGB(7, 8, 9))) << "present";
    EXPECT_EQ(23, Record(box)->count);

    // A grid that changes loses its popup, which is made again on the next opening.
    HWND popup = open(box);
    ASSERT_NE(nullptr, popup);
    SendMessageW(box, CBM_ADDCOLOR, 0, RGB(9, 9, 9));
    EXPECT_FALSE(IsWindow(popup));
    EXPECT_EQ(nullptr, Record(box)->popup);
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(box, KXCB_ID_ARROW)));
    KvText_FailAllocation(1);
    EXPECT_EQ(-1, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(9, 9, 10)));
    EXPECT_EQ(24, Record(box)->count);
}

TEST_F(ColorBoxTest, GridFollowsTheNumberOfCells) {
    struct Case {
        int cells, columns, rows;
    };
    HWND box = createBox();
    for (const Case& c : {Case{20, 4, 5}, Case{25, 5, 5}, Case{36, 5, 8}, Case{37, 6, 7}}) {
        SCOPED_TRACE(c.cells);
        std::vector<COLORREF> colours = freshColours(c.cells);
        SendMessageW(box, CBM_SETSEL, 2, 0);
        EXPECT_EQ(1, SendMessageW(box, CBM_SETCOLORS, c.cells, reinterpret_cast<LPARAM>(colours.data())));
        EXPECT_EQ(-1, Record(box)->selected);
        EXPECT_EQ(c.columns, Record(box)->columns);
        EXPECT_EQ(c.rows, Record(box)->rows);
        HWND popup = open(box);
        ASSERT_NE(nullptr, popup);
        RECT frame = RectInParent(popup);
        EXPECT_EQ(c.columns * 20 + 2, frame.right - frame.left);
        EXPECT_EQ(c.rows * 20 + 2, frame.bottom - frame.top);
        // Every cell shows its colour at its place.
        kvtest::Canvas canvas(c.columns * 20, c.rows * 20, kMagenta);
        SendMessageW(popup, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
        for (int i = 0; i < c.cells; ++i) {
            POINT middle = CentreOf(CellRectOf(box, i));
            ASSERT_EQ(colours[i], canvas.pixel(middle.x, middle.y)) << "cell " << i;
        }
        PressKey(popup, VK_ESCAPE);
    }
    EXPECT_EQ(1, SendMessageW(box, CBM_SETCOLORS, 0, 0));
    EXPECT_EQ(0, Record(box)->count);
    EXPECT_EQ(0, SendMessageW(box, CBM_SETCOLORS, 3, 0)) << "no colours to copy";
}

TEST_F(ColorBoxTest, AutomaticCellSpansTheFirstRow) {
    HWND box = createBox();
    SendMessageW(box, CBM_ADDCOLOR, 0, RGB(1, 2, 3));  // 21 cells: 20 besides the automatic one
    SendMessageW(box, CBM_SETSEL, 5, 0);
    EXPECT_EQ(1, SendMessageW(box, CBM_SETAUTO, 5, 0));
    const ColorBoxRecord& record = *Record(box);
    EXPECT_TRUE(record.flags & KXCB_AUTOCELL);
    EXPECT_EQ(kDefaults[5], record.colours[0]);
    EXPECT_EQ(kDefaults[0], record.colours[1]);
    EXPECT_EQ(0, record.selected) << "the selection moved with its colour";
    EXPECT_EQ(5, record.rows);
    HWND popup = open(box);
    RECT frame = RectInParent(popup);
    EXPECT_EQ(6 * 20 + 2, frame.bottom - frame.top);
    kvtest::Canvas canvas(80, 120, kMagenta);
    SendMessageW(popup, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    for (int x : {10, 40, 70}) EXPECT_EQ(kDefaults[5], canvas.pixel(x, 10)) << x;
    EXPECT_EQ(kDefaults[0], canvas.pixel(10, 30)) << "cell 1 starts the second row";
    PressKey(popup, VK_ESCAPE);

    EXPECT_EQ(1, SendMessageW(box, CBM_SETAUTO, static_cast<WPARAM>(-2), kDefaults[9]));
    EXPECT_EQ(kDefaults[9], record.colours[0]);
    EXPECT_EQ(1, SendMessageW(box, CBM_SETAUTO, static_cast<WPARAM>(-2), RGB(7, 7, 7))) << "added";
    EXPECT_EQ(RGB(7, 7, 7), record.colours[0]);
    EXPECT_EQ(0, SendMessageW(box, CBM_SETAUTO, 22, 0));
    EXPECT_EQ(1, SendMessageW(box, CBM_INSERTCOLOR, 0, RGB(8, 8, 8))) << "the automatic cell stays first";
    EXPECT_EQ(1, SendMessageW(box, CBM_SETAUTO, static_cast<WPARAM>(-1), 0));
    EXPECT_FALSE(record.flags & KXCB_AUTOCELL);
    EXPECT_EQ(23, record.count) << "its colour stays as an ordinary cell";
}

TEST_F(ColorBoxTest, CellSizeAndMoreButtonShapeThePopup) {
    HWND box = createBox();
    EXPECT_EQ(1, SendMessageW(box, CBM_SETCELLSIZE, TRUE, 10));
    EXPECT_EQ(15, Record(box)->cellSize) << "never below 15";
    HWND popup = open(box);
    EXPECT_TRUE(IsAt(popup, RECT{270 - 62, 42, 270, 42 + 77}));
    EXPECT_EQ(1, SendMessageW(box, CBM_SETCELLSIZE, FALSE, 24));
    EXPECT_FALSE(IsWindow(popup));

    EXPECT_EQ(1, SendMessageW(box, CBM_SHOWMORE, TRUE, 0));
    EXPECT_EQ(0, SendMessageW(box, CBM_SHOWMORE, TRUE, 0)) << "no change";
    popup = open(box);
    const int width = 4 * 24 + 2, height = 5 * 24 + 2 + 3 + 24;
    EXPECT_TRUE(IsAt(popup, RECT{270 - width, 42, 270, 42 + height}));
    HWND more = GetDlgItem(popup, KXCB_ID_MORE);
    ASSERT_NE(nullptr, more);
    wchar_t caption[16];
    GetWindowTextW(more, caption, 16);
    EXPECT_STREQ(L">>.&..", caption);
    EXPECT_TRUE(IsAt(more, RECT{3, height - 24 - 3, width - 4, height - 3}));
    EXPECT_EQ(GetStockObject(ANSI_VAR_FONT), reinterpret_cast<HGDIOBJ>(SendMessageW(more, WM_GETFONT, 0, 0)));
    PressKey(popup, VK_ESCAPE);
    EXPECT_EQ(1, SendMessageW(box, CBM_SHOWMORE, FALSE, 0));
    EXPECT_FALSE(Record(box)->flags & KXCB_MOREBUTTON);
}

TEST_F(ColorBoxTest, PatternVariantRefusesTheColourMessages) {
    HWND box = createBox(KXCBS_PATTERN);
    COLORREF colour = 0;
    EXPECT_EQ(-1, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(255, 255, 255)));
    EXPECT_EQ(-1, SendMessageW(box, CBM_GETCOLOR, 0, reinterpret_cast<LPARAM>(&colour)));
    EXPECT_EQ(-1, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(1, 1, 1)));
    EXPECT_EQ(-1, SendMessageW(box, CBM_INSERTCOLOR, 0, RGB(1, 1, 1)));
    EXPECT_EQ(0, SendMessageW(box, CBM_SETAUTO, 0, 0));
    EXPECT_EQ(0, SendMessageW(box, CBM_SETCOLORS, 1, reinterpret_cast<LPARAM>(kDefaults)));
    EXPECT_EQ(0, SendMessageW(box, CBM_SHOWMORE, TRUE, 0));
    EXPECT_EQ(12, Record(box)->count);
    EXPECT_EQ(KXCB_PATTERNS, Record(box)->flags);
    EXPECT_EQ(11, SendMessageW(box, CBM_SETSEL, 11, 0));
    EXPECT_EQ(11, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(1, SendMessageW(box, CBM_SETCELLSIZE, FALSE, 16));
    EXPECT_EQ(1, SendMessageW(box, CBM_SETPALETTE, FALSE, 0));
}

TEST_F(ColorBoxTest, PaletteMatchesTheFirstTwentyCellsByNearestEntry) {
    struct {
        WORD version, count;
        PALETTEENTRY entries[8];
    } table = {0x300, 8, {}};
    for (int i = 0; i < 8; ++i)  // the corners of the colour cube
        table.entries[i] = PALETTEENTRY{BYTE(i & 1 ? 255 : 0), BYTE(i & 2 ? 255 : 0), BYTE(i & 4 ? 255 : 0), 0};
    HPALETTE palette = CreatePalette(reinterpret_cast<LOGPALETTE*>(&table));
    HWND box = createBox();
    EXPECT_EQ(-1, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(250, 10, 10)));
    EXPECT_EQ(1, SendMessageW(box, CBM_SETPALETTE, TRUE, reinterpret_cast<LPARAM>(palette)));
    EXPECT_EQ(6, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(250, 10, 10))) << "shown as the red entry";
    std::vector<COLORREF> many = freshColours(20);
    many.push_back(RGB(250, 10, 10));
    SendMessageW(box, CBM_SETCOLORS, many.size(), reinterpret_cast<LPARAM>(many.data()));
    EXPECT_EQ(20, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(250, 10, 10))) << "later cells compare exactly";
    DestroyWindow(box);
    DeleteObject(palette);
}

TEST_F(ColorBoxTest, FaceShowsTheChosenCellAndTheFocus) {
    HWND box = createBox();
    kvtest::Canvas canvas(120, 22, kMagenta);
    auto paint = [&](HWND window) {
        canvas.fill(kMagenta);
        SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    };
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    paint(box);
    EXPECT_EQ(window, canvas.pixel(50, 11)) << "nothing chosen: an empty face";
    EXPECT_EQ(kMagenta, canvas.pixel(110, 11)) << "the arrow paints itself";
    SendMessageW(box, CBM_SETSEL, 6, 0);
    paint(box);
    EXPECT_EQ(RGB(255, 0, 0), canvas.pixel(50, 11));
    EXPECT_EQ(RGB(0, 0, 0), canvas.pixel(4, 11)) << "outlined with the current pen";
    EXPECT_EQ(window, canvas.pixel(100, 11)) << "inset by 4 from the arrow strip";
    SetFocus(box);
    paint(box);
    int dotted = 0;  // the focus rectangle inset by 2
    for (int x = 2; x < 102; ++x) dotted += canvas.pixel(x, 2) != window;
    EXPECT_GT(dotted, 20);

    HWND patterns = createBox(KXCBS_PATTERN, 150, 60);
    SendMessageW(patterns, CBM_SETSEL, 10, 0);  // vertical lines, light grey on white
    paint(patterns);
    for (int x = 40; x < 48; ++x) EXPECT_EQ(x % 2 ? RGB(192, 192, 192) : RGB(255, 255, 255), canvas.pixel(x, 11)) << x;
}

TEST_F(ColorBoxTest, ArrowLooksDisabledWhenItOrTheBoxOrItsParentIsDisabled) {
    HWND box = createBox();
    HWND arrow = GetDlgItem(box, KXCB_ID_ARROW);
    auto blueInk = [&](UINT state) {  // pixels of the enabled picture's blue
        kvtest::Canvas canvas(15, 20, kMagenta);
        DRAWITEMSTRUCT item = {ODT_BUTTON, KXCB_ID_ARROW, 0, ODA_DRAWENTIRE, state, arrow, canvas.dc(), {0, 0, 15, 20}, 0};
        EXPECT_EQ(TRUE, SendMessageW(box, WM_DRAWITEM, KXCB_ID_ARROW, reinterpret_cast<LPARAM>(&item)));
        int inked = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 15; ++x) inked += canvas.pixel(x, y) == RGB(30, 60, 170);
        return inked;
    };
    EXPECT_GT(blueInk(0), 10);
    EXPECT_GT(blueInk(ODS_SELECTED), 10);
    EXPECT_EQ(0, blueInk(ODS_DISABLED));
    EnableWindow(box, FALSE);
    EXPECT_EQ(0, blueInk(0));
    EnableWindow(box, TRUE);
    EnableWindow(host_, FALSE);
    EXPECT_EQ(0, blueInk(0));
    EnableWindow(host_, TRUE);
}

TEST_F(ColorBoxTest, PatternBrushPaintsBothColoursWithTheBackgroundRotated) {
    const BYTE pattern7[8] = {0xc0, 0xc0, 0xc0, 0xff, 0x0c, 0x0c, 0x0c, 0xff};
    const COLORREF foreground = RGB(0x12, 0x34, 0x56), background = RGB(0x11, 0x22, 0x33);
    const COLORREF rotated = RGB(0x33, 0x11, 0x22);  // red from blue, green from red, blue from green
    kvtest::Canvas canvas(16, 16, kMagenta);
    RECT all = {0, 0, 16, 16};
    auto fill = [&](HWND window, HDC dc, int pattern, COLORREF back) {
        HBRUSH brush = KxCreatePatternBrush(window, dc, pattern, foreground, back);
        ASSERT_NE(nullptr, brush);
        FillRect(canvas.dc(), &all, brush);
        DeleteObject(brush);
    };
    fill(nullptr, canvas.dc(), 7, background);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            bool set = (pattern7[y % 8] >> (7 - x % 8)) & 1;
            ASSERT_EQ(set ? rotated : foreground, canvas.pixel(x, y)) << x << ", " << y;
        }
    fill(nullptr, canvas.dc(), 11, RGB(90, 90, 90));  // rows of set and clear bits
    EXPECT_EQ(RGB(90, 90, 90), canvas.pixel(0, 0)) << "a grey comes out as passed";
    EXPECT_EQ(foreground, canvas.pixel(0, 1));
    fill(host_, nullptr, 11, RGB(0, 0, 255));  // made for the window's DC
    EXPECT_EQ(RGB(255, 0, 0), canvas.pixel(0, 0));
    for (int outside : {12, -1}) {
        fill(nullptr, canvas.dc(), outside, background);
        EXPECT_EQ(foreground, canvas.pixel(3, 3)) << "pattern 0 for " << outside;
    }
}

TEST_F(ColorBoxTest, ProceduresAndBrushesRefuseMissingWindows) {
    HWND box = createBox();
    DestroyWindow(box);
    EXPECT_EQ(0, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(0, Kx1ColorWndProc(nullptr, CBM_ADDCOLOR, 0, 0));
    EXPECT_EQ(-1, Kx1ColorWndProc(nullptr, WM_CREATE, 0, 0));
    EXPECT_EQ(0, Kx1ColorWndChildProc(nullptr, WM_KEYDOWN, VK_RETURN, 0));
    EXPECT_EQ(nullptr, KxCreatePatternBrush(box, nullptr, 1, 0, 0));
}

}  // namespace
}  // namespace colorbox_test
