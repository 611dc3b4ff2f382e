// Shared main of the test suites: common controls, the sample modules, then the library started
// in the order a host starts it (Kx1SetLanguage, InitTool).
#include "kvtest.h"
#include <commctrl.h>
#include <stdio.h>
#include "kvkit_core.h"

int main(int argc, char** argv) {
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_WIN95_CLASSES | ICC_DATE_CLASSES | ICC_TAB_CLASSES};
    InitCommonControlsEx(&init);
    if (!kvtest::LoadSampleModules()) {
        fprintf(stderr, "sample modules not found beside the test program\n");
        return 2;
    }
    // A host has the sibling toolkit loaded; it registers the "kx2ImgButton" class.
    LoadLibraryW(L"kvkit2.dll");
    Kx1SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), kvtest::ResourceModule(),
                   kvtest::LanguageModule());
    InitTool();
    kvtest::WarmUpSystemCaches();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
