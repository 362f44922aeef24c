#include "platform/Platform.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <knownfolders.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <vector>

namespace Lumora::Platform {

namespace {

// UTF-8 to the wide strings of the W calls. Bytes that are not UTF-8 give an
// empty string, which every call then refuses: better a clear failure than a
// file of a mangled name.
std::wstring widen(const std::string& s) {
    if (s.empty()) {
        return {};
    }
    const int n = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, s.data(),
                                      static_cast<int>(s.size()), nullptr, 0);
    if (n <= 0) {
        return {};
    }
    std::wstring w(static_cast<size_t>(n), L'\0');
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, s.data(), static_cast<int>(s.size()),
                        w.data(), n);
    return w;
}

std::string narrow(const wchar_t* w, size_t length) {
    if (length == 0) {
        return {};
    }
    const int n =
        WideCharToMultiByte(CP_UTF8, 0, w, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
    if (n <= 0) {
        return {};
    }
    std::string s(static_cast<size_t>(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, w, static_cast<int>(length), s.data(), n, nullptr, nullptr);
    return s;
}

// Closes a handle on every way out.
struct Handle {
    HANDLE h;
    ~Handle() {
        if (h != INVALID_HANDLE_VALUE) {
            CloseHandle(h);
        }
    }
    bool ok() const { return h != INVALID_HANDLE_VALUE; }
};

// A file on a disk, not a pipe, a console or a device.
bool isDiskFile(HANDLE h) {
    BY_HANDLE_FILE_INFORMATION info{};
    return GetFileType(h) == FILE_TYPE_DISK && GetFileInformationByHandle(h, &info) &&
           !(info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY);
}

HANDLE openForWriting(const std::string& path, DWORD disposition, DWORD flags) {
    const std::wstring w = widen(path);
    if (w.empty()) {
        return INVALID_HANDLE_VALUE;
    }
    return CreateFileW(w.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                       disposition, FILE_ATTRIBUTE_NORMAL | flags, nullptr);
}

bool writeAll(HANDLE h, std::string_view bytes) {
    size_t done = 0;
    while (done < bytes.size()) {
        const DWORD chunk = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 1u << 20));
        DWORD written = 0;
        if (!WriteFile(h, bytes.data() + done, chunk, &written, nullptr) || written == 0) {
            return false;
        }
        done += written;
    }
    return true;
}

} // namespace

char pathSeparator() {
    return '\\';
}

std::string userConfigFolder() {
    PWSTR path = nullptr;
    std::string folder;
    if (SHGetKnownFolderPath(FOLDERID_RoamingAppData, KF_FLAG_DEFAULT, nullptr, &path) == S_OK) {
        folder = narrow(path, wcslen(path));
    }
    CoTaskMemFree(path);
    return folder;
}

bool makeFolders(const std::string& path) {
    if (path.empty()) {
        return false;
    }
    std::string partial;
    for (size_t i = 0; i <= path.size(); ++i) {
        // Skip the drive ("C:") and the server and share of a network path
        // ("\\server\share"), which cannot be created.
        if (i == path.size() || ((path[i] == '\\' || path[i] == '/') && i > 0 &&
                                 path[i - 1] != ':' && path[i - 1] != '\\' && path[i - 1] != '/')) {
            partial.assign(path, 0, i);
            const std::wstring w = widen(partial);
            if (w.empty()) {
                return false;
            }
            if (!CreateDirectoryW(w.c_str(), nullptr)) {
                const DWORD error = GetLastError();
                if (error != ERROR_ALREADY_EXISTS && error != ERROR_ACCESS_DENIED &&
                    error != ERROR_INVALID_NAME && error != ERROR_BAD_NETPATH &&
                    error != ERROR_BAD_NET_NAME) {
                    return false;
                }
            }
        }
    }
    const DWORD attrs = GetFileAttributesW(widen(path).c_str());
    return attrs != INVALID_FILE_ATTRIBUTES && (attrs & FILE_ATTRIBUTE_DIRECTORY);
}

bool replaceFile(const std::string& from, const std::string& to) {
    const std::wstring a = widen(from);
    const std::wstring b = widen(to);
    return !a.empty() && !b.empty() &&
           MoveFileExW(a.c_str(), b.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED |
                           MOVEFILE_WRITE_THROUGH) != 0;
}

bool syncFile(const std::string& path) {
    Handle file{openForWriting(path, OPEN_EXISTING, 0)};
    return file.ok() && FlushFileBuffers(file.h) != 0;
}

