// Colour box messages, grid geometry, painting and pattern brushes.
#include <algorithm>
#include "colorbox_fixture.h"

namespace colorbox_test {
namespace {

// A set of distinct colours that are not among the defaults.
std::vector<COLORREF> freshColours(int count) {
    std::vector<COLORREF> colours;
    for (int i = 0; i < count; ++i) colours.push_back(RGB(10 + i, 20 + 2 * i, 30 + 3 * i));
    return colours;
}

TEST_F(ColorBoxTest, ExportsResolveByPlainName) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"Kx1ColorWndProc", "Kx1ColorWndChildProc", "KxCreatePatternBrush"})
        EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

TEST_F(ColorBoxTest, NewBoxesStartWithTheirRecord) {
    HWND box = createBox(KXCBS_MORECOLORS);
    const ColorBoxRecord& record = *Record(box);
    EXPECT_EQ(KXCB_MOREBUTTON, record.flags);
    EXPECT_EQ(box, record.box);
    EXPECT_EQ(nullptr, record.popup);
    EXPECT_EQ(-1, record.hot);
    EXPECT_EQ(-1, record.selected);
    EXPECT_EQ(nullptr, record.palette);
    ASSERT_EQ(20, record.count);
    EXPECT_TRUE(std::equal(kDefaults, kDefaults + 20, record.colours));
    EXPECT_EQ(4, record.columns);
    EXPECT_EQ(5, record.rows);
    EXPECT_EQ(20, record.cellSize);
    HWND arrow = GetDlgItem(box, KXCB_ID_ARROW);
    RECT arrowRect = RectInParent(arrow);
    EXPECT_TRUE(SameRect(RECT{104, 1, 119, 21}, arrowRect));
    EXPECT_EQ(0x5000000Bu, static_cast<DWORD>(GetWindowLongW(arrow, GWL_STYLE)));

    HWND patterns = createBox(KXCBS_PATTERN, 150, 60);
    const ColorBoxRecord& patternRecord = *Record(patterns);
    EXPECT_EQ(KXCB_PATTERNS, patternRecord.flags);
    EXPECT_EQ(12, patternRecord.count);
    EXPECT_EQ(nullptr, patternRecord.colours);
    EXPECT_EQ(3, patternRecord.rows);

    // The arrow keeps to the right edge.
    MoveWindow(box, 150, 20, 200, 30, TRUE);
    arrowRect = RectInParent(arrow);
    EXPECT_TRUE(SameRect(RECT{184, 1, 199, 29}, arrowRect));
}

TEST_F(ColorBoxTest, RecordOrColoursThatCannotBeAllocatedFailTheCreation) {
    for (int failing : {1, 2}) {
        KvText_FailAllocation(failing);
        EXPECT_EQ(nullptr, createBox()) << "allocation " << failing;
    }
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, createBox(KXCBS_PATTERN));
}

TEST_F(ColorBoxTest, SelectingFindingAndReadingColours) {
    HWND box = createBox();
    EXPECT_EQ(6, SendMessageW(box, CBM_SETSEL, 6, 0));
    EXPECT_EQ(6, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(6, Record(box)->hot);
    EXPECT_EQ(6, SendMessageW(box, CBM_SETSEL, 6, 0));   // the same: nothing changes
    EXPECT_EQ(20, SendMessageW(box, CBM_SETSEL, 20, 0));  // out of range: nothing changes
    EXPECT_EQ(6, SendMessageW(box, CBM_GETSEL, 0, 0));

    COLORREF colour = 0;
    EXPECT_EQ(6, SendMessageW(box, CBM_GETCOLOR, 0, reinterpret_cast<LPARAM>(&colour)));
    EXPECT_EQ(RGB(255, 0, 0), colour);
    EXPECT_EQ(-1, SendMessageW(box, CBM_GETCOLOR, 0, 0));

    EXPECT_EQ(13, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(0, 128, 0)));
    EXPECT_EQ(13, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(-1, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(1, 2, 3)));
    EXPECT_EQ(13, SendMessageW(box, CBM_GETSEL, 0, 0));
}

