#include "settings/SettingsStore.h"

#include "platform/Platform.h"

#include <cstdlib>

namespace Lumora {

SettingsStore::SettingsStore(std::string folder) : folder_(std::move(folder)) {
    if (folder_.empty()) {
        if (const char* over = std::getenv("LUMORA_SETTINGS_DIR"); over && *over) {
            folder_ = over;
        } else {
            const std::string base = Platform::userConfigFolder();
            folder_ = base.empty() ? std::string(".")
                                   : base + Platform::pathSeparator() + "Lumora";
        }
    }
}

} // namespace Lumora
