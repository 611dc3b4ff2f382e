// Check boxes of a real tree view: state images, checking and counting many items, and the check
// rules that the parent's NM_CLICK handler applies to mouse clicks on the check boxes.
#include "tree_fixture.h"

namespace {

using States = std::vector<int>;

// Records the filter's calls; refuses every change to the notes (value 111).
struct FilterCall {
    HTREEITEM item;
    int checked;
    LPARAM value;
    LPARAM user;
};
std::vector<FilterCall> g_filterCalls;
int __stdcall spareTheNotes(HWND, HTREEITEM item, int checked, LPARAM value, LPARAM user) {
    g_filterCalls.push_back({item, checked, value, user});
    return value != 111;
}

class CheckTest : public TreeTest {
protected:
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
        click(pointOn(item, true));
        return results.empty() ? -2 : results.back();
    }
    void check(std::initializer_list<HTREEITEM> items) {
        for (HTREEITEM item : items) KxTreeView_SetCheckState(tree, item, 1);
    }

    std::vector<int> results;
    std::vector<HTREEITEM> handled;
};

TEST_F(CheckTest, StateImagesCountingAndCheckingMany) {
    EXPECT_EQ(0, KxTreeView_GetCheckState(tree, berg));
    EXPECT_TRUE(KxTreeView_SetCheckState(tree, berg, 5));
    EXPECT_EQ(INDEXTOSTATEIMAGEMASK(2), state(berg, TVIS_STATEIMAGEMASK));
    TreeView_SetItemState(tree, lind, INDEXTOSTATEIMAGEMASK(3), TVIS_STATEIMAGEMASK);
    EXPECT_EQ(2, KxTreeView_GetCheckState(tree, lind));
    TreeView_SetItemState(tree, berndBerg, 0, TVIS_STATEIMAGEMASK);
    EXPECT_EQ(-1, KxTreeView_GetCheckState(tree, berndBerg));
    EXPECT_EQ(-1, KxTreeView_GetCheckState(tree, nullptr));

    // Every state but 0 counts: Berg, Lind (image 3) and Bernd (no box) besides the notes.
    check({notes});
    EXPECT_EQ(2, KxTreeView_GetAllChecked(tree, nullptr, 0));
    EXPECT_EQ(1, KxTreeView_GetAllChecked(tree, nullptr, 1));
    EXPECT_EQ(1, KxTreeView_GetAllChecked(tree, nullptr, 2));
    EXPECT_EQ(4, KxTreeView_GetAllChecked(tree, nullptr, -1));
    EXPECT_EQ(2, KxTreeView_GetAllChecked(tree, annaBerg, -1));  // Anna's level and below
    EXPECT_EQ(0, KxTreeView_GetAllChecked(tree, carl, 0));

    EXPECT_EQ(1, KxTreeView_CheckAll(tree, carl, 0, nullptr, 0, nullptr));
    EXPECT_EQ((States{0, 0, 0, 0, 0, 0}), checks());
    g_filterCalls.clear();
    EXPECT_EQ(1, KxTreeView_CheckAll(tree, nullptr, 1, spareTheNotes, 42, annaBerg));
    EXPECT_EQ((States{0, 1, 0, 1, 0, 0}), checks());
    ASSERT_EQ(3u, g_filterCalls.size());  // Anna, the notes, Bernd
    EXPECT_EQ(notes, g_filterCalls[1].item);
    EXPECT_EQ(1, g_filterCalls[1].checked);
    EXPECT_EQ(111, g_filterCalls[1].value);
    EXPECT_EQ(42, g_filterCalls[1].user);
}

TEST_F(CheckTest, MouseHitsTellTheItemAndWhetherItsBoxIsUnderTheCursor) {
    POINT box = pointOn(annaBerg, true);
    SetCursorPos(box.x, box.y);
    UINT flags = 0;
    HTREEITEM item = nullptr;
    EXPECT_EQ(annaBerg, KxTreeView_GetMouseHit(tree, &flags));
    EXPECT_EQ(TVHT_ONITEMSTATEICON, KxTreeView_CheckChange(tree, &item));
    EXPECT_EQ(annaBerg, item);
    POINT label = pointOn(lind);
    SetCursorPos(label.x, label.y);
    EXPECT_EQ(0, KxTreeView_CheckChange(tree, &item));
    EXPECT_EQ(lind, item);
    SetCursorPos(label.x, label.y + 300);  // below the last item
    item = nullptr;
    EXPECT_EQ(nullptr, KxTreeView_GetMouseHit(tree, &flags));
    EXPECT_EQ(0, KxTreeView_CheckChange(tree, &item));
    EXPECT_EQ(nullptr, item);
}

