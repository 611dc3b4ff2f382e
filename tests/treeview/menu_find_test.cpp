// The context menu, the search dialog, Ctrl+F and F3 on a real tree view, driven from inside the
// modal loops with the keys a user presses; and the custom-draw colours.
#include "tree_fixture.h"

namespace {

struct Entry {
    UINT id;  // 0 for a separator
    std::wstring text;
    bool operator==(const Entry& other) const { return id == other.id && text == other.text; }
};
std::ostream& operator<<(std::ostream& out, const Entry& entry) {
    return out << entry.id << " \"" << std::string(entry.text.begin(), entry.text.end()) << "\"";
}
using Entries = std::vector<Entry>;
const Entry kSeparator = {0, L""};
const UINT kHostMenu = 1500;

class TreeMenuTest : public TreeTest {
protected:
    void SetUp() override {
        TreeTest::SetUp();
        berg = add(nullptr, L"Berg & Co", 1);
        annaBerg = add(berg, L"Anna Berg", 11);
        berndBerg = add(berg, L"Bernd Berg", 12);
        lind = add(nullptr, L"Lind GmbH", 2);
        carl = add(lind, L"Carl Lind", 21);
        UpdateWindow(tree);
    }

    // The parent shows the menu on NM_RCLICK, as a host does.
    void menuOnRightClick(bool hostMenu, int searchEntries, int entry911, int entry912) {
        onNotify = [=](NMHDR* notify, LRESULT* result) {
            if (notify->code != static_cast<UINT>(NM_RCLICK)) return false;
            menuItems.push_back(Kx1TreeView_RButtonEx(*host, notify, 1,
                                                      hostMenu ? MAKEINTRESOURCEW(kHostMenu) : nullptr,
                                                      kvtest::LanguageModule(), searchEntries,
                                                      entry911, entry912, 0));
            *result = 1;
            return true;
        };
    }
    void rightClick(HTREEITEM item) { click(labelPoint(item), WM_RBUTTONDOWN, WM_RBUTTONUP); }

    // A menu step: records the entries, then picks `command` with the arrow keys and Enter
    // (0: Escape).
    IdleStep choose(UINT command) {
        return [this, command](UINT kind, HWND menuWindow) {
            EXPECT_EQ(static_cast<UINT>(MSGF_MENU), kind);
            auto menu = reinterpret_cast<HMENU>(SendMessageW(menuWindow, MN_GETHMENU, 0, 0));
            shownEntries.clear();
            int downs = 0;
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
            holdKeys({});
            dialogs.push_back(dialog);
            setBox(dialog, 101, wholeText);
            setBox(dialog, 102, matchCase);
            HWND field = GetDlgItem(dialog, 100);
            SendMessageW(field, EM_SETSEL, 0, -1);
            PostMessageW(field, WM_CHAR, VK_BACK, 1);
            type(field, text);
            postKey(field, VK_RETURN);
        };
    }
    static IdleStep pressEscape() {
        return [](UINT, HWND dialog) { postKey(GetDlgItem(dialog, 100), VK_ESCAPE); };
    }
    static void setBox(HWND dialog, int id, bool checked) {
        if ((IsDlgButtonChecked(dialog, id) == BST_CHECKED) != checked)
            SendMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
    }
    std::vector<WPARAM> commandsPosted() const {
        std::vector<WPARAM> ids;
        for (const kvtest::RecordedMessage& m : host->messages(WM_COMMAND))
            if (m.lParam == 0) ids.push_back(m.wParam);
        return ids;
    }
    const wchar_t* searchText() const {
        return reinterpret_cast<const wchar_t*>(GetWindowLongPtrW(tree, GWLP_USERDATA));
    }

