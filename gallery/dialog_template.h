// An in-memory dialog template, for gallery pages that build their forms in code.
#pragma once
#include <windows.h>
#include <vector>

class DialogTemplate {
public:
    // A dialog of `items` controls in dialog units, with the shell dialog font.
    DialogTemplate(DWORD style, int items, int width, int height, const wchar_t* title = L"") {
        dword(style | DS_SETFONT);
        dword(0);
        words_.push_back(static_cast<WORD>(items));
        for (int value : {0, 0, width, height}) words_.push_back(static_cast<WORD>(value));
        words_.push_back(0);  // no menu
        words_.push_back(0);  // the standard dialog class
        text(title);
        words_.push_back(8);  // point size and face of DS_SETFONT
        text(L"MS Shell Dlg");
    }
    // Adds a visible child control.
    void item(const wchar_t* className, const wchar_t* title, DWORD style, int x, int y, int cx,
              int cy, int id) {
        if (words_.size() % 2) words_.push_back(0);
        dword(style | WS_CHILD | WS_VISIBLE);
        dword(0);
        for (int value : {x, y, cx, cy}) words_.push_back(static_cast<WORD>(value));
        words_.push_back(static_cast<WORD>(id));
        text(className);
        text(title);
        words_.push_back(0);  // no creation data
    }
    const DLGTEMPLATE* data() const { return reinterpret_cast<const DLGTEMPLATE*>(words_.data()); }

private:
    void dword(DWORD value) {
        words_.push_back(LOWORD(value));
        words_.push_back(HIWORD(value));
    }
    void text(const wchar_t* value) {
        for (; *value; ++value) words_.push_back(*value);
        words_.push_back(0);
    }
    std::vector<WORD> words_;
};
