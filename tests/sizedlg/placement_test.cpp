// The placement stored in the registry of the Wine prefix: saving and loading, the checks on the
// stored value, key creation and centring of DS_CENTER dialogs.
#include <string>
#include "sizedlg_test.h"

using sizedlg_test::Dialog;
using sizedlg_test::windowRect;

namespace {

const wchar_t kName[] = L"kvtest.placement";
const std::wstring kKey = std::wstring(L"Software\\Veltrix\\korvane.desk\\dialogs\\") + kName;

// The dialog's key is deleted before and after each test.
class SizeDlgPlacement : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        RegDeleteTreeW(HKEY_CURRENT_USER, kKey.c_str());
    }
    void TearDown() override {
        RegDeleteTreeW(HKEY_CURRENT_USER, kKey.c_str());
        GlobalSession()->mainWindow = nullptr;
        KvTest::TearDown();
    }
    // Reads the stored value; false when there is no key.
    static bool readValue(DWORD* type = nullptr, BYTE* data = nullptr, DWORD* bytes = nullptr) {
        HKEY key;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey.c_str(), 0, KEY_READ, &key)) return false;
        RegQueryValueExW(key, L"position", nullptr, type, data, bytes);
        RegCloseKey(key);
        return true;
    }
    static void writeValue(DWORD type, const void* data, DWORD bytes) {
        ASSERT_EQ(ERROR_SUCCESS, RegSetKeyValueW(HKEY_CURRENT_USER, kKey.c_str(), L"position", type, data, bytes));
    }
};

WINDOWPLACEMENT placement(UINT showCmd, RECT normal) {
    WINDOWPLACEMENT stored = {};
    stored.length = sizeof(stored);
    stored.showCmd = showCmd;
    stored.rcNormalPosition = normal;
    return stored;
}

TEST_F(SizeDlgPlacement, SavedPlacementIsRestoredInAFreshDialog) {
    RECT saved;
    {
        Dialog first;
        SetWindowPos(first, nullptr, 130, 90, 520, 410, SWP_NOZORDER);
        saved = windowRect(first);
        ASSERT_EQ(1, KxSizeDlgSave(first, kName));
    }
    BYTE raw[64];
    DWORD type = 0, bytes = sizeof(raw);
    ASSERT_TRUE(readValue(&type, raw, &bytes));
    EXPECT_EQ(static_cast<DWORD>(REG_BINARY), type);
    EXPECT_EQ(44u, bytes);
    EXPECT_EQ(44u, *reinterpret_cast<DWORD*>(raw));
    EXPECT_EQ(saved, *reinterpret_cast<RECT*>(raw + 28));

    Dialog second;
    EXPECT_FALSE(saved == windowRect(second));
    EXPECT_EQ(1, KxSizeDlgLoad(second, kName));
    EXPECT_EQ(saved, windowRect(second));
}

TEST_F(SizeDlgPlacement, OnlyWellFormedValuesAreApplied) {
    Dialog dialog;
    RECT before = windowRect(dialog);
    ASSERT_FALSE(readValue());
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, kName));
    EXPECT_TRUE(readValue());  // the first load creates the key

    WINDOWPLACEMENT stored = placement(SW_SHOWNORMAL, Rect(30, 40, 530, 440));
    WINDOWPLACEMENT wrongLength = stored;
    wrongLength.length = 40;
    BYTE longer[48] = {};
    CopyMemory(longer, &stored, sizeof(stored));
    writeValue(REG_BINARY, &stored, 40);
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, kName));
    writeValue(REG_BINARY, longer, sizeof(longer));
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, kName));
    writeValue(REG_BINARY, &wrongLength, sizeof(wrongLength));
    EXPECT_EQ(0, KxSizeDlgLoad(dialog, kName));
    EXPECT_EQ(before, windowRect(dialog));

    writeValue(REG_NONE, &stored, sizeof(stored));  // the type is not looked at
    EXPECT_EQ(1, KxSizeDlgLoad(dialog, kName));
    EXPECT_EQ(Rect(30, 40, 530, 440), windowRect(dialog));
}

TEST_F(SizeDlgPlacement, CentredDialogsKeepTheStoredSizeAndShowCommand) {
    kvtest::HostWindow mainWindow;
    GlobalSession()->mainWindow = mainWindow;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof(monitor);
    GetMonitorInfoW(MonitorFromWindow(mainWindow, MONITOR_DEFAULTTONEAREST), &monitor);
    const RECT& area = monitor.rcMonitor;
    int left = (area.right - area.left - 401) / 2 + area.left;
    int top = (area.bottom - area.top - 311) / 2 + area.top;

    Dialog dialog(WS_OVERLAPPEDWINDOW | WS_VISIBLE | DS_CENTER);
    WINDOWPLACEMENT stored = placement(SW_SHOWMAXIMIZED, Rect(10, 20, 411, 331));
    writeValue(REG_BINARY, &stored, sizeof(stored));
    EXPECT_EQ(1, KxSizeDlgLoad(dialog, kName));
    EXPECT_TRUE(IsZoomed(dialog));
    WINDOWPLACEMENT applied = placement(0, RECT{});
    GetWindowPlacement(dialog, &applied);
    EXPECT_EQ(Rect(left, top, left + 401, top + 311), applied.rcNormalPosition);
}

}  // namespace
