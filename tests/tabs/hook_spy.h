// Watches the thread hooks that kvkit.dll installs and removes: while a spy lives, the library's
// imports of SetWindowsHookExW and UnhookWindowsHookEx go through recording stand-ins that call
// the real functions.
#pragma once
#include <windows.h>
#include <vector>

class HookSpy {
public:
    struct Hook {
        int type;       // WH_*
        HHOOK handle;
        bool removed;   // UnhookWindowsHookEx succeeded on it
    };

    HookSpy();
    ~HookSpy();
    HookSpy(const HookSpy&) = delete;
    HookSpy& operator=(const HookSpy&) = delete;

    const std::vector<Hook>& hooks() const { return hooks_; }
    // Hooks installed and not yet removed, of one type or of any (type 0).
    int live(int type = 0) const;
    int installed(int type = 0) const;
    // The handle of the last hook of that type installed.
    HHOOK last(int type) const;

private:
    static HHOOK WINAPI setHook(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread);
    static BOOL WINAPI unhook(HHOOK hook);
    std::vector<Hook> hooks_;
};
