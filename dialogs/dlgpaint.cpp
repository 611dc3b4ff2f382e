// The header band of dialogs ("KXDlgPaintClass"): a caption-coloured gradient with a bold title,
// a subtitle and an icon; and SetDlgHeaderName, which names it.
#include "core/library.h"
#include "include/kvkit_dlgpaint.h"
#include "include/kvkit_draw.h"
#include "include/kvkit_paint.h"
#include <wchar.h>
#include "kvtext.h"

namespace {

const wchar_t kHeaderClass[] = L"KXDlgPaintClass";
const int kMargin = 8;          // left and right of the texts and the icon
const int kSubtitleIndent = 12;
const int kLineGap = 2;         // between title and subtitle
const int kMaxIconSize = 32;
const int kIconMargin = 2;      // above and below the icon
const int kEtchedLine = 2;      // along the bottom edge
const int kTextCapacity = 512;  // title, "\n" and subtitle as painted
const UINT kLineFormat = DT_LEFT | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;

// Per-window state of a header band, in GWLP_USERDATA.
struct DlgHeader {
    HICON icon;  // the caller's, not owned
    HFONT font;  // from WM_SETFONT, not owned; null: the parent's font
};

DlgHeader* headerRecord(HWND header) {
    return reinterpret_cast<DlgHeader*>(GetWindowLongPtrW(header, GWLP_USERDATA));
}

bool isHeader(HWND window) {
    wchar_t name[32];
    return GetClassNameW(window, name, 32) && lstrcmpiW(name, kHeaderClass) == 0;
}

HFONT subtitleFont(HWND header, const DlgHeader* record) {
    if (record && record->font) return record->font;
    auto font = reinterpret_cast<HFONT>(SendMessageW(GetParent(header), WM_GETFONT, 0, 0));
    return font ? font : static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
}

HFONT createBoldFont(HFONT font) {
    LOGFONTW face = {};
    GetObjectW(font, sizeof(face), &face);
    face.lfWeight = FW_BOLD;
    return CreateFontIndirectW(&face);
}

int lineHeight(HDC dc, HFONT font) {
    HGDIOBJ old = SelectObject(dc, font);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, old);
    return metrics.tmHeight;
}

void drawLine(HDC dc, HFONT font, const wchar_t* text, int length, int left, int top, int right,
              int height) {
    if (length <= 0 || right <= left) return;
    RECT line = {left, top, right, top + height};
    HGDIOBJ old = SelectObject(dc, font);
    DrawTextW(dc, text, length, &line, kLineFormat);
    SelectObject(dc, old);
}

void paintHeader(HWND header, HDC dc) {
    RECT client;
    GetClientRect(header, &client);
    RECT band = client;
    band.bottom -= kEtchedLine;
    Kx1GradientFill(dc, GetSysColor(COLOR_ACTIVECAPTION), GetSysColor(COLOR_GRADIENTACTIVECAPTION),
                    0, 0, &band);
    DrawEdge(dc, &client, EDGE_ETCHED, BF_BOTTOM);
    DlgHeader* record = headerRecord(header);
    int bandHeight = band.bottom - band.top;

    int textRight = band.right - kMargin;
    int iconSize = bandHeight - 2 * kIconMargin;
    if (iconSize > kMaxIconSize) iconSize = kMaxIconSize;
    if (record && record->icon && iconSize > 0) {
        int x = band.right - kMargin - iconSize;
        DrawIconEx(dc, x, (bandHeight - iconSize) / 2, record->icon, iconSize, iconSize, 0, nullptr,
                   DI_NORMAL);
        textRight = x - kMargin;
    }

    wchar_t text[kTextCapacity];
    int length = GetWindowTextW(header, text, kTextCapacity);
    const wchar_t* newline = wmemchr(text, L'\n', length);
    int titleLength = newline ? static_cast<int>(newline - text) : length;
    const wchar_t* subtitle = newline ? newline + 1 : text + length;
    int subtitleLength = static_cast<int>(text + length - subtitle);

    HFONT font = subtitleFont(header, record);
    HFONT bold = createBoldFont(font);
    if (!bold) bold = font;
    int titleHeight = lineHeight(dc, bold);
    int subtitleHeight = subtitleLength ? lineHeight(dc, font) : 0;
    int blockHeight = titleHeight + (subtitleLength ? kLineGap + subtitleHeight : 0);
    int top = (bandHeight - blockHeight) / 2;
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, GetSysColor(COLOR_CAPTIONTEXT));
    drawLine(dc, bold, text, titleLength, kMargin, top, textRight, titleHeight);
    drawLine(dc, font, subtitle, subtitleLength, kMargin + kSubtitleIndent,
             top + titleHeight + kLineGap, textRight, subtitleHeight);
    if (bold != font) DeleteObject(bold);
}

