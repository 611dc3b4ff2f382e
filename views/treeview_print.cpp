// Printing a tree view as an indented outline. The lines to print are gathered first (so that an
// empty tree asks for no printer), then laid out on pages of the device's printable area.
#include "views/treeview_internal.h"
#include "core/library.h"
#include "graphics/memory_dc.h"
#include "include/kvkit_draw.h"
#include "include/kvkit_treeprint.h"
#include <commdlg.h>
#include "kvtext.h"

namespace {

const int kTextPoints = 10;
const int kTitlePoints = 12;
const int kLineGrowBytes = 64 * 8;
const int kTextCapacity = 260;
const UINT kPageNumberText = 17120;
const int kPageTextCapacity = kLanguageStringLength + 24;
const wchar_t kTreeViewClass[] = L"SysTreeView32";

struct PrintLine {
    HTREEITEM item;
    int level;
};

// The lines of one print, gathered in a kvtext block.
struct LineList {
    PrintLine* lines;
    int usedBytes;
    int capacityBytes;
    bool failed;
    int count() const { return usedBytes / static_cast<int>(sizeof(PrintLine)); }
};

// Everything the page painter needs, in device units.
struct PrintJob {
    HWND tree;
    HDC dc;
    bool metafile;     // pages are marked by comment records instead of StartPage/EndPage
    const wchar_t* title;
    HIMAGELIST stateImages;
    HIMAGELIST images;
    HFONT font;
    HFONT boldFont;
    HFONT titleFont;
    RECT area;         // the printable area inside the margins
    int lineHeight;
    int imageSize;     // check boxes and icons are squares of this size
    int imageGap;
    int indent;        // per level
    int bodyTop;       // below the title
    int bodyBottom;    // above the page number
    int linesPerPage;
};

bool isTreeView(HWND window) {
    wchar_t name[32];
    return window && IsWindow(window) && GetClassNameW(window, name, 32) &&
           lstrcmpiW(name, kTreeViewClass) == 0;
}

void addLine(LineList& list, HTREEITEM item, int level) {
    PrintLine line = {item, level};
    void* grown = AddMemoryMax(list.lines, &list.usedBytes, &list.capacityBytes, &line,
                               sizeof(line), kLineGrowBytes);
    if (grown) list.lines = static_cast<PrintLine*>(grown);
    else list.failed = true;
}

// The item and, when it is expanded or every item is asked for, its children.
void gatherSubtree(HWND tree, HTREEITEM item, int level, bool all, LineList& list) {
    addLine(list, item, level);
    bool expanded = SendMessageW(tree, TVM_GETITEMSTATE, reinterpret_cast<WPARAM>(item),
                                 TVIS_EXPANDED) & TVIS_EXPANDED;
    if (!all && !expanded) return;
    for (HTREEITEM child = TreeChild(tree, item); child && !list.failed;
         child = TreeSibling(tree, child))
        gatherSubtree(tree, child, level + 1, all, list);
}

// The system print dialog. The device context it returns, or null.
HDC askForPrinter(HWND tree) {
    PRINTDLGW request = {};
    request.lStructSize = sizeof(request);
    request.hwndOwner = GetAncestor(tree, GA_ROOT);
    request.Flags = PD_RETURNDC | PD_NOPAGENUMS | PD_NOSELECTION | PD_USEDEVMODECOPIESANDCOLLATE;
    HDC dc = PrintDlgW(&request) ? request.hDC : nullptr;
    if (request.hDevMode) GlobalFree(request.hDevMode);
    if (request.hDevNames) GlobalFree(request.hDevNames);
    return dc;
}

HFONT makeFont(const LOGFONTW& base, int points, int dpi, int weight) {
    LOGFONTW description = base;
    description.lfHeight = -MulDiv(points, dpi, 72);
    description.lfWidth = 0;
    description.lfWeight = weight;
    return CreateFontIndirectW(&description);
}

int textHeight(HDC dc, HFONT font) {
    HGDIOBJ previous = SelectObject(dc, font);
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, previous);
    return metrics.tmHeight + metrics.tmExternalLeading;
}

