// A tree view with check boxes in a host window, with helpers to fill it, read it back and click
// it with the mouse.
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <functional>
#include <memory>
#include <string>
#include <vector>
#include "kvkit_treeview.h"
#include "kvkit_search.h"

class TreeTest : public kvtest::KvTest {
protected:
    static const int kTreeId = 200;
    static const DWORD kTreeStyle = WS_VISIBLE | WS_BORDER | TVS_HASBUTTONS | TVS_HASLINES |
                                    TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_CHECKBOXES;

    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(300, 400);
        tree = host->createChild(WC_TREEVIEWW, L"", kTreeStyle, 0, 0, 300, 400, kTreeId);
        ASSERT_TRUE(tree);
        host->setHandler([this](HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
            if (message == WM_ENTERIDLE) {
                runIdleStep(static_cast<UINT>(wParam), reinterpret_cast<HWND>(lParam));
                return true;
            }
            auto* notify = reinterpret_cast<NMHDR*>(lParam);
            if (message == WM_NOTIFY && notify->hwndFrom == tree && onNotify)
                return onNotify(notify, result);
            return false;
        });
    }
    void TearDown() override {
        holdKeys({});
        destroyTree();
        host.reset();
        KvTest::TearDown();
    }
    void destroyTree() {
        if (!IsWindow(tree)) return;
        // A tree makes its own check box images, which it leaves to its owner to destroy.
        ImageList_Destroy(TreeView_SetImageList(tree, nullptr, TVSIL_STATE));
        DestroyWindow(tree);
    }

    // Appends an item under `parent` (null: top level), expanded parents so that it shows.
    HTREEITEM add(HTREEITEM parent, const wchar_t* text, LPARAM value = 0) {
        HTREEITEM item = KxTreeView_InsertItem(tree, nullptr, parent, nullptr, nullptr, nullptr,
                                               text, value, 0);
        EXPECT_TRUE(item) << "insert " << std::string(text, text + wcslen(text));
        if (parent) TreeView_Expand(tree, parent, TVE_EXPAND);
        return item;
    }
    std::wstring text(HTREEITEM item) const {
        wchar_t buffer[260] = L"";
        TVITEMW data = {};
        data.mask = TVIF_TEXT | TVIF_HANDLE;
        data.hItem = item;
        data.pszText = buffer;
        data.cchTextMax = 260;
        TreeView_GetItem(tree, &data);
        return buffer;
    }
    UINT state(HTREEITEM item, UINT mask = 0xFFFF) const {
        return TreeView_GetItemState(tree, item, mask);
    }
    HTREEITEM root() const { return TreeView_GetRoot(tree); }
    HTREEITEM child(HTREEITEM item) const { return TreeView_GetChild(tree, item); }
    HTREEITEM next(HTREEITEM item) const { return TreeView_GetNextSibling(tree, item); }
    HTREEITEM selection() const { return TreeView_GetSelection(tree); }
    int itemCount() const { return static_cast<int>(TreeView_GetCount(tree)); }
    // Texts of the items in pre-order, children indented by two blanks per level.
    std::vector<std::wstring> outline() const {
        std::vector<std::wstring> lines;
        outlineOf(root(), 0, lines);
        return lines;
    }
    std::vector<int> checks(std::initializer_list<HTREEITEM> items) const {
        std::vector<int> states;
        for (HTREEITEM item : items) states.push_back(KxTreeView_GetCheckState(tree, item));
        return states;
    }

    // Screen point on the item's check box, verified by the tree's own hit test.
    POINT checkBoxPoint(HTREEITEM item) const {
        UpdateWindow(tree);  // the check box images are made when the tree first paints
        RECT label;
        TreeView_GetItemRect(tree, item, &label, TRUE);
        TVHITTESTINFO hit = {};
        hit.pt = {label.left - 8, (label.top + label.bottom) / 2};
        TreeView_HitTest(tree, &hit);
        EXPECT_EQ(item, hit.hItem);
        EXPECT_TRUE(hit.flags & TVHT_ONITEMSTATEICON) << hit.flags;
        POINT point = hit.pt;
        ClientToScreen(tree, &point);
        return point;
    }
    POINT labelPoint(HTREEITEM item) const {
        RECT label;
        TreeView_GetItemRect(tree, item, &label, TRUE);
        POINT point = {label.left + 4, (label.top + label.bottom) / 2};
        ClientToScreen(tree, &point);
        return point;
    }
    // A click as the mouse makes it: the cursor moves there and the button goes down and up.
    void click(POINT screen, UINT down = WM_LBUTTONDOWN, UINT up = WM_LBUTTONUP) {
        SetCursorPos(screen.x, screen.y);
        POINT client = screen;
        ScreenToClient(tree, &client);
        PostMessageW(tree, WM_MOUSEMOVE, 0, MAKELPARAM(client.x, client.y));
        PostMessageW(tree, down, down == WM_LBUTTONDOWN ? MK_LBUTTON : MK_RBUTTON, MAKELPARAM(client.x, client.y));
        PostMessageW(tree, up, 0, MAKELPARAM(client.x, client.y));
        kvtest::PumpMessages();
    }
    void clickCheckBox(HTREEITEM item) { click(checkBoxPoint(item)); }

    // Scripted steps for the modal loops that the library runs (menus, dialogs): whenever such a
    // loop waits for input, the next step gets the loop's kind (MSGF_MENU, MSGF_DIALOGBOX) and
    // window and posts what a user would. Once the steps run out, the loop is ended and counted,
    // so that a test that goes wrong cannot hang the suite.
    using IdleStep = std::function<void(UINT kind, HWND window)>;
    void whenIdle(std::vector<IdleStep> steps) {
        idleSteps = std::move(steps);
        nextIdleStep = 0;
        loopsEndedForcibly = 0;
    }
    static void postKey(HWND window, WORD key) {
        PostMessageW(window, WM_KEYDOWN, key, 1);
        PostMessageW(window, WM_KEYUP, key, 0xC0000001);
    }
    static void type(HWND window, const wchar_t* text) {
        for (; *text; ++text) PostMessageW(window, WM_CHAR, *text, 1);
    }
    // Holds the keys down in this thread's keyboard state (0 releases them all).
    static void holdKeys(std::initializer_list<int> keys) {
        BYTE state[256];
        GetKeyboardState(state);
        for (int key : {VK_CONTROL, VK_LCONTROL, VK_SHIFT, VK_LSHIFT}) state[key] = 0;
        for (int key : keys) state[key] = 0x80;
        SetKeyboardState(state);
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND tree = nullptr;
    // The parent's WM_NOTIFY handling for the tree: returns true when it answered.
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

    void outlineOf(HTREEITEM item, int level, std::vector<std::wstring>& lines) const {
        for (; item; item = next(item)) {
            lines.push_back(std::wstring(2 * level, L' ') + text(item));
            outlineOf(child(item), level + 1, lines);
        }
    }
};
