#include "settings/FileSystem.h"

#include "platform/Platform.h"

namespace Lumora {

namespace {

class RealFileSystem final : public FileSystem {
public:
    std::optional<std::string> readFile(const std::string& path) override {
        return Platform::readFile(path, kMaxFileBytes);
    }
    bool writeFile(const std::string& path, std::string_view bytes) override {
        return Platform::writeFile(path, bytes);
    }
    bool writeNewFile(const std::string& path, std::string_view bytes) override {
        return Platform::writeNewFile(path, bytes);
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
