// The animation thread, driven through real windows that draw the picture in WM_PAINT (or do
// not): when it starts, what it invalidates, how it waits for each frame to be drawn and for the
// delays, pausing, and how destroying ends it.
#include "gif_test.h"

using namespace gif_test;
using kvtest::Canvas;

namespace {

class GifAnimationTest : public kvtest::KvTest {};

const DWORD kHidden = WS_OVERLAPPEDWINDOW;

// The frame a picture shows now, drawn off-screen at the window's picture rectangle. Drawing it
// lets the animation go on, as a paint would.
int drawByHand(void* gif, const PictureWindow& window) {
    Canvas canvas(120, 80);
    EXPECT_EQ(0, GIFDraw(gif, canvas.dc(), nullptr));
    return FrameOf(canvas.pixel(window.pictureRect().left + 1, window.pictureRect().top + 1));
}

}  // namespace

// Starting a still picture answers 1 and changes nothing: no thread, no handle, no paint.
TEST_F(GifAnimationTest, StillPictureNeverStartsAThread) {
    void* gif = Load(kStill);
    ASSERT_NE(nullptr, gif);
    PictureWindow window(gif);
    window.setFrameColours(&kStillYellow, 1);
    int threads = ProcessThreads();
    DWORD handles = kvtest::KernelHandles();
    EXPECT_EQ(1, window.start());
    EXPECT_EQ(1, window.start());
    EXPECT_EQ(0, GIFPauseAnimation(gif, true));
    kvtest::PumpFor(300);
    EXPECT_EQ(threads, ProcessThreads());
    EXPECT_EQ(handles, kvtest::KernelHandles());
    EXPECT_TRUE(window.paints().empty()) << "nothing invalidated";
    EXPECT_EQ(0, GIFPauseAnimation(gif, false));

    InvalidateRect(window, nullptr, FALSE);
    UpdateWindow(window);
    EXPECT_EQ(std::vector<int>{0}, window.framesDrawn()) << "drawn at the rectangle by the host";
    GIFDestroy(gif);
}

// A hidden window never paints, so the animation stays on the frame it selected: each frame
// drawn by hand, however late, is the one after the previous. Shown, the window paints every
// frame in turn, and after the last comes frame 0 again, whatever loop count the GIF asks for.
TEST_F(GifAnimationTest, HiddenWindowHoldsTheAnimationAndShownItPlaysInOrderForEver) {
    void* gif = Load(kFrames);
    ASSERT_NE(nullptr, gif);
    PictureWindow window(gif, kHidden);
    int threads = ProcessThreads();
    EXPECT_EQ(1, window.start());
    EXPECT_EQ(threads + 1, ProcessThreads());

    // A free-running cycle takes 0.7 s: a second of waiting passes a whole one.
    std::vector<int> byHand;
    for (int i = 0; i < 3; ++i) {
        kvtest::PumpFor(1000);
        byHand.push_back(drawByHand(gif, window));
    }
    EXPECT_EQ((std::vector<int>{0, 1, 2}), byHand);
    EXPECT_TRUE(window.paints().empty());

    ShowWindow(window, SW_SHOWNOACTIVATE);
    EXPECT_TRUE(PumpUntil([&] { return Wraps(window.framesDrawn(), kFrameCount) >= 2; }));
    const std::vector<int>& shown = window.framesDrawn();
    ASSERT_FALSE(shown.empty());
    EXPECT_TRUE(shown[0] == 2 || shown[0] == 3) << "goes on from the frame it held";
    EXPECT_TRUE(StepsByOne(shown, kFrameCount)) << testing::PrintToString(shown);
    GIFDestroy(gif);
}

