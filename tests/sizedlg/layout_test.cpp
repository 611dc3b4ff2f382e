// The layout pass on real dialogs: every flag and the common combinations, the flag defaults by
// identifier, class and style, the snap back to the design size, WM_SIZING, the size grip and
// rebasing a child that the caller moved.
#include <vector>
#include "kvtest.h"
#include <commctrl.h>
#include "kvkit2.h"
#include "test_dialog.h"

using sizedlg_test::TemplateItem;
using sizedlg_test::TestDialog;

namespace {

class SizeDlgLayout : public kvtest::KvTest {};

// One static per flag set under test, each at the same design rectangle.
struct FlagCase {
    unsigned long flags;
    RECT expected;  // after growing the client from 400 x 300 to 500 x 450 (growth 25 %, 50 %)
};

// Design rectangle (40, 60, 140, 84); offsets 10 and 30; right margin 260, bottom margin 216.
const FlagCase kFlagCases[] = {
    {KXSIZE_MOVE_LEFT, {50, 60, 150, 84}},
    {KXSIZE_MOVE_TOP, {40, 90, 140, 114}},
    {KXSIZE_SIZE_RIGHT, {40, 60, 175, 84}},
    {KXSIZE_SIZE_BOTTOM, {40, 60, 140, 126}},
    {KXSIZE_ANCHOR_RIGHT, {140, 60, 240, 84}},
    {KXSIZE_ANCHOR_BOTTOM, {40, 210, 140, 234}},
    {KXSIZE_CENTER_H, {200, 60, 300, 84}},
    {KXSIZE_CENTER_V, {40, 213, 140, 237}},
    {KXSIZE_CENTER_H | KXSIZE_CENTER_V, {200, 213, 300, 237}},
    {KXSIZE_SCALE, {50, 90, 175, 126}},
    {KXSIZE_SCALE_WIDTH, {50, 90, 175, 114}},
    {KXSIZE_MOVE, {50, 90, 150, 114}},
    {KXSIZE_BOTTOM_RIGHT, {140, 210, 240, 234}},
    {KXSIZE_SIZE_RIGHT | KXSIZE_ANCHOR_RIGHT, {40, 60, 240, 84}},
    {KXSIZE_SIZE_BOTTOM | KXSIZE_ANCHOR_BOTTOM, {40, 60, 140, 234}},
    {0x3F, {50, 90, 240, 234}},
    // The child was resized to 70 x 30 after the start; these keep that size.
    {KXSIZE_MOVE_TOP | KXSIZE_KEEP_HEIGHT, {40, 90, 140, 120}},
    {KXSIZE_MOVE_LEFT | KXSIZE_KEEP_WIDTH, {50, 60, 120, 84}},
};

std::vector<TemplateItem> staticsFor(int count) {
    std::vector<TemplateItem> items;
    for (int i = 0; i < count; ++i) items.push_back({L"Static", SS_LEFT, 100 + i});
    return items;
}

TEST_F(SizeDlgLayout, EveryFlagMovesAndStretchesToItsRectangle) {
    const int count = sizeof(kFlagCases) / sizeof(kFlagCases[0]);
    TestDialog dialog(staticsFor(count));
    std::vector<KXSIZE_ATTR> attributes;
    for (int i = 0; i < count; ++i) {
        dialog.place(100 + i, 40, 60, 140, 84);
        attributes.push_back({100 + i, kFlagCases[i].flags});
    }
    ASSERT_EQ(1, KxSizeDlgStart(dialog, count, attributes.data(), 0));
    for (int i = 0; i < count; ++i)
        if (kFlagCases[i].flags & (KXSIZE_KEEP_HEIGHT | KXSIZE_KEEP_WIDTH))
            SetWindowPos(dialog.item(100 + i), nullptr, 0, 0, 70, 30, SWP_NOMOVE | SWP_NOZORDER);

    dialog.setClientSize(500, 450);
    ASSERT_EQ(1, KxSizeDlg(dialog, SIZE_RESTORED, 0));
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(kFlagCases[i].expected, dialog.rect(100 + i)) << "flags 0x" << std::hex << kFlagCases[i].flags;
    EXPECT_EQ(1, KxSizeDlgEnd(dialog));
}

TEST_F(SizeDlgLayout, FractionalGrowthTruncatesEachOffset) {
    // 400 x 300 -> 533 x 401: growth 33.25 % and 33.666... %.
    const unsigned long flags[] = {KXSIZE_SCALE, KXSIZE_SCALE_WIDTH, KXSIZE_MOVE, KXSIZE_BOTTOM_RIGHT, 0x3F};
    const RECT expected[] = {{54, 81, 190, 116}, {54, 81, 190, 107}, {54, 81, 156, 107},
                             {174, 162, 276, 188}, {54, 81, 276, 188}};
    TestDialog dialog(staticsFor(5));
    KXSIZE_ATTR attributes[5];
    for (int i = 0; i < 5; ++i) {
        dialog.place(100 + i, 41, 61, 143, 87);
        attributes[i] = {100 + i, flags[i]};
    }
    KxSizeDlgStart(dialog, 5, attributes, 0);
    dialog.setClientSize(533, 401);
    KxSizeDlg(dialog, 0, 0);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(expected[i], dialog.rect(100 + i)) << "flags 0x" << std::hex << flags[i];
    KxSizeDlgEnd(dialog);
}

// Controls of every class row, with identifiers 200 and up, all at (40, 60, 140, 84).
struct DefaultCase {
    const wchar_t* className;
    DWORD style;
    unsigned long expectedFlags;
};
const DefaultCase kDefaultCases[] = {
    {L"Button", BS_PUSHBUTTON, KXSIZE_SCALE_WIDTH},
    {L"Button", BS_DEFPUSHBUTTON, KXSIZE_SCALE},
    {L"Button", BS_AUTOCHECKBOX, KXSIZE_SCALE},
    {L"Edit", ES_AUTOHSCROLL | WS_BORDER, KXSIZE_SCALE_WIDTH},
    {L"Edit", ES_MULTILINE | WS_BORDER, KXSIZE_SCALE},
    {L"EditButton", 0, KXSIZE_MOVE},
    {L"szColorBoxClass", 0, KXSIZE_SCALE_WIDTH},
    {KX2_IMGBUTTON_CLASS, 0, KXSIZE_MOVE},
    {L"SysDateTimePick32", 0, KXSIZE_SCALE_WIDTH},
    {L"SysListView32", LVS_REPORT | WS_BORDER, KXSIZE_SCALE},
    {L"Static", SS_LEFT, KXSIZE_SCALE},
};

RECT expectedFor(unsigned long flags) {
    for (const FlagCase& flagCase : kFlagCases)
        if (flagCase.flags == flags) return flagCase.expected;
    return RECT{};
}

TEST_F(SizeDlgLayout, DefaultsFollowIdentifierThenClassAndStyle) {
    std::vector<TemplateItem> items = {{L"Button", BS_DEFPUSHBUTTON, IDOK, L"OK"},
                                       {L"Button", BS_PUSHBUTTON, IDCANCEL, L"Cancel"}};
    const int count = sizeof(kDefaultCases) / sizeof(kDefaultCases[0]);
    for (int i = 0; i < count; ++i) items.push_back({kDefaultCases[i].className, kDefaultCases[i].style, 200 + i});
    // The image button class comes with kvkit2, which nothing here has loaded yet.
    ASSERT_NE(nullptr, LoadLibraryW(L"kvkit2.dll"));
    TestDialog dialog(items);
    ASSERT_NE(nullptr, dialog.handle());
    dialog.place(IDOK, 40, 60, 140, 84);
    dialog.place(IDCANCEL, 40, 60, 140, 84);
    for (int i = 0; i < count; ++i) {
        EXPECT_NE(nullptr, dialog.item(200 + i)) << "class " << i << " not created";
        dialog.place(200 + i, 40, 60, 140, 84);
    }
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);

