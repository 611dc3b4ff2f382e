// Resampling and buffered painting: one picture resized down and up by each method beside the
// system's own stretch, a small picture placed on a larger canvas by each placement flag, and a
// pane painted through KVBeginPaint whose transparent child is composed into the buffer.
#include "gallery/gallery.h"
#include <math.h>
#include <memory>
#include <vector>
#include "kvkit_paint.h"
#include "kvkit_resample.h"

namespace {

const COLORREF kMagenta = RGB(255, 0, 255);

// Bitmaps made for the page, deleted with the panel that shows them.
struct BitmapSet {
    std::vector<HBITMAP> bitmaps;
    ~BitmapSet() {
        for (HBITMAP bitmap : bitmaps)
            if (bitmap) DeleteObject(bitmap);
    }
    HBITMAP add(HBITMAP bitmap) {
        bitmaps.push_back(bitmap);
        return bitmap;
    }
};

// A bottom-up DIB section of the given depth showing a shaded disc with a ring and a cross on a
// magenta background.
HBITMAP makePicture(int size, int bitsPerPixel) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = size;
    info.bmiHeader.biHeight = size;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    HBITMAP picture = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    int stride = (size * 3 + 3) & ~3;
    double centre = (size - 1) / 2.0, radius = size * 0.45;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            double distance = hypot(x - centre, y - centre);
            COLORREF c = kMagenta;
            if (distance < radius) {
                int shade = int(255 - 150 * distance / radius);
                c = RGB(shade / 3, shade * 2 / 3, shade);
                if (distance > radius - 3) c = RGB(20, 30, 90);
                if (abs(x - y) < 2 || abs(x + y - size + 1) < 2) c = RGB(250, 200, 40);
            }
            BYTE* p = static_cast<BYTE*>(bits) + (size - 1 - y) * stride + x * 3;
            p[0] = GetBValue(c);
            p[1] = GetGValue(c);
            p[2] = GetRValue(c);
        }
    if (bitsPerPixel == 24) return picture;

    // Other depths: a section of that depth with the picture copied in.
    info.bmiHeader.biBitCount = WORD(bitsPerPixel);
    HBITMAP converted = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HDC from = CreateCompatibleDC(nullptr), to = CreateCompatibleDC(nullptr);
    HGDIOBJ oldFrom = SelectObject(from, picture), oldTo = SelectObject(to, converted);
    BitBlt(to, 0, 0, size, size, from, 0, 0, SRCCOPY);
    SelectObject(from, oldFrom);
    SelectObject(to, oldTo);
    DeleteDC(from);
    DeleteDC(to);
    DeleteObject(picture);
    return converted;
}

HBITMAP systemStretch(HBITMAP source, int width, int height) {
    BITMAP info;
    GetObjectW(source, sizeof(info), &info);
    HDC screen = GetDC(nullptr);
    HBITMAP result = CreateCompatibleBitmap(screen, width, height);
    ReleaseDC(nullptr, screen);
    HDC from = CreateCompatibleDC(nullptr), to = CreateCompatibleDC(nullptr);
    HGDIOBJ oldFrom = SelectObject(from, source), oldTo = SelectObject(to, result);
    SetStretchBltMode(to, HALFTONE);
    SetBrushOrgEx(to, 0, 0, nullptr);
    StretchBlt(to, 0, 0, width, height, from, 0, 0, info.bmWidth, info.bmHeight, SRCCOPY);
    SelectObject(from, oldFrom);
    SelectObject(to, oldTo);
    DeleteDC(from);
    DeleteDC(to);
    return result;
}

void text(HDC dc, int x, int y, const wchar_t* line) { TextOutW(dc, x, y, line, lstrlenW(line)); }

// --- resized pictures -------------------------------------------------------------------------

struct Method {
    const wchar_t* name;
    HBITMAP down;
    HBITMAP up;
};

const int kPicture = 64, kDown = 40, kUp = 104, kColumn = 116;

