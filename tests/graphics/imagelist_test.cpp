// Bitmaps out of image lists, icons and icon files, greyed image-list drawing and the protected
// add.
#include "kvtest.h"
#include "kvkit_bitmap.h"
#include "pictures.h"
#include <string>

using namespace pictures;

namespace {

const COLORREF kMagenta = RGB(255, 0, 255);

class ImageLists : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        spot = kvtest::MakeBitmap(8, 8, Spot);
        masked = ImageList_Create(8, 8, ILC_COLOR24 | ILC_MASK, 2, 2);
        ASSERT_NE(nullptr, masked);
    }
    void TearDown() override {
        ImageList_Destroy(masked);
        EXPECT_EQ(0, Mismatches(spot, Spot)) << "caller's bitmap altered";
        EXPECT_TRUE(IsSelectable(spot));
        DeleteObject(spot);
        KvTest::TearDown();
    }
    HBITMAP spot = nullptr;
    HIMAGELIST masked = nullptr;
};

TEST_F(ImageLists, ProtectedAddKeepsTheCallersBitmapAndMasksByCorner) {
    EXPECT_EQ(0, ProtectedImageList_AddMasked(masked, spot, RGB(1, 1, 1)));
    EXPECT_EQ(0, ProtectedImageList_AddMaskedEx(masked, spot, 0, 0));
    EXPECT_EQ(2, ImageList_GetImageCount(masked));
    EXPECT_EQ(1, ProtectedImageList_AddMaskedEx(nullptr, spot, 0, 0));
    EXPECT_EQ(1, ProtectedImageList_AddMaskedEx(masked, nullptr, 0, 0));

    HBITMAP mask = reinterpret_cast<HBITMAP>(0x1234);
    HBITMAP image = ExtractImageListImageEx(masked, 1, &mask);
    ASSERT_NE(nullptr, image);
    ASSERT_NE(nullptr, mask);
    EXPECT_EQ(0, Mismatches(mask, [](int x, int y) { return InSpot(x, y) ? kBlack : kWhite; }));
    int width = 0, height = 0;
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(image, &width, &height);
    EXPECT_EQ(8, width);
    EXPECT_EQ(8, height);
    for (int y = 2; y < 6; ++y)
        for (int x = 2; x < 6; ++x) EXPECT_EQ(Spot(x, y), pixels[y * 8 + x]) << x << "," << y;
    DeleteObject(image);
    DeleteObject(mask);

    HBITMAP plain = ExtractImageListImage(masked, 0);
    ASSERT_NE(nullptr, plain);
    EXPECT_EQ(kRed, kvtest::BitmapPixel(plain, 2, 2));
    DeleteObject(plain);
}

TEST_F(ImageLists, ExtractRefusesIndicesOutsideTheList) {
    ProtectedImageList_AddMasked(masked, spot, 0);
    HBITMAP mask = reinterpret_cast<HBITMAP>(0x1234);
    EXPECT_EQ(nullptr, ExtractImageListImageEx(masked, 1, &mask));
    EXPECT_EQ(nullptr, mask);
    EXPECT_EQ(nullptr, ExtractImageListImageEx(masked, -1, nullptr));
    EXPECT_EQ(nullptr, ExtractImageListImageEx(nullptr, 0, nullptr));
}

TEST_F(ImageLists, GreyedImageIsDrawnThroughItsMask) {
    ProtectedImageList_AddMasked(masked, spot, 0);
    kvtest::Canvas canvas(16, 16, kPaper);
    EXPECT_EQ(0, ImageList_DrawGrayedImage(masked, 0, 0, 0, canvas.dc(), 3, 4));
    // Red and blue both have the grey 127; the background stays the canvas.
    EXPECT_EQ(0, CanvasMismatches(canvas, 3, 4, 8, 8, [](int x, int y) {
                  return InSpot(x, y) ? RGB(127, 127, 127) : kPaper;
              }));
    EXPECT_EQ(1, ImageList_DrawGrayedImage(masked, 1, 0, 0, canvas.dc(), 3, 4));
}

TEST_F(ImageLists, GreyedImageNeedsMasks) {
    HIMAGELIST unmasked = ImageList_Create(8, 8, ILC_COLOR24, 1, 1);
    ASSERT_EQ(0, ImageList_Add(unmasked, spot, nullptr));
    HBITMAP mask = reinterpret_cast<HBITMAP>(0x1234);
    HBITMAP image = ExtractImageListImageEx(unmasked, 0, &mask);
    EXPECT_NE(nullptr, image);
    EXPECT_EQ(nullptr, mask);
    DeleteObject(image);
    kvtest::Canvas canvas(16, 16, kPaper);
    EXPECT_EQ(1, ImageList_DrawGrayedImage(unmasked, 0, 0, 0, canvas.dc(), 0, 0));
    EXPECT_EQ(0, CanvasMismatches(canvas, 0, 0, 16, 16, [](int, int) { return kPaper; }));
    ImageList_Destroy(unmasked);
}

