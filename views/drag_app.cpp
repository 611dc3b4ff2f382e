// The application-wide drag: a hidden window holds the capture and the focus while the mouse
// carries something over any window of the application. Each window under the cursor is asked
// whether it accepts (KVDD_QUERY); the one under the cursor at the release gets the drop
// (KVDD_DROP); the owner learns how it ended (KVDD_ENDED, KVDD_DROPPED). The drag window ends
// itself by posting KVDD_FINISH, so that it never goes away inside one of its own messages.
#include "include/kvkit_drag.h"
#include <windowsx.h>
#include "core/library.h"
#include "kvtext.h"

namespace {

// State flags of the drag record.
enum : DWORD {
    kOwnAcceptCursor = 0x01,  // the accept cursor is the caller's, destroyed at the end
    kOwnRefuseCursor = 0x02,  // the refuse cursor is the caller's, destroyed at the end
    kFinished = 0x04,
    kOwnerNotified = 0x08,
    kHasFocus = 0x10,
    kDelivering = 0x20,  // the drop is being delivered to the target
};

// The drag window's record (its GWLP_USERDATA), laid out as hosts that look into it expect.
#pragma pack(push, 1)
struct DragRecord {
    DWORD flags;
    DWORD options;
    WNDPROC previousProc;
    HCURSOR refuseCursor;
    HCURSOR acceptCursor;
    BYTE refused;   // the current target failed the root test
    BYTE accepted;  // the current target said yes to the last query
    HWND target;
    HWND previousCapture;
    HWND previousFocus;
    KVDDMESSAGE message;
};
#pragma pack(pop)
static_assert(sizeof(DragRecord) == 62, "drag record size");
static_assert(offsetof(DragRecord, refused) == 20, "drag record refused offset");
static_assert(offsetof(DragRecord, target) == 22, "drag record target offset");
static_assert(offsetof(DragRecord, previousFocus) == 30, "drag record focus offset");
static_assert(offsetof(DragRecord, message) == 34, "drag record message offset");

const wchar_t kDragWindowTitle[] = L"KVDDS";

// The drag window of the active drag, null when none is active.
HWND g_dragWindow;

DragRecord* recordOf(HWND window) {
    return reinterpret_cast<DragRecord*>(GetWindowLongPtrW(window, GWLP_USERDATA));
}

void notifyOwner(const DragRecord* record, UINT message) {
    if (record->options & KVDD_NO_NOTIFY) return;
    PostMessageW(record->message.owner, message, record->message.format,
                 reinterpret_cast<LPARAM>(record->message.user));
}

void finishLater(HWND window) { PostMessageW(window, KVDD_FINISH, 0, 0); }

// The capture goes back to its previous holder (with the option) or is released.
void giveBackCapture(HWND window, const DragRecord* record) {
    HWND previous = record->previousCapture;
    if ((record->options & KVDD_RESTORE_CAPTURE) && previous && previous != window)
        SetCapture(previous);
    else
        ReleaseCapture();
}

// With the option, the focus goes back to its previous holder while the drag window holds it.
void giveBackFocus(HWND window, const DragRecord* record) {
    HWND previous = record->previousFocus;
    if ((record->options & KVDD_RESTORE_FOCUS) && GetFocus() == window && previous &&
        previous != window && IsWindow(previous))
        SetFocus(previous);
}

void onMouseMove(HWND window, DragRecord* record, LPARAM position) {
    if (record->flags & kFinished) return;
    POINT point = {GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    ClientToScreen(window, &point);
    HWND target = WindowFromPoint(point);
    bool newTarget = target != record->target;
    if (newTarget) {
        record->refused = 0;
        record->accepted = 0;
        record->target = target;
    }
    if (!target) return;
    record->message.x = point.x;
    record->message.y = point.y;
    if (newTarget && (record->options & KVDD_ROOT_ONLY) &&
        Kx1GetAppRoot(target) != record->message.root)
        record->refused = 1;
    if (record->refused) return;  // the cursor keeps its last shape
    int answer = 0;
    SendMessageW(target, KVDD_QUERY, reinterpret_cast<WPARAM>(&answer),
                 reinterpret_cast<LPARAM>(&record->message));
    record->accepted = answer != 0;
    SetCursor(record->accepted ? record->acceptCursor : record->refuseCursor);
}

void onButtonUp(HWND window, DragRecord* record) {
    if (record->flags & kFinished) return;
    if (!record->refused && record->accepted && record->target) {
        record->flags |= kDelivering;
        int answer = 0;
        SendMessageW(record->target, KVDD_DROP, reinterpret_cast<WPARAM>(&answer),
                     reinterpret_cast<LPARAM>(&record->message));
        notifyOwner(record, answer == 0 ? KVDD_DROPPED : KVDD_ENDED);
        record->flags = (record->flags | kOwnerNotified) & ~kDelivering;
    } else if (!(record->flags & kOwnerNotified)) {
        notifyOwner(record, KVDD_ENDED);
        record->flags |= kOwnerNotified;
    }
    record->flags |= kFinished;
    giveBackFocus(window, record);
    giveBackCapture(window, record);
    finishLater(window);
}

void onCaptureChanged(HWND window, DragRecord* record) {
    if (record->flags & kFinished) return;
    record->flags |= kFinished;
    // While the drop is delivered, the button-up handling finishes the drag itself.
    if (!(record->flags & kDelivering)) finishLater(window);
}

// The focus lost to another window, or Escape released: the drag is cancelled.
void onCancel(HWND window, DragRecord* record) {
    record->flags |= kFinished;
    giveBackCapture(window, record);
    if (!(record->flags & kDelivering)) finishLater(window);
}

// Tells the owner (unless told already), detaches the record and puts the previous procedure
// back, destroys the caller's cursors and frees the record.
void onDestroy(HWND window, DragRecord* record) {
    if (!(record->flags & kOwnerNotified)) notifyOwner(record, KVDD_ENDED);
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    if (record->previousProc)
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(record->previousProc));
    HCURSOR current = GetCursor();
    bool ownRefuse = record->flags & kOwnRefuseCursor, ownAccept = record->flags & kOwnAcceptCursor;
    // A cursor still shown cannot be destroyed.
    if ((ownRefuse && current == record->refuseCursor) || (ownAccept && current == record->acceptCursor))
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
    if (ownRefuse) DestroyCursor(record->refuseCursor);
    if (ownAccept) DestroyCursor(record->acceptCursor);
    FreeMemory(record);
    if (window == g_dragWindow) g_dragWindow = nullptr;
}

LRESULT CALLBACK dragWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    DragRecord* record = recordOf(window);
    if (!record) return DefWindowProcW(window, message, wParam, lParam);
    switch (message) {
    case WM_MOUSEMOVE:
        onMouseMove(window, record, lParam);
        return 0;
    case WM_LBUTTONUP:
        onButtonUp(window, record);
        return 0;
    case WM_CAPTURECHANGED:
        onCaptureChanged(window, record);
        return 0;
    case WM_SETFOCUS:
        record->flags |= kHasFocus;
        return 0;
    case WM_KILLFOCUS:
    case WM_KEYUP:
        if (message == WM_KEYUP && wParam != VK_ESCAPE) return 0;
        if (!(record->flags & kHasFocus)) return 0;
        if (!(record->flags & kFinished) &&
            (message == WM_KEYUP || reinterpret_cast<HWND>(wParam) != window))
            onCancel(window, record);
        record->flags ^= kHasFocus;
        return 0;
    case WM_KEYDOWN:
    case WM_CHAR:
    case WM_SYSCOMMAND:
        return 0;
    case KVDD_FINISH:
        // Ended by Escape or a lost capture, the drag still holds the focus: with the option it
        // goes back before the destruction hands it to another window.
        giveBackFocus(window, record);
        DestroyWindow(window);
        return 0;
    case WM_DESTROY: {
        WNDPROC previous = record->previousProc;
        onDestroy(window, record);
        if (previous) CallWindowProcW(previous, window, message, wParam, lParam);
        return 0;
    }
    }
    return record->previousProc
               ? CallWindowProcW(record->previousProc, window, message, wParam, lParam)
               : DefWindowProcW(window, message, wParam, lParam);
}

