// The button itself: where each attribute puts it, what clicks, right clicks, Space and a clear
// button's mnemonic report, how it paints, and the exports that find, hide, move and destroy it.
#include "editbutton_test.h"

namespace editbutton_test {
namespace {

using Button = EditButtonTest;

TEST_F(Button, EachAttributeSizesAndPlacesTheButton) {
    struct Geometry {
        UINT attr;
        int bitmapSize;  // 0: none
        RECT button;     // in its parent's client coordinates
        int hostWidth, id;
    };
    const Geometry cases[] = {
        {0, 0, {230, 40, 250, 64}, 180, EDITBUTTON_ID},
        {0, 16, {230, 40, 250, 64}, 180, EDITBUTTON_ID},
        {0, 24, {222, 40, 250, 64}, 172, EDITBUTTON_ID},
        {EBA_OUTSIDE, 0, {250, 40, 270, 64}, 200, EDITBUTTON_ID},
        {EBA_OWNID, 0, {230, 40, 250, 64}, 180, 321},
        {EBA_INSIDE, 0, {180, 0, 200, 24}, 200, EDITBUTTON_ID},  // an edit's border is inside it
    };
    for (const Geometry& c : cases) {
        SCOPED_TRACE(testing::Message() << "attr " << c.attr << ", bitmap " << c.bitmapSize);
        HWND field = addEdit(kEditId + 1, kEditTop);
        HBITMAP bitmap = c.bitmapSize ? RedSquare(c.bitmapSize) : nullptr;
        HWND button = KxSetEditBtn(field, 321, bitmap, c.attr, nullptr);
        EXPECT_EQ((c.attr & EBA_INSIDE) ? field : host->handle(), GetParent(button));
        EXPECT_EQ(c.button, RectInParent(button));
        EXPECT_EQ(c.hostWidth, RectInParent(field).right - kEditLeft);
        EXPECT_EQ(c.id, GetDlgCtrlID(button));
        EXPECT_TRUE(KxIsEditBtn(button));
        DestroyWindow(field);
        DestroyWindow(button);
        EXPECT_FALSE(kvtest::IsGdiObject(bitmap)) << "the button deletes its bitmap";
    }

    // Own identifier: after the host in the tab order, reporting to the container.
    HWND owned = KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_TABSTOP | EBA_DISABLED, nullptr);
    EXPECT_EQ(owned, GetWindow(edit, GW_HWNDNEXT));
    EXPECT_EQ(WS_TABSTOP, GetWindowLongW(owned, GWL_STYLE) & (WS_TABSTOP | WS_CLIPSIBLINGS));
    EXPECT_FALSE(IsWindowEnabled(owned));
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(host->handle()), Prop(owned, L"Parent"));
    HWND other = addEdit(kEditId + 1, 100);
    HWND flat = KxSetEditBtn(other, 301, nullptr, EBA_OWNID | EBA_NOTIFYEDIT | EBA_FLAT, nullptr);
    EXPECT_EQ(WS_CLIPSIBLINGS, GetWindowLongW(flat, GWL_STYLE) & (WS_TABSTOP | WS_CLIPSIBLINGS));
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(other), Prop(flat, L"Parent"));

    // A combo box's rectangle includes its list: the button takes the box's own height.
    HWND combo = host->createChild(L"ComboBox", L"", WS_VISIBLE | CBS_DROPDOWNLIST, 50, 140, 200, 200, 102);
    RECT given = {50, 140, 250, 340}, box = RectInParent(combo);
    EXPECT_EQ((RECT{230, 140, 250, box.bottom}), RectInParent(KxSetEditBtn(combo, 0, nullptr, 0, &given)));
}

