// A consumer as an MSVC toolchain builds it: compiled for the MSVC ABI, so each call names the
// import __imp__Name@bytes, and linked through kvkit.lib, which maps those names to kvkit.dll's
// plain exports. It needs no C runtime: the entry point is consumerMain.
//
//   cl /c /GS- /Zl consumer.cpp /I <sdk>\include
//   link /subsystem:console /entry:consumerMain /nodefaultlib consumer.obj <sdk>\lib\kvkit.lib
//        <sdk>\lib\kvtext.lib kernel32.lib user32.lib gdi32.lib comctl32.lib
//
// With kvkit_headers.inc (an #include of every kvkit header) and exports.inc (one KV_EXPORT(Name)
// line per export of kvkit.def) beside it, it also takes the address of every export, so that
// the link proves kvkit.lib and the headers agree on each one.
#include <windows.h>
#include <commctrl.h>
#include "kvkit_bitmap.h"
#include "kvkit_colour.h"
#include "kvkit_core.h"
#include "kvkit_draw.h"
#include "kvkit_listview.h"
#include "kvkit_paint.h"
#include "kvkit_resample.h"
#include "kvkit_sizedlg.h"
#include "kvkit_theme.h"
#include "kvkit_version.h"
#include "kvtext.h"
#if __has_include("kvkit_headers.inc")
#include "kvkit_headers.inc"
#endif

// Without a C runtime the program defines the marker that floating-point code refers to.
extern "C" int _fltused = 0;

namespace {

int g_failures;

void print(const char* text) {
    DWORD written;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), text, lstrlenA(text), &written, nullptr);
}

void check(bool passed, const char* what) {
    print(passed ? "ok   " : "FAIL ");
    print(what);
    print("\r\n");
    if (!passed) ++g_failures;
}

#if __has_include("exports.inc")
int resolvedExports(int* expected) {
    const void* exports[] = {
#define KV_EXPORT(name) reinterpret_cast<const void*>(&name),
#include "exports.inc"
#undef KV_EXPORT
    };
    *expected = sizeof(exports) / sizeof(exports[0]);
    int resolved = 0;
    for (const void* address : exports) resolved += address != nullptr;
    return resolved;
}
#endif

// A number column sorted by kvkit: ten arguments, a callback into the list view and back.
bool sortsNumbers() {
    HWND list = CreateWindowExW(0, WC_LISTVIEWW, L"", WS_POPUP | LVS_REPORT, 0, 0, 200, 100,
                                nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    if (!list) return false;
    KxListView_AddHeader(list, L"Number", 0, 80);
    const wchar_t* numbers[] = {L"815", L"12000", L"99"};
    for (int row = 0; row < 3; ++row) KxListView_AddSpalte(list, row, 0, numbers[row], -1, row + 1);
    KxListView_SortItemsNew(list, 0, KX_SORT_NUMBER, 0, -1, -1, 0, 0, GlobalSession(), 0);
    bool sorted = KxListView_GetItemData(list, 0) == 3 && KxListView_GetItemData(list, 1) == 1 &&
                  KxListView_GetItemData(list, 2) == 2;
    DestroyWindow(list);
    return sorted;
}

}  // namespace

extern "C" void __stdcall consumerMain() {
    INITCOMMONCONTROLSEX controls = {sizeof(controls), ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&controls);
    InitTool();

    check(KxGetVersion() == KVKIT_VERSION, "KxGetVersion matches the headers");
    unsigned long red = RGB(255, 0, 0), hsb = 0;
    check(RGBToHSB(&red, &hsb) == 0 && hsb == (0 | 240 << 8 | 120 << 16), "RGBToHSB (pointers)");
    // A double argument counts 8 bytes in the decoration: BlendColors@16.
    check(BlendColors(RGB(0, 0, 0), RGB(200, 100, 50), 0.5) == RGB(100, 50, 25),
          "BlendColors (a double argument)");
    NONCLIENTMETRICSW metrics;  // not zeroed: that would call the C runtime's memset
    metrics.cbSize = 0;
    check(GetNonClientMetrics(metrics) != 0 && metrics.cbSize == 504,
          "GetNonClientMetrics (a reference argument)");
    check(sortsNumbers(), "KxListView_SortItemsNew sorts a number column");
    CACHE_LISTVIEW cache = {};
    check(FreeCacheListView(&cache) == 0 && cache.rows == nullptr, "FreeCacheListView (a packed record)");
#if __has_include("exports.inc")
    int expected = 0;
    int resolved = resolvedExports(&expected);
    check(resolved == expected && expected > 0, "every export of kvkit.def resolves through kvkit.lib");
#endif
    print(g_failures ? "consumer: failed\r\n" : "consumer: all passed\r\n");
    ExitProcess(g_failures ? 1 : 0);
}
