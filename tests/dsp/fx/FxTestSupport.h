#pragma once

// Shared helpers of the voice-effects tests: signals, packets, measurements.
#include "dsp/DspTestSignals.h"
#include "dsp/fx/VoiceFxChain.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace FxTest {

constexpr double kRate = 48000.0;
using Lumora::TestSignals::allFinite;
using Lumora::TestSignals::bitEqual;
using Lumora::TestSignals::kPi;
using Lumora::TestSignals::peak;

using Signal = std::vector<float>;

// Planar audio of several channels with the pointer array the chain takes.
struct Audio {
    std::vector<Signal> planes;
    std::vector<float*> pointers;

    Audio(int channels, int frames) : planes(static_cast<size_t>(channels), Signal(frames, 0.0f)) {
        for (auto& p : planes) {
            pointers.push_back(p.data());
        }
    }
    explicit Audio(std::vector<Signal> signals) : planes(std::move(signals)) {
        for (auto& p : planes) {
            pointers.push_back(p.data());
        }
    }
    Audio(const Audio& other) : Audio(other.planes) {}
    Audio& operator=(const Audio&) = delete;

    int channels() const { return static_cast<int>(planes.size()); }
    int frames() const { return planes.empty() ? 0 : static_cast<int>(planes[0].size()); }
    float* const* data() { return pointers.data(); }
};

inline Signal sine(double hz, int frames, float amplitude = 0.5f, double rate = kRate) {
    return Lumora::TestSignals::sine(hz, rate, frames, amplitude);
}
Signal impulse(int frames, int at = 0, float height = 1.0f);

double rms(const Signal& x, int from = 0, int to = -1);
double rmsDb(const Signal& x, int from = 0, int to = -1);
// Frequency by counting rising zero crossings (interpolated) over [from, to).
double zeroCrossingHz(const Signal& x, int from, int to, double rate = kRate);

// Runs a chain (the effects' or the cleaning one) over the whole audio in
// packets of `packet` frames.
template <typename Chain>
void runInPackets(Chain& chain, Audio& audio, int packet) {
    std::vector<float*> pointers(static_cast<size_t>(audio.channels()));
    for (int start = 0; start < audio.frames(); start += packet) {
        const int n = std::min(packet, audio.frames() - start);
        for (int c = 0; c < audio.channels(); ++c) {
            pointers[c] = audio.planes[c].data() + start;
        }
        chain.process(pointers.data(), audio.channels(), n);
    }
}

// A chain prepared at `rate`, switched on, with the record handed over.
void setUp(Lumora::VoiceFxChain& chain, const Lumora::SoundFxPreset& preset, double rate = kRate);

// A preset with only the delay on, order 3 first (the others' codes left as
// they are); and so on for each effect.
Lumora::SoundFxPreset onlyDelay(float timeMs, float feedback, float wet);

// Every knob of the effects, with its range in the parameter table and how it
// is set (switching its effect on), as the knob sweeps and the bad-settings
// tests turn them.
std::vector<Lumora::TestSignals::SweptKnob<Lumora::SoundFxPreset>> knobs();

// The recorded speech of the system's sound samples, back to back, looped to
// at least `seconds`; mono at 48 kHz. Empty when the files are missing.
Signal speech(double seconds);

} // namespace FxTest
