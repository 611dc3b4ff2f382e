// The placement stored in the registry of the Wine prefix: saving and loading, the checks on the
// stored value, key creation, long names and centring of DS_CENTER dialogs.
#include <string>
#include "kvtest.h"
#include "test_dialog.h"

using sizedlg_test::TestDialog;

namespace {

const std::wstring kPrefix = L"Software\\Veltrix\\korvane.desk\\dialogs\\";

class SizeDlgPlacement : public kvtest::KvTest {
protected:
    void TearDown() override {
        for (const std::wstring& name : names_) RegDeleteTreeW(HKEY_CURRENT_USER, (kPrefix + name).c_str());
        GlobalSession()->mainWindow = nullptr;
        KvTest::TearDown();
    }
    // A test-private dialog name, removed from the registry after the test.
    const wchar_t* name(const std::wstring& base) {
        names_.push_back(L"kvtest." + base);
        RegDeleteTreeW(HKEY_CURRENT_USER, (kPrefix + names_.back()).c_str());
        return names_.back().c_str();
    }
    static bool keyExists(const std::wstring& name) {
        HKEY key;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, (kPrefix + name).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
            return false;
        RegCloseKey(key);
        return true;
    }
    static void writeValue(const std::wstring& name, DWORD type, const void* data, DWORD bytes) {
        HKEY key;
        ASSERT_EQ(ERROR_SUCCESS, RegCreateKeyExW(HKEY_CURRENT_USER, (kPrefix + name).c_str(), 0, nullptr,
                                                 0, KEY_WRITE, nullptr, &key, nullptr));
        RegSetValueExW(key, L"position", 0, type, static_cast<const BYTE*>(data), bytes);
        RegCloseKey(key);
    }
    static WINDOWPLACEMENT placement(int left, int top, int right, int bottom, UINT showCmd) {
        WINDOWPLACEMENT stored = {};
        stored.length = sizeof(stored);
        stored.showCmd = showCmd;
        stored.ptMinPosition = POINT{-1, -1};
        stored.ptMaxPosition = POINT{-1, -1};
        stored.rcNormalPosition = RECT{left, top, right, bottom};
        return stored;
    }
    static RECT windowRect(HWND window) {
        RECT rect;
        GetWindowRect(window, &rect);
        return rect;
    }

private:
    std::vector<std::wstring> names_;
};

TEST_F(SizeDlgPlacement, SavedPlacementIsRestoredInAFreshDialog) {
    const wchar_t* dialogName = name(L"roundtrip");
    RECT saved;
    {
        TestDialog first({});
        SetWindowPos(first, nullptr, 130, 90, 520, 410, SWP_NOZORDER);
        saved = windowRect(first);
        ASSERT_EQ(1, KxSizeDlgSave(first, dialogName));
    }
    HKEY key;
    ASSERT_EQ(ERROR_SUCCESS, RegOpenKeyExW(HKEY_CURRENT_USER, (kPrefix + dialogName).c_str(), 0, KEY_READ, &key));
    BYTE raw[64];
    DWORD type = 0, bytes = sizeof(raw);
    EXPECT_EQ(ERROR_SUCCESS, RegQueryValueExW(key, L"position", nullptr, &type, raw, &bytes));
    RegCloseKey(key);
    EXPECT_EQ(static_cast<DWORD>(REG_BINARY), type);
    EXPECT_EQ(44u, bytes);
    EXPECT_EQ(44u, *reinterpret_cast<DWORD*>(raw));
    EXPECT_EQ(saved, *reinterpret_cast<RECT*>(raw + 28));

    TestDialog second({});
    EXPECT_NE(saved, windowRect(second));
    EXPECT_EQ(1, KxSizeDlgLoad(second, dialogName));
    EXPECT_EQ(saved, windowRect(second));
}

TEST_F(SizeDlgPlacement, FirstLoadCreatesAnEmptyKey) {
    const wchar_t* dialogName = name(L"first");
    TestDialog dialog({});
    RECT before = windowRect(dialog);
    ASSERT_FALSE(keyExists(dialogName));
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, dialogName));
    EXPECT_TRUE(keyExists(dialogName));
    EXPECT_EQ(before, windowRect(dialog));
}

