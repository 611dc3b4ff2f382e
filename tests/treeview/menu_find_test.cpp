// The context menu, the search dialog, Ctrl+F and F3 on a real tree view, driven from inside the
// modal loops with the keys a user presses; and the custom-draw colours.
#include "tree_fixture.h"

namespace {

// A menu entry as shown: id 0 and no text for a separator.
using Entry = std::pair<UINT, std::wstring>;
using Entries = std::vector<Entry>;
const Entry kSeparator = {0, L""};
const Entry kFind = {KX_TREEMENU_FIND, L"&&Find..."};  // "&" put before "&Find..."
const Entry kFindNext = {KX_TREEMENU_FIND_NEXT, L"Copy item"};  // the "&" of "&Copy item" taken out
const Entry kFindPrevious = {KX_TREEMENU_FIND_PREVIOUS, L"Move item"};
const Entry kEntry911 = {KX_TREEMENU_ENTRY_911, L"Find &next"};
const Entry kExpandAll = {KX_TREEMENU_EXPAND_ALL, L"&Expand all"};
const Entry kCollapseAll = {KX_TREEMENU_COLLAPSE_ALL, L"&Collapse all"};
const Entries kHostEntries = {{100, L"&Copy colour"}, {200, L"&Paste colour"}};

class TreeMenuTest : public TreeTest {
protected:
    // The parent shows the menu on NM_RCLICK, as a host does.
    void menuOnRightClick(bool hostMenu, int searchEntries, int entry911, int entry912) {
        onNotify = [=](NMHDR* notify, LRESULT* result) {
            if (notify->code != static_cast<UINT>(NM_RCLICK)) return false;
            menuItems.push_back(Kx1TreeView_RButtonEx(*host, notify, 1, hostMenu ? MAKEINTRESOURCEW(1500) : nullptr,
                                                      kvtest::LanguageModule(), searchEntries, entry911, entry912, 0));
            *result = 1;
            return true;
        };
    }
    void rightClick(HTREEITEM item) { click(pointOn(item), WM_RBUTTONDOWN); }

    // A menu step: records the entries, then picks `command` with the arrow keys and Enter, or
    // with 0 dismisses the menu with Escape.
    IdleStep choose(UINT command) {
        return [this, command](UINT kind, HWND menuWindow) {
            EXPECT_EQ(static_cast<UINT>(MSGF_MENU), kind);
            auto menu = reinterpret_cast<HMENU>(SendMessageW(menuWindow, MN_GETHMENU, 0, 0));
            shownEntries.clear();
            int downs = 0;  // the arrow skips separators
            bool found = false;
            for (int position = 0; position < GetMenuItemCount(menu); ++position) {
                wchar_t text[100] = L"";
                GetMenuStringW(menu, position, text, 100, MF_BYPOSITION);
                UINT id = GetMenuItemID(menu, position);
                bool separator = GetMenuState(menu, position, MF_BYPOSITION) & MF_SEPARATOR;
                shownEntries.push_back(separator ? kSeparator : Entry{id, text});
                if (!separator && !found) {
                    ++downs;
                    found = id == command;
                }
            }
            if (!command) {
                postKey(menuWindow, VK_ESCAPE);
                return;
            }
            EXPECT_TRUE(found) << command;
            for (int i = 0; i < downs; ++i) postKey(menuWindow, VK_DOWN);
            postKey(menuWindow, VK_RETURN);
        };
    }
    // A search dialog step: sets the boxes, replaces the text and presses Enter, as a user does.
    IdleStep search(const wchar_t* text, bool wholeText = false, bool matchCase = false) {
        return [=](UINT kind, HWND dialog) {
            EXPECT_EQ(static_cast<UINT>(MSGF_DIALOGBOX), kind);
            kvtest::HoldKeys({});
            dialogs.push_back(dialog);
            for (int box : {101, 102})
                if ((IsDlgButtonChecked(dialog, box) == BST_CHECKED) != (box == 101 ? wholeText : matchCase))
                    SendMessageW(GetDlgItem(dialog, box), BM_CLICK, 0, 0);
            HWND field = GetDlgItem(dialog, 100);
            SendMessageW(field, EM_SETSEL, 0, -1);
            PostMessageW(field, WM_CHAR, VK_BACK, 1);
            for (const wchar_t* c = text; *c; ++c) PostMessageW(field, WM_CHAR, *c, 1);
            postKey(field, VK_RETURN);
        };
    }
    static IdleStep pressEscape() {
        return [](UINT, HWND dialog) { postKey(GetDlgItem(dialog, 100), VK_ESCAPE); };
    }
    std::vector<WPARAM> commandsPosted() {
        kvtest::PumpMessages();
        std::vector<WPARAM> ids;
        for (const kvtest::RecordedMessage& m : host->messages(WM_COMMAND))
            if (m.lParam == 0) ids.push_back(m.wParam);
        return ids;
    }