// The band's text with `name` as its title: `name` whole when it carries a subtitle, else `name`
// followed by the current subtitle. A new kvtext buffer, null when memory runs out.
wchar_t* bandTextWithTitle(HWND header, const wchar_t* name) {
    int nameLength = lstrlenW(name);
    int oldLength = GetWindowTextLengthW(header);
    auto* old = static_cast<wchar_t*>(GetMemory((oldLength + 1) * static_cast<int>(sizeof(wchar_t))));
    if (!old) return nullptr;
    GetWindowTextW(header, old, oldLength + 1);
    const wchar_t* subtitle = wcschr(name, L'\n') ? nullptr : wcschr(old, L'\n');
    int capacity = nameLength + (subtitle ? lstrlenW(subtitle) : 0) + 1;
    auto* text = static_cast<wchar_t*>(GetMemory(capacity * static_cast<int>(sizeof(wchar_t))));
    if (text) {
        kv_strcpy(text, name, capacity);
        if (subtitle) kv_strcat(text, subtitle, capacity);
    }
    FreeMemory(old);
    return text;
}

// The title part of `name` (up to its "\n") in a new kvtext buffer.
wchar_t* titleOf(const wchar_t* name) {
    const wchar_t* newline = wcschr(name, L'\n');
    int length = newline ? static_cast<int>(newline - name) : lstrlenW(name);
    auto* title = static_cast<wchar_t*>(GetMemory((length + 1) * static_cast<int>(sizeof(wchar_t))));
    if (title) kv_strcpy(title, name, length + 1);
    return title;
}

}  // namespace

LRESULT CALLBACK DlgPaintWindowProc(HWND header, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_NCCREATE: {
        auto* record = static_cast<DlgHeader*>(Mres(sizeof(DlgHeader)));
        if (!record) return FALSE;
        SetWindowLongPtrW(header, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));
        break;
    }
    case WM_PAINT: {
        tagKVPAINTSTRUCT ps;
        HDC dc = KVBeginPaint(header, &ps, 0);
        if (dc) paintHeader(header, dc);
        KVEndPaint(&ps);
        return 0;
    }
    case WM_PRINTCLIENT:
        paintHeader(header, reinterpret_cast<HDC>(wParam));
        return 0;
    case WM_ERASEBKGND:
        return 1;  // painting covers the whole client area
    case WM_SIZE:
        InvalidateRect(header, nullptr, FALSE);  // the gradient spans the whole width
        return 0;
    case WM_SETTEXT: {
        LRESULT result = DefWindowProcW(header, message, wParam, lParam);
        InvalidateRect(header, nullptr, FALSE);
        return result;
    }
    case WM_SETFONT:
        if (DlgHeader* record = headerRecord(header)) record->font = reinterpret_cast<HFONT>(wParam);
        if (LOWORD(lParam)) InvalidateRect(header, nullptr, FALSE);
        return 0;
    case WM_GETFONT: {
        DlgHeader* record = headerRecord(header);
        return reinterpret_cast<LRESULT>(record ? record->font : nullptr);
    }
    case WM_SETICON: {
        DlgHeader* record = headerRecord(header);
        if (!record) return 0;
        HICON previous = record->icon;
        record->icon = reinterpret_cast<HICON>(lParam);
        InvalidateRect(header, nullptr, FALSE);
        return reinterpret_cast<LRESULT>(previous);
    }
    case WM_GETICON: {
        DlgHeader* record = headerRecord(header);
        return reinterpret_cast<LRESULT>(record ? record->icon : nullptr);
    }
    case WM_NCDESTROY:
        FreeMemory(headerRecord(header));
        SetWindowLongPtrW(header, GWLP_USERDATA, 0);
        break;
    }
    return DefWindowProcW(header, message, wParam, lParam);
}

int KVKIT_CALL SetDlgHeaderName(HWND dialog, const wchar_t* name, int setCaption) {
    if (!dialog || !IsWindow(dialog) || !name) return 0;
    wchar_t* loaded = nullptr;
    if (IS_INTRESOURCE(name)) {
        loaded = LoadLanguageString(LOWORD(reinterpret_cast<UINT_PTR>(name)));
        if (!loaded) return 0;
        name = loaded;
    }
    HWND header = isHeader(dialog) ? dialog : FindWindowExW(dialog, nullptr, kHeaderClass, nullptr);
    HWND owner = header == dialog ? GetParent(dialog) : dialog;
    bool wantsCaption = (setCaption || !header) && owner;
    // Both texts are made before either is set, so that a failure changes nothing.
    wchar_t* bandText = header ? bandTextWithTitle(header, name) : nullptr;
    wchar_t* caption = wantsCaption ? titleOf(name) : nullptr;
    bool made = (!header || bandText) && (!wantsCaption || caption);
    if (made) {
        if (bandText) SetWindowTextW(header, bandText);
        if (caption) SetWindowTextW(owner, caption);
    }
    FreeMemory(bandText);
    FreeMemory(caption);
    FreeMemory(loaded);
    return made ? 1 : 0;
}
