// Resizable dialogs: the process-wide dialog table, child registration with flag resolution, the
// layout pass, the size grip and the placement stored in the registry.
#include "core/library.h"
#include "include/kvkit_sizedlg.h"
#include <commctrl.h>
#include <math.h>
#include "kvtext.h"

namespace {

// One laid-out child of a dialog.
struct SizeChild {
    HWND window;
    int id;
    unsigned long flags;
    int skipOnce;       // 1: the next layout pass leaves the child alone
    RECT design;        // in the client coordinates of the child's parent
    RECT tabDisplay;    // tab controls only: the page area of the design rectangle
    int rightMargin;    // parent client right - design right (KXSIZE_ANCHOR_RIGHT)
    int bottomMargin;   // parent client bottom - design bottom (KXSIZE_ANCHOR_BOTTOM)
};

// One registered dialog.
struct SizeDialog {
    HWND window;
    RECT initialClient;  // right and bottom are the design client width and height
    RECT initialWindow;  // screen coordinates; its size is the minimum window size
    int attributeCount;
    KXSIZE_ATTR* attributes;
    int childCount;
    SizeChild* children;
    HWND grip;
};

// The dialog table, freed when its last record goes.
SizeDialog* g_dialogs;
int g_dialogCount;

// Registry key prefix and value name of the stored placement.
const wchar_t* g_placementKeyPrefix = L"Software\\Veltrix\\korvane.desk\\dialogs\\";
const wchar_t* g_placementValueName = L"position";
const int kPlacementKeyLength = 260;
const DWORD kPlacementBytes = 44;
static_assert(sizeof(WINDOWPLACEMENT) == 44, "WINDOWPLACEMENT is stored as 44 bytes");

const int kGripId = 39999;
const int kGripBitmap = 1600;

const wchar_t kTabControlClass[] = L"SysTabControl32";

struct IdDefault {
    int id;
    unsigned long flags;
};
const IdDefault kIdDefaults[] = {
    {IDOK, KXSIZE_BOTTOM_RIGHT},
    {IDCANCEL, KXSIZE_BOTTOM_RIGHT},
};

// A class row matches when all `required` style bits are set and none of `excluded`.
struct ClassDefault {
    const wchar_t* className;
    DWORD required;
    DWORD excluded;
    unsigned long flags;
};
const ClassDefault kClassDefaults[] = {
    {L"Button", 0, 7, KXSIZE_SCALE_WIDTH},  // plain push buttons only
    {L"Combobox", 0, 0, KXSIZE_SCALE_WIDTH},
    {L"ComboboxEx32", 0, 0, KXSIZE_SCALE_WIDTH},
    {L"Edit", 0, ES_MULTILINE, KXSIZE_SCALE_WIDTH},
    {L"EditButton", 0, 0, KXSIZE_MOVE},
    {L"szColorBoxClass", 0, 0, KXSIZE_SCALE_WIDTH},
    {L"kx2ImgButton", 0, 0, KXSIZE_MOVE},
    {L"SysDateTimePick32", 0, 0, KXSIZE_SCALE_WIDTH},
};

SizeDialog* findDialog(HWND window) {
    for (int i = 0; i < g_dialogCount; ++i)
        if (g_dialogs[i].window == window) return &g_dialogs[i];
    return nullptr;
}

// The record of the window, or else that of its parent.
SizeDialog* findDialogOrParent(HWND window) {
    SizeDialog* dialog = findDialog(window);
    return dialog ? dialog : findDialog(GetParent(window));
}

bool isClass(HWND window, const wchar_t* className) {
    wchar_t name[100];
    if (!GetClassNameW(window, name, 100)) return false;
    return lstrcmpiW(name, className) == 0;
}

int width(const RECT& rect) { return rect.right - rect.left; }
int height(const RECT& rect) { return rect.bottom - rect.top; }

RECT rectInParent(HWND child) {
    RECT rect;
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

unsigned long resolveFlags(const SizeDialog& dialog, HWND child) {
    int id = GetDlgCtrlID(child);
    for (int i = 0; i < dialog.attributeCount; ++i) {
        if (dialog.attributes[i].id != id) continue;
        if (dialog.attributes[i].flags) return dialog.attributes[i].flags;
        break;  // an entry with flags 0 hands the control to the defaults
    }
    for (const IdDefault& row : kIdDefaults)
        if (row.id == id && row.flags) return row.flags;

    unsigned long flags = KXSIZE_SCALE;
    wchar_t className[100];
    if (!GetClassNameW(child, className, 100)) className[0] = 0;
    DWORD style = static_cast<DWORD>(GetWindowLongW(child, GWL_STYLE));
    for (const ClassDefault& row : kClassDefaults) {
        if (lstrcmpiW(className, row.className) == 0 && (row.required | style) == style &&
            (row.excluded & style) == 0)
            flags = row.flags;  // the last matching row wins
    }
    return flags;
}

// Adds a child record. A failed append leaves the dialog as it was; callers still succeed.
void registerChild(SizeDialog& dialog, HWND window, unsigned long flags, int refId) {
    SizeChild child = {};
    child.window = window;
    child.flags = flags ? flags : resolveFlags(dialog, window);
    child.id = GetDlgCtrlID(window);
    child.design = rectInParent(window);
    if (refId < 0) {
        if (isClass(window, kTabControlClass)) {
            child.tabDisplay = child.design;
            SendMessageW(window, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&child.tabDisplay));
        }
        child.skipOnce = 0;
    } else {
        // A page placed into a tab control takes the tab's page area as its design rectangle.
        for (int i = 0; i < dialog.childCount; ++i)
            if (dialog.children[i].id == refId) child.design = dialog.children[i].tabDisplay;
        child.skipOnce = 1;
    }
    if (child.flags & (KXSIZE_ANCHOR_RIGHT | KXSIZE_ANCHOR_BOTTOM)) {
        RECT parent;
        GetClientRect(GetParent(window), &parent);
        if (child.flags & KXSIZE_ANCHOR_RIGHT) child.rightMargin = parent.right - child.design.right;
        if (child.flags & KXSIZE_ANCHOR_BOTTOM) child.bottomMargin = parent.bottom - child.design.bottom;
    }
    void* grown = AddMemory(dialog.children, dialog.childCount * sizeof(SizeChild), &child,
                            sizeof(SizeChild));
    if (!grown) return;
    dialog.children = static_cast<SizeChild*>(grown);
    ++dialog.childCount;
}

void registerDirectChildren(SizeDialog& dialog, HWND window) {
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        registerChild(dialog, child, 0, -1);
}

HWND createGrip(HWND dialog, const RECT& client) {
    HWND grip = CreateWindowExW(0, L"Static", L"",
                                WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SS_BITMAP, 0, 0, 0, 0,
                                dialog, reinterpret_cast<HMENU>(static_cast<INT_PTR>(kGripId)),
                                g_libraryModule, nullptr);
    if (!grip) return nullptr;
    HANDLE bitmap = LoadImageW(g_libraryModule, MAKEINTRESOURCEW(kGripBitmap), IMAGE_BITMAP, 0, 0,
                               LR_LOADTRANSPARENT | LR_LOADMAP3DCOLORS);
    SendMessageW(grip, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap));
    BITMAP info = {};
    if (bitmap) GetObjectW(bitmap, sizeof(info), &info);
    // One pixel past the client area on purpose, so that the grip sits flush with the frame.
    SetWindowPos(grip, HWND_BOTTOM, client.right - info.bmWidth + 1,
                 client.bottom - info.bmHeight + 1, info.bmWidth, info.bmHeight, SWP_NOACTIVATE);
    return grip;
}

