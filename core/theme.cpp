// Theme wrappers: a binding table of the theme functions by export name, and one forwarding
// wrapper per row. Nothing in the library fills the table, so every wrapper answers its fallback
// and the controls draw classically; a binding step must look names up by this table.
#include "core/library.h"
#include "include/kvkit_theme.h"

struct ThemeBinding {
    const char* name;
    FARPROC entry;
};

// Row order is fixed; the row of KxDrawThemeEdge is named "DrameEdge", so a lookup by name
// leaves that wrapper unbound. The table has external linkage so that it stays in the image,
// names included, for a binding step to find even though the library itself never reads them.
extern ThemeBinding g_themeBindings[48];
ThemeBinding g_themeBindings[48] = {
    {"OpenThemeData", nullptr},
    {"CloseThemeData", nullptr},
    {"DrawThemeBackground", nullptr},
    {"DrawThemeText", nullptr},
    {"GetThemeBackgroundContentRect", nullptr},
    {"GetThemeBackgroundExtent", nullptr},
    {"GetThemePartSize", nullptr},
    {"GetThemeTextExtent", nullptr},
    {"GetThemeTextMetrics", nullptr},
    {"GetThemeBackgroundRegion", nullptr},
    {"HitTestThemeBackground", nullptr},
    {"DrameEdge", nullptr},
    {"DrawThemeIcon", nullptr},
    {"IsThemePartDefined", nullptr},
    {"IsThemeBackgroundPartiallyTransparent", nullptr},
    {"GetThemeColor", nullptr},
    {"GetThemeMetric", nullptr},
    {"GetThemeString", nullptr},
    {"GetThemeBool", nullptr},
    {"GetThemeInt", nullptr},
    {"GetThemeEnumValue", nullptr},
    {"GetThemePosition", nullptr},
    {"GetThemeFont", nullptr},
    {"GetThemeRect", nullptr},
    {"GetThemeMargins", nullptr},
    {"GetThemeIntList", nullptr},
    {"GetThemePropertyOrigin", nullptr},
    {"SetWindowTheme", nullptr},
    {"GetThemeFilename", nullptr},
    {"GetThemeSysColor", nullptr},
    {"GetThemeSysColorBrush", nullptr},
    {"GetThemeSysBool", nullptr},
    {"GetThemeSysSize", nullptr},
    {"GetThemeSysFont", nullptr},
    {"GetThemeSysString", nullptr},
    {"GetThemeSysInt", nullptr},
    {"IsThemeActive", nullptr},
    {"IsAppThemed", nullptr},
    {"GetWindowTheme", nullptr},
    {"EnableThemeDialogTexture", nullptr},
    {"IsThemeDialogTextureEnabled", nullptr},
    {"GetThemeAppProperties", nullptr},
    {"SetThemeAppProperties", nullptr},
    {"GetCurrentThemeName", nullptr},
    {"GetThemeDocumentationProperty", nullptr},
    {"DrawThemeParentBackground", nullptr},
    {"EnableTheming", nullptr},
    {"DrawThemeBackgroundEx", nullptr},
};

namespace {

enum ThemeRow {
    kOpenThemeDataRow = 0,
    kCloseThemeDataRow = 1,
    kDrawThemeBackgroundRow = 2,
    kDrawThemeTextRow = 3,
    kGetThemeBackgroundContentRectRow = 4,
    kGetThemeBackgroundExtentRow = 5,
    kGetThemePartSizeRow = 6,
    kGetThemeTextExtentRow = 7,
    kGetThemeTextMetricsRow = 8,
    kGetThemeBackgroundRegionRow = 9,
    kHitTestThemeBackgroundRow = 10,
    kDrawThemeEdgeRow = 11,
    kDrawThemeIconRow = 12,
    kIsThemePartDefinedRow = 13,
    kIsThemeBackgroundPartiallyTransparentRow = 14,
    kGetThemeColorRow = 15,
    kGetThemeMetricRow = 16,
    kGetThemeStringRow = 17,
    kGetThemeBoolRow = 18,
    kGetThemeIntRow = 19,
    kGetThemeEnumValueRow = 20,
    kGetThemePositionRow = 21,
    kGetThemeFontRow = 22,
    kGetThemeRectRow = 23,
    kGetThemeMarginsRow = 24,
    kGetThemeIntListRow = 25,
    kGetThemePropertyOriginRow = 26,
    kSetWindowThemeRow = 27,
    kGetThemeFilenameRow = 28,
    kGetThemeSysColorRow = 29,
    kGetThemeSysColorBrushRow = 30,
    kGetThemeSysBoolRow = 31,
    kGetThemeSysSizeRow = 32,
    kGetThemeSysFontRow = 33,
    kGetThemeSysStringRow = 34,
    kGetThemeSysIntRow = 35,
    kIsThemeActiveRow = 36,
    kIsAppThemedRow = 37,
    kGetWindowThemeRow = 38,
    kEnableThemeDialogTextureRow = 39,
    kIsThemeDialogTextureEnabledRow = 40,
    kGetThemeAppPropertiesRow = 41,
    kSetThemeAppPropertiesRow = 42,
    kGetCurrentThemeNameRow = 43,
    kGetThemeDocumentationPropertyRow = 44,
    kDrawThemeParentBackgroundRow = 45,
    kEnableThemingRow = 46,
    kDrawThemeBackgroundExRow = 47,
};

// The entry of a row, read on every call so that a filled table takes effect at once.
template <typename Function>
Function boundEntry(ThemeRow row) {
    return reinterpret_cast<Function>(g_themeBindings[row].entry);
}

}  // namespace

