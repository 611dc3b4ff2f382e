// Wrappers over the visual-styles (theme) interface. Each forwards to the bound platform function
// and, when none is bound, returns a fallback that lets the caller draw classically: S_FALSE (1)
// for HRESULT results, FALSE/null/0 otherwise, except KxGetThemeSysColor (colour 1),
// KxIsThemePartDefined and KxIsThemeBackgroundPartiallyTransparent (TRUE). Out-parameters are
// left untouched by a fallback.
#pragma once
#include "kvkit_api.h"
#include <commctrl.h>
#include <uxtheme.h>

// Each wraps the theme function of the same name without the Kx prefix, argument for argument.
KVKIT_API HTHEME KVKIT_CALL KxOpenThemeData(HWND window, LPCWSTR classList);
KVKIT_API HRESULT KVKIT_CALL KxCloseThemeData(HTHEME theme);
KVKIT_API HRESULT KVKIT_CALL KxDrawThemeBackground(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const RECT* clip);
KVKIT_API HRESULT KVKIT_CALL KxDrawThemeText(HTHEME theme, HDC dc, int part, int state, LPCWSTR text, int length, DWORD flags, DWORD flags2, const RECT* rect);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeBackgroundContentRect(HTHEME theme, HDC dc, int part, int state, const RECT* bounds, RECT* content);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeBackgroundExtent(HTHEME theme, HDC dc, int part, int state, const RECT* content, RECT* extent);
KVKIT_API HRESULT KVKIT_CALL KxGetThemePartSize(HTHEME theme, HDC dc, int part, int state, const RECT* rect, THEMESIZE kind, SIZE* size);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeTextExtent(HTHEME theme, HDC dc, int part, int state, LPCWSTR text, int length, DWORD flags, const RECT* bounds, RECT* extent);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeTextMetrics(HTHEME theme, HDC dc, int part, int state, TEXTMETRICW* metrics);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeBackgroundRegion(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HRGN* region);
KVKIT_API HRESULT KVKIT_CALL KxHitTestThemeBackground(HTHEME theme, HDC dc, int part, int state, DWORD options, const RECT* rect, HRGN region, POINT point, WORD* hitCode);
KVKIT_API HRESULT KVKIT_CALL KxDrawThemeEdge(HTHEME theme, HDC dc, int part, int state, const RECT* rect, UINT edge, UINT flags, RECT* content);
KVKIT_API HRESULT KVKIT_CALL KxDrawThemeIcon(HTHEME theme, HDC dc, int part, int state, const RECT* rect, HIMAGELIST images, int image);
KVKIT_API BOOL KVKIT_CALL KxIsThemePartDefined(HTHEME theme, int part, int state);
KVKIT_API BOOL KVKIT_CALL KxIsThemeBackgroundPartiallyTransparent(HTHEME theme, int part, int state);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeColor(HTHEME theme, int part, int state, int property, COLORREF* colour);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeMetric(HTHEME theme, HDC dc, int part, int state, int property, int* value);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeString(HTHEME theme, int part, int state, int property, LPWSTR buffer, int capacity);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeBool(HTHEME theme, int part, int state, int property, BOOL* value);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeInt(HTHEME theme, int part, int state, int property, int* value);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeEnumValue(HTHEME theme, int part, int state, int property, int* value);
KVKIT_API HRESULT KVKIT_CALL KxGetThemePosition(HTHEME theme, int part, int state, int property, POINT* point);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeFont(HTHEME theme, HDC dc, int part, int state, int property, LOGFONTW* font);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeRect(HTHEME theme, int part, int state, int property, RECT* rect);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeMargins(HTHEME theme, HDC dc, int part, int state, int property, RECT* rect, MARGINS* margins);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeIntList(HTHEME theme, int part, int state, int property, INTLIST* list);
KVKIT_API HRESULT KVKIT_CALL KxGetThemePropertyOrigin(HTHEME theme, int part, int state, int property, PROPERTYORIGIN* origin);
KVKIT_API HRESULT KVKIT_CALL KxSetWindowTheme(HWND window, LPCWSTR subAppName, LPCWSTR subIdList);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeFilename(HTHEME theme, int part, int state, int property, LPWSTR buffer, int capacity);
KVKIT_API COLORREF KVKIT_CALL KxGetThemeSysColor(HTHEME theme, int colourId);
KVKIT_API HBRUSH KVKIT_CALL KxGetThemeSysColorBrush(HTHEME theme, int colourId);
KVKIT_API BOOL KVKIT_CALL KxGetThemeSysBool(HTHEME theme, int boolId);
KVKIT_API int KVKIT_CALL KxGetThemeSysSize(HTHEME theme, int sizeId);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeSysFont(HTHEME theme, int fontId, LOGFONTW* font);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeSysString(HTHEME theme, int stringId, LPWSTR buffer, int capacity);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeSysInt(HTHEME theme, int intId, int* value);
KVKIT_API BOOL KVKIT_CALL KxIsThemeActive(void);
KVKIT_API BOOL KVKIT_CALL KxIsAppThemed(void);
KVKIT_API HTHEME KVKIT_CALL KxGetWindowTheme(HWND window);
KVKIT_API HRESULT KVKIT_CALL KxEnableThemeDialogTexture(HWND window, DWORD flags);
KVKIT_API BOOL KVKIT_CALL KxIsThemeDialogTextureEnabled(HWND window);
KVKIT_API DWORD KVKIT_CALL KxGetThemeAppProperties(void);
KVKIT_API void KVKIT_CALL KxSetThemeAppProperties(DWORD flags);
KVKIT_API HRESULT KVKIT_CALL KxGetCurrentThemeName(LPWSTR fileName, int fileNameCapacity, LPWSTR colour, int colourCapacity, LPWSTR size, int sizeCapacity);
KVKIT_API HRESULT KVKIT_CALL KxGetThemeDocumentationProperty(LPCWSTR themeName, LPCWSTR propertyName, LPWSTR value, int capacity);
KVKIT_API HRESULT KVKIT_CALL KxDrawThemeParentBackground(HWND window, HDC dc, const RECT* rect);
KVKIT_API HRESULT KVKIT_CALL KxEnableTheming(BOOL enable);
KVKIT_API HRESULT KVKIT_CALL KxDrawThemeBackgroundEx(HTHEME theme, HDC dc, int part, int state, const RECT* rect, const DTBGOPTS* options);
