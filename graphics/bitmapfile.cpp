// Reading ".bmp" files into memory and turning a file image into a device-dependent bitmap.
#include "include/kvkit_draw.h"
#include "kvtext.h"

namespace {

const int kFileHeaderSize = 14;   // BITMAPFILEHEADER
const int kInfoHeaderSize = 40;   // BITMAPINFOHEADER, the only version accepted
const int kBitsOffsetField = 10;  // bfOffBits inside the file header
const int kSuffixRoom = 5;        // room for ".bmp" and the terminator

// A copy of the path in a new kvtext block, with ".bmp" appended when the path has no '.' or
// the text from its last '.' on is five characters or longer.
wchar_t* bitmapPath(const wchar_t* path) {
    int length = lstrlenW(path);
    auto* copy = static_cast<wchar_t*>(GetMemory((length + kSuffixRoom + 1) * sizeof(wchar_t)));
    if (!copy) return nullptr;
    kv_strcpy(copy, path, length + 1);
    const wchar_t* dot = wcsrchr(copy, L'.');
    if (!dot || lstrlenW(dot) >= 5) kv_strcat(copy, L".bmp", length + kSuffixRoom + 1);
    return copy;
}

bool readExactly(HANDLE file, void* buffer, DWORD bytes) {
    DWORD read = 0;
    return ReadFile(file, buffer, bytes, &read, nullptr) && read == bytes;
}

// The whole file in a new kvtext block followed by a zero byte, or null when the file is not a
// bitmap with a 40-byte information header or cannot be read in full.
BYTE* readBitmapFile(HANDLE file) {
    DWORD length = GetFileSize(file, nullptr);
    if (length == INVALID_FILE_SIZE || length >= 0x7FFFFFFF) return nullptr;
    BYTE fileHeader[kFileHeaderSize];
    if (!readExactly(file, fileHeader, kFileHeaderSize)) return nullptr;
    BITMAPINFOHEADER infoHeader;
    if (!readExactly(file, &infoHeader, kInfoHeaderSize) || infoHeader.biSize != kInfoHeaderSize)
        return nullptr;
    if (SetFilePointer(file, 0, nullptr, FILE_BEGIN) != 0) return nullptr;
    auto* block = static_cast<BYTE*>(GetMemory(static_cast<int>(length) + 1));
    if (!block) return nullptr;
    if (!readExactly(file, block, length)) {
        FreeMemory(block);
        return nullptr;
    }
    block[length] = 0;
    return block;
}

}  // namespace

BITMAPINFOHEADER* KVKIT_CALL Kx1ReadBitmap(const wchar_t* path, BYTE** blockOut,
                                           HBITMAP* bitmapOut) {
    if (bitmapOut) *bitmapOut = nullptr;
    if (!path || !*path || (!bitmapOut && !blockOut)) return nullptr;
    wchar_t* fullPath = bitmapPath(path);
    if (!fullPath) return nullptr;
    HANDLE file = CreateFileW(fullPath, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    BITMAPINFOHEADER* result = nullptr;
    if (file != INVALID_HANDLE_VALUE) {
        if (bitmapOut) {
            *bitmapOut = static_cast<HBITMAP>(
                LoadImageW(nullptr, fullPath, IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
        } else if (BYTE* block = readBitmapFile(file)) {
            *blockOut = block;
            result = reinterpret_cast<BITMAPINFOHEADER*>(block + kFileHeaderSize);
        }
        CloseHandle(file);
    }
    FreeMemory(fullPath);
    return result;
}

HBITMAP KVKIT_CALL Kx1MakeBitmap(BYTE* block) {
    if (!block) return nullptr;
    auto* header = reinterpret_cast<BITMAPINFOHEADER*>(block + kFileHeaderSize);
    DWORD bitsOffset;
    CopyMemory(&bitsOffset, block + kBitsOffsetField, sizeof(bitsOffset));
    HDC display = CreateDCW(L"DISPLAY", nullptr, nullptr, nullptr);
    if (!display) return nullptr;
    HBITMAP bitmap = CreateDIBitmap(display, header, CBM_INIT, block + bitsOffset,
                                    reinterpret_cast<BITMAPINFO*>(header), DIB_RGB_COLORS);
    DeleteDC(display);
    return bitmap;
}
