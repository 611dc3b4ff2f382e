// The navigation bar's record and the helpers its sources share. Internal.
#pragma once
#include "include/kvkit_navigation.h"

// A group or an entry. The bar keeps them in one array in display order: each group is followed
// by its entries.
struct NavItem {
    int id;         // item number, from 1
    int group;      // 0 for a group; the group's item number for an entry
    wchar_t* text;  // kvtext block
    HBITMAP icon;   // entries: the icon at the bar's icon size, or null
    COLORREF iconKey;  // the icon's transparent colour: the caller's picture's pixel (0, 0)
    LPARAM value;   // entries: the caller's value
    int expanded;   // groups: 1 while the entries show
};

// Per-window record, in the window's GWLP_USERDATA from WM_NCCREATE to WM_NCDESTROY.
struct NavBar {
    HWND window;
    NavItem* items;    // kvtext block of itemCount entries, or null
    int itemCount;
    int nextId;
    int iconSize;
    int selected;      // the selected entry, or 0
    int focused;       // the row with the keyboard focus, or 0
    int hot;           // the row under the mouse, or 0
    int pressed;       // the row where the left button went down, or 0
    int scrollTop;     // pixels of the content scrolled away above the client area
    HFONT font;        // the font given by WM_SETFONT (not owned), or null for the GUI font
    HFONT boldFont;    // owned; made from the font, for group headers
    int textHeight;    // of the font
    bool trackingLeave;
};

// The record of a navigation bar; null for any other window.
NavBar* NavBarOf(HWND window);
// The index of an item in the array, or -1.
int FindNavItem(const NavBar& bar, int id);
inline bool IsNavGroup(const NavItem& item) { return item.group == 0; }

// Row heights in pixels.
int GroupRowHeight(const NavBar& bar);
int EntryRowHeight(const NavBar& bar);

// Calls visit(index, top, height) for every shown row, top to bottom, in content coordinates
// (client y + scrollTop); stops when visit returns false.
template <typename Visit>
void ForEachNavRow(const NavBar& bar, Visit visit) {
    int top = 0;
    bool groupOpen = false;
    for (int i = 0; i < bar.itemCount; ++i) {
        const NavItem& item = bar.items[i];
        if (IsNavGroup(item)) {
            groupOpen = item.expanded != 0;
        } else if (!groupOpen) {
            continue;
        }
        int height = IsNavGroup(item) ? GroupRowHeight(bar) : EntryRowHeight(bar);
        if (!visit(i, top, height)) return;
        top += height;
    }
}

// The row of an item in content coordinates; false when it has no row (closed group's entry).
bool NavRowOf(const NavBar& bar, int id, int* top, int* height);
// The item of the row at client y, or 0.
int NavItemAt(const NavBar& bar, int clientY);
// Height of all rows together.
int NavContentHeight(const NavBar& bar);

// Sets the scroll bar to the content and the client height, keeping scrollTop in range.
void UpdateNavScrollBar(NavBar& bar);
// Scrolls so that the item's row is wholly visible.
void EnsureNavItemVisible(NavBar& bar, int id);
void InvalidateNavItem(const NavBar& bar, int id);

// Opens or closes a group (no notification); false when it is not a group.
bool ExpandNavGroup(NavBar& bar, int group, bool expand);
// What the user's choosing does: an entry is selected and announced with KNGN_SELECT, a group
// opens or closes and is announced with KNGN_GROUPEXPAND.
void ChooseNavItem(NavBar& bar, int id);

// Font handling: the font in use and the text height; the bold font is remade.
void SetNavFont(NavBar& bar, HFONT font);

// Painting of the whole bar into a device context of its client size.
void PaintNavBar(const NavBar& bar, HDC dc, const RECT& client);

// Input handlers of the window procedure.
void OnNavMouseMove(NavBar& bar, int x, int y);
void OnNavMouseLeave(NavBar& bar);
void OnNavButtonDown(NavBar& bar, int x, int y);
void OnNavButtonUp(NavBar& bar, int x, int y);
void OnNavKeyDown(NavBar& bar, UINT key);
void OnNavChar(NavBar& bar, wchar_t character);
void OnNavVScroll(NavBar& bar, int request);
void OnNavMouseWheel(NavBar& bar, int delta);
