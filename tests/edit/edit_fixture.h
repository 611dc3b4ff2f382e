// A customer list (report view, three columns) and a contact tree in a host window whose
// WM_NOTIFY handling acts as a host's: it starts the edit that the editor asks for and stores
// committed texts. Every notification the parent receives is logged; keys and clicks come as real
// input (SendInput).
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <memory>
#include <string>
#include <vector>
#include "kvkit_edit.h"
#include "kvkit_listview.h"
#include "kvkit_treeview.h"

// One notification received by the parent. `text` is what the notification carried (null: the
// flag hasText is false); the receiver freed the block.
struct EditNote {
    UINT code;
    int row;          // list: item.iItem
    int column;       // list: item.iSubItem
    HTREEITEM item;   // tree: item.hItem
    bool hasText;
    std::wstring text;
    int length;       // item.cchTextMax
    LPARAM value;     // item.lParam
    int image;        // item.iImage
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
        addRow(501, L"Berg & Co", L"Bremen", L"12");
        addRow(502, L"Falk", L"Fulda", L"3");
        addRow(503, L"Haas AG", L"Hameln", L"40");
        addRow(504, L"Lind GmbH", L"Jena", L"7");
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
        releaseKeys();
        host.reset();
        KvTest::TearDown();
    }

    void addRow(LPARAM value, const wchar_t* name, const wchar_t* city, const wchar_t* orders) {
        int row = ListView_GetItemCount(list);
        KxListView_AddSpalte(list, row, 0, name, -1, value);
        KxListView_AddSpalte(list, row, 1, city, -1, 0);
        KxListView_AddSpalte(list, row, 2, orders, -1, 0);
    }
    std::wstring cell(int row, int column) const {
        wchar_t text[260] = L"";
        ListView_GetItemText(list, row, column, text, 260);
        return text;
    }
    std::wstring label(HTREEITEM item) const {
        wchar_t text[260] = L"";
        TVITEMW data = {};
        data.mask = TVIF_TEXT | TVIF_HANDLE;
        data.hItem = item;
        data.pszText = text;
        data.cchTextMax = 260;
        TreeView_GetItem(tree, &data);
        return text;
    }
    HWND listEditor() const { return GetDlgItem(list, KX_LISTEDIT_ID); }
    HWND treeEditor() const { return GetDlgItem(tree, KX_TREEEDIT_ID); }
    std::wstring textOf(HWND window) const {
        wchar_t text[300] = L"";
        GetWindowTextW(window, text, 300);
        return text;
    }
    // The window's rectangle in its parent's client coordinates.
    static RECT placeOf(HWND window) {
        RECT rect;
        GetWindowRect(window, &rect);
        MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    std::vector<EditNote> notes(UINT code) const {
        std::vector<EditNote> selected;
        for (const EditNote& note : log)
            if (note.code == code) selected.push_back(note);
        return selected;
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
        for (; *text; ++text) {
            INPUT input = {};
            input.type = INPUT_KEYBOARD;
            input.ki.wScan = *text;
            input.ki.dwFlags = KEYEVENTF_UNICODE;
            inputs.push_back(input);
            input.ki.dwFlags |= KEYEVENTF_KEYUP;
            inputs.push_back(input);
        }
        send(inputs);
    }
    static void releaseKeys() { send({key(VK_SHIFT, true)}); }
    // Clicks (twice for a double click) at a point of the window's client area.
    static void click(HWND window, int x, int y, int times = 1) {
        POINT point = {x, y};
        ClientToScreen(window, &point);
        SetCursorPos(point.x, point.y);
        std::vector<INPUT> inputs;
        for (int i = 0; i < times; ++i) {
            for (DWORD flag : {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
                INPUT input = {};
                input.type = INPUT_MOUSE;
                input.mi.dwFlags = flag;
                inputs.push_back(input);
            }
        }
        send(inputs);
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND list = nullptr;
    HWND tree = nullptr;
    HTREEITEM berg, anna, lind;
    std::vector<EditNote> log;
    // How the parent answers a request for another cell: with a new edit box (the host's usual
    // answer) unless switched off.
    bool followRequests = true;
    bool storeTexts = true;
    BYTE requestStyle = 0;

private:
    bool onNotify(NMHDR* header) {
        if (header->hwndFrom == list &&
            (header->code == LVN_BEGINLABELEDITW || header->code == LVN_ENDLABELEDITW)) {
            auto* info = reinterpret_cast<NMLVDISPINFOW*>(header);
            record(header->code, info->item.iItem, info->item.iSubItem, nullptr, info->item.pszText,
                   info->item.cchTextMax, info->item.lParam, info->item.iImage);
            if (header->code == LVN_BEGINLABELEDITW && followRequests)
                KxListView_SetEdit(list, nullptr, info->item.iItem, info->item.iSubItem, requestStyle,
                                   -1, nullptr, 0);
            if (header->code == LVN_ENDLABELEDITW) {
                if (info->item.pszText && storeTexts)
                    ListView_SetItemText(list, info->item.iItem, info->item.iSubItem % 1000,
                                         info->item.pszText);
                FreeMemory(info->item.pszText);
            }
            return true;
        }
        if (header->hwndFrom == tree && header->code == TVN_ENDLABELEDITW) {
            auto* info = reinterpret_cast<NMTVDISPINFOW*>(header);
            record(header->code, -1, -1, info->item.hItem, info->item.pszText, info->item.cchTextMax,
                   info->item.lParam, info->item.iImage);
            FreeMemory(info->item.pszText);
            return true;
        }
        return false;
    }
    void record(UINT code, int row, int column, HTREEITEM item, const wchar_t* text, int length,
                LPARAM value, int image) {
        log.push_back({code, row, column, item, text != nullptr, text ? text : L"", length, value, image});
    }
};
