// Bitmap resampling: a separable interpolating resize (first the width, row by row, into an
// intermediate picture of the new width and the old height, then the height, column by column),
// once through GetPixel/SetPixel on device-dependent bitmaps and once on the raw bits of DIB
// sections; and two conveniences built on them.
#include "core/library.h"
#include "include/kvkit_resample.h"
#include "kvtext.h"
#include <limits.h>
#include <math.h>

namespace {

// A bitmap selected into a memory DC compatible with the screen, for the lifetime of the object.
class SelectedBitmap {
public:
    explicit SelectedBitmap(HBITMAP bitmap) : dc_(CreateCompatibleDC(nullptr)) {
        if (dc_ && bitmap) previous_ = SelectObject(dc_, bitmap);
    }
    ~SelectedBitmap() {
        if (!dc_) return;
        if (previous_) SelectObject(dc_, previous_);
        DeleteDC(dc_);
    }
    SelectedBitmap(const SelectedBitmap&) = delete;
    SelectedBitmap& operator=(const SelectedBitmap&) = delete;

    bool ok() const { return dc_ && previous_; }
    HDC dc() const { return dc_; }

private:
    HDC dc_;
    HGDIOBJ previous_ = nullptr;
};

HBITMAP createCompatibleBitmap(HWND window, int width, int height) {
    HDC dc = GetDC(window);
    if (!dc) return nullptr;
    HBITMAP bitmap = CreateCompatibleBitmap(dc, width, height);
    ReleaseDC(window, dc);
    return bitmap;
}

// Where destination index `index` samples the source: the two neighbouring source indices and
// the fraction between them. The step is divided first, in double precision.
struct SamplePosition {
    int lower;
    int upper;
    double fraction;
};

SamplePosition samplePosition(int index, int oldLength, int newLength) {
    double step = double(oldLength) / double(newLength);
    double whole;
    double fraction = modf(index * step, &whole);
    return {int(whole), int(whole) + 1, fraction};
}

int blendChannel(int c0, int c1, double fraction) {
    int c = int((c1 - c0) * fraction + c0);
    if (c < 1) return 0;
    if (c >= 255) return 255;
    return c;
}

COLORREF blendColours(COLORREF p0, COLORREF p1, double fraction) {
    return RGB(blendChannel(GetRValue(p0), GetRValue(p1), fraction),
               blendChannel(GetGValue(p0), GetGValue(p1), fraction),
               blendChannel(GetBValue(p0), GetBValue(p1), fraction));
}

struct KeyRule {
    bool transparent;
    COLORREF key;
};

// ---------------------------------------------------------------------------------------------
// Through GetPixel/SetPixel

// The upper sample is not clamped: past the last column (row) it reads as CLR_INVALID, which
// GetPixel answers outside a bitmap and which blends as white.
COLORREF chooseGdiPixel(COLORREF p0, COLORREF p1, double fraction, bool upperOutside,
                        const KeyRule& rule) {
    if (!rule.transparent) return blendColours(p0, p1, fraction);
    bool lowerIsKey = p0 == rule.key;
    bool upperIsKey = p1 == rule.key;
    if (!lowerIsKey && !upperIsKey) return blendColours(p0, p1, fraction);
    if (!lowerIsKey) return p0;
    if (upperIsKey) return rule.key;
    return upperOutside ? p0 : p1;
}

// One pass: `along` is the axis being resized (columns when horizontal), `across` the other.
void resamplePixels(HDC from, HDC to, int oldLength, int newLength, int across, bool horizontal,
                    const KeyRule& rule) {
    auto read = [&](int a, int b) { return horizontal ? GetPixel(from, a, b) : GetPixel(from, b, a); };
    for (int i = 0; i < newLength; ++i) {
        SamplePosition at = samplePosition(i, oldLength, newLength);
        bool upperOutside = at.upper >= oldLength;
        for (int j = 0; j < across; ++j) {
            COLORREF p0 = read(at.lower, j);
            COLORREF p1 = upperOutside ? CLR_INVALID : read(at.upper, j);
            COLORREF colour = chooseGdiPixel(p0, p1, at.fraction, upperOutside, rule);
            if (horizontal)
                SetPixel(to, i, j, colour);
            else
                SetPixel(to, j, i, colour);
        }
    }
}

// ---------------------------------------------------------------------------------------------
// On DIB section bits

enum class DibDepth { Unsupported, Bits16, Bits24, Bits32 };

// Planes x bits per pixel graded to 1, 4, 8, 16, 24 or 32; only the last three can be resized.
DibDepth gradeDepth(const BITMAP& info) {
    int depth = info.bmPlanes * info.bmBitsPixel;
    if (depth <= 8) return DibDepth::Unsupported;
    if (depth <= 16) return DibDepth::Bits16;
    if (depth <= 24) return DibDepth::Bits24;
    return DibDepth::Bits32;
}

// The source's bits and the row length its pixels are read with. The row length can run past
// the end of the section's memory; such reads yield 0 instead of touching memory that is not
// there.
struct DibSource {
    const BYTE* bits;
    int size;       // bytes of pixel memory the section really has
    int rowLength;  // bytes from one row to the next as read
    int height;

