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
        dialog.record = KxTabInitEx(dialog, kTabId, kvtest::LanguageModule(), pages.count(),
                                    pages.templates.data(), pages.count(), pages.procs.data(),
                                    pages.titles.data(), nullptr, 0, nullptr, firstPage, visible,
                                    language, keep);
        return dialog.record;
    }
    int slotShown(const TabbedDialog& dialog) const {
        for (const PageCreation& creation : Creations())
            if (creation.window == dialog.page()) return creation.slot;
        return -1;
    }
};

TEST_F(TabManager, RecordHoldsCopiesAndTheFirstPageCoversThePageArea) {
    TabbedDialog dialog;
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"});
    long params[] = {42, 7, 9};
    unsigned char visible[] = {1, 1, 1}, keep[] = {0, 1, 0};
    KXTAB* tab = KxTabInitEx(dialog, kTabId, kvtest::LanguageModule(), 3, pages.templates.data(), 3,
                             pages.procs.data(), pages.titles.data(), nullptr, 0, params, 1, visible,
                             0, keep);
    ASSERT_NE(nullptr, tab);
    dialog.record = tab;
    EXPECT_EQ(reinterpret_cast<LONG_PTR>(tab), GetWindowLongPtrW(dialog.tabs(), GWLP_USERDATA));
    EXPECT_EQ(kvtest::LanguageModule(), tab->instance);
    EXPECT_EQ(3, tab->pageCount);
    EXPECT_EQ(pages.templates.data(), tab->templates);
    EXPECT_EQ(3, tab->procCount);
    EXPECT_EQ(pages.procs.data(), tab->procs);
    EXPECT_EQ(0, tab->language);
    EXPECT_EQ(0, tab->resizable);
    // Visibility and keep flags are copied; every parameter entry is the first parameter.
    ASSERT_NE(nullptr, tab->visible);
    EXPECT_NE(visible, tab->visible);
    EXPECT_EQ(0, memcmp(visible, tab->visible, 3));
    ASSERT_NE(nullptr, tab->keep);
    EXPECT_NE(keep, tab->keep);
    EXPECT_EQ(0, memcmp(keep, tab->keep, 3));
    EXPECT_EQ(3, tab->paramCount);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(42, tab->params[i]) << i;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(nullptr, tab->keptPages[i]) << i;

    EXPECT_EQ(3, dialog.tabCount());
    EXPECT_EQ(L"&Contacts", dialog.tabTitle(1));
    EXPECT_EQ(1, dialog.selectedTab());
    EXPECT_EQ(1, tab->pageIndex);
    ASSERT_EQ(1u, Creations().size());
    EXPECT_EQ(1, Creations()[0].slot);
    EXPECT_EQ(42, Creations()[0].parameter);
    HWND page = tab->page;
    EXPECT_EQ(Creations()[0].window, page);
    EXPECT_NE(nullptr, GetDlgItem(page, kContactsList));
    EXPECT_EQ(dialog.handle(), GetParent(page));
    EXPECT_TRUE(IsWindowVisible(page));
    EXPECT_EQ(dialog.pageArea(), RectInParent(page));
    EXPECT_TRUE(GetWindowLongW(page, GWL_EXSTYLE) & WS_EX_CONTROLPARENT);
    // Above the tab control, which would otherwise paint over it.
    EXPECT_EQ(nullptr, GetWindow(page, GW_HWNDPREV));

    EXPECT_TRUE(KxTabChangeSelection(dialog, kTabId, tab, 2));
    EXPECT_EQ(42, Creations().back().parameter);

    // A non-zero parameter count makes a one-entry array.
    TabbedDialog second;
    second.record = KxTabInitEx(second, kTabId, kvtest::LanguageModule(), 3, pages.templates.data(),
                                3, pages.procs.data(), pages.titles.data(), nullptr, 3, params, 0,
                                nullptr, 0, nullptr);
    ASSERT_NE(nullptr, second.record);
    EXPECT_EQ(1, second.record->paramCount);
    EXPECT_EQ(42, second.record->params[0]);
    EXPECT_EQ(nullptr, second.record->visible);
    EXPECT_EQ(nullptr, second.record->keep);
    EXPECT_EQ(nullptr, second.record->keptPages);
}