    HTREEITEM berg, annaBerg, berndBerg, lind, carl;
    std::vector<HTREEITEM> menuItems;
    Entries shownEntries;
    std::vector<HWND> dialogs;
};

TEST_F(TreeMenuTest, HostEntriesComeFirstThenTheLibrarysAndHostCommandsArePosted) {
    menuOnRightClick(true, 1, 1, 1);
    whenIdle({choose(KX_TREEMENU_ENTRY_911)});
    rightClick(carl);
    ASSERT_EQ(1u, menuItems.size());
    EXPECT_EQ(carl, menuItems[0]);
    EXPECT_EQ(carl, selection());
    EXPECT_EQ((Entries{{100, L"&Copy colour"}, {200, L"&Paste colour"}, kSeparator,
                       {KX_TREEMENU_FIND, L"&&Find..."}, {KX_TREEMENU_FIND_NEXT, L"Copy item"},
                       {KX_TREEMENU_FIND_PREVIOUS, L"Move item"}, kSeparator,
                       {KX_TREEMENU_ENTRY_912, L"Find &previous"}, kSeparator,
                       {KX_TREEMENU_ENTRY_911, L"Find &next"}, kSeparator,
                       {KX_TREEMENU_EXPAND_ALL, L"&Expand all"},
                       {KX_TREEMENU_COLLAPSE_ALL, L"&Collapse all"}}),
              shownEntries);
    kvtest::PumpMessages();
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
    EXPECT_EQ((Entries{{KX_TREEMENU_ENTRY_911, L"Find &next"}, kSeparator,
                       {KX_TREEMENU_EXPAND_ALL, L"&Expand all"},
                       {KX_TREEMENU_COLLAPSE_ALL, L"&Collapse all"}}),
              shownEntries);
    kvtest::PumpMessages();
    EXPECT_EQ((std::vector<WPARAM>{0}), commandsPosted());

    SetWindowLongW(tree, GWL_STYLE, GetWindowLongW(tree, GWL_STYLE) & ~(TVS_HASBUTTONS | TVS_LINESATROOT));
    menuOnRightClick(false, 1, 0, 0);
    whenIdle({choose(0)});
    rightClick(lind);
    EXPECT_EQ((Entries{{KX_TREEMENU_FIND, L"&&Find..."}, {KX_TREEMENU_FIND_NEXT, L"Copy item"},
                       {KX_TREEMENU_FIND_PREVIOUS, L"Move item"}}),
              shownEntries);
    // An entry whose text cannot be read (no memory for it) is left out.
    whenIdle({choose(0)});
    KvText_FailAllocation(1);
    rightClick(lind);
    EXPECT_EQ((Entries{{KX_TREEMENU_FIND_NEXT, L"Copy item"}, {KX_TREEMENU_FIND_PREVIOUS, L"Move item"}}),
              shownEntries);
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, WithoutEntryFlagsOnlyTheHostMenuShowsAndItsCommandGoesToTheOwner) {
    menuOnRightClick(true, 0, 0, 0);
    whenIdle({choose(200)});
    rightClick(annaBerg);
    EXPECT_EQ((Entries{{100, L"&Copy colour"}, {200, L"&Paste colour"}}), shownEntries);
    EXPECT_EQ(annaBerg, menuItems.back());
    kvtest::PumpMessages();
    EXPECT_EQ((std::vector<WPARAM>{200}), commandsPosted());
    // No menu name and no entries: no menu at all, but the item is selected when asked.
    POINT onCarl = labelPoint(carl);
    SetCursorPos(onCarl.x, onCarl.y);
    NMHDR notify = {tree, kTreeId, static_cast<UINT>(NM_RCLICK)};
    EXPECT_EQ(carl, Kx1TreeView_RButtonEx(*host, &notify, 0, nullptr, nullptr, 0, 0, 0, 0));
    EXPECT_EQ(annaBerg, selection());
    EXPECT_EQ(carl, Kx1TreeView_RButtonEx(*host, &notify, 1, nullptr, nullptr, 0, 0, 0, 0));
    EXPECT_EQ(carl, selection());
    // Off the items nothing happens.
    RECT window;
    GetWindowRect(tree, &window);
    menuOnRightClick(true, 1, 1, 1);
    click({window.left + 150, window.bottom - 5}, WM_RBUTTONDOWN, WM_RBUTTONUP);
    EXPECT_EQ(nullptr, menuItems.back());
    EXPECT_EQ(0, loopsEndedForcibly);
}

TEST_F(TreeMenuTest, ExpandAndCollapseAllCommands) {
    TreeView_Expand(tree, berg, TVE_COLLAPSE);
    menuOnRightClick(false, 0, 1, 0);
    whenIdle({choose(KX_TREEMENU_EXPAND_ALL)});
    rightClick(lind);
    EXPECT_EQ(static_cast<UINT>(TVIS_EXPANDED), state(berg, TVIS_EXPANDED));
    whenIdle({choose(KX_TREEMENU_COLLAPSE_ALL)});
    rightClick(lind);
    EXPECT_EQ(0u, state(berg, TVIS_EXPANDED) | state(lind, TVIS_EXPANDED));
    kvtest::PumpMessages();
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
    EXPECT_STREQ(L"BERG", searchText());

    whenIdle({choose(KX_TREEMENU_FIND_NEXT)});
    rightClick(annaBerg);
    EXPECT_EQ(berndBerg, selection());
    whenIdle({choose(KX_TREEMENU_FIND_NEXT)});
    rightClick(berndBerg);
    EXPECT_EQ(berndBerg, selection());  // no wrap-around
    whenIdle({choose(KX_TREEMENU_FIND_PREVIOUS)});
    rightClick(berndBerg);
    EXPECT_EQ(annaBerg, selection());
    kvtest::PumpMessages();
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
    holdKeys({VK_CONTROL, VK_LCONTROL});
    EXPECT_EQ(0, SendMessageW(tree, WM_KEYDOWN, 'F', 1));
    ASSERT_EQ(1u, dialogs.size());
    EXPECT_EQ(lind, selection());
    EXPECT_EQ(0, reachedTree.count(WM_KEYDOWN));

    SendMessageW(tree, WM_KEYDOWN, VK_F3, 1);
    EXPECT_EQ(carl, selection());
    EXPECT_EQ(1, reachedTree.count(WM_KEYDOWN));  // F3 goes on to the tree
    holdKeys({VK_SHIFT, VK_LSHIFT});
    SendMessageW(tree, WM_KEYDOWN, VK_F3, 1);
    EXPECT_EQ(lind, selection());
    holdKeys({});
    SendMessageW(tree, WM_KEYDOWN, 'F', 1);  // without Ctrl an F is the tree's
    EXPECT_EQ(3, reachedTree.count(WM_KEYDOWN));
    EXPECT_EQ(0, loopsEndedForcibly);
    destroyTree();  // while the recorder sits behind the replacement
}

TEST_F(TreeMenuTest, DialogStaysOpenUntilSomethingIsFoundAndOffersTheLastText) {
    TreeView_SelectItem(tree, berg);
    HWND dialog = nullptr;
    whenIdle({search(L"zebra"),
              [&](UINT, HWND window) {
                  dialog = window;  // still open after a search that found nothing
                  HWND field = GetDlgItem(window, 100);
                  SendMessageW(field, EM_SETSEL, 0, -1);
                  PostMessageW(field, WM_CHAR, VK_BACK, 1);
              },
              [&](UINT, HWND window) {
                  EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDOK)));  // nothing to find
                  postKey(GetDlgItem(window, 100), VK_ESCAPE);
              }});
    EXPECT_EQ(1, KxTreeView_DlgSuche(tree, MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)));
    EXPECT_EQ(dialogs[0], dialog);
    EXPECT_EQ(berg, selection());
    EXPECT_EQ(0, loopsEndedForcibly);

    std::wstring offered;
    whenIdle({[&](UINT, HWND window) {
        wchar_t text[100];
        GetDlgItemTextW(window, 100, text, 100);
        offered = text;
        postKey(GetDlgItem(window, 100), VK_ESCAPE);
    }});
    KxTreeView_DlgSuche(tree, 0);
    EXPECT_EQ(L"zebra", offered);
}

