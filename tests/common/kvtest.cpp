#include "kvtest.h"
#include <commctrl.h>
#include <winternl.h>
#include <stdio.h>
#include <algorithm>

namespace kvtest {

std::vector<bool> GdiObjectTable() {
    std::vector<bool> live(0x10000);
    for (UINT_PTR value = 1; value <= 0xFFFF; ++value)
        live[value] = GetObjectType(reinterpret_cast<HGDIOBJ>(value)) != 0;
    return live;
}

int LiveGdiObjects() {
    std::vector<bool> live = GdiObjectTable();
    return static_cast<int>(std::count(live.begin(), live.end(), true));
}

std::string DescribeNewGdiObjects(const std::vector<bool>& before, const std::vector<bool>& now) {
    static const char* const kTypeNames[] = {"?",       "pen",     "brush",  "dc",     "metadc",
                                             "palette", "font",    "bitmap", "region", "metafile",
                                             "memdc",   "extpen",  "enhmetadc", "enhmetafile",
                                             "colorspace"};
    std::string text;
    char line[96];
    for (size_t value = 1; value < now.size(); ++value) {
        if (!now[value] || before[value]) continue;
        HGDIOBJ object = reinterpret_cast<HGDIOBJ>(value);
        DWORD type = GetObjectType(object);
        snprintf(line, sizeof(line), " 0x%04x %s", static_cast<unsigned>(value),
                 type < sizeof(kTypeNames) / sizeof(kTypeNames[0]) ? kTypeNames[type] : "?");
        text += line;
        if (type == OBJ_BITMAP) {
            BITMAP info = {};
            GetObjectW(object, sizeof(info), &info);
            snprintf(line, sizeof(line), " %ldx%ld", info.bmWidth, info.bmHeight);
            text += line;
        } else if (type == OBJ_FONT) {
            LOGFONTW font = {};
            GetObjectW(object, sizeof(font), &font);
            snprintf(line, sizeof(line), " %ld %ls", font.lfHeight, font.lfFaceName);
            text += line;
        }
    }
    return text;
}

std::vector<UINT_PTR> KernelHandleValues() {
    // Handles are multiples of 4 handed out lowest free first, so the live ones sit low and
    // densely: probe upward until a long run of values names nothing.
    const int kRunPastLast = 128;
    std::vector<UINT_PTR> live;
    int sinceLast = 0;
    for (UINT_PTR value = 4; sinceLast < kRunPastLast; value += 4) {
        DWORD flags;
        if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) {
            live.push_back(value);
            sinceLast = 0;
        } else {
            ++sinceLast;
        }
    }
    return live;
}

DWORD KernelHandles() { return static_cast<DWORD>(KernelHandleValues().size()); }

namespace {
// The object type of a handle and its name if it has one ("Event", "Mutant DBWinMutex", ...),
// for failure messages.
std::string describeHandle(UINT_PTR value) {
    union {
        PUBLIC_OBJECT_TYPE_INFORMATION type;
        UNICODE_STRING name;
        BYTE space[1024];
    } buffer = {};
    ULONG length = 0;
    HANDLE handle = reinterpret_cast<HANDLE>(value);
    auto narrow = [](const UNICODE_STRING& text) {
        std::string result;
        for (USHORT i = 0; i < text.Length / 2; ++i) result += static_cast<char>(text.Buffer[i]);
        return result;
    };
    if (NtQueryObject(handle, ObjectTypeInformation, &buffer, sizeof(buffer), &length) != 0) return "?";
    std::string description = narrow(buffer.type.TypeName);
    const auto kObjectNameInformation = static_cast<OBJECT_INFORMATION_CLASS>(1);
    if (NtQueryObject(handle, kObjectNameInformation, &buffer, sizeof(buffer), &length) == 0 &&
        buffer.name.Length)
        description += " " + narrow(buffer.name);
    return description;
}

std::string describeNewHandles(const std::vector<UINT_PTR>& before, const std::vector<UINT_PTR>& now) {
    std::string text;
    for (UINT_PTR value : now)
        if (std::find(before.begin(), before.end(), value) == before.end())
            text += " 0x" + std::to_string(value) + " " + describeHandle(value);
    return text;
}
}  // namespace

KvTest::KvTest() {
    liveAtStart_ = KvText_LiveAllocations();
    gdiObjectsAtStart_ = GdiObjectTable();
    kernelHandlesAtStart_ = KernelHandleValues();
}

void KvTest::TearDown() { KvText_FailAllocation(0); }