TEST_F(Button, CaptionsAndShortcutTooltips) {
    HWND clear = KxSetEditBtn(edit, 0, nullptr, EBA_CLEAR, nullptr);
    EXPECT_EQ(L"&Clear", TextOf(clear));
    EXPECT_EQ(L"Clear (Alt+C)", TextOf(clear, true));
    HWND field = addEdit(kEditId + 1, 100);
    HWND load = KxSetEditBtn(field, 400, nullptr, EBA_OWNID | EBA_LOADFMT, nullptr);
    EXPECT_EQ(L"&Load format", TextOf(load));
    EXPECT_EQ(0x8040, GetWindowLongW(load, GWL_STYLE) & 0xFFFF);
    EXPECT_EQ(L"Load format (Alt+L)", TextOf(load, true));
    EXPECT_EQ(0x8080, GetWindowLongW(KxSetEditBtn(field, 401, nullptr, EBA_OWNID | EBA_SAVEFMT, nullptr),
                                     GWL_STYLE) & 0xFFFF);
    // A captionless tab stop takes its tooltip from the key table; without a row or a tab stop, none.
    const std::pair<int, const wchar_t*> keys[] = {
        {0, L"Open (Alt+O)"}, {2, L"Choose (Alt+C)"}, {3, L"Date (Alt+D)"}, {5, L""}};
    for (const auto& key : keys)
        EXPECT_EQ(key.second, TextOf(KxSetEditBtnEx(field, 500 + key.first, nullptr, EBA_OWNID | EBA_TABSTOP,
                                                    nullptr, key.first), true));
    EXPECT_EQ(L"", TextOf(KxSetEditBtnEx(field, 510, nullptr, EBA_OWNID, nullptr, 3), true));

    // Strings that fail to load: no image button (the host keeps its size), a clear button without
    // caption, no tooltip without the modifier's name.
    HWND third = addEdit(kEditId + 2, 140);
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxSetEditBtn(third, 402, nullptr, EBA_OWNID | EBA_LOADFMT, nullptr));
    EXPECT_EQ(kEditWidth, RectInParent(third).right - kEditLeft);
    KvText_FailAllocation(1);
    EXPECT_EQ(L"", TextOf(KxSetEditBtn(third, 403, nullptr, EBA_OWNID | EBA_CLEAR, nullptr)));
    KvText_FailAllocation(2);
    EXPECT_EQ(L"", TextOf(KxSetEditBtnEx(third, 404, nullptr, EBA_OWNID | EBA_TABSTOP, nullptr, 3), true));
}

TEST_F(Button, HideShowMoveAndDestroy) {
    HWND button = KxSetEditBtn(edit, 0, nullptr, 0, nullptr);
    EXPECT_EQ(button, KxSetEditBtn(edit, 0, nullptr, 0, nullptr));
    EXPECT_EQ(editRect(180), RectInParent(edit)) << "the host shrinks once";
    EXPECT_EQ(button, KxGetEditBtn(edit));
    EXPECT_EQ(button, KxGetEditBtnParent(*host));
    EXPECT_TRUE(KxHideEditBtn(*host));
    EXPECT_FALSE(IsWindowVisible(button));
    EXPECT_EQ(editRect(), RectInParent(edit)) << "the width comes back";
    EXPECT_TRUE(KxHideEditBtn(*host));
    EXPECT_EQ(editRect(), RectInParent(edit)) << "only once";
    EXPECT_EQ(button, KxSetEditBtn(edit, 0, nullptr, 0, nullptr)) << "shown again";
    EXPECT_TRUE(IsWindowVisible(button));
    EXPECT_EQ(editRect(180), RectInParent(edit));

    RECT target = {20, 120, 320, 150};
    EXPECT_TRUE(KxMoveEditBtn(*host, edit, &target));
    EXPECT_EQ((RECT{20, 120, 300, 150}), RectInParent(edit));
    EXPECT_EQ((RECT{300, 120, 320, 150}), RectInParent(button));
    EXPECT_TRUE(KxDestrEditBtn(*host));
    EXPECT_FALSE(IsWindow(button));
    EXPECT_FALSE(KxDestrEditBtn(*host));
    EXPECT_FALSE(KxMoveEditBtn(*host, edit, &target));
    EXPECT_FALSE(KxHideEditBtn(*host));

    // An outside button keeps its host's size, yet moves onto the rectangle's right end.
    HWND outside = KxSetEditBtn(edit, 0, nullptr, EBA_OUTSIDE, nullptr);
    EXPECT_TRUE(KxMoveEditBtn(*host, edit, &target));
    EXPECT_EQ((RECT{20, 120, 300, 150}), RectInParent(edit));
    EXPECT_EQ((RECT{300, 120, 320, 150}), RectInParent(outside));
    EXPECT_TRUE(KxHideEditBtn(*host));
    EXPECT_EQ((RECT{20, 120, 300, 150}), RectInParent(edit)) << "nothing to give back";
}

