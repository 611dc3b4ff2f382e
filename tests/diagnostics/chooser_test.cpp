// The bitmap chooser over the library's own bitmaps, driven from inside its modal loop with the
// mouse and keys a user presses.
#include "kvtest.h"
#include <commctrl.h>
#include <functional>
#include <string>
#include <vector>
#include "kvkit_core.h"
#include "kvkit_diagnostics.h"

namespace {

class ChooserTest : public kvtest::KvTest {
protected:
    void SetUp() override {
        KvTest::SetUp();
        owner.setHandler([this](HWND, UINT message, WPARAM kind, LPARAM dialog, LRESULT*) {
            if (message != WM_ENTERIDLE || kind != MSGF_DIALOGBOX) return false;
            HWND window = reinterpret_cast<HWND>(dialog);
            if (next < steps.size()) {
                steps[next++](window);
                // The loop says it is idle only before it waits: something must come after each
                // step, whatever the step did, for the next one (or the forced end) to run.
                PostMessageW(window, WM_NULL, 0, 0);
            } else {
                ++endedForcibly;
                EndDialog(window, IDCANCEL);
            }
            return true;
        });
    }

    // Runs the chooser; each step gets the dialog when its loop waits for input.
    using Step = std::function<void(HWND dialog)>;
    std::wstring choose(HINSTANCE module, const wchar_t* selected, int size, std::vector<Step> script) {
        steps = std::move(script);
        next = 0;
        wchar_t* chosen = KxChooseBitmap(owner, module, selected, size);
        std::wstring result = chosen ? chosen : L"(null)";
        FreeMemory(chosen);
        return result;
    }

    static HWND listOf(HWND dialog) { return GetDlgItem(dialog, 100); }
    static int itemLabelled(HWND list, const wchar_t* label) {
        LVFINDINFOW find = {};
        find.flags = LVFI_STRING;
        find.psz = label;
        return ListView_FindItem(list, -1, &find);
    }
    static std::wstring label(HWND list, int item) {
        wchar_t text[64] = L"";
        ListView_GetItemText(list, item, 0, text, 64);
        return text;
    }
    static POINT iconCentre(HWND list, int item) {
        RECT icon = {};
        ListView_GetItemRect(list, item, &icon, LVIR_ICON);
        return {(icon.left + icon.right) / 2, (icon.top + icon.bottom) / 2};
    }
    // A click (or a double click) on the thumbnail labelled `text`.
    Step clickOn(const wchar_t* text, bool twice = false) {
        return [=](HWND dialog) {
            HWND list = listOf(dialog);
            int item = itemLabelled(list, text);
            ASSERT_GE(item, 0) << text;
            ListView_EnsureVisible(list, item, FALSE);  // as a user scrolls to it first
            POINT at = iconCentre(list, item), screen = at;
            ClientToScreen(list, &screen);
            SetCursorPos(screen.x, screen.y);
            LPARAM where = MAKELPARAM(at.x, at.y);
            PostMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, where);
            PostMessageW(list, WM_LBUTTONUP, 0, where);
            if (!twice) return;
            PostMessageW(list, WM_LBUTTONDBLCLK, MK_LBUTTON, where);
            PostMessageW(list, WM_LBUTTONUP, 0, where);
        };
    }
    static Step press(WORD key) {
        return [=](HWND dialog) {
            PostMessageW(listOf(dialog), WM_KEYDOWN, key, 1);
            PostMessageW(listOf(dialog), WM_KEYUP, key, 0xC0000001);
        };
    }
    // Records the labels, the selected one and the size text.
    Step look() {
        return [this](HWND dialog) {
            HWND list = listOf(dialog);
            labels.clear();
            for (int i = 0; i < ListView_GetItemCount(list); ++i) labels.push_back(label(list, i));
            selectedLabel = label(list, ListView_GetNextItem(list, -1, LVNI_SELECTED));
            wchar_t text[80] = L"";
            GetDlgItemTextW(dialog, 101, text, 80);
            sizeText = text;
            HIMAGELIST thumbnails = ListView_GetImageList(list, LVSIL_NORMAL);
            ImageList_GetIconSize(thumbnails, &thumbnailWidth, &thumbnailHeight);
        };
    }

