// Check boxes of a real tree view: state images, checking and counting many items, and the check
// rules applied by the parent's NM_CLICK handler to clicks on the check boxes.
#include "tree_fixture.h"

namespace {

using States = std::vector<int>;

// A { A1 { note }, A2 }, B { B1 }, every item showing.
class CheckTest : public TreeTest {
protected:
    void SetUp() override {
        TreeTest::SetUp();
        a = add(nullptr, L"Customer A", 1);
        a1 = add(a, L"Contact A1", 11);
        note = add(a1, L"Note", 111);
        a2 = add(a, L"Contact A2", 12);
        b = add(nullptr, L"Customer B", 2);
        b1 = add(b, L"Contact B1", 21);
    }
    // The parent applies `rule` to every click, before the tree toggles the box.
    void onClick(std::function<int(HTREEITEM*)> rule) {
        onNotify = [this, rule](NMHDR* notify, LRESULT*) {
            if (notify->code == static_cast<UINT>(NM_CLICK)) {
                HTREEITEM item = nullptr;
                results.push_back(rule(&item));
                handled.push_back(item);
            }
            return false;
        };
    }
    int clickBox(HTREEITEM item) {
        clickCheckBox(item);
        return results.empty() ? -2 : results.back();
    }
    States all() const { return checks({a, a1, note, a2, b, b1}); }
    void check(std::initializer_list<HTREEITEM> items) {
        for (HTREEITEM item : items) KxTreeView_SetCheckState(tree, item, 1);
    }

    HTREEITEM a, a1, note, a2, b, b1;
    std::vector<int> results;
    std::vector<HTREEITEM> handled;
};

// Records the filter's calls; refuses changes to the note (value 111).
struct FilterCall {
    HTREEITEM item;
    int checked;
    LPARAM value;
    LPARAM user;
};
std::vector<FilterCall> g_filterCalls;
int __stdcall spareTheNote(HWND, HTREEITEM item, int checked, LPARAM value, LPARAM user) {
    g_filterCalls.push_back({item, checked, value, user});
    return value != 111;
}

TEST_F(CheckTest, StateImagesReadAsCheckStates) {
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, a));
    EXPECT_TRUE(KxTreeView_SetCheckState(tree, a, 5));
    EXPECT_EQ(INDEXTOSTATEIMAGEMASK(2), state(a, TVIS_STATEIMAGEMASK));
    EXPECT_EQ(1, KxTreeView_GetCheckState(tree, a));
    KxTreeView_SetCheckState(tree, a, 0);
    EXPECT_EQ(INDEXTOSTATEIMAGEMASK(1), state(a, TVIS_STATEIMAGEMASK));
    TreeView_SetItemState(tree, b, INDEXTOSTATEIMAGEMASK(3), TVIS_STATEIMAGEMASK);
    EXPECT_EQ(2, KxTreeView_GetCheckState(tree, b));
    TreeView_SetItemState(tree, b, 0, TVIS_STATEIMAGEMASK);
    EXPECT_EQ(-1, KxTreeView_GetCheckState(tree, b));
    EXPECT_EQ(-1, KxTreeView_GetCheckState(tree, nullptr));
    EXPECT_EQ(0, KxTreeView_SetCheckState(tree, nullptr, 1));
}

TEST_F(CheckTest, CountingByLevelTakesEveryNonZeroStateAsChecked) {
    check({a, a1, note, b1});
    TreeView_SetItemState(tree, a2, 0, TVIS_STATEIMAGEMASK);  // no box: -1, counted
    EXPECT_EQ(1, KxTreeView_GetAllChecked(tree, nullptr, 0));
    EXPECT_EQ(3, KxTreeView_GetAllChecked(tree, nullptr, 1));
    EXPECT_EQ(1, KxTreeView_GetAllChecked(tree, nullptr, 2));
    EXPECT_EQ(0, KxTreeView_GetAllChecked(tree, nullptr, 3));
    EXPECT_EQ(5, KxTreeView_GetAllChecked(tree, nullptr, -1));
    EXPECT_EQ(0, KxTreeView_GetAllChecked(tree, b, 0));
    EXPECT_EQ(1, KxTreeView_GetAllChecked(tree, b, 1));
    EXPECT_EQ(3, KxTreeView_GetAllChecked(tree, a1, -1));  // A1, the note and A2 without a box
}

TEST_F(CheckTest, CheckAllWalksFromTheStartAndAsksTheFilter) {
    EXPECT_EQ(1, KxTreeView_CheckAll(tree, a2, 1, nullptr, 0, nullptr));
    EXPECT_EQ((States{1, 1, 1, 0, 1, 1}), all());
    g_filterCalls.clear();
    EXPECT_EQ(1, KxTreeView_CheckAll(tree, nullptr, 0, spareTheNote, 42, a1));
    EXPECT_EQ((States{1, 0, 1, 0, 1, 1}), all());
    ASSERT_EQ(3u, g_filterCalls.size());  // A1, the note, A2; not B
    EXPECT_EQ(note, g_filterCalls[1].item);
    EXPECT_EQ(0, g_filterCalls[1].checked);
    EXPECT_EQ(111, g_filterCalls[1].value);
    EXPECT_EQ(42, g_filterCalls[1].user);
    TreeView_DeleteAllItems(tree);
    EXPECT_EQ(0, KxTreeView_CheckAll(tree, nullptr, 1, nullptr, 0, nullptr));
}