KvTest::~KvTest() {
    KvText_FailAllocation(0);
    // Destroyed windows release their objects when their last messages have been handled.
    PumpMessages();
    EXPECT_EQ(KvText_LiveAllocations(), liveAtStart_) << "kvtext allocations left behind";
    std::vector<bool> gdiObjects = GdiObjectTable();
    EXPECT_EQ(std::count(gdiObjects.begin(), gdiObjects.end(), true),
              std::count(gdiObjectsAtStart_.begin(), gdiObjectsAtStart_.end(), true))
        << "GDI objects left behind:" << DescribeNewGdiObjects(gdiObjectsAtStart_, gdiObjects);
    std::vector<UINT_PTR> kernelHandles = KernelHandleValues();
    EXPECT_EQ(kernelHandles.size(), kernelHandlesAtStart_.size())
        << "kernel handles left behind:" << describeNewHandles(kernelHandlesAtStart_, kernelHandles);
}

// ---------------------------------------------------------------------------------------------

namespace {
const wchar_t kHostClass[] = L"KvTestHostWindow";

void registerHostClass() {
    static bool registered = false;
    if (registered) return;
    WNDCLASSW windowClass = {};
    windowClass.style = CS_DBLCLKS;
    windowClass.lpfnWndProc = DefWindowProcW;  // replaced per window in WM_NCCREATE handling
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.lpszClassName = kHostClass;
    RegisterClassW(&windowClass);
    registered = true;
}
}  // namespace

HostWindow::HostWindow(int clientWidth, int clientHeight, DWORD style) {
    registerHostClass();
    RECT rect = {0, 0, clientWidth, clientHeight};
    AdjustWindowRectEx(&rect, style, FALSE, 0);
    window_ = CreateWindowExW(0, kHostClass, L"kvkit test host", style, 40, 40,
                              rect.right - rect.left, rect.bottom - rect.top, nullptr, nullptr,
                              GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(windowProc));
    PumpMessages();
}

HostWindow::~HostWindow() {
    if (IsWindow(window_)) DestroyWindow(window_);
    PumpMessages();
}

std::vector<RecordedMessage> HostWindow::messages(UINT message) const {
    std::vector<RecordedMessage> selected;
    for (const RecordedMessage& m : messages_)
        if (m.message == message) selected.push_back(m);
    return selected;
}

HWND HostWindow::createChild(const wchar_t* className, const wchar_t* text, DWORD style, int x,
                             int y, int width, int height, int id, DWORD exStyle) {
    HWND child = CreateWindowExW(exStyle, className, text, style | WS_CHILD, x, y, width, height,
                                 window_, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                 GetModuleHandleW(nullptr), nullptr);
    HFONT font = static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
    if (child) SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
    return child;
}