TEST_F(ColorBoxTest, AddingAndInsertingKeepEveryColourOnce) {
    HWND box = createBox();
    SendMessageW(box, CBM_SETSEL, 4, 0);
    EXPECT_EQ(20, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(1, 2, 3)));
    EXPECT_EQ(21, Record(box)->count);
    EXPECT_EQ(6, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(255, 0, 0)));  // present: its index
    EXPECT_EQ(21, Record(box)->count);

    EXPECT_EQ(0, SendMessageW(box, CBM_INSERTCOLOR, 0, RGB(4, 5, 6)));
    EXPECT_EQ(RGB(4, 5, 6), Record(box)->colours[0]);
    EXPECT_EQ(5, SendMessageW(box, CBM_GETSEL, 0, 0)) << "the selection stays on its colour";
    EXPECT_EQ(22, SendMessageW(box, CBM_INSERTCOLOR, 99, RGB(7, 8, 9)));   // appended
    EXPECT_EQ(23, SendMessageW(box, CBM_INSERTCOLOR, -5, RGB(7, 8, 10)));  // appended
    EXPECT_EQ(22, SendMessageW(box, CBM_INSERTCOLOR, 3, RGB(7, 8, 9)));    // present
    EXPECT_EQ(24, Record(box)->count);
    EXPECT_EQ(4, Record(box)->columns);

    // A grid that changes loses its popup, which is made again on the next opening.
    HWND popup = open(box);
    ASSERT_NE(nullptr, popup);
    SendMessageW(box, CBM_ADDCOLOR, 0, RGB(9, 9, 9));
    EXPECT_EQ(5, Record(box)->columns) << "25 cells: five columns";
    EXPECT_FALSE(IsWindow(popup));
    EXPECT_EQ(nullptr, Record(box)->popup);
    EXPECT_NE(popup, GetCapture());
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(box, KXCB_ID_ARROW)));

    KvText_FailAllocation(1);
    EXPECT_EQ(-1, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(9, 9, 10)));
    EXPECT_EQ(25, Record(box)->count);
}

TEST_F(ColorBoxTest, GridFollowsTheNumberOfCells) {
    struct Case {
        int cells, columns, rows;
    };
    HWND box = createBox();
    for (const Case& c : {Case{20, 4, 5}, Case{24, 4, 6}, Case{25, 5, 5}, Case{36, 5, 8}, Case{37, 6, 7}}) {
        SCOPED_TRACE(c.cells);
        std::vector<COLORREF> colours = freshColours(c.cells);
        SendMessageW(box, CBM_SETSEL, 2, 0);
        EXPECT_EQ(1, SendMessageW(box, CBM_SETCOLORS, c.cells, reinterpret_cast<LPARAM>(colours.data())));
        EXPECT_EQ(-1, Record(box)->selected);
        EXPECT_EQ(-1, Record(box)->hot);
        EXPECT_EQ(c.columns, Record(box)->columns);
        EXPECT_EQ(c.rows, Record(box)->rows);

        HWND popup = open(box);
        ASSERT_NE(nullptr, popup);
        RECT frame;
        GetWindowRect(popup, &frame);
        int width = std::min(c.cells, c.columns) * 20 + 2;
        EXPECT_EQ(width, frame.right - frame.left);
        EXPECT_EQ(c.rows * 20 + 2, frame.bottom - frame.top);
        // Every cell shows its colour at its place.
        int stride = 0;
        std::vector<COLORREF> pixels = PopupPixels(popup, &stride);
        for (int i = 0; i < c.cells; ++i) {
            POINT middle = CentreOf(CellRectOf(box, i));
            ASSERT_EQ(colours[i], pixels[middle.y * stride + middle.x]) << "cell " << i;
        }
        PressKey(popup, VK_ESCAPE);
    }
    EXPECT_EQ(1, SendMessageW(box, CBM_SETCOLORS, 0, 0));
    EXPECT_EQ(0, Record(box)->count);
    EXPECT_EQ(0, SendMessageW(box, CBM_SETCOLORS, 3, 0)) << "no colours to copy";
    EXPECT_EQ(0, SendMessageW(box, CBM_SETCOLORS, -1, reinterpret_cast<LPARAM>(kDefaults)));
}

