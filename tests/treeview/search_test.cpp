// Finding items of a real tree view by value and by text: the walk's extent, the marker, both
// directions, prefix and number fields.
#include "tree_fixture.h"

namespace {

class TreeSearchTest : public TreeTest {
protected:
    // A search of the whole tree from the selection, which moves to the item found.
    HTREEITEM find(const wchar_t* text, int prefix = 0, int forward = 1) {
        std::wstring copy = text;
        HTREEITEM out = reinterpret_cast<HTREEITEM>(1);
        HTREEITEM found = KxTreeView_GetItemWithTextEx(tree, nullptr, &copy[0], 0, prefix, nullptr, &out, forward);
        EXPECT_EQ(found, out);
        if (found) TreeView_SelectItem(tree, found);
        return found;
    }
};

struct MatchCall {
    HTREEITEM item;
    LPARAM itemValue;
    LPARAM searched;
};
std::vector<MatchCall> g_matchCalls;
int __stdcall sameRecord(HWND, HTREEITEM item, LPARAM itemValue, LPARAM searched) {
    g_matchCalls.push_back({item, itemValue, searched});
    return itemValue % 1000 == searched;
}

TEST_F(TreeSearchTest, ValueSearchCoversTheStartItsSubtreeAndFollowingSiblingsOnly) {
    EXPECT_EQ(carl, KxTreeView_GetItemWithData(tree, nullptr, 21, nullptr));
    EXPECT_EQ(berndBerg, KxTreeView_GetItemWithData(tree, annaBerg, 12, nullptr));
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, lind, 111, nullptr));   // before the start
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, notes, 12, nullptr));   // not a sibling
    // The callback decides instead of equality.
    g_matchCalls.clear();
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, lind, 2, nullptr));
    EXPECT_EQ(lind, KxTreeView_GetItemWithData(tree, lind, 2, sameRecord));
    ASSERT_EQ(1u, g_matchCalls.size());
    EXPECT_EQ(lind, g_matchCalls[0].item);
    EXPECT_EQ(1002, g_matchCalls[0].itemValue);
    EXPECT_EQ(2, g_matchCalls[0].searched);
}

TEST_F(TreeSearchTest, ForwardTextSearchContinuesAfterTheSelectionWithoutWrapping) {
    wchar_t text[] = L"BERG";
    EXPECT_EQ(berg, KxTreeView_GetItemWithText(tree, nullptr, text, 0, 0, nullptr));
    EXPECT_STREQ(L"berg", text);  // lowered in place
    TreeView_SelectItem(tree, berg);
    EXPECT_EQ(annaBerg, find(L"berg"));
    EXPECT_EQ(berndBerg, find(L"berg"));
    EXPECT_EQ(nullptr, find(L"berg"));
    // A nested call does not start after the selection.
    EXPECT_EQ(berg, KxTreeView_GetItemWithText(tree, nullptr, text, 1, 0, nullptr));

    // The caller's marker is passed, then cleared; one never reached lets nothing match.
    HTREEITEM marker = annaBerg;
    EXPECT_EQ(berndBerg, KxTreeView_GetItemWithText(tree, berg, text, 0, 0, &marker));
    EXPECT_EQ(nullptr, marker);
    marker = annaBerg;
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithText(tree, lind, text, 0, 0, &marker));
    EXPECT_EQ(annaBerg, marker);
    // With a start the caller's text is taken as it is, against lowered item texts.
    wchar_t upper[] = L"Berg";
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithText(tree, berg, upper, 0, 0, nullptr));
    EXPECT_STREQ(L"Berg", upper);
}

TEST_F(TreeSearchTest, BackwardTextSearchFindsTheLastMatchBeforeTheSelection) {
    TreeView_SelectItem(tree, carl);
    EXPECT_EQ(berndBerg, find(L"berg", 0, 0));
    EXPECT_EQ(annaBerg, find(L"berg", 0, 0));
    EXPECT_EQ(berg, find(L"berg", 0, 0));
    EXPECT_EQ(nullptr, find(L"berg", 0, 0));
    TreeView_SelectItem(tree, notes);  // the marker is met inside a subtree
    EXPECT_EQ(annaBerg, find(L"berg", 0, 0));
    TreeView_SelectItem(tree, nullptr);  // no selection: the last match of the tree
    EXPECT_EQ(berndBerg, find(L"berg", 0, 0));
}

TEST_F(TreeSearchTest, PrefixSearchComparesNumberFieldsAndTheTextAfterThem) {
    EXPECT_EQ(berndBerg, find(L"bern", 1));
    TreeView_SelectItem(tree, nullptr);
    EXPECT_EQ(berg, find(L"100", 1));  // "1001" begins with "100"
    EXPECT_EQ(lind, find(L"100", 1));
    TreeView_SelectItem(tree, nullptr);
    EXPECT_EQ(lind, find(L"1002", 1));
    TreeView_SelectItem(tree, nullptr);
    EXPECT_EQ(nullptr, find(L"(1002", 1));  // a text is compared with what follows ")"
    EXPECT_EQ(lind, find(L" lind", 1));
    EXPECT_EQ(nullptr, find(L"lind", 1));  // "Carl Lind" does not begin with it
}

TEST_F(TreeSearchTest, NoMemoryForTheItemTextFindsNothing) {
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, find(L"berg"));
    EXPECT_EQ(berg, find(L"berg"));
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithTextEx(tree, nullptr, nullptr, 0, 0, nullptr, nullptr, 1));
}

// A number field of five digits overruns the search's fixed buffer: the program stops.
TEST_F(TreeSearchTest, FiveDigitNumberFieldStopsTheProgram) {
    add(nullptr, L"(12345) Wolf", 6);
    EXPECT_EXIT(find(L"123", 1), ::testing::ExitedWithCode(static_cast<int>(0xC0000409)), "");
}

}  // namespace
