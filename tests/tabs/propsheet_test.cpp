// Property sheets run modally and driven from a timer inside their loop: the pages built from the
// parallel arrays, the help button, single-line tabs and the mnemonic hook with and without their
// options, and bad arguments.
#include "tabs_fixture.h"
#include <functional>
#include <prsht.h>
#include "kvkit_propsheet.h"

using namespace tabs_test;

namespace {

// Page procedure of slot i: logs the parameter of its page description.
template <int Slot>
INT_PTR CALLBACK sheetPageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG)
        Creations().push_back({Slot, page, reinterpret_cast<PROPSHEETPAGEW*>(lParam)->lParam});
    return FALSE;
}

class PropSheet : public kvtest::KvTest {
protected:
    void SetUp() override { Creations().clear(); }

    INT_PTR run(int noHelp, int mnemonics, std::function<void(HWND)> inside,
                unsigned char* visible = nullptr, int oneParam = 0, unsigned startPage = 0) {
        return RunSheet(inside, [&] {
            return KxCreatePropertySheet(owner, kvtest::LanguageModule(), procs, templates, oneParam,
                                         params, 3, caption, startPage, 0, noHelp, mnemonics,
                                         visible);
        });
    }
    static HWND tabsOf(HWND sheet) { return PropSheet_GetTabControl(sheet); }
    static int currentPage(HWND sheet) { return PropSheet_HwndToIndex(sheet, PropSheet_GetCurrentPageHwnd(sheet)); }

    kvtest::HostWindow owner;
    DLGPROC procs[3] = {sheetPageProc<0>, sheetPageProc<1>, sheetPageProc<2>};
    int templates[3] = {kGeneralSheetPage, kPhonesSheetPage, kRemarksSheetPage};
    long params[3] = {11, 22, 33};
    wchar_t caption[9] = L"Customer";
};

TEST_F(PropSheet, AnInvisiblePageIsLeftOut) {
    unsigned char visible[] = {1, 0, 1};
    for (int oneParam : {0, 1}) {
        SCOPED_TRACE(oneParam);
        int tabs = 0;
        std::wstring first, second;
        std::vector<HWND> labels;  // the first control of each page made, by template
        run(0, 0, [&](HWND sheet) {
            tabs = TabCtrl_GetItemCount(tabsOf(sheet));
            first = TabTitle(tabsOf(sheet), 0);
            second = TabTitle(tabsOf(sheet), 1);
            PropSheet_SetCurSel(sheet, nullptr, 1);
            RunLoop(sheet);
            // The second page of the sheet is made from the third template.
            labels = {GetDlgItem(PropSheet_IndexToHwnd(sheet, 0), 150),
                      GetDlgItem(PropSheet_IndexToHwnd(sheet, 1), 152)};
        }, visible, oneParam);
        EXPECT_EQ(2, tabs);
        EXPECT_EQ(L"&General", first);
        EXPECT_EQ(L"&Remarks", second);
        ASSERT_EQ(2u, Creations().size());
        EXPECT_EQ(0, Creations()[0].slot);
        EXPECT_EQ(11, Creations()[0].parameter);
        EXPECT_EQ(2, Creations()[1].slot);
        EXPECT_EQ(oneParam ? 11 : 33, Creations()[1].parameter);
        EXPECT_NE(nullptr, labels[0]);
        EXPECT_NE(nullptr, labels[1]);
    }
}

// The help button is read from the sheet's style, which keeps the template's DS_CONTEXTHELP.
TEST_F(PropSheet, EachOptionBringsItsOwnChange) {
    struct Case {
        int noHelp, mnemonics;
        bool helpButton, multiLine;
        int hooks;
    };
    const Case cases[] = {
        {0, 0, true, true, 0},  // no callback: the sheet as the system makes it
        {1, 0, false, false, 0},
        {0, 1, true, false, 1},
        {1, 1, false, false, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "noHelp " << c.noHelp << " mnemonics " << c.mnemonics);
        HookSpy spy;
        bool helpButton = false, multiLine = false;
        int hooks = -1;
        run(c.noHelp, c.mnemonics, [&](HWND sheet) {
            helpButton = (GetWindowLongW(sheet, GWL_STYLE) & DS_CONTEXTHELP) != 0;
            multiLine = (GetWindowLongW(tabsOf(sheet), GWL_STYLE) & TCS_MULTILINE) != 0;
            hooks = spy.live(WH_GETMESSAGE);
        });
        EXPECT_EQ(c.helpButton, helpButton);
        EXPECT_EQ(c.multiLine, multiLine);
        EXPECT_EQ(c.hooks, hooks);
        EXPECT_EQ(c.hooks, spy.installed());
        EXPECT_EQ(0, spy.live());  // a modal sheet's hook is gone when the call returns
    }
}