// Fonts and measures of the job; false when a font cannot be made.
bool layOut(PrintJob& job) {
    int dpiX = GetDeviceCaps(job.dc, LOGPIXELSX), dpiY = GetDeviceCaps(job.dc, LOGPIXELSY);
    if (dpiX <= 0 || dpiY <= 0) return false;
    LOGFONTW base = {};
    HFONT treeFont = reinterpret_cast<HFONT>(SendMessageW(job.tree, WM_GETFONT, 0, 0));
    GetObjectW(treeFont ? treeFont : GetStockObject(DEFAULT_GUI_FONT), sizeof(base), &base);
    job.font = makeFont(base, kTextPoints, dpiY, FW_NORMAL);
    job.boldFont = makeFont(base, kTextPoints, dpiY, FW_BOLD);
    job.titleFont = makeFont(base, kTitlePoints, dpiY, FW_BOLD);
    if (!job.font || !job.boldFont || !job.titleFont) return false;

    int marginX = dpiX / 2, marginY = dpiY / 2;
    SetRect(&job.area, marginX, marginY, GetDeviceCaps(job.dc, HORZRES) - marginX,
            GetDeviceCaps(job.dc, VERTRES) - marginY);
    int text = textHeight(job.dc, job.font);
    job.lineHeight = text * 5 / 4;
    job.imageSize = text;
    job.imageGap = text / 3;
    HDC screen = GetDC(nullptr);
    int screenDpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    int treeIndent = static_cast<int>(SendMessageW(job.tree, TVM_GETINDENT, 0, 0));
    job.indent = MulDiv(treeIndent, dpiX, screenDpi > 0 ? screenDpi : 96);
    if (job.indent < job.imageSize + job.imageGap) job.indent = job.imageSize + job.imageGap;
    job.bodyTop = job.area.top + (job.title ? textHeight(job.dc, job.titleFont) * 2 : 0);
    job.bodyBottom = job.area.bottom - text * 2;
    job.linesPerPage = (job.bodyBottom - job.bodyTop) / job.lineHeight;
    if (job.linesPerPage < 1) job.linesPerPage = 1;
    return true;
}

void releaseFonts(PrintJob& job) {
    if (job.font) DeleteObject(job.font);
    if (job.boldFont) DeleteObject(job.boldFont);
    if (job.titleFont) DeleteObject(job.titleFont);
}

// "Page %d of %d" from the language module with the numbers put in, or "page / pages".
void pageText(int page, int pages, wchar_t* text, int capacity) {
    wchar_t* format = LoadLanguageString(kPageNumberText);
    if (!format) {
        wsprintfW(text, L"%d / %d", page, pages);
        return;
    }
    // Only "%d" is replaced, twice at most: a format read from a module is never handed to a
    // formatting function.
    int numbers[2] = {page, pages}, used = 0, length = 0;
    for (const wchar_t* c = format; *c && length < capacity - 12; ++c) {
        if (c[0] == L'%' && c[1] == L'd' && used < 2) {
            length += wsprintfW(text + length, L"%d", numbers[used++]);
            ++c;
        } else {
            text[length++] = *c;
        }
    }
    text[length] = 0;
    FreeMemory(format);
}

void drawText(HDC dc, HFONT font, const wchar_t* text, RECT rect, UINT format) {
    HGDIOBJ previous = SelectObject(dc, font);
    DrawTextW(dc, text, -1, &rect, format | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(dc, previous);
}

// An image of the list, with the overlay image `overlay` on it, printed into the box on white.
void printImage(HDC dc, HIMAGELIST list, int index, int overlay, RECT box) {
    int width, height;
    if (index < 0 || !ImageList_GetIconSize(list, &width, &height)) return;
    HBITMAP picture = PaintNewBitmap(width, height, [&](HDC memory) {
        FillWithColour(memory, width, height, RGB(255, 255, 255));
        return ImageList_Draw(list, index, memory, 0, 0, ILD_NORMAL | INDEXTOOVERLAYMASK(overlay)) != 0;
    });
    if (!picture) return;
    Kx1PrintBm(dc, picture, &box, 1, 0, 0);
    DeleteObject(picture);
}

void printLine(const PrintJob& job, const PrintLine& line, int top) {
    TVITEMW data = {};
    data.mask = TVIF_HANDLE | TVIF_STATE | TVIF_IMAGE;
    data.hItem = line.item;
    data.stateMask = TVIS_STATEIMAGEMASK | TVIS_OVERLAYMASK | TVIS_BOLD;
    if (!SendMessageW(job.tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data))) return;
    int x = job.area.left + line.level * job.indent;
    int boxTop = top + (job.lineHeight - job.imageSize) / 2;
    int checkImage = (data.state & TVIS_STATEIMAGEMASK) >> 12;
    if (job.stateImages && checkImage > 0) {
        printImage(job.dc, job.stateImages, checkImage, 0,
                   {x, boxTop, x + job.imageSize, boxTop + job.imageSize});
        x += job.imageSize + job.imageGap;
    }
    if (job.images) {
        int mark = (data.state & TVIS_OVERLAYMASK) >> 8;
        printImage(job.dc, job.images, data.iImage, mark,
                   {x, boxTop, x + job.imageSize, boxTop + job.imageSize});
        x += job.imageSize + job.imageGap;
    }
    wchar_t text[kTextCapacity];
    ReadTreeItemText(job.tree, line.item, text, kTextCapacity);
    RECT rect = {x, top, job.area.right, top + job.lineHeight};
    drawText(job.dc, (data.state & TVIS_BOLD) ? job.boldFont : job.font, text, rect, DT_VCENTER);
}

