// Gallery host: loads kvkit with the sample modules in the order a host does, then shows each
// registered page in its own window and writes a PNG screenshot of it.
#include "gallery/gallery.h"
#include <commctrl.h>
#include <gdiplus.h>
#include <algorithm>
#include <memory>
#include <stdio.h>
#include <string>
#include <vector>
#include "kvkit_core.h"

namespace {

std::vector<GalleryPage>& pages() {
    static std::vector<GalleryPage> registered;
    return registered;
}

std::wstring g_outputFolder = L".";
// The screenshots saved for each page shown, in order, for the index.
struct ShownPage {
    const GalleryPage* page;
    std::vector<std::wstring> screenshots;
};
std::vector<ShownPage> g_shown;
HINSTANCE g_languageModule;
HINSTANCE g_resourceModule;
const wchar_t kPageClass[] = L"KvGalleryPage";
const wchar_t kPanelClass[] = L"KvGalleryPanel";

LRESULT CALLBACK pageProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE) return 0;  // pages close when the gallery is done with them
    return DefWindowProcW(window, message, wParam, lParam);
}

LRESULT CALLBACK panelProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* paint = reinterpret_cast<PaintCallback*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_PAINT: {
        PAINTSTRUCT ps;
        HDC dc = BeginPaint(window, &ps);
        RECT client;
        GetClientRect(window, &client);
        FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
        if (paint) (*paint)(dc, client);
        EndPaint(window, &ps);
        return 0;
    }
    case WM_NCDESTROY:
        delete paint;
        SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void registerClasses() {
    WNDCLASSW page = {};
    page.lpfnWndProc = pageProc;
    page.hInstance = GetModuleHandleW(nullptr);
    page.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    page.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    page.lpszClassName = kPageClass;
    RegisterClassW(&page);
    WNDCLASSW panel = page;
    panel.lpfnWndProc = panelProc;
    panel.hbrBackground = nullptr;
    panel.lpszClassName = kPanelClass;
    RegisterClassW(&panel);
}

bool pngEncoder(CLSID* clsid) {
    UINT count = 0, bytes = 0;
    Gdiplus::GetImageEncodersSize(&count, &bytes);
    if (!bytes) return false;
    std::vector<BYTE> buffer(bytes);
    auto* encoders = reinterpret_cast<Gdiplus::ImageCodecInfo*>(buffer.data());
    Gdiplus::GetImageEncoders(count, bytes, encoders);
    for (UINT i = 0; i < count; ++i)
        if (wcscmp(encoders[i].MimeType, L"image/png") == 0) {
            *clsid = encoders[i].Clsid;
            return true;
        }
    return false;
}

std::string utf8(const std::wstring& text) {
    int bytes = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string result(bytes > 0 ? bytes - 1 : 0, '\0');
    if (bytes > 1)
        WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, &result[0], bytes, nullptr, nullptr);
    return result;
}

std::string html(const std::wstring& text) {
    std::string escaped;
    for (char c : utf8(text)) {
        switch (c) {
        case '&': escaped += "&amp;"; break;
        case '<': escaped += "&lt;"; break;
        case '>': escaped += "&gt;"; break;
        case '"': escaped += "&quot;"; break;
        default: escaped += c;
        }
    }
    return escaped;
}

// The family a page shows: its name without the ordering number ("04-listview" -> "listview").
std::wstring familyOf(const wchar_t* pageName) {
    std::wstring name = pageName;
    size_t dash = name.find(L'-');
    bool numbered = dash != std::wstring::npos && dash > 0 &&
                    name.find_first_not_of(L"0123456789") == dash;
    return numbered ? name.substr(dash + 1) : name;
}