// An edit takes a double click as the start of a word selection and holds the mouse until the
// button goes up: these tests give the capture up, as a host that handles the click does.
TEST_F(Button, LeftClicksInsideAndOutside) {
    kvtest::MessageRecorder field(edit);
    HWND plain = KxSetEditBtn(edit, 0, nullptr, 0, nullptr);
    ClickCentre(plain);
    ReleaseCapture();
    POINT centre = {10, 12}, outside = {-30, 12};
    ClientToScreen(plain, &centre);
    int clicks = 0;
    kvtest::RecordedMessage notice = LastOf(field, WM_LBUTTONDBLCLK, &clicks);
    EXPECT_EQ(1, clicks);
    EXPECT_EQ(0u, notice.wParam);
    EXPECT_EQ(MAKELPARAM(centre.x, centre.y), notice.lParam) << "in screen coordinates";
    Click(plain, POINT{10, 12}, false, &outside);
    LastOf(field, WM_LBUTTONDBLCLK, &clicks);
    EXPECT_EQ(1, clicks) << "released outside: no click";

    HWND owned = KxSetEditBtn(addEdit(kEditId + 1, 100), 300, nullptr, EBA_OWNID, nullptr);
    ClickCentre(owned);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(300));
    EXPECT_EQ(reinterpret_cast<LPARAM>(owned), host->messages(WM_COMMAND).back().lParam);
    EnableWindow(owned, FALSE);
    SendMessageW(owned, WM_LBUTTONDOWN, 0, 0);
    SendMessageW(owned, WM_LBUTTONUP, 0, 0);
    EXPECT_EQ(1u, commandsFrom(300).size()) << "disabled";

    // Inside the host, the point comes in the host's client coordinates.
    HWND third = addEdit(kEditId + 2, 140);
    kvtest::MessageRecorder thirdField(third);
    ClickCentre(KxSetEditBtn(third, 0, nullptr, EBA_INSIDE, nullptr));
    ReleaseCapture();
    EXPECT_EQ(MAKELPARAM(180 + 10, 12), LastOf(thirdField, WM_LBUTTONDBLCLK).lParam);
    DestroyWindow(third);
    DestroyWindow(edit);
}

TEST_F(Button, RightClicksWhereAsked) {
    kvtest::MessageRecorder field(edit);
    HWND plain = KxSetEditBtn(edit, 0, nullptr, EBA_RCLICK, nullptr);
    POINT outside = {30, -30};
    Click(plain, POINT{10, 12}, true, &outside);
    ReleaseCapture();
    int clicks = 0;
    kvtest::RecordedMessage notice = LastOf(field, WM_LBUTTONDBLCLK, &clicks);
    EXPECT_EQ(1, clicks) << "no hit test for the right button";
    EXPECT_EQ(static_cast<WPARAM>(MK_RBUTTON), notice.wParam);
    EXPECT_EQ(0, notice.lParam);

    HWND owned = KxSetEditBtn(addEdit(kEditId + 1, 100), 300, nullptr, EBA_OWNID | EBA_RCLICK, nullptr);
    HWND silent = KxSetEditBtn(addEdit(kEditId + 2, 140), 301, nullptr, EBA_OWNID, nullptr);
    ClickCentre(owned, true);
    ClickCentre(silent, true);
    EXPECT_EQ(std::vector<WPARAM>{WM_RBUTTONUP}, commandsFrom(300));
    EXPECT_TRUE(commandsFrom(301).empty()) << "without EBA_RCLICK";
    DestroyWindow(edit);
}

TEST_F(Button, SpaceAndTheClearButtonsMnemonic) {
    SetFocus(KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_TABSTOP, nullptr));
    PressKeys({}, VK_SPACE);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(300));

    HWND field = addEdit(kEditId + 1, 100, L"Ada Berger");
    HWND clear = KxSetEditBtn(field, 310, nullptr, EBA_OWNID | EBA_TABSTOP | EBA_CLEAR, nullptr);
    SetFocus(clear);
    PressKeys({VK_MENU}, 'X');
    EXPECT_EQ(L"Ada Berger", TextOf(field)) << "not its mnemonic";
    PressKeys({VK_MENU}, 'C');
    EXPECT_EQ(L"", TextOf(field));
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(310)) << "the field's parent hears of it";
    SetWindowTextW(field, L"Carl Dorn");
    ClickCentre(clear);
    EXPECT_EQ(L"", TextOf(field));
}

