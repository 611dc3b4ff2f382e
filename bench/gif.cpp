// Animated GIF playback in a real window: process CPU time per frame shown, as a multiple of one
// GdipDrawImageRectI of the same picture measured in the same run, and how closely the frames
// shown follow the picture's delays (mean and worst lateness over a few seconds).
#include "bench.h"
#include <gdiplus.h>
#include <algorithm>
#include <vector>
#include "kvkit_gif.h"

namespace {

const wchar_t kWindowClass[] = L"KvBenchGifPlayer";
const double kPlaySeconds = 6.0;

HINSTANCE g_resources;

double secondsNow() {
    LARGE_INTEGER frequency, counter;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&counter);
    return double(counter.QuadPart) / double(frequency.QuadPart);
}

double processCpuSeconds() {
    FILETIME created, exited, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &created, &exited, &kernel, &user);
    auto seconds = [](const FILETIME& t) {
        return double((ULONGLONG(t.dwHighDateTime) << 32) | t.dwLowDateTime) * 1e-7;
    };
    return seconds(kernel) + seconds(user);
}

// The picture straight from GDI+, for the baseline and for its delays.
struct RawPicture {
    IStream* stream = nullptr;
    Gdiplus::GpImage* image = nullptr;
    SIZE size = {};
    std::vector<double> delays;  // seconds per frame, as the GIF gives them

    explicit RawPicture(const wchar_t* name) {
        HRSRC resource = FindResourceW(g_resources, name, L"GIF");
        DWORD bytes = SizeofResource(g_resources, resource);
        HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, bytes);
        CopyMemory(GlobalLock(block), LockResource(LoadResource(g_resources, resource)), bytes);
        GlobalUnlock(block);
        CreateStreamOnHGlobal(block, TRUE, &stream);
        Gdiplus::DllExports::GdipLoadImageFromStream(stream, &image);
        UINT width = 0, height = 0, propertyBytes = 0;
        Gdiplus::DllExports::GdipGetImageWidth(image, &width);
        Gdiplus::DllExports::GdipGetImageHeight(image, &height);
        size = {LONG(width), LONG(height)};
        Gdiplus::DllExports::GdipGetPropertyItemSize(image, PropertyTagFrameDelay, &propertyBytes);
        std::vector<BYTE> buffer(propertyBytes);
        auto* item = reinterpret_cast<Gdiplus::PropertyItem*>(buffer.data());
        if (propertyBytes &&
            Gdiplus::DllExports::GdipGetPropertyItem(image, PropertyTagFrameDelay, propertyBytes,
                                                     item) == Gdiplus::Ok)
            for (ULONG i = 0; i < item->length / 4; ++i)
                delays.push_back(static_cast<const UINT*>(item->value)[i] / 100.0);
    }
    ~RawPicture() {
        Gdiplus::DllExports::GdipDisposeImage(image);
        if (stream) stream->Release();
    }
};

// A memory DC with a bitmap of the given size, for drawing without a window.
struct MemoryCanvas {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ previous;
    explicit MemoryCanvas(SIZE size) {
        HDC screen = GetDC(nullptr);
        dc = CreateCompatibleDC(screen);
        bitmap = CreateCompatibleBitmap(screen, size.cx, size.cy);
        ReleaseDC(nullptr, screen);
        previous = SelectObject(dc, bitmap);
    }
    ~MemoryCanvas() {
        SelectObject(dc, previous);
        DeleteObject(bitmap);
        DeleteDC(dc);
    }
};

struct Player {
    void* gif;
    std::vector<double> shown;  // when each frame was drawn
    double painting = 0;        // seconds spent in WM_PAINT drawing the frames
};

LRESULT CALLBACK playerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* player = reinterpret_cast<Player*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message != WM_PAINT || !player) return DefWindowProcW(window, message, wParam, lParam);
    double start = secondsNow();
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(window, &ps);
    GIFDraw(player->gif, dc, nullptr);
    GdiFlush();
    EndPaint(window, &ps);
    double end = secondsNow();
    player->shown.push_back(end);
    player->painting += end - start;
    return 0;
}