TEST_F(ColorBoxTest, AutomaticCellSpansTheFirstRow) {
    HWND box = createBox();
    SendMessageW(box, CBM_ADDCOLOR, 0, RGB(1, 2, 3));  // 21 cells: 20 ordinary ones with it
    SendMessageW(box, CBM_SETSEL, 5, 0);
    EXPECT_EQ(1, SendMessageW(box, CBM_SETAUTO, 5, 0));
    const ColorBoxRecord& record = *Record(box);
    EXPECT_TRUE(record.flags & KXCB_AUTOCELL);
    EXPECT_EQ(kDefaults[5], record.colours[0]);
    EXPECT_EQ(kDefaults[0], record.colours[1]);
    EXPECT_EQ(0, record.selected) << "the selection moved with its colour";
    EXPECT_EQ(4, record.columns);
    EXPECT_EQ(5, record.rows);

    HWND popup = open(box);
    RECT frame;
    GetWindowRect(popup, &frame);
    EXPECT_EQ(82, frame.right - frame.left);
    EXPECT_EQ(6 * 20 + 2, frame.bottom - frame.top);
    int stride = 0;
    std::vector<COLORREF> pixels = PopupPixels(popup, &stride);
    for (int x : {10, 40, 70}) EXPECT_EQ(kDefaults[5], pixels[10 * stride + x]) << x;
    EXPECT_EQ(kDefaults[0], pixels[30 * stride + 10]) << "cell 1 starts the second row";
    PressKey(popup, VK_ESCAPE);

    EXPECT_EQ(1, SendMessageW(box, CBM_SETAUTO, static_cast<WPARAM>(-2), kDefaults[9]));
    EXPECT_EQ(kDefaults[9], record.colours[0]);
    EXPECT_EQ(1, SendMessageW(box, CBM_SETAUTO, static_cast<WPARAM>(-2), RGB(7, 7, 7)));  // added
    EXPECT_EQ(RGB(7, 7, 7), record.colours[0]);
    EXPECT_EQ(22, record.count);
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
    RECT frame;
    GetWindowRect(popup, &frame);
    EXPECT_EQ(4 * 15 + 2, frame.right - frame.left);
    EXPECT_EQ(5 * 15 + 2, frame.bottom - frame.top);
    EXPECT_EQ(1, SendMessageW(box, CBM_SETCELLSIZE, FALSE, 24));
    EXPECT_FALSE(IsWindow(popup));

    EXPECT_EQ(1, SendMessageW(box, CBM_SHOWMORE, TRUE, 0));
    EXPECT_EQ(0, SendMessageW(box, CBM_SHOWMORE, TRUE, 0)) << "no change";
    EXPECT_TRUE(Record(box)->flags & KXCB_MOREBUTTON);
    popup = open(box);
    GetWindowRect(popup, &frame);
    int width = 4 * 24 + 2, height = 5 * 24 + 2 + 3 + 24;
    EXPECT_EQ(width, frame.right - frame.left);
    EXPECT_EQ(height, frame.bottom - frame.top);
    HWND more = GetDlgItem(popup, KXCB_ID_MORE);
    ASSERT_NE(nullptr, more);
    wchar_t caption[16];
    GetWindowTextW(more, caption, 16);
    EXPECT_STREQ(L">>.&..", caption);
    RECT button = RectInParent(more);
    EXPECT_TRUE(SameRect(RECT{3, height - 24 - 3, width - 4, height - 3}, button));
    EXPECT_EQ(GetStockObject(ANSI_VAR_FONT), reinterpret_cast<HGDIOBJ>(SendMessageW(more, WM_GETFONT, 0, 0)));
    PressKey(popup, VK_ESCAPE);
    EXPECT_EQ(1, SendMessageW(box, CBM_SHOWMORE, FALSE, 0));
    EXPECT_FALSE(Record(box)->flags & KXCB_MOREBUTTON);
}