// A window that paints without drawing the picture gets one paint per frame, of exactly (left,
// top, image width, image height) of the picture's rectangle, and no further frame until the
// picture is drawn.
TEST_F(GifAnimationTest, EachFrameInvalidatesItsExactAreaAndWaitsToBeDrawn) {
    void* gif = Load(kBusy);  // 16 x 16, 0.1 s per frame
    ASSERT_NE(nullptr, gif);
    PictureWindow window(gif);
    window.setDrawing(false);
    EXPECT_EQ(1, window.start());
    const RECT expected = {4, 6, 16, 16};
    for (size_t paints = 1; paints <= 4; ++paints) {
        ASSERT_TRUE(PumpUntil([&] { return window.paints().size() >= paints; }));
        kvtest::PumpFor(800);
        EXPECT_EQ(paints, window.paints().size()) << "held until drawn";
        EXPECT_EQ(expected, window.paints().back());
        Canvas canvas(60, 60);
        EXPECT_EQ(0, GIFDraw(gif, canvas.dc(), nullptr));
    }
    GIFDestroy(gif);
}

// With delays 0 and 30 s, frame 0 stays up for frame 1's 30 s, not for its own 0.
TEST_F(GifAnimationTest, AFrameStaysUpForTheDelayOfTheFrameShownAfterIt) {
    void* gif = Load(kSlow);
    ASSERT_NE(nullptr, gif);
    PictureWindow window(gif);
    window.setFrameColours(kSlowColours, 2);
    EXPECT_EQ(1, window.start());
    ASSERT_TRUE(PumpUntil([&] { return !window.framesDrawn().empty(); }));
    kvtest::PumpFor(1000);
    for (int frame : window.framesDrawn()) EXPECT_EQ(0, frame);
    GIFDestroy(gif);
}

// Pausing twice and resuming once resumes; while paused no frame comes.
TEST_F(GifAnimationTest, PausingTwiceAndResumingOnceResumes) {
    void* gif = Load(kBusy);
    ASSERT_NE(nullptr, gif);
    PictureWindow window(gif);
    EXPECT_EQ(1, window.start());
    ASSERT_TRUE(PumpUntil([&] { return window.paints().size() >= 3; }));
    EXPECT_EQ(0, GIFPauseAnimation(gif, true));
    EXPECT_EQ(0, GIFPauseAnimation(gif, true));
    kvtest::PumpFor(800);  // a step under way when pausing still completes
    size_t paused = window.paints().size();
    kvtest::PumpFor(1000);
    EXPECT_EQ(paused, window.paints().size()) << "ten frames' worth of delays went by";
    EXPECT_EQ(0, GIFPauseAnimation(gif, false));
    EXPECT_TRUE(PumpUntil([&] { return window.paints().size() >= paused + 3; }));
    GIFDestroy(gif);
}

// Destroying ends the thread at once wherever it waits (for a window that never draws, while
// paused, inside a 30 s delay) and closes every handle the picture had: thread, events, mutex.
TEST_F(GifAnimationTest, DestroyEndsTheThreadPromptlyWhereverItWaitsAndLeavesNoHandle) {
    enum State { kAwaitingDraw, kPaused, kInDelay };
    for (State state : {kAwaitingDraw, kPaused, kInDelay}) {
        SCOPED_TRACE(state);
        DWORD handles = kvtest::KernelHandles();
        int threads = ProcessThreads();
        void* gif = Load(state == kInDelay ? kSlow : kBusy);
        ASSERT_NE(nullptr, gif);
        {
            PictureWindow window(gif, state == kAwaitingDraw ? kHidden : WS_OVERLAPPEDWINDOW | WS_VISIBLE);
            EXPECT_EQ(1, window.start());
            EXPECT_EQ(threads + 1, ProcessThreads());
            EXPECT_LT(handles, kvtest::KernelHandles());
            if (state == kPaused) {
                ASSERT_TRUE(PumpUntil([&] { return window.paints().size() >= 2; }));
                GIFPauseAnimation(gif, true);
            } else if (state == kInDelay) {
                ASSERT_TRUE(PumpUntil([&] { return !window.paints().empty(); }));
            }
            kvtest::PumpFor(300);
            DWORD start = GetTickCount();
            GIFDestroy(gif);
            EXPECT_LT(GetTickCount() - start, 5000u);
            EXPECT_EQ(threads, ProcessThreads());
        }
        EXPECT_EQ(handles, kvtest::KernelHandles());
    }
}