// NTFS journals directory entries, and the renames are written through.
bool syncFolder(const std::string&) {
    return true;
}

bool fileExists(const std::string& path) {
    const std::wstring w = widen(path);
    return !w.empty() && GetFileAttributesW(w.c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool localTime(std::time_t t, std::tm& out) {
    return localtime_s(&out, &t) == 0;
}

bool fileReadable(const std::string& path) {
    const std::wstring w = widen(path);
    if (w.empty()) {
        return false;
    }
    Handle file{CreateFileW(w.c_str(), GENERIC_READ,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    return file.ok() && isDiskFile(file.h);
}

std::optional<std::string> readFile(const std::string& path, size_t maxBytes) {
    const std::wstring w = widen(path);
    if (w.empty()) {
        return std::nullopt;
    }
    Handle file{CreateFileW(w.c_str(), GENERIC_READ,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                            OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)};
    LARGE_INTEGER size{};
    if (!file.ok() || !isDiskFile(file.h) || !GetFileSizeEx(file.h, &size) ||
        static_cast<unsigned long long>(size.QuadPart) > maxBytes) {
        return std::nullopt;
    }
    std::string bytes(static_cast<size_t>(size.QuadPart), '\0');
    size_t done = 0;
    while (done < bytes.size()) {
        DWORD got = 0;
        if (!ReadFile(file.h, bytes.data() + done, static_cast<DWORD>(bytes.size() - done), &got,
                      nullptr)) {
            return std::nullopt;
        }
        if (got == 0) {
            bytes.resize(done); // shrank while being read
            break;
        }
        done += got;
    }
    return bytes;
}

bool writeFile(const std::string& path, std::string_view bytes) {
    Handle file{openForWriting(path, OPEN_ALWAYS, 0)};
    if (!file.ok() || !isDiskFile(file.h) || !SetEndOfFile(file.h)) {
        return false;
    }
    return writeAll(file.h, bytes);
}

bool writeNewFile(const std::string& path, std::string_view bytes) {
    if (!removeFile(path)) {
        return false;
    }
    Handle file{openForWriting(path, CREATE_NEW, FILE_FLAG_OPEN_REPARSE_POINT)};
    return file.ok() && isDiskFile(file.h) && writeAll(file.h, bytes);
}

bool removeFile(const std::string& path) {
    const std::wstring w = widen(path);
    if (w.empty()) {
        return false;
    }
    if (DeleteFileW(w.c_str())) {
        return true;
    }
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

std::vector<std::string> commandLine(int argc, char** argv) {
    int count = 0;
    LPWSTR* wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!wide) {
        return std::vector<std::string>(argv, argv + argc);
    }
    std::vector<std::string> words;
    for (int i = 0; i < count; ++i) {
        words.push_back(narrow(wide[i], wcslen(wide[i])));
    }
    LocalFree(wide);
    return words;
}

std::optional<std::string> environment(const char* name) {
    // The narrow getenv gives the value in the system's code page.
    const wchar_t* value = _wgetenv(widen(name).c_str());
    if (!value || !*value) {
        return std::nullopt;
    }
    return narrow(value, wcslen(value));
}

void useUtf8Console() {
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
}

std::string folderOfBinaryContaining(const void* address) {
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            static_cast<LPCWSTR>(address), &module)) {
        return {};
    }
    // Long paths: grow the buffer until the name fits.
    std::vector<wchar_t> path(MAX_PATH);
    DWORD n = 0;
    for (;;) {
        n = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (n == 0) {
            return {};
        }
        if (n < path.size()) {
            break;
        }
        if (path.size() >= 32768) {
            return {};
        }
        path.resize(path.size() * 2);
    }
    const std::string file = narrow(path.data(), n);
    const auto slash = file.find_last_of("\\/");
    return slash == std::string::npos ? std::string(".") : file.substr(0, slash);
}

DynamicLibrary::~DynamicLibrary() {
    close();
}

bool DynamicLibrary::open(const std::string& path) {
    close();
    const std::wstring w = widen(path);
    if (w.empty()) {
        return false;
    }
    // A library given with its folder finds the libraries it needs beside it.
    const bool inFolder = path.find_first_of("\\/") != std::string::npos;
    handle_ = reinterpret_cast<void*>(
        inFolder ? LoadLibraryExW(w.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)
                 : LoadLibraryW(w.c_str()));
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
