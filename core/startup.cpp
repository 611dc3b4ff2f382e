// Module entry, one-time class registration, language and resource modules, the format check,
// and small wrappers over system services.
#include "core/library.h"
#include "controls/editbutton.h"
#include "include/kvkit_colorbox.h"
#include "include/kvkit_scroll.h"
#include "kvtext.h"

HINSTANCE g_libraryModule;
unsigned short g_language;
HINSTANCE g_bitmapModule;
HINSTANCE g_textModule;
KVFORMATCHECK g_formatCheck;
UINT g_colorClipboardFormat;

namespace {

BYTE g_classesRegistered;
ATOM g_listboxClass;     // the list box and scroll registrars keep their class atom as the flag
ATOM g_scrollClass;
int g_dlgPaintClassRegistered;
int g_dlgTippClassRegistered;
int g_editButtonClassRegistered;

// Classes whose controls have no behaviour of their own yet are plain windows: registered,
// creatable and painted with their class brush.
const WNDPROC kPlainWindowProc = DefWindowProcW;

// The size of NONCLIENTMETRICSW without iPaddedBorderWidth, accepted by every system version.
const UINT kNonClientMetricsSize = 504;

WNDCLASSW libraryClass(const wchar_t* name, WNDPROC procedure, UINT style) {
    WNDCLASSW windowClass = {};
    windowClass.style = style;
    windowClass.lpfnWndProc = procedure;
    windowClass.hInstance = g_libraryModule;
    windowClass.lpszClassName = name;
    return windowClass;
}

int registerListboxClass() {
    if (g_listboxClass) return 1;
    WNDCLASSW windowClass = libraryClass(L"KVListbox", Kx1LbProc,
                                         CS_GLOBALCLASS | CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW);
    windowClass.cbWndExtra = 4;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH));
    g_listboxClass = RegisterClassW(&windowClass);
    return g_listboxClass != 0;
}

// Relies on InitTool's flag to run once.
int registerColorBoxClasses() {
    g_colorClipboardFormat = RegisterClipboardFormatW(L"szClipBoard_Color");
    WNDCLASSW frame = libraryClass(L"szColorBoxClass", Kx1ColorWndProc, CS_GLOBALCLASS);
    frame.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    if (!RegisterClassW(&frame)) return 0;
    WNDCLASSW cell = libraryClass(L"szColorBoxChildClass", Kx1ColorWndChildProc, CS_GLOBALCLASS);
    cell.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    return RegisterClassW(&cell) != 0;
}

int registerDlgPaintClass() {
    if (g_dlgPaintClassRegistered) return 1;
    WNDCLASSW windowClass = libraryClass(L"KXDlgPaintClass", DlgPaintWindowProc, CS_GLOBALCLASS);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(LTGRAY_BRUSH));
    if (RegisterClassW(&windowClass)) g_dlgPaintClassRegistered = 1;
    return g_dlgPaintClassRegistered;
}

int registerDlgTippClass() {
    if (g_dlgTippClassRegistered) return 1;
    WNDCLASSW windowClass = libraryClass(L"KXDlgTippWndClass", DlgTippWindowProc, CS_GLOBALCLASS);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH));
    if (RegisterClassW(&windowClass)) g_dlgTippClassRegistered = 1;
    return g_dlgTippClassRegistered;
}

int registerScrollClass() {
    if (g_scrollClass) return 1;
    WNDCLASSW windowClass = libraryClass(L"KVScrollClass", KVScrollProc,
                                         CS_GLOBALCLASS | CS_DBLCLKS);
    windowClass.cbWndExtra = 16;
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    g_scrollClass = RegisterClassW(&windowClass);
    return g_scrollClass != 0;
}

int registerEditButtonClass() {
    if (g_editButtonClassRegistered) return 1;
    WNDCLASSW windowClass = libraryClass(L"EditButton", EdBtnProc,
                                         CS_GLOBALCLASS | CS_DBLCLKS);
    windowClass.hCursor = LoadCursorW(g_bitmapModule, L"handIcon");
    if (RegisterClassW(&windowClass)) g_editButtonClassRegistered = 1;
    return g_editButtonClassRegistered;
}

}  // namespace

wchar_t* LoadLanguageString(UINT id, int maxLength) {
    auto* text = static_cast<wchar_t*>(GetMemory((maxLength + 1) * sizeof(wchar_t)));
    if (!text) return nullptr;
    if (LoadStringW(g_textModule, id, text, maxLength + 1) <= 0) {
        FreeMemory(text);
        return nullptr;
    }
    return text;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH || reason == DLL_THREAD_ATTACH) {
        if (g_libraryModule) return TRUE;
        g_libraryModule = module;
        return module != nullptr;
    }
    return TRUE;
}

void KVKIT_CALL InitTool(void) {
    if (g_classesRegistered) return;
    if (!registerListboxClass()) return;  // left unregistered: a later call tries again
    g_classesRegistered = 1;
    registerColorBoxClasses();
    registerDlgPaintClass();
    registerDlgTippClass();
    registerScrollClass();
}

int KVKIT_CALL Kx1SetLanguage(unsigned short language, HINSTANCE bitmapModule, HINSTANCE textModule) {
    g_language = language;
    g_bitmapModule = bitmapModule;
    g_textModule = textModule;
    registerEditButtonClass();
    return 1;
}

int KVKIT_CALL Kx1SetFormatCheck(KVFORMATCHECK callback) {
    g_formatCheck = callback;
    return 1;
}

HBITMAP KVKIT_CALL KxGetToolBitmap(int id) {
    return LoadBitmapW(g_libraryModule, MAKEINTRESOURCEW(LOWORD(id)));
}

int KVKIT_CALL GetNonClientMetrics(NONCLIENTMETRICSW& metrics) {
    metrics.cbSize = kNonClientMetricsSize;
    return SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, kNonClientMetricsSize, &metrics, 0);
}

HFONT KVKIT_CALL GetSysSmallCaptionFont(void) {
    NONCLIENTMETRICSW metrics;
    if (!GetNonClientMetrics(metrics)) return nullptr;
    return CreateFontIndirectW(&metrics.lfSmCaptionFont);
}

int KVKIT_CALL Kx1SetLayeredWindowAttributes(HWND window, COLORREF key, BYTE alpha, DWORD flags) {
    return SetLayeredWindowAttributes(window, key, alpha, flags);
}

// Also exported as Kx1GradientFill_Enabled.
int KVKIT_CALL Kx1SetLayeredWindowAttributes_Enabled(void) { return 1; }

int KVKIT_CALL KVSHGetFolderPath(HWND owner, int folder, HANDLE token, DWORD flags, wchar_t* path) {
    typedef HRESULT(WINAPI * GetFolderPath)(HWND, int, HANDLE, DWORD, LPWSTR);
    HMODULE shfolder = LoadLibraryW(L"ShFolder.dll");
    if (!shfolder) return 0;
    auto getFolderPath = reinterpret_cast<GetFolderPath>(GetProcAddress(shfolder, "SHGetFolderPathW"));
    HRESULT result = getFolderPath ? getFolderPath(owner, folder, token, flags, path) : E_FAIL;
    FreeLibrary(shfolder);
    return result == S_OK;
}