    // Bottom-up: picture row y is memory row height - y - 1.
    int offset(int x, int y, int bytesPerPixel) const {
        return (height - y - 1) * rowLength + x * bytesPerPixel;
    }
    bool holds(int offset, int bytes) const { return offset >= 0 && offset + bytes <= size; }
    // Blue, green, red as a COLORREF.
    COLORREF read3(int x, int y) const {
        int at = offset(x, y, 3);
        return holds(at, 3) ? RGB(bits[at + 2], bits[at + 1], bits[at]) : 0;
    }
    WORD read2(int x, int y) const {
        int at = offset(x, y, 2);
        return holds(at, 2) ? *reinterpret_cast<const WORD*>(bits + at) : 0;
    }
    DWORD read4(int x, int y) const {
        int at = offset(x, y, 4);
        return holds(at, 4) ? *reinterpret_cast<const DWORD*>(bits + at) : 0;
    }
};

// The 24- and 32-bit row length: the padding the description reports, or, when it reports none,
// 4 - (bytes per row mod 4), added to the bytes per row.
int paddedRowLength(const BITMAP& info) {
    int pad = info.bmWidthBytes - info.bmWidth * info.bmBitsPixel / 8;
    if (pad == 0) pad = 4 - info.bmWidthBytes % 4;
    return info.bmWidthBytes + pad;
}

struct DibRule {
    bool transparent;
    DWORD key;  // compared with samples in the variant's own sample format
    bool smooth;
};

// One pass over samples: read(along, across) gives a sample, write(along, across, sample) stores
// one. Samples are clamped to the last column (row); a key sample on either side yields the lower
// sample unblended. Without smoothing the lower sample is taken.
template <class Read, class Write, class Blend>
void resampleSamples(int oldLength, int newLength, int across, const DibRule& rule, Read read,
                     Write write, Blend blend) {
    int last = oldLength - 1;
    for (int i = 0; i < newLength; ++i) {
        SamplePosition at = samplePosition(i, oldLength, newLength);
        int lower = at.lower < last ? at.lower : last;
        int upper = at.upper < last ? at.upper : last;
        double fraction = rule.smooth ? at.fraction : 0.0;
        for (int j = 0; j < across; ++j) {
            DWORD p0 = read(lower, j);
            DWORD p1 = read(upper, j);
            bool keepLower = rule.transparent && (p0 == rule.key || p1 == rule.key);
            write(i, j, keepLower ? p0 : blend(p0, p1, fraction));
        }
    }
}

// 5-5-5 channels widened to 8 bits by repeating their top bits, so that 31 becomes 255.
int widen5(int value) { return (value << 3) | (value >> 2); }

DWORD pack555(int red, int green, int blue) {
    return ((red >> 3) << 10) | ((green >> 3) << 5) | (blue >> 3);
}

// Sample formats of the variants: the source's depth and row length, how source pixels and the
// key are read, how two samples blend and how a result pixel is stored in a row.
struct Pixels24 {
    static const DibDepth kDepth = DibDepth::Bits24;
    static const int kBits = 24;
    static int rowLength(const BITMAP& info) { return paddedRowLength(info); }
    static DWORD read(const DibSource& from, int x, int y) { return from.read3(x, y); }
    static DWORD key(const DibSource& from, COLORREF given, bool fromCorner) {
        return fromCorner ? from.read3(0, 0) : given;
    }
    static DWORD blend(DWORD p0, DWORD p1, double fraction) { return blendColours(p0, p1, fraction); }
    static void store(BYTE* row, int x, DWORD colour) {
        row[x * 3] = GetBValue(colour);
        row[x * 3 + 1] = GetGValue(colour);
        row[x * 3 + 2] = GetRValue(colour);
    }
};

// Samples stay in 5-5-5 form, so a given key is packed the same way to match the pixels it was
// stored as; blending goes through 8-bit channels.
struct Pixels16 {
    static const DibDepth kDepth = DibDepth::Bits16;
    static const int kBits = 16;
    static int rowLength(const BITMAP& info) { return info.bmWidthBytes; }
    static DWORD read(const DibSource& from, int x, int y) { return from.read2(x, y) & 0x7FFF; }
    static DWORD key(const DibSource& from, COLORREF given, bool fromCorner) {
        return fromCorner ? read(from, 0, 0)
                          : pack555(GetRValue(given), GetGValue(given), GetBValue(given));
    }
    static DWORD blend(DWORD p0, DWORD p1, double fraction) {
        return pack555(blendChannel(widen5((p0 >> 10) & 31), widen5((p1 >> 10) & 31), fraction),
                       blendChannel(widen5((p0 >> 5) & 31), widen5((p1 >> 5) & 31), fraction),
                       blendChannel(widen5(p0 & 31), widen5(p1 & 31), fraction));
    }
    static void store(BYTE* row, int x, DWORD pixel) {
        reinterpret_cast<WORD*>(row)[x] = WORD(pixel);
    }
};

// 32-bit sources: samples are read as 3-byte pixels at x * 3, the key as a 4-byte pixel.
struct Pixels32 {
    static const DibDepth kDepth = DibDepth::Bits32;
    static int rowLength(const BITMAP& info) { return paddedRowLength(info); }
    static DWORD read(const DibSource& from, int x, int y) { return from.read3(x, y); }
    static DWORD key(const DibSource& from, COLORREF given, bool fromCorner) {
        return fromCorner ? from.read4(0, 0) : given;
    }
    static DWORD blend(DWORD p0, DWORD p1, double fraction) { return blendColours(p0, p1, fraction); }
};

// Intermediate samples: new width x old height, one DWORD each, rows bottom-up.
struct SampleRows {
    DWORD* samples;
    int width;
    int height;
    DWORD& at(int x, int y) { return samples[(height - y - 1) * width + x]; }
};

// The source's description, bits, row length and key rule for a variant; false when the source
// is not a DIB section of the variant's depth or the sizes are unusable.
template <class Pixels>
bool openDibSource(HBITMAP source, int width, int height, int transparent, COLORREF key,
                   int keyFromCorner, int smooth, BITMAP* info, DibSource* from, DibRule* rule) {
    if (!source || width <= 0 || height <= 0) return false;
    if (!GetObjectW(source, sizeof(*info), info)) return false;
    if (gradeDepth(*info) != Pixels::kDepth || !info->bmBits) return false;
    if (info->bmWidth <= 0 || info->bmHeight <= 0) return false;
    // Both buffers hold at most width x (old or new height) samples of up to 4 bytes; beyond that
    // the byte counts would wrap round and a too small buffer would be overrun.
    const long long maxSamples = INT_MAX / 4;
    if (static_cast<long long>(width) * info->bmHeight > maxSamples ||
        static_cast<long long>(width) * height > maxSamples)
        return false;
    *from = {static_cast<const BYTE*>(info->bmBits), info->bmWidthBytes * info->bmHeight,
             Pixels::rowLength(*info), info->bmHeight};
    *rule = {transparent != 0, Pixels::key(*from, key, keyFromCorner != 0), smooth != 0};
    return true;
}

// The horizontal pass: source rows into intermediate rows of the new width.
template <class Pixels>
void resampleWidth(const DibSource& from, int oldWidth, const DibRule& rule, SampleRows& middle) {
    resampleSamples(
        oldWidth, middle.width, middle.height, rule,
        [&](int x, int y) { return Pixels::read(from, x, y); },
        [&](int x, int y, DWORD sample) { middle.at(x, y) = sample; }, Pixels::blend);
}

// A bitmap compatible with the window's DC, filled from bottom-up rows of the source's depth.
HBITMAP createFromRows(HWND window, const BITMAP& source, int width, int height, const void* rows) {
    HDC dc = GetDC(window);
    if (!dc) return nullptr;
    HBITMAP bitmap = CreateCompatibleBitmap(dc, width, height);
    BITMAPINFO header = {};
    header.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    header.bmiHeader.biWidth = width;
    header.bmiHeader.biHeight = height;
    header.bmiHeader.biPlanes = source.bmPlanes;
    header.bmiHeader.biBitCount = source.bmBitsPixel;
    header.bmiHeader.biCompression = BI_RGB;
    if (bitmap && !SetDIBits(dc, bitmap, 0, height, rows, &header, DIB_RGB_COLORS)) {
        DeleteObject(bitmap);
        bitmap = nullptr;
    }
    ReleaseDC(window, dc);
    return bitmap;
}

// The 16- and 24-bit variants: both passes, through one intermediate and one result buffer, each
// allocated once; result rows are aligned to four bytes as SetDIBits expects.
template <class Pixels>
HBITMAP resizeDibSection(HWND window, HBITMAP source, int width, int height, int transparent,
                         COLORREF key, int keyFromCorner, int smooth) {
    BITMAP info;
    DibSource from;
    DibRule rule;
    if (!openDibSource<Pixels>(source, width, height, transparent, key, keyFromCorner, smooth,
                               &info, &from, &rule))
        return nullptr;
    SampleRows middle = {static_cast<DWORD*>(GetMemory(width * info.bmHeight * 4)), width,
                         info.bmHeight};
    int resultRowLength = int((static_cast<long long>(width) * Pixels::kBits + 31) / 32 * 4);
    auto* result = static_cast<BYTE*>(GetMemory(resultRowLength * height));
    HBITMAP bitmap = nullptr;
    if (middle.samples && result) {
        resampleWidth<Pixels>(from, info.bmWidth, rule, middle);
        resampleSamples(
            info.bmHeight, height, width, rule, [&](int y, int x) { return middle.at(x, y); },
            [&](int y, int x, DWORD sample) {
                Pixels::store(result + (height - y - 1) * resultRowLength, x, sample);
            },
            Pixels::blend);
        bitmap = createFromRows(window, info, width, height, result);
    }
    FreeMemory(middle.samples);
    FreeMemory(result);
    return bitmap;
}

}  // namespace

