// Module list: the modules loaded into the process with their versions, in any report list view
// or in the library's own diagnostic window, which sorts, copies and refreshes them.
#include "core/library.h"
#include "include/kvkit_diagnostics.h"
#include "include/kvkit_listview.h"
#include "include/kvkit_paint.h"
#include <commctrl.h>
#include <tlhelp32.h>
#include "kvtext.h"

namespace {

ATOM g_moduleListClass;  // registered by the first KxModuleList_Show
HWND g_moduleListWindow;  // the open module list window, or null
const wchar_t kModuleListClass[] = L"KVModuleListClass";
const int kListId = 100;
const int kWindowWidth = 720, kWindowHeight = 440;

const UINT kTitleText = 17100;
const UINT kColumnTexts[] = {17101, 17102, 17103, 17104};
const int kColumnWidths[] = {130, 120, 120, 320};
enum { kNameColumn, kFileVersionColumn, kProductVersionColumn, kPathColumn, kColumnCount };

// The menu of the window, in the library's resources; its entries' texts are replaced by the
// language module's texts of the same numbers.
const int kMenu = 2110;
enum { kCopyCommand = 17110, kRefreshCommand = 17111, kCloseCommand = 17112 };
const UINT kMenuCommands[] = {kCopyCommand, kRefreshCommand, kCloseCommand};

const int kCellCapacity = MAX_PATH + 1;
const int kCopyGrowBytes = 4096;

bool isListView(HWND window) {
    wchar_t name[32];
    return window && IsWindow(window) && GetClassNameW(window, name, 32) &&
           lstrcmpiW(name, WC_LISTVIEWW) == 0;
}

bool isModuleListWindow(HWND window) {
    return window && g_moduleListClass && IsWindow(window) &&
           GetClassLongW(window, GCW_ATOM) == g_moduleListClass;
}

// --- versions ---------------------------------------------------------------------------------

// The fixed part of a loaded module's version resource, read from the module's own memory.
bool readFixedVersion(HMODULE module, VS_FIXEDFILEINFO* version) {
    HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION);
    HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
    auto* block = static_cast<const BYTE*>(loaded ? LockResource(loaded) : nullptr);
    DWORD size = resource ? SizeofResource(module, resource) : 0;
    // VS_VERSIONINFO: length, value length, type, the key "VS_VERSION_INFO" with its terminator,
    // padding to a 4-byte boundary, then the fixed part.
    const DWORD kKeyOffset = 6, kValueOffset = 40;
    static const wchar_t kKey[] = L"VS_VERSION_INFO";
    if (!block || size < kValueOffset + sizeof(VS_FIXEDFILEINFO)) return false;
    WORD valueLength = *reinterpret_cast<const WORD*>(block + 2);
    if (valueLength < sizeof(VS_FIXEDFILEINFO) ||
        memcmp(block + kKeyOffset, kKey, sizeof(kKey)) != 0)
        return false;
    CopyMemory(version, block + kValueOffset, sizeof(*version));
    return version->dwSignature == VS_FFI_SIGNATURE;
}

void versionText(DWORD high, DWORD low, wchar_t* text) {
    wsprintfW(text, L"%u.%u.%u.%u", HIWORD(high), LOWORD(high), HIWORD(low), LOWORD(low));
}

void addModuleRow(HWND listView, int row, const MODULEENTRY32W& entry) {
    KxListView_AddSpalte(listView, row, 0, entry.szModule, -1, row + 1);
    KxListView_AddSpalte(listView, row, kPathColumn, entry.szExePath, -1, 0);
    // The module is held while its resource is read, in case another thread unloads it.
    HMODULE module;
    if (!GetModuleHandleExW(0, entry.szExePath, &module)) return;
    VS_FIXEDFILEINFO version;
    if (readFixedVersion(module, &version)) {
        wchar_t text[48];
        versionText(version.dwFileVersionMS, version.dwFileVersionLS, text);
        KxListView_AddSpalte(listView, row, kFileVersionColumn, text, -1, 0);
        versionText(version.dwProductVersionMS, version.dwProductVersionLS, text);
        KxListView_AddSpalte(listView, row, kProductVersionColumn, text, -1, 0);
    }
    FreeLibrary(module);
}

// --- copying ----------------------------------------------------------------------------------

// Text gathered for the clipboard in a kvtext block.
struct CopyText {
    wchar_t* text;
    int usedBytes;
    int capacityBytes;
    bool failed;
};

void append(CopyText& copy, const wchar_t* text) {
    if (copy.failed) return;
    void* grown = AddMemoryMax(copy.text, &copy.usedBytes, &copy.capacityBytes, text,
                               lstrlenW(text) * sizeof(wchar_t), kCopyGrowBytes);
    if (grown) copy.text = static_cast<wchar_t*>(grown);
    else copy.failed = true;
}

