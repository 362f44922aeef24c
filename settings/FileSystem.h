#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Lumora {

// The file operations the settings store performs, behind one small interface so
// that tests can fail or stop any single step of a save. Production code uses
// FileSystem::real(), which goes straight to the platform layer.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    // The whole file in binary mode; empty when it cannot be opened or is larger
    // than kMaxFileBytes (no settings file of ours comes near that).
    virtual std::optional<std::string> readFile(const std::string& path) = 0;
    // Truncates and writes all bytes in binary mode; true when every byte went out.
    virtual bool writeFile(const std::string& path, std::string_view bytes) = 0;
    // Writes a fresh regular file of our own: whatever stood at the path (a link,
    // a FIFO, a stale file) is removed first, never followed or waited on.
    virtual bool writeNewFile(const std::string& path, std::string_view bytes) {
        return writeFile(path, bytes);
    }
    // Replaces `to` with `from` in one step.
    virtual bool renameFile(const std::string& from, const std::string& to) = 0;
    // Creates the folder and any missing parents; true when it exists afterwards.
    virtual bool makeFolders(const std::string& path) = 0;
    // Flush a file's bytes, or a folder's entries, to the disk.
    virtual bool syncFile(const std::string& path) = 0;
    virtual bool syncFolder(const std::string& path) = 0;
    virtual bool exists(const std::string& path) = 0;

    static constexpr size_t kMaxFileBytes = 16u << 20;

    // The operating system's files. Shared and stateless.
    static FileSystem& real();
};

} // namespace Lumora
