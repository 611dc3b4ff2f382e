// Reading ".bmp" files written by the test itself: the suffix rule, refusals, allocation
// failures, and the bitmaps made from a file.
#include "kvtest.h"
#include "kvkit_draw.h"
#include "pictures.h"
#include <string>

using namespace pictures;

namespace {

COLORREF filePixel(int x, int y) { return RGB(30 * x + 5, 90 * y + 7, 200 - 20 * x); }

// A 24-bit bottom-up file of 5 x 3 pixels with the given information-header size (zero beyond
// the first 40 bytes), cut to `keepBytes` when that is not negative.
std::string bitmapFile(DWORD headerSize = 40, int keepBytes = -1) {
    DWORD offset = 14 + headerSize;
    std::string bytes(offset + 16 * 3, '\0');  // rows of 15 bytes padded to 16
    BITMAPFILEHEADER file = {0x4D42, static_cast<DWORD>(bytes.size()), 0, 0, offset};
    BITMAPINFOHEADER info = {headerSize, 5, 3, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    memcpy(&bytes[0], &file, 14);
    memcpy(&bytes[14], &info, sizeof(info));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) {
            DWORD c = filePixel(x, y), bgr = GetBValue(c) | GetGValue(c) << 8 | GetRValue(c) << 16;
            memcpy(&bytes[offset + (2 - y) * 16 + x * 3], &bgr, 3);
        }
    if (keepBytes >= 0) bytes.resize(keepBytes);
    return bytes;
}

std::wstring pathOf(const wchar_t* name) { return std::wstring(L"graphics_files\\") + name; }

void writeFile(const wchar_t* name, const std::string& bytes) {
    CreateDirectoryW(L"graphics_files", nullptr);
    FILE* file = _wfopen(pathOf(name).c_str(), L"wb");
    ASSERT_NE(nullptr, file);
    fwrite(bytes.data(), 1, bytes.size(), file);
    fclose(file);
}

// Reads `name`, checks that the block holds `expected` and a zero after it, and frees it.
void expectRead(const wchar_t* name, const std::string& expected, bool makeBitmap = false) {
    BYTE* block = nullptr;
    BITMAPINFOHEADER* header = Kx1ReadBitmap(pathOf(name).c_str(), &block, nullptr);
    ASSERT_NE(nullptr, header) << "refused " << testing::PrintToString(std::wstring(name));
    EXPECT_EQ(block + 14, reinterpret_cast<BYTE*>(header));
    EXPECT_EQ(0, memcmp(block, expected.data(), expected.size()));
    EXPECT_EQ(0, block[expected.size()]);
    if (makeBitmap) {
        HBITMAP bitmap = Kx1MakeBitmap(block);
        EXPECT_EQ(0, Mismatches(bitmap, filePixel));
        DeleteObject(bitmap);
    }
    FreeMemory(block);
}

void expectRefused(const wchar_t* path) {
    BYTE* block = reinterpret_cast<BYTE*>(0x1234);
    EXPECT_EQ(nullptr, Kx1ReadBitmap(path, &block, nullptr));
    EXPECT_EQ(reinterpret_cast<BYTE*>(0x1234), block) << "block written on failure";
}

using BitmapFile = kvtest::KvTest;

TEST_F(BitmapFile, ReadsTheWholeFileOrLoadsABitmap) {
    std::string bytes = bitmapFile(), decoy = bitmapFile(40, 60);
    writeFile(L"good.bmp", bytes);
    expectRead(L"good.bmp", bytes, true);
    // Asked for a bitmap, it loads one and reads no block; the suffix is appended here too.
    HBITMAP bitmap = nullptr;
    EXPECT_EQ(nullptr, Kx1ReadBitmap(pathOf(L"good").c_str(), nullptr, &bitmap));
    EXPECT_EQ(0, Mismatches(bitmap, filePixel));
    DeleteObject(bitmap);
    EXPECT_EQ(nullptr, Kx1ReadBitmap(pathOf(L"absent").c_str(), nullptr, &bitmap));
    EXPECT_EQ(nullptr, bitmap);

    // No dot, or five characters from the last dot on: ".bmp" is appended, so the decoy
    // without it is not read. Four characters (".dat"): the path is used as given.
    expectRead(L"good", bytes);
    writeFile(L"pic.abcd", decoy);
    writeFile(L"pic.abcd.bmp", bytes);
    expectRead(L"pic.abcd", bytes);
    writeFile(L"pic.dat", bytes);
    writeFile(L"pic.dat.bmp", decoy);
    expectRead(L"pic.dat", bytes);
}

TEST_F(BitmapFile, RefusalsAndAllocationFailuresFreeEverything) {
    writeFile(L"short.bmp", bitmapFile(40, 30));
    writeFile(L"fileheaderonly.bmp", bitmapFile(40, 14));
    writeFile(L"v4header.bmp", bitmapFile(108));
    writeFile(L"good.bmp", bitmapFile());
    for (const wchar_t* name : {L"short.bmp", L"fileheaderonly.bmp", L"v4header.bmp", L"missing"})
        expectRefused(pathOf(name).c_str());
    expectRefused(L"");
    expectRefused(nullptr);
    for (int nth : {1, 2}) {  // the copy of the path, then the file block
        KvText_FailAllocation(nth);
        expectRefused(pathOf(L"good.bmp").c_str());
    }
}

}  // namespace