void appendHeader(CopyText& copy, HWND header, int columns) {
    for (int column = 0; column < columns; ++column) {
        wchar_t text[kCellCapacity] = L"";
        HDITEMW item = {};
        item.mask = HDI_TEXT;
        item.pszText = text;
        item.cchTextMax = kCellCapacity;
        SendMessageW(header, HDM_GETITEMW, column, reinterpret_cast<LPARAM>(&item));
        append(copy, column ? L"\t" : L"");
        append(copy, text);
    }
    append(copy, L"\r\n");
}

void appendRow(CopyText& copy, HWND listView, int row, int columns) {
    for (int column = 0; column < columns; ++column) {
        wchar_t text[kCellCapacity] = L"";
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = kCellCapacity;
        SendMessageW(listView, LVM_GETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item));
        append(copy, column ? L"\t" : L"");
        append(copy, text);
    }
    append(copy, L"\r\n");
}

bool putOnClipboard(HWND owner, const wchar_t* text, int bytes) {
    HGLOBAL global = GlobalAlloc(GMEM_MOVEABLE, bytes + sizeof(wchar_t));
    if (!global) return false;
    auto* target = static_cast<BYTE*>(GlobalLock(global));
    CopyMemory(target, text, bytes);
    ZeroMemory(target + bytes, sizeof(wchar_t));
    GlobalUnlock(global);
    bool placed = false;
    if (OpenClipboard(owner)) {
        placed = EmptyClipboard() && SetClipboardData(CF_UNICODETEXT, global);
        CloseClipboard();
    }
    if (!placed) GlobalFree(global);
    return placed;
}

// --- the window -------------------------------------------------------------------------------

HWND listOf(HWND window) { return GetDlgItem(window, kListId); }

void showMenu(HWND window, POINT screen) {
    HMENU menu = LoadMenuW(g_libraryModule, MAKEINTRESOURCEW(kMenu));
    if (!menu) return;
    HMENU popup = GetSubMenu(menu, 0);
    for (UINT command : kMenuCommands) {
        wchar_t* text = LoadLanguageString(command);
        if (text) ModifyMenuW(popup, command, MF_BYCOMMAND | MF_STRING, command, text);
        FreeMemory(text);
    }
    int command = TrackPopupMenu(popup, TPM_RETURNCMD | TPM_RIGHTBUTTON, screen.x, screen.y, 0,
                                 window, nullptr);
    DestroyMenu(menu);
    if (command) PostMessageW(window, WM_COMMAND, command, 0);
}