// Deletes the grip bitmap and frees the arrays of a record, leaving it empty.
void releaseDialog(SizeDialog& dialog) {
    if (dialog.grip) {
        HGDIOBJ bitmap = reinterpret_cast<HGDIOBJ>(SendMessageW(dialog.grip, STM_GETIMAGE, IMAGE_BITMAP, 0));
        if (bitmap) DeleteObject(bitmap);
        dialog.grip = nullptr;
    }
    if (dialog.childCount > 0 && dialog.children) FreeMemory(dialog.children);
    dialog.children = nullptr;
    dialog.childCount = 0;
    if (dialog.attributeCount > 0 && dialog.attributes) FreeMemory(dialog.attributes);
    dialog.attributes = nullptr;
    dialog.attributeCount = 0;
}

// trunc(value x growth / 100): the offset by which an edge at `value` moves.
int growthOffset(int value, double growth) { return static_cast<int>(value * growth / 100.0); }

void layoutChild(const SizeChild& child, double growthX, double growthY) {
    if (!child.flags || !IsWindow(child.window)) return;
    int left = child.design.left, top = child.design.top;
    int right = child.design.right, bottom = child.design.bottom;
    int w = right - left, h = bottom - top;
    int offsetX = growthOffset(left, growthX), offsetY = growthOffset(top, growthY);
    RECT parent;
    GetClientRect(GetParent(child.window), &parent);
    RECT current;
    GetWindowRect(child.window, &current);

    if (child.flags & KXSIZE_MOVE_LEFT) left += offsetX;
    if (child.flags & KXSIZE_MOVE_TOP) top += offsetY;

    if (child.flags & KXSIZE_SIZE_RIGHT) {
        right = (child.flags & KXSIZE_ANCHOR_RIGHT) ? parent.right - child.rightMargin
                                                    : right + growthOffset(right, growthX);
        w = right - left;
    } else if (child.flags & KXSIZE_KEEP_WIDTH) {
        w = width(current);
    } else if (child.flags & KXSIZE_ANCHOR_RIGHT) {
        right = parent.right - child.rightMargin;
        left = right - w;
    }

    if (child.flags & KXSIZE_SIZE_BOTTOM) {
        bottom = (child.flags & KXSIZE_ANCHOR_BOTTOM) ? parent.bottom - child.bottomMargin
                                                      : bottom + growthOffset(bottom, growthY);
        h = bottom - top;
    } else if (child.flags & KXSIZE_KEEP_HEIGHT) {
        h = height(current);
    } else if (child.flags & KXSIZE_ANCHOR_BOTTOM) {
        bottom = parent.bottom - child.bottomMargin;
        top = bottom - h;
    }

    if (child.flags & KXSIZE_CENTER_H) left = (parent.right - parent.left - w) / 2 + parent.left;
    if (child.flags & KXSIZE_CENTER_V) top = (parent.bottom - parent.top - h) / 2 + parent.top;
    MoveWindow(child.window, left, top, w, h, TRUE);
}

