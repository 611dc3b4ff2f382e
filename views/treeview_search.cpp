// Finding tree items by their stored value or by their text.
#include "views/treeview_internal.h"
#include <wchar.h>
#include "kvtext.h"

namespace {

// Item texts are read into 101 characters, at most 100 of them with the terminator.
const int kItemTextBlock = 101;
const int kItemTextLimit = 100;
// The number field of an item text such as "(1234) Name": four characters and the terminator.
const int kNumberFieldCapacity = 5;
// The exit code of a program stopped by a guarded copy that would overrun its buffer.
const UINT kBufferOverrunExit = 0xC0000409;

HTREEITEM findByValue(HWND tree, HTREEITEM item, LPARAM value, KXTREEMATCH match) {
    for (; item; item = TreeSibling(tree, item)) {
        LPARAM stored = KxTreeView_GetItemData(tree, item);
        if (match ? match(tree, item, stored, value) != 0 : stored == value) return item;
        HTREEITEM found = findByValue(tree, TreeChild(tree, item), value, match);
        if (found) return found;
    }
    return nullptr;
}

// One text search; shared by the whole walk.
struct TextSearch {
    HWND tree;
    const wchar_t* text;
    int length;
    bool prefix;
    bool number;          // the text begins with a digit
    HTREEITEM* marker;    // items count only once the walk has passed *marker
    HTREEITEM lastMatch;  // backward: the last match before the marker
    bool markerReached;
    wchar_t* itemText;    // kItemTextBlock characters
};

// Copies the number field of "(1234) Name" into `field`. The field is a fixed five-character
// buffer; a longer number means texts this search cannot handle, and like any guarded copy that
// would overrun its buffer it stops the program.
void copyNumberField(wchar_t* field, const wchar_t* from, int length) {
    if (length < 0) length = 0;
    if (length >= kNumberFieldCapacity) TerminateProcess(GetCurrentProcess(), kBufferOverrunExit);
    kv_strcpy(field, from, length + 1);
}

bool matches(TextSearch& search, HTREEITEM item) {
    wchar_t* text = search.itemText;
    ReadTreeItemText(search.tree, item, text, kItemTextLimit);
    if (!search.prefix) {
        CharLowerW(text);
        return wcsstr(text, search.text) != nullptr;
    }
    // "(1234) Name": a number is compared with the number field, a text with what follows.
    const wchar_t* compared = text;
    wchar_t field[kNumberFieldCapacity];
    if (const wchar_t* close = wcschr(text, L')')) {
        if (search.number) {
            copyNumberField(field, text + 1, static_cast<int>(close - text) - 1);
            compared = field;
        } else {
            compared = close + 1;
        }
    }
    return _wcsnicmp(compared, search.text, search.length) == 0;
}

// Forward: the first item after the marker that matches.
HTREEITEM walkForward(TextSearch& search, HTREEITEM item) {
    for (; item; item = TreeSibling(search.tree, item)) {
        if (*search.marker) {
            if (item == *search.marker) *search.marker = nullptr;
        } else if (matches(search, item)) {
            return item;
        }
        HTREEITEM found = walkForward(search, TreeChild(search.tree, item));
        if (found) return found;
    }
    return nullptr;
}

// Backward: remembers every match until the walk reaches the marker.
void walkBackward(TextSearch& search, HTREEITEM item) {
    for (; item && !search.markerReached; item = TreeSibling(search.tree, item)) {
        if (*search.marker && item == *search.marker) {
            *search.marker = nullptr;
            search.markerReached = true;
            return;
        }
        if (matches(search, item)) search.lastMatch = item;
        walkBackward(search, TreeChild(search.tree, item));
    }
}

}  // namespace

HTREEITEM KVKIT_CALL KxTreeView_GetItemWithData(HWND tree, HTREEITEM start, LPARAM value,
                                                KXTREEMATCH match) {
    if (g_treeDragging) return nullptr;
    return findByValue(tree, start ? start : TreeRoot(tree), value, match);
}

HTREEITEM KVKIT_CALL KxTreeView_GetItemWithText(HWND tree, HTREEITEM start, wchar_t* text,
                                                int nested, int prefix, HTREEITEM* marker) {
    return KxTreeView_GetItemWithTextEx(tree, start, text, nested, prefix, marker, nullptr, 1);
}

HTREEITEM KVKIT_CALL KxTreeView_GetItemWithTextEx(HWND tree, HTREEITEM start, wchar_t* text,
                                                  int nested, int prefix, HTREEITEM* marker,
                                                  HTREEITEM* out, int forward) {
    if (out) *out = nullptr;
    if (!text) return nullptr;
    if (!prefix && !start) CharLowerW(text);

    HTREEITEM localMarker = nullptr;
    if (!marker) marker = &localMarker;
    // A search of the whole tree begins after the selection.
    if (!nested && !start) *marker = TreeSelection(tree);

    TextSearch search = {};
    search.tree = tree;
    search.text = text;
    search.length = lstrlenW(text);
    search.prefix = prefix != 0;
    search.number = text[0] >= L'0' && text[0] <= L'9';
    search.marker = marker;
    search.itemText = static_cast<wchar_t*>(GetMemory(kItemTextBlock * sizeof(wchar_t)));
    if (!search.itemText) return nullptr;

    HTREEITEM first = start ? start : TreeRoot(tree);
    HTREEITEM found;
    if (forward) {
        found = walkForward(search, first);
    } else {
        walkBackward(search, first);
        found = search.lastMatch;
    }
    FreeMemory(search.itemText);
    if (out) *out = found;
    return found;
}
