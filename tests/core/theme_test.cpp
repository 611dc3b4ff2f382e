// Theme wrappers: with nothing bound, each answers its fallback at once and leaves every
// out-parameter as the caller put it.
#include "kvtest.h"
#include <string.h>
#include "kvkit_theme.h"

namespace {

using kvtest::KvTest;
class ThemeTest : public KvTest {};

const HTHEME kTheme = reinterpret_cast<HTHEME>(0x1234);
const HRESULT kSFalse = 1;

TEST_F(ThemeTest, NothingIsThemedSoControlsDrawClassically) {
    EXPECT_EQ(0, KxIsAppThemed());
    EXPECT_EQ(0, KxIsThemeActive());
    EXPECT_EQ(nullptr, KxOpenThemeData(nullptr, L"BUTTON"));
    EXPECT_EQ(nullptr, KxGetWindowTheme(GetDesktopWindow()));
    EXPECT_EQ(kSFalse, KxCloseThemeData(kTheme));
}

TEST_F(ThemeTest, ThreeWrappersAnswerOne) {
    EXPECT_EQ(1u, KxGetThemeSysColor(kTheme, COLOR_WINDOW));
    EXPECT_EQ(TRUE, KxIsThemePartDefined(kTheme, 1, 1));
    EXPECT_EQ(TRUE, KxIsThemeBackgroundPartiallyTransparent(kTheme, 1, 1));
}

TEST_F(ThemeTest, OtherPlainResultsAreZero) {
    EXPECT_EQ(nullptr, KxGetThemeSysColorBrush(kTheme, COLOR_WINDOW));
    EXPECT_EQ(FALSE, KxGetThemeSysBool(kTheme, 1));
    EXPECT_EQ(0, KxGetThemeSysSize(kTheme, 1));
    EXPECT_EQ(FALSE, KxIsThemeDialogTextureEnabled(GetDesktopWindow()));
    EXPECT_EQ(0u, KxGetThemeAppProperties());
    KxSetThemeAppProperties(3);  // returns nothing; must not fail
    EXPECT_EQ(0u, KxGetThemeAppProperties());
}

TEST_F(ThemeTest, DrawingWrappersReturnSFalseAndDrawNothing) {
    kvtest::Canvas canvas(20, 20, RGB(10, 20, 30));
    HDC dc = canvas.dc();
    RECT rect = {0, 0, 20, 20};
    RECT content = {7, 7, 7, 7};
    EXPECT_EQ(kSFalse, KxDrawThemeBackground(kTheme, dc, 1, 1, &rect, nullptr));
    EXPECT_EQ(kSFalse, KxDrawThemeText(kTheme, dc, 1, 1, L"text", 4, 0, 0, &rect));
    EXPECT_EQ(kSFalse, KxDrawThemeEdge(kTheme, dc, 1, 1, &rect, EDGE_RAISED, BF_RECT, &content));
    EXPECT_EQ(kSFalse, KxDrawThemeIcon(kTheme, dc, 1, 1, &rect, nullptr, 0));
    EXPECT_EQ(kSFalse, KxDrawThemeParentBackground(GetDesktopWindow(), dc, &rect));
    DTBGOPTS options = {sizeof(options), 0, rect};
    EXPECT_EQ(kSFalse, KxDrawThemeBackgroundEx(kTheme, dc, 1, 1, &rect, &options));
    EXPECT_EQ(RGB(10, 20, 30), canvas.pixel(10, 10));
    EXPECT_EQ(7, content.left);
    EXPECT_EQ(7, content.bottom);
}

TEST_F(ThemeTest, QueriesReturnSFalseAndLeaveOutParametersUntouched) {
    const RECT sentinelRect = {-3, -3, -3, -3};
    RECT a = sentinelRect, b = sentinelRect;
    SIZE size = {-3, -3};
    TEXTMETRICW metrics;
    memset(&metrics, 0x5A, sizeof(metrics));
    HRGN region = reinterpret_cast<HRGN>(0x77);
    WORD hit = 0xBEEF;
    COLORREF colour = 0xABCDEF;
    int value = -3;
    BOOL flag = 5;
    POINT point = {-3, -3};
    LOGFONTW font;
    memset(&font, 0x5A, sizeof(font));
    MARGINS margins = {-3, -3, -3, -3};
    INTLIST list;
    memset(&list, 0x5A, sizeof(list));
    PROPERTYORIGIN origin = PROPERTYORIGIN(77);
    wchar_t text[8] = L"keep";
    wchar_t text2[8] = L"keep";
    wchar_t text3[8] = L"keep";

    EXPECT_EQ(kSFalse, KxGetThemeBackgroundContentRect(kTheme, nullptr, 1, 1, &a, &b));
    EXPECT_EQ(kSFalse, KxGetThemeBackgroundExtent(kTheme, nullptr, 1, 1, &a, &b));
    EXPECT_EQ(kSFalse, KxGetThemePartSize(kTheme, nullptr, 1, 1, &a, TS_TRUE, &size));
    EXPECT_EQ(kSFalse, KxGetThemeTextExtent(kTheme, nullptr, 1, 1, L"x", 1, 0, &a, &b));
    EXPECT_EQ(kSFalse, KxGetThemeTextMetrics(kTheme, nullptr, 1, 1, &metrics));
    EXPECT_EQ(kSFalse, KxGetThemeBackgroundRegion(kTheme, nullptr, 1, 1, &a, &region));
    EXPECT_EQ(kSFalse, KxHitTestThemeBackground(kTheme, nullptr, 1, 1, 0, &a, nullptr, POINT{1, 1}, &hit));
    EXPECT_EQ(kSFalse, KxGetThemeColor(kTheme, 1, 1, 1, &colour));
    EXPECT_EQ(kSFalse, KxGetThemeMetric(kTheme, nullptr, 1, 1, 1, &value));
    EXPECT_EQ(kSFalse, KxGetThemeString(kTheme, 1, 1, 1, text, 8));
    EXPECT_EQ(kSFalse, KxGetThemeBool(kTheme, 1, 1, 1, &flag));
    EXPECT_EQ(kSFalse, KxGetThemeInt(kTheme, 1, 1, 1, &value));
    EXPECT_EQ(kSFalse, KxGetThemeEnumValue(kTheme, 1, 1, 1, &value));
    EXPECT_EQ(kSFalse, KxGetThemePosition(kTheme, 1, 1, 1, &point));
    EXPECT_EQ(kSFalse, KxGetThemeFont(kTheme, nullptr, 1, 1, 1, &font));
    EXPECT_EQ(kSFalse, KxGetThemeRect(kTheme, 1, 1, 1, &a));
    EXPECT_EQ(kSFalse, KxGetThemeMargins(kTheme, nullptr, 1, 1, 1, &a, &margins));
    EXPECT_EQ(kSFalse, KxGetThemeIntList(kTheme, 1, 1, 1, &list));
    EXPECT_EQ(kSFalse, KxGetThemePropertyOrigin(kTheme, 1, 1, 1, &origin));
    EXPECT_EQ(kSFalse, KxGetThemeFilename(kTheme, 1, 1, 1, text, 8));
    EXPECT_EQ(kSFalse, KxGetThemeSysFont(kTheme, 1, &font));
    EXPECT_EQ(kSFalse, KxGetThemeSysString(kTheme, 1, text, 8));
    EXPECT_EQ(kSFalse, KxGetThemeSysInt(kTheme, 1, &value));
    EXPECT_EQ(kSFalse, KxGetCurrentThemeName(text, 8, text2, 8, text3, 8));
    EXPECT_EQ(kSFalse, KxGetThemeDocumentationProperty(L"theme", L"name", text, 8));

    EXPECT_EQ(0, memcmp(&a, &sentinelRect, sizeof(RECT)));
    EXPECT_EQ(0, memcmp(&b, &sentinelRect, sizeof(RECT)));
    EXPECT_EQ(-3, size.cx);
    EXPECT_EQ(0x5A5A5A5A, metrics.tmHeight);
    EXPECT_EQ(reinterpret_cast<HRGN>(0x77), region);
    EXPECT_EQ(0xBEEF, hit);
    EXPECT_EQ(0xABCDEFu, colour);
    EXPECT_EQ(-3, value);
    EXPECT_EQ(5, flag);
    EXPECT_EQ(-3, point.x);
    EXPECT_EQ(0x5A5A5A5A, font.lfHeight);
    EXPECT_EQ(-3, margins.cxLeftWidth);
    EXPECT_EQ(0x5A5A5A5A, list.iValueCount);
    EXPECT_EQ(77, origin);
    EXPECT_STREQ(L"keep", text);
    EXPECT_STREQ(L"keep", text2);
    EXPECT_STREQ(L"keep", text3);
}

TEST_F(ThemeTest, WindowWrappersChangeNothing) {
    HWND window = CreateWindowExW(0, L"BUTTON", L"b", WS_POPUP, 0, 0, 20, 20, nullptr, nullptr,
                                  nullptr, nullptr);
    EXPECT_EQ(kSFalse, KxSetWindowTheme(window, L"", L""));
    EXPECT_EQ(kSFalse, KxEnableThemeDialogTexture(window, ETDT_ENABLETAB));
    EXPECT_EQ(FALSE, KxIsThemeDialogTextureEnabled(window));
    EXPECT_EQ(kSFalse, KxEnableTheming(TRUE));
    DestroyWindow(window);
}

// The binding table names the functions by their export names, with the edge-drawing row kept
// as "DrameEdge" so that a lookup by name leaves that wrapper unbound.
TEST_F(ThemeTest, BindingTableNamesAreInTheLibraryImage) {
    auto* base = reinterpret_cast<const char*>(GetModuleHandleW(L"kvkit.dll"));
    auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS32*>(
        base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
    std::string image(base, nt->OptionalHeader.SizeOfImage);
    // Whole strings only: "KxDrawThemeEdge" in the export names must not count.
    auto present = [&](const char* name) {
        return image.find('\0' + std::string(name) + '\0') != std::string::npos;
    };
    EXPECT_TRUE(present("DrameEdge"));
    EXPECT_FALSE(present("DrawThemeEdge"));
    for (const char* name : {"OpenThemeData", "HitTestThemeBackground", "GetThemeSysColorBrush",
                             "DrawThemeBackgroundEx", "GetThemeDocumentationProperty"})
        EXPECT_TRUE(present(name)) << name;
}

}  // namespace
