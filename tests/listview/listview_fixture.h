// A report-view list view in a host window, with helpers to fill it and read it back.
#pragma once
#include "kvtest.h"
#include <commctrl.h>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>
#include "kvkit_listview.h"

class ListViewTest : public kvtest::KvTest {
protected:
    static const int kListId = 100;

    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(400, 300);
        list = host->createChild(WC_LISTVIEWW, L"", WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SHOWSELALWAYS,
                                 0, 0, 400, 300, kListId);
        ASSERT_TRUE(list);
    }
    void TearDown() override {
        // The header does not delete the arrow it shows.
        KxListView_SetHeaderBitmap(list, nullptr, -1, 1);
        host.reset();
        KvTest::TearDown();
    }

    HWND header() const { return ListView_GetHeader(list); }
    int columnCount() const { return Header_GetItemCount(header()); }
    int rowCount() const { return ListView_GetItemCount(list); }

    void addColumns(std::initializer_list<const wchar_t*> titles) {
        int column = columnCount();
        for (const wchar_t* title : titles) {
            ASSERT_EQ(column, KxListView_AddHeader(list, title, column, 80));
            ++column;
        }
    }
    // Appends a row: the first text goes to sub-item 0 with the row value, the others follow.
    void addRow(LPARAM value, std::initializer_list<const wchar_t*> cells, int image = -1) {
        int row = rowCount();
        int column = 0;
        for (const wchar_t* text : cells) {
            if (column == 0) ASSERT_EQ(row, KxListView_AddSpalte(list, row, 0, text, image, value));
            else ASSERT_TRUE(KxListView_AddSpalte(list, row, column, text, -1, 0));
            ++column;
        }
    }
    std::wstring cell(int row, int column) const {
        wchar_t text[260] = L"";
        ListView_GetItemText(list, row, column, text, 260);
        return text;
    }
    std::vector<LPARAM> rowValues() const {
        std::vector<LPARAM> values;
        for (int row = 0; row < rowCount(); ++row) values.push_back(KxListView_GetItemData(list, row));
        return values;
    }
    std::vector<std::wstring> column(int column) const {
        std::vector<std::wstring> texts;
        for (int row = 0; row < rowCount(); ++row) texts.push_back(cell(row, column));
        return texts;
    }
    HDITEMW headerItem(int column) const {
        HDITEMW item = {};
        item.mask = HDI_FORMAT | HDI_BITMAP | HDI_LPARAM;
        Header_GetItem(header(), column, &item);
        return item;
    }
    HBITMAP arrowOf(int column) const { return headerItem(column).hbm; }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND list = nullptr;
};
