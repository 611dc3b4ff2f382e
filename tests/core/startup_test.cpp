// Start-up: class registration once (and again after a failed first registrar), the language
// and resource modules, the entry point keeping its first handle, and the small system wrappers.
#include "kvtest.h"
#include <shlobj.h>
#include "kvkit_core.h"

namespace {

using kvtest::KvTest;

HMODULE kvkitModule() { return GetModuleHandleW(L"kvkit.dll"); }

bool classExists(const wchar_t* name, WNDCLASSEXW* info = nullptr) {
    WNDCLASSEXW local = {sizeof(local)};
    WNDCLASSEXW* out = info ? info : &local;
    out->cbSize = sizeof(*out);
    return GetClassInfoExW(kvkitModule(), name, out) != 0;
}

class StartupTest : public KvTest {};

// One story, in order: nothing is registered before InitTool; a blocked list box class leaves
// everything unregistered and retriable; the retry registers every class with its attributes;
// once registered, InitTool does nothing more.
TEST_F(StartupTest, InitToolRegistersOnceAndRetriesAfterAFailedListBoxClass) {
    ASSERT_FALSE(classExists(L"KVScrollClass"));

    // A global class of the same name makes the list box registration fail.
    WNDCLASSW blocker = {};
    blocker.style = CS_GLOBALCLASS;
    blocker.lpfnWndProc = DefWindowProcW;
    blocker.hInstance = GetModuleHandleW(nullptr);
    blocker.lpszClassName = L"KVListbox";
    ASSERT_NE(0, RegisterClassW(&blocker));
    InitTool();
    EXPECT_FALSE(classExists(L"KVScrollClass"));
    EXPECT_FALSE(classExists(L"szColorBoxClass"));
    EXPECT_FALSE(classExists(L"KXDlgPaintClass"));
    ASSERT_TRUE(UnregisterClassW(L"KVListbox", GetModuleHandleW(nullptr)));

    InitTool();
    WNDCLASSEXW info;
    ASSERT_TRUE(classExists(L"KVListbox", &info));
    EXPECT_EQ(UINT(CS_GLOBALCLASS | CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW), info.style);
    EXPECT_EQ(4, info.cbWndExtra);
    EXPECT_EQ(GetStockObject(LTGRAY_BRUSH), info.hbrBackground);
    EXPECT_EQ(LoadCursorW(nullptr, IDC_ARROW), info.hCursor);
    EXPECT_EQ(kvkitModule(), info.hInstance);

    ASSERT_TRUE(classExists(L"KVScrollClass", &info));
    EXPECT_EQ(UINT(CS_GLOBALCLASS | CS_DBLCLKS), info.style);
    EXPECT_EQ(16, info.cbWndExtra);
    EXPECT_EQ(nullptr, info.hbrBackground);

    ASSERT_TRUE(classExists(L"szColorBoxClass", &info));
    EXPECT_EQ(UINT(CS_GLOBALCLASS), info.style);
    ASSERT_TRUE(classExists(L"szColorBoxChildClass", &info));
    EXPECT_EQ(UINT(CS_GLOBALCLASS), info.style);

    ASSERT_TRUE(classExists(L"KXDlgPaintClass", &info));
    EXPECT_EQ(GetStockObject(LTGRAY_BRUSH), info.hbrBackground);
    EXPECT_EQ(nullptr, info.hCursor);
    ASSERT_TRUE(classExists(L"KXDlgTippWndClass", &info));
    EXPECT_EQ(GetStockObject(WHITE_BRUSH), info.hbrBackground);
    EXPECT_EQ(nullptr, info.hCursor);

    // The colour box registrar registers the clipboard format first.
    wchar_t formatName[64] = {};
    UINT format = RegisterClipboardFormatW(L"szClipBoard_Color");
    EXPECT_GT(GetClipboardFormatNameW(format, formatName, 64), 0);

    // Registered once: a class taken away is not registered again.
    ASSERT_TRUE(UnregisterClassW(L"KVScrollClass", kvkitModule()));
    InitTool();
    EXPECT_FALSE(classExists(L"KVScrollClass"));

    // A window of a registered class can be created.
    HWND listbox = CreateWindowExW(0, L"KVListbox", nullptr, WS_POPUP, 0, 0, 50, 50, nullptr,
                                   nullptr, nullptr, nullptr);
    EXPECT_NE(nullptr, listbox);
    DestroyWindow(listbox);
}

// The edit button class exists only after Kx1SetLanguage and keeps the cursor of the first
// resource module, even when a later call switches modules.
TEST_F(StartupTest, SetLanguageRegistersTheEditButtonClassOnce) {
    ASSERT_FALSE(classExists(L"EditButton"));
    HCURSOR hand = LoadCursorW(kvtest::ResourceModule(), L"handIcon");
    ASSERT_NE(nullptr, hand);

    EXPECT_EQ(1, Kx1SetLanguage(0x0407, kvtest::ResourceModule(), kvtest::LanguageModule()));
    WNDCLASSEXW info;
    ASSERT_TRUE(classExists(L"EditButton", &info));
    EXPECT_EQ(UINT(CS_GLOBALCLASS | CS_DBLCLKS), info.style);
    EXPECT_EQ(0, info.cbWndExtra);
    EXPECT_EQ(0, info.cbClsExtra);
    EXPECT_EQ(nullptr, info.hbrBackground);
    EXPECT_EQ(nullptr, info.hIcon);
    EXPECT_EQ(hand, info.hCursor);

    EXPECT_EQ(1, Kx1SetLanguage(0x0409, nullptr, kvtest::LanguageModule()));
    ASSERT_TRUE(classExists(L"EditButton", &info));
    EXPECT_EQ(hand, info.hCursor);
    Kx1SetLanguage(0x0409, kvtest::ResourceModule(), kvtest::LanguageModule());
}

int __stdcall acceptEverything(KVSESSION*, unsigned short, const wchar_t*) { return 1; }

TEST_F(StartupTest, FormatCheckIsStoredAndCleared) {
    EXPECT_EQ(1, Kx1SetFormatCheck(acceptEverything));
    EXPECT_EQ(1, Kx1SetFormatCheck(nullptr));
}

// Calls the DLL's own entry point, as the loader does for a new thread, with another handle.
TEST_F(StartupTest, EntryPointKeepsItsFirstHandle) {
    auto* base = reinterpret_cast<BYTE*>(kvkitModule());
    auto* dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    auto* nt = reinterpret_cast<IMAGE_NT_HEADERS32*>(base + dos->e_lfanew);
    typedef BOOL(WINAPI * EntryPoint)(HINSTANCE, DWORD, LPVOID);
    auto entry = reinterpret_cast<EntryPoint>(base + nt->OptionalHeader.AddressOfEntryPoint);

    EXPECT_TRUE(entry(kvtest::LanguageModule(), DLL_THREAD_ATTACH, nullptr));
    EXPECT_TRUE(entry(nullptr, DLL_THREAD_ATTACH, nullptr));
    EXPECT_TRUE(entry(kvtest::LanguageModule(), DLL_THREAD_DETACH, nullptr));
    // Tool bitmaps still come from the library's own module.
    HBITMAP arrow = KxGetToolBitmap(1000);
    EXPECT_NE(nullptr, arrow);
    DeleteObject(arrow);
}

TEST_F(StartupTest, ToolBitmapsComeFromTheLibraryByTheLow16BitsOfTheId) {
    HBITMAP bitmap = KxGetToolBitmap(1600);
    ASSERT_NE(nullptr, bitmap);
    BITMAP info;
    ASSERT_TRUE(GetObjectW(bitmap, sizeof(info), &info));
    EXPECT_EQ(13, info.bmWidth);
    DeleteObject(bitmap);

    HBITMAP high = KxGetToolBitmap(0x70000 + 2001);
    EXPECT_NE(nullptr, high);
    DeleteObject(high);
    EXPECT_EQ(nullptr, KxGetToolBitmap(4242));
}

TEST_F(StartupTest, NonClientMetricsAlwaysAsksWith504Bytes) {
    for (UINT callerSize : {0u, 1u, 500u, UINT(sizeof(NONCLIENTMETRICSW)), 9999u}) {
        NONCLIENTMETRICSW metrics;
        memset(&metrics, 0, sizeof(metrics));
        metrics.cbSize = callerSize;
        EXPECT_NE(0, GetNonClientMetrics(metrics));
        EXPECT_EQ(504u, metrics.cbSize);
        EXPECT_GT(metrics.iCaptionHeight, 0);
    }
}

TEST_F(StartupTest, SmallCaptionFontMatchesTheSystemMetrics) {
    NONCLIENTMETRICSW metrics;
    metrics.cbSize = 504;
    ASSERT_TRUE(SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, 504, &metrics, 0));
    HFONT font = GetSysSmallCaptionFont();
    ASSERT_NE(nullptr, font);
    LOGFONTW logical;
    ASSERT_TRUE(GetObjectW(font, sizeof(logical), &logical));
    EXPECT_STREQ(metrics.lfSmCaptionFont.lfFaceName, logical.lfFaceName);
    EXPECT_EQ(metrics.lfSmCaptionFont.lfHeight, logical.lfHeight);
    DeleteObject(font);
}

