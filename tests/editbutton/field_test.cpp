// The host side: Alt+Down and double clicks on a subclassed field, the format check on leaving
// it, format fields with their load, delete and save buttons, and date fields.
#include "editbutton_test.h"
#include <vector>

namespace editbutton_test {
namespace {

using Field = EditButtonTest;

int g_checkResult;
std::vector<std::pair<unsigned short, std::wstring>> g_checks;

int __stdcall formatCheck(KVSESSION* session, unsigned short type, const wchar_t* text) {
    EXPECT_EQ(nullptr, session);
    g_checks.emplace_back(type, text);
    return g_checkResult;
}

TEST_F(Field, AltDownAndDoubleClickActAsAClick) {
    kvtest::MessageRecorder own(edit);  // behind the replacement: what the edit's own procedure gets
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_SUBCLASS, nullptr)) << "no subclass cell";
    EXPECT_EQ(nullptr, GetDlgItem(*host, 300));
    EXPECT_EQ(editRect(), RectInParent(edit));
    HWND button = KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_SUBCLASS, nullptr);
    EXPECT_EQ(reinterpret_cast<UINT_PTR>(button), Prop(edit, L"hwndTool"));
    SetFocus(edit);
    PressKeys({VK_MENU}, VK_DOWN);
    PressKeys({}, VK_DOWN);
    Click(edit, POINT{20, 10});
    Click(edit, POINT{20, 10});
    EXPECT_EQ(2u, commandsFrom(300).size());
    int count = 0;
    LastOf(own, WM_SYSKEYDOWN, &count, VK_DOWN);
    EXPECT_EQ(0, count) << "Alt+Down swallowed";
    LastOf(own, WM_KEYDOWN, &count, VK_DOWN);
    EXPECT_EQ(1, count) << "a plain Down goes on";
    LastOf(own, WM_LBUTTONDBLCLK, &count);
    EXPECT_EQ(0, count);

    EnableWindow(edit, FALSE);
    EXPECT_FALSE(IsWindowEnabled(button));
    ShowWindow(edit, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(button));
    DestroyWindow(edit);

    // Without its own identifier the button reports to the field's own procedure, once.
    edit = addEdit(kEditId, kEditTop);
    kvtest::MessageRecorder second(edit);
    ClickCentre(KxSetEditBtn(edit, 0, nullptr, EBA_SUBCLASS, nullptr));
    SetFocus(edit);
    PressKeys({VK_MENU}, VK_DOWN);
    kvtest::PumpFor(50);
    ReleaseCapture();
    LastOf(second, WM_LBUTTONDBLCLK, &count);
    EXPECT_EQ(2, count);
    DestroyWindow(edit);
}

TEST_F(Field, FormatCheckOnLeavingAChangedField) {
    Kx1SetFormatCheck(formatCheck);
    g_checks.clear();
    HWND other = addEdit(kEditId + 1, 100);
    KxSetEditBtnFormatFype(KxSetEditBtn(edit, 300, nullptr, EBA_OWNID | EBA_SUBCLASS | EBA_FORMATCHECK, nullptr), 42);
    SetFocus(edit);
    SetFocus(other);
    SetFocus(edit);
    PressKeys({}, 'X');
    PressKeys({}, VK_BACK);
    SetFocus(other);
    EXPECT_TRUE(g_checks.empty()) << "nothing typed, then an empty field";

    g_checkResult = 0;
    SetFocus(edit);
    PressKeys({}, 'A');
    SetFocus(other);
    kvtest::PumpFor(30);
    ASSERT_EQ(1u, g_checks.size());
    EXPECT_EQ(42, g_checks[0].first);
    EXPECT_EQ(L"a", g_checks[0].second);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(300)) << "the chooser opens";
    EXPECT_EQ(1u, Prop(edit, L"Changed"));

    g_checkResult = 1;
    SetFocus(edit);
    SetFocus(other);
    EXPECT_EQ(2u, g_checks.size()) << "still changed";
    EXPECT_EQ(0u, Prop(edit, L"Changed"));
    EXPECT_EQ(1u, commandsFrom(300).size());

    // Without memory for the text the check is skipped and the field stays changed.
    SetFocus(edit);
    PressKeys({}, 'C');
    KvText_FailAllocation(1);
    SetFocus(other);
    EXPECT_EQ(2u, g_checks.size());
    EXPECT_EQ(1u, Prop(edit, L"Changed"));
}

