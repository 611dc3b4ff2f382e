// Dragging tree-view items: within the tree (the item moves, the tree scrolls when the mouse
// leaves it above or below) or onto another window (reported to the host). The process-wide tree
// drag flag is set for exactly the life of such a drag.
#include "views/treeview_internal.h"
#include "views/item_drag.h"
#include "include/kvkit_drag.h"

namespace {

// The parent's timer that scrolls the tree during a drag within it.
const UINT_PTR kScrollTimer = 0;
const UINT kScrollInterval = 75;
// How far (pixels) the cursor must be outside the tree before it scrolls, and how near the top or
// bottom edge a drop puts the item first or last.
const int kEdgeZone = 10;
// A drop this near the tree's left edge (pixels) goes to the top level.
const int kLeftEdge = 3;
// Characters of a label painted into a drag image, and the space between picture and label.
const int kLabelCapacity = 260;
const int kPictureGap = 3;

// The one tree drag of the process; the flag g_treeDragging tells whether it is under way.
struct TreeDrag {
    HTREEITEM source;
    HTREEITEM target;  // the drop-highlighted item, null until the mouse is over one
    HIMAGELIST image;  // drag towards another window: the tree's drag image, destroyed at the end
    POINT offset;      // drag towards another window: the parent's client offset in its window
    HWND captureWindow;
};
TreeDrag g_treeDrag;

COLORREF treeColour(HWND tree, UINT message, int systemColour) {
    COLORREF colour = static_cast<COLORREF>(SendMessageW(tree, message, 0, 0));
    return colour == CLR_NONE ? GetSysColor(systemColour) : colour;
}

// The item's picture and label as the tree shows them unselected, on a transparent background.
HIMAGELIST paintDragImage(HWND tree, HTREEITEM item) {
    RECT label;
    if (!TreeLabelRect(tree, item, &label)) return nullptr;
    auto pictures = reinterpret_cast<HIMAGELIST>(SendMessageW(tree, TVM_GETIMAGELIST, TVSIL_NORMAL, 0));
    int pictureWidth = 0, pictureHeight = 0;
    if (pictures) ImageList_GetIconSize(pictures, &pictureWidth, &pictureHeight);
    int textLeft = pictures ? pictureWidth + kPictureGap : 0;
    int width = textLeft + label.right - label.left;
    int height = label.bottom - label.top > pictureHeight ? label.bottom - label.top : pictureHeight;
    TVITEMW data = {};
    wchar_t text[kLabelCapacity] = L"";
    data.mask = TVIF_IMAGE | TVIF_TEXT | TVIF_HANDLE;
    data.hItem = item;
    data.pszText = text;
    data.cchTextMax = kLabelCapacity;
    SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&data));

    COLORREF background = treeColour(tree, TVM_GETBKCOLOR, COLOR_WINDOW);
    HDC screen = GetDC(tree);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP picture = CreateCompatibleBitmap(screen, width, height);
    HIMAGELIST image = ImageList_Create(width, height, ILC_COLOR24 | ILC_MASK, 1, 0);
    if (dc && picture && image) {
        HGDIOBJ oldBitmap = SelectObject(dc, picture);
        HBRUSH brush = CreateSolidBrush(background);
        RECT all = {0, 0, width, height};
        FillRect(dc, &all, brush);
        DeleteObject(brush);
        if (pictures) ImageList_Draw(pictures, data.iImage, dc, 0, (height - pictureHeight) / 2, ILD_NORMAL);
        HGDIOBJ oldFont = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(tree, WM_GETFONT, 0, 0)));
        SetBkMode(dc, TRANSPARENT);
        SetTextColor(dc, treeColour(tree, TVM_GETTEXTCOLOR, COLOR_WINDOWTEXT));
        RECT textRect = {textLeft, 0, width, height};
        DrawTextW(dc, data.pszText, -1, &textRect, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        SelectObject(dc, oldFont);
        SelectObject(dc, oldBitmap);
        ImageList_AddMasked(image, picture, background);
    }
    if (picture) DeleteObject(picture);
    if (dc) DeleteDC(dc);
    ReleaseDC(tree, screen);
    return image;
}

// The tree's own drag image of the item; when the tree makes none (or an empty one), a picture
// of the item painted here.
HIMAGELIST createDragImage(HWND tree, HTREEITEM item) {
    auto image = reinterpret_cast<HIMAGELIST>(
        SendMessageW(tree, TVM_CREATEDRAGIMAGE, 0, reinterpret_cast<LPARAM>(item)));
    if (image && ImageList_GetImageCount(image) > 0) return image;
    if (image) ImageList_Destroy(image);
    return paintDragImage(tree, item);
}

void setDropHighlight(HWND tree, HTREEITEM item) {
    SendMessageW(tree, TVM_SELECTITEM, TVGN_DROPHILITE, reinterpret_cast<LPARAM>(item));
}

