#include "test_dialog.h"
#include <ostream>

namespace sizedlg_test {

namespace {

// Builds a DLGTEMPLATE with its items in a WORD buffer (items start on DWORD boundaries).
class TemplateWriter {
public:
    void dword(DWORD value) {
        words_.push_back(LOWORD(value));
        words_.push_back(HIWORD(value));
    }
    void word(WORD value) { words_.push_back(value); }
    void text(const wchar_t* value) {
        for (; *value; ++value) words_.push_back(*value);
        words_.push_back(0);
    }
    void alignToDword() {
        if (words_.size() % 2) words_.push_back(0);
    }
    const DLGTEMPLATE* data() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

private:
    std::vector<WORD> words_;
};

}  // namespace

TestDialog::TestDialog(const std::vector<TemplateItem>& items, DWORD style, HWND parent) {
    TemplateWriter writer;
    writer.dword(style);
    writer.dword(0);
    writer.word(static_cast<WORD>(items.size()));
    writer.word(10);  // position and size in dialog units; resized in pixels below
    writer.word(10);
    writer.word(200);
    writer.word(150);
    writer.word(0);  // no menu
    writer.word(0);  // standard dialog class
    writer.text(L"kvkit resizable dialog test");
    for (const TemplateItem& item : items) {
        writer.alignToDword();
        writer.dword(item.style | WS_CHILD | WS_VISIBLE);
        writer.dword(0);
        writer.word(5);
        writer.word(5);
        writer.word(40);
        writer.word(12);
        writer.word(static_cast<WORD>(item.id));
        writer.text(item.className);
        writer.text(item.text);
        writer.word(0);  // no creation data
    }
    window_ = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), writer.data(), parent, dialogProc,
                                         reinterpret_cast<LPARAM>(this));
    if (window_ && !(style & WS_CHILD)) setClientSize(kDesignWidth, kDesignHeight);
}

TestDialog::~TestDialog() {
    if (IsWindow(window_)) DestroyWindow(window_);
}

INT_PTR CALLBACK TestDialog::dialogProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<TestDialog*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    switch (message) {
    case WM_INITDIALOG:
        SetWindowLongPtrW(window, GWLP_USERDATA, lParam);
        return FALSE;
    case WM_SIZE:
        if (self && self->forward_) {
            ++self->sizeMessages_;
            KxSizeDlg(window, static_cast<UINT>(wParam), lParam);
        }
        return FALSE;
    case WM_SIZING:
        if (self && self->forward_) return KxSizingDlg(window, static_cast<UINT>(wParam), lParam);
        return FALSE;
    }
    return FALSE;
}

void TestDialog::setClientSize(int width, int height) {
    SIZE client = clientSize(), frame = windowSize();
    SetWindowPos(window_, nullptr, 0, 0, frame.cx - client.cx + width, frame.cy - client.cy + height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

SIZE TestDialog::clientSize() const {
    RECT client;
    GetClientRect(window_, &client);
    return SIZE{client.right, client.bottom};
}

SIZE TestDialog::windowSize() const {
    RECT frame;
    GetWindowRect(window_, &frame);
    return SIZE{frame.right - frame.left, frame.bottom - frame.top};
}

void TestDialog::place(int id, int left, int top, int right, int bottom) {
    MoveWindow(item(id), left, top, right - left, bottom - top, FALSE);
}

RECT TestDialog::rectOf(HWND child) {
    RECT rect;
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

}  // namespace sizedlg_test

bool operator==(const RECT& a, const RECT& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

std::ostream& operator<<(std::ostream& out, const RECT& rect) {
    return out << "(" << rect.left << ", " << rect.top << ", " << rect.right << ", " << rect.bottom
               << ")";
}
