// Animated GIF pictures: a GDI+ image read from a "GIF" resource, drawn on demand, and stepped
// through its frames by a thread of its own that invalidates the window, waits for the window to
// draw the new frame and then for the frame's delay.
#include "include/kvkit_gif.h"
#include "kvtext.h"
#include <gdiplus.h>
#include <process.h>
#include <stddef.h>
#include <stdlib.h>
#include <algorithm>
#include <new>

namespace KVGdiPlus {

// One picture; the handle given out points at it. Like every GDI+ wrapper object it lives in
// GdipAlloc memory. The base keeps the native image and the status of the last failing GDI+
// call. The frame mutex guards the frame index and the selection and drawing of frames, the only
// things the animation thread shares with the window's thread besides the events.
class ImageEx : public Gdiplus::Image {
public:
    ImageEx(ULONG_PTR token, IStream* stream, HINSTANCE module);
    ~ImageEx() override;

    ULONG_PTR startupToken;   // from this picture's own GdiplusStartup
    HANDLE thread;            // the animation thread, null until started
    HANDLE resumeEvent;       // manual; reset while paused
    HANDLE frameDrawnEvent;   // manual; set once the window has drawn the selected frame
    HANDLE exitEvent;         // manual; set when the picture is destroyed
    HANDLE wakeEvent;         // manual; cuts a frame's delay short
    HANDLE frameMutex;
    HINSTANCE module;         // where the resource was found
    HWND window;              // invalidated at each frame
    UINT frameCount;          // of the first frame dimension
    UINT frameIndex;          // the frame the next step selects
    BYTE loaded;              // the resource stream exists
    BYTE threadStarted;
    volatile BYTE paused;
    volatile BYTE awaitingDraw;  // a frame was selected and the window has not drawn it yet
    BYTE mayAdvance;
    Gdiplus::PropertyItem* frameDelays;  // hundredths of a second per frame, from malloc
    RECT drawRect;            // (0, 0, width, height) after loading; then the animation's rectangle
    IStream* stream;          // over a global copy of the resource
    UINT restartIndex;        // where the index goes after the last frame
};

// The layout of the object, which the handle's users may rely on.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(sizeof(Gdiplus::Image) == 12, "image wrapper: table, native image, last status");
static_assert(offsetof(ImageEx, startupToken) == 12, "start-up token offset");
static_assert(offsetof(ImageEx, frameMutex) == 36, "frame mutex offset");
static_assert(offsetof(ImageEx, frameCount) == 48, "frame count offset");
static_assert(offsetof(ImageEx, loaded) == 56, "loaded flag offset");
static_assert(offsetof(ImageEx, mayAdvance) == 60, "may-advance flag offset");
static_assert(offsetof(ImageEx, frameDelays) == 64, "frame delays offset");
static_assert(offsetof(ImageEx, drawRect) == 68, "draw rectangle offset");
static_assert(offsetof(ImageEx, restartIndex) == 88, "restart index offset");
static_assert(sizeof(ImageEx) == 92, "picture size");
#pragma GCC diagnostic pop

// The base loads the image from the stream (a null stream fails and leaves its status).
ImageEx::ImageEx(ULONG_PTR token, IStream* stream, HINSTANCE module)
    : Gdiplus::Image(stream, TRUE),
      startupToken(token),
      thread(nullptr),
      resumeEvent(CreateEventW(nullptr, TRUE, TRUE, nullptr)),
      frameDrawnEvent(CreateEventW(nullptr, TRUE, TRUE, nullptr)),
      exitEvent(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      wakeEvent(CreateEventW(nullptr, TRUE, TRUE, nullptr)),
      frameMutex(CreateMutexW(nullptr, FALSE, nullptr)),
      module(module),
      window(nullptr),
      frameCount(0),
      frameIndex(0),
      loaded(stream != nullptr),
      threadStarted(0),
      paused(0),
      awaitingDraw(0),
      mayAdvance(1),
      frameDelays(nullptr),
      drawRect(),
      stream(stream),
      restartIndex(0) {}

}  // namespace KVGdiPlus

using KVGdiPlus::ImageEx;

namespace {

const DWORD kFrameMutexWait = 25000;
// A frame step that could not take the frame mutex; also ends the animation thread.
const DWORD kStepFailed = 0xFFFFFFFF;
// GDI+ knows three frame dimensions: time, page and resolution.
const UINT kMaxFrameDimensions = 3;

void closeHandle(HANDLE handle) {
    if (handle) CloseHandle(handle);
}

bool startGdiplus(ULONG_PTR* token) {
    Gdiplus::GdiplusStartupInput input;  // version 1, no debug callback, nothing suppressed
    if (Gdiplus::GdiplusStartup(token, &input, nullptr) == Gdiplus::Ok) return true;
    OutputDebugStringW(L"GdiHelp::Startup() gdi startup failed!\n");
    return false;
}

// The resource copied into a moveable global block behind a stream that frees the block when it
// is released. Null when the resource is missing or empty or memory runs out.
IStream* resourceStream(HINSTANCE module, const wchar_t* name) {
    HRSRC resource = FindResourceW(module, name, L"GIF");
    DWORD size = resource ? SizeofResource(module, resource) : 0;
    HGLOBAL loaded = size ? LoadResource(module, resource) : nullptr;
    const void* bytes = loaded ? LockResource(loaded) : nullptr;
    if (!bytes) return nullptr;
    HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, size);
    void* copy = block ? GlobalLock(block) : nullptr;
    if (!copy) {
        if (block) GlobalFree(block);
        return nullptr;
    }
    CopyMemory(copy, bytes, size);
    GlobalUnlock(block);
    IStream* stream = nullptr;
    if (FAILED(CreateStreamOnHGlobal(block, TRUE, &stream))) {
        GlobalFree(block);
        return nullptr;
    }
    return stream;
}

// Starts GDI+ and makes the picture object over the stream, which it takes over. Null (with
// GDI+ shut down again and the stream released) when either fails.
ImageEx* createImage(IStream* stream, HINSTANCE module) {
    ULONG_PTR token = 0;
    bool started = startGdiplus(&token);
    void* memory = started ? Gdiplus::DllExports::GdipAlloc(sizeof(ImageEx)) : nullptr;
    if (!memory) {
        if (stream) stream->Release();
        if (started) Gdiplus::GdiplusShutdown(token);
        return nullptr;
    }
    return ::new (memory) ImageEx(token, stream, module);
}

void destroyImage(ImageEx* gif) {
    ULONG_PTR token = gif->startupToken;
    delete gif;  // the virtual destructor, then GdipFree
    Gdiplus::GdiplusShutdown(token);
}

// Frame count, frame delays and the draw rectangle of a loaded image. A failing call leaves its
// status in the image and the rest undone.
void readFrameData(ImageEx* gif) {
    GUID dimensions[kMaxFrameDimensions];
    UINT count = std::min(gif->GetFrameDimensionsCount(), kMaxFrameDimensions);
    if (gif->GetFrameDimensionsList(dimensions, count) != Gdiplus::Ok) return;
    gif->frameCount = gif->GetFrameCount(&dimensions[0]);
    // A still picture needs no delays, and GDI+ may give it no delay property at all.
    if (gif->frameCount > 1) {
        UINT size = gif->GetPropertyItemSize(PropertyTagFrameDelay);
        if (!size) return;
        // Without memory GDI+ is given no buffer and reports that itself.
        gif->frameDelays = static_cast<Gdiplus::PropertyItem*>(malloc(size));
        if (gif->GetPropertyItem(PropertyTagFrameDelay, size, gif->frameDelays) != Gdiplus::Ok) return;
    }
    gif->drawRect = {0, 0, static_cast<LONG>(gif->GetWidth()), static_cast<LONG>(gif->GetHeight())};
}

// The handle when every GDI+ call of the load succeeded and the events and mutex exist;
// otherwise the picture is destroyed and the result is null.
void* keepLoaded(ImageEx* gif, Gdiplus::Status status) {
    bool synchronised = gif->resumeEvent && gif->frameDrawnEvent && gif->exitEvent &&
                        gif->wakeEvent && gif->frameMutex;
    if (status == Gdiplus::Ok && synchronised) return gif;
    destroyImage(gif);
    return nullptr;
}

// Delay entry of a frame in milliseconds; a frame the delay property does not cover has none.
DWORD frameDelay(const ImageEx* gif, UINT index) {
    const Gdiplus::PropertyItem* delays = gif->frameDelays;
    if (!delays || index >= delays->length / sizeof(UINT)) return 0;
    return static_cast<const UINT*>(delays->value)[index] * 10;
}

bool lockFrame(ImageEx* gif) {
    DWORD wait = WaitForSingleObject(gif->frameMutex, kFrameMutexWait);
    return wait == WAIT_OBJECT_0 || wait == WAIT_ABANDONED;
}

UINT followingFrame(const ImageEx* gif, UINT index) {
    return index + 1 >= gif->frameCount ? gif->restartIndex : index + 1;
}

// Selects the frame at the index and moves the index on; with `reset`, selects frame 0 instead.
// Returns the delay entry at the new index, which is that of the frame shown next rather than of
// the frame just selected: the animation keeps each frame up for its successor's delay.
DWORD stepFrame(ImageEx* gif, bool reset) {
    if (!lockFrame(gif)) return kStepFailed;
    if (reset) {
        gif->SelectActiveFrame(&Gdiplus::FrameDimensionTime, 0);
        gif->frameIndex = followingFrame(gif, 0);
        gif->mayAdvance = !gif->paused;
    } else {
        if (!gif->mayAdvance && !gif->paused) gif->mayAdvance = 1;
        if (gif->mayAdvance) {
            gif->SelectActiveFrame(&Gdiplus::FrameDimensionTime, gif->frameIndex);
            gif->frameIndex = followingFrame(gif, gif->frameIndex);
        }
    }
    DWORD delay = frameDelay(gif, gif->frameIndex);
    ReleaseMutex(gif->frameMutex);
    return delay;
}

// Only animations pause. With `reset` the picture also goes back to frame 0 and stays there
// while paused.
void setPaused(ImageEx* gif, bool pause, bool reset) {
    if (gif->frameCount <= 1) return;
    if (pause && !gif->paused) ResetEvent(gif->resumeEvent);
    if (!pause && gif->paused) SetEvent(gif->resumeEvent);
    gif->paused = pause;
    if (reset) stepFrame(gif, true);
}

// Right and bottom are the image's width and height themselves, not added to the rectangle's
// origin: this exact area, and no other, is what each frame invalidates.
void invalidatePicture(ImageEx* gif) {
    HWND window = gif->window;
    if (!window) return;  // never the desktop
    RECT area = {gif->drawRect.left, gif->drawRect.top, static_cast<LONG>(gif->GetWidth()),
                 static_cast<LONG>(gif->GetHeight())};
    RedrawWindow(window, &area, nullptr, RDW_INVALIDATE);
}

unsigned __stdcall animationThread(void* parameter) {
    auto* gif = static_cast<ImageEx*>(parameter);
    // The exit event comes first so that it wins when both are set.
    HANDLE exitOrDrawn[] = {gif->exitEvent, gif->frameDrawnEvent};
    HANDLE exitOrWake[] = {gif->exitEvent, gif->wakeEvent};
    for (;;) {
        WaitForSingleObject(gif->resumeEvent, INFINITE);
        gif->awaitingDraw = 1;
        ResetEvent(gif->frameDrawnEvent);
        DWORD delay = stepFrame(gif, false);
        invalidatePicture(gif);
        if (delay == kStepFailed) break;
        // A window that does not draw the frame (hidden, for one) holds the animation here.
        if (gif->awaitingDraw) WaitForMultipleObjects(2, exitOrDrawn, FALSE, INFINITE);
        ResetEvent(gif->wakeEvent);
        if (WaitForMultipleObjects(2, exitOrWake, FALSE, delay) == WAIT_OBJECT_0) break;
    }
    return 0;
}

}  // namespace