TEST_F(ColorBoxTest, PatternVariantRefusesTheColourMessages) {
    HWND box = createBox(KXCBS_PATTERN);
    COLORREF colour = 0;
    COLORREF colours[] = {RGB(1, 1, 1)};
    EXPECT_EQ(-1, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(255, 255, 255)));
    EXPECT_EQ(-1, SendMessageW(box, CBM_GETCOLOR, 0, reinterpret_cast<LPARAM>(&colour)));
    EXPECT_EQ(-1, SendMessageW(box, CBM_ADDCOLOR, 0, RGB(1, 1, 1)));
    EXPECT_EQ(-1, SendMessageW(box, CBM_INSERTCOLOR, 0, RGB(1, 1, 1)));
    EXPECT_EQ(0, SendMessageW(box, CBM_SETAUTO, 0, 0));
    EXPECT_EQ(0, SendMessageW(box, CBM_SETCOLORS, 1, reinterpret_cast<LPARAM>(colours)));
    EXPECT_EQ(0, SendMessageW(box, CBM_SHOWMORE, TRUE, 0));
    EXPECT_EQ(12, Record(box)->count);
    EXPECT_EQ(KXCB_PATTERNS, Record(box)->flags);
    // What a pattern box does take.
    EXPECT_EQ(11, SendMessageW(box, CBM_SETSEL, 11, 0));
    EXPECT_EQ(11, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(12, SendMessageW(box, CBM_SETSEL, 12, 0));
    EXPECT_EQ(11, SendMessageW(box, CBM_GETSEL, 0, 0));
    EXPECT_EQ(1, SendMessageW(box, CBM_SETCELLSIZE, FALSE, 16));
    EXPECT_EQ(1, SendMessageW(box, CBM_SETPALETTE, FALSE, 0));
}

TEST_F(ColorBoxTest, PaletteMatchesTheFirstTwentyCellsByNearestEntry) {
    // The eight corners of the colour cube.
    struct {
        WORD version, count;
        PALETTEENTRY entries[8];
    } table = {0x300, 8, {}};
    for (int i = 0; i < 8; ++i)
        table.entries[i] = PALETTEENTRY{BYTE(i & 1 ? 255 : 0), BYTE(i & 2 ? 255 : 0), BYTE(i & 4 ? 255 : 0), 0};
    HPALETTE palette = CreatePalette(reinterpret_cast<LOGPALETTE*>(&table));
    HWND box = createBox();
    EXPECT_EQ(-1, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(250, 10, 10)));
    EXPECT_EQ(1, SendMessageW(box, CBM_SETPALETTE, TRUE, reinterpret_cast<LPARAM>(palette)));
    EXPECT_EQ(palette, Record(box)->palette);
    EXPECT_EQ(6, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(250, 10, 10))) << "shown as the red entry";
    EXPECT_EQ(6, SendMessageW(box, CBM_GETSEL, 0, 0));
    // Later cells compare exactly.
    SendMessageW(box, CBM_SETAUTO, static_cast<WPARAM>(-1), 0);
    std::vector<COLORREF> many = freshColours(20);
    many.push_back(RGB(250, 10, 10));
    SendMessageW(box, CBM_SETCOLORS, many.size(), reinterpret_cast<LPARAM>(many.data()));
    EXPECT_EQ(20, SendMessageW(box, CBM_FINDCOLOR, 0, RGB(250, 10, 10)));
    SendMessageW(box, CBM_SETPALETTE, TRUE, 0);
    DestroyWindow(box);
    DeleteObject(palette);
}

// --- painting -------------------------------------------------------------------------------------