    kvtest::HostWindow owner{300, 200};
    HINSTANCE library = GetModuleHandleW(L"kvkit.dll");
    std::vector<Step> steps;
    size_t next = 0;
    int endedForcibly = 0;
    std::vector<std::wstring> labels;
    std::wstring selectedLabel, sizeText;
    int thumbnailWidth = 0, thumbnailHeight = 0;
};

TEST_F(ChooserTest, ClickingAThumbnailAndPressingEnterReturnsItsNumber) {
    std::wstring chosen = choose(library, nullptr, 32, {look(), clickOn(L"2002"), look(), press(VK_RETURN)});
    EXPECT_EQ(L"#2002", chosen);
    EXPECT_EQ(0, endedForcibly);
    // Named bitmaps first, then the numbered ones, each labelled with its name or number.
    std::vector<std::wstring> expected = {L"BTALI", L"BTAOB", L"BTARE", L"BTAUN", L"101",  L"102",
                                          L"103",   L"104",   L"105",   L"106",   L"107",  L"108",
                                          L"1000",  L"1001",  L"1500",  L"1600",  L"2000", L"2001",
                                          L"2002",  L"2003"};
    EXPECT_EQ(expected, labels);
    EXPECT_EQ(32, thumbnailWidth);
    EXPECT_EQ(32, thumbnailHeight);
    EXPECT_EQ(L"2002", selectedLabel);
    BITMAP picture = {};
    HBITMAP tool = LoadBitmapW(library, chosen.c_str());  // the identifier loads as it is
    ASSERT_NE(nullptr, tool);
    GetObjectW(tool, sizeof(picture), &picture);
    DeleteObject(tool);
    EXPECT_EQ(L"#2002: " + std::to_wstring(picture.bmWidth) + L" x " + std::to_wstring(picture.bmHeight), sizeText);
}

TEST_F(ChooserTest, TheGivenPictureIsSelectedFirstAndADoubleClickChoosesANamedOne) {
    std::wstring chosen = choose(library, MAKEINTRESOURCEW(1600), 0, {look(), clickOn(L"BTAOB", true)});
    EXPECT_EQ(L"1600", selectedLabel);
    EXPECT_EQ(48, thumbnailWidth);
    EXPECT_EQ(L"BTAOB", chosen);
    EXPECT_EQ(0, endedForcibly);
    chosen = choose(library, L"btare", 0, {look(), press(VK_RETURN)});
    EXPECT_EQ(L"BTARE", selectedLabel);
    EXPECT_EQ(L"BTARE", chosen);
    chosen = choose(library, L"#1000", 0, {look(), press(VK_RETURN)});
    EXPECT_EQ(L"#1000", chosen);
}

TEST_F(ChooserTest, CancelAndWhatCannotBeShownGiveNull) {
    EXPECT_EQ(L"(null)", choose(library, nullptr, 0, {press(VK_ESCAPE)}));
    EXPECT_EQ(0, endedForcibly);
    EXPECT_EQ(L"(null)", choose(nullptr, nullptr, 0, {}));
    EXPECT_EQ(L"(null)", choose(library, nullptr, 257, {}));
    EXPECT_EQ(L"(null)", choose(kvtest::LanguageModule(), nullptr, 0, {}));  // no bitmaps
    KvText_FailAllocation(1);
    EXPECT_EQ(L"(null)", choose(library, nullptr, 0, {}));
    // A language module without the dialog template.
    Kx1SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), kvtest::ResourceModule(), kvtest::ResourceModule());
    std::wstring chosen = choose(library, nullptr, 0, {});
    Kx1SetLanguage(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), kvtest::ResourceModule(), kvtest::LanguageModule());
    EXPECT_EQ(L"(null)", chosen);
    EXPECT_EQ(0, endedForcibly);
}

}  // namespace