TEST_F(TabManager, InvisiblePagesHaveNoTabs) {
    TabbedDialog dialog;
    Pages pages({kAddressPage, kContactsPage, kNotesPage, kContactsPage, kAddressPage},
                {L"A", L"B", L"C", L"D", L"E"});
    unsigned char visible[] = {1, 0, 1, 0, 1};
    // First page 3 has no tab: the first tab opens.
    KXTAB* tab = init(dialog, pages, 3, visible);
    ASSERT_NE(nullptr, tab);
    ASSERT_EQ(3, dialog.tabCount());
    EXPECT_EQ(L"A", dialog.tabTitle(0));
    EXPECT_EQ(L"C", dialog.tabTitle(1));
    EXPECT_EQ(L"E", dialog.tabTitle(2));
    EXPECT_EQ(0, dialog.selectedTab());
    EXPECT_EQ(0, slotShown(dialog));

    EXPECT_EQ(0, KxTabGetIndex(tab, 0));
    EXPECT_EQ(2, KxTabGetIndex(tab, 1));
    EXPECT_EQ(4, KxTabGetIndex(tab, 2));
    EXPECT_EQ(3, KxTabGetIndex(tab, 3));  // no such tab: unchanged
    EXPECT_TRUE(KxTabChangeSelection(dialog, kTabId, tab, 2));
    EXPECT_EQ(4, tab->pageIndex);
    EXPECT_EQ(4, slotShown(dialog));

    // The page index that a tab index maps to is read as a tab index.
    wchar_t* text = KxTabGetItemText(dialog, kTabId, 0, tab);
    ASSERT_NE(nullptr, text);
    EXPECT_STREQ(L"A", text);
    FreeMemory(text);
    text = KxTabGetItemText(dialog, kTabId, 1, tab);
    ASSERT_NE(nullptr, text);
    EXPECT_STREQ(L"E", text);
    FreeMemory(text);
    EXPECT_EQ(nullptr, KxTabGetItemText(dialog, kTabId, 2, tab));

    // First page 4 is the third tab.
    TabbedDialog second;
    ASSERT_NE(nullptr, init(second, pages, 4, visible));
    EXPECT_EQ(2, second.selectedTab());
    EXPECT_EQ(4, second.record->pageIndex);
}

TEST_F(TabManager, TitlesComeFromTheCallerOrTheInstanceOrAreEmpty) {
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"", L"", L""});
    int titleIds[] = {6140, 6141, 9999};
    TabbedDialog loaded;
    loaded.record = KxTabInit(loaded, kTabId, kvtest::LanguageModule(), 3, pages.templates.data(), 3,
                              pages.procs.data(), nullptr, titleIds, 0, nullptr, 0, nullptr, 0);
    ASSERT_NE(nullptr, loaded.record);
    EXPECT_EQ(L"&Address", loaded.tabTitle(0));
    EXPECT_EQ(L"&Contacts", loaded.tabTitle(1));
    EXPECT_EQ(L"", loaded.tabTitle(2));  // no such string

    TabbedDialog untitled;
    untitled.record = KxTabInit(untitled, kTabId, kvtest::LanguageModule(), 3, pages.templates.data(),
                                3, pages.procs.data(), nullptr, nullptr, 0, nullptr, 0, nullptr, 0);
    ASSERT_NE(nullptr, untitled.record);
    ASSERT_EQ(3, untitled.tabCount());
    EXPECT_EQ(L"", untitled.tabTitle(0));
}

