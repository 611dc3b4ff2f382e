// The helpers for plain list boxes: type-ahead on row data, the row under a point, and moving the
// selected row with the mouse.
#include "kvtest.h"
#include <memory>
#include <string>
#include <vector>
#include "kvkit_listbox.h"

namespace {

class PlainListBox : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(300, 300);
    }
    void TearDown() override {
        host.reset();
        KvTest::TearDown();
    }
    // Rows of one-letter texts with data = (letter << 16) | 10 + row.
    void create(DWORD style, const wchar_t* letters) {
        if (list) DestroyWindow(list);
        list = host->createChild(L"listbox", L"", WS_VISIBLE | WS_VSCROLL | style, 0, 0, 200, 150, 5);
        for (int row = 0; letters[row]; ++row) {
            wchar_t text[2] = {letters[row], 0};
            SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
            SendMessageW(list, LB_SETITEMDATA, row, (static_cast<LPARAM>(letters[row]) << 16) | (10 + row));
        }
    }
    std::wstring rows() const {
        std::wstring all;
        for (int row = 0; row < SendMessageW(list, LB_GETCOUNT, 0, 0); ++row) {
            wchar_t text[4] = L"";
            SendMessageW(list, LB_GETTEXT, row, reinterpret_cast<LPARAM>(text));
            all += text;
        }
        return all;
    }
    int rowHeight() const { return static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0)); }
    void mouse(UINT message, int y) const { SendMessageW(list, message, 0, MAKELPARAM(20, y)); }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND list = nullptr;
};

TEST_F(PlainListBox, SelectCharSearchesTheRowDataAfterTheCaret) {
    create(0, L"");
    EXPECT_EQ(-2, Kx1LbSelectChar(list, 'a', 1, 0, 0, 0));  // empty
    create(0, L"babc");
    SendMessageW(list, LB_SETCURSEL, 1, 0);
    EXPECT_EQ(2, Kx1LbSelectChar(list, 'B', 1, 0, 0, 0));
    EXPECT_EQ(0, Kx1LbSelectChar(list, 'b', 1, 0, 0, 0));  // wraps round
    EXPECT_EQ(-1, Kx1LbSelectChar(list, 'x', 1, 0, 0, 0));
    EXPECT_EQ(-1, Kx1LbSelectChar(list, 'b', 1, 0, 1, 0));  // upper-cased: no row holds 'B'
    EXPECT_EQ(-2, Kx1LbSelectChar(list, ' ', 1, 0, 0, 0));
    EXPECT_EQ(0, SendMessageW(list, LB_GETCURSEL, 0, 0));
    EXPECT_EQ(3, Kx1LbSelectChar(list, 13, 0, 0, 0, 0));  // the data's low word

    create(LBS_MULTIPLESEL, L"bab");
    SendMessageW(list, LB_SETCARETINDEX, 0, 0);
    EXPECT_EQ(2, Kx1LbSelectChar(list, 'b', 1, 0, 0, 0));
    EXPECT_EQ(2, SendMessageW(list, LB_GETCARETINDEX, 0, 0));  // the caret moves, nothing is selected
    EXPECT_EQ(0, SendMessageW(list, LB_GETSELCOUNT, 0, 0));
}

TEST_F(PlainListBox, MousePositionWalksFromTheTopRow) {
    create(0, L"abcdefghijklmnopqrstuvwxyz");
    SendMessageW(list, LB_SETTOPINDEX, 5, 0);
    EXPECT_EQ(5, Kx1GetLbMousePos(list, 5, 1));
    EXPECT_EQ(7, Kx1GetLbMousePos(list, 5, 2 * rowHeight() + 1));
    EXPECT_EQ(-1, Kx1GetLbMousePos(list, 500, 1));
    EXPECT_EQ(-1, Kx1GetLbMousePos(list, 5, -3));  // rows above the top are not looked at
}

TEST_F(PlainListBox, BordersAroundOtherRowsMoveTheSelectedRow) {
    create(0, L"abcdef");
    EXPECT_EQ(1, KlSetListProc(list, nullptr));
    EXPECT_EQ(1, KlSetListProc(list, nullptr));  // once is enough
    HCURSOR moveCursor = LoadCursorW(GetModuleHandleW(L"kvkit.dll"), L"movecur");
    HCURSOR ibeam = LoadCursorW(nullptr, IDC_IBEAM);
    SendMessageW(list, LB_SETCURSEL, 1, 0);
    int h = rowHeight();
    SetCursor(ibeam);
    mouse(WM_MOUSEMOVE, 3 * h + 1);  // top border of row 3
    EXPECT_EQ(moveCursor, GetCursor());
    for (int y : {3 * h + h / 2, 2 * h + 1}) {  // the middle of a row; a border of the selected row
        SetCursor(ibeam);
        mouse(WM_MOUSEMOVE, y);
        EXPECT_EQ(ibeam, GetCursor()) << y;
    }
    mouse(WM_LBUTTONDOWN, 4 * h - 1);  // bottom border of row 3: in front of row 4
    mouse(WM_LBUTTONUP, 4 * h - 1);
    kvtest::PumpMessages();
    std::vector<kvtest::RecordedMessage> posted = host->messages(KLM_MOVEITEM);
    ASSERT_EQ(1u, posted.size());
    EXPECT_EQ(4u, posted[0].wParam);
    EXPECT_EQ(reinterpret_cast<LPARAM>(list), posted[0].lParam);
    EXPECT_EQ(1, SendMessageW(list, LB_GETCURSEL, 0, 0));  // the click selected nothing

    EXPECT_EQ(1, KlMoveItem(list, 4));  // from above: lands in front of what was row 4
    EXPECT_EQ(L"acdbef", rows());
    EXPECT_EQ(3, SendMessageW(list, LB_GETCURSEL, 0, 0));
    EXPECT_EQ((static_cast<LPARAM>('b') << 16) | 11, SendMessageW(list, LB_GETITEMDATA, 3, 0));
    EXPECT_EQ(list, GetFocus());
    EXPECT_EQ(1, KlMoveItem(list, 0));
    EXPECT_EQ(L"bacdef", rows());
    KvText_FailAllocation(1);
    EXPECT_EQ(0, KlMoveItem(list, 5));
    EXPECT_EQ(L"bacdef", rows());
    SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
    EXPECT_EQ(0, KlMoveItem(list, 2));

    create(LBS_OWNERDRAWFIXED | LBS_MULTIPLESEL, L"");  // rows of data only
    for (LPARAM data : {1, 2, 3, 4}) SendMessageW(list, LB_ADDSTRING, 0, data);
    SendMessageW(list, LB_SETSEL, TRUE, 0);
    EXPECT_EQ(1, KlMoveItem(list, 3));
    std::vector<LPARAM> data;
    for (int row = 0; row < 4; ++row) data.push_back(SendMessageW(list, LB_GETITEMDATA, row, 0));
    EXPECT_EQ((std::vector<LPARAM>{2, 3, 1, 4}), data);
    EXPECT_GT(SendMessageW(list, LB_GETSEL, 2, 0), 0);
}

}  // namespace