TEST_F(Field, LoadSaveFields) {
    SetWindowTextW(edit, L"Standard");
    ASSERT_TRUE(KxSetEditBtnFormat_LoadSave(edit, nullptr, 200, 210, 7, FALSE));
    HWND load = GetDlgItem(*host, 200), remove = GetDlgItem(*host, 1200), save = GetDlgItem(*host, 210);
    // Edit | load | delete | save, each 20 wide (the delete picture is 16 wide).
    EXPECT_EQ(editRect(140), RectInParent(edit));
    EXPECT_EQ((RECT{190, 40, 210, 64}), RectInParent(load));
    EXPECT_EQ((RECT{210, 40, 230, 64}), RectInParent(remove));
    EXPECT_EQ((RECT{230, 40, 250, 64}), RectInParent(save));
    EXPECT_EQ(remove, GetWindow(load, GW_HWNDNEXT));
    EXPECT_EQ(7u, Prop(load, L"FtType"));
    EXPECT_EQ(EBA_LOADFMT | EBA_FORMATCHECK | EBA_SUBCLASS | EBA_OWNID | EBA_TABSTOP, Prop(load, L"attr"));
    EXPECT_TRUE(GetWindowLongW(edit, GWL_STYLE) & ES_READONLY);
    EXPECT_EQ(60, SendMessageW(edit, EM_GETLIMITTEXT, 0, 0));
    EXPECT_EQ(remove, KxSetFormatBtn(edit, 1200, nullptr, 0, nullptr, 7)) << "exists already";

    SetFocus(edit);
    PressKeys({VK_MENU}, VK_DOWN);
    EXPECT_EQ(std::vector<WPARAM>{0}, commandsFrom(200)) << "the load button's command, sent";
    ClickCentre(remove);
    EXPECT_EQ(L"", TextOf(edit));
    ShowWindow(edit, SW_HIDE);
    EXPECT_FALSE(IsWindowVisible(load) || IsWindowVisible(remove)) << "both tools go with the field";

    // Outside: the edit gives up only the width of the delete button's move.
    HWND other = addEdit(kEditId + 1, 100);
    ASSERT_TRUE(KxSetEditBtnFormat_LoadSave(other, nullptr, 220, 230, 7, TRUE));
    EXPECT_EQ(180, RectInParent(other).right - kEditLeft);
    EXPECT_EQ((RECT{230, 100, 250, 124}), RectInParent(GetDlgItem(*host, 220)));
    EXPECT_EQ((RECT{250, 100, 270, 124}), RectInParent(GetDlgItem(*host, 1220)));
    EXPECT_EQ((RECT{270, 100, 290, 124}), RectInParent(GetDlgItem(*host, 230)));
    EXPECT_TRUE(KxSetEditBtnFormat_LoadSave(addEdit(kEditId + 2, 140), nullptr, 240, 0, 7, TRUE));
}

TEST_F(Field, DateFields) {
    ASSERT_TRUE(KxSetDateBtn(nullptr, *host, nullptr, kEditId, -1, EBA_TABSTOP | EBA_SUBCLASS));
    HWND button = GetDlgItem(*host, kEditId + 200);
    EXPECT_EQ(L"Date (Alt+D)", TextOf(button, true));
    EXPECT_EQ(editRect(180), RectInParent(edit));
    HWND other = addEdit(kEditId + 1, 100);
    for (const auto& typed : {std::make_pair(L"1.2.25", L"01.02.2025"), std::make_pair(L"31.02.2025", L"31.02.2025")}) {
        SetFocus(edit);
        SetWindowTextW(edit, typed.first);
        SetFocus(other);
        EXPECT_EQ(typed.second, TextOf(edit));
    }
    EXPECT_TRUE(KxShowEditBtn(edit, SW_HIDE));
    EXPECT_FALSE(IsWindowVisible(button));
    EnableWindow(edit, FALSE);
    EXPECT_FALSE(IsWindowEnabled(button));

    // Controls subclassed by anyone are left alone; a missing control fails.
    ASSERT_TRUE(Kx1SetListBoxProc(other));
    EXPECT_TRUE(KxSetDateBtn(nullptr, *host, nullptr, kEditId + 1, -1, 0));
    EXPECT_EQ(nullptr, GetDlgItem(*host, kEditId + 201));
    EXPECT_FALSE(KxSetDateBtn(nullptr, *host, nullptr, -1, -1, 0));
    EXPECT_FALSE(KxSetDateBtn(nullptr, *host, nullptr, 555, -1, 0));
    DestroyWindow(other);
}

TEST_F(Field, DateRangeSharesOneBitmapDeletedOnce) {
    HWND to = addEdit(kEditId + 1, 100);
    HBITMAP bitmap = RedSquare();
    ASSERT_TRUE(KxSetDateBtn(nullptr, *host, bitmap, kEditId, kEditId + 1, 0));
    HWND fromButton = GetDlgItem(*host, kEditId + 200), toButton = GetDlgItem(*host, kEditId + 201);
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

// The record, then the subclass cell, of either field failing leaves both fields untouched.
TEST_F(Field, DateFieldWithoutMemoryChangesNothing) {
    HWND to = addEdit(kEditId + 1, 100);
    LONG editProc = GetWindowLongW(edit, GWL_WNDPROC);
    for (int failing = 1; failing <= 4; ++failing) {
        SCOPED_TRACE(failing);
        KvText_FailAllocation(failing);
        EXPECT_FALSE(KxSetDateBtn(nullptr, *host, nullptr, kEditId, kEditId + 1, 0));
        KvText_FailAllocation(0);
        for (HWND field : {edit, to}) {
            EXPECT_EQ(editProc, GetWindowLongW(field, GWL_WNDPROC));
            EXPECT_EQ(0, GetWindowLongW(field, GWL_USERDATA));
            EXPECT_EQ(kEditWidth, RectInParent(field).right - kEditLeft);
        }
        EXPECT_EQ(nullptr, GetDlgItem(*host, kEditId + 200));
    }
    EXPECT_TRUE(KxSetDateBtn(nullptr, *host, nullptr, kEditId, kEditId + 1, 0));
}

}  // namespace
}  // namespace editbutton_test
