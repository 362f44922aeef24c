#include "settings/FileSystem.h"

#include "platform/Platform.h"

#include <fstream>
#include <ios>

namespace Lumora {

namespace {

class RealFileSystem final : public FileSystem {
public:
    std::optional<std::string> readFile(const std::string& path) override {
        // Only regular files: opening a FIFO or a device for reading could block.
        if (!Platform::fileReadable(path)) {
            return std::nullopt;
        }
        std::ifstream in(path, std::ios::binary);
        if (!in) {
            return std::nullopt;
        }
        in.seekg(0, std::ios::end);
        const std::streamoff length = in.tellg();
        if (length < 0 || static_cast<unsigned long long>(length) > kMaxFileBytes) {
            return std::nullopt;
        }
        in.seekg(0, std::ios::beg);
        std::string bytes(static_cast<size_t>(length), '\0');
        if (!bytes.empty() && !in.read(bytes.data(), length)) {
            return std::nullopt;
        }
        return bytes;
    }

    bool writeFile(const std::string& path, std::string_view bytes) override {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        if (!out) {
            return false;
        }
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.close();
        return static_cast<bool>(out);
    }

    bool renameFile(const std::string& from, const std::string& to) override {
        return Platform::replaceFile(from, to);
    }

    bool makeFolders(const std::string& path) override { return Platform::makeFolders(path); }
    bool syncFile(const std::string& path) override { return Platform::syncFile(path); }
    bool syncFolder(const std::string& path) override { return Platform::syncFolder(path); }
    bool exists(const std::string& path) override { return Platform::fileExists(path); }
};

} // namespace

FileSystem& FileSystem::real() {
    static RealFileSystem fs;
    return fs;
}

} // namespace Lumora
