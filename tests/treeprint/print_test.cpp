// Tree printing into an enhanced metafile, read back page by page: the lines and their order,
// indentation and paging, the title and page numbers, check boxes, icons and marks as the tree
// shows them; the print dialog when no device is given; and what cannot be printed.
#include "kvtest.h"
#include <commctrl.h>
#include <memory>
#include <string>
#include <vector>
#include "kvkit_treeprint.h"
#include "kvkit_treeview.h"
#include "metafile_pages.h"

namespace {

const COLORREF kGreen = RGB(0, 160, 0), kRed = RGB(200, 0, 0), kBlue = RGB(0, 0, 200);
const COLORREF kYellow = RGB(240, 220, 0), kCyan = RGB(0, 200, 220), kMagenta = RGB(255, 0, 255);
const COLORREF kBlack = RGB(0, 0, 0), kWhite = RGB(255, 255, 255);
const int kCustomers = 6, kContacts = 20;

class TreePrintTest : public kvtest::KvTest {
protected:
    // Customer 1 .. 6, each with Contact c.1 .. c.20; customers 1 and 2 expanded. State images:
    // 1 green, 2 red, 3 blue squares. Item images: 0 a yellow square (customers), 1 a cyan square
    // (contacts), 2 a black lower-right quarter used as mark 1.
    void SetUp() override {
        KvTest::SetUp();
        host = std::make_unique<kvtest::HostWindow>(300, 400);
        tree = host->createChild(WC_TREEVIEWW, L"", WS_VISIBLE | TVS_HASBUTTONS | TVS_HASLINES | TVS_LINESATROOT,
                                 0, 0, 300, 400, 1);
        stateImages = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 4, 0);
        for (COLORREF colour : {kWhite, kGreen, kRed, kBlue}) addSquare(stateImages, colour, false);
        images = ImageList_Create(16, 16, ILC_COLOR24 | ILC_MASK, 3, 0);
        addSquare(images, kYellow, false);
        addSquare(images, kCyan, false);
        addSquare(images, kBlack, true);
        ImageList_SetOverlayImage(images, 2, 1);
        TreeView_SetImageList(tree, images, TVSIL_NORMAL);
        TreeView_SetImageList(tree, stateImages, TVSIL_STATE);
        SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
        for (int c = 1; c <= kCustomers; ++c) {
            HTREEITEM customer = add(nullptr, L"Customer " + std::to_wstring(c), 0);
            customers.push_back(customer);
            for (int k = 1; k <= kContacts; ++k)
                add(customer, L"Contact " + std::to_wstring(c) + L"." + std::to_wstring(k), 1);
        }
        SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
        TreeView_Expand(tree, customers[0], TVE_EXPAND);
        TreeView_Expand(tree, customers[1], TVE_EXPAND);
    }
    void TearDown() override {
        DestroyWindow(tree);
        ImageList_Destroy(images);
        ImageList_Destroy(stateImages);
        host.reset();
        KvTest::TearDown();
    }

    // A square of `colour`, or with `quarter` only its lower right quarter on a transparent rest.
    static void addSquare(HIMAGELIST list, COLORREF colour, bool quarter) {
        HBITMAP square = kvtest::MakeBitmap(16, 16, [&](int x, int y) {
            return !quarter || (x >= 8 && y >= 8) ? colour : kMagenta;
        });
        ImageList_AddMasked(list, square, kMagenta);
        DeleteObject(square);
    }
    HTREEITEM add(HTREEITEM parent, const std::wstring& text, int image) {
        TVINSERTSTRUCTW insert = {};
        insert.hParent = parent;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE;
        insert.item.pszText = const_cast<wchar_t*>(text.c_str());
        insert.item.iImage = insert.item.iSelectedImage = image;
        return TreeView_InsertItem(tree, &insert);
    }
    std::wstring text(HTREEITEM item) const {
        wchar_t buffer[100] = L"";
        TVITEMW data = {};
        data.mask = TVIF_TEXT | TVIF_HANDLE;
        data.hItem = item;
        data.pszText = buffer;
        data.cchTextMax = 100;
        TreeView_GetItem(tree, &data);
        return buffer;
    }
    // Items in outline order: all of them, or those that expanded parents show.
    std::vector<std::wstring> outline(bool all) const {
        std::vector<std::wstring> lines;
        if (!all) {
            for (HTREEITEM item = TreeView_GetRoot(tree); item; item = TreeView_GetNextVisible(tree, item))
                lines.push_back(text(item));
            return lines;
        }
        for (HTREEITEM customer : customers) {
            lines.push_back(text(customer));
            for (HTREEITEM contact = TreeView_GetChild(tree, customer); contact;
                 contact = TreeView_GetNextSibling(tree, contact))
                lines.push_back(text(contact));
        }
        return lines;
    }