// ---------------------------------------------------------------------------------------------

HBITMAP KVKIT_CALL ResizeBitmap(HBITMAP source, int width, int height, int transparent,
                                COLORREF key, int keyFromCorner) {
    BITMAP info;
    if (!source || width <= 0 || height <= 0) return nullptr;
    if (!GetObjectW(source, sizeof(info), &info)) return nullptr;
    if (width == info.bmWidth && height == info.bmHeight) return nullptr;

    HBITMAP intermediate = createCompatibleBitmap(nullptr, width, info.bmHeight);
    HBITMAP result = createCompatibleBitmap(nullptr, width, height);
    bool done = false;
    if (intermediate && result) {
        SelectedBitmap from(source), middle(intermediate), to(result);
        if (from.ok() && middle.ok() && to.ok()) {
            KeyRule rule = {transparent != 0, keyFromCorner ? GetPixel(from.dc(), 0, 0) : key};
            if (width == info.bmWidth)
                BitBlt(middle.dc(), 0, 0, width, info.bmHeight, from.dc(), 0, 0, SRCCOPY);
            else
                resamplePixels(from.dc(), middle.dc(), info.bmWidth, width, info.bmHeight, true, rule);
            resamplePixels(middle.dc(), to.dc(), info.bmHeight, height, width, false, rule);
            done = true;
        }
    }
    if (intermediate) DeleteObject(intermediate);
    if (!done && result) {
        DeleteObject(result);
        result = nullptr;
    }
    return result;
}