    EXPECT_EQ(expectedFor(KXSIZE_BOTTOM_RIGHT), dialog.rect(IDOK));
    EXPECT_EQ(expectedFor(KXSIZE_BOTTOM_RIGHT), dialog.rect(IDCANCEL));
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(expectedFor(kDefaultCases[i].expectedFlags), dialog.rect(200 + i))
            << "row " << i << ", style 0x" << std::hex << kDefaultCases[i].style;
    KxSizeDlgEnd(dialog);
}

TEST_F(SizeDlgLayout, ComboBoxesStretchHorizontallyAndKeepTheirHeight) {
    TestDialog dialog({{L"ComboBox", CBS_DROPDOWNLIST | WS_VSCROLL, 300}});
    MoveWindow(dialog.item(300), 40, 60, 100, 200, FALSE);
    RECT design = dialog.rect(300);
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);
    RECT laidOut = dialog.rect(300);
    EXPECT_EQ(Rect(50, 90, 175, 90 + design.bottom - design.top), laidOut);
    KxSizeDlgEnd(dialog);
}

TEST_F(SizeDlgLayout, AttributesOverrideOnlyWithNonZeroFlags) {
    TestDialog dialog({{L"Button", BS_DEFPUSHBUTTON, IDOK, L"OK"},
                       {L"Button", BS_PUSHBUTTON, IDCANCEL, L"Cancel"},
                       {L"Edit", WS_BORDER, 400},
                       {L"Edit", WS_BORDER, 401}});
    for (int id : {IDOK, IDCANCEL, 400, 401}) dialog.place(id, 40, 60, 140, 84);
    const KXSIZE_ATTR attributes[] = {
        {IDOK, 0},                   // falls through to the identifier default
        {IDCANCEL, KXSIZE_SCALE},    // overrides it
        {400, 0},                    // falls through to the class row
        {400, KXSIZE_MOVE},          // never looked at: the first entry for 400 decides
        {401, KXSIZE_ANCHOR_RIGHT},
    };
    KxSizeDlgStart(dialog, 5, attributes, 0);
    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);
    EXPECT_EQ(expectedFor(KXSIZE_BOTTOM_RIGHT), dialog.rect(IDOK));
    EXPECT_EQ(expectedFor(KXSIZE_SCALE), dialog.rect(IDCANCEL));
    EXPECT_EQ(expectedFor(KXSIZE_SCALE_WIDTH), dialog.rect(400));
    EXPECT_EQ(expectedFor(KXSIZE_ANCHOR_RIGHT), dialog.rect(401));
    KxSizeDlgEnd(dialog);
}

