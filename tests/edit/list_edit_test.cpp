// Editing list cells in place, driven by real keys and clicks: where the editor stands, what the
// parent is told when it commits or cancels, and the walk across cells and rows with Tab,
// Shift+Tab and the arrows.
#include "edit_fixture.h"
#include "kvkit_core.h"

namespace {

RECT subItemRect(HWND list, int row, int column, int part = LVIR_BOUNDS) {
    RECT rect = {};
    ListView_GetSubItemRect(list, row, column, part, &rect);
    return rect;
}

TEST_F(EditTest, ListEditorLiesOverTheCellAndCommitsOrCancels) {
    HWND editor = KxListView_SetEdit(list, nullptr, 1, 1, 0, -1, nullptr, 0);
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor, listEditor());
    EXPECT_EQ(editor, GetFocus());
    EXPECT_EQ(L"Edit", classOf(editor));
    EXPECT_EQ(L"Fulda", textOf(editor));
    DWORD start = 9, end = 0;
    SendMessageW(editor, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(0u, start);
    EXPECT_EQ(5u, end);
    EXPECT_EQ(SendMessageW(list, WM_GETFONT, 0, 0), SendMessageW(editor, WM_GETFONT, 0, 0));
    EXPECT_EQ(static_cast<UINT>(LVIS_SELECTED | LVIS_FOCUSED), ListView_GetItemState(list, 1, LVIS_SELECTED | LVIS_FOCUSED));
    // Four pixels into the cell, three narrower than the column, as high as the row.
    RECT row = subItemRect(list, 1, 0), place = placeOf(editor);
    EXPECT_EQ(row.left + 120 + 4, place.left);
    EXPECT_EQ(100 - 3, place.right - place.left);
    EXPECT_EQ(row.top, place.top);
    EXPECT_EQ(row.bottom, place.bottom);

    type(L"Kiel");
    press(VK_RETURN);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(static_cast<UINT>(LVN_ENDLABELEDITW), log[0].code);
    EXPECT_EQ(1, log[0].row);
    EXPECT_EQ(1, log[0].column);
    EXPECT_EQ(L"Kiel", log[0].text);
    EXPECT_EQ(4, log[0].length);
    EXPECT_EQ(502, log[0].value);
    EXPECT_EQ(static_cast<WPARAM>(kListId), host->messages(WM_NOTIFY).back().wParam);
    EXPECT_EQ(nullptr, listEditor());
    EXPECT_EQ(list, GetFocus());
    EXPECT_EQ(L"Kiel", cell(1, 1));

    // Column 0 starts a pixel left of the label and ends a pixel short of the column. Escape
    // reports a null text.
    editor = KxListView_SetEdit(list, nullptr, 2, 0, 0, -1, nullptr, 0);
    EXPECT_EQ(subItemRect(list, 2, 0, LVIR_LABEL).left - 1, placeOf(editor).left);
    EXPECT_EQ(120 - 1, placeOf(editor).right);
    type(L"Nobody");
    press(VK_ESCAPE);
    ASSERT_EQ(2u, log.size());
    EXPECT_FALSE(log[1].hasText);
    EXPECT_EQ(0, log[1].length);
    EXPECT_EQ(503, log[1].value);
    EXPECT_EQ(L"Haas AG", cell(2, 0));
    EXPECT_EQ(nullptr, listEditor());
}

TEST_F(EditTest, TabShiftTabAndArrowsAskForNeighbouringCellsAndWrap) {
    KxListView_SetEdit(list, nullptr, 2, 1, 0, -1, nullptr, 0);
    type(L"Celle");
    press(VK_TAB);           // to column 2
    type(L"41");
    press(VK_TAB);           // from the last column to column 0
    pressWithShift(VK_TAB);  // from column 0 back to the last column
    press(VK_DOWN);          // to row 3
    press(VK_DOWN);          // from the last row to row 0
    press(VK_UP);            // from row 0 to the last row
    press(VK_ESCAPE);
    // Each request comes first (0); the parent's new edit then ends the open one (1).
    std::vector<std::vector<int>> walk;
    for (const EditNote& note : log)
        walk.push_back({note.code == static_cast<UINT>(LVN_ENDLABELEDITW), note.row, note.column, note.hasText});
    EXPECT_EQ((std::vector<std::vector<int>>{{0, 2, 2, 0}, {1, 2, 1, 1}, {0, 2, 0, 0}, {1, 2, 2, 1},
                                             {0, 2, 2, 0}, {1, 2, 0, 1}, {0, 3, 2, 0}, {1, 2, 2, 1},
                                             {0, 0, 2, 0}, {1, 3, 2, 1}, {0, 3, 2, 0}, {1, 0, 2, 1},
                                             {1, 3, 2, 0}}),
              walk);
    EXPECT_EQ(L"Celle", cell(2, 1));
    EXPECT_EQ(L"41", cell(2, 2));
    EXPECT_EQ(L"Haas AG", cell(2, 0));  // committed unchanged

    // Without a parent that follows, a request changes nothing.
    followRequests = false;
    HWND editor = KxListView_SetEdit(list, nullptr, 1, 2, 0, -1, nullptr, 0);
    log.clear();
    press(VK_DOWN);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(2, log[0].row);
    EXPECT_EQ(editor, listEditor());
}

TEST_F(EditTest, AnotherEditCommitsTheOpenOneAndHiddenCellsScrollIntoView) {
    HWND first = KxListView_SetEdit(list, nullptr, 0, 0, 0, -1, nullptr, 0);
    type(L"Berg KG");
    HWND second = KxListView_SetEdit(list, nullptr, 3, 1, 0, -1, nullptr, 0);
    EXPECT_FALSE(IsWindow(first));
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(L"Berg KG", log[0].text);
    EXPECT_EQ(second, GetFocus());
    EXPECT_EQ(L"Jena", textOf(second));

    // A cell right of the visible part: the list scrolls so that the editor starts at the left.
    SetWindowPos(list, nullptr, 0, 0, 150, 160, SWP_NOMOVE | SWP_NOZORDER);
    KxListView_AddHeader(list, L"Notes", 3, 200);
    HWND editor = KxListView_SetEdit(list, nullptr, 1, 3, 0, -1, nullptr, 0);
    EXPECT_EQ(4, placeOf(editor).left);
    EXPECT_EQ(-280, subItemRect(list, 1, 0).left);
}

TEST_F(EditTest, AFixedPrefixIsShownButNotEditedAndTheLimitHolds) {
    ListView_SetItemText(list, 0, 1, const_cast<wchar_t*>(L"(28) Bremen"));
    int plainLeft = placeOf(KxListView_SetEdit(list, nullptr, 0, 1, 0, -1, nullptr, 0)).left;
    HWND editor = KxListView_SetEditEx(list, nullptr, 0, 1, 0, 8, nullptr, 0, 5);
    EXPECT_EQ(L"Bremen", textOf(editor));
    HDC dc = GetDC(list);
    HGDIOBJ old = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(list, WM_GETFONT, 0, 0)));
    SIZE prefix;
    GetTextExtentPoint32W(dc, L"(28) ", 5, &prefix);
    SelectObject(dc, old);
    ReleaseDC(list, dc);
    EXPECT_EQ(plainLeft + prefix.cx + 2, placeOf(editor).left);
    press(VK_END);
    type(L"-Nord");  // 8 characters at most
    press(VK_RETURN);
    EXPECT_EQ(L"Bremen-N", log.back().text);  // the parent puts the prefix back if it wants it
    // A prefix longer than the text leaves nothing to edit.
    EXPECT_EQ(L"", textOf(KxListView_SetEditEx(list, nullptr, 1, 1, 0, -1, nullptr, 0, 50)));
}