TEST_F(PropSheet, AltMnemonicSelectsThePageUntilTheSheetEnds) {
    HookSpy spy;
    owner.setHandler([](HWND, UINT message, WPARAM, LPARAM, LRESULT* result) {
        *result = 0;
        return message == WM_SYSCHAR;
    });
    std::vector<MSG> matched, unmatched;
    int afterMatch = -1, afterMiss = -1, endOther = -1, end = -1, endAgain = -1;
    run(0, 1, [&](HWND sheet) {
        PressKeys({VK_MENU}, 'R');
        matched = RunLoop(sheet);
        afterMatch = currentPage(sheet);
        // Alt+Z meant for the owner, which takes it itself (the sheet's system menu would open).
        PostMessageW(owner, WM_SYSCHAR, 'z', 1 << 29);
        unmatched = RunLoop(sheet);
        afterMiss = currentPage(sheet);
        endOther = KxEndPropertySheet(owner);
        end = KxEndPropertySheet(sheet);
        endAgain = KxEndPropertySheet(sheet);
    });
    EXPECT_EQ(2, afterMatch);
    EXPECT_EQ(0, CountRetrieved(matched, WM_SYSCHAR));
    EXPECT_EQ(1, CountRetrieved(matched, WM_NULL));
    EXPECT_EQ(2, afterMiss);
    EXPECT_EQ(1, CountRetrieved(unmatched, WM_SYSCHAR, 'z'));
    EXPECT_EQ(1, owner.count(WM_SYSCHAR));
    EXPECT_EQ(0, endOther);
    EXPECT_EQ(1, end);
    EXPECT_EQ(0, endAgain);
    ASSERT_EQ(1, spy.installed());
    EXPECT_EQ(0, spy.live());
    EXPECT_FALSE(UnhookWindowsHookEx(spy.last(WH_GETMESSAGE)));
    EXPECT_EQ(0, KxEndPropertySheet(nullptr));
}

// The sheet's template in both forms; the option that is off is switched on for later
// notifications of the same sheet.
TEST_F(PropSheet, HelpIsRemovedFromEitherTemplateForm) {
    struct ExtendedStart {
        WORD version, signature;
        DWORD helpId, exStyle, style;
    };
    DLGTEMPLATE classic = {WS_POPUP | WS_CAPTION | DS_MODALFRAME | DS_CONTEXTHELP, 0, 0, 0, 0, 100, 80};
    ExtendedStart extended = {1, 0xFFFF, 7, WS_EX_TOOLWINDOW, WS_POPUP | DS_CONTEXTHELP};
    run(1, 0, nullptr);
    EXPECT_EQ(1, KxPropSheetProc(nullptr, PSCB_PRECREATE, reinterpret_cast<LPARAM>(&classic)));
    EXPECT_EQ(static_cast<DWORD>(WS_POPUP | WS_CAPTION | DS_MODALFRAME), classic.style);
    EXPECT_EQ(1, KxPropSheetProc(nullptr, PSCB_PRECREATE, reinterpret_cast<LPARAM>(&extended)));
    EXPECT_EQ(static_cast<DWORD>(WS_POPUP), extended.style);
    EXPECT_EQ(7u, extended.helpId);
    EXPECT_EQ(static_cast<DWORD>(WS_EX_TOOLWINDOW), extended.exStyle);

    // Mnemonics alone: the sheet kept its help button, but its PRECREATE switched the option on.
    classic.style |= DS_CONTEXTHELP;
    run(0, 1, nullptr);
    KxPropSheetProc(nullptr, PSCB_PRECREATE, reinterpret_cast<LPARAM>(&classic));
    EXPECT_EQ(0u, classic.style & DS_CONTEXTHELP);
}

TEST_F(PropSheet, StartPageCountsVisiblePagesAndBadArgumentsMakeNoSheet) {
    unsigned char visible[] = {0, 1, 1};
    run(0, 0, nullptr, visible, 0, 1);
    ASSERT_FALSE(Creations().empty());
    EXPECT_EQ(2, Creations()[0].slot);
    // Beyond the pages: left to the sheet, which still comes up.
    run(0, 0, nullptr, nullptr, 0, 0x10007);
    EXPECT_FALSE(Creations().empty());

    unsigned char none[] = {0, 0, 0};
    HINSTANCE module = kvtest::LanguageModule();
    auto noSheet = [&](std::function<INT_PTR()> create) {
        EXPECT_EQ(0, RunSheet(nullptr, create));
        EXPECT_TRUE(Creations().empty());
    };
    noSheet([&] { return KxCreatePropertySheet(owner, module, procs, templates, 0, params, 0, caption, 0, 0, 1, 1, nullptr); });
    noSheet([&] { return KxCreatePropertySheet(owner, module, nullptr, templates, 0, params, 3, caption, 0, 0, 1, 1, nullptr); });
    noSheet([&] { return KxCreatePropertySheet(owner, module, procs, nullptr, 0, params, 3, caption, 0, 0, 1, 1, nullptr); });
    noSheet([&] { return KxCreatePropertySheet(owner, module, procs, templates, 0, params, 3, caption, 0, 0, 1, 1, none); });
    // Called without a sheet or a message, the callback and the hook do nothing.
    HookSpy spy;
    run(0, 1, nullptr);
    EXPECT_EQ(1, spy.installed());
    EXPECT_EQ(0, KxPropSheetProc(nullptr, PSCB_INITIALIZED, 0));
    EXPECT_EQ(1, spy.installed());
    EXPECT_EQ(0, KxPropSheetHook(HC_ACTION, PM_REMOVE, 0));
    EXPECT_EQ(1, KxPropSheetProc(nullptr, PSCB_PRECREATE, 0));
    KvText_FailAllocation(1);
    noSheet([&] { return KxCreatePropertySheet(owner, module, procs, templates, 0, params, 3, caption, 0, 0, 1, 1, nullptr); });
    KvText_FailAllocation(0);
}

}  // namespace
