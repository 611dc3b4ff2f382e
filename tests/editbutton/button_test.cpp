// The button itself: where each attribute puts it, what a click, a right click, Space or a clear
// button's mnemonic reports, how it paints, and the exports that find, hide, move and destroy it.
#include "editbutton_test.h"

namespace editbutton_test {
namespace {

using Button = EditButtonTest;

struct Geometry {
    UINT attr;
    int bitmapSize;        // 0: no bitmap
    RECT button;           // in its parent's client coordinates
    int hostWidth;
    bool insideHost;       // the button is the host's child
    int id;
};

TEST_F(Button, EachAttributeSizesAndPlacesTheButton) {
    const Geometry cases[] = {
        {0, 0, {230, 40, 250, 64}, 180, false, EDITBUTTON_ID},
        {0, 16, {230, 40, 250, 64}, 180, false, EDITBUTTON_ID},
        {0, 24, {222, 40, 250, 64}, 172, false, EDITBUTTON_ID},
        {EBA_OUTSIDE, 0, {250, 40, 270, 64}, 200, false, EDITBUTTON_ID},
        {EBA_OWNID, 0, {230, 40, 250, 64}, 180, false, 321},
        // At the right end of the host's client area (an edit draws its border inside it).
        {EBA_INSIDE, 0, {180, 0, 200, 24}, 200, true, EDITBUTTON_ID},
    };
    for (const Geometry& c : cases) {
        SCOPED_TRACE(testing::Message() << "attr " << c.attr << ", bitmap " << c.bitmapSize);
        HWND field = addEdit(kEditId + 1, kEditTop);
        HBITMAP bitmap = c.bitmapSize ? RedSquare(c.bitmapSize) : nullptr;
        HWND button = KxSetEditBtn(field, 321, bitmap, c.attr, nullptr);
        ASSERT_TRUE(button);
        EXPECT_EQ(c.insideHost ? field : host->handle(), GetParent(button));
        EXPECT_EQ(c.button, RectInParent(button));
        EXPECT_EQ(c.hostWidth, RectInParent(field).right - kEditLeft);
        EXPECT_EQ(c.id, GetDlgCtrlID(button));
        EXPECT_TRUE(KxIsEditBtn(button));
        DestroyWindow(field);  // the inside button goes with it
        DestroyWindow(button);
        EXPECT_FALSE(kvtest::IsGdiObject(bitmap)) << "the button deletes its bitmap";
    }
}

TEST_F(Button, StylesPropertiesAndOrder) {
    HWND other = addEdit(kEditId + 1, 100);
    HWND owned = KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_TABSTOP | EBA_DISABLED, nullptr);
    EXPECT_EQ(owned, GetWindow(edit, GW_HWNDNEXT)) << "right after its host in the tab order";
    EXPECT_EQ(WS_TABSTOP, GetWindowLongW(owned, GWL_STYLE) & (WS_TABSTOP | WS_CLIPSIBLINGS));
    EXPECT_FALSE(IsWindowEnabled(owned));
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(host->handle()), Prop(owned, L"Parent"));
    EXPECT_EQ(EBA_OWNID | EBA_TABSTOP | EBA_DISABLED, Prop(owned, L"attr"));

    HWND flat = KxSetEditBtn(other, 301, nullptr, EBA_OWNID | EBA_NOTIFYEDIT | EBA_FLAT, nullptr);
    EXPECT_EQ(WS_CLIPSIBLINGS, GetWindowLongW(flat, GWL_STYLE) & (WS_TABSTOP | WS_CLIPSIBLINGS));
    EXPECT_EQ(L"", WindowText(flat));
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(other), Prop(flat, L"Parent")) << "EBA_NOTIFYEDIT";

    // A combo box's rectangle includes its list: the button takes the box's own height.
    HWND combo = host->createChild(L"ComboBox", L"", WS_VISIBLE | CBS_DROPDOWNLIST, 50, 140, 200, 200, 102);
    RECT given = {50, 140, 250, 340};
    HWND comboButton = KxSetEditBtn(combo, 0, nullptr, 0, &given);
    RECT comboRect = RectInParent(combo);
    EXPECT_EQ((RECT{230, 140, 250, 140 + comboRect.bottom - comboRect.top}), RectInParent(comboButton));
}

