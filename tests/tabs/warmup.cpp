// Before the first test: a property sheet run once, its second page shown, so that the objects
// the system keeps from its first sheet on do not count as left behind by the first test.
#include "tabs_fixture.h"
#include <prsht.h>

namespace {

class SheetWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        PROPSHEETPAGEW pages[2] = {};
        for (int i = 0; i < 2; ++i) {
            pages[i].dwSize = sizeof(pages[i]);
            pages[i].hInstance = kvtest::LanguageModule();
            pages[i].pszTemplate = MAKEINTRESOURCEW(tabs_test::kGeneralSheetPage + i);
            pages[i].pfnDlgProc = tabs_test::PageProc(i);
        }
        PROPSHEETHEADERW header = {};
        header.dwSize = sizeof(header);
        header.dwFlags = PSH_PROPTITLE | PSH_PROPSHEETPAGE | PSH_NOAPPLYNOW;
        header.hInstance = kvtest::LanguageModule();
        header.pszCaption = L"warm-up";
        header.nPages = 2;
        header.ppsp = pages;
        kvtest::HostWindow owner;
        header.hwndParent = owner;
        tabs_test::RunSheet(
            [](HWND sheet) {
                PropSheet_SetCurSel(sheet, nullptr, 1);
                tabs_test::RunLoop(sheet);
            },
            [&header] { return PropertySheetW(&header); });
        tabs_test::Creations().clear();
    }
};

const auto* const g_warmUp = ::testing::AddGlobalTestEnvironment(new SheetWarmUp);

}  // namespace
