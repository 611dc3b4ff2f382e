// Multi-column list box "KVListbox": the container window. Building from the host's record
// (toggle buttons, column titles, the inner list box), the column layout, detaching, and the
// commands of its children.
#include "dialogs/listbox_internal.h"
#include "core/library.h"
#include "kvtext.h"

namespace {

const wchar_t kClassName[] = L"KVListbox";

const DWORD kToggleStyle = 0x5002000B;       // visible, group, owner-drawn
const DWORD kFirstHeaderStyle = 0x4002000B;  // group, owner-drawn; shown by the layout
const DWORD kHeaderStyle = 0x4000000B;
const DWORD kListStyle = 0x54021011;         // visible, clip siblings, group, notify,
                                             // owner-drawn fixed, scroll bars kept
const int kToggleSize = 16;
const int kToggleStripWidth = 17;
const int kHeaderHeight = 20;
const int kCheckWidth = 22;
const int kCheckWidthWithAnchor = 32;
const int kCaptionPadding = 6;
const int kDefaultValueWidth = 16;
const int kCaptionCapacity = 81;
const UINT kLastListMessage = 0x1B3;

// The toggle buttons: the record flag that makes each, the style feature it switches, and the
// language string of its caption (0: the title).
struct ToggleButton {
    int id;
    unsigned short madeBy;
    unsigned long feature;
    UINT caption;
};
const ToggleButton kToggles[] = {
    {KVLB_TOGGLE_PICTURES, KVLB_HAS_TOGGLE_PICTURES, KVLB_PICTURES, 856},
    {KVLB_TOGGLE_VALUES, KVLB_HAS_TOGGLE_VALUES, KVLB_VALUES, 857},
    {KVLB_TOGGLE_NUMBERS, KVLB_HAS_TOGGLE_NUMBERS, KVLB_NUMBERS, 858},
    {KVLB_TOGGLE_SECONDTEXT, KVLB_HAS_TOGGLE_SECONDTEXT, KVLB_SECONDTEXT, 0},
};
const UINT kTitleFallback = 853;

// The column titles, left to right as the columns: the style feature that shows each (0: always
// shown) and the language string of its caption (0: the title; none for the check column).
struct HeaderButton {
    int id;
    int column;
    unsigned long shownBy;
    UINT caption;
};
const HeaderButton kHeaders[] = {
    {KVLB_HEADER_CHECK, KVLB_COLUMN_CHECK, KVLB_CHECKCOLUMN, 0},
    {KVLB_HEADER_TEXT, KVLB_COLUMN_TEXT, 0, 852},
    {KVLB_HEADER_SECONDTEXT, KVLB_COLUMN_SECONDTEXT, KVLB_SECONDTEXT, 0},
    {KVLB_HEADER_PICTURE, KVLB_COLUMN_PICTURE, KVLB_PICTURES, 854},
    {KVLB_HEADER_VALUE, KVLB_COLUMN_VALUE, KVLB_VALUES, 855},
};

const ToggleButton* findToggle(int id) {
    for (const ToggleButton& toggle : kToggles)
        if (toggle.id == id) return &toggle;
    return nullptr;
}

bool isHeader(int id) { return id >= KVLB_HEADER_CHECK && id <= KVLB_HEADER_VALUE; }

HMENU childId(int id) { return reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)); }

// The caption of a toggle or title: a language string, or the record's title (string 853 when it
// is empty). Empty when the string is missing or memory runs out.
void readCaption(const KVLB_LIST* list, UINT stringId, wchar_t* caption) {
    caption[0] = 0;
    if (!stringId && list->title[0]) {
        lstrcpynW(caption, list->title, sizeof(list->title) / sizeof(list->title[0]));
        return;
    }
    wchar_t* text = LoadLanguageString(stringId ? stringId : kTitleFallback);
    if (text) kv_strcpy(caption, text, kCaptionCapacity);
    FreeMemory(text);
}

bool hasToggles(HWND container) {
    for (const ToggleButton& toggle : kToggles)
        if (GetDlgItem(container, toggle.id)) return true;
    return false;
}

// The client area inset by 3 (right of the toggle strip when there is one), less 1 at the right
// and bottom: the column titles and the list share it.
RECT listArea(HWND container) {
    RECT area;
    GetClientRect(container, &area);
    if (hasToggles(container)) area.left += kToggleStripWidth;
    InflateRect(&area, -3, -3);
    --area.right;
    --area.bottom;
    return area;
}

int averageCharWidth(HWND box) {
    HDC dc = GetDC(box);
    HGDIOBJ previous = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
    TEXTMETRICW metrics = {};
    GetTextMetricsW(dc, &metrics);
    SelectObject(dc, previous);
    ReleaseDC(box, dc);
    return metrics.tmAveCharWidth;
}