namespace KVGdiPlus {

// Ends the thread first: it is resumed and every event it could wait on is set. The base then
// disposes of the native image, after the stream has been let go.
ImageEx::~ImageEx() {
    if (thread) {
        setPaused(this, false, false);
        SetEvent(frameDrawnEvent);
        SetEvent(wakeEvent);
        SetEvent(exitEvent);
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
    }
    closeHandle(resumeEvent);
    closeHandle(frameDrawnEvent);
    closeHandle(exitEvent);
    closeHandle(wakeEvent);
    closeHandle(frameMutex);
    free(frameDelays);
    if (stream) stream->Release();
}

}  // namespace KVGdiPlus

void* KVKIT_CALL GIFLoad(KVSESSION* session, const wchar_t* name, HINSTANCE module) {
    if (!module) {
        if (!session) return nullptr;
        module = session->resourceModule;
    }
    ImageEx* gif = createImage(resourceStream(module, name), module);
    if (!gif) return nullptr;
    Gdiplus::Status status = gif->GetLastStatus();  // of loading the stream
    if (status == Gdiplus::Ok) {
        readFrameData(gif);
        status = gif->GetLastStatus();
    }
    return keepLoaded(gif, status);
}

// Made like a loaded picture, but without an image: the first query of its frames fails.
void* KVKIT_CALL GIFLoadFromFile(wchar_t* path, int flag) {
    ImageEx* gif = createImage(nullptr, nullptr);
    if (!gif) return nullptr;
    gif->loaded = 1;
    readFrameData(gif);
    return keepLoaded(gif, gif->GetLastStatus());
}