std::vector<std::wstring> g_fillCalls;

int __stdcall fillCities(HWND editor, int row, int column, const wchar_t* text, LPARAM user) {
    g_fillCalls.push_back(std::to_wstring(row) + L"," + std::to_wstring(column) + L"," + text + L"," +
                          std::to_wstring(user));
    for (const wchar_t* city : {L"Bremen", L"Fulda", L"Hameln", L"Jena"})
        SendMessageW(editor, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(city));
    SendMessageW(editor, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
    return 0;
}

TEST_F(EditTest, DropDownListsAndDoubleClicks) {
    g_fillCalls.clear();
    HWND editor = KxListView_SetEdit(list, nullptr, 1, 1, KX_LISTEDIT_DROPDOWN, 2, fillCities, 77);
    EXPECT_EQ(L"ComboBox", classOf(editor));
    EXPECT_EQ(std::vector<std::wstring>{L"1,1,Fulda,77"}, g_fillCalls);
    EXPECT_EQ(editor, GetFocus());
    type(L"h");  // picks the entry by its letter
    press(VK_RETURN);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(L"Hameln", log[0].text);
    EXPECT_EQ(6, log[0].length);
    EXPECT_EQ(2, log[0].image);
    // Nothing selected: an empty text and index -1.
    KxListView_SetEdit(list, nullptr, 0, 1, KX_LISTEDIT_DROPDOWN, 0, nullptr, 0);
    press(VK_RETURN);
    EXPECT_TRUE(log[1].hasText && log[1].text.empty());
    EXPECT_EQ(-1, log[1].image);

    // A double click in an edit box is swallowed, and reported with the end.
    editor = KxListView_SetEdit(list, nullptr, 0, 1, 0, -1, nullptr, 0);
    doubleClick(editor, 6, 6);
    EXPECT_EQ(editor, listEditor());
    press(VK_RETURN);
    EXPECT_EQ(1 + KX_LISTEDIT_DOUBLECLICKED, log[2].column);
    // The double-click style ends the edit. A click on a drop-down list opens its list, which
    // takes the second click, so the double click comes as the system delivers it.
    editor = KxListView_SetEdit(list, nullptr, 2, 1, KX_EDIT_DOUBLECLICK_ENDS, -1, fillCities, 0);
    PostMessageW(editor, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(6, 6));
    kvtest::PumpMessages();
    ASSERT_EQ(4u, log.size());
    EXPECT_EQ(1 + KX_LISTEDIT_DOUBLECLICKED, log[3].column);
    EXPECT_EQ(L"Hameln", log[3].text);
    EXPECT_EQ(nullptr, listEditor());
}

TEST_F(EditTest, EditorsAndTheEnterKeyProcWantTheirKeysInDialogs) {
    HWND editor = KxListView_SetEdit(list, nullptr, 0, 0, 0, -1, nullptr, 0);
    EXPECT_EQ(DLGC_WANTALLKEYS, SendMessageW(editor, WM_GETDLGCODE, 0, 0));
    press(VK_ESCAPE);
    // A list view in a dialog with a default button: Enter goes to the list, not to the button.
    HWND ok = host->createChild(L"Button", L"OK", WS_VISIBLE | BS_DEFPUSHBUTTON, 300, 200, 60, 24, IDOK);
    ASSERT_TRUE(Kx1SetSubProc(list, KxListView_GetEnterKeyProc));
    kvtest::MessageRecorder keys(list);
    MSG enter = {list, WM_KEYDOWN, VK_RETURN, 1, 0, {0, 0}};
    MSG space = {list, WM_KEYDOWN, VK_SPACE, 1, 0, {0, 0}};
    LRESULT own = SendMessageW(list, WM_GETDLGCODE, VK_SPACE, reinterpret_cast<LPARAM>(&space));
    EXPECT_EQ(0, own & DLGC_WANTALLKEYS);
    EXPECT_EQ(own | DLGC_WANTALLKEYS, SendMessageW(list, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&enter)));
    SetFocus(list);
    host->clear();
    EXPECT_TRUE(IsDialogMessageW(*host, &enter));
    EXPECT_EQ(0, host->count(WM_COMMAND));
    EXPECT_EQ(1, keys.count(WM_KEYDOWN));
    keys.detach();
    DestroyWindow(ok);
}

}  // namespace
