// The module list: the modules and versions it finds, sorting by a click on a column title, the
// text it copies, its menu and keys.
#include "kvtest.h"
#include <commctrl.h>
#include <functional>
#include <string>
#include <vector>
#include "kvkit_diagnostics.h"
#include "kvkit_listview.h"

namespace {

std::wstring cell(HWND list, int row, int column) {
    wchar_t text[MAX_PATH + 1] = L"";
    ListView_GetItemText(list, row, column, text, MAX_PATH + 1);
    return text;
}

int rowOf(HWND list, const wchar_t* module) {
    for (int row = 0; row < ListView_GetItemCount(list); ++row)
        if (lstrcmpiW(cell(list, row, 0).c_str(), module) == 0) return row;
    return -1;
}

// The versions of a module's file as the system's version functions read them, "" without a
// version resource. version.dll is bound at run time: the test programs do not link it.
std::pair<std::wstring, std::wstring> versionsOf(const wchar_t* module) {
    typedef DWORD(WINAPI * SizeFunction)(LPCWSTR, LPDWORD);
    typedef BOOL(WINAPI * InfoFunction)(LPCWSTR, DWORD, DWORD, LPVOID);
    typedef BOOL(WINAPI * QueryFunction)(LPCVOID, LPCWSTR, LPVOID*, PUINT);
    HMODULE version = LoadLibraryW(L"version.dll");
    auto size = reinterpret_cast<SizeFunction>(GetProcAddress(version, "GetFileVersionInfoSizeW"));
    auto info = reinterpret_cast<InfoFunction>(GetProcAddress(version, "GetFileVersionInfoW"));
    auto query = reinterpret_cast<QueryFunction>(GetProcAddress(version, "VerQueryValueW"));
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(GetModuleHandleW(module), path, MAX_PATH);
    DWORD handle = 0, bytes = size(path, &handle);
    std::pair<std::wstring, std::wstring> versions;
    std::vector<BYTE> block(bytes);
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (bytes && info(path, 0, bytes, block.data()) &&
        query(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length) && fixed) {
        auto text = [](DWORD high, DWORD low) {
            return std::to_wstring(HIWORD(high)) + L"." + std::to_wstring(LOWORD(high)) + L"." +
                   std::to_wstring(HIWORD(low)) + L"." + std::to_wstring(LOWORD(low));
        };
        versions = {text(fixed->dwFileVersionMS, fixed->dwFileVersionLS),
                    text(fixed->dwProductVersionMS, fixed->dwProductVersionLS)};
    }
    FreeLibrary(version);
    return versions;
}

// The menu driver of the menu test, run by a thread timer inside the menu's loop.
std::function<void()> g_menuTick;
void CALLBACK onMenuTimer(HWND, UINT, UINT_PTR, DWORD) { g_menuTick(); }

std::wstring clipboardText() {
    std::wstring text;
    if (!OpenClipboard(nullptr)) return L"(closed)";
    HANDLE data = GetClipboardData(CF_UNICODETEXT);
    if (data) {
        text = static_cast<const wchar_t*>(GlobalLock(data));
        GlobalUnlock(data);
    }
    CloseClipboard();
    return text;
}

// Keeps the clipboard's text and puts it back (or empties the clipboard) at the end.
class ClipboardKeeper {
public:
    ClipboardKeeper() {
        hadText_ = IsClipboardFormatAvailable(CF_UNICODETEXT);
        if (hadText_) text_ = clipboardText();
    }
    ~ClipboardKeeper() {
        if (!OpenClipboard(nullptr)) return;
        EmptyClipboard();
        if (hadText_) {
            HGLOBAL global = GlobalAlloc(GMEM_MOVEABLE, (text_.size() + 1) * sizeof(wchar_t));
            memcpy(GlobalLock(global), text_.c_str(), (text_.size() + 1) * sizeof(wchar_t));
            GlobalUnlock(global);
            if (!SetClipboardData(CF_UNICODETEXT, global)) GlobalFree(global);
        }
        CloseClipboard();
    }

private:
    bool hadText_;
    std::wstring text_;
};

class ModuleListTest : public kvtest::KvTest {
protected:
    void TearDown() override {
        kvtest::HoldKeys({});
        if (IsWindow(window)) DestroyWindow(window);
        KvTest::TearDown();
    }
    void open() {
        window = KxModuleList_Show(host);
        ASSERT_NE(nullptr, window);
        list = GetDlgItem(window, 100);
        ASSERT_NE(nullptr, list);
    }
    void press(HWND target, WORD key) {
        PostMessageW(target, WM_KEYDOWN, key, 1);
        PostMessageW(target, WM_KEYUP, key, 0xC0000001);
        kvtest::PumpMessages();
    }
    // A click on a column title, as the mouse makes it.
    void clickColumn(int column) {
        HWND header = ListView_GetHeader(list);
        RECT item;
        Header_GetItemRect(header, column, &item);
        POINT at = {(item.left + item.right) / 2, (item.top + item.bottom) / 2};
        POINT screen = at;
        ClientToScreen(header, &screen);
        SetCursorPos(screen.x, screen.y);
        PostMessageW(header, WM_MOUSEMOVE, 0, MAKELPARAM(at.x, at.y));
        PostMessageW(header, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(at.x, at.y));
        PostMessageW(header, WM_LBUTTONUP, 0, MAKELPARAM(at.x, at.y));
        kvtest::PumpMessages();
    }
    std::vector<std::wstring> column(int index) {
        std::vector<std::wstring> cells;
        for (int row = 0; row < ListView_GetItemCount(list); ++row) cells.push_back(cell(list, row, index));
        return cells;
    }