TEST_F(TabManager, ClickingATabReplacesThePage) {
    TabbedDialog dialog;
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"});
    ASSERT_NE(nullptr, init(dialog, pages));
    HWND first = dialog.page();
    dialog.clickTab(2);
    EXPECT_EQ(2, dialog.selectedTab());
    EXPECT_EQ(2, slotShown(dialog));
    EXPECT_FALSE(IsWindow(first));
    EXPECT_NE(nullptr, GetDlgItem(dialog.page(), kNotesEdit));
    EXPECT_EQ(dialog.pageArea(), RectInParent(dialog.page()));
    EXPECT_TRUE(IsWindowVisible(dialog.page()));
}

TEST_F(TabManager, KeptPagesKeepTheirContentsOthersAreRecreated) {
    TabbedDialog dialog;
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"});
    unsigned char keep[] = {1, 0, 0};
    KXTAB* tab = init(dialog, pages, 0, nullptr, keep);
    ASSERT_NE(nullptr, tab);
    HWND address = dialog.page();
    Activate(dialog, GetDlgItem(address, kStreetEdit));
    PressKeys({}, 'M');
    PressKeys({}, 'A');
    RunLoop(dialog);
    EXPECT_EQ(L"ma", WindowText(GetDlgItem(address, kStreetEdit)));

    dialog.clickTab(1);
    EXPECT_TRUE(IsWindow(address));
    EXPECT_FALSE(IsWindowVisible(address));
    EXPECT_EQ(address, tab->keptPages[0]);
    dialog.clickTab(0);
    EXPECT_EQ(address, dialog.page());
    EXPECT_TRUE(IsWindowVisible(address));
    EXPECT_EQ(L"ma", WindowText(GetDlgItem(address, kStreetEdit)));
    EXPECT_EQ(1, CreationsOf(0));

    dialog.clickTab(2);
    HWND notes = dialog.page();
    SetWindowTextW(GetDlgItem(notes, kNotesEdit), L"Call back on Monday");
    dialog.clickTab(1);
    EXPECT_FALSE(IsWindow(notes));
    dialog.clickTab(2);
    EXPECT_NE(notes, dialog.page());
    EXPECT_EQ(L"", WindowText(GetDlgItem(dialog.page(), kNotesEdit)));
    EXPECT_EQ(2, CreationsOf(2));
}

TEST_F(TabManager, CtrlTabAndCtrlShiftTabMoveThroughTheTabsAndWrap) {
    TabbedDialog dialog;
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"});
    ASSERT_NE(nullptr, init(dialog, pages));
    Activate(dialog, GetDlgItem(dialog.page(), kStreetEdit));

    for (int expected : {1, 2, 0}) {
        PressKeys({VK_CONTROL}, VK_TAB);
        std::vector<MSG> retrieved = RunLoop(dialog);
        EXPECT_EQ(expected, dialog.selectedTab());
        EXPECT_EQ(expected, slotShown(dialog));
        // The key went no further than the hook.
        EXPECT_EQ(0, CountRetrieved(retrieved, WM_KEYDOWN, VK_TAB) + CountRetrieved(retrieved, WM_SYSKEYDOWN, VK_TAB));
    }
    PressKeys({VK_CONTROL, VK_SHIFT}, VK_TAB);
    RunLoop(dialog);
    EXPECT_EQ(2, dialog.selectedTab());
    EXPECT_EQ(2, slotShown(dialog));
    PressKeys({VK_CONTROL, VK_SHIFT}, VK_TAB);
    RunLoop(dialog);
    EXPECT_EQ(1, dialog.selectedTab());

    // Tab alone is the dialog's.
    Activate(dialog, GetDlgItem(dialog, IDOK));
    PressKeys({}, VK_TAB);
    std::vector<MSG> retrieved = RunLoop(dialog);
    EXPECT_EQ(1, CountRetrieved(retrieved, WM_KEYDOWN, VK_TAB));
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
    EXPECT_EQ(1, slotShown(dialog));
    EXPECT_EQ(0, CountRetrieved(retrieved, WM_SYSCHAR));
    EXPECT_EQ(1, CountRetrieved(retrieved, WM_NULL));

    // "&A" and "&a" both match: each is selected in turn and the last one stays.
    Creations().clear();
    PressKeys({VK_MENU}, 'A');
    RunLoop(dialog);
    EXPECT_EQ(2, dialog.selectedTab());
    ASSERT_EQ(2u, Creations().size());
    EXPECT_EQ(0, Creations()[0].slot);
    EXPECT_EQ(2, Creations()[1].slot);

    // No tab has "&Q": the character goes on to the dialog.
    PressKeys({VK_MENU}, 'Q');
    retrieved = RunLoop(dialog);
    EXPECT_EQ(1, CountRetrieved(retrieved, WM_SYSCHAR, 'q'));
    EXPECT_EQ(2, dialog.selectedTab());
}

