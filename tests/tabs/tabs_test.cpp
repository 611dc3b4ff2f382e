// The tab control manager on real dialogs: the record, tabs of visible pages, switching by mouse,
// Ctrl+Tab, Ctrl+Shift+Tab and Alt+mnemonic, kept pages, template languages, the resizable-dialog
// engine, the hooks' lifetime, and failures.
#include "tabs_fixture.h"
#include <string.h>

using namespace tabs_test;

namespace {

class TabManager : public kvtest::KvTest {
protected:
    void SetUp() override { Creations().clear(); }

    KXTAB* init(TabbedDialog& dialog, Pages& pages, unsigned char firstPage = 0,
                unsigned char* visible = nullptr, unsigned char* keep = nullptr,
                unsigned short language = 0) {
        return dialog.record = KxTabInitEx(dialog, kTabId, module, pages.count(), pages.templates.data(),
                                           pages.count(), pages.procs.data(), pages.titles.data(), nullptr,
                                           0, nullptr, firstPage, visible, language, keep);
    }

    HINSTANCE module = kvtest::LanguageModule();
    Pages customer{{kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"}};
};

TEST_F(TabManager, RecordHoldsCopiesAndTheFirstPageCoversThePageArea) {
    TabbedDialog dialog;
    long params[] = {42, 7, 9};
    unsigned char visible[] = {1, 1, 1}, keep[] = {0, 1, 0};
    KXTAB* tab = dialog.record = KxTabInitEx(dialog, kTabId, module, 3, customer.templates.data(), 3,
                                             customer.procs.data(), customer.titles.data(), nullptr, 0,
                                             params, 1, visible, 0, keep);
    ASSERT_NE(nullptr, tab);
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(tab), GetWindowLongPtrW(dialog.tabs(), GWLP_USERDATA));
    // Visibility and keep flags are copied; every parameter entry is the first parameter.
    EXPECT_NE(visible, tab->visible);
    EXPECT_EQ(0, memcmp(visible, tab->visible, 3));
    EXPECT_NE(keep, tab->keep);
    EXPECT_EQ(0, memcmp(keep, tab->keep, 3));
    ASSERT_EQ(3, tab->paramCount);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(42, tab->params[i]);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(nullptr, tab->keptPages[i]);

    EXPECT_EQ(1, dialog.selectedTab());
    EXPECT_EQ(1, tab->pageIndex);
    ASSERT_EQ(1u, Creations().size());
    EXPECT_EQ(42, Creations()[0].parameter);
    HWND page = tab->page;
    EXPECT_EQ(1, dialog.pageSlot());
    EXPECT_TRUE(IsWindowVisible(page));
    EXPECT_EQ(dialog.pageArea(), RectInParent(page));
    EXPECT_TRUE(GetWindowLongW(page, GWL_EXSTYLE) & WS_EX_CONTROLPARENT);
    EXPECT_EQ(nullptr, GetWindow(page, GW_HWNDPREV));  // above the tab control
    EXPECT_TRUE(KxTabChangeSelection(dialog, kTabId, tab, 2));
    EXPECT_EQ(42, Creations().back().parameter);

    // A non-zero parameter count makes a one-entry array.
    TabbedDialog second;
    second.record = KxTabInitEx(second, kTabId, module, 3, customer.templates.data(), 3, customer.procs.data(),
                                nullptr, nullptr, 3, params, 0, nullptr, 0, nullptr);
    ASSERT_NE(nullptr, second.record);
    EXPECT_EQ(1, second.record->paramCount);
    EXPECT_EQ(nullptr, second.record->keptPages);
}

TEST_F(TabManager, InvisiblePagesHaveNoTabs) {
    TabbedDialog dialog;
    Pages five({kAddressPage, kContactsPage, kNotesPage, kContactsPage, kAddressPage}, {L"A", L"B", L"C", L"D", L"E"});
    unsigned char visible[] = {1, 0, 1, 0, 1};
    KXTAB* tab = init(dialog, five, 3, visible);  // page 3 has no tab: the first tab opens
    ASSERT_NE(nullptr, tab);
    ASSERT_EQ(3, dialog.tabCount());
    EXPECT_EQ(L"C", dialog.tabTitle(1));
    EXPECT_EQ(L"E", dialog.tabTitle(2));
    EXPECT_EQ(0, dialog.selectedTab());
    EXPECT_EQ(0, dialog.pageSlot());
    EXPECT_EQ(2, KxTabGetIndex(tab, 1));
    EXPECT_EQ(4, KxTabGetIndex(tab, 2));
    EXPECT_EQ(3, KxTabGetIndex(tab, 3));  // no such tab: unchanged
    EXPECT_TRUE(KxTabChangeSelection(dialog, kTabId, tab, 2));
    EXPECT_EQ(4, tab->pageIndex);
    EXPECT_EQ(4, dialog.pageSlot());

    // The page index that a tab index maps to is read as a tab index.
    wchar_t* text = KxTabGetItemText(dialog, kTabId, 1, tab);
    ASSERT_NE(nullptr, text);
    EXPECT_STREQ(L"E", text);
    FreeMemory(text);
    EXPECT_EQ(nullptr, KxTabGetItemText(dialog, kTabId, 2, tab));

    TabbedDialog second;
    ASSERT_NE(nullptr, init(second, five, 4, visible));
    EXPECT_EQ(2, second.selectedTab());
    EXPECT_EQ(4, second.pageSlot());
}

TEST_F(TabManager, TitlesComeFromTheCallerOrTheInstanceOrAreEmpty) {
    int titleIds[] = {6140, 6141, 9999};
    for (int* ids : {titleIds, static_cast<int*>(nullptr)}) {
        TabbedDialog dialog;
        dialog.record = KxTabInit(dialog, kTabId, module, 3, customer.templates.data(), 3, customer.procs.data(),
                                  nullptr, ids, 0, nullptr, 0, nullptr, 0);
        ASSERT_EQ(3, dialog.tabCount());
        EXPECT_EQ(ids ? L"&Contacts" : L"", dialog.tabTitle(1));
        EXPECT_EQ(L"", dialog.tabTitle(2));
    }
}

TEST_F(TabManager, ClickedTabsShowTheirPagesKeptPagesComeBackAsTheyWere) {
    TabbedDialog dialog;
    unsigned char keep[] = {1, 0, 0};
    KXTAB* tab = init(dialog, customer, 0, nullptr, keep);
    ASSERT_NE(nullptr, tab);
    HWND address = dialog.page();
    Activate(dialog, GetDlgItem(address, kStreetEdit));
    PressKeys({}, 'M');
    PressKeys({}, 'A');
    RunLoop(dialog);
    EXPECT_EQ(L"ma", WindowText(GetDlgItem(address, kStreetEdit)));

    dialog.clickTab(2);
    EXPECT_EQ(2, dialog.selectedTab());
    HWND notes = dialog.page();
    EXPECT_EQ(2, dialog.pageSlot());
    EXPECT_EQ(dialog.pageArea(), RectInParent(notes));
    EXPECT_FALSE(IsWindowVisible(address));
    EXPECT_EQ(address, tab->keptPages[0]);
    SetWindowTextW(GetDlgItem(notes, kNotesEdit), L"Call back on Monday");

    dialog.clickTab(0);
    EXPECT_FALSE(IsWindow(notes));
    EXPECT_EQ(address, dialog.page());
    EXPECT_TRUE(IsWindowVisible(address));
    EXPECT_EQ(L"ma", WindowText(GetDlgItem(address, kStreetEdit)));
    EXPECT_EQ(1, CreationsOf(0));

    dialog.clickTab(2);
    EXPECT_EQ(L"", WindowText(GetDlgItem(dialog.page(), kNotesEdit)));
    EXPECT_EQ(2, CreationsOf(2));
}

TEST_F(TabManager, CtrlTabAndCtrlShiftTabMoveThroughTheTabsAndWrap) {
    TabbedDialog dialog;
    ASSERT_NE(nullptr, init(dialog, customer));
    Activate(dialog, GetDlgItem(dialog.page(), kStreetEdit));
    struct Step {
        bool shift;
        int expected;
    };
    for (Step step : {Step{false, 1}, {false, 2}, {false, 0}, {true, 2}, {true, 1}}) {
        if (step.shift) PressKeys({VK_CONTROL, VK_SHIFT}, VK_TAB);
        else PressKeys({VK_CONTROL}, VK_TAB);
        std::vector<MSG> retrieved = RunLoop(dialog);
        EXPECT_EQ(step.expected, dialog.selectedTab());
        EXPECT_EQ(step.expected, dialog.pageSlot());
        // The key went no further than the hook.
        EXPECT_EQ(0, CountRetrieved(retrieved, WM_KEYDOWN, VK_TAB) + CountRetrieved(retrieved, WM_SYSKEYDOWN, VK_TAB));
    }
    // Tab alone is the dialog's.
    Activate(dialog, GetDlgItem(dialog, IDOK));
    PressKeys({}, VK_TAB);
    EXPECT_EQ(1, CountRetrieved(RunLoop(dialog), WM_KEYDOWN, VK_TAB));
    EXPECT_EQ(1, dialog.selectedTab());
}

TEST_F(TabManager, AltMnemonicSelectsTheLastMatchingTab) {
    TabbedDialog dialog;
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&archive"});
    ASSERT_NE(nullptr, init(dialog, pages));
    Activate(dialog, GetDlgItem(dialog.page(), kStreetEdit));

    PressKeys({VK_MENU}, 'C');
    std::vector<MSG> retrieved = RunLoop(dialog);
    EXPECT_EQ(1, dialog.selectedTab());
    EXPECT_EQ(0, CountRetrieved(retrieved, WM_SYSCHAR));
    EXPECT_EQ(1, CountRetrieved(retrieved, WM_NULL));

    // "&A" and "&a" both match: each is shown in turn and the last one stays.
    Creations().clear();
    PressKeys({VK_MENU}, 'A');
    RunLoop(dialog);
    EXPECT_EQ(2, dialog.selectedTab());
    ASSERT_EQ(2u, Creations().size());
    EXPECT_EQ(0, Creations()[0].slot);
    EXPECT_EQ(2, Creations()[1].slot);

    // No tab has "&Q": the character goes on to the dialog.
    PressKeys({VK_MENU}, 'Q');
    EXPECT_EQ(1, CountRetrieved(RunLoop(dialog), WM_SYSCHAR, 'q'));
    EXPECT_EQ(2, dialog.selectedTab());
}

TEST_F(TabManager, LanguageChoosesTheTemplate) {
    for (unsigned short language : {0, LANG_ENGLISH, LANG_GERMAN}) {
        TabbedDialog dialog;
        ASSERT_NE(nullptr, init(dialog, customer, 0, nullptr, nullptr, language));
        EXPECT_EQ(language == LANG_GERMAN ? L"Strasse:" : L"Street:", WindowText(GetDlgItem(dialog.page(), kStreetLabel)));
    }
    // No French template: the first switch fails; the record stays with the tab control, with the
    // hooks, until it is ended.
    HookSpy spy;
    TabbedDialog dialog;
    EXPECT_EQ(nullptr, init(dialog, customer, 0, nullptr, nullptr, LANG_FRENCH));
    auto* left = reinterpret_cast<KXTAB*>(GetWindowLongPtrW(dialog.tabs(), GWLP_USERDATA));
    ASSERT_NE(nullptr, left);
    EXPECT_EQ(nullptr, left->page);
    EXPECT_EQ(2, spy.live());
    EXPECT_EQ(1, KxTabEnd(dialog, left));
    EXPECT_EQ(0, spy.live());
}

TEST_F(TabManager, HooksComeWithTheFirstManagerAndGoWithTheLast) {
    HookSpy spy;
    TabbedDialog first, second;
    ASSERT_NE(nullptr, init(first, customer));
    EXPECT_EQ(1, spy.live(WH_GETMESSAGE));
    EXPECT_EQ(1, spy.live(WH_KEYBOARD));
    HHOOK oldKeyboard = spy.last(WH_KEYBOARD), oldMessage = spy.last(WH_GETMESSAGE);
    ASSERT_NE(nullptr, init(second, customer));
    EXPECT_EQ(2, spy.installed());

    // The hooks serve the tab control set up last.
    Activate(first, GetDlgItem(first.page(), kStreetEdit));
    PressKeys({VK_CONTROL}, VK_TAB);
    RunLoop(first);
    EXPECT_EQ(0, first.selectedTab());
    EXPECT_EQ(1, second.selectedTab());

    // When that manager ends, the hooks stay for the other one but serve nobody.
    second.destroy();
    EXPECT_EQ(2, spy.live());
    Activate(first, GetDlgItem(first.page(), kStreetEdit));
    PressKeys({VK_CONTROL}, VK_TAB);
    EXPECT_EQ(1, CountRetrieved(RunLoop(first), WM_KEYDOWN, VK_TAB));
    EXPECT_EQ(0, first.selectedTab());

    first.destroy();
    EXPECT_EQ(0, spy.live());
    EXPECT_FALSE(UnhookWindowsHookEx(oldKeyboard));
    EXPECT_FALSE(UnhookWindowsHookEx(oldMessage));

    // A new manager installs fresh hooks that work.
    TabbedDialog third;
    ASSERT_NE(nullptr, init(third, customer));
    EXPECT_EQ(4, spy.installed());
    Activate(third, GetDlgItem(third.page(), kStreetEdit));
    PressKeys({VK_CONTROL}, VK_TAB);
    RunLoop(third);
    EXPECT_EQ(1, third.selectedTab());
    third.destroy();
    EXPECT_EQ(0, spy.live());
}

TEST_F(TabManager, ResizablePagesFollowTheDialog) {
    TabbedDialog dialog;
    KXTAB* tab = init(dialog, customer);
    ASSERT_NE(nullptr, tab);
    KxSizeDlgStart(dialog, 0, nullptr, 0);  // after the tabs, which make the page area
    RECT design = dialog.pageArea(), client, frame;
    GetClientRect(dialog, &client);
    GetWindowRect(dialog, &frame);
    tab->resizable = 1;
    dialog.clickTab(1);
    HWND contacts = dialog.page();
    EXPECT_EQ(design, RectInParent(contacts));
    RECT list = RectInParent(GetDlgItem(contacts, kContactsList));

    SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left + client.right / 2,
                 frame.bottom - frame.top + client.bottom / 2, SWP_NOMOVE | SWP_NOZORDER);
    RunLoop(dialog);
    RECT grown;
    GetClientRect(dialog, &grown);
    double growthX = (grown.right - client.right) * 100 / static_cast<double>(client.right);
    double growthY = (grown.bottom - client.bottom) * 100 / static_cast<double>(client.bottom);
    auto scaled = [](LONG value, double growth) { return value + static_cast<LONG>(value * growth / 100.0); };
    EXPECT_EQ((RECT{scaled(design.left, growthX), scaled(design.top, growthY), scaled(design.right, growthX),
                    scaled(design.bottom, growthY)}),
              RectInParent(contacts));
    RECT listNow = RectInParent(GetDlgItem(contacts, kContactsList));  // the page's children follow
    EXPECT_GT(listNow.right - listNow.left, list.right - list.left);