    kvtest::HostWindow host{300, 200};
    HWND window = nullptr, list = nullptr;
};

TEST_F(ModuleListTest, EveryLoadedModuleWithItsPathAndVersions) {
    HWND own = host.createChild(WC_LISTVIEWW, L"", WS_VISIBLE | LVS_REPORT, 0, 0, 300, 200, 1);
    int count = KxModuleList_Fill(own);
    EXPECT_EQ(count, ListView_GetItemCount(own));
    EXPECT_GT(count, 10);
    HWND header = ListView_GetHeader(own);
    ASSERT_EQ(4, Header_GetItemCount(header));
    const wchar_t* titles[] = {L"Module", L"File version", L"Product version", L"Path"};
    for (int column = 0; column < 4; ++column) {
        wchar_t text[40] = L"";
        HDITEMW item = {};
        item.mask = HDI_TEXT;
        item.pszText = text;
        item.cchTextMax = 40;
        Header_GetItem(header, column, &item);
        EXPECT_STREQ(titles[column], text);
    }
    for (int row = 0; row < count; ++row) EXPECT_EQ(row + 1, KxListView_GetItemData(own, row));

    // The library itself, its in-house libraries, and a system module, as the system's version
    // functions read their files; kvkit's own resource says 1.0.0.0.
    for (const wchar_t* module : {L"kvkit.dll", L"kvtext.dll", L"kvbase.dll", L"kvkit2.dll", L"user32.dll"}) {
        int row = rowOf(own, module);
        ASSERT_GE(row, 0) << module;
        wchar_t path[MAX_PATH];
        GetModuleFileNameW(GetModuleHandleW(module), path, MAX_PATH);
        EXPECT_EQ(0, lstrcmpiW(path, cell(own, row, 3).c_str())) << module;
        std::pair<std::wstring, std::wstring> versions = versionsOf(module);
        EXPECT_EQ(versions.first, cell(own, row, 1)) << module;
        EXPECT_EQ(versions.second, cell(own, row, 2)) << module;
    }
    EXPECT_EQ(L"1.0.0.0", cell(own, rowOf(own, L"kvkit.dll"), 1));
    EXPECT_EQ(L"1.0.0.0", cell(own, rowOf(own, L"kvkit.dll"), 2));
    EXPECT_NE(L"", cell(own, rowOf(own, L"user32.dll"), 1));
    // A second fill replaces everything.
    EXPECT_EQ(count, KxModuleList_Fill(own));
    EXPECT_EQ(count, ListView_GetItemCount(own));
    EXPECT_EQ(4, Header_GetItemCount(header));
    DestroyWindow(own);
}

TEST_F(ModuleListTest, TheWindowSortsByTheClickedColumnBothWays) {
    open();
    EXPECT_EQ(host.handle(), GetWindow(window, GW_OWNER));
    wchar_t title[40];
    GetWindowTextW(window, title, 40);
    EXPECT_STREQ(L"Loaded modules", title);
    EXPECT_EQ(window, KxModuleList_Show(host));  // one per process

    auto ordered = [](const std::vector<std::wstring>& cells, int direction) {
        for (size_t i = 1; i < cells.size(); ++i)
            if (direction * lstrcmpiW(cells[i - 1].c_str(), cells[i].c_str()) > 0) return false;
        return true;
    };
    clickColumn(0);
    EXPECT_TRUE(ordered(column(0), 1));
    EXPECT_FALSE(ordered(column(0), -1));
    clickColumn(0);
    EXPECT_TRUE(ordered(column(0), -1));
    clickColumn(3);
    EXPECT_TRUE(ordered(column(3), 1));
    int ascending = 0;
    EXPECT_EQ(3, KxListView_GetSortColumn(list, 0, &ascending));
    EXPECT_EQ(1, ascending);
}

TEST_F(ModuleListTest, CtrlCCopiesTabSeparatedLinesAndTheClipboardIsLeftAsFound) {
    ClipboardKeeper keeper;
    open();
    kvtest::HoldKeys({VK_CONTROL});
    press(list, 'C');
    kvtest::HoldKeys({});
    std::wstring text = clipboardText();
    std::vector<std::wstring> lines;
    for (size_t start = 0, end; (end = text.find(L"\r\n", start)) != std::wstring::npos; start = end + 2)
        lines.push_back(text.substr(start, end - start));
    ASSERT_EQ(static_cast<size_t>(ListView_GetItemCount(list) + 1), lines.size());
    EXPECT_EQ(L"Module\tFile version\tProduct version\tPath", lines[0]);
    int row = rowOf(list, L"kvkit.dll");
    EXPECT_EQ(cell(list, row, 0) + L"\t1.0.0.0\t1.0.0.0\t" + cell(list, row, 3), lines[row + 1]);
    EXPECT_EQ(text.size(), text.rfind(L"\r\n") + 2);  // every line ends with CR LF

    // The export takes the window or its list; when memory runs out the clipboard keeps its text.
    EXPECT_EQ(1, KxModuleList_Copy(window));
    EXPECT_EQ(text, clipboardText());
    OpenClipboard(nullptr);
    EmptyClipboard();
    CloseClipboard();
    KvText_FailAllocation(1);
    EXPECT_EQ(0, KxModuleList_Copy(list));
    EXPECT_EQ(L"", clipboardText());
}

TEST_F(ModuleListTest, TheMenuTakesTheLanguageTextsAndItsCommandsWork) {
    open();
    std::vector<std::wstring> entries;
    int step = 0;
    // The menu's loop runs this thread's timers: the first tick reads the entries and picks
    // "Refresh", the second "Close"; later ticks end any menu left open.
    g_menuTick = [&] {
        HWND menuWindow = FindWindowW(L"#32768", nullptr);
        if (!menuWindow) return;
        auto menu = reinterpret_cast<HMENU>(SendMessageW(menuWindow, MN_GETHMENU, 0, 0));
        entries.clear();
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            wchar_t text[60] = L"";
            GetMenuStringW(menu, i, text, 60, MF_BYPOSITION);
            entries.push_back(text);
        }
        if (step > 1) {
            EndMenu();
            return;
        }
        int downs = step++ == 0 ? 2 : 3;  // the arrow skips the separator
        for (int i = 0; i < downs; ++i) {
            PostMessageW(menuWindow, WM_KEYDOWN, VK_DOWN, 1);
            PostMessageW(menuWindow, WM_KEYUP, VK_DOWN, 0xC0000001);
        }
        PostMessageW(menuWindow, WM_KEYDOWN, VK_RETURN, 1);
    };
    UINT_PTR timer = SetTimer(nullptr, 0, 50, onMenuTimer);

