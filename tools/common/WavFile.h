#pragma once

#include <string>
#include <vector>

namespace Lumora {

// Planar float audio read from or written to a sound file (WAV and whatever
// else libsndfile reads), for the tools and tests.
struct WavData {
    int sampleRate = 0;
    std::vector<std::vector<float>> planes; // one vector per channel, equal lengths

    int channels() const { return static_cast<int>(planes.size()); }
    int frames() const { return planes.empty() ? 0 : static_cast<int>(planes[0].size()); }
};

// Reads a whole file; on failure returns false and puts a one-line reason in `error`.
bool readWav(const std::string& path, WavData& out, std::string& error);

// Writes 32-bit float WAV (or 16-bit PCM when pcm16 is set).
bool writeWav(const std::string& path, const WavData& data, std::string& error,
              bool pcm16 = false);

} // namespace Lumora
