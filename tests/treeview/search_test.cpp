// Finding items of a real tree view by value and by text: the walk's extent, the marker, both
// directions, prefix and number fields.
#include "tree_fixture.h"

namespace {

// (1001) Berg & Co { Anna Berg, Bernd Berg }, (1002) Lind GmbH { Carl Lind },
// (1003) Haas AG { Anna Haas { Notes } }
class TreeSearchTest : public TreeTest {
protected:
    void SetUp() override {
        TreeTest::SetUp();
        berg = add(nullptr, L"(1001) Berg & Co", 1001);
        annaBerg = add(berg, L"Anna Berg", 1);
        berndBerg = add(berg, L"Bernd Berg", 2);
        lind = add(nullptr, L"(1002) Lind GmbH", 1002);
        carl = add(lind, L"Carl Lind", 3);
        haas = add(nullptr, L"(1003) Haas AG", 1003);
        annaHaas = add(haas, L"Anna Haas", 4);
        notes = add(annaHaas, L"Notes", 5);
    }
    // A search of the whole tree from the selection, as a host repeats it.
    HTREEITEM findNext(const wchar_t* text, int prefix = 0) {
        std::wstring copy = text;
        HTREEITEM found = KxTreeView_GetItemWithText(tree, nullptr, &copy[0], 0, prefix, nullptr);
        if (found) TreeView_SelectItem(tree, found);
        return found;
    }
    HTREEITEM findPrevious(const wchar_t* text) {
        std::wstring copy = text;
        HTREEITEM out = reinterpret_cast<HTREEITEM>(1);
        HTREEITEM found = KxTreeView_GetItemWithTextEx(tree, nullptr, &copy[0], 0, 0, nullptr, &out, 0);
        EXPECT_EQ(found, out);
        if (found) TreeView_SelectItem(tree, found);
        return found;
    }

    HTREEITEM berg, annaBerg, berndBerg, lind, carl, haas, annaHaas, notes;
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
    EXPECT_EQ(carl, KxTreeView_GetItemWithData(tree, nullptr, 3, nullptr));
    EXPECT_EQ(notes, KxTreeView_GetItemWithData(tree, lind, 5, nullptr));
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, lind, 1, nullptr));     // before the start
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, carl, 1003, nullptr));  // not a sibling of it
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, nullptr, 99, nullptr));

    // The callback decides instead of equality.
    g_matchCalls.clear();
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, haas, 3, nullptr));
    EXPECT_EQ(haas, KxTreeView_GetItemWithData(tree, haas, 3, sameRecord));
    ASSERT_EQ(1u, g_matchCalls.size());
    EXPECT_EQ(haas, g_matchCalls[0].item);
    EXPECT_EQ(1003, g_matchCalls[0].itemValue);
    EXPECT_EQ(3, g_matchCalls[0].searched);
    EXPECT_EQ(berg, KxTreeView_GetItemWithData(tree, nullptr, 1, sameRecord));  // 1001
}

TEST_F(TreeSearchTest, ForwardTextSearchContinuesAfterTheSelectionWithoutWrapping) {
    wchar_t text[] = L"BERG";
    EXPECT_EQ(berg, KxTreeView_GetItemWithText(tree, nullptr, text, 0, 0, nullptr));
    EXPECT_STREQ(L"berg", text);  // lowered in place
    TreeView_SelectItem(tree, berg);
    EXPECT_EQ(annaBerg, findNext(L"berg"));
    EXPECT_EQ(berndBerg, findNext(L"berg"));
    EXPECT_EQ(nullptr, findNext(L"berg"));
    EXPECT_EQ(annaHaas, findNext(L"anna"));
    // A nested call does not take the selection as its marker.
    wchar_t anna[] = L"anna";
    EXPECT_EQ(annaBerg, KxTreeView_GetItemWithText(tree, nullptr, anna, 1, 0, nullptr));
}

TEST_F(TreeSearchTest, CallersMarkerIsPassedAndCleared) {
    HTREEITEM marker = annaBerg;
    wchar_t text[] = L"berg";
    EXPECT_EQ(berndBerg, KxTreeView_GetItemWithText(tree, berg, text, 0, 0, &marker));
    EXPECT_EQ(nullptr, marker);
    // A marker never reached: nothing is compared.
    marker = carl;
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithText(tree, haas, text, 0, 0, &marker));
    EXPECT_EQ(carl, marker);
    // With a start the caller's text is taken as it is, and item texts are lowered.
    wchar_t upper[] = L"Berg";
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithText(tree, berg, upper, 0, 0, nullptr));
    EXPECT_STREQ(L"Berg", upper);
}

TEST_F(TreeSearchTest, BackwardTextSearchFindsTheLastMatchBeforeTheSelection) {
    TreeView_SelectItem(tree, carl);
    EXPECT_EQ(berndBerg, findPrevious(L"berg"));
    EXPECT_EQ(annaBerg, findPrevious(L"berg"));
    EXPECT_EQ(berg, findPrevious(L"berg"));
    EXPECT_EQ(nullptr, findPrevious(L"berg"));
    TreeView_SelectItem(tree, notes);  // the marker is reached inside a subtree
    EXPECT_EQ(annaHaas, findPrevious(L"anna"));
    // No selection: the last match of the whole tree.
    TreeView_SelectItem(tree, nullptr);
    EXPECT_EQ(annaHaas, findPrevious(L"anna"));
}

TEST_F(TreeSearchTest, PrefixSearchComparesNumberFieldsAndTheTextAfterThem) {
    EXPECT_EQ(berndBerg, findNext(L"bern", 1));
    TreeView_SelectItem(tree, nullptr);
    EXPECT_EQ(berg, findNext(L"100", 1));   // "1001" begins with "100"
    EXPECT_EQ(lind, findNext(L"100", 1));
    EXPECT_EQ(haas, findNext(L"1003", 1));
    TreeView_SelectItem(tree, nullptr);
    EXPECT_EQ(nullptr, findNext(L"(1002", 1));  // a text is compared with what follows ")"
    EXPECT_EQ(lind, findNext(L" lind", 1));
    EXPECT_EQ(nullptr, findNext(L"lind", 1));   // "Carl Lind" does not begin with it
}

TEST_F(TreeSearchTest, NoMemoryForTheItemTextFindsNothing) {
    KvText_FailAllocation(1);
    EXPECT_EQ(nullptr, findNext(L"berg"));
    EXPECT_EQ(berg, findNext(L"berg"));
    wchar_t text[] = L"x";
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithTextEx(tree, nullptr, nullptr, 0, 0, nullptr, nullptr, 1));
    TreeView_DeleteAllItems(tree);
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithText(tree, nullptr, text, 0, 1, nullptr));
    EXPECT_EQ(nullptr, KxTreeView_GetItemWithData(tree, nullptr, 0, nullptr));
}

// A number field of five digits overruns the search's fixed buffer: the program stops.
TEST_F(TreeSearchTest, FiveDigitNumberFieldStopsTheProgram) {
    add(nullptr, L"(12345) Wolf", 6);
    EXPECT_EXIT(findNext(L"123", 1), ::testing::ExitedWithCode(static_cast<int>(0xC0000409)), "");
}

}  // namespace