    std::vector<HTREEITEM> menuItems;
    Entries shownEntries;
    std::vector<HWND> dialogs;
};

TEST_F(TreeMenuTest, HostEntriesComeFirstThenTheLibrarysAndHostCommandsArePosted) {
    menuOnRightClick(true, 1, 1, 1);
    whenIdle({choose(KX_TREEMENU_ENTRY_911)});
    rightClick(carl);
    EXPECT_EQ((std::vector<HTREEITEM>{carl}), menuItems);
    EXPECT_EQ(carl, selection());
    Entries expected = kHostEntries;
    for (const Entry& entry : {kSeparator, kFind, kFindNext, kFindPrevious, kSeparator,
                               Entry{KX_TREEMENU_ENTRY_912, L"Find &previous"}, kSeparator, kEntry911,
                               kSeparator, kExpandAll, kCollapseAll})
        expected.push_back(entry);
    EXPECT_EQ(expected, shownEntries);
    EXPECT_EQ((std::vector<WPARAM>{KX_TREEMENU_ENTRY_911}), commandsPosted());
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, EntriesFollowTheFlagsAndTheTreeStyleAndDismissingPostsZero) {
    // Kx1TreeView_RButton never shows entry 912; entry 911 alone gets no separator.
    onNotify = [this](NMHDR* notify, LRESULT*) {
        if (notify->code == static_cast<UINT>(NM_RCLICK))
            menuItems.push_back(Kx1TreeView_RButton(*host, notify, 0, nullptr, nullptr, 0, 1, 0));
        return false;
    };
    whenIdle({choose(0)});
    rightClick(lind);
    EXPECT_EQ((Entries{kEntry911, kSeparator, kExpandAll, kCollapseAll}), shownEntries);
    EXPECT_EQ((std::vector<WPARAM>{0}), commandsPosted());

    SetWindowLongW(tree, GWL_STYLE, GetWindowLongW(tree, GWL_STYLE) & ~(TVS_HASBUTTONS | TVS_LINESATROOT));
    menuOnRightClick(false, 1, 0, 0);
    whenIdle({choose(0)});
    rightClick(lind);
    EXPECT_EQ((Entries{kFind, kFindNext, kFindPrevious}), shownEntries);
    // An entry whose text cannot be read (no memory for it) is left out.
    whenIdle({choose(0)});
    KvText_FailAllocation(1);
    rightClick(lind);
    EXPECT_EQ((Entries{kFindNext, kFindPrevious}), shownEntries);
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, WithoutEntryFlagsOnlyTheHostMenuShowsAndItsCommandGoesToTheOwner) {
    menuOnRightClick(true, 0, 0, 0);
    whenIdle({choose(200)});
    rightClick(annaBerg);
    EXPECT_EQ(kHostEntries, shownEntries);
    EXPECT_EQ(annaBerg, menuItems.back());
    EXPECT_EQ((std::vector<WPARAM>{200}), commandsPosted());
    // No menu name and no entries: no menu at all, but the item is selected when asked.
    POINT onCarl = pointOn(carl);
    SetCursorPos(onCarl.x, onCarl.y);
    NMHDR notify = {tree, kTreeId, static_cast<UINT>(NM_RCLICK)};
    EXPECT_EQ(carl, Kx1TreeView_RButtonEx(*host, &notify, 0, nullptr, nullptr, 0, 0, 0, 0));
    EXPECT_EQ(annaBerg, selection());
    EXPECT_EQ(carl, Kx1TreeView_RButtonEx(*host, &notify, 1, nullptr, nullptr, 0, 0, 0, 0));
    EXPECT_EQ(carl, selection());
    SetCursorPos(onCarl.x, onCarl.y + 300);  // off the items nothing happens
    EXPECT_EQ(nullptr, Kx1TreeView_RButtonEx(*host, &notify, 1, nullptr, nullptr, 1, 1, 1, 0));
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, ExpandAndCollapseAllCommands) {
    TreeView_Expand(tree, berg, TVE_COLLAPSE);
    menuOnRightClick(false, 0, 1, 0);
    whenIdle({choose(KX_TREEMENU_EXPAND_ALL)});
    rightClick(lind);
    EXPECT_TRUE(state(berg, TVIS_EXPANDED));
    whenIdle({choose(KX_TREEMENU_COLLAPSE_ALL)});
    rightClick(lind);
    EXPECT_FALSE(state(berg, TVIS_EXPANDED) | state(lind, TVIS_EXPANDED));
    EXPECT_TRUE(commandsPosted().empty());
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, FindOpensTheDialogAndTheRepeatCommandsSearchOnFromTheSelection) {
    menuOnRightClick(true, 1, 0, 0);
    whenIdle({choose(KX_TREEMENU_FIND), search(L"BERG")});
    rightClick(berg);
    ASSERT_EQ(1u, dialogs.size());
    EXPECT_FALSE(IsWindow(dialogs[0]));  // found: the dialog ended
    EXPECT_EQ(annaBerg, selection());
    EXPECT_STREQ(L"BERG", reinterpret_cast<const wchar_t*>(GetWindowLongPtrW(tree, GWLP_USERDATA)));

    for (UINT command : {KX_TREEMENU_FIND_NEXT, KX_TREEMENU_FIND_NEXT, KX_TREEMENU_FIND_PREVIOUS}) {
        HTREEITEM from = selection();
        whenIdle({choose(command)});
        rightClick(from);
    }
    EXPECT_EQ(annaBerg, selection());  // Bernd Berg, no further match, back to Anna Berg
    EXPECT_TRUE(commandsPosted().empty());
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, CtrlFOpensTheDialogInsteadOfReachingTheTreeAndF3SearchesAgain) {
    kvtest::MessageRecorder reachedTree(tree);  // behind the replacement: what the tree gets
    KvText_FailAllocation(1);
    EXPECT_EQ(0, Kx1SetTreeViewProc(tree));  // no memory: the tree is left as it was
    EXPECT_EQ(nullptr, GetPropW(tree, L"OldProc"));
    ASSERT_EQ(1, Kx1SetTreeViewProc(tree));
    TreeView_SelectItem(tree, annaBerg);
    whenIdle({search(L"lind")});
    kvtest::HoldKeys({VK_CONTROL, VK_LCONTROL});
    EXPECT_EQ(0, SendMessageW(tree, WM_KEYDOWN, 'F', 1));
    EXPECT_EQ(1u, dialogs.size());
    EXPECT_EQ(lind, selection());
    EXPECT_EQ(0, reachedTree.count(WM_KEYDOWN));

    SendMessageW(tree, WM_KEYDOWN, VK_F3, 1);
    EXPECT_EQ(carl, selection());
    kvtest::HoldKeys({VK_SHIFT, VK_LSHIFT});
    SendMessageW(tree, WM_KEYDOWN, VK_F3, 1);
    EXPECT_EQ(lind, selection());
    kvtest::HoldKeys({});
    SendMessageW(tree, WM_KEYDOWN, 'F', 1);  // without Ctrl an F is the tree's
    EXPECT_EQ(3, reachedTree.count(WM_KEYDOWN));  // both F3 and the F
    EXPECT_EQ(0, loopsEndedForcibly);
    destroyTree();  // while the recorder sits behind the replacement
}

TEST_F(TreeMenuTest, DialogStaysOpenUntilSomethingIsFoundAndOffersTheLastText) {
    TreeView_SelectItem(tree, berg);
    HWND stillOpen = nullptr;
    whenIdle({search(L"zebra"),
              [&](UINT, HWND dialog) {
                  stillOpen = dialog;
                  SendDlgItemMessageW(dialog, 100, EM_SETSEL, 0, -1);
                  PostMessageW(GetDlgItem(dialog, 100), WM_CHAR, VK_BACK, 1);
              },
              [&](UINT, HWND dialog) {
                  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDOK)));  // nothing to find
                  postKey(GetDlgItem(dialog, 100), VK_ESCAPE);
              }});
    // A language the module has no template for gets the template it has.
    EXPECT_EQ(1, KxTreeView_DlgSuche(tree, MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)));
    EXPECT_EQ(dialogs.at(0), stillOpen);
    EXPECT_EQ(berg, selection());

    std::wstring offered;
    whenIdle({[&](UINT, HWND dialog) {
        wchar_t text[100];
        GetDlgItemTextW(dialog, 100, text, 100);
        offered = text;
        postKey(GetDlgItem(dialog, 100), VK_ESCAPE);
    }});
    KxTreeView_DlgSuche(tree, 0);
    EXPECT_EQ(L"zebra", offered);
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, WholeTextAndMatchCaseRefineTheSearchAndItsRepeats) {
    ASSERT_EQ(1, Kx1SetTreeViewProc(tree));
    TreeView_SelectItem(tree, berg);
    whenIdle({search(L"anna berg", true)});
    KxTreeView_DlgSuche(tree, 0);
    EXPECT_EQ(annaBerg, selection());
    whenIdle({search(L"Berg", true), pressEscape()});  // no item is just "berg"
    KxTreeView_DlgSuche(tree, 0);
    EXPECT_EQ(annaBerg, selection());

    TreeView_SelectItem(tree, nullptr);
    whenIdle({search(L"Lind", false, true)});
    KxTreeView_DlgSuche(tree, 0);
    EXPECT_EQ(lind, selection());
    SendMessageW(tree, WM_KEYDOWN, VK_F3, 1);
    EXPECT_EQ(carl, selection());
    whenIdle({search(L"lind", false, true), pressEscape()});  // lower case appears nowhere
    KxTreeView_DlgSuche(tree, 0);
    EXPECT_EQ(carl, selection());
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, CustomDrawColoursTheChosenItemAndKeepsTheSelectionReadable) {
    const COLORREF red = RGB(200, 0, 0);
    onNotify = [&](NMHDR* notify, LRESULT* result) {
        if (notify->code != static_cast<UINT>(NM_CUSTOMDRAW)) return false;
        *result = KxTreeView_SetItemColorFont(*host, tree, reinterpret_cast<NMTVCUSTOMDRAW*>(notify), 12,
                                              RGB(255, 255, 255), red, nullptr);
        return true;
    };
    RECT client;
    GetClientRect(tree, &client);
    kvtest::Canvas canvas(client.right, client.bottom);
    SendMessageW(tree, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT | PRF_ERASEBKGND);
    for (HTREEITEM item : {annaBerg, berndBerg, carl}) {
        RECT label;
        TreeView_GetItemRect(tree, item, &label, TRUE);
        EXPECT_EQ(item == berndBerg, red == canvas.pixel(label.right - 2, label.top + 2));
    }
    // Navy text on the focused selected item becomes the highlight text colour.
    NMTVCUSTOMDRAW draw = {};
    draw.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
    draw.nmcd.uItemState = CDIS_FOCUS | CDIS_SELECTED;
    const COLORREF navy = RGB(0, 0, 128);
    EXPECT_EQ(CDRF_NEWFONT, KxTreeView_SetItemColorFont(*host, tree, &draw, -1, navy, CLR_INVALID, nullptr));
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHTTEXT), draw.clrText);
    draw.nmcd.uItemState = CDIS_SELECTED;
    KxTreeView_SetItemColorFont(*host, tree, &draw, -1, navy, CLR_INVALID, nullptr);
    EXPECT_EQ(navy, draw.clrText);
}

}  // namespace