// The context menu key puts the menu at the focused row, or at the list's corner.
POINT menuPoint(HWND listView, LPARAM lParam) {
    POINT point = {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    if (lParam != -1) return point;
    RECT row = {};
    row.left = LVIR_BOUNDS;
    int focused = ListView_GetNextItem(listView, -1, LVNI_FOCUSED);
    point = {0, 0};
    if (focused >= 0 && SendMessageW(listView, LVM_GETITEMRECT, focused, reinterpret_cast<LPARAM>(&row)))
        point = {row.left, row.bottom};
    ClientToScreen(listView, &point);
    return point;
}

void onCommand(HWND window, int command) {
    switch (command) {
    case kCopyCommand:
        if (!KxModuleList_Copy(listOf(window))) MessageBeep(0);
        break;
    case kRefreshCommand:
        KxModuleList_Fill(listOf(window));
        break;
    case kCloseCommand:
        DestroyWindow(window);
        break;
    }
}

void onListKey(HWND window, WORD key) {
    if (key == 'C' && GetKeyState(VK_CONTROL) < 0) onCommand(window, kCopyCommand);
    else if (key == VK_F5) onCommand(window, kRefreshCommand);
    else if (key == VK_ESCAPE) onCommand(window, kCloseCommand);
}

LRESULT onNotify(HWND window, NMHDR* notify) {
    if (notify->idFrom != kListId) return 0;
    if (notify->code == LVN_COLUMNCLICK) {
        auto* click = reinterpret_cast<NMLISTVIEW*>(notify);
        KxListView_SortItemsNew(notify->hwndFrom, click->iSubItem, KX_SORT_TEXT, 0, -1, -1,
                                KX_SORT_TEXT, 0, GlobalSession(), 0);
    } else if (notify->code == LVN_KEYDOWN) {
        onListKey(window, reinterpret_cast<NMLVKEYDOWN*>(notify)->wVKey);
    }
    return 0;
}

bool createList(HWND window) {
    HWND listView = CreateWindowExW(0, WC_LISTVIEWW, L"",
                                    WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT |
                                        LVS_SHOWSELALWAYS | LVS_SINGLESEL,
                                    0, 0, 0, 0, window,
                                    reinterpret_cast<HMENU>(static_cast<INT_PTR>(kListId)),
                                    g_libraryModule, nullptr);
    if (!listView) return false;
    SendMessageW(listView, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    ListView_SetExtendedListViewStyle(listView, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    KxModuleList_Fill(listView);
    return true;
}

LRESULT CALLBACK moduleListProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        return createList(window) ? 0 : -1;
    case WM_SIZE:
        MoveWindow(listOf(window), 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
        return 0;
    case WM_SETFOCUS:
        SetFocus(listOf(window));
        return 0;
    case WM_NOTIFY:
        return onNotify(window, reinterpret_cast<NMHDR*>(lParam));
    case WM_CONTEXTMENU:
        if (reinterpret_cast<HWND>(wParam) == listOf(window))
            showMenu(window, menuPoint(listOf(window), lParam));
        return 0;
    case WM_COMMAND:
        onCommand(window, LOWORD(wParam));
        return 0;
    case WM_DESTROY:
        KxListView_ClearHeader(listOf(window));  // the header leaves its sort arrow behind
        if (g_moduleListWindow == window) g_moduleListWindow = nullptr;
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

bool registerModuleListClass() {
    if (g_moduleListClass) return true;
    WNDCLASSW windowClass = {};
    windowClass.style = CS_GLOBALCLASS;
    windowClass.lpfnWndProc = moduleListProc;
    windowClass.hInstance = g_libraryModule;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kModuleListClass;
    g_moduleListClass = RegisterClassW(&windowClass);
    return g_moduleListClass != 0;
}

}  // namespace

int KVKIT_CALL KxModuleList_Fill(HWND listView) {
    if (!isListView(listView)) return 0;
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return 0;
    SendMessageW(listView, WM_SETREDRAW, FALSE, 0);
    ListView_DeleteAllItems(listView);
    for (int column = 0; column < kColumnCount; ++column) {
        wchar_t* title = LoadLanguageString(kColumnTexts[column]);
        KxListView_AddHeaderEx(listView, title ? title : L"", column, kColumnWidths[column], 1);
        FreeMemory(title);
    }
    int count = 0;
    MODULEENTRY32W entry = {};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Module32FirstW(snapshot, &entry); more; more = Module32NextW(snapshot, &entry))
        addModuleRow(listView, count++, entry);
    CloseHandle(snapshot);
    SendMessageW(listView, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(listView, nullptr, TRUE);
    return count;
}

int KVKIT_CALL KxModuleList_Copy(HWND window) {
    HWND listView = isModuleListWindow(window) ? listOf(window) : window;
    if (!isListView(listView)) return 0;
    HWND header = ListView_GetHeader(listView);
    int columns = header ? static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0)) : 0;
    if (columns <= 0) return 0;
    CopyText copy = {};
    appendHeader(copy, header, columns);
    int rows = ListView_GetItemCount(listView);
    for (int row = 0; row < rows; ++row) appendRow(copy, listView, row, columns);
    bool copied = !copy.failed && putOnClipboard(listView, copy.text, copy.usedBytes);
    FreeMemory(copy.text);
    return copied ? 1 : 0;
}

HWND KVKIT_CALL KxModuleList_Show(HWND owner) {
    if (g_moduleListWindow) {
        KxModuleList_Fill(listOf(g_moduleListWindow));
        ShowWindow(g_moduleListWindow, SW_SHOWNORMAL);
        SetForegroundWindow(g_moduleListWindow);
        return g_moduleListWindow;
    }
    if (!registerModuleListClass()) return nullptr;
    HWND topLevel = owner && IsWindow(owner) ? GetAncestor(owner, GA_ROOT) : nullptr;
    RECT place = {0, 0, kWindowWidth, kWindowHeight};
    if (topLevel) {
        RECT ownerRect;
        GetWindowRect(topLevel, &ownerRect);
        OffsetRect(&place, (ownerRect.left + ownerRect.right - kWindowWidth) / 2,
                   (ownerRect.top + ownerRect.bottom - kWindowHeight) / 2);
    }
    Kx1ClipOrCenterRectToMonitor(&place, KV_MONITOR_WORKAREA | (topLevel ? 0 : KV_MONITOR_CENTER));
    wchar_t* title = LoadLanguageString(kTitleText);
    HWND window = CreateWindowExW(0, kModuleListClass, title ? title : L"", WS_OVERLAPPEDWINDOW,
                                  place.left, place.top, kWindowWidth, kWindowHeight, topLevel,
                                  nullptr, g_libraryModule, nullptr);
    FreeMemory(title);
    if (!window) return nullptr;
    g_moduleListWindow = window;
    ShowWindow(window, SW_SHOW);
    return window;
}