// Growth of the client size over the design size in per cent; never negative.
double growthPercent(int current, int design) {
    if (design <= 0) return 0.0;
    int grown = current > design ? current - design : 0;
    return static_cast<double>(grown * 100) / design;
}

// The area a DS_CENTER dialog is centred in: the monitor of the session's main window, or the
// primary screen when that cannot be found.
RECT centringArea() {
    RECT area = {0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
    KVSESSION* session = GlobalSession();
    if (!session || !session->mainWindow) return area;
    HMONITOR monitor = MonitorFromWindow(session->mainWindow, MONITOR_DEFAULTTONEAREST);
    MONITORINFO info = {};
    info.cbSize = sizeof(info);
    if (monitor && GetMonitorInfoW(monitor, &info)) area = info.rcMonitor;
    return area;
}

void placementKeyPath(const wchar_t* name, wchar_t* path) {
    kv_strcpy(path, g_placementKeyPrefix, kPlacementKeyLength);
    kv_strcat(path, name, kPlacementKeyLength);
}

}  // namespace

int KVKIT_CALL KxSizeDlgStart(HWND window, int count, const KXSIZE_ATTR* attributes, int grip) {
    SizeDialog dialog = {};
    dialog.window = window;
    GetClientRect(window, &dialog.initialClient);
    GetWindowRect(window, &dialog.initialWindow);
    if (count > 0 && attributes) {
        dialog.attributes = static_cast<KXSIZE_ATTR*>(GetMemory(count * sizeof(KXSIZE_ATTR)));
        if (dialog.attributes) {
            CopyMemory(dialog.attributes, attributes, count * sizeof(KXSIZE_ATTR));
            dialog.attributeCount = count;
        }
    }
    registerDirectChildren(dialog, window);
    if (grip) {
        dialog.grip = createGrip(window, dialog.initialClient);
        if (dialog.grip) registerChild(dialog, dialog.grip, KXSIZE_BOTTOM_RIGHT, -1);
    }
    void* grown = AddMemory(g_dialogs, g_dialogCount * sizeof(SizeDialog), &dialog, sizeof(SizeDialog));
    if (!grown) {
        // Out of memory: the dialog stays unmanaged, and nothing of it is kept.
        HWND gripWindow = dialog.grip;
        releaseDialog(dialog);
        if (gripWindow) DestroyWindow(gripWindow);
        return 1;
    }
    g_dialogs = static_cast<SizeDialog*>(grown);
    ++g_dialogCount;
    return 1;
}

