// The host side: Alt+Down and double clicks on a subclassed field, the format check on leaving
// it, format fields with their load, delete and save buttons, and date fields.
#include "editbutton_test.h"
#include <commctrl.h>
#include <string>
#include <vector>

namespace editbutton_test {
namespace {

using Field = EditButtonTest;

struct FormatCheck {
    static int result;
    static std::vector<std::pair<unsigned short, std::wstring>> calls;
    static int __stdcall check(KVSESSION* session, unsigned short type, const wchar_t* text) {
        EXPECT_EQ(nullptr, session);
        calls.emplace_back(type, text);
        return result;
    }
};
int FormatCheck::result;
std::vector<std::pair<unsigned short, std::wstring>> FormatCheck::calls;

TEST_F(Field, AltDownAndDoubleClickActAsAClick) {
    // Recorded behind the replacement: what the field's own procedure gets.
    kvtest::MessageRecorder own(edit);
    HWND button = KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_SUBCLASS, nullptr);
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(button), Prop(edit, L"hwndTool"));
    SetFocus(edit);
    PressKeys({VK_MENU}, VK_DOWN);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(300));
    EXPECT_EQ(0, CountKey(own, WM_SYSKEYDOWN, VK_DOWN)) << "swallowed";
    PressKeys({}, VK_DOWN);
    EXPECT_EQ(1, CountKey(own, WM_KEYDOWN, VK_DOWN)) << "a plain Down goes on";

    Click(edit, POINT{20, 10});
    Click(edit, POINT{20, 10});
    EXPECT_EQ(2u, commandsFrom(300).size());
    EXPECT_EQ(0, own.count(WM_LBUTTONDBLCLK));

    // The field's enabling and showing take the button along.
    EnableWindow(edit, FALSE);
    EXPECT_FALSE(IsWindowEnabled(button));
    ShowWindow(edit, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(button));
    DestroyWindow(edit);
}

TEST_F(Field, ButtonWithoutOwnIdReportsToTheFieldsOwnProcedureOnce) {
    kvtest::MessageRecorder own(edit);
    HWND button = KxSetEditBtn(edit, 0, nullptr, EBA_SUBCLASS, nullptr);
    ClickCentre(button);
    ReleaseCapture();  // the edit's word selection
    kvtest::PumpFor(50);
    EXPECT_EQ(1, own.count(WM_LBUTTONDBLCLK));
    SetFocus(edit);
    PressKeys({VK_MENU}, VK_DOWN);
    kvtest::PumpFor(50);
    ReleaseCapture();
    EXPECT_EQ(2, own.count(WM_LBUTTONDBLCLK)) << "Alt+Down: one click, no echo";
    DestroyWindow(edit);
}

TEST_F(Field, FormatCheckOnLeavingAChangedField) {
    Kx1SetFormatCheck(FormatCheck::check);
    FormatCheck::calls.clear();
    HWND other = addEdit(kEditId + 1, 100);
    HWND button = KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_SUBCLASS | EBA_FORMATCHECK, nullptr);
    KxSetEditBtnFormatFype(button, 42);

    SetFocus(edit);
    SetFocus(other);
    EXPECT_TRUE(FormatCheck::calls.empty()) << "nothing typed";
    SetFocus(edit);
    PressKeys({}, 'X');
    PressKeys({}, VK_BACK);
    SetFocus(other);
    EXPECT_TRUE(FormatCheck::calls.empty()) << "an empty field is not checked";

    FormatCheck::result = 0;
    SetFocus(edit);
    PressKeys({}, 'A');
    PressKeys({}, 'B');
    SetFocus(other);
    kvtest::PumpFor(30);
    ASSERT_EQ(1u, FormatCheck::calls.size());
    EXPECT_EQ(42, FormatCheck::calls[0].first);
    EXPECT_EQ(L"ab", FormatCheck::calls[0].second);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(300)) << "the chooser opens";
    EXPECT_EQ(1u, Prop(edit, L"Changed"));

    // Still changed: checked again, and a passing check clears the flag.
    FormatCheck::result = 1;
    SetFocus(edit);
    SetFocus(other);
    EXPECT_EQ(2u, FormatCheck::calls.size());
    EXPECT_EQ(1u, commandsFrom(300).size());
    EXPECT_EQ(0u, Prop(edit, L"Changed"));

    // Without memory for the text the check is skipped and the field stays changed.
    SetFocus(edit);
    PressKeys({}, 'C');
    KvText_FailAllocation(1);
    SetFocus(other);
    EXPECT_EQ(2u, FormatCheck::calls.size());
    EXPECT_EQ(1u, Prop(edit, L"Changed"));
}

