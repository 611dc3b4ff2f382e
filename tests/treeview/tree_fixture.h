// A tree view with check boxes in a host window, filled with customers and contacts, with helpers
// to read it back, click it with the mouse and drive the modal loops that the library runs.
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include "kvkit_search.h"
#include "kvkit_treeview.h"

class TreeTest : public kvtest::KvTest {
protected:
    static const int kTreeId = 200;

    // (1001) Berg & Co { Anna Berg { Notes }, Bernd Berg }, (1002) Lind GmbH { Carl Lind }, all
    // showing, none checked; item values in brackets below.
    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(300, 400);
        tree = host->createChild(WC_TREEVIEWW, L"", WS_VISIBLE | TVS_HASBUTTONS | TVS_HASLINES |
                                 TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_CHECKBOXES,
                                 0, 0, 300, 400, kTreeId);
        host->setHandler([this](HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
            if (message == WM_ENTERIDLE) {
                runIdleStep(static_cast<UINT>(wParam), reinterpret_cast<HWND>(lParam));
                return true;
            }
            auto* notify = reinterpret_cast<NMHDR*>(lParam);
            return message == WM_NOTIFY && notify->hwndFrom == tree && onNotify && onNotify(notify, result);
        });
        berg = add(nullptr, L"(1001) Berg & Co", 1001);
        annaBerg = add(berg, L"Anna Berg", 11);
        notes = add(annaBerg, L"Notes", 111);
        berndBerg = add(berg, L"Bernd Berg", 12);
        lind = add(nullptr, L"(1002) Lind GmbH", 1002);
        carl = add(lind, L"Carl Lind", 21);
        UpdateWindow(tree);  // the tree makes its check box images when it first paints
    }
    void TearDown() override {
        kvtest::HoldKeys({});
        destroyTree();
        host.reset();
        KvTest::TearDown();
    }
    void destroyTree() {
        if (!IsWindow(tree)) return;
        // A tree leaves the check box images it made to its owner to destroy.
        ImageList_Destroy(TreeView_SetImageList(tree, nullptr, TVSIL_STATE));
        DestroyWindow(tree);
    }

    // Appends an item, its parent expanded.
    HTREEITEM add(HTREEITEM parent, const wchar_t* text, LPARAM value = 0) {
        HTREEITEM item = KxTreeView_InsertItem(tree, nullptr, parent, nullptr, nullptr, nullptr,
                                               text, value, 0);
        if (parent) TreeView_Expand(tree, parent, TVE_EXPAND);
        return item;
    }
    // An item record for TVM_GETITEM and TVM_SETITEM.
    static TVITEMW itemRecord(HTREEITEM item, UINT mask) {
        TVITEMW data = {};
        data.mask = mask | TVIF_HANDLE;
        data.hItem = item;
        return data;
    }
    std::wstring text(HTREEITEM item) const {
        wchar_t buffer[300] = L"";
        TVITEMW data = itemRecord(item, TVIF_TEXT);
        data.pszText = buffer;
        data.cchTextMax = 300;
        TreeView_GetItem(tree, &data);
        return buffer;
    }
    UINT state(HTREEITEM item, UINT mask) const { return TreeView_GetItemState(tree, item, mask); }
    HTREEITEM root() const { return TreeView_GetRoot(tree); }
    HTREEITEM child(HTREEITEM item) const { return TreeView_GetChild(tree, item); }
    HTREEITEM next(HTREEITEM item) const { return TreeView_GetNextSibling(tree, item); }
    HTREEITEM selection() const { return TreeView_GetSelection(tree); }
    // Item texts in pre-order, indented by two blanks per level.
    std::vector<std::wstring> outline(HTREEITEM item = nullptr, int level = 0) const {
        std::vector<std::wstring> lines;
        for (item = item ? item : root(); item; item = next(item)) {
            lines.push_back(std::wstring(2 * level, L' ') + text(item));
            HTREEITEM first = child(item);
            if (!first) continue;
            std::vector<std::wstring> below = outline(first, level + 1);
            lines.insert(lines.end(), below.begin(), below.end());
        }
        return lines;
    }
    // Check states of the customer tree in pre-order.
    std::vector<int> checks() const {
        std::vector<int> states;
        for (HTREEITEM item : {berg, annaBerg, notes, berndBerg, lind, carl})
            states.push_back(KxTreeView_GetCheckState(tree, item));
        return states;
    }

    // Screen point on the item's label, or on its check box (as the tree's own hit test says).
    POINT pointOn(HTREEITEM item, bool checkBox = false) const {
        RECT label;
        TreeView_GetItemRect(tree, item, &label, TRUE);
        TVHITTESTINFO hit = {};
        hit.pt = {checkBox ? label.left - 8 : label.left + 4, (label.top + label.bottom) / 2};
        TreeView_HitTest(tree, &hit);
        EXPECT_EQ(item, hit.hItem);
        EXPECT_EQ(checkBox, (hit.flags & TVHT_ONITEMSTATEICON) != 0) << hit.flags;
        ClientToScreen(tree, &hit.pt);
        return hit.pt;
    }
    // A click as the mouse makes it: the cursor moves there and the button goes down and up.
    void click(POINT screen, UINT down = WM_LBUTTONDOWN) {
        SetCursorPos(screen.x, screen.y);
        ScreenToClient(tree, &screen);
        LPARAM at = MAKELPARAM(screen.x, screen.y);
        PostMessageW(tree, WM_MOUSEMOVE, 0, at);
        PostMessageW(tree, down, down == WM_LBUTTONDOWN ? MK_LBUTTON : MK_RBUTTON, at);
        PostMessageW(tree, down + 1, 0, at);  // the button-up message
        kvtest::PumpMessages();
    }

    // Scripted steps for the modal loops of menus and dialogs: whenever such a loop waits for
    // input, the next step gets its kind (MSGF_MENU, MSGF_DIALOGBOX) and window and posts what a
    // user would. Once the steps run out the loop is ended and counted, so that a test that goes
    // wrong cannot hang the suite.
    using IdleStep = std::function<void(UINT kind, HWND window)>;
    void whenIdle(std::vector<IdleStep> steps) {
        idleSteps = std::move(steps);
        nextIdleStep = 0;
    }
    static void postKey(HWND window, WORD key) {
        PostMessageW(window, WM_KEYDOWN, key, 1);
        PostMessageW(window, WM_KEYUP, key, 0xC0000001);
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND tree = nullptr;
    HTREEITEM berg, annaBerg, notes, berndBerg, lind, carl;
    // The parent's WM_NOTIFY handling for the tree: true when it answered.
    std::function<bool(NMHDR*, LRESULT*)> onNotify;
    std::vector<IdleStep> idleSteps;
    size_t nextIdleStep = 0;
    int loopsEndedForcibly = 0;

private:
    void runIdleStep(UINT kind, HWND window) {
        if (nextIdleStep < idleSteps.size()) {
            idleSteps[nextIdleStep++](kind, window);
            return;
        }
        ++loopsEndedForcibly;
        if (kind == MSGF_MENU) EndMenu();
        else EndDialog(window, IDCANCEL);
    }
};