// Pixels the button computes: the centred picture, transparent where light grey, greyscale while
// disabled; the pressed face; a flat face in its colour (black included).
TEST_F(Button, Painting) {
    HWND button = KxSetEditBtn(edit, 300, RedSquare(), EBA_OWNID, nullptr);
    HWND bare = KxSetEditBtn(addEdit(kEditId + 1, 100), 301, nullptr, EBA_OWNID, nullptr);
    EXPECT_EQ(RGB(255, 0, 0), PixelOf(button, 10, 12)) << "picture at (2, 4)";
    EXPECT_EQ(PixelOf(bare, 4, 6), PixelOf(button, 4, 6));
    SendMessageW(button, WM_LBUTTONDOWN, 0, 0);
    COLORREF pressed = PixelOf(button, 0, 0);
    SendMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(-50, -50));
    EXPECT_NE(pressed, PixelOf(button, 0, 0));
    EnableWindow(button, FALSE);
    COLORREF grey = PixelOf(button, 10, 12);
    EXPECT_TRUE(GetRValue(grey) == GetGValue(grey) && GetGValue(grey) == GetBValue(grey)) << std::hex << grey;

    HWND flat = KxSetEditBtn(addEdit(kEditId + 2, 140), 302, RedSquare(), EBA_OWNID | EBA_FLAT, nullptr);
    EXPECT_TRUE(KxSetEditBtnBkColor(flat, RGB(0, 0, 0)));
    EXPECT_EQ(RGB(0, 0, 0), PixelOf(flat, 4, 6));
    EXPECT_EQ(RGB(255, 0, 0), PixelOf(flat, 10, 12));
    EXPECT_TRUE(KxSetEditBtnBkColor(flat, RGB(0, 128, 255)));
    EXPECT_EQ(RGB(0, 128, 255), PixelOf(flat, 1, 1));
}

TEST_F(Button, NullAndDestroyedWindows) {
    HWND gone = CreateWindowW(L"Edit", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    DestroyWindow(gone);
    RECT rect = {0, 0, 100, 20};
    for (HWND window : {static_cast<HWND>(nullptr), gone}) {
        EXPECT_EQ(nullptr, KxSetEditBtnEx(window, 1, nullptr, 0, &rect, 0));
        EXPECT_EQ(nullptr, KxSetEditBtn(window, 1, nullptr, EBA_OWNID, nullptr));
        EXPECT_EQ(nullptr, KxSetFormatBtn(window, 1, nullptr, 0, nullptr, 1));
        EXPECT_EQ(nullptr, KxSetDelFormatButton(window, window, 1));
        EXPECT_FALSE(KxSetEditBtnFormat_LoadSave(window, nullptr, 1, 2, 1, FALSE));
        EXPECT_FALSE(KxSetEditBtnFormatFype(window, 1));
        EXPECT_FALSE(KxSetEditBtnBkColor(window, 0));
        EXPECT_FALSE(KxSetDateBtn(nullptr, window, nullptr, 1, -1, 0));
        EXPECT_FALSE(KxShowEditBtn(window, SW_SHOW));
        EXPECT_FALSE(KxHideEditBtn(window));
        EXPECT_FALSE(KxMoveEditBtn(window, window, &rect));
        EXPECT_FALSE(KxDestrEditBtn(window));
        EXPECT_EQ(nullptr, KxGetEditBtn(window));
        EXPECT_EQ(nullptr, KxGetEditBtnParent(window));
        EXPECT_FALSE(KxIsEditBtn(window));
    }
    EXPECT_EQ(nullptr, KxSetDelFormatButton(edit, nullptr, 1));
    EXPECT_FALSE(KxShowEditBtn(edit, SW_SHOW)) << "not a date field";
    EXPECT_FALSE(KxIsEditBtn(edit));
}

}  // namespace
}  // namespace editbutton_test