TEST_F(Button, CaptionsAndShortcutTooltips) {
    HWND clear = KxSetEditBtn(edit, 0, nullptr, EBA_CLEAR, nullptr);
    EXPECT_EQ(L"&Clear", WindowText(clear));
    EXPECT_EQ(L"Clear (Alt+C)", TooltipOf(clear));
    HWND field = addEdit(kEditId + 1, 100);
    HWND load = KxSetEditBtn(field, 400, nullptr, EBA_OWNID | EBA_LOADFMT, nullptr);
    EXPECT_EQ(L"kx2ImgButton", ClassOf(load));
    EXPECT_EQ(L"&Load format", WindowText(load));
    EXPECT_EQ(0x8040, GetWindowLongW(load, GWL_STYLE) & 0xFFFF);
    EXPECT_EQ(L"Load format (Alt+L)", TooltipOf(load));
    HWND save = KxSetEditBtn(field, 401, nullptr, EBA_OWNID | EBA_SAVEFMT, nullptr);
    EXPECT_EQ(0x8080, GetWindowLongW(save, GWL_STYLE) & 0xFFFF);

    // A captionless tab stop takes its tooltip from the key table; without a row, none.
    const std::pair<int, const wchar_t*> keys[] = {{0, L"Open (Alt+O)"}, {2, L"Choose (Alt+C)"},
                                                   {3, L"Date (Alt+D)"}, {5, L""}};
    for (const auto& key : keys) {
        HWND button = KxSetEditBtnEx(field, 500 + key.first, nullptr, EBA_OWNID | EBA_TABSTOP, nullptr, key.first);
        EXPECT_EQ(key.second, TooltipOf(button)) << key.first;
    }
    HWND plain = KxSetEditBtnEx(field, 510, nullptr, EBA_OWNID, nullptr, 3);
    EXPECT_EQ(L"", TooltipOf(plain)) << "no tab stop, no tooltip";
}

TEST_F(Button, LanguageStringsFailingToLoad) {
    // An image button without its caption is not made, and the host keeps its size.
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxSetEditBtn(edit, 400, nullptr, EBA_OWNID | EBA_LOADFMT, nullptr));
    EXPECT_EQ(editRect(), RectInParent(edit));
    // A clear button is made without caption (and so without tooltip).
    KvText_FailAllocation(1);
    HWND clear = KxSetEditBtn(edit, 0, nullptr, EBA_CLEAR, nullptr);
    ASSERT_TRUE(clear);
    EXPECT_EQ(L"", WindowText(clear));
    EXPECT_EQ(L"", TooltipOf(clear));
    // The modifier's name missing: no tooltip either.
    HWND field = addEdit(kEditId + 1, 100);
    KvText_FailAllocation(2);
    HWND button = KxSetEditBtnEx(field, 0, nullptr, EBA_TABSTOP, nullptr, 3);
    ASSERT_TRUE(button);
    EXPECT_EQ(L"", TooltipOf(button));
}

TEST_F(Button, SecondCallReturnsTheButtonOrShowsItAgain) {
    HWND button = KxSetEditBtn(edit, 0, nullptr, 0, nullptr);
    EXPECT_EQ(button, KxSetEditBtn(edit, 0, nullptr, 0, nullptr));
    EXPECT_EQ(editRect(180), RectInParent(edit)) << "the host shrinks once";

    EXPECT_TRUE(KxHideEditBtn(*host));
    EXPECT_FALSE(IsWindowVisible(button));
    EXPECT_EQ(editRect(), RectInParent(edit)) << "the width comes back";
    EXPECT_TRUE(KxHideEditBtn(*host)) << "already hidden";
    EXPECT_EQ(editRect(), RectInParent(edit));

    EXPECT_EQ(button, KxSetEditBtn(edit, 0, nullptr, 0, nullptr));
    EXPECT_TRUE(IsWindowVisible(button));
    EXPECT_EQ(editRect(180), RectInParent(edit));
}

