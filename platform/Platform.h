#pragma once

#include <ctime>
#include <string>

// The few operating-system services Lumora needs, with one implementation for
// Windows (the shipping target) and one for POSIX systems (development and CI).
namespace Lumora::Platform {

// The separator used when joining a folder and a file name.
char pathSeparator();

// The per-user folder where applications keep their settings: the roaming
// application-data folder on Windows, $XDG_CONFIG_HOME (else ~/.config) on POSIX.
// Empty when it cannot be determined.
std::string userConfigFolder();

// Creates the folder and any missing parents; true when it exists afterwards.
bool makeFolders(const std::string& path);

// Replaces `to` with `from` in one step (MoveFileExW / rename).
bool replaceFile(const std::string& from, const std::string& to);

// Flushes a file's contents, or a folder's entries, to the disk. Where the system
// has no such notion the call succeeds without doing anything.
bool syncFile(const std::string& path);
bool syncFolder(const std::string& path);

bool fileExists(const std::string& path);
bool fileReadable(const std::string& path);

// Converts a calendar time to the local time zone (localtime_r / localtime_s);
// false when the system cannot.
bool localTime(std::time_t t, std::tm& out);

// The folder holding the binary (module or executable) that contains `address`.
// Empty when it cannot be found.
std::string folderOfBinaryContaining(const void* address);

// A shared library opened at run time (LoadLibrary / dlopen).
class DynamicLibrary {
public:
    DynamicLibrary() = default;
    ~DynamicLibrary();
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    // Opens the library by path (or by bare name, searching the system's path).
    bool open(const std::string& path);
    void close();
    bool isOpen() const { return handle_ != nullptr; }
    void* symbol(const char* name) const;

    // The file name a library has on this system: "name.dll" or "libname.so".
    static std::string platformFileName(const std::string& baseName);

private:
    void* handle_ = nullptr;
};

} // namespace Lumora::Platform
