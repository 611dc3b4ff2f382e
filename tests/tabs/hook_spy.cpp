#include "hook_spy.h"

namespace {

HookSpy* g_spy;
FARPROC g_realSetHook;
FARPROC g_realUnhook;

// The import address table slot of kvkit.dll that holds `function`, or null.
FARPROC* importSlot(FARPROC function) {
    auto* base = reinterpret_cast<BYTE*>(GetModuleHandleW(L"kvkit.dll"));
    if (!base) return nullptr;
    auto* nt = reinterpret_cast<IMAGE_NT_HEADERS32*>(base + reinterpret_cast<IMAGE_DOS_HEADER*>(base)->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* module = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; module->Name; ++module) {
        auto* slot = reinterpret_cast<FARPROC*>(base + module->FirstThunk);
        for (; *slot; ++slot)
            if (*slot == function) return slot;
    }
    return nullptr;
}

void patch(FARPROC from, FARPROC to) {
    FARPROC* slot = importSlot(from);
    if (!slot) return;
    DWORD protection;
    VirtualProtect(slot, sizeof(*slot), PAGE_READWRITE, &protection);
    *slot = to;
    VirtualProtect(slot, sizeof(*slot), protection, &protection);
}

}  // namespace

HookSpy::HookSpy() {
    HMODULE user32 = GetModuleHandleW(L"user32.dll");
    g_realSetHook = GetProcAddress(user32, "SetWindowsHookExW");
    g_realUnhook = GetProcAddress(user32, "UnhookWindowsHookEx");
    g_spy = this;
    patch(g_realSetHook, reinterpret_cast<FARPROC>(setHook));
    patch(g_realUnhook, reinterpret_cast<FARPROC>(unhook));
}

HookSpy::~HookSpy() {
    patch(reinterpret_cast<FARPROC>(setHook), g_realSetHook);
    patch(reinterpret_cast<FARPROC>(unhook), g_realUnhook);
    g_spy = nullptr;
}

int HookSpy::live(int type) const {
    int count = 0;
    for (const Hook& hook : hooks_) count += !hook.removed && (type == 0 || hook.type == type);
    return count;
}

int HookSpy::installed(int type) const {
    int count = 0;
    for (const Hook& hook : hooks_) count += type == 0 || hook.type == type;
    return count;
}

HHOOK HookSpy::last(int type) const {
    for (auto hook = hooks_.rbegin(); hook != hooks_.rend(); ++hook)
        if (hook->type == type) return hook->handle;
    return nullptr;
}

HHOOK WINAPI HookSpy::setHook(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    HHOOK handle = reinterpret_cast<decltype(&SetWindowsHookExW)>(g_realSetHook)(type, procedure, module, thread);
    if (g_spy && handle) g_spy->hooks_.push_back({type, handle, false});
    return handle;
}

BOOL WINAPI HookSpy::unhook(HHOOK handle) {
    BOOL removed = reinterpret_cast<decltype(&UnhookWindowsHookEx)>(g_realUnhook)(handle);
    if (g_spy && removed)
        for (Hook& hook : g_spy->hooks_)
            if (hook.handle == handle) hook.removed = true;
    return removed;
}
