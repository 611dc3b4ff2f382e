// Loading GIF resources, drawing and sizing them, stepping frames by hand, and the results for
// missing, broken and null input.
#include "gif_test.h"

using namespace gif_test;
using kvtest::Canvas;

namespace {

class GifLoadTest : public kvtest::KvTest {};

const COLORREF kWhite = RGB(255, 255, 255);
const SIZE kStillSize = {24, 16}, kFramesSize = {32, 24};

}  // namespace

// A still picture is read from the module given, or from the session's resource module when
// none is. It draws at its own size at (0, 0), until an animation's rectangle places it; the
// point argument is not used.
TEST_F(GifLoadTest, StillPictureLoadsDrawsAndReportsItsSize) {
    KVSESSION session = {};
    session.size = sizeof(session);
    session.resourceModule = kvtest::ResourceModule();
    void* fromModule = Load(kStill);
    void* fromSession = GIFLoad(&session, kStill, nullptr);
    ASSERT_NE(nullptr, fromModule);
    ASSERT_NE(nullptr, fromSession);
    EXPECT_NE(fromModule, fromSession) << "each load makes a picture of its own";

    SIZE size = {};
    EXPECT_EQ(0, GIFGetSize(fromSession, &size));
    EXPECT_EQ(24, size.cx);
    EXPECT_EQ(16, size.cy);

    Canvas canvas(80, 60);
    POINT at = {40, 40};
    EXPECT_EQ(0, GIFDraw(fromSession, canvas.dc(), &at));
    EXPECT_EQ(0, Mismatches(canvas, 0, 0, kStillSize, StillPixel));
    EXPECT_EQ(kWhite, canvas.pixel(24, 0));
    EXPECT_EQ(kWhite, canvas.pixel(0, 16));

    RECT placed = {30, 20, 70, 50};
    EXPECT_EQ(1, GIFStartAnimation(fromModule, nullptr, placed));
    canvas.fill(kWhite);
    EXPECT_EQ(0, GIFDraw(fromModule, canvas.dc(), &at));
    EXPECT_EQ(0, Mismatches(canvas, 30, 20, kStillSize, StillPixel));
    EXPECT_EQ(kWhite, canvas.pixel(29, 20));
    EXPECT_EQ(kWhite, canvas.pixel(54, 20));

    GIFDestroy(fromModule);
    GIFDestroy(fromSession);
}

// Each step selects the next frame, wraps from the last to frame 0, and answers the delay of the
// frame that will be shown after the one it selected (delays 20, 0, 40, 10 hundredths). A still
// picture steps onto its only frame, without delay.
TEST_F(GifLoadTest, NextFrameSelectsInTurnAndAnswersTheDelayOfTheFrameShownNext) {
    void* gif = Load(kFrames);
    void* still = Load(kStill);
    ASSERT_NE(nullptr, gif);
    ASSERT_NE(nullptr, still);
    SIZE size = {};
    EXPECT_EQ(0, GIFGetSize(gif, &size));
    EXPECT_EQ(32, size.cx);
    EXPECT_EQ(24, size.cy);

    Canvas canvas(40, 30);
    const int kDelays[] = {0, 400, 100, 200};  // after selecting frame 0, 1, 2, 3
    for (int step = 0; step < 9; ++step) {
        SCOPED_TRACE(step);
        int frame = step % kFrameCount;
        EXPECT_EQ(kDelays[frame], GIFNextFrame(gif));
        EXPECT_EQ(0, GIFDraw(gif, canvas.dc(), nullptr));
        EXPECT_EQ(0, Mismatches(canvas, 0, 0, kFramesSize,
                                [frame](int x, int y) { return FramePixel(frame, x, y); }));
    }

    EXPECT_EQ(0, GIFNextFrame(still));
    EXPECT_EQ(0, GIFNextFrame(still));
    EXPECT_EQ(0, GIFDraw(still, canvas.dc(), nullptr));
    EXPECT_EQ(0, Mismatches(canvas, 0, 0, kStillSize, StillPixel));
    GIFDestroy(still);
    GIFDestroy(gif);
}

