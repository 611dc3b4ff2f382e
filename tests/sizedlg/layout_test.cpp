// The layout pass: every flag and the common combinations, the defaults by identifier, class and
// style, the lower bound of the design size, the size grip and rebasing a moved child.
#include "sizedlg_test.h"
#include <commctrl.h>
#include <vector>
#include "kvkit2.h"

using sizedlg_test::Dialog;
using sizedlg_test::rectOf;
using sizedlg_test::windowRect;

namespace {

class SizeDlgLayout : public kvtest::KvTest {};

// Every control is designed at (41, 61, 143, 87) and the client grows from 400 x 300 to 533 x 401:
// growth 33.25 % and 33.67 %, so the edges move by 13 and 20 (not 14 and 21), the grown right and
// bottom are 190 and 116 (not 191), and the margins are 257 and 213.
const RECT kScale = {54, 81, 190, 116}, kScaleWidth = {54, 81, 190, 107}, kMove = {54, 81, 156, 107},
           kPinned = {174, 162, 276, 188};

struct LayoutCase {
    const wchar_t* className;
    DWORD style;
    int id;
    unsigned long flags;  // in the attribute list; 0 leaves the control to the defaults
    RECT expected;
};
const LayoutCase kCases[] = {
    {L"Static", 0, 100, KXSIZE_MOVE_LEFT, {54, 61, 156, 87}},
    {L"Static", 0, 101, KXSIZE_MOVE_TOP, {41, 81, 143, 107}},
    {L"Static", 0, 102, KXSIZE_SIZE_RIGHT, {41, 61, 190, 87}},
    {L"Static", 0, 103, KXSIZE_SIZE_BOTTOM, {41, 61, 143, 116}},
    {L"Static", 0, 104, KXSIZE_ANCHOR_RIGHT, {174, 61, 276, 87}},
    {L"Static", 0, 105, KXSIZE_ANCHOR_BOTTOM, {41, 162, 143, 188}},
    {L"Static", 0, 106, KXSIZE_CENTER_H, {215, 61, 317, 87}},
    {L"Static", 0, 107, KXSIZE_CENTER_V, {41, 187, 143, 213}},
    {L"Static", 0, 108, KXSIZE_SCALE, kScale},
    {L"Static", 0, 109, KXSIZE_SCALE_WIDTH, kScaleWidth},
    {L"Static", 0, 110, KXSIZE_MOVE, kMove},
    {L"Static", 0, 111, KXSIZE_BOTTOM_RIGHT, kPinned},
    {L"Static", 0, 112, KXSIZE_SIZE_RIGHT | KXSIZE_ANCHOR_RIGHT, {41, 61, 276, 87}},
    {L"Static", 0, 113, KXSIZE_SIZE_BOTTOM | KXSIZE_ANCHOR_BOTTOM, {41, 61, 143, 188}},
    {L"Static", 0, 114, 0x3F, {54, 81, 276, 188}},
    // Resized to 70 x 30 after the start: the keep flags read that size, stretching wins over them
    // and they win over anchoring.
    {L"Static", 0, 115, KXSIZE_MOVE_TOP | KXSIZE_KEEP_HEIGHT, {41, 81, 143, 111}},
    {L"Static", 0, 116, KXSIZE_MOVE_LEFT | KXSIZE_KEEP_WIDTH, {54, 61, 124, 87}},
    {L"Static", 0, 117, KXSIZE_SIZE_RIGHT | KXSIZE_KEEP_WIDTH, {41, 61, 190, 87}},
    {L"Static", 0, 118, KXSIZE_ANCHOR_BOTTOM | KXSIZE_KEEP_HEIGHT, {41, 61, 143, 91}},
    // The defaults: identifier rows first, then the last matching class row, else 15.
    {L"Button", BS_DEFPUSHBUTTON, IDOK, 0, kPinned},
    {L"Button", BS_PUSHBUTTON, IDCANCEL, 0, kPinned},
    {L"Button", BS_PUSHBUTTON, 200, 0, kScaleWidth},
    {L"Button", BS_DEFPUSHBUTTON, 201, 0, kScale},
    {L"Edit", ES_AUTOHSCROLL, 202, 0, kScaleWidth},
    {L"Edit", ES_MULTILINE, 203, 0, kScale},
    {L"ComboBox", CBS_SIMPLE, 204, 0, kScaleWidth},
    {L"EditButton", 0, 205, 0, kMove},
    {L"szColorBoxClass", 0, 206, 0, kScaleWidth},
    {KX2_IMGBUTTON_CLASS, 0, 207, 0, kMove},
    {L"SysDateTimePick32", 0, 208, 0, kScaleWidth},
    {L"Static", 0, 209, 0, kScale},
};

TEST_F(SizeDlgLayout, EveryFlagAndDefaultGivesItsRectangle) {
    ASSERT_NE(nullptr, LoadLibraryW(L"kvkit2.dll"));  // registers the image button class
    Dialog dialog;
    // Flags 0 hand a control to the defaults, and only the first entry for an identifier counts.
    std::vector<KXSIZE_ATTR> attributes = {{IDOK, 0}, {202, 0}, {202, KXSIZE_MOVE}};
    for (const LayoutCase& row : kCases) {
        ASSERT_NE(nullptr, dialog.add(row.className, row.style, row.id)) << row.id;
        if (row.flags) attributes.push_back({row.id, row.flags});
    }
    ASSERT_EQ(1, KxSizeDlgStart(dialog, static_cast<int>(attributes.size()), attributes.data(), 0));
    for (const LayoutCase& row : kCases)
        if (row.flags & (KXSIZE_KEEP_HEIGHT | KXSIZE_KEEP_WIDTH))
            SetWindowPos(GetDlgItem(dialog, row.id), nullptr, 0, 0, 70, 30, SWP_NOMOVE | SWP_NOZORDER);
    dialog.resize(533, 401);
    for (const LayoutCase& row : kCases) EXPECT_EQ(row.expected, dialog.rect(row.id)) << "control " << row.id;
    EXPECT_EQ(1, KxSizeDlgEnd(dialog));
}

TEST_F(SizeDlgLayout, NeverSmallerThanTheDesignSize) {
    Dialog dialog;
    dialog.add(L"Static", 0, 100);
    KxSizeDlgStart(dialog, 0, nullptr, 0);
    RECT design = windowRect(dialog);
    int w = design.right - design.left, h = design.bottom - design.top;

    // Dragging moves only the right and bottom edges out, and only on the axis that is too small.
    RECT small = {300, 200, 310, 205}, narrow = {5, 6, 15, 6 + h + 50};
    EXPECT_EQ(1, KxSizingDlg(dialog, WMSZ_TOPLEFT, reinterpret_cast<LPARAM>(&small)));
    EXPECT_EQ(Rect(300, 200, 300 + w, 200 + h), small);
    KxSizingDlg(dialog, WMSZ_LEFT, reinterpret_cast<LPARAM>(&narrow));
    EXPECT_EQ(Rect(5, 6, 5 + w, 6 + h + 50), narrow);

    // Narrower but taller: laid out with no horizontal growth, then set back on both axes.
    dialog.forwardSizeMessages(false);
    dialog.resize(350, 400);
    EXPECT_EQ(1, KxSizeDlg(dialog, 0, 0));
    EXPECT_EQ(Rect(41, 81, 143, 116), dialog.rect(100));
    EXPECT_EQ(design, windowRect(dialog));
    KxSizeDlgEnd(dialog);
}

TEST_F(SizeDlgLayout, GripSitsInTheCornerOverhangingByOnePixel) {
    Dialog dialog;
    dialog.add(L"Static", 0, 100);
    KxSizeDlgStart(dialog, 0, nullptr, 1);
    HWND grip = GetDlgItem(dialog, 39999);
    ASSERT_NE(nullptr, grip);
    EXPECT_EQ(0x5400000Eu, static_cast<DWORD>(GetWindowLongW(grip, GWL_STYLE)));
    EXPECT_EQ(grip, GetWindow(grip, GW_HWNDLAST));  // behind the other children
    auto bitmap = reinterpret_cast<HBITMAP>(SendMessageW(grip, STM_GETIMAGE, IMAGE_BITMAP, 0));
    auto picture = static_cast<HBITMAP>(LoadImageW(GetModuleHandleW(L"kvkit.dll"), MAKEINTRESOURCEW(1600),
                                                   IMAGE_BITMAP, 0, 0, LR_LOADTRANSPARENT | LR_LOADMAP3DCOLORS));
    int w = 0, h = 0;
    EXPECT_EQ(kvtest::BitmapPixels(picture, &w, &h), kvtest::BitmapPixels(bitmap));
    DeleteObject(picture);
    EXPECT_EQ(Rect(401 - w, 301 - h, 401, 301), rectOf(grip));
    dialog.resize(533, 401);
    EXPECT_EQ(Rect(534 - w, 402 - h, 534, 402), rectOf(grip));
    KxSizeDlgEnd(dialog);
    EXPECT_FALSE(kvtest::IsGdiObject(bitmap));
}

TEST_F(SizeDlgLayout, ChildUpdateRebasesAMovedChildToTheDesignSize) {
    Dialog dialog;
    dialog.add(L"Static", 0, 100);
    dialog.add(L"Static", 0, 101);
    const KXSIZE_ATTR attributes[] = {{100, KXSIZE_SCALE}, {101, KXSIZE_MOVE}};
    KxSizeDlgStart(dialog, 2, attributes, 0);
    dialog.resize(500, 450);
    // Moved at 500 x 450 to (104, 92, 304, 182), scaled by 400/500 and 300/450 and rounded up.
    for (int id : {100, 101}) {
        MoveWindow(GetDlgItem(dialog, id), 104, 92, 200, 90, FALSE);
        EXPECT_EQ(1, KxSizeChildUpdate(dialog, id));
    }
    dialog.resize(400, 300);
    EXPECT_EQ(Rect(84, 62, 244, 122), dialog.rect(100));
    EXPECT_EQ(Rect(84, 62, 284, 152), dialog.rect(101));  // the size as moved
    EXPECT_EQ(1, KxSizeChildUpdate(dialog, 555));  // no such child
    KxSizeDlgEnd(dialog);
}

}  // namespace