// Plays the picture in a window for kPlaySeconds; the frames' times land in `player`. Returns
// the process CPU seconds spent meanwhile (the animation thread and the painting together).
double play(Player* player, SIZE size) {
    HWND window = CreateWindowExW(WS_EX_TOPMOST, kWindowClass, L"kvkit GIF bench",
                                  WS_POPUP | WS_VISIBLE, 0, 0, size.cx, size.cy, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr);
    UpdateWindow(window);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(player));
    double cpuStart = processCpuSeconds(), start = secondsNow();
    RECT at = {0, 0, size.cx, size.cy};
    GIFStartAnimation(player->gif, window, at);
    for (double elapsed = 0; elapsed < kPlaySeconds; elapsed = secondsNow() - start) {
        MsgWaitForMultipleObjects(0, nullptr, FALSE, DWORD((kPlaySeconds - elapsed) * 1000) + 1,
                                  QS_ALLINPUT);
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
    }
    GIFPauseAnimation(player->gif, true);
    double cpu = processCpuSeconds() - cpuStart;
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    DestroyWindow(window);
    return cpu;
}

struct Lateness {
    double mean = 0, worst = 0;
};

// Frame i shown (frame i mod n of the picture) should be followed by the next one after
// `delayAfter(i)` seconds; how much later than that it came.
template <typename DelayAfter>
Lateness lateness(const std::vector<double>& shown, DelayAfter delayAfter) {
    Lateness result;
    if (shown.size() < 2) return result;
    result.worst = -1e30;
    for (size_t i = 0; i + 1 < shown.size(); ++i) {
        double late = shown[i + 1] - shown[i] - delayAfter(i);
        result.mean += late;
        result.worst = std::max(result.worst, late);
    }
    result.mean /= double(shown.size() - 1);
    return result;
}

void measure(const wchar_t* name) {
    RawPicture raw(name);
    MemoryCanvas canvas(raw.size);
    Gdiplus::GpGraphics* graphics = nullptr;
    Gdiplus::DllExports::GdipCreateFromHDC(canvas.dc, &graphics);
    double baseline = bench::SecondsPerCall(
        [&] {
            Gdiplus::DllExports::GdipDrawImageRectI(graphics, raw.image, 0, 0, raw.size.cx,
                                                    raw.size.cy);
            GdiFlush();
        },
        2000, 7);
    Gdiplus::DllExports::GdipDeleteGraphics(graphics);

    Player player = {GIFLoad(nullptr, name, g_resources), {}, 0};
    double gifDraw = bench::SecondsPerCall(
        [&] {
            GIFDraw(player.gif, canvas.dc, nullptr);
            GdiFlush();
        },
        2000, 7);
    double cpu = play(&player, raw.size);
    GIFDestroy(player.gif);

    size_t frames = player.shown.size(), count = raw.delays.size();
    printf("\n%ls: %ldx%ld, %u frames, delays", name, raw.size.cx, raw.size.cy, unsigned(count));
    for (double delay : raw.delays) printf(" %.0f", delay * 1000);
    printf(" ms; %u frames shown in %.1f s\n", unsigned(frames), kPlaySeconds);
    bench::Report("GdipDrawImageRectI (baseline)", baseline, baseline);
    bench::Report("GIFDraw", gifDraw, baseline);
    if (frames) {
        bench::Report("WM_PAINT with GIFDraw, per frame shown", player.painting / double(frames), baseline);
        bench::Report("process CPU per frame shown", cpu / double(frames), baseline);
        printf("  (process CPU %.0f ms over the playback; Wine counts it in 10 ms ticks)\n", cpu * 1000);
    }

    // The animation keeps frame k up for the delay of frame k + 1; the GIF means its own.
    Lateness library = lateness(player.shown, [&](size_t i) { return raw.delays[(i + 1) % count]; });
    Lateness own = lateness(player.shown, [&](size_t i) { return raw.delays[i % count]; });
    printf("  lateness against the successor's delay: mean %7.1f ms, worst %7.1f ms\n",
           library.mean * 1000, library.worst * 1000);
    printf("  against each frame's own delay:         mean %7.1f ms, worst %7.1f ms\n",
           own.mean * 1000, own.worst * 1000);
    fflush(stdout);
}

}  // namespace

int main() {
    Gdiplus::GdiplusStartupInput input;
    ULONG_PTR token = 0;
    Gdiplus::GdiplusStartup(&token, &input, nullptr);
    g_resources = LoadLibraryW(L"kvsample_resources.dll");
    if (!g_resources) {
        fprintf(stderr, "kvsample_resources.dll must lie beside the bench\n");
        return 2;
    }
    WNDCLASSW windowClass = {};
    windowClass.lpfnWndProc = playerProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kWindowClass;
    RegisterClassW(&windowClass);

    printf("GIF playback (draw times: best of 7 rounds; playback: %.0f s in a window)\n", kPlaySeconds);
    measure(L"GIF_BUSY");
    measure(L"GIF_FRAMES");
    Gdiplus::GdiplusShutdown(token);
    return 0;
}