TEST_F(SizeDlgLayout, FailedAttributeCopyFallsBackToDefaults) {
    TestDialog dialog({{L"Static", SS_LEFT, 100}});
    dialog.place(100, 40, 60, 140, 84);
    const KXSIZE_ATTR attributes[] = {{100, KXSIZE_MOVE}};
    KvText_FailAllocation(1);  // the copy of the attribute list
    EXPECT_EQ(1, KxSizeDlgStart(dialog, 1, attributes, 0));
    dialog.setClientSize(500, 450);
    EXPECT_EQ(1, KxSizeDlg(dialog, 0, 0));
    EXPECT_EQ(expectedFor(KXSIZE_SCALE), dialog.rect(100));
    KxSizeDlgEnd(dialog);
}

TEST_F(SizeDlgLayout, ShrinkingOneAxisSnapsBothBackToTheDesignSize) {
    TestDialog dialog({{L"Static", SS_LEFT, 100}});
    dialog.place(100, 40, 60, 140, 84);
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    SIZE minimum = dialog.windowSize();

    // Narrower but taller: the pass lays out with no horizontal growth (33.33 % vertically),
    // then sets the whole window back to its design size.
    dialog.setClientSize(350, 400);
    ASSERT_EQ(1, KxSizeDlg(dialog, 0, 0));
    EXPECT_EQ(Rect(40, 80, 140, 112), dialog.rect(100));
    EXPECT_EQ(minimum.cx, dialog.windowSize().cx);
    EXPECT_EQ(minimum.cy, dialog.windowSize().cy);

    // Driven by WM_SIZE as in a host, the snap's own WM_SIZE lays the child out at design size.
    dialog.forwardSizing(true);
    dialog.setClientSize(500, 250);
    EXPECT_EQ(minimum.cx, dialog.windowSize().cx);
    EXPECT_EQ(minimum.cy, dialog.windowSize().cy);
    EXPECT_EQ(Rect(40, 60, 140, 84), dialog.rect(100));
    EXPECT_GE(dialog.sizeMessages(), 2);
    KxSizeDlgEnd(dialog);
}