    ListView_DeleteAllItems(list);
    SendMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), -1);  // the menu key
    kvtest::PumpMessages();
    EXPECT_EQ((std::vector<std::wstring>{L"&Copy list\tCtrl+C", L"&Refresh list\tF5", L"", L"C&lose window\tEsc"}),
              entries);
    EXPECT_GT(ListView_GetItemCount(list), 10);  // refreshed
    SendMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(list), MAKELPARAM(100, 100));
    kvtest::PumpMessages();
    KillTimer(nullptr, timer);
    g_menuTick = nullptr;
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(2, step);

    // F5 fills again, Esc closes.
    open();
    ListView_DeleteAllItems(list);
    press(list, VK_F5);
    EXPECT_GT(ListView_GetItemCount(list), 10);
    press(list, VK_ESCAPE);
    EXPECT_FALSE(IsWindow(window));
    // Without an owner, a new one after the close.
    window = KxModuleList_Show(nullptr);
    ASSERT_NE(nullptr, window);
    EXPECT_EQ(nullptr, GetWindow(window, GW_OWNER));
}

TEST_F(ModuleListTest, WindowsThatAreNoListGiveZero) {
    EXPECT_EQ(0, KxModuleList_Fill(nullptr));
    EXPECT_EQ(0, KxModuleList_Fill(host));
    EXPECT_EQ(0, KxModuleList_Copy(nullptr));
    EXPECT_EQ(0, KxModuleList_Copy(host));
    HWND empty = host.createChild(WC_LISTVIEWW, L"", LVS_REPORT, 0, 0, 100, 100, 1);
    EXPECT_EQ(0, KxModuleList_Copy(empty));  // no columns
    DestroyWindow(empty);
    EXPECT_EQ(0, KxModuleList_Fill(empty));
    EXPECT_EQ(0, KxModuleList_Copy(empty));
}

}  // namespace