HBITMAP KVKIT_CALL BlendedResizeBitmap_DI(HWND window, HBITMAP source, int width, int height,
                                          int transparent, COLORREF key, int keyFromCorner,
                                          int smooth) {
    BITMAP info;
    if (!source || !GetObjectW(source, sizeof(info), &info)) return nullptr;
    switch (gradeDepth(info)) {
    case DibDepth::Bits16:
        return BlendedResizeBitmap_DI_16b(window, source, width, height, transparent, key,
                                          keyFromCorner, smooth);
    case DibDepth::Bits24:
        return BlendedResizeBitmap_DI_24b(window, source, width, height, transparent, key,
                                          keyFromCorner, smooth);
    case DibDepth::Bits32:
        return BlendedResizeBitmap_DI_32b(window, source, width, height, transparent, key,
                                          keyFromCorner, smooth);
    default:
        return nullptr;
    }
}

HBITMAP KVKIT_CALL BlendedResizeBitmap_DI_24b(HWND window, HBITMAP source, int width, int height,
                                              int transparent, COLORREF key, int keyFromCorner,
                                              int smooth) {
    return resizeDibSection<Pixels24>(window, source, width, height, transparent, key,
                                      keyFromCorner, smooth);
}

HBITMAP KVKIT_CALL BlendedResizeBitmap_DI_16b(HWND window, HBITMAP source, int width, int height,
                                              int transparent, COLORREF key, int keyFromCorner,
                                              int smooth) {
    return resizeDibSection<Pixels16>(window, source, width, height, transparent, key,
                                      keyFromCorner, smooth);
}

