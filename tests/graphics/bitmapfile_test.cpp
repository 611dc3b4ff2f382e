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
    const int width = 5, height = 3, stride = 16;
    DWORD offset = 14 + headerSize;
    std::string bytes(offset + stride * height, '\0');
    BITMAPFILEHEADER file = {0x4D42, static_cast<DWORD>(bytes.size()), 0, 0, offset};
    memcpy(&bytes[0], &file, 14);
    BITMAPINFOHEADER info = {headerSize, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    memcpy(&bytes[14], &info, sizeof(info));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            COLORREF c = filePixel(x, y);
            char* p = &bytes[offset + (height - 1 - y) * stride + x * 3];
            p[0] = static_cast<char>(GetBValue(c));
            p[1] = static_cast<char>(GetGValue(c));
            p[2] = static_cast<char>(GetRValue(c));
        }
    if (keepBytes >= 0) bytes.resize(keepBytes);
    return bytes;
}

std::wstring pathOf(const wchar_t* name) { return std::wstring(L"graphics_files\\") + name; }

void writeFile(const wchar_t* name, const std::string& bytes) {
    CreateDirectoryW(L"graphics_files", nullptr);
    HANDLE file = CreateFileW(pathOf(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, file);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
}

// The block read for `name`, compared with `expected` and a zero after it; freed.
void expectRead(const wchar_t* name, const std::string& expected) {
    BYTE* block = nullptr;
    BITMAPINFOHEADER* header = Kx1ReadBitmap(pathOf(name).c_str(), &block, nullptr);
    ASSERT_NE(nullptr, header) << "refused " << testing::PrintToString(std::wstring(name));
    EXPECT_EQ(block + 14, reinterpret_cast<BYTE*>(header));
    EXPECT_EQ(0, memcmp(block, expected.data(), expected.size()));
    EXPECT_EQ(0, block[expected.size()]);
    FreeMemory(block);
}

void expectRefused(const wchar_t* path) {
    BYTE* block = reinterpret_cast<BYTE*>(0x1234);
    EXPECT_EQ(nullptr, Kx1ReadBitmap(path, &block, nullptr));
    EXPECT_EQ(reinterpret_cast<BYTE*>(0x1234), block) << "block written on failure";
}

class BitmapFile : public kvtest::KvTest {};

TEST_F(BitmapFile, ReadsTheWholeFileAndMakesTheBitmap) {
    writeFile(L"good.bmp", bitmapFile());
    expectRead(L"good.bmp", bitmapFile());
    BYTE* block = nullptr;
    ASSERT_NE(nullptr, Kx1ReadBitmap(pathOf(L"good.bmp").c_str(), &block, nullptr));
    HBITMAP bitmap = Kx1MakeBitmap(block);
    EXPECT_EQ(0, Mismatches(bitmap, filePixel));
    DeleteObject(bitmap);
    FreeMemory(block);
    // Asked for a bitmap, it loads one and reads no block; the suffix is appended here too.
    bitmap = reinterpret_cast<HBITMAP>(0x1234);
    block = nullptr;
    EXPECT_EQ(nullptr, Kx1ReadBitmap(pathOf(L"good").c_str(), &block, &bitmap));
    EXPECT_EQ(nullptr, block);
    EXPECT_EQ(0, Mismatches(bitmap, filePixel));
    DeleteObject(bitmap);
    EXPECT_EQ(nullptr, Kx1ReadBitmap(pathOf(L"absent").c_str(), nullptr, &bitmap));
    EXPECT_EQ(nullptr, bitmap);
}

TEST_F(BitmapFile, AppendsBmpWithoutDotOrAfterALongSuffix) {
    std::string bytes = bitmapFile(), decoy = bitmapFile(40, 60);
    writeFile(L"nodot.bmp", bytes);
    expectRead(L"nodot", bytes);
    // ".abcd" is five characters: ".bmp" is appended, so the decoy without it is not read.
    writeFile(L"pic.abcd", decoy);
    writeFile(L"pic.abcd.bmp", bytes);
    expectRead(L"pic.abcd", bytes);
    // ".dat" is four characters: the path is used as given.
    writeFile(L"pic.dat", bytes);
    writeFile(L"pic.dat.bmp", decoy);
    expectRead(L"pic.dat", bytes);
}

TEST_F(BitmapFile, RefusalsAndAllocationFailuresFreeEverything) {
    writeFile(L"short.bmp", bitmapFile(40, 30));
    writeFile(L"fileheaderonly.bmp", bitmapFile(40, 14));
    writeFile(L"v4header.bmp", bitmapFile(108));
    for (const wchar_t* name : {L"short.bmp", L"fileheaderonly.bmp", L"v4header.bmp", L"missing"})
        expectRefused(pathOf(name).c_str());
    expectRefused(L"");
    expectRefused(nullptr);
    writeFile(L"good.bmp", bitmapFile());
    for (int nth : {1, 2}) {  // the copy of the path, then the file block
        KvText_FailAllocation(nth);
        expectRefused(pathOf(L"good.bmp").c_str());
    }
    KvText_FailAllocation(0);
}

}  // namespace
