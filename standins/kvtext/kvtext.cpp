// Stand-in for the suite's text library: counted allocations with failure injection, bounded
// strings, collation comparison, dialog-text wrappers and the process-wide session.
#define KVTEXT_BUILDING
#include "kvtext.h"
#include <string.h>

namespace {

// Every block carries a header so that frees of foreign or already-freed pointers are caught.
struct BlockHeader {
    DWORD magic;
    int bytes;
    DWORD reserved[2];  // keeps the payload 16-byte aligned
};
static_assert(sizeof(BlockHeader) == 16, "block header size");

const DWORD kLiveMagic = 0x4B56544Du;  // "KVTM"
const DWORD kFreedMagic = 0xDEADBEEFu;

volatile LONG g_liveAllocations = 0;
volatile LONG g_failCountdown = 0;
KVSESSION g_session;

// True when the failure injection says this allocation must fail.
bool injectFailure() {
    if (g_failCountdown <= 0) return false;
    return InterlockedDecrement(&g_failCountdown) == 0;
}

BlockHeader* headerOf(void* block) {
    BlockHeader* header = static_cast<BlockHeader*>(block) - 1;
    if (header->magic != kLiveMagic) {
        // A pointer that did not come from here, or one freed twice: stop loudly.
        OutputDebugStringW(L"kvtext: invalid or freed block\n");
        DebugBreak();
    }
    return header;
}

void* allocate(int bytes, bool zeroed) {
    if (bytes < 0 || injectFailure()) return nullptr;
    auto* header = static_cast<BlockHeader*>(
        HeapAlloc(GetProcessHeap(), zeroed ? HEAP_ZERO_MEMORY : 0, sizeof(BlockHeader) + bytes));
    if (!header) return nullptr;
    header->magic = kLiveMagic;
    header->bytes = bytes;
    if (!zeroed) memset(header + 1, 0xCD, bytes);
    InterlockedIncrement(&g_liveAllocations);
    return header + 1;
}

int boundedLength(const wchar_t* text, int length) {
    if (length < 0) return lstrlenW(text);
    int n = 0;
    while (n < length && text[n]) ++n;
    return n;
}

int signOf(int compareResult) {
    // CompareStringW answers 1, 2 or 3 for less, equal and greater; 0 on failure.
    if (compareResult == 0) return 0;
    return compareResult - 2;
}

}  // namespace

void* WINAPI GetMemory(int bytes) { return allocate(bytes, false); }

void* WINAPI Mres(int bytes) { return allocate(bytes, true); }

void* WINAPI ReallocMemory(void* block, int bytes) {
    if (!block) return GetMemory(bytes);
    BlockHeader* header = headerOf(block);
    if (bytes < 0 || injectFailure()) return nullptr;
    auto* moved = static_cast<BlockHeader*>(
        HeapReAlloc(GetProcessHeap(), 0, header, sizeof(BlockHeader) + bytes));
    if (!moved) return nullptr;
    moved->bytes = bytes;
    return moved + 1;
}

void* WINAPI AddMemory(void* block, int usedBytes, const void* data, int bytes) {
    if (usedBytes < 0 || bytes < 0) return nullptr;
    void* grown = ReallocMemory(block, usedBytes + bytes);
    if (!grown) return nullptr;
    if (data && bytes) memcpy(static_cast<char*>(grown) + usedBytes, data, bytes);
    return grown;
}

void* WINAPI AddMemoryMax(void* block, int* usedBytes, int* capacityBytes, const void* data,
                          int bytes, int growBytes) {
    if (!usedBytes || !capacityBytes || bytes < 0) return nullptr;
    if (!block) *usedBytes = *capacityBytes = 0;
    int needed = *usedBytes + bytes;
    if (!block || needed > *capacityBytes) {
        int step = growBytes > 0 ? growBytes : 1024;
        int capacity = *capacityBytes;
        do capacity += step; while (capacity < needed);
        void* grown = ReallocMemory(block, capacity);
        if (!grown) return nullptr;
        block = grown;
        *capacityBytes = capacity;
    }
    if (data && bytes) memcpy(static_cast<char*>(block) + *usedBytes, data, bytes);
    *usedBytes = needed;
    return block;
}

void WINAPI FreeMemory(void* block) {
    if (!block) return;
    BlockHeader* header = headerOf(block);
    header->magic = kFreedMagic;
    HeapFree(GetProcessHeap(), 0, header);
    InterlockedDecrement(&g_liveAllocations);
}

int WINAPI KvText_LiveAllocations(void) { return g_liveAllocations; }

void WINAPI KvText_FailAllocation(int nth) { InterlockedExchange(&g_failCountdown, nth > 0 ? nth : 0); }

wchar_t* WINAPI kv_strcpy(wchar_t* destination, const wchar_t* source, int capacity) {
    if (!destination || capacity <= 0) return destination;
    int n = 0;
    if (source)
        for (; n < capacity - 1 && source[n]; ++n) destination[n] = source[n];
    destination[n] = 0;
    return destination;
}

wchar_t* WINAPI kv_strcat(wchar_t* destination, const wchar_t* source, int capacity) {
    if (!destination || capacity <= 0) return destination;
    int used = boundedLength(destination, capacity - 1);
    kv_strcpy(destination + used, source, capacity - used);
    return destination;
}

int WINAPI StringRemoveChar(wchar_t* text, wchar_t character) {
    if (!text) return 0;
    wchar_t* out = text;
    int removed = 0;
    for (const wchar_t* in = text; *in; ++in) {
        if (*in == character) ++removed;
        else *out++ = *in;
    }
    *out = 0;
    return removed;
}

int WINAPI kv_CompareString(LCID locale, DWORD flags, const wchar_t* a, int lengthA,
                            const wchar_t* b, int lengthB) {
    DWORD compareFlags = (flags & (4 | NORM_IGNORECASE)) ? NORM_IGNORECASE : 0;
    return signOf(CompareStringW(locale ? locale : LOCALE_USER_DEFAULT, compareFlags, a,
                                 boundedLength(a, lengthA), b, boundedLength(b, lengthB)));
}

int WINAPI StringCmpEx(LCID collation, const wchar_t* a, const wchar_t* b, DWORD option) {
    return StringCmpLenEx(collation, a, b, option, -1);
}

int WINAPI StringCmpLenEx(LCID collation, const wchar_t* a, const wchar_t* b, DWORD option,
                          int length) {
    if (!a) a = L"";
    if (!b) b = L"";
    DWORD compareFlags = option ? option : NORM_IGNORECASE;
    return signOf(CompareStringW(collation ? collation : LOCALE_USER_DEFAULT, compareFlags, a,
                                 boundedLength(a, length), b, boundedLength(b, length)));
}

int WINAPI KV_64BitAligned_GetDlgItemText(HWND dialog, int id, wchar_t* text, int capacity) {
    return GetDlgItemTextW(dialog, id, text, capacity);
}

BOOL WINAPI KV_64BitAligned_SetDlgItemText(HWND dialog, int id, const wchar_t* text) {
    return SetDlgItemTextW(dialog, id, text);
}

KVSESSION* WINAPI GlobalSession(void) {
    if (g_session.size == 0) g_session.size = sizeof(KVSESSION);
    return &g_session;
}