TEST_F(Button, FindMoveAndDestroy) {
    HWND button = KxSetEditBtn(edit, 0, nullptr, 0, nullptr);
    EXPECT_EQ(button, KxGetEditBtn(edit));
    EXPECT_EQ(button, KxGetEditBtnParent(*host));

    RECT target = {20, 120, 320, 150};
    EXPECT_TRUE(KxMoveEditBtn(*host, edit, &target));
    EXPECT_EQ((RECT{20, 120, 300, 150}), RectInParent(edit));
    EXPECT_EQ((RECT{300, 120, 320, 150}), RectInParent(button));
    EXPECT_TRUE(KxMoveEditBtn(*host, edit, nullptr)) << "the host's own rectangle";
    EXPECT_EQ((RECT{20, 120, 280, 150}), RectInParent(edit));
    EXPECT_EQ((RECT{280, 120, 300, 150}), RectInParent(button));

    EXPECT_TRUE(KxDestrEditBtn(*host));
    EXPECT_FALSE(IsWindow(button));
    EXPECT_FALSE(KxDestrEditBtn(*host));
    EXPECT_FALSE(KxMoveEditBtn(*host, edit, &target));
    EXPECT_FALSE(KxHideEditBtn(*host));

    // An outside button keeps its host's size, yet moves onto the rectangle's right end.
    HWND outside = KxSetEditBtn(edit, 0, nullptr, EBA_OUTSIDE, nullptr);
    EXPECT_TRUE(KxMoveEditBtn(*host, edit, &target));
    EXPECT_EQ((RECT{20, 120, 280, 150}), RectInParent(edit));
    EXPECT_EQ((RECT{300, 120, 320, 150}), RectInParent(outside));
    EXPECT_TRUE(KxHideEditBtn(*host));
    EXPECT_EQ((RECT{20, 120, 280, 150}), RectInParent(edit)) << "nothing to give back";
}

// An edit takes a double click as the start of a word selection and captures the mouse until the
// button goes up; a host that hears the button's click gives the capture up again, as this does.
TEST_F(Button, LeftClicksInsideAndOutside) {
    kvtest::MessageRecorder field(edit);
    HWND plain = KxSetEditBtn(edit, 0, nullptr, 0, nullptr);
    ClickCentre(plain);
    ReleaseCapture();
    ASSERT_EQ(1, field.count(WM_LBUTTONDBLCLK));
    POINT centre = {10, 12};
    ClientToScreen(plain, &centre);
    kvtest::RecordedMessage notice = LastOf(field, WM_LBUTTONDBLCLK);
    EXPECT_EQ(0u, notice.wParam);
    EXPECT_EQ(MAKELPARAM(centre.x, centre.y), notice.lParam) << "in screen coordinates";

    POINT outside = {-30, 12};
    Click(plain, POINT{10, 12}, false, &outside);
    EXPECT_EQ(1, field.count(WM_LBUTTONDBLCLK)) << "released outside: no click";

    // Own identifier: a command to the container.
    HWND other = addEdit(kEditId + 1, 100);
    HWND owned = KxSetEditBtn(other, 300, nullptr, EBA_OWNID, nullptr);
    host->clear();
    ClickCentre(owned);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(300));
    EXPECT_EQ(reinterpret_cast<LPARAM>(owned), host->messages(WM_COMMAND).back().lParam);

    // Inside the host, the point arrives in the host's client coordinates.
    HWND third = addEdit(kEditId + 2, 140);
    kvtest::MessageRecorder thirdField(third);
    HWND inside = KxSetEditBtn(third, 0, nullptr, EBA_INSIDE, nullptr);
    ClickCentre(inside);
    ReleaseCapture();
    ASSERT_EQ(1, thirdField.count(WM_LBUTTONDBLCLK));
    EXPECT_EQ(MAKELPARAM(180 + 10, 12), LastOf(thirdField, WM_LBUTTONDBLCLK).lParam);

    // A disabled button ignores the mouse.
    EnableWindow(owned, FALSE);
    host->clear();
    SendMessageW(owned, WM_LBUTTONDOWN, 0, 0);
    SendMessageW(owned, WM_LBUTTONUP, 0, 0);
    EXPECT_TRUE(commandsFrom(300).empty());
    DestroyWindow(third);
    DestroyWindow(edit);
}

