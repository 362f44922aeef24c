#include "FxTestSupport.h"

#include "WavFile.h"

#include <algorithm>
#include <filesystem>

using namespace Lumora;

namespace FxTest {

Signal impulse(int frames, int at, float height) {
    Signal x(static_cast<size_t>(frames), 0.0f);
    x[static_cast<size_t>(at)] = height;
    return x;
}

double rms(const Signal& x, int from, int to) {
    if (to < 0) {
        to = static_cast<int>(x.size());
    }
    double sum = 0.0;
    for (int i = from; i < to; ++i) {
        sum += static_cast<double>(x[i]) * x[i];
    }
    return to > from ? std::sqrt(sum / (to - from)) : 0.0;
}

double rmsDb(const Signal& x, int from, int to) {
    return 20.0 * std::log10(std::max(rms(x, from, to), 1e-12));
}

double zeroCrossingHz(const Signal& x, int from, int to, double rate) {
    double first = -1.0;
    double last = -1.0;
    int crossings = 0;
    for (int i = std::max(from, 1); i < to; ++i) {
        if (x[i - 1] < 0.0f && x[i] >= 0.0f) {
            const double t = (i - 1) + x[i - 1] / static_cast<double>(x[i - 1] - x[i]);
            if (first < 0.0) {
                first = t;
            } else {
                ++crossings;
            }
            last = t;
        }
    }
    return crossings > 0 ? crossings * rate / (last - first) : 0.0;
}

void runInPackets(VoiceFxChain& chain, Audio& audio, int packet) {
    std::vector<float*> pointers(static_cast<size_t>(audio.channels()));
    for (int start = 0; start < audio.frames(); start += packet) {
        const int n = std::min(packet, audio.frames() - start);
        for (int c = 0; c < audio.channels(); ++c) {
            pointers[c] = audio.planes[c].data() + start;
        }
        chain.process(pointers.data(), audio.channels(), n);
    }
}

void setUp(VoiceFxChain& chain, const SoundFxPreset& preset, double rate) {
    chain.prepare(rate, static_cast<int>(rate / 10));
    chain.setParameters(preset);
    chain.setActive(true);
}

SoundFxPreset onlyDelay(float timeMs, float feedback, float wet) {
    SoundFxPreset p;
    p.delay.enabled = true;
    p.delay.timeMs = timeMs;
    p.delay.feedback = feedback;
    p.delay.wetMix = wet;
    return p;
}

Signal speech(double seconds) {
    std::vector<std::filesystem::path> files;
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator("/usr/share/sounds/alsa", ec)) {
        if (entry.path().extension() == ".wav") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    Signal all;
    for (const auto& file : files) {
        WavData wav;
        std::string error;
        if (readWav(file.string(), wav, error) && wav.sampleRate == 48000 && wav.frames() > 0) {
            all.insert(all.end(), wav.planes[0].begin(), wav.planes[0].end());
        }
    }
    if (all.empty()) {
        return all;
    }
    const auto wanted = static_cast<size_t>(seconds * kRate);
    Signal looped;
    looped.reserve(wanted + all.size());
    while (looped.size() < wanted) {
        looped.insert(looped.end(), all.begin(), all.end());
    }
    looped.resize(wanted);
    return looped;
}

} // namespace FxTest