std::shared_ptr<BitmapSet> resizeAll(std::vector<Method>* methods) {
    auto set = std::make_shared<BitmapSet>();
    HBITMAP bits24 = set->add(makePicture(kPicture, 24));
    HBITMAP bits16 = set->add(makePicture(kPicture, 16));
    auto both = [&](const wchar_t* name, auto resize) {
        methods->push_back({name, set->add(resize(kDown)), set->add(resize(kUp))});
    };
    both(L"StretchBlt (system)", [&](int n) { return systemStretch(bits24, n, n); });
    both(L"ResizeBitmap", [&](int n) { return ResizeBitmap(bits24, n, n, 0, 0, 0); });
    both(L"ResizeBitmap, key", [&](int n) { return ResizeBitmap(bits24, n, n, 1, 0, 1); });
    both(L"DI_16b smooth", [&](int n) {
        return BlendedResizeBitmap_DI_16b(nullptr, bits16, n, n, 1, 0, 1, 1);
    });
    both(L"DI_16b nearest", [&](int n) {
        return BlendedResizeBitmap_DI_16b(nullptr, bits16, n, n, 1, 0, 1, 0);
    });
    both(L"DI_24b smooth", [&](int n) {
        return BlendedResizeBitmap_DI_24b(nullptr, bits24, n, n, 1, 0, 1, 1);
    });
    both(L"Kx1ShrinkBitmapEx2", [&](int n) { return Kx1ShrinkBitmapEx2(bits24, n, n, 1, 0); });
    return set;
}

void paintResized(HDC dc, const std::vector<Method>& methods, HBITMAP original) {
    text(dc, 8, 4, L"Original 64 x 64 (24-bit DIB section), resized to 40 x 40 and 104 x 104:");
    DrawBitmapScaled(dc, original, 8, 26);
    for (size_t i = 0; i < methods.size(); ++i) {
        int x = 84 + int(i) * kColumn;
        text(dc, x, 26, methods[i].name);
        DrawBitmapScaled(dc, methods[i].down, x, 44);
        DrawBitmapScaled(dc, methods[i].up, x, 92);
    }
    text(dc, 8, 200,
         L"24-bit rows are read at the bytes per row plus the padding rule, which shears the "
         L"picture; BlendedResizeBitmap_DI_32b gives null for 32-bit sources.");
}

// --- canvas placement -------------------------------------------------------------------------