TEST_F(CheckTest, MouseHitsTellTheItemAndWhetherItsBoxIsUnderTheCursor) {
    POINT box = checkBoxPoint(a1);
    SetCursorPos(box.x, box.y);
    UINT flags = 0;
    EXPECT_EQ(a1, KxTreeView_GetMouseHit(tree, &flags));
    EXPECT_TRUE(flags & TVHT_ONITEMSTATEICON);
    HTREEITEM item = nullptr;
    EXPECT_EQ(TVHT_ONITEMSTATEICON, KxTreeView_CheckChange(tree, &item));
    EXPECT_EQ(a1, item);
    POINT label = labelPoint(b);
    SetCursorPos(label.x, label.y);
    EXPECT_EQ(0, KxTreeView_CheckChange(tree, &item));
    EXPECT_EQ(b, item);
    EXPECT_EQ(b, KxTreeView_GetMouseHit(tree, nullptr));
    RECT window;
    GetWindowRect(tree, &window);
    SetCursorPos(window.left + 150, window.bottom - 5);
    item = nullptr;
    EXPECT_EQ(nullptr, KxTreeView_GetMouseHit(tree, &flags));
    EXPECT_EQ(0, KxTreeView_CheckChange(tree, &item));
    EXPECT_EQ(nullptr, item);
}

TEST_F(CheckTest, ParentRuleRefusesChildrenOfUncheckedParentsAndUncheckingGoesOneLevelDown) {
    onClick([this](HTREEITEM* item) { return KxTreeView_HandleCheckChange(tree, 0, 1, item); });
    EXPECT_EQ(0, clickBox(a1));  // A is unchecked
    EXPECT_EQ((States{0, 0, 0, 0, 0, 0}), all());
    EXPECT_EQ(a1, selection());
    EXPECT_EQ(1, clickBox(a));
    EXPECT_EQ(a, handled.back());
    EXPECT_EQ((States{1, 0, 0, 0, 0, 0}), all());  // no children rule
    EXPECT_EQ(1, clickBox(a1));
    EXPECT_EQ(1, clickBox(note));
    EXPECT_EQ(1, clickBox(a));  // unchecking A unchecks A1, but not the note below it
    EXPECT_EQ((States{0, 0, 1, 0, 0, 0}), all());
    // A click beside the box is not a check change.
    size_t before = results.size();
    click(labelPoint(b));
    ASSERT_EQ(before + 1, results.size());
    EXPECT_EQ(0, results.back());
    EXPECT_EQ((States{0, 0, 1, 0, 0, 0}), all());
}

TEST_F(CheckTest, ChildrenRuleChecksAndUnchecksTheDirectChildren) {
    onClick([this](HTREEITEM* item) { return KxTreeView_HandleCheckChangeEx(tree, 0, 0, 1, item); });
    EXPECT_EQ(1, clickBox(a));
    EXPECT_EQ((States{1, 1, 0, 1, 0, 0}), all());
    EXPECT_EQ(1, clickBox(a));
    EXPECT_EQ((States{0, 0, 0, 0, 0, 0}), all());
    EXPECT_EQ(1, clickBox(a1));  // no parent rule: allowed under an unchecked parent
    EXPECT_EQ((States{0, 1, 1, 0, 0, 0}), all());
}

TEST_F(CheckTest, OneOfManyKeepsExactlyOneItemChecked) {
    check({a, note, b});
    onClick([this](HTREEITEM* item) { return KxTreeView_HandleCheckChange(tree, 1, 0, item); });
    EXPECT_EQ(1, clickBox(a2));
    EXPECT_EQ((States{0, 0, 0, 1, 0, 0}), all());
    EXPECT_EQ(0, clickBox(a2));  // the checked item stays checked
    EXPECT_EQ((States{0, 0, 0, 1, 0, 0}), all());
    EXPECT_EQ(1, clickBox(b1));
    EXPECT_EQ((States{0, 0, 0, 0, 0, 1}), all());
}

TEST_F(CheckTest, AnItemGivenByTheCallerNeedsNoClick) {
    HTREEITEM item = a;
    EXPECT_EQ(1, KxTreeView_HandleCheckChangeEx(tree, 0, 1, 1, &item));
    EXPECT_EQ(a, item);
    EXPECT_EQ(a, selection());
    EXPECT_EQ((States{0, 1, 0, 1, 0, 0}), all());  // A's own box is the tree's to toggle
}

TEST_F(CheckTest, FilteredRulesAskBeforeEveryChangeToAnotherItem) {
    auto rules = [this](int oneOfMany, int parentRule, int childrenRule) {
        onClick([=](HTREEITEM* item) {
            return KxTreeView_HandleCheckChangeExRight(tree, oneOfMany, parentRule, childrenRule,
                                                       spareTheNote, 77, item);
        });
    };
    // With the parent rule, checking only tests the parent: no children are checked.
    rules(0, 1, 1);
    EXPECT_EQ(1, clickBox(a));
    EXPECT_EQ((States{1, 0, 0, 0, 0, 0}), all());
    EXPECT_EQ(0, clickBox(b1));
    // Without it the children rule checks them, as the filter allows.
    rules(0, 0, 1);
    EXPECT_EQ(1, clickBox(a1));
    EXPECT_EQ((States{1, 1, 0, 0, 0, 0}), all());  // the note was spared
    // One of many: the filter keeps the note checked.
    KxTreeView_SetCheckState(tree, note, 1);
    rules(1, 0, 0);
    g_filterCalls.clear();
    EXPECT_EQ(1, clickBox(b));
    EXPECT_EQ((States{0, 0, 1, 0, 1, 0}), all());
    bool askedForTheNote = false;
    for (const FilterCall& call : g_filterCalls) {
        EXPECT_EQ(77, call.user);
        EXPECT_EQ(0, call.checked);
        askedForTheNote |= call.item == note && call.value == 111;
    }
    EXPECT_TRUE(askedForTheNote);
}

}  // namespace