LRESULT CALLBACK HostWindow::windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self) {
        self->messages_.push_back({window, message, wParam, lParam});
        LRESULT result = 0;
        if (self->handler_ && self->handler_(window, message, wParam, lParam, &result)) return result;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// ---------------------------------------------------------------------------------------------

MessageRecorder::MessageRecorder(HWND window) : window_(window) {
    SetWindowSubclass(window_, subclassProc, 1, reinterpret_cast<DWORD_PTR>(this));
}

MessageRecorder::~MessageRecorder() { detach(); }

void MessageRecorder::detach() {
    if (window_ && IsWindow(window_)) RemoveWindowSubclass(window_, subclassProc, 1);
    window_ = nullptr;
}

int MessageRecorder::count(UINT message) const {
    int n = 0;
    for (const RecordedMessage& m : messages_) n += m.message == message;
    return n;
}

LRESULT CALLBACK MessageRecorder::subclassProc(HWND window, UINT message, WPARAM wParam,
                                               LPARAM lParam, UINT_PTR, DWORD_PTR data) {
    auto* self = reinterpret_cast<MessageRecorder*>(data);
    self->messages_.push_back({window, message, wParam, lParam});
    if (message == WM_NCDESTROY) {
        RemoveWindowSubclass(window, subclassProc, 1);
        self->window_ = nullptr;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

// ---------------------------------------------------------------------------------------------

void HoldKeys(std::initializer_list<int> keys) {
    BYTE state[256];
    GetKeyboardState(state);
    for (int key : {VK_CONTROL, VK_LCONTROL, VK_SHIFT, VK_LSHIFT}) state[key] = 0;
    for (int key : keys) state[key] = 0x80;
    SetKeyboardState(state);
}

void PumpMessages() {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
}

void PumpFor(DWORD milliseconds) {
    DWORD start = GetTickCount();
    do {
        PumpMessages();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    } while (GetTickCount() - start < milliseconds);
    PumpMessages();
}

// ---------------------------------------------------------------------------------------------

namespace {
BITMAPINFO topDown32(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    return info;
}

COLORREF fromQuad(DWORD quad) { return RGB((quad >> 16) & 0xFF, (quad >> 8) & 0xFF, quad & 0xFF); }
}  // namespace

Canvas::Canvas(int width, int height, COLORREF fill) : width_(width), height_(height) {
    BITMAPINFO info = topDown32(width, height);
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    bits_ = static_cast<DWORD*>(bits);
    dc_ = CreateCompatibleDC(nullptr);
    previous_ = SelectObject(dc_, bitmap_);
    this->fill(fill);
}

Canvas::~Canvas() {
    SelectObject(dc_, previous_);
    DeleteDC(dc_);
    DeleteObject(bitmap_);
}

COLORREF Canvas::pixel(int x, int y) const {
    GdiFlush();
    return fromQuad(bits_[y * width_ + x]);
}

void Canvas::fill(COLORREF colour) {
    HBRUSH brush = CreateSolidBrush(colour);
    RECT rect = {0, 0, width_, height_};
    FillRect(dc_, &rect, brush);
    DeleteObject(brush);
    GdiFlush();
}

std::vector<COLORREF> BitmapPixels(HBITMAP bitmap, int* width, int* height) {
    BITMAP info = {};
    GetObjectW(bitmap, sizeof(info), &info);
    if (width) *width = info.bmWidth;
    if (height) *height = info.bmHeight;
    std::vector<DWORD> quads(static_cast<size_t>(info.bmWidth) * info.bmHeight);
    BITMAPINFO header = topDown32(info.bmWidth, info.bmHeight);
    HDC screen = GetDC(nullptr);
    GetDIBits(screen, bitmap, 0, info.bmHeight, quads.data(), &header, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    std::vector<COLORREF> colours(quads.size());
    for (size_t i = 0; i < quads.size(); ++i) colours[i] = fromQuad(quads[i]);
    return colours;
}

COLORREF BitmapPixel(HBITMAP bitmap, int x, int y) {
    int width = 0;
    std::vector<COLORREF> pixels = BitmapPixels(bitmap, &width);
    return pixels.at(static_cast<size_t>(y) * width + x);
}

HBITMAP MakeBitmap(int width, int height, const std::function<COLORREF(int, int)>& colourAt) {
    HDC screen = GetDC(nullptr);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    std::vector<DWORD> quads(static_cast<size_t>(width) * height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            COLORREF c = colourAt(x, y);
            quads[y * width + x] = (GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c);
        }
    BITMAPINFO header = topDown32(width, height);
    HDC dc = GetDC(nullptr);
    SetDIBits(dc, bitmap, 0, height, quads.data(), &header, DIB_RGB_COLORS);
    ReleaseDC(nullptr, dc);
    return bitmap;
}

// ---------------------------------------------------------------------------------------------

namespace {
// Creates, shows, paints and destroys one window of each class, with a row of items so that
// their parts are drawn.
void exerciseControls(HWND host) {
    const wchar_t* const kClasses[] = {
        WC_LISTVIEWW, WC_TREEVIEWW, WC_TABCONTROLW, WC_HEADERW, DATETIMEPICK_CLASSW, PROGRESS_CLASSW,
        TRACKBAR_CLASSW, UPDOWN_CLASSW, L"ComboBoxEx32", L"Button", L"Edit", L"ComboBox",
        L"ListBox", L"Static", L"ScrollBar", STATUSCLASSNAMEW, TOOLBARCLASSNAMEW, MONTHCAL_CLASSW};
    const DWORD kButtonStyles[] = {BS_PUSHBUTTON, BS_DEFPUSHBUTTON, BS_AUTOCHECKBOX, BS_AUTORADIOBUTTON,
                                   BS_GROUPBOX, BS_AUTO3STATE};
    std::vector<HWND> children;
    for (const wchar_t* name : kClasses) {
        DWORD style = WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL | WS_HSCROLL;
        bool listView = lstrcmpW(name, WC_LISTVIEWW) == 0, treeView = lstrcmpW(name, WC_TREEVIEWW) == 0;
        if (listView) style |= LVS_REPORT;
        if (treeView) style |= TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT | TVS_CHECKBOXES;
        if (lstrcmpW(name, L"ComboBox") == 0 || lstrcmpW(name, L"ComboBoxEx32") == 0)
            style = WS_CHILD | WS_VISIBLE | CBS_DROPDOWN;
        HWND child = CreateWindowExW(WS_EX_CLIENTEDGE, name, L"x", style, 5, 5, 200, 120, host,
                                     nullptr, GetModuleHandleW(nullptr), nullptr);
        if (!child) continue;
        children.push_back(child);
        if (listView) {
            ListView_SetExtendedListViewStyle(child, LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
            LVCOLUMNW column = {};
            column.mask = LVCF_TEXT | LVCF_WIDTH;
            column.cx = 80;
            column.pszText = const_cast<wchar_t*>(L"c");
            ListView_InsertColumn(child, 0, &column);
            LVITEMW item = {};
            item.mask = LVIF_TEXT;
            item.pszText = const_cast<wchar_t*>(L"r");
            ListView_InsertItem(child, &item);
            ListView_SetItemState(child, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        } else if (treeView) {
            TVINSERTSTRUCTW insert = {};
            insert.hInsertAfter = TVI_LAST;
            insert.item.mask = TVIF_TEXT;
            insert.item.pszText = const_cast<wchar_t*>(L"t");
            HTREEITEM root = TreeView_InsertItem(child, &insert);
            insert.hParent = root;
            TreeView_InsertItem(child, &insert);
            TreeView_Expand(child, root, TVE_EXPAND);
            TreeView_SelectItem(child, root);
        } else if (lstrcmpW(name, WC_TABCONTROLW) == 0) {
            TCITEMW item = {};
            item.mask = TCIF_TEXT;
            item.pszText = const_cast<wchar_t*>(L"t");
            TabCtrl_InsertItem(child, 0, &item);
            TabCtrl_InsertItem(child, 1, &item);
        }
        UpdateWindow(child);
        SetFocus(child);
        POINT inside = {20, 20};
        ClientToScreen(child, &inside);
        SetCursorPos(inside.x, inside.y);
        SendMessageW(child, WM_MOUSEMOVE, 0, MAKELPARAM(20, 20));
        PumpMessages();
    }
    for (DWORD style : kButtonStyles) {
        HWND button = CreateWindowExW(0, L"Button", L"x", WS_CHILD | WS_VISIBLE | style, 220, 5, 80, 24,
                                      host, nullptr, GetModuleHandleW(nullptr), nullptr);
        children.push_back(button);
        UpdateWindow(button);
        SendMessageW(button, BM_SETSTATE, TRUE, 0);
        UpdateWindow(button);
        SendMessageW(button, BM_SETSTATE, FALSE, 0);
    }
    PumpFor(50);
    // Hidden first: each destroyed sibling would otherwise repaint the ones beneath it.
    ShowWindow(host, SW_HIDE);
    for (HWND child : children) DestroyWindow(child);
    PumpMessages();
}

INT_PTR CALLBACK closingDialogProc(HWND dialog, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    if (message == WM_COMMAND) EndDialog(dialog, 0);
    return message == WM_INITDIALOG;
}

HHOOK g_messageBoxCloser;

LRESULT CALLBACK closeMessageBox(int code, WPARAM wParam, LPARAM lParam) {
    wchar_t name[16] = L"";
    if (code == HCBT_ACTIVATE && GetClassNameW(reinterpret_cast<HWND>(wParam), name, 16) &&
        lstrcmpW(name, L"#32770") == 0)
        PostMessageW(reinterpret_cast<HWND>(wParam), WM_COMMAND, IDOK, 0);
    return CallNextHookEx(g_messageBoxCloser, code, wParam, lParam);
}

// A popup menu with a checked entry and a submenu, one entry highlighted, then ended: its font,
// check and arrow bitmaps and regions stay cached.
void showPopupMenu(HostWindow& owner) {
    int idle = 0;
    owner.setHandler([&](HWND, UINT message, WPARAM kind, LPARAM menuWindow, LRESULT*) {
        if (message != WM_ENTERIDLE || kind != MSGF_MENU) return false;
        if (idle++ == 0) PostMessageW(reinterpret_cast<HWND>(menuWindow), WM_KEYDOWN, VK_DOWN, 1);
        else EndMenu();
        return true;
    });
    HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"&Entry");
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu, MF_STRING | MF_CHECKED, 2, L"Checked");
    HMENU sub = CreatePopupMenu();
    AppendMenuW(sub, MF_STRING, 3, L"Sub");
    AppendMenuW(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), L"More");
    TrackPopupMenu(menu, TPM_RETURNCMD, 50, 50, 0, owner, nullptr);
    DestroyMenu(menu);
    owner.setHandler(nullptr);
    PumpMessages();
}

// A tooltip shown once for a button under the mouse.
void showTooltip(HostWindow& owner) {
    HWND button = owner.createChild(L"Button", L"x", WS_VISIBLE, 0, 0, 40, 20, 1);
    HWND tip = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                               0, 0, 0, 0, owner, nullptr, GetModuleHandleW(nullptr), nullptr);
    TTTOOLINFOW tool = {};
    tool.cbSize = sizeof(tool);
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = owner;
    tool.uId = reinterpret_cast<UINT_PTR>(button);
    tool.lpszText = const_cast<wchar_t*>(L"warm-up");
    SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(tip, TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&tool));
    SendMessageW(tip, TTM_POPUP, 0, 0);
    PumpFor(50);
    DestroyWindow(tip);
    DestroyWindow(button);
}
}  // namespace

void WarmUpSystemCaches() {
    for (int colour = 0; colour <= COLOR_MENUBAR; ++colour) GetSysColorBrush(colour);
    // System cursors are loaded once and shared from then on.
    const wchar_t* const kCursors[] = {IDC_ARROW, IDC_IBEAM,  IDC_WAIT,   IDC_CROSS,  IDC_UPARROW,
                                       IDC_SIZENWSE, IDC_SIZENESW, IDC_SIZEWE, IDC_SIZENS, IDC_SIZEALL,
                                       IDC_NO, IDC_HAND, IDC_APPSTARTING, IDC_HELP};
    HCURSOR previousCursor = GetCursor();
    for (const wchar_t* cursor : kCursors) SetCursor(LoadCursorW(nullptr, cursor));
    SetCursor(previousCursor);
    // Wine keeps a pool of cached DCs that grows up to a fixed size before it reuses one.
    std::vector<HWND> windows;
    for (int i = 0; i < 80; ++i)
        windows.push_back(CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                          GetModuleHandleW(nullptr), nullptr));
    for (HWND window : windows) ReleaseDC(window, GetDC(window));
    for (HWND window : windows) DestroyWindow(window);
    {
        HostWindow host(420, 320);
        exerciseControls(host);
    }
    // A modal dialog from a template: its font and the dialog manager's own objects.
    struct {
        DLGTEMPLATE header;
        WORD menu, windowClass, title, pointSize;
        wchar_t face[13];
    } dialog = {{WS_POPUP | WS_CAPTION | DS_SETFONT, 0, 0, 0, 0, 100, 60}, 0, 0, 0, 8, L"MS Shell Dlg"};
    DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &dialog.header, nullptr, closingDialogProc, 0);
    PumpMessages();
    // The first beep starts the sound system's thread, which then stays.
    MessageBeep(0);
    {
        HostWindow owner(200, 100);
        showPopupMenu(owner);
        showTooltip(owner);
        // A message box loads the shared standard icons.
        g_messageBoxCloser = SetWindowsHookExW(WH_CBT, closeMessageBox, nullptr, GetCurrentThreadId());
        MessageBoxW(owner, L"warm-up", L"warm-up", MB_OK | MB_ICONINFORMATION);
        UnhookWindowsHookEx(g_messageBoxCloser);
        for (const wchar_t* icon : {IDI_APPLICATION, IDI_ERROR, IDI_WARNING, IDI_INFORMATION, IDI_QUESTION})
            LoadIconW(nullptr, icon);
    }
    // The first debug output of each form opens handles for good; GoogleTest writes every
    // failure there too.
    OutputDebugStringA("kvtest: warm-up\n");
    OutputDebugStringW(L"kvtest: warm-up\n");
    // GoogleTest's first thread-local value (a scoped trace) starts its watcher thread.
    { SCOPED_TRACE("warm-up"); }
}

// ---------------------------------------------------------------------------------------------

namespace {
HINSTANCE g_languageModule;
HINSTANCE g_resourceModule;
}  // namespace

HINSTANCE LanguageModule() { return g_languageModule; }
HINSTANCE ResourceModule() { return g_resourceModule; }

bool LoadSampleModules() {
    if (!g_languageModule) g_languageModule = LoadLibraryW(L"kvsample_language.dll");
    if (!g_resourceModule) g_resourceModule = LoadLibraryW(L"kvsample_resources.dll");
    return g_languageModule && g_resourceModule;
}

}  // namespace kvtest
