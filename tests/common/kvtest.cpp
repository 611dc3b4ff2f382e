#include "kvtest.h"
#include <commctrl.h>

namespace kvtest {

void KvTest::SetUp() { liveAtStart_ = KvText_LiveAllocations(); }

void KvTest::TearDown() {
    KvText_FailAllocation(0);
    EXPECT_EQ(KvText_LiveAllocations(), liveAtStart_) << "kvtext allocations left behind";
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
