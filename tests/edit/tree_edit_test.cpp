// Editing tree labels in place, and what every editor does with bad arguments, destroyed windows
// and memory that runs out.
#include "edit_fixture.h"

namespace {

RECT labelRect(HWND tree, HTREEITEM item) {
    RECT rect = {};
    TreeView_GetItemRect(tree, item, &rect, TRUE);
    return rect;
}

TEST_F(EditTest, TreeEditorCoversTheLabelMarksTheItemAndReports) {
    TreeView_SelectItem(tree, berg);
    HWND editor = KxTreeView_SetEdit(tree, nullptr, anna, 0, -1, nullptr, 0, 0);
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor, treeEditor());
    EXPECT_EQ(editor, GetFocus());
    EXPECT_EQ(L"Anna Berg", textOf(editor));
    // Selected and drop-highlighted, the caret left where it was.
    EXPECT_EQ(static_cast<UINT>(TVIS_SELECTED | TVIS_DROPHILITED),
              TreeView_GetItemState(tree, anna, TVIS_SELECTED | TVIS_DROPHILITED));
    EXPECT_EQ(berg, TreeView_GetSelection(tree));
    RECT label = labelRect(tree, anna), place = placeOf(editor);
    EXPECT_TRUE(EqualRect(&label, &place));
    type(L"Anna Ohm");
    press(VK_RETURN);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(static_cast<UINT>(TVN_ENDLABELEDITW), log[0].code);
    EXPECT_EQ(anna, log[0].item);
    EXPECT_EQ(L"Anna Ohm", log[0].text);
    EXPECT_EQ(8, log[0].length);
    EXPECT_EQ(11, log[0].value);
    EXPECT_EQ(static_cast<WPARAM>(kTreeId), host->messages(WM_NOTIFY).back().wParam);
    EXPECT_EQ(nullptr, treeEditor());
    EXPECT_EQ(tree, GetFocus());

    // A short label still gets 32 pixels; Escape reports a null text.
    TVITEMW data = {};
    data.mask = TVIF_TEXT | TVIF_HANDLE;
    data.hItem = lind;
    data.pszText = const_cast<wchar_t*>(L"L");
    TreeView_SetItem(tree, &data);
    editor = KxTreeView_SetEdit(tree, nullptr, lind, 0, -1, nullptr, 0, 0);
    EXPECT_EQ(labelRect(tree, lind).left, placeOf(editor).left);
    EXPECT_EQ(32, placeOf(editor).right - placeOf(editor).left);
    type(L"Lind AG");
    press(VK_ESCAPE);
    ASSERT_EQ(2u, log.size());
    EXPECT_FALSE(log[1].hasText);
    EXPECT_EQ(0, log[1].length);
    EXPECT_EQ(1002, log[1].value);

    // A fixed prefix and a text limit; a double click is swallowed without the double-click style.
    editor = KxTreeView_SetEdit(tree, nullptr, berg, 0, 4, nullptr, 0, 5);
    EXPECT_EQ(L"& Co", textOf(editor));
    EXPECT_GT(placeOf(editor).left, labelRect(tree, berg).left + 2);
    press(VK_END);
    type(L"KG");
    doubleClick(editor, 4, 4);
    EXPECT_EQ(editor, treeEditor());
    press(VK_RETURN);
    EXPECT_EQ(L"& Co", log[2].text);
}

std::vector<std::wstring> g_treeFills;

