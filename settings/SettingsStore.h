#pragma once

#include <string>

namespace Lumora {

// Load-change-save access to the settings file.
class SettingsStore {
public:
    // An empty folder means the user's default settings folder.
    explicit SettingsStore(std::string folder);

    const std::string& folder() const { return folder_; }

private:
    std::string folder_;
};

} // namespace Lumora