// Opens a page: StartPage on a printer, a begin-group comment in a metafile.
bool beginPage(const PrintJob& job, const wchar_t* description) {
    if (!job.metafile) return StartPage(job.dc) > 0;
    int length = lstrlenW(description);
    struct {
        DWORD identifier;
        DWORD type;
        RECTL bounds;
        DWORD descriptionLength;  // in characters, terminator included
        wchar_t description[kPageTextCapacity];
    } comment = {GDICOMMENT_IDENTIFIER, GDICOMMENT_BEGINGROUP,
                 {0, 0, GetDeviceCaps(job.dc, HORZRES), GetDeviceCaps(job.dc, VERTRES)},
                 static_cast<DWORD>(length + 1), {}};
    kv_strcpy(comment.description, description, kPageTextCapacity);
    UINT bytes = static_cast<UINT>(offsetof(decltype(comment), description) + (length + 1) * sizeof(wchar_t));
    return GdiComment(job.dc, bytes, reinterpret_cast<const BYTE*>(&comment)) != 0;
}

bool endPage(const PrintJob& job) {
    if (!job.metafile) return EndPage(job.dc) > 0;
    const DWORD comment[2] = {GDICOMMENT_IDENTIFIER, GDICOMMENT_ENDGROUP};
    return GdiComment(job.dc, sizeof(comment), reinterpret_cast<const BYTE*>(comment)) != 0;
}

bool printPage(const PrintJob& job, const LineList& list, int page, int pages) {
    wchar_t number[kPageTextCapacity];
    pageText(page, pages, number, kPageTextCapacity);
    if (!beginPage(job, number)) return false;
    SetBkMode(job.dc, TRANSPARENT);
    SetTextColor(job.dc, RGB(0, 0, 0));
    if (job.title) {
        RECT titleRect = {job.area.left, job.area.top, job.area.right, job.bodyTop};
        drawText(job.dc, job.titleFont, job.title, titleRect, DT_TOP);
        int ruleY = job.area.top + (job.bodyTop - job.area.top) * 3 / 4;  // below the title line
        MoveToEx(job.dc, job.area.left, ruleY, nullptr);
        LineTo(job.dc, job.area.right, ruleY);
    }
    int first = (page - 1) * job.linesPerPage;
    int last = first + job.linesPerPage < list.count() ? first + job.linesPerPage : list.count();
    for (int i = first; i < last; ++i)
        printLine(job, list.lines[i], job.bodyTop + (i - first) * job.lineHeight);
    RECT footer = {job.area.left, job.bodyBottom, job.area.right, job.area.bottom};
    drawText(job.dc, job.font, number, footer, DT_CENTER | DT_BOTTOM);
    return endPage(job);
}

// The whole document; the number of pages, or 0 when the device refused.
int printDocument(PrintJob& job, const LineList& list) {
    int pages = (list.count() + job.linesPerPage - 1) / job.linesPerPage;
    if (!job.metafile) {
        wchar_t name[kTextCapacity] = L"";
        if (job.title) kv_strcpy(name, job.title, kTextCapacity);
        else GetWindowTextW(GetAncestor(job.tree, GA_ROOT), name, kTextCapacity);
        DOCINFOW document = {};
        document.cbSize = sizeof(document);
        document.lpszDocName = name;
        if (StartDocW(job.dc, &document) <= 0) return 0;
    }
    for (int page = 1; page <= pages; ++page) {
        if (!printPage(job, list, page, pages)) {
            if (!job.metafile) AbortDoc(job.dc);
            return 0;
        }
    }
    if (!job.metafile && EndDoc(job.dc) <= 0) return 0;
    return pages;
}

}  // namespace

int KVKIT_CALL KxTreeView_Print(HWND tree, HDC dc, HTREEITEM start, const wchar_t* title,
                                int flags) {
    if (!isTreeView(tree)) return 0;
    LineList list = {};
    bool all = (flags & KXTREEPRINT_ALLITEMS) != 0;
    if (start) {
        gatherSubtree(tree, start, 0, all, list);
    } else {
        for (HTREEITEM item = TreeRoot(tree); item && !list.failed; item = TreeSibling(tree, item))
            gatherSubtree(tree, item, 0, all, list);
    }
    int pages = 0;
    if (!list.failed && list.count() > 0) {
        HDC device = dc ? dc : askForPrinter(tree);
        if (device) {
            PrintJob job = {};
            job.tree = tree;
            job.dc = device;
            job.metafile = GetObjectType(device) == OBJ_ENHMETADC;
            job.title = title;
            job.stateImages = TreeView_GetImageList(tree, TVSIL_STATE);
            job.images = TreeView_GetImageList(tree, TVSIL_NORMAL);
            int saved = SaveDC(device);
            if (layOut(job)) pages = printDocument(job, list);
            RestoreDC(device, saved);
            releaseFonts(job);
            if (!dc) DeleteDC(device);
        }
    }
    FreeMemory(list.lines);
    return pages;
}
