#include "hook_spy.h"

namespace {

HookSpy* g_spy;
FARPROC g_realSetHook = GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetWindowsHookExW");
FARPROC g_realUnhook = GetProcAddress(GetModuleHandleW(L"user32.dll"), "UnhookWindowsHookEx");

// Points kvkit.dll's import slot that holds `from` at `to`.
void redirectImport(FARPROC from, FARPROC to) {
    auto* base = reinterpret_cast<BYTE*>(GetModuleHandleW(L"kvkit.dll"));
    auto* nt = reinterpret_cast<IMAGE_NT_HEADERS32*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    DWORD imports = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* module = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports); module->Name; ++module)
        for (auto* slot = reinterpret_cast<FARPROC*>(base + module->FirstThunk); *slot; ++slot) {
            if (*slot != from) continue;
            DWORD protection;
            VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
            *slot = to;
            VirtualProtect(slot, sizeof(*slot), protection, &protection);
        }
}

}  // namespace

HookSpy::HookSpy() {
    g_spy = this;
    redirectImport(g_realSetHook, reinterpret_cast<FARPROC>(setHook));
    redirectImport(g_realUnhook, reinterpret_cast<FARPROC>(unhook));
}

HookSpy::~HookSpy() {
    redirectImport(reinterpret_cast<FARPROC>(setHook), g_realSetHook);
    redirectImport(reinterpret_cast<FARPROC>(unhook), g_realUnhook);
    g_spy = nullptr;
}

int HookSpy::live(int type) const {
    int count = 0;
    for (const Hook& hook : hooks_) count += !hook.removed && (type == 0 || hook.type == type);
    return count;
}

HHOOK HookSpy::last(int type) const {
    for (auto hook = hooks_.rbegin(); hook != hooks_.rend(); ++hook)
        if (hook->type == type) return hook->handle;
    return nullptr;
}

HHOOK WINAPI HookSpy::setHook(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    HHOOK handle = reinterpret_cast<decltype(&SetWindowsHookExW)>(g_realSetHook)(type, procedure, module, thread);
    if (handle) g_spy->hooks_.push_back({type, handle, false});
    return handle;
}

BOOL WINAPI HookSpy::unhook(HHOOK handle) {
    BOOL removed = reinterpret_cast<decltype(&UnhookWindowsHookEx)>(g_realUnhook)(handle);
    for (Hook& hook : g_spy->hooks_) hook.removed |= removed && hook.handle == handle;
    return removed;
}
