// Helpers of the GIF tests: the sample pictures, frames told apart by their colour, a window that
// shows an animated picture as a host does, and counts of the process's threads.
#pragma once
#include <ostream>
#include <vector>
#include "kvtest.h"
#include "kvkit_gif.h"

inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

namespace gif_test {

// The sample pictures (written by tools/make_gifs.py).
const wchar_t kStill[] = L"GIF_STILL";        // 24 x 16, one frame
const wchar_t kFrames[] = L"GIF_FRAMES";      // 32 x 24, four frames, delays 20, 0, 40, 10
const wchar_t kBusy[] = L"GIF_BUSY";          // 16 x 16, eight frames of 10
const wchar_t kSlow[] = L"GIF_SLOW";          // 16 x 16, two frames, delays 0 and 3000
const wchar_t kTruncated[] = L"GIF_TRUNCATED";
const wchar_t kCorrupt[] = L"GIF_CORRUPT";

// The still picture: yellow, a blue square at (4, 4)-(12, 12), a red band from row 13 down.
const COLORREF kStillYellow = RGB(255, 220, 0);
inline COLORREF StillPixel(int x, int y) {
    if (y >= 13) return RGB(200, 30, 30);
    return x >= 4 && x < 12 && y >= 4 && y < 12 ? RGB(30, 60, 170) : kStillYellow;
}
// Each frame of GIF_FRAMES is filled with its own colour and has a white 6 x 6 square at
// (2 + 7 * frame, 9); each frame of GIF_SLOW is filled with its own colour.
const COLORREF kFrameColours[] = {RGB(220, 40, 40), RGB(40, 170, 60), RGB(40, 80, 220),
                                  RGB(240, 150, 20)};
const int kFrameCount = 4;
inline COLORREF FramePixel(int frame, int x, int y) {
    int left = 2 + 7 * frame;
    return x >= left && x < left + 6 && y >= 9 && y < 15 ? RGB(255, 255, 255) : kFrameColours[frame];
}
const COLORREF kSlowColours[] = {RGB(120, 40, 160), RGB(20, 150, 150)};

// Pixels of the canvas area at (left, top) that differ from colourAt(x, y), x and y relative to
// the area.
inline int Mismatches(const kvtest::Canvas& canvas, int left, int top, SIZE size,
                      const std::function<COLORREF(int, int)>& colourAt) {
    int count = 0;
    for (int y = 0; y < size.cy; ++y)
        for (int x = 0; x < size.cx; ++x) count += canvas.pixel(left + x, top + y) != colourAt(x, y);
    return count;
}

// Generous bound for anything that waits on the animation thread.
const DWORD kPatience = 10000;

inline void* Load(const wchar_t* name) { return GIFLoad(nullptr, name, kvtest::ResourceModule()); }

// Index of `colour` in the first `count` entries of `colours`, or -1.
inline int FrameOf(COLORREF colour, const COLORREF* colours = kFrameColours, int count = kFrameCount) {
    for (int i = 0; i < count; ++i)
        if (colours[i] == colour) return i;
    return -1;
}

// Threads of this process, as the system lists them.
int ProcessThreads();

// Pumps messages until `done` answers true or `timeout` ms have passed; the last answer.
bool PumpUntil(const std::function<bool()>& done, DWORD timeout = kPatience);

// A top-level window that shows a picture the way a host does: on WM_PAINT it draws the picture
// with GIFDraw into an off-screen canvas and copies that to the screen. It records each paint's
// rectangle and, when it draws, the frame it drew (told by the colour at the picture's (1, 1)).
// With drawing off it paints its background only, like a host whose picture is covered.
class PictureWindow {
public:
    PictureWindow(void* gif, DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE);

    HWND handle() const { return host_.handle(); }
    operator HWND() const { return host_.handle(); }
    void setDrawing(bool drawing) { drawing_ = drawing; }
    void setFrameColours(const COLORREF* colours, int count) {
        colours_ = colours;
        colourCount_ = count;
    }
    // Where the animation is started; the picture is drawn at its top left corner.
    RECT pictureRect() const { return {4, 6, 60, 50}; }
    int start();

    const std::vector<RECT>& paints() const { return paints_; }
    const std::vector<int>& framesDrawn() const { return frames_; }

private:
    bool onPaint();

    void* gif_;
    kvtest::HostWindow host_;
    kvtest::Canvas canvas_;
    bool drawing_ = true;
    const COLORREF* colours_ = kFrameColours;
    int colourCount_ = kFrameCount;
    std::vector<RECT> paints_;
    std::vector<int> frames_;
};

// True when each entry is the one before it or its successor modulo `count`.
bool StepsByOne(const std::vector<int>& frames, int count);
// How many times the sequence goes from the last frame to frame 0.
int Wraps(const std::vector<int>& frames, int count);

}  // namespace gif_test
