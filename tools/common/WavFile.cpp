#include "WavFile.h"

#include <sndfile.h>

namespace Lumora {

bool readWav(const std::string& path, WavData& out, std::string& error) {
    SF_INFO info{};
    SNDFILE* f = sf_open(path.c_str(), SFM_READ, &info);
    if (!f) {
        error = "cannot read " + path + ": " + sf_strerror(nullptr);
        return false;
    }
    if (info.channels < 1 || info.samplerate < 1 || info.frames < 0 ||
        info.frames > (1LL << 31) / info.channels) {
        sf_close(f);
        error = "unsupported audio format in " + path;
        return false;
    }
    std::vector<float> interleaved(static_cast<size_t>(info.frames) * info.channels);
    const sf_count_t got = sf_readf_float(f, interleaved.data(), info.frames);
    sf_close(f);
    out.sampleRate = info.samplerate;
    out.planes.assign(static_cast<size_t>(info.channels),
                      std::vector<float>(static_cast<size_t>(got)));
    for (sf_count_t i = 0; i < got; ++i) {
        for (int c = 0; c < info.channels; ++c) {
            out.planes[c][static_cast<size_t>(i)] =
                interleaved[static_cast<size_t>(i) * info.channels + c];
        }
    }
    return true;
}

bool writeWav(const std::string& path, const WavData& data, std::string& error, bool pcm16) {
    SF_INFO info{};
    info.samplerate = data.sampleRate;
    info.channels = data.channels();
    info.format = SF_FORMAT_WAV | (pcm16 ? SF_FORMAT_PCM_16 : SF_FORMAT_FLOAT);
    if (info.channels < 1) {
        error = "no channels to write";
        return false;
    }
    SNDFILE* f = sf_open(path.c_str(), SFM_WRITE, &info);
    if (!f) {
        error = "cannot write " + path + ": " + sf_strerror(nullptr);
        return false;
    }
    const int frames = data.frames();
    std::vector<float> interleaved(static_cast<size_t>(frames) * info.channels);
    for (int i = 0; i < frames; ++i) {
        for (int c = 0; c < info.channels; ++c) {
            interleaved[static_cast<size_t>(i) * info.channels + c] = data.planes[c][i];
        }
    }
    const sf_count_t put = sf_writef_float(f, interleaved.data(), frames);
    sf_close(f);
    if (put != frames) {
        error = "short write to " + path;
        return false;
    }
    return true;
}

} // namespace Lumora