TEST_F(StartupTest, LayeredWindowAttributesAreForwarded) {
    EXPECT_EQ(1, Kx1SetLayeredWindowAttributes_Enabled());
    EXPECT_EQ(1, Kx1GradientFill_Enabled());
    HWND layered = CreateWindowExW(WS_EX_LAYERED, L"STATIC", nullptr, WS_POPUP, 0, 0, 20, 20,
                                   nullptr, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, layered);
    EXPECT_NE(0, Kx1SetLayeredWindowAttributes(layered, RGB(1, 2, 3), 128, LWA_ALPHA | LWA_COLORKEY));
    COLORREF key = 0;
    BYTE alpha = 0;
    DWORD flags = 0;
    ASSERT_TRUE(GetLayeredWindowAttributes(layered, &key, &alpha, &flags));
    EXPECT_EQ(RGB(1, 2, 3), key);
    EXPECT_EQ(128, alpha);
    EXPECT_EQ(DWORD(LWA_ALPHA | LWA_COLORKEY), flags);
    DestroyWindow(layered);

    HWND plain = CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, 0, 0, 20, 20, nullptr, nullptr,
                                 nullptr, nullptr);
    EXPECT_EQ(0, Kx1SetLayeredWindowAttributes(plain, 0, 255, LWA_ALPHA));
    DestroyWindow(plain);
}

