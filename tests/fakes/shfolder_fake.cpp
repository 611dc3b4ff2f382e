// A stand-in "ShFolder.dll" for the folder-path tests: forwards to the shell's SHGetFolderPathW,
// except for folder 0x7E, which answers S_FALSE as the shell does for a folder that does not exist.
#include <windows.h>
#include <shlobj.h>

extern "C" HRESULT WINAPI SHGetFolderPathW(HWND owner, int folder, HANDLE token, DWORD flags,
                                           LPWSTR path);

extern "C" HRESULT WINAPI FakeGetFolderPath(HWND owner, int folder, HANDLE token, DWORD flags,
                                            LPWSTR path) {
    if (folder == 0x7E) {
        lstrcpyW(path, L"C:\\missing");
        return S_FALSE;
    }
    return SHGetFolderPathW(owner, folder, token, flags, path);
}
