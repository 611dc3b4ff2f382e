// The export table holds plain, undecorated names that a host can look up by GetProcAddress.
#include "kvtest.h"
#include <commctrl.h>
#include <set>
#include <string>

namespace {

std::set<std::string> exportNames(const wchar_t* moduleName) {
    auto* base = reinterpret_cast<const BYTE*>(LoadLibraryW(moduleName));
    if (!base) return {};
    auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS32*>(
        base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory =
        nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + directory.VirtualAddress);
    auto* names = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    std::set<std::string> result;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
        result.insert(reinterpret_cast<const char*>(base + names[i]));
    return result;
}

TEST(Exports, AllNamesArePlain) {
    for (const wchar_t* module : {L"kvkit.dll", L"kvtext.dll", L"kvbase.dll", L"kvkit2.dll"}) {
        std::set<std::string> names = exportNames(module);
        EXPECT_FALSE(names.empty());
        for (const std::string& name : names) {
            EXPECT_EQ(std::string::npos, name.find('@')) << name;
            EXPECT_NE('_', name[0]) << name;
        }
    }
}

TEST(Exports, FrameExportsResolveByName) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    const char* frame[] = {
        "InitTool", "Kx1SetLanguage", "Kx1SetFormatCheck", "KxGetToolBitmap",
        "GetNonClientMetrics", "GetSysSmallCaptionFont", "Kx1SetLayeredWindowAttributes",
        "Kx1SetLayeredWindowAttributes_Enabled", "Kx1GradientFill_Enabled", "KVSHGetFolderPath",
        "Kx1SetSubProc", "Kx1GetSubProc", "Kx1SetListBoxProc"};
    for (const char* name : frame) EXPECT_NE(nullptr, GetProcAddress(kvkit, name)) << name;
    // The two "enabled" questions share one body.
    EXPECT_EQ(GetProcAddress(kvkit, "Kx1GradientFill_Enabled"),
              GetProcAddress(kvkit, "Kx1SetLayeredWindowAttributes_Enabled"));
    int themeWrappers = 0;
    for (const std::string& name : exportNames(L"kvkit.dll"))
        themeWrappers += name.rfind("KxDrawTheme", 0) == 0 || name.rfind("KxGetTheme", 0) == 0 ||
                         name.rfind("KxIsTheme", 0) == 0 || name.rfind("KxOpenTheme", 0) == 0 ||
                         name.rfind("KxCloseTheme", 0) == 0 || name == "KxSetWindowTheme" ||
                         name == "KxHitTestThemeBackground" || name == "KxIsAppThemed" ||
                         name == "KxGetWindowTheme" || name == "KxEnableThemeDialogTexture" ||
                         name == "KxSetThemeAppProperties" || name == "KxGetCurrentThemeName" ||
                         name == "KxEnableTheming";
    EXPECT_EQ(48, themeWrappers);
}

// The test programs are bound to common controls 6 by their manifest, as a host is: the
// comctl32 in use comes from the side-by-side assembly and its buttons answer version 6 messages.
TEST(Manifest, CommonControlsVersionSix) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(GetModuleHandleW(L"comctl32.dll"), path, MAX_PATH);
    CharLowerW(path);
    EXPECT_NE(nullptr, wcsstr(path, L"microsoft.windows.common-controls_6595b64144ccf1df_6.")) << path;
    HWND button = CreateWindowW(L"Button", L"OK", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, nullptr, nullptr);
    SIZE ideal = {};
    EXPECT_TRUE(SendMessageW(button, BCM_GETIDEALSIZE, 0, reinterpret_cast<LPARAM>(&ideal)));
    EXPECT_GT(ideal.cx, 0);
    DestroyWindow(button);
}

}  // namespace
