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

TEST_F(EditTest, ListEditorLiesOverTheCellWithItsTextSelected) {
    HWND editor = KxListView_SetEdit(list, nullptr, 1, 1, 0, -1, nullptr, 0);
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor, listEditor());
    EXPECT_EQ(editor, GetFocus());
    wchar_t className[20];
    GetClassNameW(editor, className, 20);
    EXPECT_STREQ(L"Edit", className);
    EXPECT_EQ(L"Fulda", textOf(editor));
    DWORD start = 0, end = 0;
    SendMessageW(editor, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(0u, start);
    EXPECT_EQ(5u, end);
    EXPECT_EQ(SendMessageW(list, WM_GETFONT, 0, 0), SendMessageW(editor, WM_GETFONT, 0, 0));
    EXPECT_EQ(static_cast<UINT>(LVIS_SELECTED | LVIS_FOCUSED),
              ListView_GetItemState(list, 1, LVIS_SELECTED | LVIS_FOCUSED));
    // Four pixels into the cell, three narrower than the column, as high as the row.
    RECT row = subItemRect(list, 1, 0);
    RECT place = placeOf(editor);
    EXPECT_EQ(row.left + 120 + 4, place.left);
    EXPECT_EQ(100 - 3, place.right - place.left);
    EXPECT_EQ(row.top, place.top);
    EXPECT_EQ(row.bottom, place.bottom);

    // Column 0 starts a pixel left of the label and ends a pixel short of the column.
    editor = KxListView_SetEdit(list, nullptr, 2, 0, 0, -1, nullptr, 0);
    RECT labelRect = subItemRect(list, 2, 0, LVIR_LABEL);
    place = placeOf(editor);
    EXPECT_EQ(labelRect.left - 1, place.left);
    EXPECT_EQ(120 - 1, place.right);
    EXPECT_EQ(L"Haas AG", textOf(editor));
}

TEST_F(EditTest, TypingAndEnterCommitTheTextOnce) {
    KxListView_SetEdit(list, nullptr, 1, 1, 0, -1, nullptr, 0);
    type(L"Kiel");
    press(VK_RETURN);
    ASSERT_EQ(1u, log.size());
    const EditNote& note = log[0];
    EXPECT_EQ(static_cast<UINT>(LVN_ENDLABELEDITW), note.code);
    EXPECT_EQ(1, note.row);
    EXPECT_EQ(1, note.column);
    ASSERT_TRUE(note.hasText);
    EXPECT_EQ(L"Kiel", note.text);
    EXPECT_EQ(4, note.length);
    EXPECT_EQ(502, note.value);
    EXPECT_EQ(nullptr, listEditor());
    EXPECT_EQ(list, GetFocus());
    EXPECT_EQ(L"Kiel", cell(1, 1));
    // The notification carries the list as sender with its id.
    auto notifies = host->messages(WM_NOTIFY);
    EXPECT_EQ(static_cast<WPARAM>(kListId), notifies.back().wParam);
}

TEST_F(EditTest, EscapeCancelsWithANullText) {
    KxListView_SetEdit(list, nullptr, 0, 1, 0, -1, nullptr, 0);
    type(L"Nowhere");
    press(VK_ESCAPE);
    ASSERT_EQ(1u, log.size());
    EXPECT_FALSE(log[0].hasText);
    EXPECT_EQ(0, log[0].length);
    EXPECT_EQ(501, log[0].value);
    EXPECT_EQ(L"Bremen", cell(0, 1));
    EXPECT_EQ(nullptr, listEditor());
}

TEST_F(EditTest, TabAndShiftTabWalkAlongTheRowAndWrap) {
    KxListView_SetEdit(list, nullptr, 2, 1, 0, -1, nullptr, 0);
    type(L"Celle");
    press(VK_TAB);   // to column 2
    type(L"41");
    press(VK_TAB);   // from the last column to column 0
    pressWithShift(VK_TAB);  // from column 0 back to the last column
    press(VK_ESCAPE);
    // Each request comes first; the parent's new edit then ends the open one.
    std::vector<std::vector<int>> walk;
    for (const EditNote& note : log)
        walk.push_back({note.code == static_cast<UINT>(LVN_BEGINLABELEDITW) ? 0 : 1, note.row, note.column,
                        note.hasText});
    EXPECT_EQ((std::vector<std::vector<int>>{{0, 2, 2, 0}, {1, 2, 1, 1},
                                             {0, 2, 0, 0}, {1, 2, 2, 1},
                                             {0, 2, 2, 0}, {1, 2, 0, 1},
                                             {1, 2, 2, 0}}),
              walk);
    EXPECT_EQ(L"Celle", cell(2, 1));
    EXPECT_EQ(L"41", cell(2, 2));
    EXPECT_EQ(L"Haas AG", cell(2, 0));  // committed unchanged
}

