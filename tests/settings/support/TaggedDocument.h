#pragma once

#include "settings/AppSettings.h"
#include "settings/BuiltInPresets.h"

#include <string>

namespace Lumora::Testing {

// A settings document told apart by its lastPresetName, already seeded with the
// built-ins so that loading it writes nothing.
inline AppSettings taggedDocument(const std::string& tag) {
    AppSettings s;
    s.lastPresetName = tag;
    seedBuiltIns(s, "2024-01-01 00:00:00");
    return s;
}

} // namespace Lumora::Testing
