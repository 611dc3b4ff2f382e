#include "tabs_fixture.h"
#include <prsht.h>

namespace tabs_test {

namespace {

template <int Slot>
INT_PTR CALLBACK pageProc(HWND page, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) Creations().push_back({Slot, page, lParam});
    return FALSE;  // the focus stays where it is
}

// The host dialog's template: 260 x 150 units, a tab control and an OK button.
std::vector<WORD> dialogTemplate() {
    std::vector<WORD> words;
    auto dword = [&words](DWORD value) { words.insert(words.end(), {LOWORD(value), HIWORD(value)}); };
    auto text = [&words](const wchar_t* value) {
        do words.push_back(*value); while (*value++);
    };
    auto item = [&](const wchar_t* className, const wchar_t* title, DWORD style, std::initializer_list<WORD> place, WORD id) {
        if (words.size() % 2) words.push_back(0);
        dword(style | WS_CHILD | WS_VISIBLE);
        dword(0);
        words.insert(words.end(), place);
        words.push_back(id);
        text(className);
        text(title);
        words.push_back(0);
    };
    dword(WS_POPUP | WS_CAPTION | WS_VISIBLE | WS_THICKFRAME | DS_SETFONT);
    dword(0);
    words.insert(words.end(), {2, 0, 0, 260, 150, 0, 0});  // items, place, no menu, dialog class
    text(L"Customer");
    words.push_back(8);
    text(L"MS Shell Dlg");
    item(WC_TABCONTROLW, L"", WS_CLIPSIBLINGS | WS_TABSTOP, {7, 7, 246, 118}, kTabId);
    item(L"Button", L"OK", BS_DEFPUSHBUTTON | WS_TABSTOP, {203, 130, 50, 14}, IDOK);
    return words;
}

std::function<void(HWND)> g_inside;
bool g_sheetDriven;

void CALLBACK driveSheet(HWND, UINT, UINT_PTR, DWORD) {
    if (g_sheetDriven || Creations().empty()) return;
    HWND sheet = GetParent(Creations().front().window);
    if (!IsWindow(sheet)) return;
    g_sheetDriven = true;
    if (g_inside) g_inside(sheet);
    PostMessageW(sheet, PSM_PRESSBUTTON, PSBTN_CANCEL, 0);
}

}  // namespace

std::vector<PageCreation>& Creations() {
    static std::vector<PageCreation> creations;
    return creations;
}

int CreationsOf(int slot) {
    int count = 0;
    for (const PageCreation& creation : Creations()) count += creation.slot == slot;
    return count;
}

DLGPROC PageProc(int slot) {
    static const DLGPROC procs[] = {pageProc<0>, pageProc<1>, pageProc<2>, pageProc<3>, pageProc<4>, pageProc<5>};
    return procs[slot];
}

TabbedDialog::TabbedDialog() {
    std::vector<WORD> words = dialogTemplate();
    window_ = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), reinterpret_cast<DLGTEMPLATE*>(words.data()),
                                         nullptr, dialogProc, reinterpret_cast<LPARAM>(this));
    kvtest::PumpMessages();
}

void TabbedDialog::destroy() {
    if (record) KxTabEnd(window_, record);
    record = nullptr;
    if (IsWindow(window_)) DestroyWindow(window_);
    kvtest::PumpMessages();
}

int TabbedDialog::pageSlot() const {
    for (const PageCreation& creation : Creations())
        if (creation.window == page()) return creation.slot;
    return -1;
}

RECT TabbedDialog::pageArea() const {
    RECT area = RectInParent(tabs());
    TabCtrl_AdjustRect(tabs(), FALSE, &area);
    return area;
}

void TabbedDialog::clickTab(int index) {
    RECT item;
    TabCtrl_GetItemRect(tabs(), index, &item);
    LPARAM centre = MAKELPARAM((item.left + item.right) / 2, (item.top + item.bottom) / 2);
    PostMessageW(tabs(), WM_LBUTTONDOWN, MK_LBUTTON, centre);
    PostMessageW(tabs(), WM_LBUTTONUP, 0, centre);
    RunLoop(window_);
}

INT_PTR CALLBACK TabbedDialog::dialogProc(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    if (message == WM_INITDIALOG) SetWindowLongPtrW(dialog, DWLP_USER, lParam);
    auto* self = reinterpret_cast<TabbedDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
    if (message == WM_SIZE) KxSizeDlg(dialog, 0, 0);  // 0 unless the test started the engine
    auto* header = reinterpret_cast<NMHDR*>(lParam);
    if (message == WM_NOTIFY && self && self->record && header->idFrom == kTabId && header->code == TCN_SELCHANGE)
        KxTabChangeSelection(dialog, kTabId, self->record, TabCtrl_GetCurSel(header->hwndFrom));
    return message == WM_INITDIALOG;
}

std::vector<MSG> RunLoop(HWND dialog) {
    const DWORD kQuiet = 60, kLongest = 3000;
    std::vector<MSG> retrieved;
    DWORD start = GetTickCount(), lastMessage = start;
    while (GetTickCount() - lastMessage < kQuiet && GetTickCount() - start < kLongest) {
        MSG msg;
        if (!PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
            continue;
        }
        if (msg.message != WM_TIMER) lastMessage = GetTickCount();
        retrieved.push_back(msg);
        if (IsWindow(dialog) && IsDialogMessageW(dialog, &msg)) continue;
        TranslateMessage(&msg);
        DispatchMessageW(&msg);
    }
    return retrieved;
}

int CountRetrieved(const std::vector<MSG>& messages, UINT message, WPARAM wParam) {
    int count = 0;
    for (const MSG& msg : messages) count += msg.message == message && (!wParam || msg.wParam == wParam);
    return count;
}

void PressKeys(std::initializer_list<WORD> modifiers, WORD key) {
    std::vector<INPUT> inputs;
    auto add = [&inputs](WORD virtualKey, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = virtualKey;
        input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    for (WORD modifier : modifiers) add(modifier, 0);
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    for (auto modifier = std::rbegin(modifiers); modifier != std::rend(modifiers); ++modifier)
        add(*modifier, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

void Activate(HWND dialog, HWND focus) {
    SetForegroundWindow(dialog);
    SetFocus(focus);
    RunLoop(dialog);
}

INT_PTR RunSheet(std::function<void(HWND)> inside, std::function<INT_PTR()> create) {
    Creations().clear();
    g_inside = std::move(inside);
    g_sheetDriven = false;
    UINT_PTR timer = SetTimer(nullptr, 0, 30, driveSheet);
    INT_PTR result = create();
    KillTimer(nullptr, timer);
    kvtest::PumpMessages();
    g_inside = nullptr;
    return result;
}

RECT RectInParent(HWND window) {
    RECT rect;
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

std::wstring TabTitle(HWND tabControl, int index) {
    wchar_t text[160] = L"";
    TCITEMW item = {};
    item.mask = TCIF_TEXT;
    item.pszText = text;
    item.cchTextMax = 160;
    return TabCtrl_GetItem(tabControl, index, &item) ? item.pszText : L"<none>";
}

std::wstring WindowText(HWND window) {
    wchar_t text[256] = L"";
    GetWindowTextW(window, text, 256);
    return text;
}

}  // namespace tabs_test
