// Bitmap chooser: a modal dialog showing the bitmap resources of a module as thumbnails, from
// which the user picks one. The dialog template comes from the language module; the dialog is
// resizable through the library's resizable-dialog functions.
#include "core/library.h"
#include "graphics/memory_dc.h"
#include "graphics/thumbnail.h"
#include "include/kvkit_bitmap.h"
#include "include/kvkit_diagnostics.h"
#include "include/kvkit_resample.h"
#include "include/kvkit_sizedlg.h"
#include <commctrl.h>
#include "kvtext.h"

namespace {

const int kDialogTemplate = 2075;
const int kListId = 100;
const int kSizeTextId = 101;
const int kDefaultThumbnail = 48;
const int kSmallestThumbnail = 16, kLargestThumbnail = 256;
const int kThumbnailMargin = 2;     // pixels kept free around a picture in its thumbnail
const double kMostEnlargement = 3.0;
const int kIdentifierCapacity = 256;
// The list and the size text follow the dialog's right and bottom edges; the buttons keep to the
// lower right corner by the defaults.
const KXSIZE_ATTR kLayout[] = {
    {kListId, KXSIZE_SIZE_RIGHT | KXSIZE_SIZE_BOTTOM | KXSIZE_ANCHOR_RIGHT | KXSIZE_ANCHOR_BOTTOM},
    {kSizeTextId, KXSIZE_ANCHOR_BOTTOM},
};

// The call's state; the dialog keeps its address in DWLP_USER.
struct Chooser {
    HINSTANCE module;
    wchar_t selected[kIdentifierCapacity];  // the identifier to select first, "" for none
    int thumbnailSize;
    HWND list;
    HIMAGELIST thumbnails;
    bool failed;       // memory ran out while filling
    wchar_t* chosen;   // kvtext block for the caller
};

// A resource name as its identifier text: the name, or "#" and the number.
void identifierOf(const wchar_t* name, wchar_t* text) {
    if (IS_INTRESOURCE(name)) wsprintfW(text, L"#%u", static_cast<unsigned>(reinterpret_cast<UINT_PTR>(name)));
    else kv_strcpy(text, name, kIdentifierCapacity);
}

wchar_t* copyText(const wchar_t* text) {
    int length = lstrlenW(text);
    auto* copy = static_cast<wchar_t*>(GetMemory((length + 1) * sizeof(wchar_t)));
    if (copy) kv_strcpy(copy, text, length + 1);
    return copy;
}

// The picture resized to fit the thumbnail (proportions kept, enlarged three times at most) and
// centred on a square of its background colour `key`.
HBITMAP makeThumbnail(HBITMAP picture, int size, COLORREF key) {
    int width, height;
    if (!BitmapSize(picture, &width, &height) || width <= 0 || height <= 0) return nullptr;
    double room = size - 2 * kThumbnailMargin;
    double scale = room / width < room / height ? room / width : room / height;
    if (scale > kMostEnlargement) scale = kMostEnlargement;
    int fitWidth = static_cast<int>(width * scale + 0.5), fitHeight = static_cast<int>(height * scale + 0.5);
    return FitPictureOnSquare(picture, fitWidth, fitHeight, size, key);
}

// Adds one bitmap resource: its thumbnail, its label and, as the item's value, its identifier.
BOOL CALLBACK addBitmap(HMODULE module, LPCWSTR, LPWSTR name, LONG_PTR data) {
    auto* chooser = reinterpret_cast<Chooser*>(data);
    HBITMAP picture = LoadBitmapW(module, name);
    if (!picture) return TRUE;  // a resource that does not load is left out
    COLORREF key = Kx1GetBmBkColor(picture);
    HBITMAP thumbnail = makeThumbnail(picture, chooser->thumbnailSize, key);
    DeleteObject(picture);
    wchar_t identifier[kIdentifierCapacity];
    identifierOf(name, identifier);
    wchar_t* value = copyText(identifier);
    int image = thumbnail ? ImageList_AddMasked(chooser->thumbnails, thumbnail, key) : -1;
    if (thumbnail) DeleteObject(thumbnail);
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    item.iItem = ListView_GetItemCount(chooser->list);
    item.pszText = identifier[0] == L'#' ? identifier + 1 : identifier;
    item.iImage = image;
    item.lParam = reinterpret_cast<LPARAM>(value);
    if (!value || image < 0 || ListView_InsertItem(chooser->list, &item) < 0) {
        FreeMemory(value);
        chooser->failed = true;
        return FALSE;
    }
    return TRUE;
}

const wchar_t* identifierOfItem(HWND list, int index) {
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = index;
    return ListView_GetItem(list, &item) ? reinterpret_cast<const wchar_t*>(item.lParam) : nullptr;
}

void showSize(HWND dialog, const Chooser& chooser, int index) {
    wchar_t text[kIdentifierCapacity + 32] = L"";
    const wchar_t* identifier = index >= 0 ? identifierOfItem(chooser.list, index) : nullptr;
    HBITMAP picture = identifier ? LoadBitmapW(chooser.module, identifier) : nullptr;
    int width, height;
    if (BitmapSize(picture, &width, &height)) wsprintfW(text, L"%s: %d x %d", identifier, width, height);
    if (picture) DeleteObject(picture);
    SetDlgItemTextW(dialog, kSizeTextId, text);
}

bool fill(HWND dialog, Chooser& chooser) {
    chooser.list = GetDlgItem(dialog, kListId);
    if (!chooser.list) return false;
    int size = chooser.thumbnailSize;
    chooser.thumbnails = ImageList_Create(size, size, ILC_COLOR24 | ILC_MASK, 16, 16);
    if (!chooser.thumbnails) return false;
    // The dialog, not the list, destroys the thumbnails, whatever the template's styles.
    SetWindowLongW(chooser.list, GWL_STYLE, GetWindowLongW(chooser.list, GWL_STYLE) | LVS_SHAREIMAGELISTS);
    ListView_SetImageList(chooser.list, chooser.thumbnails, LVSIL_NORMAL);
    ListView_SetIconSpacing(chooser.list, size + 24, size + 30);
    EnumResourceNamesW(chooser.module, RT_BITMAP, addBitmap, reinterpret_cast<LONG_PTR>(&chooser));
    return !chooser.failed && ListView_GetItemCount(chooser.list) > 0;
}

void selectFirst(Chooser& chooser) {
    int index = 0;
    for (int i = 0, count = ListView_GetItemCount(chooser.list); i < count && chooser.selected[0]; ++i) {
        if (lstrcmpiW(identifierOfItem(chooser.list, i), chooser.selected) == 0) {
            index = i;
            break;
        }
    }
    ListView_SetItemState(chooser.list, index, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(chooser.list, index, FALSE);
}

void release(Chooser& chooser) {
    for (int i = 0, count = chooser.list ? ListView_GetItemCount(chooser.list) : 0; i < count; ++i)
        FreeMemory(const_cast<wchar_t*>(identifierOfItem(chooser.list, i)));
    if (chooser.list) ListView_DeleteAllItems(chooser.list);
    if (chooser.thumbnails) ImageList_Destroy(chooser.thumbnails);
    chooser.thumbnails = nullptr;
}

// OK: the selected picture's identifier goes to the caller. Nothing selected: a beep.
void choose(HWND dialog, Chooser& chooser) {
    int index = ListView_GetNextItem(chooser.list, -1, LVNI_SELECTED);
    const wchar_t* identifier = index >= 0 ? identifierOfItem(chooser.list, index) : nullptr;
    if (!identifier) {
        MessageBeep(0);
        return;
    }
    chooser.chosen = copyText(identifier);
    EndDialog(dialog, chooser.chosen ? IDOK : IDCANCEL);
}

INT_PTR onNotify(HWND dialog, Chooser& chooser, NMHDR* notify) {
    if (notify->idFrom != kListId) return FALSE;
    if (notify->code == LVN_ITEMCHANGED) {
        auto* change = reinterpret_cast<NMLISTVIEW*>(notify);
        if ((change->uChanged & LVIF_STATE) && (change->uNewState & LVIS_SELECTED))
            showSize(dialog, chooser, change->iItem);
    } else if (notify->code == NM_DBLCLK && reinterpret_cast<NMITEMACTIVATE*>(notify)->iItem >= 0) {
        choose(dialog, chooser);
    }
    return FALSE;
}

INT_PTR CALLBACK chooserProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* chooser = reinterpret_cast<Chooser*>(GetWindowLongPtrW(dialog, DWLP_USER));
    switch (message) {
    case WM_INITDIALOG:
        chooser = reinterpret_cast<Chooser*>(lParam);
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        if (!fill(dialog, *chooser)) {
            EndDialog(dialog, IDCANCEL);
            return TRUE;
        }
        KxSizeDlgStart(dialog, sizeof(kLayout) / sizeof(kLayout[0]), kLayout, 1);
        selectFirst(*chooser);
        SetFocus(chooser->list);
        return FALSE;  // the focus is set
    case WM_SIZING:
        return KxSizingDlg(dialog, static_cast<UINT>(wParam), lParam);
    case WM_SIZE:
        KxSizeDlg(dialog, static_cast<UINT>(wParam), lParam);
        return TRUE;
    case WM_NOTIFY:
        return chooser ? onNotify(dialog, *chooser, reinterpret_cast<NMHDR*>(lParam)) : FALSE;
    case WM_COMMAND:
        if (!chooser) return FALSE;
        if (LOWORD(wParam) == IDOK) choose(dialog, *chooser);
        else if (LOWORD(wParam) == IDCANCEL) EndDialog(dialog, IDCANCEL);
        return TRUE;
    case WM_DESTROY:
        if (chooser) release(*chooser);
        KxSizeDlgEnd(dialog);
        return TRUE;
    }
    return FALSE;
}

}  // namespace

wchar_t* KVKIT_CALL KxChooseBitmap(HWND owner, HINSTANCE module, const wchar_t* selected,
                                   int thumbnailSize) {
    if (!module) return nullptr;
    if (thumbnailSize == 0) thumbnailSize = kDefaultThumbnail;
    if (thumbnailSize < kSmallestThumbnail || thumbnailSize > kLargestThumbnail) return nullptr;
    Chooser chooser = {};
    chooser.module = module;
    chooser.thumbnailSize = thumbnailSize;
    if (selected) identifierOf(selected, chooser.selected);
    DialogBoxParamW(g_textModule, MAKEINTRESOURCEW(kDialogTemplate), owner, chooserProc,
                    reinterpret_cast<LPARAM>(&chooser));
    return chooser.chosen;
}