int textExtent(HWND window, HFONT font, const wchar_t* text) {
    HDC dc = GetDC(window);
    HGDIOBJ previous = SelectObject(dc, font);
    SIZE extent = {};
    GetTextExtentPoint32W(dc, text, lstrlenW(text), &extent);
    SelectObject(dc, previous);
    ReleaseDC(window, dc);
    return extent.cx;
}

// Column widths from the list's width and the record, the titles placed over them, the column
// width of a multi-column list, and in that mode the list narrowed to whole columns.
void layoutColumns(HWND container, KVLB_LIST* list) {
    HWND box = InnerList(container);
    if (!box) return;
    RECT client;
    GetClientRect(box, &client);
    int width = client.right;
    int charWidth = averageCharWidth(box);
    short* columns = list->columnWidths;
    unsigned long style = list->style;

    int columnCount = 1;
    if ((style & KVLB_MULTICOLUMN) && list->columns > 0) {
        int setting = list->columns;
        if (setting > 6) {
            if ((style & KVLB_SECONDTEXT) && list->secondTextChars >= 1) setting += list->secondTextChars;
            columnCount = width / ((setting + 2) * charWidth + 22);
            if (columnCount < 1) columnCount = 1;
        } else {
            columnCount = setting;
        }
    }
    width /= columnCount;
    int columnWidth = width;

    if (style & KVLB_CHECKCOLUMN) {
        int least = (style & KVLB_MULTIPLESEL) && (style & KVLB_ANCHORMARK) ? kCheckWidthWithAnchor : kCheckWidth;
        if (columns[KVLB_COLUMN_CHECK] < least) columns[KVLB_COLUMN_CHECK] = static_cast<short>(least);
        width -= columns[KVLB_COLUMN_CHECK];
    }
    if (style & KVLB_PICTURES) {
        int widest, tallest;
        BitmapArrayExtent(list, &widest, &tallest);
        if ((style & KVLB_BITMAPARRAY) && widest > 0) {
            int fitting = (widest < client.right / 4 ? widest : client.right / 4) + 2;
            if (columns[KVLB_COLUMN_PICTURE] < fitting) columns[KVLB_COLUMN_PICTURE] = static_cast<short>(fitting);
        } else if (columns[KVLB_COLUMN_PICTURE] == 0) {
            columns[KVLB_COLUMN_PICTURE] = kCheckWidth;
        }
        width -= columns[KVLB_COLUMN_PICTURE];
    }
    if (style & KVLB_VALUES) {
        if (columns[KVLB_COLUMN_VALUE] == 0) columns[KVLB_COLUMN_VALUE] = kDefaultValueWidth;
        width -= columns[KVLB_COLUMN_VALUE];
    }
    if (style & KVLB_SECONDTEXT) {
        columns[KVLB_COLUMN_SECONDTEXT] = static_cast<short>(
            list->secondTextChars >= 1 ? charWidth * list->secondTextChars : columns[KVLB_COLUMN_TEXT] / 2);
        width -= columns[KVLB_COLUMN_SECONDTEXT];
    }
    columns[KVLB_COLUMN_TEXT] = static_cast<short>(width);

    RECT placed;
    GetWindowRect(box, &placed);
    MapWindowPoints(nullptr, container, reinterpret_cast<POINT*>(&placed), 2);
    int x = placed.left;
    for (const HeaderButton& header : kHeaders) {
        HWND button = GetDlgItem(container, header.id);
        if (!button) continue;
        bool shown = !header.shownBy || (style & header.shownBy);
        if (shown) {
            MoveWindow(button, x, placed.top - kHeaderHeight, columns[header.column], kHeaderHeight, TRUE);
            x += columns[header.column];
        }
        ShowWindow(button, shown ? SW_SHOWNA : SW_HIDE);
    }
    SendMessageW(box, LB_SETCOLUMNWIDTH, columnWidth, 0);
    if ((style & KVLB_MULTICOLUMN) && columnWidth > 0) {
        int spare = client.right % columnWidth;
        SetWindowPos(box, nullptr, 0, 0, placed.right - placed.left - spare, placed.bottom - placed.top,
                     SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

// Places the titles' row and the list in the list area, then lays out the columns.
void layout(HWND container) {
    KVLB_LIST* list = ListRecord(container);
    HWND box = InnerList(container);
    if (!list || !box) return;
    RECT area = listArea(container);
    if (GetDlgItem(container, KVLB_HEADER_TEXT)) area.top += kHeaderHeight;
    MoveWindow(box, area.left, area.top, area.right - area.left, area.bottom - area.top, TRUE);
    layoutColumns(container, list);
    InvalidateRect(container, nullptr, TRUE);
}

void createToggles(HWND container, KVLB_LIST* list) {
    int y = 0;
    for (const ToggleButton& toggle : kToggles) {
        if (!(list->toggles & toggle.madeBy)) continue;
        if (toggle.id == KVLB_TOGGLE_NUMBERS &&
            !((list->style & KVLB_MULTIPLESEL) && (list->style & KVLB_CHECKCOLUMN)))
            continue;
        wchar_t caption[kCaptionCapacity];
        readCaption(list, toggle.caption, caption);
        HWND button = CreateWindowExW(0, L"button", caption, kToggleStyle, 0, y, kToggleSize, kToggleSize,
                                      container, childId(toggle.id), list->instance, nullptr);
        if (!button) continue;
        y += kToggleSize;
        if (list->style & toggle.feature) SendMessageW(button, BM_SETSTATE, TRUE, 0);
        Kx1SetSubProc(button, Kx1LbBtnSubProc);
    }
}

// The titles, each as wide as its caption + 6 (the check column's 22), widths written back.
void createHeaders(HWND container, KVLB_LIST* list, const RECT& area) {
    HFONT font = static_cast<HFONT>(GetStockObject(ANSI_VAR_FONT));
    for (const HeaderButton& header : kHeaders) {
        wchar_t caption[kCaptionCapacity] = L"";
        int width = kCheckWidth;
        if (header.id != KVLB_HEADER_CHECK) {
            readCaption(list, header.caption, caption);
            width = textExtent(container, font, caption) + kCaptionPadding;
        }
        HWND button = CreateWindowExW(0, L"button", caption,
                                      header.id == KVLB_HEADER_CHECK ? kFirstHeaderStyle : kHeaderStyle,
                                      area.left, area.top, width, kHeaderHeight, container,
                                      childId(header.id), list->instance, nullptr);
        if (!button) continue;
        SendMessageW(button, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        list->columnWidths[header.column] = static_cast<short>(width);
    }
}

void destroyChildren(HWND container) {
    CancelPress(InnerList(container));
    HWND child = GetWindow(container, GW_CHILD);
    while (child) {
        HWND next = GetWindow(child, GW_HWNDNEXT);
        DestroyWindow(child);
        child = next;
    }
}

bool isContainer(HWND window) {
    wchar_t name[16];
    return window && GetClassNameW(window, name, 16) && lstrcmpiW(name, kClassName) == 0;
}

// Message 1124. A container that cannot be built destroys itself.
LRESULT build(HWND container, KVLB_LIST* list) {
    if (!isContainer(container)) return 0;
    bool attachedBefore = ListRecord(container) != nullptr;
    destroyChildren(container);
    if (!list) {
        DestroyWindow(container);
        return 0;
    }
    SetWindowLongW(container, 0, reinterpret_cast<LONG>(list));
    if (!(list->style & KVLB_BITMAPARRAY)) ConvertTypeLetters(list);
    if (list->style & KVLB_MULTICOLUMN) list->style &= ~KVLB_HEADERS;

    createToggles(container, list);
    RECT area = listArea(container);
    if (list->style & KVLB_HEADERS) {
        createHeaders(container, list, area);
        area.top += kHeaderHeight;
    } else {
        list->columnWidths[KVLB_COLUMN_CHECK] = kCheckWidth;
        list->columnWidths[KVLB_COLUMN_TEXT] = static_cast<short>(area.right - area.left - kCheckWidth);
    }

    DWORD style = kListStyle;
    if (list->style & KVLB_MULTIPLESEL) style |= LBS_MULTIPLESEL;
    style |= (list->style & KVLB_MULTICOLUMN) ? WS_HSCROLL | LBS_MULTICOLUMN : WS_VSCROLL;
    ClearEnterGuard();
    HWND box = CreateWindowExW(0, L"listbox", L"", style, area.left, area.top, area.right - area.left,
                               area.bottom - area.top, container, childId(KVLB_LIST_ID),
                               list->instance, nullptr);
    if (!box) {
        SetWindowLongW(container, 0, 0);
        DestroyWindow(container);
        return 0;
    }
    SendMessageW(box, WM_SETFONT, SendMessageW(GetParent(container), WM_GETFONT, 0, 0), FALSE);
    if (list->style & KVLB_BITMAPARRAY) {
        int height = static_cast<int>(SendMessageW(box, LB_GETITEMHEIGHT, 0, 0));
        SendMessageW(box, LB_SETITEMHEIGHT, 0, PictureRowHeight(list, box, height));
    }
    layoutColumns(container, list);
    Kx1SetSubProc(box, Kx1LbListSubProc);

    if ((list->style & KVLB_SELECTEDFIRST) || attachedBefore || list->sortMode) SortList(container, list->sortMode);
    else FillList(container);
    InvalidateRect(container, nullptr, TRUE);
    return 1;
}

// Message 1224.
LRESULT detach(HWND container, WPARAM detachIt, KVLB_LIST** out) {
    KVLB_LIST* list = ListRecord(container);
    if (out) *out = list;
    if (detachIt && list) {
        HWND box = InnerList(container);
        CancelPress(box);
        SendMessageW(box, LB_RESETCONTENT, 0, 0);  // its rows named the record's items
        SetWindowLongW(container, 0, 0);
    }
    return reinterpret_cast<LRESULT>(list);
}

void clickToggle(HWND container, KVLB_LIST* list, const ToggleButton& toggle, HWND button) {
    list->style ^= toggle.feature;
    SendMessageW(button, BM_SETSTATE, (list->style & toggle.feature) != 0, 0);
    layout(container);
    InvalidateRect(InnerList(container), nullptr, TRUE);
}

void onCommand(HWND container, int id, WORD code, HWND child) {
    KVLB_LIST* list = ListRecord(container);
    if (!list) return;
    if (id == KVLB_LIST_ID) {
        if (code == LBN_SELCHANGE && !IsMultiple(list)) NumberSingleSelection(InnerList(container), list);
        if (code == LBN_SELCHANGE || code == LBN_DBLCLK) NotifyParent(container, code);
        return;
    }
    if (code != BN_CLICKED) return;
    if (const ToggleButton* toggle = findToggle(id)) clickToggle(container, list, *toggle, child);
    else if (isHeader(id)) SortList(container, HeaderSortMode(list, id));
    else return;
    // The list keeps the keyboard; the titles show the new sort.
    SetFocus(InnerList(container));
    for (const HeaderButton& header : kHeaders) InvalidateRect(GetDlgItem(container, header.id), nullptr, FALSE);
}

void onDrawItem(HWND container, const DRAWITEMSTRUCT* draw) {
    KVLB_LIST* list = ListRecord(container);
    if (!list || !draw) return;
    if (draw->CtlType == ODT_LISTBOX && draw->CtlID == KVLB_LIST_ID) DrawListRow(container, list, draw);
    else if (draw->CtlType == ODT_BUTTON) DrawChildButton(container, list, draw);
}

bool onMeasureItem(HWND container, MEASUREITEMSTRUCT* measure) {
    KVLB_LIST* list = ListRecord(container);
    if (!list || !measure || measure->CtlType != ODT_LISTBOX || !(list->style & KVLB_BITMAPARRAY)) return false;
    HWND box = InnerList(container);
    if (box) measure->itemHeight = PictureRowHeight(list, box, measure->itemHeight);
    return true;
}

void onPaint(HWND container) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(container, &paint);
    if (ListRecord(container)) PaintFrame(container, dc, listArea(container));
    EndPaint(container, &paint);
}

}  // namespace

unsigned long ToggleFeature(int id) {
    const ToggleButton* toggle = findToggle(id);
    return toggle ? toggle->feature : 0;
}

KVLB_LIST* ListRecord(HWND container) {
    if (!isContainer(container)) return nullptr;
    return reinterpret_cast<KVLB_LIST*>(GetWindowLongW(container, 0));
}

void NotifyParent(HWND container, WORD code) {
    SendMessageW(GetParent(container), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(container), code),
                 reinterpret_cast<LPARAM>(container));
}

LRESULT KVKIT_CALL Kx1LbProc(HWND container, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message >= LB_ADDSTRING && message <= kLastListMessage)
        return HandleListMessage(container, message, wParam, lParam);
    switch (message) {
    case KVLB_BUILD:
        return build(container, reinterpret_cast<KVLB_LIST*>(lParam));
    case KVLB_DETACH:
        return detach(container, wParam, reinterpret_cast<KVLB_LIST**>(lParam));
    case WM_SIZE:
        layout(container);
        return 0;
    case WM_PAINT:
        onPaint(container);
        return 0;
    case WM_SETFOCUS:
        if (HWND box = InnerList(container)) SetFocus(box);
        return 0;
    case WM_ENABLE:
        InvalidateRect(container, nullptr, TRUE);
        InvalidateRect(InnerList(container), nullptr, TRUE);
        return 0;
    case WM_COMMAND:
        onCommand(container, LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
        return 0;
    case WM_DRAWITEM:
        onDrawItem(container, reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_MEASUREITEM:
        if (onMeasureItem(container, reinterpret_cast<MEASUREITEMSTRUCT*>(lParam))) return TRUE;
        break;
    }
    return DefWindowProcW(container, message, wParam, lParam);
}
