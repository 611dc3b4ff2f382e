// Window furniture: a customer form with a header band, a hint bubble on a date field whose
// format check failed and a text hint on the customer number, a picture hint with a photo
// preview (second screenshot), and two tool windows with the painted caption, one active.
#include "gallery/gallery.h"
#include "gallery/dialog_template.h"
#include <vector>
#include "kvkit_caption.h"
#include "kvkit_dlgpaint.h"
#include "kvkit_menutext.h"
#include "kvkit_popuphint.h"
#include "kvtext.h"

namespace {

const int kHeader = 100, kNumber = 101, kBirth = 102, kCity = 103, kMenuLabel = 104;
const wchar_t kToolClass[] = L"KvGalleryToolWindow";

// A child form made from an in-memory template, as a host's dialog is.
INT_PTR CALLBACK formProc(HWND, UINT message, WPARAM, LPARAM) { return message == WM_INITDIALOG; }

HWND createForm(HWND page) {
    DialogTemplate form(WS_CHILD | WS_VISIBLE | DS_CONTROL, 9, 230, 170);
    form.item(L"KXDlgPaintClass", L"Customer\nnew record", 0, 0, 0, 230, 28, kHeader);
    form.item(L"Static", L"Customer no.:", SS_LEFT, 8, 40, 60, 8, -1);
    form.item(L"Edit", L"K-10482", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, 72, 38, 90, 12, kNumber);
    form.item(L"Static", L"Date of birth:", SS_LEFT, 8, 58, 60, 8, -1);
    form.item(L"Edit", L"31.02.1980", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, 72, 56, 90, 12, kBirth);
    form.item(L"Static", L"City:", SS_LEFT, 8, 112, 60, 8, -1);
    form.item(L"Edit", L"Bremen", ES_AUTOHSCROLL | WS_BORDER | WS_TABSTOP, 72, 110, 90, 12, kCity);
    form.item(L"Static", L"", SS_LEFT | SS_NOPREFIX, 8, 130, 214, 20, kMenuLabel);
    form.item(L"Button", L"OK", BS_DEFPUSHBUTTON | WS_TABSTOP, 172, 150, 50, 14, IDOK);
    return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), form.data(), page, formProc, 0);
}

// The menu texts a status line would show, read with GetMenuText.
void showMenuTexts(HWND label) {
    HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"&Save && close\tCtrl+S");
    AppendMenuW(menu, MF_STRING, 2, L"Print &preview...\tCtrl+F2");
    wchar_t first[40], second[40], line[120];
    GetMenuText(menu, 1, MF_BYCOMMAND, first, 40);
    GetMenuText(menu, 0, MF_BYPOSITION, second, 40);
    wchar_t* third = GetMenuText(menu, 2, MF_BYCOMMAND, nullptr, 0);
    wsprintfW(line, L"Menu texts: \"%s\", \"%s\", \"%s\"", first, second, third ? third : L"?");
    FreeMemory(third);
    SetWindowTextW(label, line);
    DestroyMenu(menu);
}

// A photo-like picture: sky, sun and two hills.
HBITMAP paintPhoto(int width, int height) {
    HDC screen = GetDC(nullptr);
    HBITMAP photo = CreateCompatibleBitmap(screen, width, height);
    HDC dc = CreateCompatibleDC(screen);
    ReleaseDC(nullptr, screen);
    HGDIOBJ old = SelectObject(dc, photo);
    for (int y = 0; y < height; ++y) {
        HBRUSH row = CreateSolidBrush(RGB(90 + y, 150 + y / 2, 230));
        RECT line = {0, y, width, y + 1};
        FillRect(dc, &line, row);
        DeleteObject(row);
    }
    HBRUSH sun = CreateSolidBrush(RGB(255, 210, 60));
    HBRUSH hill = CreateSolidBrush(RGB(60, 140, 60));
    HBRUSH farHill = CreateSolidBrush(RGB(100, 170, 90));
    HGDIOBJ oldPen = SelectObject(dc, GetStockObject(NULL_PEN));
    HGDIOBJ oldBrush = SelectObject(dc, sun);
    Ellipse(dc, width - 60, 15, width - 25, 50);
    SelectObject(dc, farHill);
    Ellipse(dc, -40, height / 2, width * 2 / 3, height + 80);
    SelectObject(dc, hill);
    Ellipse(dc, width / 3, height * 2 / 3, width + 60, height + 90);
    SelectObject(dc, oldBrush);
    SelectObject(dc, oldPen);
    DeleteObject(sun);
    DeleteObject(hill);
    DeleteObject(farHill);
    SelectObject(dc, old);
    DeleteDC(dc);
    return photo;
}