TEST_F(Button, RightClicksWhereAsked) {
    kvtest::MessageRecorder field(edit);
    HWND plain = KxSetEditBtn(edit, 0, nullptr, EBA_RCLICK, nullptr);
    POINT outside = {30, -30};
    Click(plain, POINT{10, 12}, true, &outside);
    ReleaseCapture();
    ASSERT_EQ(1, field.count(WM_LBUTTONDBLCLK)) << "no hit test for the right button";
    EXPECT_EQ(static_cast<WPARAM>(MK_RBUTTON), LastOf(field, WM_LBUTTONDBLCLK).wParam);
    EXPECT_EQ(0, LastOf(field, WM_LBUTTONDBLCLK).lParam);

    HWND owned = KxSetEditBtn(addEdit(kEditId + 1, 100), 300, nullptr, EBA_OWNID | EBA_RCLICK, nullptr);
    HWND silent = KxSetEditBtn(addEdit(kEditId + 2, 140), 301, nullptr, EBA_OWNID, nullptr);
    host->clear();
    ClickCentre(owned, true);
    ClickCentre(silent, true);
    EXPECT_EQ(std::vector<WPARAM>{WM_RBUTTONUP}, commandsFrom(300));
    EXPECT_TRUE(commandsFrom(301).empty()) << "without EBA_RCLICK";
    DestroyWindow(edit);
}

TEST_F(Button, SpaceAndTheClearButtonsMnemonic) {
    HWND owned = KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_TABSTOP, nullptr);
    SetFocus(owned);
    PressKeys({}, VK_SPACE);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(300));

    HWND field = addEdit(kEditId + 1, 100, L"Ada Berger");
    HWND clear = KxSetEditBtn(field, 310, nullptr, EBA_OWNID | EBA_TABSTOP | EBA_CLEAR, nullptr);
    SetFocus(clear);
    PressKeys({VK_MENU}, 'X');
    EXPECT_EQ(L"Ada Berger", WindowText(field)) << "not its mnemonic";
    PressKeys({VK_MENU}, 'C');
    EXPECT_EQ(L"", WindowText(field));
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(310)) << "the field's parent hears of it";
    SetWindowTextW(field, L"Carl Dorn");
    ClickCentre(clear);
    EXPECT_EQ(L"", WindowText(field));
    EXPECT_EQ(2u, commandsFrom(310).size());
}

// Pixels the button computes: the centred picture (transparent where light grey), its greyscale
// copy when disabled, the flat face colour and the pressed face.
TEST_F(Button, Painting) {
    HWND button = KxSetEditBtn(edit, 300, RedSquare(), EBA_OWNID, nullptr);
    HWND bare = KxSetEditBtn(addEdit(kEditId + 1, 100), 301, nullptr, EBA_OWNID, nullptr);
    EXPECT_EQ(RGB(255, 0, 0), PixelOf(button, 10, 12)) << "picture centred at (2, 4)";
    EXPECT_EQ(PixelOf(bare, 4, 6), PixelOf(button, 4, 6)) << "its light grey is transparent";

    SendMessageW(button, WM_LBUTTONDOWN, 0, 0);
    COLORREF pressedTopLeft = PixelOf(button, 0, 0);
    SendMessageW(button, WM_LBUTTONUP, 0, MAKELPARAM(-50, -50));
    EXPECT_NE(pressedTopLeft, PixelOf(button, 0, 0)) << "raised and sunken edges differ";

    EnableWindow(button, FALSE);
    COLORREF grey = PixelOf(button, 10, 12);
    EXPECT_TRUE(GetRValue(grey) == GetGValue(grey) && GetGValue(grey) == GetBValue(grey)) << std::hex << grey;
    EXPECT_EQ(PixelOf(bare, 4, 6), PixelOf(button, 4, 6));

    HWND flat = KxSetEditBtn(addEdit(kEditId + 2, 140), 302, RedSquare(), EBA_OWNID | EBA_FLAT, nullptr);
    EXPECT_TRUE(KxSetEditBtnBkColor(flat, RGB(0, 0, 0)));
    EXPECT_EQ(RGB(0, 0, 0), PixelOf(flat, 1, 1)) << "black is a colour, not a missing property";
    EXPECT_EQ(RGB(255, 0, 0), PixelOf(flat, 10, 12));
    EXPECT_EQ(RGB(0, 0, 0), PixelOf(flat, 4, 6));
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

TEST(EditButtonExports, PlainNames) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"KxSetEditBtnEx", "KxSetEditBtn", "KxSetFormatBtn", "KxSetDelFormatButton",
                             "KxSetEditBtnFormat_LoadSave", "KxSetEditBtnFormatFype", "KxSetEditBtnBkColor",
                             "KxSetDateBtn", "KxShowEditBtn", "KxHideEditBtn", "KxMoveEditBtn",
                             "KxDestrEditBtn", "KxGetEditBtn", "KxGetEditBtnParent", "KxIsEditBtn"})
        EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

}  // namespace
}  // namespace editbutton_test