// Nothing to load gives null, and nothing is left behind: no module and no session, a name
// that is not there (string or number), a truncated picture, a corrupt one. Loading from a file
// is not offered at all.
TEST_F(GifLoadTest, MissingOrBrokenPicturesGiveNullAndLeaveNothingBehind) {
    KVSESSION noModule = {};
    noModule.size = sizeof(noModule);
    EXPECT_EQ(nullptr, GIFLoad(nullptr, kStill, nullptr));
    EXPECT_EQ(nullptr, GIFLoad(&noModule, kStill, nullptr)) << "the program has no GIF resources";
    EXPECT_EQ(nullptr, Load(L"GIF_NOSUCH"));
    EXPECT_EQ(nullptr, Load(MAKEINTRESOURCEW(4711)));
    EXPECT_EQ(nullptr, Load(kTruncated));
    EXPECT_EQ(nullptr, Load(kCorrupt));
    EXPECT_EQ(nullptr, GIFLoad(nullptr, kStill, kvtest::LanguageModule())) << "not in that module";

    wchar_t folder[MAX_PATH], path[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"gif", 0, path);
    HRSRC resource = FindResourceW(kvtest::ResourceModule(), kFrames, L"GIF");
    ASSERT_NE(nullptr, resource);
    HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, LockResource(LoadResource(kvtest::ResourceModule(), resource)),
              SizeofResource(kvtest::ResourceModule(), resource), &written, nullptr);
    CloseHandle(file);
    EXPECT_EQ(nullptr, GIFLoadFromFile(path, 0)) << "a real GIF file";
    EXPECT_EQ(nullptr, GIFLoadFromFile(path, 1));
    EXPECT_EQ(nullptr, GIFLoadFromFile(const_cast<wchar_t*>(L"C:\\no\\such.gif"), 0));
    EXPECT_EQ(nullptr, GIFLoadFromFile(nullptr, 0));
    DeleteFileW(path);
}

// Every call takes a null handle; a live handle takes a null size, a null DC and null or
// destroyed windows.
TEST_F(GifLoadTest, NullAndDeadArgumentsGiveTheFailureResults) {
    Canvas canvas(40, 40);
    SIZE size = {7, 7};
    RECT rc = {0, 0, 10, 10};
    EXPECT_EQ(1, GIFDraw(nullptr, canvas.dc(), nullptr));
    EXPECT_EQ(1, GIFGetSize(nullptr, &size));
    EXPECT_EQ(7, size.cx);
    EXPECT_EQ(1, GIFStartAnimation(nullptr, nullptr, rc));
    EXPECT_EQ(1, GIFPauseAnimation(nullptr, true));
    EXPECT_EQ(1, GIFPauseAnimation(nullptr, false));
    EXPECT_EQ(-1, GIFNextFrame(nullptr));
    GIFDestroy(nullptr);

    void* gif = Load(kFrames);
    ASSERT_NE(nullptr, gif);
    EXPECT_EQ(1, GIFGetSize(gif, nullptr));
    EXPECT_EQ(1, GIFDraw(gif, nullptr, nullptr)) << "GDI+ cannot draw on no DC";
    HWND dead = CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr,
                                GetModuleHandleW(nullptr), nullptr);
    DestroyWindow(dead);
    EXPECT_EQ(1, GIFStartAnimation(gif, dead, rc)) << "animates for a window that is gone";
    EXPECT_EQ(0, GIFDraw(gif, canvas.dc(), nullptr));
    EXPECT_EQ(1, GIFStartAnimation(gif, nullptr, rc)) << "the thread runs already";
    EXPECT_EQ(0, GIFDraw(gif, canvas.dc(), nullptr));
    kvtest::PumpFor(50);
    GIFDestroy(gif);
}

TEST_F(GifLoadTest, ExportsResolveByTheirPlainNames) {
    HMODULE kvkit = GetModuleHandleW(L"kvkit.dll");
    for (const char* name : {"GIFLoad", "GIFLoadFromFile", "GIFDraw", "GIFGetSize",
                             "GIFStartAnimation", "GIFPauseAnimation", "GIFNextFrame", "GIFDestroy"})
        EXPECT_NE(nullptr, reinterpret_cast<void*>(GetProcAddress(kvkit, name))) << name;
}
