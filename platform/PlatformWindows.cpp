#include "platform/Platform.h"

#define WIN32_LEAN_AND_MEAN
#include <shlobj.h>
#include <windows.h>

#include <string>

namespace Lumora::Platform {

namespace {

std::wstring widen(const std::string& s) {
    if (s.empty()) {
        return {};
    }
    const int n = MultiByteToWideChar(CP_ACP, 0, s.data(), static_cast<int>(s.size()), nullptr, 0);
    std::wstring w(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(CP_ACP, 0, s.data(), static_cast<int>(s.size()), w.data(), n);
    return w;
}

} // namespace

char pathSeparator() {
    return '\\';
}

std::string userConfigFolder() {
    char path[MAX_PATH] = {};
    if (SHGetFolderPathA(nullptr, CSIDL_APPDATA, nullptr, 0, path) != S_OK) {
        return {};
    }
    return path;
}

bool makeFolders(const std::string& path) {
    if (path.empty()) {
        return false;
    }
    std::string partial;
    for (size_t i = 0; i <= path.size(); ++i) {
        if (i == path.size() ||
            ((path[i] == '\\' || path[i] == '/') && i > 0 && path[i - 1] != ':')) {
            partial.assign(path, 0, i);
            if (!CreateDirectoryA(partial.c_str(), nullptr) &&
                GetLastError() != ERROR_ALREADY_EXISTS) {
                return false;
            }
        }
    }
    const DWORD attrs = GetFileAttributesA(path.c_str());
    return attrs != INVALID_FILE_ATTRIBUTES && (attrs & FILE_ATTRIBUTE_DIRECTORY);
}

bool replaceFile(const std::string& from, const std::string& to) {
    return MoveFileExW(widen(from).c_str(), widen(to).c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED) != 0;
}

bool syncFile(const std::string& path) {
    HANDLE h = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) {
        return false;
    }
    const bool ok = FlushFileBuffers(h) != 0;
    CloseHandle(h);
    return ok;
}

// NTFS journals directory entries; MoveFileEx is as durable as it gets there.
bool syncFolder(const std::string&) {
    return true;
}

bool fileExists(const std::string& path) {
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool localTime(std::time_t t, std::tm& out) {
    return localtime_s(&out, &t) == 0;
}

bool fileReadable(const std::string& path) {
    HANDLE h = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) {
        return false;
    }
    CloseHandle(h);
    return true;
}

std::string folderOfBinaryContaining(const void* address) {
    HMODULE module = nullptr;
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            static_cast<LPCSTR>(address), &module)) {
        return {};
    }
    char path[MAX_PATH] = {};
    const DWORD n = GetModuleFileNameA(module, path, MAX_PATH);
    if (n == 0 || n == MAX_PATH) {
        return {};
    }
    std::string file(path, n);
    const auto slash = file.find_last_of("\\/");
    return slash == std::string::npos ? std::string(".") : file.substr(0, slash);
}

DynamicLibrary::~DynamicLibrary() {
    close();
}

bool DynamicLibrary::open(const std::string& path) {
    close();
    handle_ = reinterpret_cast<void*>(LoadLibraryW(widen(path).c_str()));
    return handle_ != nullptr;
}

void DynamicLibrary::close() {
    if (handle_) {
        FreeLibrary(static_cast<HMODULE>(handle_));
        handle_ = nullptr;
    }
}

void* DynamicLibrary::symbol(const char* name) const {
    return handle_ ? reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), name))
                   : nullptr;
}

std::string DynamicLibrary::platformFileName(const std::string& baseName) {
    return baseName + ".dll";
}

} // namespace Lumora::Platform