// Takes the drag window out again after a failed start.
int abandon(HWND window, WNDPROC previous, int result) {
    if (previous) SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(previous));
    DestroyWindow(window);
    g_dragWindow = nullptr;
    return result;
}

}  // namespace

int KVKIT_CALL Kx1StartGlobalDragAndDrop(long options, KVDDFormat format, HWND owner, HWND root,
                                         HICON acceptCursor, HICON refuseCursor, void* user) {
    if (g_dragWindow) return KVDD_ALREADY_ACTIVE;
    HWND window = CreateWindowExW(0, L"Static", kDragWindowTitle, WS_POPUP, 0, 0, 0, 0, nullptr,
                                  nullptr, g_libraryModule, nullptr);
    if (!window) return KVDD_NO_WINDOW;
    g_dragWindow = window;
    auto previous = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(dragWindowProc)));
    if (!previous) return abandon(window, nullptr, KVDD_NO_PROCEDURE);
    auto* record = static_cast<DragRecord*>(GetMemory(sizeof(DragRecord)));
    if (!record) return abandon(window, previous, KVDD_NO_MEMORY);

    *record = DragRecord();
    record->options = static_cast<DWORD>(options);
    record->previousProc = previous;
    record->message.size = sizeof(KVDDMESSAGE);
    record->message.owner = owner;
    record->message.root = root;
    record->message.format = format;
    record->message.user = user;
    record->refuseCursor = refuseCursor ? refuseCursor : LoadCursorW(nullptr, IDC_NO);
    if (refuseCursor) record->flags |= kOwnRefuseCursor;
    record->acceptCursor = acceptCursor ? acceptCursor : LoadCursorW(nullptr, IDC_HAND);
    if (acceptCursor) record->flags |= kOwnAcceptCursor;
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(record));

    // Read first: activating the drag window may hand it the focus before SetFocus returns.
    HWND focus = GetFocus();
    if (focus != window) {
        record->previousFocus = focus;
        SetFocus(window);
    }
    record->previousCapture = SetCapture(window);
    return KVDD_STARTED;
}

int KVKIT_CALL Kx1StopGlobalDragAndDrop(HWND, int cancel) {
    HWND window = g_dragWindow;
    DragRecord* record = window ? recordOf(window) : nullptr;
    if (!record) return 0;
    // Cancelling also hands the refuse cursor to the drag, which destroys it at the end.
    if (cancel) record->flags |= kOwnRefuseCursor;
    giveBackFocus(window, record);
    if (GetCapture() == window) giveBackCapture(window, record);
    finishLater(window);
    g_dragWindow = nullptr;
    return 0;
}

int KVKIT_CALL Kx1IsActiveGlobalDragAndDrop(HWND owner) {
    DragRecord* record = g_dragWindow ? recordOf(g_dragWindow) : nullptr;
    return record && record->message.owner == owner ? 1 : 0;
}

HWND KVKIT_CALL Kx1GetAppRoot(HWND window) {
    if (!window) return nullptr;
    for (HWND parent = GetParent(window); parent; parent = GetParent(window)) window = parent;
    return window;
}