void paintCanvases(HDC dc, const std::vector<HBITMAP>& canvases, const int* flags) {
    text(dc, 8, 4, L"StretchBimapBackground: a 24 x 24 picture on a 40 x 40 canvas (drawn x2), "
                   L"by flag:");
    for (size_t i = 0; i < canvases.size(); ++i) {
        int x = 8 + int(i) * 92;
        wchar_t label[16];
        wsprintfW(label, L"0x%02X", flags[i]);
        text(dc, x, 24, label);
        RECT frame = {x - 1, 41, x + 81, 123};
        FrameRect(dc, &frame, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
        DrawBitmapScaled(dc, canvases[i], x, 42, 2);
    }
}

// --- buffered pane ----------------------------------------------------------------------------

const wchar_t kPaneClass[] = L"Gallery03BufferedPane";
const wchar_t kBadgeClass[] = L"Gallery03Badge";

void paintPaneBackground(HDC dc, const RECT& client) {
    TRIVERTEX corners[2] = {{0, 0, 0xFF00, 0xE000, 0x8000, 0},
                            {client.right, client.bottom, 0x3000, 0x7000, 0xD000, 0}};
    GRADIENT_RECT span = {0, 1};
    GradientFill(dc, corners, 2, &span, 1, GRADIENT_FILL_RECT_H);
    HPEN pen = CreatePen(PS_SOLID, 1, RGB(255, 255, 255));
    HGDIOBJ oldPen = SelectObject(dc, pen);
    for (int x = -client.bottom; x < client.right; x += 14) {
        MoveToEx(dc, x, client.bottom, nullptr);
        LineTo(dc, x + client.bottom, 0);
    }
    SelectObject(dc, oldPen);
    DeleteObject(pen);
    SetBkMode(dc, TRANSPARENT);
    text(dc, 10, 8, L"Painted through KVBeginPaint / KVEndPaint");
}

LRESULT CALLBACK paneProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_ERASEBKGND:
        return 1;  // the buffer covers everything
    case WM_PAINT: {
        tagKVPAINTSTRUCT ps;
        HDC dc = KVBeginPaint(window, &ps, 0);
        if (dc) {
            SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
            paintPaneBackground(dc, ps.client);
        }
        KVEndPaint(&ps);
        return 0;
    }
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// Printed into the parent's buffer, the badge draws only its outline and text, so the parent's
// background shows through; painting itself, it fills its box grey.
LRESULT CALLBACK badgeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    RECT client;
    GetClientRect(window, &client);
    switch (message) {
    case WM_PRINTCLIENT: {
        HDC dc = reinterpret_cast<HDC>(wParam);
        HPEN pen = CreatePen(PS_SOLID, 3, RGB(160, 0, 60));
        HGDIOBJ oldPen = SelectObject(dc, pen);
        HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(NULL_BRUSH));
        Ellipse(dc, 2, 2, client.right - 2, client.bottom - 2);
        SelectObject(dc, oldBrush);
        SelectObject(dc, oldPen);
        DeleteObject(pen);
        SetBkMode(dc, TRANSPARENT);
        SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
        DrawTextW(dc, L"composed", -1, &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        return 0;
    }
    case WM_PAINT: {
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        FillRect(dc, &client, static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH)));
        SetBkMode(dc, TRANSPARENT);
        SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
        DrawTextW(dc, L"not composed", -1, &client, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
        EndPaint(window, &paint);
        return 0;
    }
    case WM_ERASEBKGND:
        return 1;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

void registerPaneClasses() {
    WNDCLASSW windowClass = {};
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpfnWndProc = paneProc;
    windowClass.lpszClassName = kPaneClass;
    RegisterClassW(&windowClass);
    windowClass.lpfnWndProc = badgeProc;
    windowClass.lpszClassName = kBadgeClass;
    RegisterClassW(&windowClass);
}

void createBufferedPane(HWND page, int x, int y) {
    registerPaneClasses();
    // No WS_CLIPCHILDREN: the buffer is copied over the children's area as well.
    HWND pane = CreateWindowExW(0, kPaneClass, nullptr, WS_CHILD | WS_VISIBLE, x, y, 420, 110,
                                page, nullptr, GetModuleHandleW(nullptr), nullptr);
    CreateWindowExW(WS_EX_TRANSPARENT, kBadgeClass, nullptr, WS_CHILD | WS_VISIBLE, 30, 36, 150,
                    60, pane, nullptr, GetModuleHandleW(nullptr), nullptr);
    CreateWindowExW(WS_EX_TRANSPARENT | WS_EX_NOPARENTNOTIFY, kBadgeClass, nullptr,
                    WS_CHILD | WS_VISIBLE, 230, 36, 150, 60, pane, nullptr,
                    GetModuleHandleW(nullptr), nullptr);
}

// ---------------------------------------------------------------------------------------------

void build(HWND page) {
    auto methods = std::make_shared<std::vector<Method>>();
    std::shared_ptr<BitmapSet> resized = resizeAll(methods.get());
    HBITMAP original = resized->bitmaps[0];
    CreatePaintedPanel(page, 10, 10, 910, 220, [methods, resized, original](HDC dc, const RECT&) {
        SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
        paintResized(dc, *methods, original);
    });

    static const int kFlags[] = {0x00, 0x02, 0x04, 0x10, 0x20, 0x24, 0x12, 0x40};
    auto canvases = std::make_shared<BitmapSet>();
    HBITMAP small = canvases->add(Kx1ShrinkBitmapEx2(makePicture(kPicture, 24), 24, 24, 0, 1));
    std::vector<HBITMAP> shown;
    for (int flags : kFlags) {
        COLORREF background = RGB(255, 240, 160);
        shown.push_back(canvases->add(StretchBimapBackground(small, 40, 40, flags, &background,
                                                             nullptr)));
    }
    CreatePaintedPanel(page, 10, 240, 910, 130, [canvases, shown](HDC dc, const RECT&) {
        SelectObject(dc, GetStockObject(DEFAULT_GUI_FONT));
        paintCanvases(dc, shown, kFlags);
    });

    AddLabel(page, 10, 384, 900, 16,
             L"Left child: WS_EX_TRANSPARENT alone, printed into the buffer. Right child: "
             L"another extended bit too.");
    createBufferedPane(page, 10, 404);
}

const bool registered = RegisterGalleryPage(
    {L"03-resample", 930, 524, build,
     L"Resampling and buffered painting: a picture resized down and up by each method beside "
     L"the system's own stretch, a small picture placed on a larger canvas by each placement "
     L"flag, and a pane painted through KVBeginPaint."});

}  // namespace