TEST_F(TreeMenuTest, WholeTextAndMatchCaseRefineTheSearchAndItsRepeats) {
    ASSERT_EQ(1, Kx1SetTreeViewProc(tree));
    TreeView_SelectItem(tree, berg);
    whenIdle({search(L"anna berg", true)});
    KxTreeView_DlgSuche(tree, 0);
    EXPECT_EQ(annaBerg, selection());
    whenIdle({search(L"Berg", true), pressEscape()});  // whole text: no item is just "berg"
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

TEST_F(TreeMenuTest, CustomDrawColoursTheFilteredItemAndKeepsTheSelectionReadable) {
    const COLORREF red = RGB(200, 0, 0);
    onNotify = [&](NMHDR* notify, LRESULT* result) {
        if (notify->code != static_cast<UINT>(NM_CUSTOMDRAW)) return false;
        *result = KxTreeView_SetItemColorFont(*host, tree, reinterpret_cast<NMTVCUSTOMDRAW*>(notify),
                                              12, RGB(255, 255, 255), red, nullptr);
        return true;
    };
    RECT client;
    GetClientRect(tree, &client);
    kvtest::Canvas canvas(client.right, client.bottom);
    SendMessageW(tree, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(canvas.dc()), PRF_CLIENT | PRF_ERASEBKGND);
    for (HTREEITEM item : {annaBerg, berndBerg, carl}) {
        RECT label;
        TreeView_GetItemRect(tree, item, &label, TRUE);
        COLORREF background = canvas.pixel(label.right - 2, label.top + 2);
        if (item == berndBerg) EXPECT_EQ(red, background);
        else EXPECT_NE(red, background);
    }

    NMTVCUSTOMDRAW draw = {};
    draw.nmcd.dwDrawStage = CDDS_ITEMPREPAINT;
    draw.nmcd.hdc = canvas.dc();
    draw.nmcd.uItemState = CDIS_FOCUS | CDIS_SELECTED;
    const COLORREF navy = RGB(0, 0, 128);
    EXPECT_EQ(CDRF_NEWFONT, KxTreeView_SetItemColorFont(*host, tree, &draw, -1, navy, CLR_INVALID, nullptr));
    EXPECT_EQ(GetSysColor(COLOR_HIGHLIGHTTEXT), draw.clrText);
    draw.nmcd.uItemState = CDIS_SELECTED;
    KxTreeView_SetItemColorFont(*host, tree, &draw, -1, navy, CLR_INVALID, nullptr);
    EXPECT_EQ(navy, draw.clrText);
    draw.nmcd.dwDrawStage = CDDS_PREPAINT;
    EXPECT_EQ(CDRF_NOTIFYITEMDRAW, KxTreeView_SetItemColorFont(*host, tree, &draw, -1, navy, red, nullptr));
}

}  // namespace
