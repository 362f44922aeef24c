#pragma once

#include <cstddef>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The few operating-system services Lumora needs, with one implementation for
// Windows (the shipping target) and one for POSIX systems (development and CI).
// Every path is UTF-8, whatever the system's code page: Windows user folders and
// preset files are often named in Japanese, and a narrow Windows call would turn
// such a name into question marks. The Windows side converts at its boundary and
// calls the wide functions only.
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
// A regular file that can be opened for reading.
bool fileReadable(const std::string& path);

// The whole of a regular file; nothing when it is missing, is not a regular file
// (opening a FIFO or a device could block for ever), is larger than `maxBytes`
// or cannot be read.
std::optional<std::string> readFile(const std::string& path, size_t maxBytes);
// Creates or truncates a regular file and writes every byte; false, without
// blocking, when the path names anything else.
bool writeFile(const std::string& path, std::string_view bytes);
// Writes a new regular file of our own at `path`: whatever non-folder entry is
// there first (a stale file, a link, a FIFO) is removed, never followed, and the
// file is created exclusively, so the bytes cannot land anywhere else.
bool writeNewFile(const std::string& path, std::string_view bytes);
// Removes a file or a link (not its target); true when nothing is left there.
bool removeFile(const std::string& path);

// Converts a calendar time to the local time zone (localtime_r / localtime_s);
// false when the system cannot.
bool localTime(std::time_t t, std::tm& out);

// A command-line program's arguments in UTF-8 (on Windows from the wide command
// line: argv holds them in the system's code page, which cannot carry every name).
std::vector<std::string> commandLine(int argc, char** argv);
// Standard input and output carry bytes unchanged (no line-ending translation)
// and the console shows UTF-8 text as such.
void useUtf8Console();

// An environment variable's value in UTF-8; nothing when it is unset or empty.
std::optional<std::string> environment(const char* name);

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