TEST_F(TabManager, LanguageChoosesTheTemplate) {
    Pages pages({kAddressPage, kContactsPage}, {L"&Address", L"&Contacts"});
    auto streetLabel = [](const TabbedDialog& dialog) { return WindowText(GetDlgItem(dialog.page(), kStreetLabel)); };
    {
        TabbedDialog dialog;
        ASSERT_NE(nullptr, init(dialog, pages, 0, nullptr, nullptr, LANG_GERMAN));
        EXPECT_EQ(LANG_GERMAN, dialog.record->language);
        EXPECT_EQ(L"Strasse:", streetLabel(dialog));
    }
    for (unsigned short language : {0, LANG_ENGLISH}) {
        TabbedDialog dialog;
        ASSERT_NE(nullptr, init(dialog, pages, 0, nullptr, nullptr, language));
        EXPECT_EQ(L"Street:", streetLabel(dialog));
    }
    // No French template: the first switch fails, and the record stays with the tab control with
    // the hooks installed until it is ended.
    HookSpy spy;
    TabbedDialog dialog;
    EXPECT_EQ(nullptr, init(dialog, pages, 0, nullptr, nullptr, LANG_FRENCH));
    auto* left = reinterpret_cast<KXTAB*>(GetWindowLongPtrW(dialog.tabs(), GWLP_USERDATA));
    ASSERT_NE(nullptr, left);
    EXPECT_EQ(nullptr, left->page);
    EXPECT_EQ(2, spy.live());
    EXPECT_EQ(1, KxTabEnd(dialog, left));
    EXPECT_EQ(0, spy.live());
}

TEST_F(TabManager, HooksComeWithTheFirstManagerAndGoWithTheLast) {
    HookSpy spy;
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"});
    TabbedDialog first, second;
    ASSERT_NE(nullptr, init(first, pages));
    EXPECT_EQ(1, spy.live(WH_GETMESSAGE));
    EXPECT_EQ(1, spy.live(WH_KEYBOARD));
    HHOOK oldKeyboard = spy.last(WH_KEYBOARD), oldMessage = spy.last(WH_GETMESSAGE);
    ASSERT_NE(nullptr, init(second, pages));
    EXPECT_EQ(2, spy.installed());

    // The hooks serve the tab control set up last.
    Activate(first, GetDlgItem(first.page(), kStreetEdit));
    PressKeys({VK_CONTROL}, VK_TAB);
    RunLoop(first);
    EXPECT_EQ(0, first.selectedTab());
    EXPECT_EQ(1, second.selectedTab());

    // Ending that manager leaves the hooks to the other one, serving nobody.
    second.destroy();
    EXPECT_EQ(2, spy.live());
    Activate(first, GetDlgItem(first.page(), kStreetEdit));
    PressKeys({VK_CONTROL}, VK_TAB);
    std::vector<MSG> retrieved = RunLoop(first);
    EXPECT_EQ(1, CountRetrieved(retrieved, WM_KEYDOWN, VK_TAB));
    EXPECT_EQ(0, first.selectedTab());

    first.destroy();
    EXPECT_EQ(0, spy.live());
    EXPECT_FALSE(UnhookWindowsHookEx(oldKeyboard));
    EXPECT_FALSE(UnhookWindowsHookEx(oldMessage));

    // A new manager installs fresh hooks that work.
    TabbedDialog third;
    ASSERT_NE(nullptr, init(third, pages));
    EXPECT_EQ(4, spy.installed());
    EXPECT_EQ(2, spy.live());
    Activate(third, GetDlgItem(third.page(), kStreetEdit));
    PressKeys({VK_CONTROL}, VK_TAB);
    RunLoop(third);
    EXPECT_EQ(1, third.selectedTab());
    third.destroy();
    EXPECT_EQ(0, spy.live());
}