    PrintedDocument print(HTREEITEM start, const wchar_t* title, int flags) {
        HDC dc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
        pagesPrinted = KxTreeView_Print(tree, dc, start, title, flags);
        HENHMETAFILE metafile = CloseEnhMetaFile(dc);
        PrintedDocument document = ReadPrintedPages(metafile);
        DeleteEnhMetaFile(metafile);
        EXPECT_EQ(0, document.drawingOutsidePages);
        return document;
    }
    // The item lines of a page: its texts between the title (when there is one) and the number.
    static std::vector<PrintedText> itemLines(const PrintedPage& page, bool titled) {
        if (page.texts.size() < (titled ? 2u : 1u)) return {};
        return std::vector<PrintedText>(page.texts.begin() + (titled ? 1 : 0), page.texts.end() - 1);
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND tree = nullptr;
    HIMAGELIST images = nullptr, stateImages = nullptr;
    std::vector<HTREEITEM> customers;
    int pagesPrinted = -1;
};

TEST_F(TreePrintTest, AllItemsSpanPagesInOutlineOrderWithTitleAndPageNumbers) {
    PrintedDocument document = print(nullptr, L"Customers and contacts", KXTREEPRINT_ALLITEMS);
    int pages = static_cast<int>(document.pages.size());
    ASSERT_GE(pages, 2);
    EXPECT_EQ(pages, pagesPrinted);

    std::vector<std::wstring> expected = outline(true), printed;
    size_t firstPageLines = itemLines(document.pages[0], true).size();
    for (int p = 0; p < pages; ++p) {
        const PrintedPage& page = document.pages[p];
        std::wstring number = L"Page " + std::to_wstring(p + 1) + L" of " + std::to_wstring(pages);
        EXPECT_TRUE(page.ended);
        EXPECT_EQ(number, page.description);
        ASSERT_GE(page.texts.size(), 3u);
        EXPECT_EQ(L"Customers and contacts", page.texts.front().text);
        EXPECT_TRUE(page.texts.front().bold);
        EXPECT_EQ(number, page.texts.back().text);
        std::vector<PrintedText> lines = itemLines(page, true);
        // Every page but the last is full; lines run down the page at one pitch, below the title
        // and above the number.
        if (p < pages - 1) {
            EXPECT_EQ(firstPageLines, lines.size()) << p;
        }
        EXPECT_LE(lines.size(), firstPageLines);
        EXPECT_GT(lines.front().at.y, page.texts.front().at.y);
        EXPECT_LT(lines.back().at.y, page.texts.back().at.y);
        for (size_t i = 0; i < lines.size(); ++i) {
            printed.push_back(lines[i].text);
            if (i > 1) {
                EXPECT_EQ(lines[1].at.y - lines[0].at.y, lines[i].at.y - lines[i - 1].at.y);
            }
        }
    }
    EXPECT_EQ(expected, printed);
    EXPECT_EQ(static_cast<size_t>((expected.size() + firstPageLines - 1) / firstPageLines),
              document.pages.size());
}

TEST_F(TreePrintTest, ExpandedItemsOnlyAndIndentedByLevel) {
    PrintedDocument document = print(nullptr, L"Shown", 0);
    ASSERT_EQ(1u, document.pages.size());
    EXPECT_EQ(1, pagesPrinted);
    std::vector<PrintedText> lines = itemLines(document.pages[0], true);
    std::vector<std::wstring> printed;
    for (const PrintedText& line : lines) printed.push_back(line.text);
    EXPECT_EQ(outline(false), printed);
    EXPECT_EQ(static_cast<size_t>(kCustomers + 2 * kContacts), printed.size());

    // Customers start at one x, their contacts one indent further; the customer line comes
    // before its contacts'.
    int customerX = lines[0].at.x, contactX = lines[1].at.x;
    EXPECT_GT(contactX, customerX);
    for (const PrintedText& line : lines)
        EXPECT_EQ(line.text.rfind(L"Customer", 0) == 0 ? customerX : contactX, line.at.x) << line.text;
}

TEST_F(TreePrintTest, ASubtreeStartsAtLevelZeroAndNoTitleLeavesOnlyTheNumber) {
    TreeView_Expand(tree, customers[3], TVE_EXPAND);
    PrintedDocument document = print(customers[3], nullptr, 0);
    ASSERT_EQ(1u, document.pages.size());
    std::vector<PrintedText> lines = itemLines(document.pages[0], false);
    ASSERT_EQ(static_cast<size_t>(1 + kContacts), lines.size());
    EXPECT_EQ(L"Customer 4", lines[0].text);
    EXPECT_EQ(L"Contact 4.20", lines.back().text);
    EXPECT_EQ(L"Page 1 of 1", document.pages[0].texts.back().text);
    // Level 0 lies where the whole tree's customers lie.
    PrintedDocument whole = print(nullptr, nullptr, 0);
    EXPECT_EQ(itemLines(whole.pages[0], false)[0].at.x, lines[0].at.x);
    // A collapsed start prints alone.
    document = print(customers[5], nullptr, 0);
    ASSERT_EQ(1u, document.pages.size());
    EXPECT_EQ(1u, itemLines(document.pages[0], false).size());
}

TEST_F(TreePrintTest, CheckBoxesIconsMarksAndBoldAsTheTreeShowsThem) {
    HTREEITEM first = TreeView_GetChild(tree, customers[0]);
    HTREEITEM second = TreeView_GetNextSibling(tree, first);
    KxTreeView_SetCheckState(tree, customers[0], 1);   // state image 2
    KxTreeView_SetCheckState(tree, first, 0);          // state image 1
    TreeView_SetItemState(tree, second, INDEXTOSTATEIMAGEMASK(3), TVIS_STATEIMAGEMASK);
    KxTreeView_SetMark(tree, first, 1);
    TreeView_SetItemState(tree, customers[0], TVIS_BOLD, TVIS_BOLD);

    PrintedDocument document = print(customers[0], L"Pictures", 0);
    ASSERT_EQ(1u, document.pages.size());
    const PrintedPage& page = document.pages[0];
    std::vector<PrintedText> lines = itemLines(page, true);
    ASSERT_EQ(4u, std::min<size_t>(4, lines.size()));
    EXPECT_TRUE(lines[0].bold);
    EXPECT_FALSE(lines[1].bold);
    // The pictures of each line, left to right, by their centre colour (and a corner).
    auto picturesOf = [&](const PrintedText& line) {
        std::vector<const PrintedPicture*> found;
        for (const PrintedPicture& picture : page.pictures)
            if (picture.at.top <= line.at.y + 2 && picture.at.bottom >= line.at.y + 2 && picture.at.right <= line.at.x)
                found.push_back(&picture);
        return found;
    };
    auto centre = [](const PrintedPicture* picture) { return picture->pixel(picture->width / 2 - 2, picture->height / 2 - 2); };
    auto lowerRight = [](const PrintedPicture* picture) { return picture->pixel(picture->width - 2, picture->height - 2); };

    std::vector<const PrintedPicture*> customer = picturesOf(lines[0]);
    ASSERT_EQ(2u, customer.size());
    EXPECT_EQ(kRed, centre(customer[0]));      // checked
    EXPECT_EQ(kYellow, centre(customer[1]));
    EXPECT_EQ(kYellow, lowerRight(customer[1]));
    EXPECT_LT(customer[0]->at.left, customer[1]->at.left);
    std::vector<const PrintedPicture*> marked = picturesOf(lines[1]);
    ASSERT_EQ(2u, marked.size());
    EXPECT_EQ(kGreen, centre(marked[0]));      // unchecked
    EXPECT_EQ(kCyan, centre(marked[1]));
    EXPECT_EQ(kBlack, lowerRight(marked[1]));  // the mark over the icon
    std::vector<const PrintedPicture*> further = picturesOf(lines[2]);
    ASSERT_EQ(2u, further.size());
    EXPECT_EQ(kBlue, centre(further[0]));      // a further state image
    std::vector<const PrintedPicture*> plain = picturesOf(lines[3]);
    ASSERT_EQ(1u, plain.size());               // no state image: the icon alone
    EXPECT_EQ(kCyan, centre(plain[0]));
    EXPECT_EQ(L"Contact 1.3", lines[3].text);
}

TEST_F(TreePrintTest, WhatCannotBePrintedGivesZeroAndLeavesTheDeviceEmpty) {
    HDC dc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(0, KxTreeView_Print(nullptr, dc, nullptr, L"x", 0));
    EXPECT_EQ(0, KxTreeView_Print(*host, dc, nullptr, L"x", 0));  // no tree view
    HWND empty = host->createChild(WC_TREEVIEWW, L"", 0, 0, 0, 10, 10, 2);
    EXPECT_EQ(0, KxTreeView_Print(empty, dc, nullptr, L"x", 0));
    EXPECT_EQ(0, KxTreeView_Print(empty, nullptr, nullptr, L"x", 0));  // asks for no printer
    DestroyWindow(empty);
    EXPECT_EQ(0, KxTreeView_Print(empty, dc, nullptr, L"x", 0));
    KvText_FailAllocation(1);  // the line list
    EXPECT_EQ(0, KxTreeView_Print(tree, dc, nullptr, L"x", 0));
    HENHMETAFILE metafile = CloseEnhMetaFile(dc);
    PrintedDocument document = ReadPrintedPages(metafile);
    DeleteEnhMetaFile(metafile);
    EXPECT_TRUE(document.pages.empty());
    EXPECT_EQ(0, document.drawingOutsidePages);

    // A device that takes no pages: the document cannot start.
    HDC memory = CreateCompatibleDC(nullptr);
    EXPECT_EQ(0, KxTreeView_Print(tree, memory, nullptr, L"x", 0));
    DeleteDC(memory);
}

}  // namespace
