#pragma once

// The recorded voices that come with alsa-utils (a speaker naming each position,
// and one noise), the real speech the sound tests listen to.

#include "WavFile.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace Lumora::Testing {

inline const std::string kAlsaSounds = "/usr/share/sounds/alsa/";

// One sample's first channel, by name without ".wav"; empty when the file is
// missing or not at 48 kHz.
inline std::vector<float> alsaSound(const std::string& name) {
    WavData wav;
    std::string error;
    if (!readWav(kAlsaSounds + name + ".wav", wav, error) || wav.sampleRate != 48000 ||
        wav.channels() == 0) {
        return {};
    }
    return wav.planes[0];
}

// Every sample's name, sorted.
inline std::vector<std::string> alsaSoundNames() {
    std::vector<std::string> names;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator(kAlsaSounds, ec)) {
        if (entry.path().extension() == ".wav") {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace Lumora::Testing