// index.html beside the screenshots: one section per page shown, with its caption and pictures.
bool writeIndex() {
    std::wstring path = g_outputFolder + L"\\index.html";
    FILE* file = _wfopen(path.c_str(), L"wb");
    if (!file) return false;
    fputs("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
          "<title>kvkit gallery</title>\n<style>\n"
          "body { font-family: sans-serif; margin: 2em; max-width: 70em; }\n"
          "nav a { margin-right: 1em; }\n"
          "section { margin-top: 2.5em; }\n"
          "figure { margin: 1em 0; }\n"
          "img { border: 1px solid #999; max-width: 100%; }\n"
          "figcaption { color: #555; font-size: 90%; }\n"
          "</style>\n</head>\n<body>\n<h1>kvkit gallery</h1>\n<nav>\n", file);
    for (const ShownPage& shown : g_shown)
        fprintf(file, "<a href=\"#%s\">%s</a>\n", html(shown.page->name).c_str(),
                html(familyOf(shown.page->name)).c_str());
    fputs("</nav>\n", file);
    for (const ShownPage& shown : g_shown) {
        fprintf(file, "<section id=\"%s\">\n<h2>%s</h2>\n", html(shown.page->name).c_str(),
                html(familyOf(shown.page->name)).c_str());
        if (shown.page->caption) fprintf(file, "<p>%s</p>\n", html(shown.page->caption).c_str());
        for (const std::wstring& screenshot : shown.screenshots)
            fprintf(file,
                    "<figure><img src=\"%s.png\" alt=\"%s\"><figcaption>%s.png</figcaption>"
                    "</figure>\n",
                    html(screenshot).c_str(), html(screenshot).c_str(), html(screenshot).c_str());
        fputs("</section>\n", file);
    }
    fputs("</body>\n</html>\n", file);
    bool written = fclose(file) == 0;
    fwprintf(stdout, L"%ls %ls\n", written ? L"wrote" : L"FAILED to write", path.c_str());
    return written;
}

}  // namespace

bool RegisterGalleryPage(const GalleryPage& page) {
    pages().push_back(page);
    return true;
}

void PumpFor(DWORD milliseconds) {
    DWORD start = GetTickCount();
    do {
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    } while (GetTickCount() - start < milliseconds);
}

void SaveScreenshot(HWND window, const wchar_t* name) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    PumpFor(200);
    RECT client;
    GetClientRect(window, &client);
    POINT origin = {0, 0};
    ClientToScreen(window, &origin);
    int width = client.right, height = client.bottom;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    HBITMAP shot = CreateCompatibleBitmap(screen, width, height);
    HGDIOBJ old = SelectObject(memory, shot);
    BitBlt(memory, 0, 0, width, height, screen, origin.x, origin.y, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);

    CLSID png;
    std::wstring path = g_outputFolder + L"\\" + name + L".png";
    bool saved = false;
    if (pngEncoder(&png)) {
        Gdiplus::Bitmap image(shot, nullptr);
        saved = image.Save(path.c_str(), &png, nullptr) == Gdiplus::Ok;
    }
    DeleteObject(shot);
    if (saved && !g_shown.empty()) {
        // The page's own screenshot leads its section; extra ones follow in the order taken.
        std::vector<std::wstring>& shots = g_shown.back().screenshots;
        bool own = wcscmp(name, g_shown.back().page->name) == 0;
        shots.insert(own ? shots.begin() : shots.end(), name);
    }
    fwprintf(stdout, L"%ls %ls\n", saved ? L"wrote" : L"FAILED to write", path.c_str());
    fflush(stdout);
}