    // The page left is taken out of the engine before it goes.
    dialog.clickTab(2);
    EXPECT_FALSE(IsWindow(contacts));
    SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top, SWP_NOMOVE | SWP_NOZORDER);
    RunLoop(dialog);
    EXPECT_EQ(1, KxSizeDlgEnd(dialog));
}

TEST_F(TabManager, BadArgumentsAndFailuresLeaveNothingBehind) {
    HookSpy spy;
    Pages pages({kAddressPage, 9999, kNotesPage}, {L"&Address", L"&Missing", L"&Notes"});
    TabbedDialog dialog, gone;
    HWND goneHandle = gone;
    gone.destroy();
    int* templates = pages.templates.data();
    DLGPROC* procs = pages.procs.data();
    EXPECT_EQ(nullptr, KxTabInit(nullptr, kTabId, module, 3, templates, 3, procs, nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(goneHandle, kTabId, module, 3, templates, 3, procs, nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, 4711, module, 3, templates, 3, procs, nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, kTabId, module, 0, templates, 3, procs, nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, kTabId, module, 3, nullptr, 3, procs, nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, kTabId, module, 3, templates, 3, nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(0, dialog.tabCount());
    EXPECT_EQ(-1, KxTabGetIndex(nullptr, 1));
    EXPECT_EQ(0, KxTabEnd(nullptr, nullptr));
    EXPECT_EQ(0, KxTabCheckActivate(dialog, WM_ACTIVATE, 0));
    EXPECT_EQ(0, KxTabSystemHook(HC_ACTION, PM_REMOVE, 0));
    EXPECT_EQ(0, KxTabKeyboardHook(HC_ACTION, VK_TAB, 0));

    // Each allocation of the set-up failing in turn leaves nothing, not even a tab or a hook.
    long params[] = {5};
    unsigned char visible[] = {1, 1, 1}, keep[] = {1, 0, 0};
    KXTAB* tab = nullptr;
    int nth = 1;
    for (; nth < 10; ++nth) {
        int live = KvText_LiveAllocations();
        KvText_FailAllocation(nth);
        tab = KxTabInitEx(dialog, kTabId, module, 3, templates, 3, procs, nullptr, nullptr, 0, params, 0, visible, 0, keep);
        KvText_FailAllocation(0);
        if (tab) break;
        EXPECT_EQ(live, KvText_LiveAllocations()) << nth;
        EXPECT_EQ(0, dialog.tabCount()) << nth;
        EXPECT_EQ(0, spy.installed()) << nth;
    }
    // Record, visibility, parameters, keep flags and kept windows; the subclass cell is optional.
    EXPECT_EQ(6, nth);
    ASSERT_NE(nullptr, dialog.record = tab);

    // Bad indexes, a missing dialog, template or procedure: the page shown stays.
    HWND shown = dialog.page();
    pages.procs[2] = nullptr;
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, -1));
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, 3));
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, nullptr, 0));
    EXPECT_FALSE(KxTabChangeSelection(goneHandle, kTabId, tab, 0));
    EXPECT_FALSE(KxTabChangeSelection(dialog, 4711, tab, 0));
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, 1));
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, 2));
    EXPECT_EQ(shown, dialog.page());
    EXPECT_TRUE(IsWindowVisible(shown));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxTabGetItemText(dialog, kTabId, 0, tab));
    KvText_FailAllocation(0);
    EXPECT_EQ(nullptr, KxTabGetItemText(nullptr, kTabId, 0, tab));
    EXPECT_EQ(nullptr, KxTabGetItemText(dialog, kTabId, 0, nullptr));
    dialog.destroy();
    EXPECT_EQ(0, spy.live());
}

// A tab control that refuses its second tab.
LRESULT CALLBACK refuseSecondTab(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    if (message == TCM_INSERTITEMW && TabCtrl_GetItemCount(window) == 1) return -1;
    return DefSubclassProc(window, message, wParam, lParam);
}

TEST_F(TabManager, ARefusedTabUndoesTheSetUp) {
    HookSpy spy;
    TabbedDialog dialog;
    SetWindowSubclass(dialog.tabs(), refuseSecondTab, 1, 0);
    int live = KvText_LiveAllocations();
    EXPECT_EQ(nullptr, init(dialog, customer));
    EXPECT_EQ(0, dialog.tabCount());
    EXPECT_EQ(live, KvText_LiveAllocations());
    EXPECT_EQ(0, spy.installed());
    EXPECT_TRUE(Creations().empty());
    RemoveWindowSubclass(dialog.tabs(), refuseSecondTab, 1);
}

}  // namespace
