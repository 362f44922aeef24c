#pragma once

#include "settings/FileSystem.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace Lumora::Testing {

// Files in memory, with the durability of a disk that promises nothing without a
// flush: a file's bytes survive a power loss only up to its last syncFile, and the
// folder's entries (creations, renames) only up to its last syncFolder. powerLoss()
// throws away everything else, so a test can check what a save leaves on the disk
// when the power fails after any of its steps.
class MemoryFileSystem : public FileSystem {
public:
    std::optional<std::string> readFile(const std::string& path) override {
        const auto it = entries_.find(path);
        if (it == entries_.end()) {
            return std::nullopt;
        }
        return it->second->bytes;
    }

    bool writeFile(const std::string& path, std::string_view bytes) override {
        auto& node = entries_[path];
        if (!node) {
            node = std::make_shared<Node>(); // a new file: nothing of it is durable yet
        }
        node->bytes.assign(bytes.data(), bytes.size());
        return true;
    }

    bool renameFile(const std::string& from, const std::string& to) override {
        const auto it = entries_.find(from);
        if (it == entries_.end()) {
            return false;
        }
        std::shared_ptr<Node> node = it->second;
        entries_.erase(it);
        entries_[to] = std::move(node);
        return true;
    }

    bool makeFolders(const std::string& path) override {
        folders_.insert(path);
        return true;
    }

    bool syncFile(const std::string& path) override {
        const auto it = entries_.find(path);
        if (it == entries_.end()) {
            return false;
        }
        it->second->durable = it->second->bytes;
        return true;
    }

    bool syncFolder(const std::string&) override {
        durableEntries_ = entries_;
        return true;
    }

    bool exists(const std::string& path) override {
        return entries_.count(path) != 0 || folders_.count(path) != 0;
    }

    // Sets a file's bytes and makes them durable at once (test set-up).
    void put(const std::string& path, std::string_view bytes) {
        writeFile(path, bytes);
        syncFile(path);
        syncFolder(path);
    }

    void remove(const std::string& path) { entries_.erase(path); }

    // The power fails: only what was flushed remains.
    void powerLoss() {
        entries_ = durableEntries_;
        for (auto& [path, node] : entries_) {
            node->bytes = node->durable;
        }
    }

private:
    struct Node {
        std::string bytes;
        std::string durable;
    };
    std::map<std::string, std::shared_ptr<Node>> entries_;
    std::map<std::string, std::shared_ptr<Node>> durableEntries_;
    std::set<std::string> folders_;
};

} // namespace Lumora::Testing