TEST_F(CheckTest, ParentRuleRefusesChildrenOfUncheckedParentsAndUncheckingGoesOneLevelDown) {
    onClick([this](HTREEITEM* item) { return KxTreeView_HandleCheckChange(tree, 0, 1, item); });
    EXPECT_EQ(0, clickBox(annaBerg));  // Berg is unchecked
    EXPECT_EQ((States{0, 0, 0, 0, 0, 0}), checks());
    EXPECT_EQ(annaBerg, selection());
    EXPECT_EQ(1, clickBox(berg));
    EXPECT_EQ(berg, handled.back());
    EXPECT_EQ((States{1, 0, 0, 0, 0, 0}), checks());  // no children rule
    EXPECT_EQ(1, clickBox(annaBerg));
    EXPECT_EQ(1, clickBox(notes));
    EXPECT_EQ(1, clickBox(berg));  // unchecks Anna, but not the notes below her
    EXPECT_EQ((States{0, 0, 1, 0, 0, 0}), checks());
    click(pointOn(lind));  // beside the box: no check change
    EXPECT_EQ(0, results.back());
    EXPECT_EQ((States{0, 0, 1, 0, 0, 0}), checks());
}

TEST_F(CheckTest, ChildrenRuleChecksAndUnchecksTheDirectChildren) {
    onClick([this](HTREEITEM* item) { return KxTreeView_HandleCheckChangeEx(tree, 0, 0, 1, item); });
    EXPECT_EQ(1, clickBox(berg));
    EXPECT_EQ((States{1, 1, 0, 1, 0, 0}), checks());
    EXPECT_EQ(1, clickBox(berg));
    EXPECT_EQ((States{0, 0, 0, 0, 0, 0}), checks());
    EXPECT_EQ(1, clickBox(annaBerg));  // no parent rule: allowed under an unchecked parent
    EXPECT_EQ((States{0, 1, 1, 0, 0, 0}), checks());
    // An item handed in needs no click (its own box is the tree's to toggle).
    HTREEITEM item = lind;
    EXPECT_EQ(1, KxTreeView_HandleCheckChangeEx(tree, 0, 1, 1, &item));
    EXPECT_EQ(lind, selection());
    EXPECT_EQ((States{0, 1, 1, 0, 0, 1}), checks());
}

TEST_F(CheckTest, OneOfManyKeepsExactlyOneItemChecked) {
    check({berg, notes, lind});
    onClick([this](HTREEITEM* item) { return KxTreeView_HandleCheckChange(tree, 1, 0, item); });
    EXPECT_EQ(1, clickBox(berndBerg));
    EXPECT_EQ((States{0, 0, 0, 1, 0, 0}), checks());
    EXPECT_EQ(0, clickBox(berndBerg));  // the checked item stays checked
    EXPECT_EQ((States{0, 0, 0, 1, 0, 0}), checks());
    EXPECT_EQ(1, clickBox(carl));
    EXPECT_EQ((States{0, 0, 0, 0, 0, 1}), checks());
}

TEST_F(CheckTest, FilteredRulesAskBeforeEveryChangeToAnotherItem) {
    auto rules = [this](int oneOfMany, int parentRule, int childrenRule) {
        onClick([=](HTREEITEM* item) {
            return KxTreeView_HandleCheckChangeExRight(tree, oneOfMany, parentRule, childrenRule,
                                                       spareTheNotes, 77, item);
        });
    };
    // With the parent rule, checking only tests the parent: no children are checked.
    rules(0, 1, 1);
    EXPECT_EQ(1, clickBox(berg));
    EXPECT_EQ((States{1, 0, 0, 0, 0, 0}), checks());
    EXPECT_EQ(0, clickBox(carl));
    // Without it, the children rule checks them as the filter allows.
    rules(0, 0, 1);
    EXPECT_EQ(1, clickBox(annaBerg));
    EXPECT_EQ((States{1, 1, 0, 0, 0, 0}), checks());
    // One of many: the filter keeps the notes checked.
    check({notes});
    rules(1, 0, 0);
    g_filterCalls.clear();
    EXPECT_EQ(1, clickBox(lind));
    EXPECT_EQ((States{0, 0, 1, 0, 1, 0}), checks());
    bool askedForTheNotes = false;
    for (const FilterCall& call : g_filterCalls) {
        EXPECT_EQ(77, call.user);
        EXPECT_EQ(0, call.checked);
        askedForTheNotes |= call.item == notes && call.value == 111;
    }
    EXPECT_TRUE(askedForTheNotes);
}

}  // namespace