TEST_F(SizeDlgPlacement, ValuesOfTheWrongSizeOrLengthAreIgnored) {
    const wchar_t* dialogName = name(L"malformed");
    TestDialog dialog({});
    RECT before = windowRect(dialog);
    WINDOWPLACEMENT stored = placement(30, 40, 530, 440, SW_SHOWNORMAL);
    BYTE longer[48] = {};
    CopyMemory(longer, &stored, sizeof(stored));

    writeValue(dialogName, REG_BINARY, &stored, 40);
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, dialogName));
    writeValue(dialogName, REG_BINARY, longer, sizeof(longer));
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, dialogName));
    WINDOWPLACEMENT wrongLength = stored;
    wrongLength.length = 40;
    writeValue(dialogName, REG_BINARY, &wrongLength, sizeof(wrongLength));
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, dialogName));
    EXPECT_EQ(before, windowRect(dialog));

    // The value type is not looked at: 44 well-formed bytes apply whatever their type.
    writeValue(dialogName, REG_NONE, &stored, sizeof(stored));
    EXPECT_EQ(1, KxSizeDlgLoad(dialog, dialogName));
    EXPECT_EQ(Rect(30, 40, 530, 440), windowRect(dialog));
}

TEST_F(SizeDlgPlacement, NullArgumentsFail) {
    const wchar_t* dialogName = name(L"null");
    TestDialog dialog({});
    EXPECT_EQ(0, KxSizeDlgSave(nullptr, dialogName));
    EXPECT_EQ(0, KxSizeDlgSave(dialog, nullptr));
    EXPECT_EQ(0, KxSizeDlgLoad(nullptr, dialogName));
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, nullptr));
    EXPECT_FALSE(keyExists(dialogName));
}

TEST_F(SizeDlgPlacement, LongNamesAreCutToTheKeyBuffer) {
    std::wstring longName(300, L'x');
    const wchar_t* dialogName = name(longName);
    // 259 characters of path fit the buffer: the prefix and the first 221 of "kvtest.xxx...".
    std::wstring cut = std::wstring(dialogName).substr(0, 259 - kPrefix.size());
    name(cut);
    TestDialog dialog({});
    EXPECT_EQ(1, KxSizeDlgSave(dialog, dialogName));
    EXPECT_TRUE(keyExists(cut));
    EXPECT_EQ(1, KxSizeDlgLoad(dialog, dialogName));
}

TEST_F(SizeDlgPlacement, CentredDialogsKeepTheStoredSizeOnTheMainWindowsMonitor) {
    const wchar_t* dialogName = name(L"centred");
    kvtest::HostWindow mainWindow;
    GlobalSession()->mainWindow = mainWindow;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(mainWindow, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& area = monitor.rcMonitor;
    int left = (area.right - area.left - 401) / 2 + area.left;
    int top = (area.bottom - area.top - 311) / 2 + area.top;

    TestDialog dialog({}, WS_POPUP | WS_CAPTION | WS_THICKFRAME | WS_MAXIMIZEBOX | WS_VISIBLE | DS_CENTER);
    WINDOWPLACEMENT stored = placement(10, 20, 411, 331, SW_SHOWNORMAL);
    writeValue(dialogName, REG_BINARY, &stored, sizeof(stored));
    EXPECT_EQ(1, KxSizeDlgLoad(dialog, dialogName));
    EXPECT_EQ(Rect(left, top, left + 401, top + 311), windowRect(dialog));

    // Without a main window the primary screen is the area.
    GlobalSession()->mainWindow = nullptr;
    SetWindowPos(dialog, nullptr, 0, 0, 100, 100, SWP_NOZORDER);
    left = (GetSystemMetrics(SM_CXSCREEN) - 401) / 2;
    top = (GetSystemMetrics(SM_CYSCREEN) - 311) / 2;
    EXPECT_EQ(1, KxSizeDlgLoad(dialog, dialogName));
    EXPECT_EQ(Rect(left, top, left + 401, top + 311), windowRect(dialog));

    // A maximised placement is still applied, with the centred rectangle as its normal one.
    stored = placement(10, 20, 411, 331, SW_SHOWMAXIMIZED);
    writeValue(dialogName, REG_BINARY, &stored, sizeof(stored));
    EXPECT_EQ(1, KxSizeDlgLoad(dialog, dialogName));
    EXPECT_TRUE(IsZoomed(dialog));
    WINDOWPLACEMENT applied = {};
    applied.length = sizeof(applied);
    GetWindowPlacement(dialog, &applied);
    EXPECT_EQ(Rect(left, top, left + 401, top + 311), applied.rcNormalPosition);
}

}  // namespace