TEST_F(SizeDlgLayout, SizingKeepsTheDraggedRectangleAtLeastTheDesignSize) {
    TestDialog dialog({});
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    SIZE minimum = dialog.windowSize();

    RECT small = {300, 200, 310, 205};  // dragged by its left and top edges
    EXPECT_EQ(1, KxSizingDlg(dialog, WMSZ_TOPLEFT, reinterpret_cast<LPARAM>(&small)));
    EXPECT_EQ(Rect(300, 200, 300 + minimum.cx, 200 + minimum.cy), small);

    RECT narrow = {0, 0, 10, minimum.cy + 50};
    KxSizingDlg(dialog, WMSZ_RIGHT, reinterpret_cast<LPARAM>(&narrow));
    EXPECT_EQ(Rect(0, 0, minimum.cx, minimum.cy + 50), narrow);

    RECT large = {5, 6, 5 + minimum.cx + 1, 6 + minimum.cy};
    RECT unchanged = large;
    KxSizingDlg(dialog, WMSZ_BOTTOMRIGHT, reinterpret_cast<LPARAM>(&large));
    EXPECT_EQ(unchanged, large);

    EXPECT_EQ(0, KxSizingDlg(dialog, WMSZ_RIGHT, 0));
    KxSizeDlgEnd(dialog);
    EXPECT_EQ(0, KxSizingDlg(dialog, WMSZ_RIGHT, reinterpret_cast<LPARAM>(&large)));
}

TEST_F(SizeDlgLayout, GripSitsInTheCornerOverhangingByOnePixel) {
    TestDialog dialog({{L"Static", SS_LEFT, 100}});
    KxSizeDlgStart(dialog, 0, nullptr, 1);
    HWND grip = dialog.item(39999);
    ASSERT_NE(nullptr, grip);
    wchar_t className[32];
    GetClassNameW(grip, className, 32);
    EXPECT_EQ(0, lstrcmpiW(L"Static", className));
    EXPECT_EQ(0x5400000Eu, static_cast<DWORD>(GetWindowLongW(grip, GWL_STYLE)));
    auto bitmap = reinterpret_cast<HBITMAP>(SendMessageW(grip, STM_GETIMAGE, IMAGE_BITMAP, 0));
    ASSERT_TRUE(kvtest::IsGdiObject(bitmap));
    BITMAP info;
    GetObjectW(bitmap, sizeof(info), &info);
    EXPECT_EQ(Rect(401 - info.bmWidth, 301 - info.bmHeight, 401, 301), dialog.rect(39999));
    EXPECT_EQ(GetWindow(grip, GW_HWNDLAST), grip);  // bottom of the z-order

    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);
    EXPECT_EQ(Rect(501 - info.bmWidth, 451 - info.bmHeight, 501, 451), dialog.rect(39999));

    KxSizeDlgEnd(dialog);
    EXPECT_FALSE(kvtest::IsGdiObject(bitmap));
}

TEST_F(SizeDlgLayout, ChildUpdateRebasesTheMovedChildToTheDesignSize) {
    TestDialog dialog({{L"Static", SS_LEFT, 100}, {L"Static", SS_LEFT, 101}});
    dialog.place(100, 40, 60, 140, 84);
    dialog.place(101, 40, 60, 140, 84);
    const KXSIZE_ATTR attributes[] = {{100, KXSIZE_SCALE}, {101, KXSIZE_MOVE}};
    KxSizeDlgStart(dialog, 2, attributes, 0);
    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);

    // The caller moves both at 500 x 450; scaled back: 400/500 and 300/450, rounded up.
    dialog.place(100, 101, 91, 301, 181);
    dialog.place(101, 101, 91, 301, 181);
    EXPECT_EQ(1, KxSizeChildUpdate(dialog, 100));
    EXPECT_EQ(1, KxSizeChildUpdate(dialog, 101));

    dialog.setClientSize(sizedlg_test::kDesignWidth, 300);
    KxSizeDlg(dialog, 0, 0);
    EXPECT_EQ(Rect(81, 61, 241, 121), dialog.rect(100));
    EXPECT_EQ(Rect(81, 61, 281, 151), dialog.rect(101));  // width and height kept as moved
    dialog.setClientSize(500, 450);
    KxSizeDlg(dialog, 0, 0);
    EXPECT_EQ(Rect(101, 91, 301, 181), dialog.rect(100));

    EXPECT_EQ(1, KxSizeChildUpdate(dialog, 555));  // no such child: nothing to do
    KxSizeDlgEnd(dialog);
    EXPECT_EQ(0, KxSizeChildUpdate(dialog, 100));
}

}  // namespace
