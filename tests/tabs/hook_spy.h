// Watches the thread hooks that kvkit.dll installs and removes: while a spy lives, the library's
// imports of SetWindowsHookExW and UnhookWindowsHookEx go through recording stand-ins that call
// the real functions.
#pragma once
#include <windows.h>
#include <vector>

class HookSpy {
public:
    struct Hook {
        int type;
        HHOOK handle;
        bool removed;
    };
    HookSpy();
    ~HookSpy();
    HookSpy(const HookSpy&) = delete;
    HookSpy& operator=(const HookSpy&) = delete;

    int installed() const { return static_cast<int>(hooks_.size()); }
    int live(int type = 0) const;  // not removed yet, of that type (0: any)
    HHOOK last(int type) const;    // the handle of the last one of that type

private:
    static HHOOK WINAPI setHook(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread);
    static BOOL WINAPI unhook(HHOOK hook);
    std::vector<Hook> hooks_;
};