TEST_F(EditTest, ArrowsAskForTheRowAboveOrBelowAndWrap) {
    KxListView_SetEdit(list, nullptr, 0, 2, 0, -1, nullptr, 0);
    press(VK_UP);    // row 0 -> the last row
    press(VK_DOWN);  // the last row -> row 0
    press(VK_DOWN);  // row 0 -> row 1
    std::vector<int> rows;
    for (const EditNote& note : notes(LVN_BEGINLABELEDITW)) {
        EXPECT_EQ(2, note.column);
        rows.push_back(note.row);
    }
    EXPECT_EQ((std::vector<int>{3, 0, 1}), rows);
    EXPECT_EQ(3u, notes(LVN_ENDLABELEDITW).size());
    HWND editor = listEditor();
    ASSERT_TRUE(editor);
    EXPECT_EQ(L"3", textOf(editor));
    EXPECT_EQ(static_cast<UINT>(LVIS_SELECTED), ListView_GetItemState(list, 1, LVIS_SELECTED));

    // Without a parent that follows, the request changes nothing.
    followRequests = false;
    log.clear();
    press(VK_DOWN);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(2, log[0].row);
    EXPECT_EQ(editor, listEditor());
}

TEST_F(EditTest, StartingAnotherEditCommitsTheOpenOneFirst) {
    HWND first = KxListView_SetEdit(list, nullptr, 0, 0, 0, -1, nullptr, 0);
    type(L"Berg KG");
    HWND second = KxListView_SetEdit(list, nullptr, 3, 1, 0, -1, nullptr, 0);
    EXPECT_FALSE(IsWindow(first));
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(0, log[0].row);
    EXPECT_EQ(L"Berg KG", log[0].text);
    EXPECT_EQ(second, listEditor());
    EXPECT_EQ(second, GetFocus());
    EXPECT_EQ(L"Jena", textOf(second));
}

TEST_F(EditTest, ACellOutsideTheVisiblePartIsScrolledToTheLeftEdge) {
    SetWindowPos(list, nullptr, 0, 0, 150, 160, SWP_NOMOVE | SWP_NOZORDER);
    KxListView_AddHeader(list, L"Notes", 3, 200);
    HWND editor = KxListView_SetEdit(list, nullptr, 1, 3, 0, -1, nullptr, 0);
    ASSERT_TRUE(editor);
    EXPECT_EQ(4, placeOf(editor).left);
    EXPECT_EQ(-280, subItemRect(list, 1, 0).left);  // scrolled by the columns before it
    EXPECT_GT(GetScrollPos(list, SB_HORZ), 0);
}

TEST_F(EditTest, AFixedPrefixIsShownButNotEdited) {
    ListView_SetItemText(list, 0, 1, const_cast<wchar_t*>(L"(28) Bremen"));
    HWND plain = KxListView_SetEdit(list, nullptr, 0, 1, 0, -1, nullptr, 0);
    int plainLeft = placeOf(plain).left;
    HWND editor = KxListView_SetEditEx(list, nullptr, 0, 1, 0, -1, nullptr, 0, 5);
    EXPECT_EQ(L"Bremen", textOf(editor));
    HDC dc = GetDC(list);
    HGDIOBJ old = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(list, WM_GETFONT, 0, 0)));
    SIZE prefix;
    GetTextExtentPoint32W(dc, L"(28) ", 5, &prefix);
    SelectObject(dc, old);
    ReleaseDC(list, dc);
    EXPECT_EQ(plainLeft + prefix.cx + 2, placeOf(editor).left);
    type(L"Bonn");
    press(VK_RETURN);
    EXPECT_EQ(L"Bonn", log.back().text);  // the parent puts the prefix back if it wants it
    // A prefix longer than the text leaves nothing to edit.
    editor = KxListView_SetEditEx(list, nullptr, 1, 1, 0, -1, nullptr, 0, 50);
    EXPECT_EQ(L"", textOf(editor));
}

TEST_F(EditTest, TheTextLimitHoldsWhatCanBeTyped) {
    KxListView_SetEdit(list, nullptr, 3, 2, 0, 3, nullptr, 0);
    press(VK_END);
    type(L"12345");
    press(VK_RETURN);
    EXPECT_EQ(L"712", log.back().text);
}