TEST_F(Field, LoadSaveFieldInside) {
    SetWindowTextW(edit, L"Standard");
    ASSERT_TRUE(KxSetEditBtnFormat_LoadSave(edit, nullptr, 200, 210, 7, FALSE));
    HWND load = GetDlgItem(*host, 200), remove = GetDlgItem(*host, 1200), save = GetDlgItem(*host, 210);
    ASSERT_TRUE(load && remove && save);
    // Edit | load | delete | save, each 20 wide (the delete picture is 16 wide).
    EXPECT_EQ(editRect(140), RectInParent(edit));
    EXPECT_EQ((RECT{190, 40, 210, 64}), RectInParent(load));
    EXPECT_EQ((RECT{210, 40, 230, 64}), RectInParent(remove));
    EXPECT_EQ((RECT{230, 40, 250, 64}), RectInParent(save));
    EXPECT_EQ(L"kx2ImgButton", ClassOf(load));
    EXPECT_EQ(7u, Prop(load, L"FtType"));
    EXPECT_EQ(EBA_LOADFMT | EBA_FORMATCHECK | EBA_SUBCLASS | EBA_OWNID | EBA_TABSTOP, Prop(load, L"attr"));
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(remove), Prop(edit, L"hwndTool2"));
    EXPECT_TRUE(GetWindowLongW(edit, GWL_STYLE) & ES_READONLY);
    EXPECT_EQ(60, SendMessageW(edit, EM_GETLIMITTEXT, 0, 0));
    EXPECT_EQ(remove, GetWindow(load, GW_HWNDNEXT)) << "the delete button follows the load button";
    EXPECT_EQ(remove, KxSetFormatBtn(edit, 1200, nullptr, 0, nullptr, 7)) << "exists already";

    // Alt+Down reports the load button's command straight to the field's parent.
    SetFocus(edit);
    PressKeys({VK_MENU}, VK_DOWN);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(200));
    ClickCentre(remove);
    EXPECT_EQ(L"", WindowText(edit));
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(1200));
    // Hiding the field hides both of its tools.
    ShowWindow(edit, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(load) || IsWindowVisible(remove));
}

TEST_F(Field, LoadSaveFieldOutside) {
    ASSERT_TRUE(KxSetEditBtnFormat_LoadSave(edit, nullptr, 200, 210, 7, TRUE));
    // The edit loses only the load button's width to the delete button; the save button sits
    // right of the delete button.
    EXPECT_EQ(editRect(180), RectInParent(edit));
    EXPECT_EQ((RECT{230, 40, 250, 64}), RectInParent(GetDlgItem(*host, 200)));
    EXPECT_EQ((RECT{250, 40, 270, 64}), RectInParent(GetDlgItem(*host, 1200)));
    EXPECT_EQ((RECT{270, 40, 290, 64}), RectInParent(GetDlgItem(*host, 210)));
    HWND other = addEdit(kEditId + 1, 100);
    EXPECT_TRUE(KxSetEditBtnFormat_LoadSave(other, nullptr, 220, 0, 7, TRUE)) << "no save button";
}