// This variant lets both passes land in the intermediate buffer, so it never has a resized
// picture to hand out: a 32-bit source yields null, and callers fall back to ResizeBitmap.
HBITMAP KVKIT_CALL BlendedResizeBitmap_DI_32b(HWND window, HBITMAP source, int width, int height,
                                              int transparent, COLORREF key, int keyFromCorner,
                                              int smooth) {
    BITMAP info;
    DibSource from;
    DibRule rule;
    if (!openDibSource<Pixels32>(source, width, height, transparent, key, keyFromCorner, smooth,
                                 &info, &from, &rule))
        return nullptr;
    SampleRows middle = {static_cast<DWORD*>(GetMemory(width * info.bmHeight * 4)), width,
                         info.bmHeight};
    if (middle.samples) {
        resampleWidth<Pixels32>(from, info.bmWidth, rule, middle);
        // Rows past the intermediate's height have nowhere to go and are dropped.
        resampleSamples(
            info.bmHeight, height, width, rule, [&](int y, int x) { return middle.at(x, y); },
            [&](int y, int x, DWORD colour) {
                if (y < middle.height) middle.at(x, y) = colour;
            },
            Pixels32::blend);
    }
    FreeMemory(middle.samples);
    return nullptr;
}

// ---------------------------------------------------------------------------------------------

namespace {

// A plain stretch of the whole source into a new bitmap of the given size.
HBITMAP stretchCopy(HBITMAP source, const BITMAP& info, int width, int height) {
    HBITMAP result = createCompatibleBitmap(nullptr, width, height);
    if (!result) return nullptr;
    bool stretched = false;
    {
        SelectedBitmap from(source), to(result);
        if (from.ok() && to.ok()) {
            SetStretchBltMode(to.dc(), COLORONCOLOR);
            stretched = StretchBlt(to.dc(), 0, 0, width, height, from.dc(), 0, 0, info.bmWidth,
                                   info.bmHeight, SRCCOPY) != 0;
        }
    }
    if (stretched) return result;
    DeleteObject(result);
    return nullptr;
}

}  // namespace