struct FillCall {
    HWND editor;
    int row, column;
    std::wstring text;
    LPARAM user;
};
std::vector<FillCall> g_fillCalls;

int __stdcall fillCities(HWND editor, int row, int column, const wchar_t* text, LPARAM user) {
    g_fillCalls.push_back({editor, row, column, text, user});
    for (const wchar_t* city : {L"Bremen", L"Fulda", L"Hameln", L"Jena"})
        SendMessageW(editor, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(city));
    SendMessageW(editor, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text));
    return 0;
}

TEST_F(EditTest, ADropDownListIsFilledByTheCallerAndReportsItsEntry) {
    g_fillCalls.clear();
    HWND editor = KxListView_SetEdit(list, nullptr, 1, 1, KX_LISTEDIT_DROPDOWN, 2, fillCities, 77);
    ASSERT_TRUE(editor);
    wchar_t className[20];
    GetClassNameW(editor, className, 20);
    EXPECT_STREQ(L"ComboBox", className);
    ASSERT_EQ(1u, g_fillCalls.size());
    EXPECT_EQ(editor, g_fillCalls[0].editor);
    EXPECT_EQ(1, g_fillCalls[0].row);
    EXPECT_EQ(1, g_fillCalls[0].column);
    EXPECT_EQ(L"Fulda", g_fillCalls[0].text);
    EXPECT_EQ(77, g_fillCalls[0].user);
    EXPECT_EQ(editor, GetFocus());
    // Typing a letter picks the entry; Enter commits its text and index.
    type(L"h");
    press(VK_RETURN);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(L"Hameln", log[0].text);
    EXPECT_EQ(6, log[0].length);
    EXPECT_EQ(2, log[0].image);

    // Nothing selected: an empty text and index -1.
    editor = KxListView_SetEdit(list, nullptr, 0, 1, KX_LISTEDIT_DROPDOWN, 0, nullptr, 0);
    press(VK_RETURN);
    ASSERT_EQ(2u, log.size());
    EXPECT_TRUE(log[1].hasText);
    EXPECT_EQ(L"", log[1].text);
    EXPECT_EQ(-1, log[1].image);
    EXPECT_EQ(nullptr, listEditor());
}

TEST_F(EditTest, ADoubleClickEndsOnlyTheDoubleClickStyleAndIsReported) {
    HWND editor = KxListView_SetEdit(list, nullptr, 0, 1, 0, -1, nullptr, 0);
    RECT inside;
    GetClientRect(editor, &inside);
    click(editor, 6, inside.bottom / 2, 2);
    EXPECT_EQ(editor, listEditor());  // swallowed: the edit goes on
    EXPECT_TRUE(log.empty());
    press(VK_RETURN);
    ASSERT_EQ(1u, log.size());
    EXPECT_EQ(1 + KX_LISTEDIT_DOUBLECLICKED, log[0].column);

    // A click on a drop-down list opens its list, which takes the second click: the double click
    // comes as the system delivers it to the editor.
    g_fillCalls.clear();
    editor = KxListView_SetEdit(list, nullptr, 2, 1, KX_EDIT_DOUBLECLICK_ENDS, -1, fillCities, 0);
    PostMessageW(editor, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(6, 6));
    kvtest::PumpMessages();
    ASSERT_EQ(2u, log.size());
    EXPECT_EQ(1 + KX_LISTEDIT_DOUBLECLICKED, log[1].column);
    EXPECT_EQ(L"Hameln", log[1].text);
    EXPECT_EQ(nullptr, listEditor());
    EXPECT_EQ(L"Fulda", cell(1, 1));
}

TEST_F(EditTest, EditorsWantEveryKeyAndTheEnterKeyProcAsksForEnter) {
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
    EXPECT_EQ(own | DLGC_WANTALLKEYS, SendMessageW(list, WM_GETDLGCODE, VK_RETURN, reinterpret_cast<LPARAM>(&enter)));
    EXPECT_EQ(0, own & DLGC_WANTALLKEYS);
    SetFocus(list);
    host->clear();
    EXPECT_TRUE(IsDialogMessageW(*host, &enter));
    EXPECT_EQ(0, host->count(WM_COMMAND));
    EXPECT_EQ(1, keys.count(WM_KEYDOWN));
    keys.detach();
    DestroyWindow(ok);
}

}  // namespace