// The suite runs with Wine loading only native copies of ShFolder.dll, so the DLL directory
// decides which one there is: a replacement that forwards to the shell, or none at all.
TEST_F(StartupTest, FolderPathIsOneExactlyWhenTheShellFolderLibraryAnswersSOk) {
    wchar_t path[MAX_PATH] = {};
    ASSERT_TRUE(SetDllDirectoryW(L"fakeshell"));
    EXPECT_EQ(1, KVSHGetFolderPath(nullptr, CSIDL_WINDOWS, nullptr, SHGFP_TYPE_CURRENT, path));
    EXPECT_GT(lstrlenW(path), 2);
    EXPECT_EQ(0, KVSHGetFolderPath(nullptr, 0x7E, nullptr, SHGFP_TYPE_CURRENT, path));  // S_FALSE
    EXPECT_EQ(0, KVSHGetFolderPath(nullptr, 0x7F, nullptr, SHGFP_TYPE_CURRENT, path));  // error
    EXPECT_EQ(nullptr, GetModuleHandleW(L"ShFolder.dll"));  // loaded and freed on every call

    ASSERT_TRUE(SetDllDirectoryW(L"noshell"));
    path[0] = 0;
    EXPECT_EQ(0, KVSHGetFolderPath(nullptr, CSIDL_WINDOWS, nullptr, SHGFP_TYPE_CURRENT, path));
    EXPECT_EQ(0, path[0]);
    SetDllDirectoryW(nullptr);
}

}  // namespace