HBITMAP KVKIT_CALL Kx1ShrinkBitmapEx2(HBITMAP source, int width, int height, int allowEnlarge,
                                      int deleteSource) {
    BITMAP info;
    if (!source || !GetObjectW(source, sizeof(info), &info)) return nullptr;
    if (width == info.bmWidth && height == info.bmHeight) return source;
    if (width >= info.bmWidth && height >= info.bmHeight && !allowEnlarge) return source;

    double scaleX = double(width) / double(info.bmWidth);
    double scaleY = double(height) / double(info.bmHeight);
    int targetWidth = width;
    int targetHeight = height;
    if (!allowEnlarge) {
        if (targetWidth > info.bmWidth) targetWidth = info.bmWidth;
        if (targetHeight > info.bmHeight) targetHeight = info.bmHeight;
    }

    // Near the original size a plain stretch looks as good; further away, or when one side keeps
    // its size, interpolation does better.
    auto nearOne = [](double scale) { return scale >= 0.5 && scale <= 1.5 && scale != 1.0; };
    HBITMAP result = nearOne(scaleX) && nearOne(scaleY)
                         ? stretchCopy(source, info, targetWidth, targetHeight)
                         : ResizeBitmap(source, targetWidth, targetHeight, 1, 0, 1);
    if (!result) return source;
    if (deleteSource) DeleteObject(source);
    return result;
}

HBITMAP KVKIT_CALL Kx1ShrinkBitmap(HBITMAP source, int width, int height) {
    return Kx1ShrinkBitmapEx2(source, width, height, 0, 1);
}

HBITMAP KVKIT_CALL Kx1ShrinkBitmapEx(HBITMAP source, int width, int height, int allowEnlarge) {
    return Kx1ShrinkBitmapEx2(source, width, height, allowEnlarge, 1);
}

// ---------------------------------------------------------------------------------------------

namespace {

// Offset of a picture of `length` on a canvas of `canvas` for the end or centre flag; centring
// puts the odd pixel before the picture, and a centred offset below 1 becomes 0.
int placementOffset(int canvas, int length, int flags, int endFlag, int centreFlag) {
    int spare = canvas - length;
    if (flags & endFlag) return spare;
    if (flags & centreFlag) {
        int offset = spare - spare / 2;
        return offset < 1 ? 0 : offset;
    }
    return 0;
}

HBITMAP unchangedResult(HBITMAP result, int* unchanged) {
    if (unchanged) *unchanged = 1;
    return result;
}

}  // namespace

HBITMAP KVKIT_CALL StretchBimapBackground(HBITMAP source, int width, int height, int flags,
                                          COLORREF* background, int* unchanged) {
    flags &= 0xFF;
    BITMAP info;
    if (!source || !GetObjectW(source, sizeof(info), &info)) return unchangedResult(nullptr, unchanged);

    COLORREF colour;
    if (flags & KV_STRETCHBK_GIVENCOLOR) {
        if (!background) return unchangedResult(source, unchanged);
        colour = *background;
    } else {
        SelectedBitmap from(source);
        if (!from.ok()) return unchangedResult(source, unchanged);
        colour = GetPixel(from.dc(), 0, 0);
        if (background) *background = colour;
    }
    if (info.bmHeight >= height && info.bmWidth >= width) return unchangedResult(source, unchanged);

    HBITMAP canvas = createCompatibleBitmap(nullptr, width, height);
    if (!canvas) return unchangedResult(source, unchanged);
    bool copied = false;
    {
        SelectedBitmap from(source), to(canvas);
        HBRUSH brush = CreateSolidBrush(colour);
        if (from.ok() && to.ok() && brush) {
            RECT whole = {0, 0, width, height};
            FillRect(to.dc(), &whole, brush);
            int top = placementOffset(height, info.bmHeight, flags, KV_STRETCHBK_BOTTOM,
                                      KV_STRETCHBK_VCENTER);
            int left = placementOffset(width, info.bmWidth, flags, KV_STRETCHBK_RIGHT,
                                       KV_STRETCHBK_HCENTER);
            copied = BitBlt(to.dc(), left, top, info.bmWidth, info.bmHeight, from.dc(), 0, 0,
                            SRCCOPY) != 0;
        }
        if (brush) DeleteObject(brush);
    }
    if (!copied) {
        DeleteObject(canvas);
        return unchangedResult(source, unchanged);
    }
    if (unchanged) *unchanged = 0;
    if (flags & KV_STRETCHBK_DELETESOURCE) DeleteObject(source);
    return canvas;
}