int KVKIT_CALL KxSizeDlg(HWND window, UINT, LPARAM) {
    SizeDialog* dialog = findDialog(window);
    if (!dialog) return 0;
    RECT client;
    GetClientRect(window, &client);
    int grownX = client.right - dialog->initialClient.right;
    int grownY = client.bottom - dialog->initialClient.bottom;
    double growthX = growthPercent(client.right, dialog->initialClient.right);
    double growthY = growthPercent(client.bottom, dialog->initialClient.bottom);
    // Indexed, because moving a child may run code that registers more children.
    for (int i = 0; i < dialog->childCount; ++i) {
        SizeChild& child = dialog->children[i];
        if (child.skipOnce == 1) {
            child.skipOnce = 0;
            continue;
        }
        SizeChild copy = child;
        layoutChild(copy, growthX, growthY);
    }
    if (grownX >= 0 && grownY >= 0) {
        RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    } else {
        const RECT& minimum = dialog->initialWindow;
        SetWindowPos(window, nullptr, 0, 0, width(minimum), height(minimum), SWP_NOMOVE | SWP_NOZORDER);
    }
    return 1;
}

int KVKIT_CALL KxSizingDlg(HWND window, UINT, LPARAM lParam) {
    SizeDialog* dialog = findDialog(window);
    RECT* dragged = reinterpret_cast<RECT*>(lParam);
    if (!dialog || !dragged) return 0;
    const RECT& minimum = dialog->initialWindow;
    if (width(*dragged) < width(minimum)) dragged->right = dragged->left + width(minimum);
    if (height(*dragged) < height(minimum)) dragged->bottom = dragged->top + height(minimum);
    return 1;
}

int KVKIT_CALL KxSizeDlgEnd(HWND window) {
    SizeDialog* dialog = findDialog(window);
    if (!dialog) return 0;
    int slot = static_cast<int>(dialog - g_dialogs);
    MoveMemory(&g_dialogs[slot], &g_dialogs[slot + 1], (g_dialogCount - slot - 1) * sizeof(SizeDialog));
    --g_dialogCount;
    // The slot is released as it stands after closing up: when the ended dialog was not the last
    // one, that is the record that moved down, and the ended dialog's own arrays stay allocated.
    // Existing hosts depend on this order, so it is kept; the moved record is left empty rather
    // than pointing at freed memory.
    releaseDialog(g_dialogs[slot]);
    if (g_dialogCount == 0) {
        FreeMemory(g_dialogs);
        g_dialogs = nullptr;
    }
    return 1;
}

int KVKIT_CALL KxSizeAddWindow(HWND window, HWND child, long flags, int refId) {
    SizeDialog* dialog = findDialog(window);
    if (!dialog) return 0;
    if (refId < 0) {
        int id = GetDlgCtrlID(child);
        for (int i = 0; i < dialog->childCount; ++i)
            if (dialog->children[i].id == id) {
                dialog->children[i].window = child;  // the control was re-created
                return 1;
            }
    }
    registerChild(*dialog, child, static_cast<unsigned long>(flags), refId);
    return 1;
}

int KVKIT_CALL Kx1SizeDlgAddChilds(HWND window, int addSelf, int addChildren, int refId) {
    SizeDialog* dialog = findDialogOrParent(window);
    if (!dialog) return 0;
    if (addSelf) registerChild(*dialog, window, 0, refId);
    if (addChildren) registerDirectChildren(*dialog, window);
    return 1;
}