int __stdcall fillContacts(HWND editor, HTREEITEM, const wchar_t* text, LPARAM user) {
    g_treeFills.push_back(text);
    for (const wchar_t* name : {L"Anna Berg", L"Anna Ohm", L"Jens Ohm"})
        SendMessageW(editor, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
    SendMessageW(editor, CB_SETCURSEL, static_cast<WPARAM>(user), 0);
    return 0;
}

TEST_F(EditTest, TreeDropDownKeepsTheLabelHeightAndReportsTheEntry) {
    g_treeFills.clear();
    HWND editor = KxTreeView_SetEdit(tree, nullptr, anna, KX_TREEEDIT_DROPDOWN, -1, fillContacts, 2, 0);
    EXPECT_EQ(std::vector<std::wstring>{L"Anna Berg"}, g_treeFills);
    RECT label = labelRect(tree, anna), place = placeOf(editor);
    EXPECT_EQ(label.top, place.top);
    EXPECT_LE(place.bottom - place.top, 2 * (label.bottom - label.top));  // no room made for a list
    press(VK_RETURN);
    EXPECT_EQ(L"Jens Ohm", log.at(0).text);
    EXPECT_EQ(2, log.at(0).image);
    // The list style bit is not the tree's.
    EXPECT_EQ(L"Edit", classOf(KxTreeView_SetEdit(tree, nullptr, anna, KX_LISTEDIT_DROPDOWN, -1, fillContacts, 0, 0)));
    press(VK_ESCAPE);
}

TEST_F(EditTest, BadArgumentsAndWindowsGiveNull) {
    HWND destroyed = host->createChild(WC_LISTVIEWW, L"", LVS_REPORT, 0, 0, 10, 10, 9);
    DestroyWindow(destroyed);
    for (HWND bad : {static_cast<HWND>(nullptr), destroyed}) {
        EXPECT_EQ(nullptr, KxListView_SetEdit(bad, nullptr, 0, 0, 0, -1, nullptr, 0));
        EXPECT_EQ(nullptr, KxTreeView_SetEdit(bad, nullptr, berg, 0, -1, nullptr, 0, 0));
        EXPECT_EQ(0, KxListView_EditProc(bad, WM_CHAR, VK_RETURN, 0));
        EXPECT_EQ(0, KxTreeView_EditProc(bad, WM_KILLFOCUS, 0, 0));
        EXPECT_EQ(0, KxListView_GetEnterKeyProc(bad, WM_GETDLGCODE, 0, 0));
    }
    for (int outside : {-1, 4}) EXPECT_EQ(nullptr, KxListView_SetEdit(list, nullptr, outside, 0, 0, -1, nullptr, 0));
    for (int outside : {-1, 3}) EXPECT_EQ(nullptr, KxListView_SetEdit(list, nullptr, 0, outside, 0, -1, nullptr, 0));
    EXPECT_EQ(nullptr, KxTreeView_SetEdit(tree, nullptr, nullptr, 0, -1, nullptr, 0, 0));
    EXPECT_TRUE(log.empty());
    // A folded item is shown first.
    TreeView_Expand(tree, berg, TVE_COLLAPSE);
    EXPECT_TRUE(KxTreeView_SetEdit(tree, nullptr, anna, 0, -1, nullptr, 0, 0));
    EXPECT_TRUE(TreeView_GetItemState(tree, berg, TVIS_EXPANDED) & TVIS_EXPANDED);
    press(VK_ESCAPE);
}

TEST_F(EditTest, WithoutMemoryTheEditorWorksButReportsNothing) {
    // No record: a plain editor that stays when the focus leaves; the next edit clears it away.
    KvText_FailAllocation(1);
    HWND editor = KxListView_SetEdit(list, nullptr, 0, 1, 0, -1, nullptr, 0);
    ASSERT_TRUE(editor);
    EXPECT_EQ(L"Bremen", textOf(editor));
    press(VK_RETURN);
    SetFocus(list);
    EXPECT_TRUE(IsWindow(editor));
    KxListView_SetEdit(list, nullptr, 1, 1, 0, -1, nullptr, 0);
    EXPECT_FALSE(IsWindow(editor));
    press(VK_ESCAPE);
    EXPECT_EQ(1u, log.size());
    // No subclass: the record is not kept either.
    KvText_FailAllocation(2);
    editor = KxListView_SetEdit(list, nullptr, 2, 1, 0, -1, nullptr, 0);
    EXPECT_EQ(0, GetWindowLongPtrW(editor, GWLP_USERDATA));
    DestroyWindow(editor);

    // The tree: no label text, then no record, then no subclass.
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxTreeView_SetEdit(tree, nullptr, lind, 0, -1, nullptr, 0, 0));
    EXPECT_EQ(nullptr, treeEditor());
    for (int nth : {2, 3}) {
        KvText_FailAllocation(nth);
        editor = KxTreeView_SetEdit(tree, nullptr, lind, 0, -1, nullptr, 0, 0);
        EXPECT_EQ(L"Lind GmbH", textOf(editor));
        SetFocus(tree);
        DestroyWindow(editor);
    }
    EXPECT_EQ(1u, log.size());

    // A notification whose text cannot be copied carries a null text.
    KxListView_SetEdit(list, nullptr, 3, 1, 0, -1, nullptr, 0);
    KvText_FailAllocation(1);
    press(VK_RETURN);
    ASSERT_EQ(2u, log.size());
    EXPECT_FALSE(log[1].hasText);
    EXPECT_EQ(L"Jena", cell(3, 1));
}

TEST_F(EditTest, AnEditorDestroyedWithItsWindowReportsAtMostOnce) {
    // The editor itself: hiding it takes the focus away, which reports the edit.
    HWND editor = KxListView_SetEdit(list, nullptr, 0, 1, 0, -1, nullptr, 0);
    type(L"Emden");
    DestroyWindow(editor);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(L"Emden", log[0].text);
    EXPECT_EQ(list, GetFocus());
    // Its control, or the whole window: reported if the focus left first, never twice, and the
    // record is freed (the fixture counts the blocks).
    KxTreeView_SetEdit(tree, nullptr, lind, 0, -1, nullptr, 0, 0);
    DestroyWindow(tree);
    EXPECT_LE(log.size(), 2u);
    size_t before = log.size();
    KxListView_SetEdit(list, nullptr, 1, 0, 0, -1, nullptr, 0);
    host.reset();
    EXPECT_LE(log.size(), before + 1);
}

TEST(EditExports, ResolveByPlainName) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"KxListView_SetEdit", "KxListView_SetEditEx", "KxTreeView_SetEdit",
                             "KxListView_EditProc", "KxTreeView_EditProc", "KxListView_GetEnterKeyProc"})
        EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

}  // namespace