// A tool window as a host writes it: the library sizes its client area and paints its caption.
LRESULT CALLBACK toolProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_NCCALCSIZE: {
        auto* rect = reinterpret_cast<RECT*>(lParam);
        NcGetClientRect(window, rect, rect);
        return 0;
    }
    case WM_NCPAINT:
        DefWindowProcW(window, message, wParam, lParam);
        NcDrawCaption(window, nullptr, KXNC_CURRENT);
        return 0;
    case WM_CLOSE:
        return 0;  // the gallery closes it
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// Once the page has taken the activation, Wine puts it above the windows it owns, which Windows
// keeps above their owner; the screenshots show them where Windows has them.
BOOL CALLBACK raiseOwned(HWND window, LPARAM page) {
    if (GetWindow(window, GW_OWNER) == reinterpret_cast<HWND>(page) && IsWindowVisible(window))
        SetWindowPos(window, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return TRUE;
}

void raiseOwnedWindows(HWND page) {
    PumpFor(100);
    EnumThreadWindows(GetCurrentThreadId(), raiseOwned, reinterpret_cast<LPARAM>(page));
}

HWND createToolWindow(HWND page, const wchar_t* title, int x, int y, const wchar_t* const* buttons, int count) {
    static bool registered = false;
    if (!registered) {
        WNDCLASSW windowClass = {};
        windowClass.lpfnWndProc = toolProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
        windowClass.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
        windowClass.lpszClassName = kToolClass;
        RegisterClassW(&windowClass);
        registered = true;
    }
    RECT origin = {0, 0, 0, 0};
    MapWindowPoints(page, nullptr, reinterpret_cast<POINT*>(&origin), 1);
    HWND tool = CreateWindowExW(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, kToolClass, title,
                                WS_POPUP | WS_THICKFRAME | WS_SYSMENU, origin.left + x, origin.top + y,
                                150, 34 + count * 28, page, nullptr, GetModuleHandleW(nullptr), nullptr);
    for (int i = 0; i < count; ++i) {
        HWND button = CreateWindowW(L"Button", buttons[i], WS_CHILD | WS_VISIBLE | BS_PUSHBUTTON, 6,
                                    6 + i * 28, 128, 24, tool, nullptr, GetModuleHandleW(nullptr), nullptr);
        SendMessageW(button, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), 0);
    }
    return tool;
}

void build(HWND page) {
    HWND form = createForm(page);
    if (!form) {
        AddLabel(page, 10, 10, 400, 16, L"The customer form could not be created.");
        return;
    }
    SetWindowPos(form, nullptr, 10, 10, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    SetDlgHeaderName(form, L"Customer\nAddress, birthday and contact", 0);
    SendDlgItemMessageW(form, kHeader, WM_SETICON, ICON_BIG,
                        reinterpret_cast<LPARAM>(LoadIconW(nullptr, IDI_INFORMATION)));
    showMenuTexts(GetDlgItem(form, kMenuLabel));

    // The bubble goes when the field loses the focus, so the field keeps it from here on.
    HWND birth = GetDlgItem(form, kBirth);
    SetFocus(birth);
    KxDlgTipp_Show(birth, L"There is no 31 February. Please enter the date as DD.MM.YYYY.", KXTIPP_WARNING);

    // Tool windows beside the form, shown without taking the focus; the palette that the user
    // works with keeps the active look, as hosts ask with WM_NCACTIVATE.
    const wchar_t* tools[] = {L"New contact", L"Find duplicates", L"Print card"};
    const wchar_t* layers[] = {L"Addresses", L"Visits"};
    HWND active = createToolWindow(page, L"Tools", 470, 130, tools, 3);
    HWND inactive = createToolWindow(page, L"Layers", 530, 290, layers, 2);
    ShowWindow(active, SW_SHOWNA);
    ShowWindow(inactive, SW_SHOWNA);
    SendMessageW(active, WM_NCACTIVATE, TRUE, 0);

    HBITMAP photo = paintPhoto(160, 110);
    DrawPopupImageEx(GetDlgItem(form, kCity), nullptr, photo, INFINITE, KXHINT_RIGHT);
    DeleteObject(photo);
    raiseOwnedWindows(page);
    SaveScreenshot(page, L"13-furniture-picture");

    // A new hint replaces the picture: the text hint stays for the page's own screenshot.
    DrawPopupTextEx(GetDlgItem(form, kNumber), nullptr,
                    L"Customer numbers are given by the head office.\nFormat: K-nnnnn", INFINITE,
                    KXHINT_RIGHT);
    raiseOwnedWindows(page);
}

const bool registered = RegisterGalleryPage({L"13-furniture", 720, 420, build});

}  // namespace