TEST_F(ColorBoxTest, FaceShowsTheChosenColourAndTheFocus) {
    HWND box = createBox();
    kvtest::Canvas canvas(120, 22, kMagenta);
    auto paint = [&] {
        canvas.fill(kMagenta);
        SendMessageW(box, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    };
    paint();
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    EXPECT_EQ(window, canvas.pixel(50, 11)) << "nothing chosen: an empty face";
    EXPECT_EQ(kMagenta, canvas.pixel(110, 11)) << "the arrow paints itself";

    SendMessageW(box, CBM_SETSEL, 6, 0);
    paint();
    EXPECT_EQ(RGB(255, 0, 0), canvas.pixel(50, 11));
    EXPECT_EQ(RGB(0, 0, 0), canvas.pixel(4, 11)) << "outlined with the current pen";
    EXPECT_EQ(window, canvas.pixel(3, 11));
    EXPECT_EQ(window, canvas.pixel(100, 11)) << "the swatch ends 4 pixels before the arrow strip";
    EXPECT_EQ(window, canvas.pixel(2, 2));

    SetFocus(box);
    paint();
    int dotted = 0;  // the focus rectangle inset by 2
    for (int x = 2; x < 102; ++x) dotted += canvas.pixel(x, 2) != window;
    EXPECT_GT(dotted, 20);
    SetFocus(host_);

    HWND patterns = createBox(KXCBS_PATTERN, 150, 60);
    SendMessageW(patterns, CBM_SETSEL, 10, 0);  // vertical lines: 0xaa in every row
    canvas.fill(kMagenta);
    SendMessageW(patterns, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT);
    for (int x = 40; x < 48; ++x)
        EXPECT_EQ(x % 2 ? RGB(192, 192, 192) : RGB(255, 255, 255), canvas.pixel(x, 11)) << x;
}

TEST_F(ColorBoxTest, ArrowLooksDisabledWhenItOrTheBoxIsDisabled) {
    HWND box = createBox();
    HWND arrow = GetDlgItem(box, KXCB_ID_ARROW);
    const COLORREF blue = RGB(30, 60, 170);  // the arrow picture's ink
    auto arrowInk = [&](UINT state) {
        kvtest::Canvas canvas(15, 20, kMagenta);
        DRAWITEMSTRUCT item = {};
        item.CtlType = ODT_BUTTON;
        item.CtlID = KXCB_ID_ARROW;
        item.itemState = state;
        item.hwndItem = arrow;
        item.hDC = canvas.dc();
        item.rcItem = RECT{0, 0, 15, 20};
        EXPECT_EQ(TRUE, SendMessageW(box, WM_DRAWITEM, KXCB_ID_ARROW, reinterpret_cast<LPARAM>(&item)));
        int inked = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 15; ++x) inked += canvas.pixel(x, y) == blue;
        return inked;
    };
    EXPECT_GT(arrowInk(0), 10);
    EXPECT_GT(arrowInk(ODS_SELECTED), 10);
    EXPECT_EQ(0, arrowInk(ODS_DISABLED));
    EnableWindow(box, FALSE);
    EXPECT_EQ(0, arrowInk(0));
    EnableWindow(box, TRUE);
    EnableWindow(host_, FALSE);
    EXPECT_EQ(0, arrowInk(0)) << "the box's parent disabled";
    EnableWindow(host_, TRUE);
}

TEST_F(ColorBoxTest, PatternBrushPaintsBothColoursWithTheBackgroundRotated) {
    const BYTE pattern7[8] = {0xc0, 0xc0, 0xc0, 0xff, 0x0c, 0x0c, 0x0c, 0xff};
    const COLORREF foreground = RGB(0x12, 0x34, 0x56), background = RGB(0x11, 0x22, 0x33);
    const COLORREF rotated = RGB(0x33, 0x11, 0x22);  // red from blue, green from red, blue from green
    kvtest::Canvas canvas(16, 16, kMagenta);
    HBRUSH brush = KxCreatePatternBrush(nullptr, canvas.dc(), 7, foreground, background);
    ASSERT_NE(nullptr, brush);
    RECT all = {0, 0, 16, 16};
    FillRect(canvas.dc(), &all, brush);
    DeleteObject(brush);
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 16; ++x) {
            bool set = (pattern7[y % 8] >> (7 - x % 8)) & 1;
            ASSERT_EQ(set ? rotated : foreground, canvas.pixel(x, y)) << x << ", " << y;
        }

    // Greys come out as passed; indexes out of range give the empty pattern 0.
    struct Case {
        HWND window;
        HDC dc;
        int pattern;
        COLORREF background, expectedAt00;
    };
    for (const Case& c : {Case{nullptr, canvas.dc(), 11, RGB(90, 90, 90), RGB(90, 90, 90)},
                          Case{nullptr, canvas.dc(), 12, RGB(90, 90, 90), foreground},
                          Case{nullptr, canvas.dc(), -1, RGB(90, 90, 90), foreground},
                          Case{host_.handle(), nullptr, 11, RGB(0, 0, 255), RGB(255, 0, 0)}}) {
        HBRUSH other = KxCreatePatternBrush(c.window, c.dc, c.pattern, foreground, c.background);
        ASSERT_NE(nullptr, other);
        FillRect(canvas.dc(), &all, other);
        DeleteObject(other);
        EXPECT_EQ(c.expectedAt00, canvas.pixel(0, 0)) << c.pattern;
        EXPECT_EQ(foreground, canvas.pixel(0, 1)) << c.pattern;
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