TEST_F(TabManager, ResizablePagesFollowTheDialog) {
    TabbedDialog dialog;
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"});
    KXTAB* tab = init(dialog, pages);
    ASSERT_NE(nullptr, tab);
    // The tabs exist before the engine takes the tab control's page area.
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    RECT design = dialog.pageArea();
    RECT client;
    GetClientRect(dialog, &client);
    tab->resizable = 1;
    dialog.clickTab(1);
    HWND contacts = dialog.page();
    EXPECT_EQ(design, RectInParent(contacts));
    RECT list = RectInParent(GetDlgItem(contacts, kContactsList));

    RECT frame;
    GetWindowRect(dialog, &frame);
    SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left + client.right / 2,
                 frame.bottom - frame.top + client.bottom / 2, SWP_NOMOVE | SWP_NOZORDER);
    RunLoop(dialog);
    RECT grown;
    GetClientRect(dialog, &grown);
    double growthX = (grown.right - client.right) * 100 / static_cast<double>(client.right);
    double growthY = (grown.bottom - client.bottom) * 100 / static_cast<double>(client.bottom);
    auto scaled = [](LONG value, double growth) { return value + static_cast<LONG>(value * growth / 100.0); };
    RECT expected = {scaled(design.left, growthX), scaled(design.top, growthY),
                     scaled(design.right, growthX), scaled(design.bottom, growthY)};
    EXPECT_EQ(expected, RectInParent(contacts));
    // The page's own children are laid out too.
    RECT listNow = RectInParent(GetDlgItem(contacts, kContactsList));
    EXPECT_GT(listNow.right - listNow.left, list.right - list.left);

    // The page left is taken out of the engine before it goes.
    dialog.clickTab(2);
    EXPECT_FALSE(IsWindow(contacts));
    SetWindowPos(dialog, nullptr, 0, 0, frame.right - frame.left, frame.bottom - frame.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    RunLoop(dialog);
    EXPECT_EQ(1, KxSizeDlgEnd(dialog));
}

