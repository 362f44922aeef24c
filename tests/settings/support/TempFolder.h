#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace Lumora::Testing {

// A fresh folder under the system's temporary folder, removed with its contents.
class TempFolder {
public:
    TempFolder() {
        std::random_device random;
        const auto base = std::filesystem::temp_directory_path();
        for (int attempt = 0; attempt < 100 && path_.empty(); ++attempt) {
            const auto candidate = base / ("lumora-settings-" + std::to_string(random()));
            std::error_code ec;
            if (std::filesystem::create_directory(candidate, ec)) {
                path_ = candidate.string();
            }
        }
    }
    ~TempFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

    static void write(const std::string& path, const std::string& bytes) {
        std::ofstream(path, std::ios::binary) << bytes;
    }
    static std::string read(const std::string& path) {
        std::string bytes;
        if (std::FILE* f = std::fopen(path.c_str(), "rb")) {
            char buf[4096];
            size_t n = 0;
            while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) {
                bytes.append(buf, n);
            }
            std::fclose(f);
        }
        return bytes;
    }
    static bool exists(const std::string& path) { return std::filesystem::exists(path); }

private:
    std::string path_;
};

} // namespace Lumora::Testing
