// The core suite starts the library itself: the start-up tests must see InitTool and
// Kx1SetLanguage before anything has called them.
#include "kvtest.h"
#include <commctrl.h>
#include <stdio.h>

int main(int argc, char** argv) {
    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_WIN95_CLASSES};
    InitCommonControlsEx(&init);
    if (!kvtest::LoadSampleModules()) {
        fprintf(stderr, "sample modules not found beside the test program\n");
        return 2;
    }
    kvtest::WarmUpSystemCaches();
    // The host's shared cursor, loaded once here, is the one that the "EditButton" class keeps
    // for the rest of the process when a test first registers it.
    LoadCursorW(kvtest::ResourceModule(), L"handIcon");
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