TEST_F(TabManager, BadArgumentsAndFailuresLeaveNothingBehind) {
    HookSpy spy;
    Pages pages({kAddressPage, 9999, kNotesPage}, {L"&Address", L"&Missing", L"&Notes"});
    TabbedDialog dialog;
    HINSTANCE module = kvtest::LanguageModule();
    EXPECT_EQ(nullptr, KxTabInit(nullptr, kTabId, module, 3, pages.templates.data(), 3, pages.procs.data(), nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, 4711, module, 3, pages.templates.data(), 3, pages.procs.data(), nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, kTabId, module, 0, pages.templates.data(), 3, pages.procs.data(), nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, kTabId, module, 3, nullptr, 3, pages.procs.data(), nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(nullptr, KxTabInit(dialog, kTabId, module, 3, pages.templates.data(), 3, nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
    EXPECT_EQ(0, dialog.tabCount());
    EXPECT_EQ(0, spy.installed());
    EXPECT_EQ(-1, KxTabGetIndex(nullptr, 1));
    EXPECT_EQ(0, KxTabEnd(nullptr, nullptr));
    EXPECT_EQ(0, KxTabCheckActivate(dialog, WM_ACTIVATE, 0));
    EXPECT_EQ(0, KxTabSystemHook(HC_ACTION, PM_REMOVE, 0));
    EXPECT_EQ(0, KxTabKeyboardHook(HC_ACTION, VK_TAB, 0));

    // Every allocation of the set-up failing in turn: nothing is left, not even a tab.
    long params[] = {5};
    unsigned char visible[] = {1, 1, 1}, keep[] = {1, 0, 0};
    KXTAB* tab = nullptr;
    int nth = 1;
    for (; nth < 10; ++nth) {
        int live = KvText_LiveAllocations();
        KvText_FailAllocation(nth);
        tab = KxTabInitEx(dialog, kTabId, module, 3, pages.templates.data(), 3, pages.procs.data(),
                          pages.titles.data(), nullptr, 0, params, 0, visible, 0, keep);
        KvText_FailAllocation(0);
        if (tab) break;
        EXPECT_EQ(live, KvText_LiveAllocations()) << nth;
        EXPECT_EQ(0, dialog.tabCount()) << nth;
        EXPECT_EQ(0, spy.live()) << nth;
    }
    // Record, visibility, parameters, keep flags and kept windows; the subclass cell is optional.
    EXPECT_EQ(6, nth);
    ASSERT_NE(nullptr, tab);
    dialog.record = tab;

    // Switching refuses bad indexes, a missing template or procedure, and keeps the page shown.
    HWND shown = dialog.page();
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, -1));
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, 3));
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, nullptr, 0));
    EXPECT_FALSE(KxTabChangeSelection(nullptr, kTabId, tab, 0));
    EXPECT_FALSE(KxTabChangeSelection(dialog, 4711, tab, 0));
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, 1));  // template 9999
    pages.procs[2] = nullptr;
    EXPECT_FALSE(KxTabChangeSelection(dialog, kTabId, tab, 2));
    EXPECT_EQ(shown, dialog.page());
    EXPECT_TRUE(IsWindowVisible(shown));
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, KxTabGetItemText(dialog, kTabId, 0, tab));
    KvText_FailAllocation(0);
    EXPECT_EQ(nullptr, KxTabGetItemText(nullptr, kTabId, 0, tab));
    EXPECT_EQ(nullptr, KxTabGetItemText(dialog, kTabId, 0, nullptr));

    // A destroyed dialog is refused.
    TabbedDialog gone;
    HWND goneHandle = gone.handle();
    gone.destroy();
    EXPECT_FALSE(KxTabChangeSelection(goneHandle, kTabId, tab, 0));
    EXPECT_EQ(nullptr, KxTabInit(goneHandle, kTabId, module, 3, pages.templates.data(), 3, pages.procs.data(), nullptr, nullptr, 0, nullptr, 0, nullptr, 0));
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
    Pages pages({kAddressPage, kContactsPage, kNotesPage}, {L"&Address", L"&Contacts", L"&Notes"});
    TabbedDialog dialog;
    SetWindowSubclass(dialog.tabs(), refuseSecondTab, 1, 0);
    int live = KvText_LiveAllocations();
    EXPECT_EQ(nullptr, init(dialog, pages));
    EXPECT_EQ(0, dialog.tabCount());
    EXPECT_EQ(live, KvText_LiveAllocations());
    EXPECT_EQ(0, spy.installed());
    EXPECT_TRUE(Creations().empty());
    RemoveWindowSubclass(dialog.tabs(), refuseSecondTab, 1);
}

TEST(TabExports, ResolveByTheirPlainNames) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"KxTabInitEx", "KxTabInit", "KxTabChangeSelection", "KxTabGetIndex", "KxTabGetItemText",
                             "KxTabEnd", "KxTabCheckActivate", "KxTabKeyboardHook", "KxTabSystemHook"})
        EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
}

}  // namespace
