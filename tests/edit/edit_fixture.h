// A customer list (report view, three columns) and a contact tree in a host window whose
// WM_NOTIFY handling acts as a host's: it starts the edit that the editor asks for and stores
// committed texts. Every notification is logged; keys and clicks come as real input (SendInput).
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <memory>
#include <string>
#include <vector>
#include "kvkit_edit.h"
#include "kvkit_listview.h"
#include "kvkit_treeview.h"

// One notification the parent received; the text block was freed after copying.
struct EditNote {
    UINT code;
    int row, column;  // list: item.iItem, item.iSubItem
    HTREEITEM item;   // tree: item.hItem
    bool hasText;
    std::wstring text;
    int length;    // item.cchTextMax
    LPARAM value;  // item.lParam
    int image;     // item.iImage
};

class EditTest : public kvtest::KvTest {
protected:
    static const int kListId = 300;
    static const int kTreeId = 301;

    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(420, 320);
        list = host->createChild(WC_LISTVIEWW, L"", WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS, 0, 0,
                                 420, 160, kListId);
        KxListView_AddHeader(list, L"Customer", 0, 120);
        KxListView_AddHeader(list, L"City", 1, 100);
        KxListView_AddHeader(list, L"Orders", 2, 60);
        const wchar_t* const rows[][3] = {{L"Berg & Co", L"Bremen", L"12"}, {L"Falk", L"Fulda", L"3"},
                                          {L"Haas AG", L"Hameln", L"40"}, {L"Lind GmbH", L"Jena", L"7"}};
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 3; ++column)
                KxListView_AddSpalte(list, row, column, rows[row][column], -1, column ? 0 : 501 + row);
        tree = host->createChild(WC_TREEVIEWW, L"", WS_VISIBLE | TVS_HASBUTTONS | TVS_HASLINES |
                                 TVS_LINESATROOT | TVS_SHOWSELALWAYS, 0, 170, 420, 150, kTreeId);
        berg = KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, nullptr, L"Berg & Co", 1001, 0);
        anna = KxTreeView_InsertItem(tree, nullptr, berg, nullptr, nullptr, nullptr, L"Anna Berg", 11, 0);
        lind = KxTreeView_InsertItem(tree, nullptr, nullptr, nullptr, nullptr, nullptr, L"Lind GmbH", 1002, 0);
        TreeView_Expand(tree, berg, TVE_EXPAND);
        host->setHandler([this](HWND, UINT message, WPARAM, LPARAM lParam, LRESULT*) {
            return message == WM_NOTIFY && onNotify(reinterpret_cast<NMHDR*>(lParam));
        });
        SetForegroundWindow(*host);
        UpdateWindow(*host);
        kvtest::PumpMessages();
    }
    void TearDown() override {
        send({key(VK_SHIFT, true)});
        host.reset();
        KvTest::TearDown();
    }

    std::wstring cell(int row, int column) const {
        wchar_t text[260] = L"";
        ListView_GetItemText(list, row, column, text, 260);
        return text;
    }
    HWND listEditor() const { return GetDlgItem(list, KX_LISTEDIT_ID); }
    HWND treeEditor() const { return GetDlgItem(tree, KX_TREEEDIT_ID); }
    static std::wstring textOf(HWND window) {
        wchar_t text[300] = L"";
        GetWindowTextW(window, text, 300);
        return text;
    }
    static std::wstring classOf(HWND window) {
        wchar_t name[40] = L"";
        GetClassNameW(window, name, 40);
        return name;
    }
    // The window's rectangle in its parent's client coordinates.
    static RECT placeOf(HWND window) {
        RECT rect;
        GetWindowRect(window, &rect);
        MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }

    // --- real input ---------------------------------------------------------------------------
    static void send(std::vector<INPUT> inputs) {
        SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
        kvtest::PumpFor(20);
    }
    static INPUT key(WORD virtualKey, bool up = false) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = virtualKey;
        input.ki.dwFlags = up ? KEYEVENTF_KEYUP : 0;
        return input;
    }
    static void press(WORD virtualKey) { send({key(virtualKey), key(virtualKey, true)}); }
    static void pressWithShift(WORD virtualKey) {
        send({key(VK_SHIFT), key(virtualKey), key(virtualKey, true), key(VK_SHIFT, true)});
    }
    static void type(const wchar_t* text) {
        std::vector<INPUT> inputs;
        for (; *text; ++text)
            for (DWORD up : {0, KEYEVENTF_KEYUP}) {
                INPUT input = {};
                input.type = INPUT_KEYBOARD;
                input.ki.wScan = *text;
                input.ki.dwFlags = KEYEVENTF_UNICODE | up;
                inputs.push_back(input);
            }
        send(inputs);
    }
    static void doubleClick(HWND window, int x, int y) {
        POINT point = {x, y};
        ClientToScreen(window, &point);
        SetCursorPos(point.x, point.y);
        std::vector<INPUT> inputs;
        for (DWORD flag : {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
            INPUT input = {};
            input.type = INPUT_MOUSE;
            input.mi.dwFlags = flag;
            inputs.push_back(input);
        }
        send(inputs);
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND list = nullptr;
    HWND tree = nullptr;
    HTREEITEM berg, anna, lind;
    std::vector<EditNote> log;
    bool followRequests = true;  // the parent answers a request for another cell with an edit

private:
    bool onNotify(NMHDR* header) {
        if (header->hwndFrom == list &&
            (header->code == LVN_BEGINLABELEDITW || header->code == LVN_ENDLABELEDITW)) {
            LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(header)->item;
            record(header->code, item.iItem, item.iSubItem, nullptr, item.pszText, item.cchTextMax,
                   item.lParam, item.iImage);
            if (header->code == LVN_BEGINLABELEDITW && followRequests)
                KxListView_SetEdit(list, nullptr, item.iItem, item.iSubItem, 0, -1, nullptr, 0);
            if (header->code == LVN_ENDLABELEDITW) {
                if (item.pszText) ListView_SetItemText(list, item.iItem, item.iSubItem % 1000, item.pszText);
                FreeMemory(item.pszText);
            }
            return true;
        }
        if (header->hwndFrom == tree && header->code == TVN_ENDLABELEDITW) {
            TVITEMW& item = reinterpret_cast<NMTVDISPINFOW*>(header)->item;
            record(header->code, -1, -1, item.hItem, item.pszText, item.cchTextMax, item.lParam, item.iImage);
            FreeMemory(item.pszText);
            return true;
        }
        return false;
    }
    void record(UINT code, int row, int column, HTREEITEM item, const wchar_t* text, int length,
                LPARAM value, int image) {
        log.push_back({code, row, column, item, text != nullptr, text ? text : L"", length, value, image});
    }
};