HTHEME KVKIT_CALL KxOpenThemeData(HWND window, LPCWSTR classList) {
    auto entry = boundEntry<HTHEME(WINAPI*)(HWND window, LPCWSTR classList)>(kOpenThemeDataRow);
    if (!entry) return nullptr;
    return entry(window, classList);
}

HRESULT KVKIT_CALL KxCloseThemeData(HTHEME theme) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme)>(kCloseThemeDataRow);
    if (!entry) return 1;
    return entry(theme);
}

HRESULT KVKIT_CALL KxDrawThemeBackground(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const RECT* clip) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const RECT* clip)>(kDrawThemeBackgroundRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, rect, clip);
}

HRESULT KVKIT_CALL KxDrawThemeText(HTHEME theme, HDC dc, int part, int state, LPCWSTR text, int length, DWORD flags, DWORD flags2, const RECT* rect) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, LPCWSTR text, int length, DWORD flags, DWORD flags2, const RECT* rect)>(kDrawThemeTextRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, text, length, flags, flags2, rect);
}

HRESULT KVKIT_CALL KxGetThemeBackgroundContentRect(HTHEME theme, HDC dc, int part, int state, const RECT* bounds, RECT* content) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* bounds, RECT* content)>(kGetThemeBackgroundContentRectRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, bounds, content);
}

HRESULT KVKIT_CALL KxGetThemeBackgroundExtent(HTHEME theme, HDC dc, int part, int state, const RECT* content, RECT* extent) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* content, RECT* extent)>(kGetThemeBackgroundExtentRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, content, extent);
}

HRESULT KVKIT_CALL KxGetThemePartSize(HTHEME theme, HDC dc, int part, int state, const RECT* rect, THEMESIZE kind, SIZE* size) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* rect, THEMESIZE kind, SIZE* size)>(kGetThemePartSizeRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, rect, kind, size);
}

HRESULT KVKIT_CALL KxGetThemeTextExtent(HTHEME theme, HDC dc, int part, int state, LPCWSTR text, int length, DWORD flags, const RECT* bounds, RECT* extent) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, LPCWSTR text, int length, DWORD flags, const RECT* bounds, RECT* extent)>(kGetThemeTextExtentRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, text, length, flags, bounds, extent);
}

HRESULT KVKIT_CALL KxGetThemeTextMetrics(HTHEME theme, HDC dc, int part, int state, TEXTMETRICW* metrics) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, TEXTMETRICW* metrics)>(kGetThemeTextMetricsRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, metrics);
}

HRESULT KVKIT_CALL KxGetThemeBackgroundRegion(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HRGN* region) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HRGN* region)>(kGetThemeBackgroundRegionRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, rect, region);
}

HRESULT KVKIT_CALL KxHitTestThemeBackground(HTHEME theme, HDC dc, int part, int state, DWORD options, const RECT* rect, HRGN region, POINT point, WORD* hitCode) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, DWORD options, const RECT* rect, HRGN region, POINT point, WORD* hitCode)>(kHitTestThemeBackgroundRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, options, rect, region, point, hitCode);
}

HRESULT KVKIT_CALL KxDrawThemeEdge(HTHEME theme, HDC dc, int part, int state, const RECT* rect, UINT edge, UINT flags, RECT* content) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* rect, UINT edge, UINT flags, RECT* content)>(kDrawThemeEdgeRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, rect, edge, flags, content);
}

HRESULT KVKIT_CALL KxDrawThemeIcon(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HIMAGELIST images, int image) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HIMAGELIST images, int image)>(kDrawThemeIconRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, rect, images, image);
}

BOOL KVKIT_CALL KxIsThemePartDefined(HTHEME theme, int part, int state) {
    auto entry = boundEntry<BOOL(WINAPI*)(HTHEME theme, int part, int state)>(kIsThemePartDefinedRow);
    if (!entry) return 1;
    return entry(theme, part, state);
}

