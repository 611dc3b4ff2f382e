// Gradient fills through the system's GradientFill, and the flat button face.
#include "include/kvkit_draw.h"
#include <math.h>

namespace {

const int kAutoEndStep = 50;

TRIVERTEX vertex(LONG x, LONG y, COLORREF colour) {
    TRIVERTEX v = {};
    v.x = x;
    v.y = y;
    v.Red = static_cast<COLOR16>(GetRValue(colour) << 8);
    v.Green = static_cast<COLOR16>(GetGValue(colour) << 8);
    v.Blue = static_cast<COLOR16>(GetBValue(colour) << 8);
    return v;
}

// `from` plus 50 per channel; a channel above 205 wraps round to a dark value on purpose.
COLORREF autoEndColour(COLORREF from) {
    return RGB(GetRValue(from) + kAutoEndStep, GetGValue(from) + kAutoEndStep,
               GetBValue(from) + kAutoEndStep);
}

// The knee colour of a highlight gradient. The red channel of `from` is subtracted for every
// channel, which gives the highlight its tint; callers rely on these colours.
COLORREF kneeColour(COLORREF from, COLORREF end, double strength) {
    int fromRed = GetRValue(from);
    double divisor = 100.0 / strength;
    int red = static_cast<int>(floor((GetRValue(end) - fromRed) / divisor + GetRValue(from)));
    int green = static_cast<int>(floor((GetGValue(end) - fromRed) / divisor + GetGValue(from)));
    int blue = static_cast<int>(floor((GetBValue(end) - fromRed) / divisor + GetBValue(from)));
    return RGB(red, green, blue);
}

}  // namespace

int KVKIT_CALL Kx1GradientFill(HDC dc, COLORREF from, COLORREF to, int autoEnd, int vertical,
                               RECT* rect) {
    if (!rect) return 1;
    COLORREF end = autoEnd ? autoEndColour(from) : to;
    TRIVERTEX vertices[2] = {vertex(rect->left, rect->top, from),
                             vertex(rect->right, rect->bottom, end)};
    GRADIENT_RECT span = {0, 1};
    GradientFill(dc, vertices, 2, &span, 1,
                 vertical ? GRADIENT_FILL_RECT_V : GRADIENT_FILL_RECT_H);
    return 1;
}

int KVKIT_CALL Kx1GradientFill_AsHighlight(HDC dc, COLORREF from, COLORREF to, int autoEnd,
                                           int vertical, RECT* rect, double percent,
                                           double strength) {
    return Kx1GradientFill_AsHighlightEx(dc, from, to, autoEnd, vertical, rect, percent, strength,
                                         false);
}

int KVKIT_CALL Kx1GradientFill_AsHighlightEx(HDC dc, COLORREF from, COLORREF to, int autoEnd,
                                             int vertical, RECT* rect, double percent,
                                             double strength, bool reverse) {
    if (!rect) return 1;
    if (percent == 0.0 || percent == 100.0 || strength == 0.0 || strength == 100.0)
        return Kx1GradientFill(dc, from, to, autoEnd, vertical, rect);
    COLORREF end = autoEnd ? autoEndColour(from) : to;
    LONG start = vertical ? rect->top : rect->left;
    LONG stop = vertical ? rect->bottom : rect->right;
    // The split is compared with the extent before it becomes an integer, so that a percentage
    // far above 100 still gives the plain gradient instead of overflowing.
    double split = ceil((stop - start) * percent / 100.0);
    if (split >= stop - start) {
        return reverse ? Kx1GradientFill(dc, end, from, autoEnd, vertical, rect)
                       : Kx1GradientFill(dc, from, end, autoEnd, vertical, rect);
    }
    LONG firstLength = static_cast<LONG>(split);
    COLORREF knee = kneeColour(from, end, strength);

    RECT first = *rect, rest = *rect;
    LONG& firstStart = vertical ? first.top : first.left;
    LONG& firstStop = vertical ? first.bottom : first.right;
    LONG& restStart = vertical ? rest.top : rest.left;
    LONG& restStop = vertical ? rest.bottom : rest.right;
    if (!reverse) {
        firstStop = restStart = start + firstLength;
        Kx1GradientFill(dc, from, knee, 0, vertical, &first);
        Kx1GradientFill(dc, knee, end, 0, vertical, &rest);
    } else {
        firstStart = restStop = stop - firstLength;
        Kx1GradientFill(dc, knee, from, 0, vertical, &first);
        Kx1GradientFill(dc, end, knee, 0, vertical, &rest);
    }
    return 1;
}

