#pragma once

#include "settings/FileSystem.h"

#include <string>
#include <vector>

namespace Lumora::Testing {

// Wraps a file system and interferes with one step of the changing operations
// (makeFolders, writeFile, syncFile, syncFolder, renameFile), counted from 0:
// - Fail: that step reports failure; a write leaves the first half of its bytes
//   behind, as a full disk would.
// - Crash: that step and every later one do nothing and report failure, as if the
//   process had died right before it.
// Reads always pass through. `steps` records the operations seen, for messages.
class FaultyFileSystem : public FileSystem {
public:
    enum class Mode { None, Fail, Crash };

    explicit FaultyFileSystem(FileSystem& inner) : inner_(inner) {}

    void arm(Mode mode, int step) {
        mode_ = mode;
        target_ = step;
        count_ = 0;
        steps.clear();
    }

    std::optional<std::string> readFile(const std::string& path) override {
        return inner_.readFile(path);
    }
    bool exists(const std::string& path) override { return inner_.exists(path); }

    bool writeFile(const std::string& path, std::string_view bytes) override {
        if (!proceed("write " + path)) {
            if (failedHere_) {
                inner_.writeFile(path, bytes.substr(0, bytes.size() / 2));
            }
            return false;
        }
        return inner_.writeFile(path, bytes);
    }
    bool renameFile(const std::string& from, const std::string& to) override {
        return proceed("rename " + from + " -> " + to) && inner_.renameFile(from, to);
    }
    bool makeFolders(const std::string& path) override {
        return proceed("mkdir " + path) && inner_.makeFolders(path);
    }
    bool syncFile(const std::string& path) override {
        return proceed("fsync " + path) && inner_.syncFile(path);
    }
    bool syncFolder(const std::string& path) override {
        return proceed("fsync folder " + path) && inner_.syncFolder(path);
    }

    int stepCount() const { return count_; }
    std::vector<std::string> steps;

private:
    bool proceed(const std::string& what) {
        const int step = count_++;
        steps.push_back(what);
        failedHere_ = false;
        if (mode_ == Mode::Fail && step == target_) {
            failedHere_ = true;
            return false;
        }
        return !(mode_ == Mode::Crash && step >= target_);
    }

    FileSystem& inner_;
    Mode mode_ = Mode::None;
    int target_ = -1;
    int count_ = 0;
    bool failedHere_ = false;
};

} // namespace Lumora::Testing