BOOL KVKIT_CALL KxIsThemeBackgroundPartiallyTransparent(HTHEME theme, int part, int state) {
    auto entry = boundEntry<BOOL(WINAPI*)(HTHEME theme, int part, int state)>(kIsThemeBackgroundPartiallyTransparentRow);
    if (!entry) return 1;
    return entry(theme, part, state);
}

HRESULT KVKIT_CALL KxGetThemeColor(HTHEME theme, int part, int state, int property, COLORREF* colour) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, COLORREF* colour)>(kGetThemeColorRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, colour);
}

HRESULT KVKIT_CALL KxGetThemeMetric(HTHEME theme, HDC dc, int part, int state, int property, int* value) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, int property, int* value)>(kGetThemeMetricRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, property, value);
}

HRESULT KVKIT_CALL KxGetThemeString(HTHEME theme, int part, int state, int property, LPWSTR buffer, int capacity) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, LPWSTR buffer, int capacity)>(kGetThemeStringRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, buffer, capacity);
}

HRESULT KVKIT_CALL KxGetThemeBool(HTHEME theme, int part, int state, int property, BOOL* value) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, BOOL* value)>(kGetThemeBoolRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, value);
}

HRESULT KVKIT_CALL KxGetThemeInt(HTHEME theme, int part, int state, int property, int* value) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, int* value)>(kGetThemeIntRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, value);
}

HRESULT KVKIT_CALL KxGetThemeEnumValue(HTHEME theme, int part, int state, int property, int* value) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, int* value)>(kGetThemeEnumValueRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, value);
}

HRESULT KVKIT_CALL KxGetThemePosition(HTHEME theme, int part, int state, int property, POINT* point) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, POINT* point)>(kGetThemePositionRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, point);
}

HRESULT KVKIT_CALL KxGetThemeFont(HTHEME theme, HDC dc, int part, int state, int property, LOGFONTW* font) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, int property, LOGFONTW* font)>(kGetThemeFontRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, property, font);
}

HRESULT KVKIT_CALL KxGetThemeRect(HTHEME theme, int part, int state, int property, RECT* rect) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, RECT* rect)>(kGetThemeRectRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, rect);
}

HRESULT KVKIT_CALL KxGetThemeMargins(HTHEME theme, HDC dc, int part, int state, int property, RECT* rect, MARGINS* margins) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, int property, RECT* rect, MARGINS* margins)>(kGetThemeMarginsRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, property, rect, margins);
}

HRESULT KVKIT_CALL KxGetThemeIntList(HTHEME theme, int part, int state, int property, INTLIST* list) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, INTLIST* list)>(kGetThemeIntListRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, list);
}

HRESULT KVKIT_CALL KxGetThemePropertyOrigin(HTHEME theme, int part, int state, int property, PROPERTYORIGIN* origin) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, PROPERTYORIGIN* origin)>(kGetThemePropertyOriginRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, origin);
}

HRESULT KVKIT_CALL KxSetWindowTheme(HWND window, LPCWSTR subAppName, LPCWSTR subIdList) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HWND window, LPCWSTR subAppName, LPCWSTR subIdList)>(kSetWindowThemeRow);
    if (!entry) return 1;
    return entry(window, subAppName, subIdList);
}

HRESULT KVKIT_CALL KxGetThemeFilename(HTHEME theme, int part, int state, int property, LPWSTR buffer, int capacity) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int part, int state, int property, LPWSTR buffer, int capacity)>(kGetThemeFilenameRow);
    if (!entry) return 1;
    return entry(theme, part, state, property, buffer, capacity);
}

COLORREF KVKIT_CALL KxGetThemeSysColor(HTHEME theme, int colourId) {
    auto entry = boundEntry<COLORREF(WINAPI*)(HTHEME theme, int colourId)>(kGetThemeSysColorRow);
    if (!entry) return 1;
    return entry(theme, colourId);
}

HBRUSH KVKIT_CALL KxGetThemeSysColorBrush(HTHEME theme, int colourId) {
    auto entry = boundEntry<HBRUSH(WINAPI*)(HTHEME theme, int colourId)>(kGetThemeSysColorBrushRow);
    if (!entry) return nullptr;
    return entry(theme, colourId);
}

BOOL KVKIT_CALL KxGetThemeSysBool(HTHEME theme, int boolId) {
    auto entry = boundEntry<BOOL(WINAPI*)(HTHEME theme, int boolId)>(kGetThemeSysBoolRow);
    if (!entry) return 0;
    return entry(theme, boolId);
}

