// Helpers of the edit-field button tests: a host window with an edit field, real mouse and
// keyboard input, and read-back of rectangles, texts and pixels.
#pragma once
#include "kvtest.h"
#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>
#include "kvkit2.h"
#include "kvkit_core.h"
#include "kvkit_editbutton.h"

inline bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}
inline std::ostream& operator<<(std::ostream& out, const RECT& r) {
    return out << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

namespace editbutton_test {

inline RECT RectInParent(HWND window) {
    RECT rect = {};
    GetWindowRect(window, &rect);
    MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

inline std::wstring TextOf(HWND window, bool tooltip = false) {
    wchar_t text[256] = L"";
    if (tooltip) Kx2_GetToolTip(window, text, 256);
    else GetWindowTextW(window, text, 256);
    return text;
}

inline UINT_PTR Prop(HWND window, const wchar_t* name) {
    return reinterpret_cast<UINT_PTR>(GetPropW(window, name));
}

// A mouse button pressed at a client point of `window` and released at `release` (default: the
// same point), through the system's input queue.
inline void Click(HWND window, POINT press, bool right = false, const POINT* release = nullptr) {
    POINT down = press, up = release ? *release : press;
    ClientToScreen(window, &down);
    ClientToScreen(window, &up);
    INPUT inputs[3] = {};
    for (INPUT& input : inputs) input.type = INPUT_MOUSE;
    inputs[0].mi.dwFlags = right ? MOUSEEVENTF_RIGHTDOWN : MOUSEEVENTF_LEFTDOWN;
    inputs[1].mi.dwFlags = MOUSEEVENTF_MOVE;
    inputs[2].mi.dwFlags = right ? MOUSEEVENTF_RIGHTUP : MOUSEEVENTF_LEFTUP;
    SetCursorPos(down.x, down.y);
    SendInput(1, &inputs[0], sizeof(INPUT));
    kvtest::PumpFor(20);
    SetCursorPos(up.x, up.y);
    SendInput(2, &inputs[1], sizeof(INPUT));
    kvtest::PumpFor(20);
}

inline void ClickCentre(HWND window, bool right = false) {
    RECT client;
    GetClientRect(window, &client);
    Click(window, POINT{client.right / 2, client.bottom / 2}, right);
}

// Modifiers down, the key down and up, modifiers up, typed into the focused window.
inline void PressKeys(std::initializer_list<WORD> modifiers, WORD key) {
    std::vector<INPUT> inputs;
    auto add = [&inputs](WORD vk, DWORD flags) {
        INPUT input = {};
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = vk;
        input.ki.dwFlags = flags;
        inputs.push_back(input);
    };
    for (WORD modifier : modifiers) add(modifier, 0);
    add(key, 0);
    add(key, KEYEVENTF_KEYUP);
    for (WORD modifier : modifiers) add(modifier, KEYEVENTF_KEYUP);
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
    kvtest::PumpFor(20);
}

// The last `message` (with `key` as wParam, if given) that the recorder saw, and how many.
inline kvtest::RecordedMessage LastOf(const kvtest::MessageRecorder& recorder, UINT message,
                                      int* count = nullptr, WPARAM key = ~0u) {
    kvtest::RecordedMessage last = {};
    if (count) *count = 0;
    for (const kvtest::RecordedMessage& m : recorder.messages())
        if (m.message == message && (key == ~0u || m.wParam == key)) {
            last = m;
            if (count) ++*count;
        }
    return last;
}

inline COLORREF PixelOf(HWND window, int x, int y) {
    UpdateWindow(window);
    HDC dc = GetDC(window);
    COLORREF colour = GetPixel(dc, x, y);
    ReleaseDC(window, dc);
    return colour;
}

// A red square in the middle of a light grey (transparent) field.
inline HBITMAP RedSquare(int size = 16) {
    return kvtest::MakeBitmap(size, size, [size](int x, int y) {
        bool inside = x >= size / 4 && x < size - size / 4 && y >= size / 4 && y < size - size / 4;
        return inside ? RGB(255, 0, 0) : RGB(192, 192, 192);
    });
}

// A host window with an edit field at (50, 40), 200 x 24, identifier 100.
class EditButtonTest : public kvtest::KvTest {
protected:
    static constexpr int kEditId = 100, kEditLeft = 50, kEditTop = 40, kEditWidth = 200;

    void SetUp() override {
        host = std::make_unique<kvtest::HostWindow>(420, 200);
        SetForegroundWindow(*host);
        edit = addEdit(kEditId, kEditTop);
    }
    void TearDown() override {
        host.reset();
        Kx1SetFormatCheck(nullptr);
        KvTest::TearDown();
    }

    HWND addEdit(int id, int top, const wchar_t* text = L"") {
        return host->createChild(L"Edit", text, WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL, kEditLeft, top,
                                 kEditWidth, 24, id);
    }
    static RECT editRect(int width = kEditWidth) { return RECT{kEditLeft, kEditTop, kEditLeft + width, kEditTop + 24}; }
    // The notification codes of the WM_COMMAND messages from `id` that the host window received.
    std::vector<WPARAM> commandsFrom(int id) const {
        std::vector<WPARAM> codes;
        for (const kvtest::RecordedMessage& m : host->messages(WM_COMMAND))
            if (LOWORD(m.wParam) == id) codes.push_back(HIWORD(m.wParam));
        return codes;
    }

    std::unique_ptr<kvtest::HostWindow> host;
    HWND edit = nullptr;
};

}  // namespace editbutton_test