int KVKIT_CALL GIFDraw(void* handle, HDC dc, POINT* at) {
    auto* gif = static_cast<ImageEx*>(handle);
    if (!gif) return 1;
    Gdiplus::Status status = Gdiplus::Win32Error;
    Gdiplus::Graphics graphics(dc);
    // Under the frame mutex: the animation thread must not select a frame halfway through.
    if (lockFrame(gif)) {
        status = graphics.DrawImage(gif, static_cast<INT>(gif->drawRect.left),
                                    static_cast<INT>(gif->drawRect.top),
                                    static_cast<INT>(gif->GetWidth()),
                                    static_cast<INT>(gif->GetHeight()));
        ReleaseMutex(gif->frameMutex);
    }
    if (gif->awaitingDraw) {
        gif->awaitingDraw = 0;
        SetEvent(gif->frameDrawnEvent);
    }
    return status == Gdiplus::Ok ? 0 : 1;
}

int KVKIT_CALL GIFGetSize(void* handle, SIZE* size) {
    auto* gif = static_cast<ImageEx*>(handle);
    if (!gif || !size) return 1;
    size->cx = static_cast<LONG>(gif->GetWidth());
    size->cy = static_cast<LONG>(gif->GetHeight());
    return 0;
}

int KVKIT_CALL GIFStartAnimation(void* handle, HWND window, RECT rc) {
    auto* gif = static_cast<ImageEx*>(handle);
    if (!gif) return 1;
    gif->window = window;
    gif->drawRect = rc;
    if (!gif->loaded) return 0;
    if (gif->frameCount < 2 || gif->thread) return 1;
    gif->thread = reinterpret_cast<HANDLE>(
        _beginthreadex(nullptr, 0, animationThread, gif, CREATE_SUSPENDED, nullptr));
    if (gif->thread) {
        gif->threadStarted = 1;
        ResumeThread(gif->thread);
    }
    return 1;
}

int KVKIT_CALL GIFPauseAnimation(void* handle, bool pause) {
    auto* gif = static_cast<ImageEx*>(handle);
    if (!gif) return 1;
    setPaused(gif, pause, false);
    return 0;
}

int KVKIT_CALL GIFNextFrame(void* handle) {
    auto* gif = static_cast<ImageEx*>(handle);
    if (!gif) return -1;
    return static_cast<int>(stepFrame(gif, false));
}

void KVKIT_CALL GIFDestroy(void* handle) {
    if (handle) destroyImage(static_cast<ImageEx*>(handle));
}