HWND CreatePaintedPanel(HWND parent, int x, int y, int width, int height, PaintCallback paint) {
    HWND panel = CreateWindowExW(0, kPanelClass, nullptr, WS_CHILD | WS_VISIBLE, x, y, width,
                                 height, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(panel, GWLP_USERDATA,
                      reinterpret_cast<LONG_PTR>(new PaintCallback(std::move(paint))));
    InvalidateRect(panel, nullptr, TRUE);
    return panel;
}

void DrawBitmapScaled(HDC dc, HBITMAP bitmap, int x, int y, int scale) {
    BITMAP info;
    if (!bitmap || !GetObjectW(bitmap, sizeof(info), &info)) return;
    HDC memory = CreateCompatibleDC(dc);
    HGDIOBJ old = SelectObject(memory, bitmap);
    StretchBlt(dc, x, y, info.bmWidth * scale, info.bmHeight * scale, memory, 0, 0, info.bmWidth,
               info.bmHeight, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
}

HWND AddLabel(HWND parent, int x, int y, int width, int height, const wchar_t* text) {
    HWND label = CreateWindowExW(0, L"STATIC", text, WS_CHILD | WS_VISIBLE, x, y, width, height,
                                 parent, nullptr, GetModuleHandleW(nullptr), nullptr);
    SendMessageW(label, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    return label;
}

void FillShape(HDC dc, COLORREF colour, bool round, int left, int top, int right, int bottom) {
    HBRUSH brush = CreateSolidBrush(colour);
    HGDIOBJ oldBrush = SelectObject(dc, brush);
    HGDIOBJ oldPen = SelectObject(dc, GetStockObject(BLACK_PEN));
    if (round) Ellipse(dc, left, top, right, bottom);
    else Rectangle(dc, left, top, right, bottom);
    SelectObject(dc, oldPen);
    SelectObject(dc, oldBrush);
    DeleteObject(brush);
}

HWND AddControl(HWND parent, const wchar_t* className, DWORD style, int x, int y, int width,
                int height, int id) {
    HWND child = CreateWindowExW(WS_EX_CLIENTEDGE, className, L"", WS_CHILD | WS_VISIBLE | style, x,
                                 y, width, height, parent,
                                 reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    SendMessageW(child, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    return child;
}

HINSTANCE GalleryLanguageModule() { return g_languageModule; }
HINSTANCE GalleryResourceModule() { return g_resourceModule; }

int wmain(int argc, wchar_t** argv) {
    if (argc > 1) g_outputFolder = argv[1];
    // Pages named on the command line run alone.
    std::vector<std::wstring> only(argv + std::min(argc, 2), argv + argc);

    INITCOMMONCONTROLSEX init = {sizeof(init), ICC_WIN95_CLASSES | ICC_DATE_CLASSES | ICC_TAB_CLASSES};
    InitCommonControlsEx(&init);
    Gdiplus::GdiplusStartupInput gdiplusInput;
    ULONG_PTR gdiplusToken = 0;
    Gdiplus::GdiplusStartup(&gdiplusToken, &gdiplusInput, nullptr);

    g_languageModule = LoadLibraryW(L"kvsample_language.dll");
    g_resourceModule = LoadLibraryW(L"kvsample_resources.dll");
    if (!g_languageModule || !g_resourceModule) {
        fwprintf(stderr, L"the sample modules must lie beside kvgallery.exe\n");
        return 2;
    }
    LoadLibraryW(L"kvkit2.dll");  // the sibling toolkit registers "kx2ImgButton"
    Kx1SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), g_resourceModule, g_languageModule);
    InitTool();
    registerClasses();

    std::sort(pages().begin(), pages().end(),
              [](const GalleryPage& a, const GalleryPage& b) { return wcscmp(a.name, b.name) < 0; });
    int failures = 0;
    for (const GalleryPage& page : pages()) {
        if (!only.empty() && std::find(only.begin(), only.end(), page.name) == only.end()) continue;
        DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_CLIPCHILDREN;
        RECT frame = {0, 0, page.clientWidth, page.clientHeight};
        AdjustWindowRectEx(&frame, style, FALSE, 0);
        std::wstring title = std::wstring(L"kvkit gallery - ") + page.name;
        HWND window = CreateWindowExW(WS_EX_TOPMOST, kPageClass, title.c_str(), style, 20, 20,
                                      frame.right - frame.left, frame.bottom - frame.top, nullptr,
                                      nullptr, GetModuleHandleW(nullptr), nullptr);
        if (!window) {
            ++failures;
            continue;
        }
        SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
        ShowWindow(window, SW_SHOW);
        UpdateWindow(window);
        g_shown.push_back({&page, {}});
        page.build(window);
        PumpFor(300);
        SaveScreenshot(window, page.name);
        DestroyWindow(window);
        PumpFor(50);
    }
    Gdiplus::GdiplusShutdown(gdiplusToken);
    if (!writeIndex()) ++failures;
    return failures ? 1 : 0;
}
