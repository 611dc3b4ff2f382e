// Helpers of the GIF tests, and a warm-up of GDI+ before the first test.
#include "gif_test.h"
#include <tlhelp32.h>

namespace gif_test {

int ProcessThreads() {
    HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return -1;
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof(entry);
    int count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more; more = Thread32Next(snapshot, &entry))
        count += entry.th32OwnerProcessID == GetCurrentProcessId();
    CloseHandle(snapshot);
    return count;
}

bool PumpUntil(const std::function<bool()>& done, DWORD timeout) {
    DWORD start = GetTickCount();
    while (!done()) {
        if (GetTickCount() - start >= timeout) return done();
        kvtest::PumpMessages();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return true;
}

PictureWindow::PictureWindow(void* gif, DWORD style)
    : gif_(gif), host_(120, 80, style), canvas_(120, 80) {
    host_.setHandler([this](HWND, UINT message, WPARAM, LPARAM, LRESULT* result) {
        if (message != WM_PAINT) return false;
        *result = 0;
        return onPaint();
    });
}

int PictureWindow::start() {
    UpdateWindow(handle());
    kvtest::PumpMessages();
    paints_.clear();
    frames_.clear();
    return GIFStartAnimation(gif_, handle(), pictureRect());
}

bool PictureWindow::onPaint() {
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(handle(), &ps);
    paints_.push_back(ps.rcPaint);
    canvas_.fill(RGB(255, 255, 255));
    if (drawing_) {
        GIFDraw(gif_, canvas_.dc(), nullptr);
        RECT picture = pictureRect();
        frames_.push_back(FrameOf(canvas_.pixel(picture.left + 1, picture.top + 1), colours_, colourCount_));
    }
    BitBlt(dc, 0, 0, canvas_.width(), canvas_.height(), canvas_.dc(), 0, 0, SRCCOPY);
    EndPaint(handle(), &ps);
    return true;
}

bool StepsByOne(const std::vector<int>& frames, int count) {
    for (size_t i = 1; i < frames.size(); ++i)
        if (frames[i] != frames[i - 1] && frames[i] != (frames[i - 1] + 1) % count) return false;
    return true;
}

int Wraps(const std::vector<int>& frames, int count) {
    int wraps = 0;
    for (size_t i = 1; i < frames.size(); ++i) wraps += frames[i - 1] == count - 1 && frames[i] == 0;
    return wraps;
}

}  // namespace gif_test

namespace {

// The first GIF that GDI+ decodes in a process makes the system open what it then keeps for the
// life of the process (registry keys of the codec and metadata reader registrations, the object
// directory, a mutex). Decoding one here, before the first test, keeps those out of the counts of
// whichever test happens to load first.
class GdiplusWarmUp : public ::testing::Environment {
public:
    void SetUp() override {
        void* gif = gif_test::Load(gif_test::kFrames);
        kvtest::Canvas canvas(40, 40);
        GIFNextFrame(gif);
        GIFDraw(gif, canvas.dc(), nullptr);
        GIFDestroy(gif);
    }
};

::testing::Environment* const g_warmUp = ::testing::AddGlobalTestEnvironment(new GdiplusWarmUp);

}  // namespace
