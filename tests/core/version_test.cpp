// The version a host can query agrees with the headers and with the version resource of every
// DLL the build makes.
#include "kvtest.h"
#include <stdio.h>
#include <string>
#include "kvkit_version.h"

namespace {

struct FileVersion {
    bool found = false;
    DWORD major = 0, minor = 0, patch = 0, build = 0;
    std::wstring text;  // the FileVersion string
};

FileVersion fileVersion(const std::wstring& path) {
    FileVersion version;
    DWORD ignored = 0;
    DWORD size = GetFileVersionInfoSizeW(path.c_str(), &ignored);
    if (!size) return version;
    std::string block(size, '\0');
    if (!GetFileVersionInfoW(path.c_str(), 0, size, &block[0])) return version;
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length)) return version;
    version.found = true;
    version.major = HIWORD(fixed->dwFileVersionMS);
    version.minor = LOWORD(fixed->dwFileVersionMS);
    version.patch = HIWORD(fixed->dwFileVersionLS);
    version.build = LOWORD(fixed->dwFileVersionLS);
    wchar_t* text = nullptr;
    if (VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\FileVersion",
                       reinterpret_cast<void**>(&text), &length))
        version.text = text;
    return version;
}

TEST(Version, TheDllAnswersTheHeadersVersion) {
    EXPECT_EQ(static_cast<DWORD>(KVKIT_VERSION), KxGetVersion());
}

TEST(Version, EveryDllOfTheBuildCarriesIt) {
    wchar_t expected[32];
    swprintf(expected, 32, L"%d.%d.%d", KVKIT_VERSION_MAJOR, KVKIT_VERSION_MINOR,
             KVKIT_VERSION_PATCH);
    ASSERT_STREQ(expected, L"" KVKIT_VERSION_STRING);
    WIN32_FIND_DATAW entry;
    HANDLE search = FindFirstFileW(L"*.dll", &entry);
    ASSERT_NE(INVALID_HANDLE_VALUE, search);
    int checked = 0;
    do {
        FileVersion version = fileVersion(entry.cFileName);
        ASSERT_TRUE(version.found) << entry.cFileName;
        EXPECT_EQ(static_cast<DWORD>(KVKIT_VERSION_MAJOR), version.major) << entry.cFileName;
        EXPECT_EQ(static_cast<DWORD>(KVKIT_VERSION_MINOR), version.minor) << entry.cFileName;
        EXPECT_EQ(static_cast<DWORD>(KVKIT_VERSION_PATCH), version.patch) << entry.cFileName;
        EXPECT_EQ(expected, version.text) << entry.cFileName;
        ++checked;
    } while (FindNextFileW(search, &entry));
    FindClose(search);
    // kvkit, the three in-house libraries and the two sample modules at least.
    EXPECT_GE(checked, 6);
}

}  // namespace