int KVKIT_CALL KxGetThemeSysSize(HTHEME theme, int sizeId) {
    auto entry = boundEntry<int(WINAPI*)(HTHEME theme, int sizeId)>(kGetThemeSysSizeRow);
    if (!entry) return 0;
    return entry(theme, sizeId);
}

HRESULT KVKIT_CALL KxGetThemeSysFont(HTHEME theme, int fontId, LOGFONTW* font) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int fontId, LOGFONTW* font)>(kGetThemeSysFontRow);
    if (!entry) return 1;
    return entry(theme, fontId, font);
}

HRESULT KVKIT_CALL KxGetThemeSysString(HTHEME theme, int stringId, LPWSTR buffer, int capacity) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int stringId, LPWSTR buffer, int capacity)>(kGetThemeSysStringRow);
    if (!entry) return 1;
    return entry(theme, stringId, buffer, capacity);
}

HRESULT KVKIT_CALL KxGetThemeSysInt(HTHEME theme, int intId, int* value) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, int intId, int* value)>(kGetThemeSysIntRow);
    if (!entry) return 1;
    return entry(theme, intId, value);
}

BOOL KVKIT_CALL KxIsThemeActive(void) {
    auto entry = boundEntry<BOOL(WINAPI*)()>(kIsThemeActiveRow);
    return entry ? entry() : 0;
}

BOOL KVKIT_CALL KxIsAppThemed(void) {
    auto entry = boundEntry<BOOL(WINAPI*)()>(kIsAppThemedRow);
    return entry ? entry() : 0;
}

HTHEME KVKIT_CALL KxGetWindowTheme(HWND window) {
    auto entry = boundEntry<HTHEME(WINAPI*)(HWND window)>(kGetWindowThemeRow);
    if (!entry) return nullptr;
    return entry(window);
}

HRESULT KVKIT_CALL KxEnableThemeDialogTexture(HWND window, DWORD flags) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HWND window, DWORD flags)>(kEnableThemeDialogTextureRow);
    if (!entry) return 1;
    return entry(window, flags);
}

BOOL KVKIT_CALL KxIsThemeDialogTextureEnabled(HWND window) {
    auto entry = boundEntry<BOOL(WINAPI*)(HWND window)>(kIsThemeDialogTextureEnabledRow);
    if (!entry) return 0;
    return entry(window);
}

DWORD KVKIT_CALL KxGetThemeAppProperties(void) {
    auto entry = boundEntry<DWORD(WINAPI*)()>(kGetThemeAppPropertiesRow);
    return entry ? entry() : 0;
}

void KVKIT_CALL KxSetThemeAppProperties(DWORD flags) {
    auto entry = boundEntry<void(WINAPI*)(DWORD flags)>(kSetThemeAppPropertiesRow);
    if (entry) entry(flags);
}

HRESULT KVKIT_CALL KxGetCurrentThemeName(LPWSTR fileName, int fileNameCapacity, LPWSTR colour, int colourCapacity, LPWSTR size, int sizeCapacity) {
    auto entry = boundEntry<HRESULT(WINAPI*)(LPWSTR fileName, int fileNameCapacity, LPWSTR colour, int colourCapacity, LPWSTR size, int sizeCapacity)>(kGetCurrentThemeNameRow);
    if (!entry) return 1;
    return entry(fileName, fileNameCapacity, colour, colourCapacity, size, sizeCapacity);
}

HRESULT KVKIT_CALL KxGetThemeDocumentationProperty(LPCWSTR themeName, LPCWSTR propertyName, LPWSTR value, int capacity) {
    auto entry = boundEntry<HRESULT(WINAPI*)(LPCWSTR themeName, LPCWSTR propertyName, LPWSTR value, int capacity)>(kGetThemeDocumentationPropertyRow);
    if (!entry) return 1;
    return entry(themeName, propertyName, value, capacity);
}

HRESULT KVKIT_CALL KxDrawThemeParentBackground(HWND window, HDC dc, const RECT* rect) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HWND window, HDC dc, const RECT* rect)>(kDrawThemeParentBackgroundRow);
    if (!entry) return 1;
    return entry(window, dc, rect);
}

HRESULT KVKIT_CALL KxEnableTheming(BOOL enable) {
    auto entry = boundEntry<HRESULT(WINAPI*)(BOOL enable)>(kEnableThemingRow);
    if (!entry) return 1;
    return entry(enable);
}

HRESULT KVKIT_CALL KxDrawThemeBackgroundEx(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const DTBGOPTS* options) {
    auto entry = boundEntry<HRESULT(WINAPI*)(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const DTBGOPTS* options)>(kDrawThemeBackgroundExRow);
    if (!entry) return 1;
    return entry(theme, dc, part, state, rect, options);
}
