// Shared test helpers: a fixture that checks kvtext allocation balance, host windows that record
// the messages they receive, message pumping, and pixel access.
#pragma once
#include <windows.h>
#include <gtest/gtest.h>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>
#include "kvtext.h"

namespace kvtest {

// Base fixture: every test must leave the kvtext live-allocation count, the process's live GDI
// objects and its kernel handle count where it found them. The counts are taken when the
// fixture is constructed and compared when it is destroyed, so that objects held by members of a
// derived fixture count too. Failure injection is switched off again after each test.
class KvTest : public ::testing::Test {
protected:
    KvTest();
    ~KvTest() override;
    void TearDown() override;

private:
    int liveAtStart_ = 0;
    std::vector<bool> gdiObjectsAtStart_;
    std::vector<UINT_PTR> kernelHandlesAtStart_;
};

// Live GDI objects of the process. GetGuiResources answers 0 under Wine, whose GDI handles are
// table indexes that a zero high word matches whatever their generation: counting the values
// 1..0xFFFF that name an object gives the live count.
int LiveGdiObjects();
// Which of the values 1..0xFFFF name a live GDI object (index 0 unused).
std::vector<bool> GdiObjectTable();
// The objects live in `now` but not in `before`, described by type, for a failure message.
std::string DescribeNewGdiObjects(const std::vector<bool>& before, const std::vector<bool>& now);
// Kernel handles (threads, events, mutexes, files) open in the process. GetProcessHandleCount
// answers 0 under Wine 8, so the handle values are probed.
DWORD KernelHandles();
std::vector<UINT_PTR> KernelHandleValues();

struct RecordedMessage {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

// A top-level window of a private class that records every message it receives. An optional
// handler sees each message first (while pointers in lParam are still valid) and may answer it.
class HostWindow {
public:
    using Handler = std::function<bool(HWND, UINT, WPARAM, LPARAM, LRESULT*)>;

    explicit HostWindow(int clientWidth = 400, int clientHeight = 300,
                        DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN);
    ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    HWND handle() const { return window_; }
    operator HWND() const { return window_; }

    void setHandler(Handler handler) { handler_ = std::move(handler); }
    const std::vector<RecordedMessage>& messages() const { return messages_; }
    std::vector<RecordedMessage> messages(UINT message) const;
    int count(UINT message) const { return static_cast<int>(messages(message).size()); }
    void clear() { messages_.clear(); }

    // A child window of any class, created with this window as parent.
    HWND createChild(const wchar_t* className, const wchar_t* text, DWORD style, int x, int y,
                     int width, int height, int id, DWORD exStyle = 0);

private:
    static LRESULT CALLBACK windowProc(HWND, UINT, WPARAM, LPARAM);
    HWND window_ = nullptr;
    Handler handler_;
    std::vector<RecordedMessage> messages_;
};

// Records the messages that an existing window receives, through a comctl32 subclass that sits
// in front of whatever procedure the window has. Detaching the last comctl32 subclass puts back
// the procedure the window had before it, dropping any replacement installed on top since: destroy
// such a window while its recorder is still attached.
class MessageRecorder {
public:
    explicit MessageRecorder(HWND window);
    ~MessageRecorder();
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;

    const std::vector<RecordedMessage>& messages() const { return messages_; }
    int count(UINT message) const;
    void clear() { messages_.clear(); }
    void detach();

private:
    static LRESULT CALLBACK subclassProc(HWND, UINT, WPARAM, LPARAM, UINT_PTR, DWORD_PTR);
    HWND window_;
    std::vector<RecordedMessage> messages_;
};

// Holds the keys down in this thread's keyboard state (as GetKeyState reads it); Ctrl and Shift
// are released first, so HoldKeys({}) releases them.
void HoldKeys(std::initializer_list<int> keys);

// Dispatches every queued message of this thread.
void PumpMessages();
// Dispatches messages for the given time.
void PumpFor(DWORD milliseconds);

// A 32-bit top-down DIB section selected into a memory DC, for drawing tests.
class Canvas {
public:
    Canvas(int width, int height, COLORREF fill = RGB(255, 255, 255));
    ~Canvas();
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    HDC dc() const { return dc_; }
    HBITMAP bitmap() const { return bitmap_; }
    int width() const { return width_; }
    int height() const { return height_; }
    COLORREF pixel(int x, int y) const;  // as a COLORREF (0x00BBGGRR)
    void fill(COLORREF colour);

private:
    HDC dc_;
    HBITMAP bitmap_;
    HGDIOBJ previous_;
    DWORD* bits_;
    int width_, height_;
};

// Pixels of any bitmap, read back as 32-bit top-down COLORREF values (row-major).
std::vector<COLORREF> BitmapPixels(HBITMAP bitmap, int* width = nullptr, int* height = nullptr);
COLORREF BitmapPixel(HBITMAP bitmap, int x, int y);
// A device-compatible bitmap filled by a callback of (x, y) -> colour.
HBITMAP MakeBitmap(int width, int height, const std::function<COLORREF(int, int)>& colourAt);
// True while the handle names a live GDI object.
inline bool IsGdiObject(HGDIOBJ object) { return GetObjectType(object) != 0; }

// Brings the system's lazily filled caches to their steady state before the first test, so that
// the objects they keep do not count as left behind by the test that happened to fill them:
// Wine's pool of cached window DCs, the system colour brushes, the theme parts and bitmaps of
// the common controls (each control created, painted, hovered and destroyed), a dialog box, the
// system cursors and icons, the first popup menu, tooltip and message box, the sound thread that
// the first beep starts, the first debug output and GoogleTest's thread-local watcher.
void WarmUpSystemCaches();

// The loaded sample modules (the shared main loads them).
HINSTANCE LanguageModule();
HINSTANCE ResourceModule();
// Loads both sample modules once; returns false when either is missing.
bool LoadSampleModules();

}  // namespace kvtest