// A 16 x 16 icon: red with a blue pixel at (0, 0), its right half transparent.
HICON makeIcon() {
    HBITMAP colour = kvtest::MakeBitmap(16, 16, [](int x, int y) {
        return x >= 8 ? kBlack : x == 0 && y == 0 ? kBlue : kRed;
    });
    WORD rows[16];
    for (WORD& row : rows) row = 0xFF00;  // bytes 0x00, 0xFF: x >= 8 transparent
    HBITMAP mask = CreateBitmap(16, 16, 1, 1, rows);
    ICONINFO info = {TRUE, 0, 0, mask, colour};
    HICON icon = CreateIconIndirect(&info);
    DeleteObject(colour);
    DeleteObject(mask);
    return icon;
}

TEST_F(ImageLists, IconBitmapsSitOnMagentaWithAMagentaCorner) {
    HICON icon = makeIcon();
    ASSERT_NE(nullptr, icon);
    HBITMAP small = DuplicateIconBitmap(icon, 2);
    ASSERT_NE(nullptr, small);
    EXPECT_EQ(0, Mismatches(small, [](int x, int y) {
                  return (x == 0 && y == 0) || x >= 8 ? kMagenta : kRed;
              }));
    HBITMAP other = DuplicateIconBitmap(icon, 1);
    int width = 0, height = 0;
    std::vector<COLORREF> pixels = kvtest::BitmapPixels(other, &width, &height);
    EXPECT_EQ(24, width);
    EXPECT_EQ(24, height);
    EXPECT_EQ(kMagenta, pixels[0]);
    EXPECT_EQ(kRed, pixels[20 * 24 + 4]);
    EXPECT_EQ(kMagenta, pixels[3 * 24 + 20]);
    DeleteObject(small);
    DeleteObject(other);
    DestroyIcon(icon);
    EXPECT_EQ(nullptr, DuplicateIconBitmap(nullptr, 2));
}

// An icon file with a 16 x 16 and a 32 x 32 picture, each one solid colour, fully opaque.
void writeIconFile(const wchar_t* path, COLORREF small, COLORREF large) {
    std::string bytes(6 + 2 * 16, '\0');
    WORD header[3] = {0, 1, 2};
    memcpy(&bytes[0], header, 6);
    int sides[2] = {16, 32};
    COLORREF colours[2] = {small, large};
    for (int i = 0; i < 2; ++i) {
        int side = sides[i];
        std::string image(40 + side * side * 4 + side * 4, '\0');
        BITMAPINFOHEADER info = {};
        info.biSize = 40;
        info.biWidth = side;
        info.biHeight = 2 * side;
        info.biPlanes = 1;
        info.biBitCount = 32;
        memcpy(&image[0], &info, 40);
        for (int p = 0; p < side * side; ++p) {
            DWORD bgra = 0xFF000000 | GetRValue(colours[i]) << 16 | GetGValue(colours[i]) << 8 |
                         GetBValue(colours[i]);
            memcpy(&image[40 + p * 4], &bgra, 4);
        }
        BYTE entry[16] = {static_cast<BYTE>(side), static_cast<BYTE>(side), 0, 0, 1, 0, 32, 0};
        DWORD size = static_cast<DWORD>(image.size()), offset = static_cast<DWORD>(bytes.size());
        memcpy(entry + 8, &size, 4);
        memcpy(entry + 12, &offset, 4);
        memcpy(&bytes[6 + i * 16], entry, 16);
        bytes += image;
    }
    CreateDirectoryW(L"graphics_files", nullptr);
    HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
}

TEST_F(ImageLists, AssociatedBitmapTakesTheFilesOwnIcon) {
    const wchar_t* path = L"graphics_files\\twosizes.ico";
    writeIconFile(path, RGB(200, 30, 40), RGB(20, 150, 60));
    HBITMAP small = ExtractAssociatedBitmap(nullptr, path, 2);
    ASSERT_NE(nullptr, small);
    int width = 0;
    EXPECT_EQ(RGB(200, 30, 40), kvtest::BitmapPixels(small, &width)[8 * 16 + 8]);
    EXPECT_EQ(16, width);
    HBITMAP large = ExtractAssociatedBitmap(nullptr, path, 1);
    ASSERT_NE(nullptr, large);
    EXPECT_EQ(RGB(20, 150, 60), kvtest::BitmapPixels(large, &width)[16 * 32 + 16]);
    EXPECT_EQ(32, width);
    DeleteObject(small);
    DeleteObject(large);

    EXPECT_EQ(nullptr, ExtractAssociatedBitmap(nullptr, L"", 2));
    EXPECT_EQ(nullptr, ExtractAssociatedBitmap(nullptr, nullptr, 2));
    // A file without icons and no session to look up its association: nothing.
    HANDLE text = CreateFileW(L"graphics_files\\plain.kvx", GENERIC_WRITE, 0, nullptr,
                              CREATE_ALWAYS, 0, nullptr);
    CloseHandle(text);
    EXPECT_EQ(nullptr, ExtractAssociatedBitmap(nullptr, L"graphics_files\\plain.kvx", 2));
}

}  // namespace