int KVKIT_CALL Kx1SizeDlgRemoveChilds(HWND window) {
    SizeDialog* dialog = findDialogOrParent(window);
    if (!dialog) return 0;
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        for (int i = 0; i < dialog->childCount; ++i) {
            if (dialog->children[i].window != child) continue;
            MoveMemory(&dialog->children[i], &dialog->children[i + 1],
                       (dialog->childCount - i - 1) * sizeof(SizeChild));
            --dialog->childCount;
            break;
        }
        if (dialog->childCount == 0 && dialog->children) {
            FreeMemory(dialog->children);
            dialog->children = nullptr;
        }
    }
    return 1;
}

int KVKIT_CALL KxSizeChildUpdate(HWND window, int id) {
    SizeDialog* dialog = findDialog(window);
    if (!dialog) return 0;
    SizeChild* child = nullptr;
    for (int i = 0; i < dialog->childCount && !child; ++i)
        if (dialog->children[i].id == id) child = &dialog->children[i];
    if (!child) return 1;

    HWND control = GetDlgItem(window, id);
    RECT client;
    GetClientRect(window, &client);
    if (!control || client.right <= 0 || client.bottom <= 0) return 0;
    RECT current;
    GetWindowRect(control, &current);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&current), 2);
    int designW = dialog->initialClient.right, designH = dialog->initialClient.bottom;
    auto rebase = [](int design, int value, int size) {
        return static_cast<int>(ceil(static_cast<double>(design * value) / size));
    };
    RECT& rebased = child->design;
    rebased.left = rebase(designW, current.left, client.right);
    rebased.top = rebase(designH, current.top, client.bottom);
    rebased.right = (child->flags & KXSIZE_SIZE_RIGHT) ? rebase(designW, current.right, client.right)
                                                       : rebased.left + width(current);
    rebased.bottom = (child->flags & KXSIZE_SIZE_BOTTOM)
                         ? rebase(designH, current.bottom, client.bottom)
                         : rebased.top + height(current);
    return 1;
}

int KVKIT_CALL KxSizeDlgSave(HWND window, const wchar_t* name) {
    if (!window || !name) return 0;
    WINDOWPLACEMENT placement = {};
    placement.length = kPlacementBytes;
    if (!GetWindowPlacement(window, &placement)) return 0;
    wchar_t path[kPlacementKeyLength];
    placementKeyPath(name, path);
    HKEY key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                        nullptr) != ERROR_SUCCESS)
        return 0;
    LONG written = RegSetValueExW(key, g_placementValueName, 0, REG_BINARY,
                                  reinterpret_cast<const BYTE*>(&placement), kPlacementBytes);
    RegCloseKey(key);
    return written == ERROR_SUCCESS;
}

int KVKIT_CALL KxSizeDlgLoad(HWND window, const wchar_t* name) {
    if (!window || !name) return 0;
    wchar_t path[kPlacementKeyLength];
    placementKeyPath(name, path);
    // Created when missing, so a dialog seen for the first time gets its (empty) key here.
    HKEY key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr) !=
        ERROR_SUCCESS)
        return 0;
    WINDOWPLACEMENT placement = {};
    DWORD bytes = kPlacementBytes;
    LONG read = RegQueryValueExW(key, g_placementValueName, nullptr, nullptr,
                                 reinterpret_cast<BYTE*>(&placement), &bytes);
    if (read != ERROR_SUCCESS || bytes != kPlacementBytes || placement.length != kPlacementBytes) {
        RegCloseKey(key);
        return 0;
    }
    if (GetWindowLongW(window, GWL_STYLE) & DS_CENTER) {
        RECT area = centringArea();
        RECT& normal = placement.rcNormalPosition;
        int w = width(normal), h = height(normal);
        normal.left = (area.right - area.left - w) / 2 + area.left;
        normal.top = (area.bottom - area.top - h) / 2 + area.top;
        normal.right = normal.left + w;
        normal.bottom = normal.top + h;
    }
    SetWindowPlacement(window, &placement);
    RegCloseKey(key);
    return 1;
}