HTREEITEM itemAt(HWND tree, POINT point) {
    TVHITTESTINFO hit = {};
    hit.pt = point;
    return reinterpret_cast<HTREEITEM>(SendMessageW(tree, TVM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
}

POINT cursorIn(HWND window) {
    POINT cursor;
    GetCursorPos(&cursor);
    ScreenToClient(window, &cursor);
    return cursor;
}

// Ends the drag's timer, image, capture and flag. The flag goes first, so that a host that
// cancels the drag when the capture goes finds none left, and tree copy and move work again
// for the handler that moves the item.
void endDrag(HWND timerWindow) {
    TreeDrag drag = g_treeDrag;
    g_treeDragging = 0;
    g_treeDrag.image = nullptr;
    KillTimer(timerWindow, kScrollTimer);
    EndDragImage();
    ReleaseCaptureOf(drag.captureWindow);
    ShowCursor(TRUE);
    if (drag.image) ImageList_Destroy(drag.image);
}

// A drag begun while another is under way replaces it.
void endPreviousDrag() {
    if (g_treeDragging) endDrag(g_treeDrag.captureWindow);
}

void beginDrag(HWND tree, HTREEITEM item) {
    g_treeDrag.captureWindow = GetParent(tree);
    SetCapture(g_treeDrag.captureWindow);
    g_treeDrag.source = item;
    g_treeDrag.target = nullptr;
    g_treeDragging = 1;
}

// Ends a drag within the tree and takes the drop highlight away.
void endDragInTree(HWND tree) {
    endDrag(g_treeDrag.captureWindow);
    if (IsWindow(tree)) setDropHighlight(tree, nullptr);
}

// The cursor more than 10 pixels above or below the tree: one line further up or down, unless the
// tree shows its first or last line already.
void scrollTowardsCursor(HWND tree, POINT cursor) {
    RECT client;
    GetClientRect(tree, &client);
    SCROLLINFO scroll = {};
    scroll.cbSize = sizeof(scroll);
    scroll.fMask = SIF_ALL;
    if (!GetScrollInfo(tree, SB_VERT, &scroll)) return;
    int lastPosition = scroll.nMax - (scroll.nPage > 0 ? static_cast<int>(scroll.nPage) - 1 : 0);
    HTREEITEM first = TreeNext(tree, nullptr, TVGN_FIRSTVISIBLE);
    HTREEITEM show = nullptr;
    if (cursor.y < client.top - kEdgeZone && scroll.nPos != 0) {
        show = TreeNext(tree, first, TVGN_PREVIOUSVISIBLE);
    } else if (cursor.y > client.bottom + kEdgeZone && scroll.nPos < lastPosition) {
        int fullyVisible = static_cast<int>(SendMessageW(tree, TVM_GETVISIBLECOUNT, 0, 0));
        show = first;
        for (int i = 0; i < fullyVisible && show; ++i) show = TreeNext(tree, show, TVGN_NEXTVISIBLE);
    }
    if (!show) return;
    HideDragImage();
    SendMessageW(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(show));
    UnhideDragImage();
}

}  // namespace

// --- within the tree ----------------------------------------------------------------------------

void KVKIT_CALL KxTreeView_OnBeginDrag(HWND tree, NMTREEVIEWW* notify) {
    if (!notify || !notify->itemNew.hItem || !IsWindow(tree)) return;
    endPreviousDrag();
    HTREEITEM item = notify->itemNew.hItem;
    SelectTreeItem(tree, item);
    HIMAGELIST image = createDragImage(tree, item);
    RECT label;
    if (!TreeLabelRect(tree, item, &label)) label = RECT();
    int indent = static_cast<int>(SendMessageW(tree, TVM_GETINDENT, 0, 0));
    BeginDragImage(image);
    // The drag works on its own copy of the image.
    if (image) ImageList_Destroy(image);
    ShowDragImage(tree, label.left + indent, label.top);
    beginDrag(tree, item);
    SetTimer(g_treeDrag.captureWindow, kScrollTimer, kScrollInterval, nullptr);
}

void KVKIT_CALL KxTreeView_OnMouseMove(HWND window, HWND tree, int x, int y) {
    if (!g_treeDragging || !IsWindow(tree)) return;
    POINT point = {x, y};
    MapWindowPoints(window, tree, &point, 1);
    HTREEITEM item = itemAt(tree, point);
    if (item && item != g_treeDrag.target) {
        HideDragImage();
        setDropHighlight(tree, item);
        UnhideDragImage();
        g_treeDrag.target = item;
    }
    MoveDragImage(point.x, point.y);
}

void KVKIT_CALL KxTreeView_OnTimer(HWND tree) {
    if (!g_treeDragging || !IsWindow(tree)) return;
    POINT cursor = cursorIn(tree);
    HTREEITEM item = itemAt(tree, cursor);
    if (!item) {
        scrollTowardsCursor(tree, cursor);
    } else if (item != g_treeDrag.target) {
        // The tree moved under a resting cursor: the item there becomes the target.
        HideDragImage();
        SendMessageW(tree, TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
        setDropHighlight(tree, nullptr);
        UnhideDragImage();
        g_treeDrag.target = item;
    }
    MoveDragImage(cursor.x, cursor.y);
}

void KVKIT_CALL KxTreeView_OnLButtonUp(HWND tree) {
    if (!g_treeDragging) return;
    endDragInTree(tree);
    HTREEITEM source = g_treeDrag.source, target = g_treeDrag.target;
    if (!IsWindow(tree) || !target) return;
    POINT cursor = cursorIn(tree);
    RECT client;
    GetClientRect(tree, &client);
    SelectTreeItem(tree, target);
    if (target == source) return;
    HTREEITEM after = target;
    if (cursor.y < kEdgeZone) after = TVI_FIRST;
    else if (cursor.y > client.bottom - kEdgeZone || !TreeSibling(tree, target)) after = TVI_LAST;
    KxTreeView_MoveItem(tree, source, nullptr, after, 0);
}

void KVKIT_CALL KxTreeView_OnLButtonUpWithMove(HWND tree, int move) {
    KxTreeView_OnLButtonUpWithMoveEx(tree, move, nullptr, nullptr);
}

void KVKIT_CALL KxTreeView_OnLButtonUpWithMoveEx(HWND tree, int move, HTREEITEM* newItem,
                                                 HTREEITEM* insertAfter) {
    if (!g_treeDragging) return;
    endDragInTree(tree);
    HTREEITEM target = g_treeDrag.target;
    if (!move || !target || !IsWindow(tree)) return;
    HTREEITEM after = TreeNext(tree, target, TVGN_PREVIOUS);
    if (!after) after = TVI_FIRST;
    HTREEITEM moved = KxTreeView_MoveItem(tree, g_treeDrag.source, nullptr, after, 0);
    if (newItem) *newItem = moved;
    if (insertAfter) *insertAfter = after;
}

void KVKIT_CALL KxTreeView_OnLButtonUpMoveUnder(HWND tree, HTREEITEM* newItem,
                                                HTREEITEM* newParent, HTREEITEM* insertAfter) {
    if (!g_treeDragging) return;
    endDragInTree(tree);
    HTREEITEM source = g_treeDrag.source, target = g_treeDrag.target;
    if (!target || !IsWindow(tree)) return;
    bool atLeftEdge = cursorIn(tree).x < kLeftEdge;
    HTREEITEM parent;
    if (target == source) {
        // Dropped on itself: only the left edge means something, the top level.
        if (!atLeftEdge) return;
        parent = TVI_ROOT;
    } else {
        // Never into its own subtree.
        for (HTREEITEM above = target; above; above = TreeParent(tree, above))
            if (above == source) return;
        parent = atLeftEdge ? TVI_ROOT : target;
    }
    HTREEITEM after = TreeNext(tree, target, TVGN_PREVIOUS);
    if (!after) after = TVI_FIRST;
    HTREEITEM moved = KxTreeView_MoveItem(tree, source, parent, after, 1);
    if (newItem) *newItem = moved;
    if (newParent) *newParent = parent;
    if (insertAfter) *insertAfter = after;
}

int KVKIT_CALL KxTreeView_OnCancelDrag(HWND tree) {
    if (!g_treeDragging) return 0;
    endDragInTree(tree);
    return 1;
}

// --- onto another window ------------------------------------------------------------------------

void KVKIT_CALL KxTreeView_OnBeginDragEx(HWND tree, NMTREEVIEWW* notify) {
    if (!notify || !notify->itemNew.hItem || !IsWindow(tree)) return;
    endPreviousDrag();
    HTREEITEM item = notify->itemNew.hItem;
    SelectTreeItem(tree, item);
    HIMAGELIST image = createDragImage(tree, item);
    POINT offset = ClientOffsetInWindow(GetParent(tree));
    BeginDragImage(image);
    beginDrag(tree, item);
    g_treeDrag.image = image;
    g_treeDrag.offset = offset;
}

void KVKIT_CALL KxTreeView_OnMouseMoveEx(HWND window, HWND unused, int x, int y) {
    if (!g_treeDragging || !IsWindow(window)) return;
    int imageX = x + g_treeDrag.offset.x, imageY = y + g_treeDrag.offset.y;
    ShowDragImage(window, imageX, imageY);
    MoveDragImage(imageX, imageY);
}

int KVKIT_CALL KxTreeView_OnLButtonUpEx(HWND window, int x, int y, HWND* dropWindow,
                                        int* dropRow) {
    if (!g_treeDragging) return 0;
    endDrag(window);
    if (!dropWindow) return 0;
    POINT screen;
    HWND found = IsWindow(window) ? WindowAtClientPoint(window, x, y, &screen) : nullptr;
    if (!found || found == window) {
        *dropWindow = window;
        if (dropRow) *dropRow = -1;
        return 0;
    }
    if (!HasWindowClass(found, WC_LISTVIEWW)) {
        *dropWindow = found;
        return 1;
    }
    if (dropRow) {
        LVHITTESTINFO hit = {};
        hit.pt = screen;
        ScreenToClient(found, &hit.pt);
        int row = static_cast<int>(
            SendMessageW(found, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
        *dropRow = row >= 0 && (hit.flags & LVHT_ONITEM) ? hit.iItem : -1;
    }
    return 1;
}
