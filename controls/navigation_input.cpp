// Navigation bar: mouse, keyboard and scrolling. A click chooses the row the button went down
// and came up on; the keyboard moves a focus through the shown rows and chooses with Enter or
// Space.
#include "controls/navigation_internal.h"

namespace {

const int kWheelLines = 3;

int clientHeight(const NavBar& bar) {
    RECT client;
    GetClientRect(bar.window, &client);
    return client.bottom;
}

void setHot(NavBar& bar, int id) {
    if (bar.hot == id) return;
    InvalidateNavItem(bar, bar.hot);
    bar.hot = id;
    InvalidateNavItem(bar, id);
}

void setFocusRow(NavBar& bar, int id) {
    if (!id) return;
    InvalidateNavItem(bar, bar.focused);
    bar.focused = id;
    InvalidateNavItem(bar, id);
    EnsureNavItemVisible(bar, id);
}

// Position of a row among the shown rows (from 0), or -1; *count receives how many are shown.
int rowPosition(const NavBar& bar, int id, int* count) {
    int position = -1, n = 0;
    ForEachNavRow(bar, [&](int index, int, int) {
        if (bar.items[index].id == id) position = n;
        ++n;
        return true;
    });
    *count = n;
    return position;
}

int rowAtPosition(const NavBar& bar, int position) {
    int id = 0, n = 0;
    ForEachNavRow(bar, [&](int index, int, int) {
        if (n++ != position) return true;
        id = bar.items[index].id;
        return false;
    });
    return id;
}

// Moves the focus by `step` shown rows, stopping at the first and the last.
void moveFocus(NavBar& bar, int step) {
    int count;
    int position = rowPosition(bar, bar.focused, &count);
    if (count == 0) return;
    int target = position < 0 ? 0 : position + step;
    if (target < 0) target = 0;
    if (target >= count) target = count - 1;
    setFocusRow(bar, rowAtPosition(bar, target));
}

void scrollTo(NavBar& bar, int scrollTop) {
    int content = NavContentHeight(bar), page = clientHeight(bar);
    int highest = content > page ? content - page : 0;
    if (scrollTop > highest) scrollTop = highest;
    if (scrollTop < 0) scrollTop = 0;
    if (scrollTop == bar.scrollTop) return;
    bar.scrollTop = scrollTop;
    UpdateNavScrollBar(bar);
    InvalidateRect(bar.window, nullptr, FALSE);
}

bool startsWith(const wchar_t* text, wchar_t character) {
    if (!text || !text[0]) return false;
    wchar_t first = text[0];
    CharUpperBuffW(&first, 1);
    CharUpperBuffW(&character, 1);
    return first == character;
}

}  // namespace

void OnNavMouseMove(NavBar& bar, int x, int y) {
    if (!bar.trackingLeave) {
        TRACKMOUSEEVENT track = {sizeof(track), TME_LEAVE, bar.window, 0};
        bar.trackingLeave = TrackMouseEvent(&track) != 0;
    }
    setHot(bar, NavItemAt(bar, y));
}

void OnNavMouseLeave(NavBar& bar) {
    bar.trackingLeave = false;
    setHot(bar, 0);
}

void OnNavButtonDown(NavBar& bar, int x, int y) {
    SetFocus(bar.window);
    int id = NavItemAt(bar, y);
    if (!id) return;
    setFocusRow(bar, id);
    SetCapture(bar.window);
    bar.pressed = id;  // after SetCapture: an earlier capture of ours ending clears it
}

void OnNavButtonUp(NavBar& bar, int x, int y) {
    int pressed = bar.pressed;
    bar.pressed = 0;
    if (GetCapture() == bar.window) ReleaseCapture();
    RECT client;
    GetClientRect(bar.window, &client);
    POINT point = {x, y};
    if (pressed && PtInRect(&client, point) && NavItemAt(bar, y) == pressed)
        ChooseNavItem(bar, pressed);
}

void OnNavKeyDown(NavBar& bar, UINT key) {
    int index = FindNavItem(bar, bar.focused);
    const NavItem* focused = index >= 0 ? &bar.items[index] : nullptr;
    int pageRows = clientHeight(bar) / EntryRowHeight(bar);
    switch (key) {
    case VK_UP:
        moveFocus(bar, -1);
        break;
    case VK_DOWN:
        moveFocus(bar, 1);
        break;
    case VK_PRIOR:
        moveFocus(bar, -(pageRows > 1 ? pageRows - 1 : 1));
        break;
    case VK_NEXT:
        moveFocus(bar, pageRows > 1 ? pageRows - 1 : 1);
        break;
    case VK_HOME:
        moveFocus(bar, -bar.itemCount);
        break;
    case VK_END:
        moveFocus(bar, bar.itemCount);
        break;
    case VK_LEFT:
        if (focused && !IsNavGroup(*focused)) setFocusRow(bar, focused->group);
        else if (focused && focused->expanded) ChooseNavItem(bar, focused->id);
        break;
    case VK_RIGHT:
        if (focused && IsNavGroup(*focused) && !focused->expanded) ChooseNavItem(bar, focused->id);
        else if (focused && IsNavGroup(*focused)) moveFocus(bar, 1);
        break;
    case VK_RETURN:
    case VK_SPACE:
        if (focused) ChooseNavItem(bar, focused->id);
        break;
    }
}

// A letter moves the focus to the next shown entry whose text starts with it, going round.
void OnNavChar(NavBar& bar, wchar_t character) {
    if (character <= L' ') return;  // Enter, Space and control keys act on key-down
    int count;
    int start = rowPosition(bar, bar.focused, &count);
    for (int step = 1; step <= count; ++step) {
        int id = rowAtPosition(bar, (start + step + count) % count);
        int index = FindNavItem(bar, id);
        if (!IsNavGroup(bar.items[index]) && startsWith(bar.items[index].text, character)) {
            setFocusRow(bar, id);
            return;
        }
    }
}

void OnNavVScroll(NavBar& bar, int request) {
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_TRACKPOS;
    GetScrollInfo(bar.window, SB_VERT, &info);
    int line = EntryRowHeight(bar), page = clientHeight(bar);
    switch (request) {
    case SB_LINEUP:
        scrollTo(bar, bar.scrollTop - line);
        break;
    case SB_LINEDOWN:
        scrollTo(bar, bar.scrollTop + line);
        break;
    case SB_PAGEUP:
        scrollTo(bar, bar.scrollTop - page);
        break;
    case SB_PAGEDOWN:
        scrollTo(bar, bar.scrollTop + page);
        break;
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        scrollTo(bar, info.nTrackPos);
        break;
    case SB_TOP:
        scrollTo(bar, 0);
        break;
    case SB_BOTTOM:
        scrollTo(bar, NavContentHeight(bar));
        break;
    }
}

void OnNavMouseWheel(NavBar& bar, int delta) {
    scrollTo(bar, bar.scrollTop - delta * kWheelLines * EntryRowHeight(bar) / WHEEL_DELTA);
}
