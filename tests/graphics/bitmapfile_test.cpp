// Reading ".bmp" files written by the test itself: the suffix rule, refusals, allocation
// failures, and the device-dependent bitmap made from a file image.
#include "kvtest.h"
#include "kvkit_draw.h"
#include "pictures.h"
#include <string>

using namespace pictures;

namespace {

const wchar_t kFolder[] = L"graphics_files";

COLORREF filePixel(int x, int y) { return RGB(30 * x + 5, 90 * y + 7, 200 - 20 * x); }

// A 24-bit bottom-up file of width x height with the given information-header size (the header
// beyond the first 40 bytes is zero), cut to `keepBytes` when that is not negative.
std::string bitmapFile(int width, int height, DWORD headerSize = 40, int keepBytes = -1) {
    int stride = (width * 3 + 3) / 4 * 4;
    DWORD offset = 14 + headerSize;
    std::string bytes(offset + stride * height, '\0');
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfSize = static_cast<DWORD>(bytes.size());
    file.bfOffBits = offset;
    memcpy(&bytes[0], &file, 14);
    BITMAPINFOHEADER info = {};
    info.biSize = headerSize;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = 24;
    info.biCompression = BI_RGB;
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

std::wstring pathOf(const wchar_t* name) { return std::wstring(kFolder) + L"\\" + name; }

void writeFile(const wchar_t* name, const std::string& bytes) {
    CreateDirectoryW(kFolder, nullptr);
    HANDLE file = CreateFileW(pathOf(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, file);
    DWORD written = 0;
    WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(file);
}

class BitmapFile : public kvtest::KvTest {
protected:
    // Reads `name` and checks that the block holds exactly `expected` and a zero after it.
    void expectRead(const wchar_t* name, const std::string& expected) {
        BYTE* block = nullptr;
        BITMAPINFOHEADER* header = Kx1ReadBitmap(pathOf(name).c_str(), &block, nullptr);
        ASSERT_NE(nullptr, header) << "refused " << testing::PrintToString(std::wstring(name));
        ASSERT_NE(nullptr, block);
        EXPECT_EQ(block + 14, reinterpret_cast<BYTE*>(header));
        EXPECT_EQ(0, memcmp(block, expected.data(), expected.size()));
        EXPECT_EQ(0, block[expected.size()]);
        FreeMemory(block);
    }
    void expectRefused(const wchar_t* path) {
        BYTE* sentinel = reinterpret_cast<BYTE*>(0x1234);
        BYTE* block = sentinel;
        EXPECT_EQ(nullptr, Kx1ReadBitmap(path, &block, nullptr));
        EXPECT_EQ(sentinel, block) << "block written on failure";
    }
};

TEST_F(BitmapFile, ReadsTheWholeFileAndMakesTheBitmap) {
    std::string bytes = bitmapFile(5, 3);
    writeFile(L"good.bmp", bytes);
    BYTE* block = nullptr;
    BITMAPINFOHEADER* header = Kx1ReadBitmap(pathOf(L"good.bmp").c_str(), &block, nullptr);
    ASSERT_NE(nullptr, header);
    EXPECT_EQ(5, header->biWidth);
    EXPECT_EQ(3, header->biHeight);
    HBITMAP bitmap = Kx1MakeBitmap(block);
    ASSERT_NE(nullptr, bitmap);
    EXPECT_EQ(0, Mismatches(bitmap, filePixel));
    DeleteObject(bitmap);
    FreeMemory(block);
    EXPECT_EQ(nullptr, Kx1MakeBitmap(nullptr));
}

TEST_F(BitmapFile, AppendsBmpWithoutDotOrAfterALongSuffix) {
    std::string bytes = bitmapFile(2, 2);
    writeFile(L"nodot.bmp", bytes);
    expectRead(L"nodot", bytes);
    // ".abcd" is five characters: ".bmp" is appended, so the decoy without it is not read.
    writeFile(L"pic.abcd", "not a bitmap at all, but long enough to pass the header reads.....");
    writeFile(L"pic.abcd.bmp", bytes);
    expectRead(L"pic.abcd", bytes);
    // ".dat" is four characters: the path is used as given.
    writeFile(L"pic.dat", bytes);
    writeFile(L"pic.dat.bmp", "decoy");
    expectRead(L"pic.dat", bytes);
}

TEST_F(BitmapFile, RefusesShortFilesOtherHeadersAndMissingPaths) {
    writeFile(L"short.bmp", bitmapFile(4, 4, 40, 30));
    expectRefused(pathOf(L"short.bmp").c_str());
    writeFile(L"v4header.bmp", bitmapFile(4, 4, 108));
    expectRefused(pathOf(L"v4header.bmp").c_str());
    writeFile(L"fileheaderonly.bmp", bitmapFile(4, 4, 40, 14));
    expectRefused(pathOf(L"fileheaderonly.bmp").c_str());
    expectRefused(pathOf(L"missing.bmp").c_str());
    expectRefused(L"");
    expectRefused(nullptr);
}

TEST_F(BitmapFile, FreesEverythingWhenMemoryRunsOut) {
    writeFile(L"good.bmp", bitmapFile(5, 3));
    KvText_FailAllocation(1);  // the copy of the path
    expectRefused(pathOf(L"good.bmp").c_str());
    KvText_FailAllocation(2);  // the file block
    expectRefused(pathOf(L"good.bmp").c_str());
    KvText_FailAllocation(0);
}

TEST_F(BitmapFile, LoadsABitmapWhenAskedForOne) {
    writeFile(L"loaded.bmp", bitmapFile(3, 4));
    HBITMAP bitmap = reinterpret_cast<HBITMAP>(0x1234);
    BYTE* block = nullptr;
    EXPECT_EQ(nullptr, Kx1ReadBitmap(pathOf(L"loaded").c_str(), &block, &bitmap));
    EXPECT_EQ(nullptr, block);
    ASSERT_NE(nullptr, bitmap);
    EXPECT_EQ(0, Mismatches(bitmap, filePixel));
    DeleteObject(bitmap);
    EXPECT_EQ(nullptr, Kx1ReadBitmap(pathOf(L"absent").c_str(), nullptr, &bitmap));
    EXPECT_EQ(nullptr, bitmap);
}

}  // namespace