int KVKIT_CALL Kx1GradientFillBiDirectionalEx(HDC dc, COLORREF* colours, int colourCount,
                                              POINT* points, int pointCount, COLORREF last) {
    if (!colours || !points) return 0;
    TRIVERTEX vertices[4];
    for (int i = 0; i < 4; ++i) vertices[i] = vertex(points[i].x, points[i].y, colours[i]);
    GRADIENT_TRIANGLE triangles[2] = {{0, 1, 2}, {0, 2, 3}};
    return GradientFill(dc, vertices, 4, triangles, 2, GRADIENT_FILL_TRIANGLE);
}

int KVKIT_CALL Kx1GradientFillBiDirectional(HDC dc, RECT* rect, COLORREF bottomLeft,
                                            COLORREF topLeft, COLORREF topRight,
                                            COLORREF bottomRight, COLORREF last) {
    if (!rect) return 0;
    POINT corners[4] = {{rect->left, rect->bottom},
                        {rect->left, rect->top},
                        {rect->right, rect->top},
                        {rect->right, rect->bottom}};
    COLORREF colours[4] = {bottomLeft, topLeft, topRight, bottomRight};
    return Kx1GradientFillBiDirectionalEx(dc, colours, 4, corners, 4, last);
}

int KVKIT_CALL Kx1GradientFillDiagonal(HDC dc, RECT* rect, COLORREF first, COLORREF second,
                                       int rising) {
    if (!rect) return 0;
    // The step count comes from the sum of the sides (not of their squares); the middle colour
    // is half of those steps from `first`.
    int sides = (rect->bottom - rect->top) + (rect->right - rect->left);
    int steps = sides > 0 ? static_cast<int>(floor(sqrt(static_cast<double>(sides)))) : 0;
    if (steps == 0) return 0;
    int half = steps / 2;
    COLORREF middle = RGB(GetRValue(first) + (GetRValue(second) - GetRValue(first)) * half / steps,
                          GetGValue(first) + (GetGValue(second) - GetGValue(first)) * half / steps,
                          GetBValue(first) + (GetBValue(second) - GetBValue(first)) * half / steps);
    if (rising)
        return Kx1GradientFillBiDirectional(dc, rect, first, middle, second, middle, 0);
    return Kx1GradientFillBiDirectional(dc, rect, middle, first, middle, second, 0);
}

void KVKIT_CALL Kx1DrawBtnHg(HDC dc, RECT rect, unsigned char state, int style) {
    // The outline is drawn first and then covered by the face; only the face and the edge show.
    if (style) {
        FillRect(dc, &rect, GetSysColorBrush(COLOR_BTNFACE));
        HGDIOBJ oldPen = SelectObject(dc, GetStockObject(BLACK_PEN));
        MoveToEx(dc, rect.left + 1, rect.top, nullptr);
        LineTo(dc, rect.right - 1, rect.top);
        MoveToEx(dc, rect.left + 1, rect.bottom - 1, nullptr);
        LineTo(dc, rect.right - 1, rect.bottom - 1);
        MoveToEx(dc, rect.left, rect.top + 1, nullptr);
        LineTo(dc, rect.left, rect.bottom - 1);
        MoveToEx(dc, rect.right - 1, rect.top + 1, nullptr);
        LineTo(dc, rect.right - 1, rect.bottom - 1);
        SelectObject(dc, oldPen);
    } else {
        HBRUSH face = CreateSolidBrush(GetSysColor(COLOR_BTNFACE));
        HGDIOBJ oldPen = SelectObject(dc, GetStockObject(BLACK_PEN));
        HGDIOBJ oldBrush = SelectObject(dc, face);
        Rectangle(dc, rect.left, rect.top, rect.right, rect.bottom);
        SelectObject(dc, oldBrush);
        SelectObject(dc, oldPen);
        DeleteObject(face);
    }
    FillRect(dc, &rect, GetSysColorBrush(COLOR_BTNFACE));
    UINT edge = (state == 0 || state == 2) ? EDGE_RAISED : EDGE_SUNKEN;
    DrawEdge(dc, &rect, edge, BF_RECT);
}