TEST_F(Field, DateFieldNormalisesTypedDates) {
    ASSERT_TRUE(KxSetDateBtn(nullptr, *host, nullptr, kEditId, -1, EBA_TABSTOP));
    HWND button = GetDlgItem(*host, kEditId + 200);
    ASSERT_TRUE(button);
    EXPECT_EQ(L"Date (Alt+D)", TooltipOf(button));
    EXPECT_EQ(editRect(180), RectInParent(edit));
    HWND other = addEdit(kEditId + 1, 100);
    SetFocus(edit);
    SetWindowTextW(edit, L"1.2.25");
    SetFocus(other);
    EXPECT_EQ(L"01.02.2025", WindowText(edit));
    SetFocus(edit);
    SetWindowTextW(edit, L"31.02.2025");
    SetFocus(other);
    EXPECT_EQ(L"31.02.2025", WindowText(edit)) << "no date: left as typed";

    EXPECT_TRUE(KxShowEditBtn(edit, SW_HIDE));
    EXPECT_FALSE(IsWindowVisible(button));
    EnableWindow(edit, FALSE);
    EXPECT_FALSE(IsWindowEnabled(button));
}

TEST_F(Field, DateRangeSharesOneBitmapDeletedOnce) {
    HWND to = addEdit(kEditId + 1, 100);
    HBITMAP bitmap = RedSquare();
    ASSERT_TRUE(KxSetDateBtn(nullptr, *host, bitmap, kEditId, kEditId + 1, 0));
    HWND fromButton = GetDlgItem(*host, kEditId + 200), toButton = GetDlgItem(*host, kEditId + 201);
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(bitmap), Prop(fromButton, L"Bm"));
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(bitmap), Prop(toButton, L"Bm"));
    EXPECT_EQ(EBA_OWNID | EBA_NOTIFYEDIT, Prop(toButton, L"attr"));
    DestroyWindow(fromButton);
    EXPECT_FALSE(kvtest::IsGdiObject(bitmap));
    HBITMAP unrelated = RedSquare();
    DestroyWindow(toButton);
    EXPECT_TRUE(kvtest::IsGdiObject(unrelated)) << "the second button deletes nothing";
    DeleteObject(unrelated);
    DestroyWindow(to);
}

TEST_F(Field, DateFieldLeavesSubclassedControlsAlone) {
    ASSERT_TRUE(Kx1SetListBoxProc(edit));
    EXPECT_TRUE(KxSetDateBtn(nullptr, *host, nullptr, kEditId, -1, 0));
    EXPECT_EQ(nullptr, GetDlgItem(*host, kEditId + 200));
    EXPECT_FALSE(KxSetDateBtn(nullptr, *host, nullptr, -1, -1, 0));
    EXPECT_FALSE(KxSetDateBtn(nullptr, *host, nullptr, 555, -1, 0));
    DestroyWindow(edit);
}

// The record (then the subclass cell) of either field failing leaves both fields untouched.
TEST_F(Field, DateFieldWithoutMemoryChangesNothing) {
    HWND to = addEdit(kEditId + 1, 100);
    WNDPROC editProc = reinterpret_cast<WNDPROC>(GetWindowLongW(edit, GWL_WNDPROC));
    for (int failing = 1; failing <= 4; ++failing) {
        SCOPED_TRACE(failing);
        KvText_FailAllocation(failing);
        EXPECT_FALSE(KxSetDateBtn(nullptr, *host, nullptr, kEditId, kEditId + 1, 0));
        KvText_FailAllocation(0);
        for (HWND field : {edit, to}) {
            EXPECT_EQ(editProc, reinterpret_cast<WNDPROC>(GetWindowLongW(field, GWL_WNDPROC)));
            EXPECT_EQ(0, GetWindowLongW(field, GWL_USERDATA));
            EXPECT_EQ(kEditWidth, RectInParent(field).right - kEditLeft);
        }
        EXPECT_EQ(nullptr, GetDlgItem(*host, kEditId + 200));
        EXPECT_EQ(nullptr, GetDlgItem(*host, kEditId + 201));
    }
    EXPECT_TRUE(KxSetDateBtn(nullptr, *host, nullptr, kEditId, kEditId + 1, 0));
}

}  // namespace
}  // namespace editbutton_test
