#pragma once
// Signals and measurements shared by the stage tests.

#include "dsp/Biquad.h"
#include "dsp/FilterDesign.h"
#include "dsp/Parameters.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace Lumora::TestSignals {

constexpr double kPi = 3.14159265358979323846;

inline std::vector<float> sine(double hz, double sampleRate, int n, float amplitude,
                               double phase = 0.0) {
    std::vector<float> x(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        x[i] = amplitude * static_cast<float>(std::sin(2.0 * kPi * hz * i / sampleRate + phase));
    }
    return x;
}

// Amplitude of the component at hz in x[start, start + count), by correlation
// with a sine and a cosine (a single-bin DFT); exact for whole cycles, close
// for long spans.
inline double amplitudeAt(const std::vector<float>& x, int start, int count, double hz,
                          double sampleRate) {
    double s = 0.0, c = 0.0;
    for (int i = start; i < start + count; ++i) {
        const double w = 2.0 * kPi * hz * i / sampleRate;
        s += x[i] * std::sin(w);
        c += x[i] * std::cos(w);
    }
    return 2.0 * std::sqrt(s * s + c * c) / count;
}

inline double toDb(double ratio) {
    return 20.0 * std::log10(ratio);
}

// Deterministic white noise in [-amplitude, amplitude].
inline std::vector<float> noise(int n, float amplitude, unsigned seed = 1) {
    std::vector<float> x(static_cast<size_t>(n));
    unsigned state = seed;
    for (float& v : x) {
        state = state * 1664525u + 1013904223u;
        v = amplitude * (static_cast<float>(state >> 8) / 8388608.0f - 1.0f);
    }
    return x;
}

// Equal bit for bit (a -0 for a 0 counts as a change).
inline bool bitEqual(const std::vector<float>& a, const std::vector<float>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

inline bool allFinite(const std::vector<float>& x) {
    for (float v : x) {
        if (!std::isfinite(v)) {
            return false;
        }
    }
    return true;
}

// The largest step between neighbouring samples of x within [from, to): a
// click stands out as a step the steady sound never makes.
inline float largestStep(const std::vector<float>& x, size_t from, size_t to) {
    float step = 0.0f;
    for (size_t i = from + 1; i < to && i < x.size(); ++i) {
        step = std::max(step, std::fabs(x[i] - x[i - 1]));
    }
    return step;
}

inline float peak(const std::vector<float>& x, size_t from = 0, size_t to = SIZE_MAX) {
    float top = 0.0f;
    for (size_t i = from; i < to && i < x.size(); ++i) {
        top = std::max(top, std::fabs(x[i]));
    }
    return top;
}

// The energy above 6 kHz (where a click is heard against a voice) in 5 ms
// windows of x[from, to), as a power per window.
inline std::vector<double> highBandWindows(const std::vector<float>& x, size_t from, size_t to) {
    PreciseBiquad highPass;
    highPass.setCoefficients(FilterDesign::lowCut(6000.0, 48000.0));
    std::vector<double> windows((to - from) / 240, 0.0);
    for (size_t i = from; i < from + windows.size() * 240; ++i) {
        const double v = highPass.processSample(static_cast<double>(x[i]));
        windows[(i - from) / 240] += v * v;
    }
    return windows;
}

// The longest run of samples in x[from, to) that are silent (below -80 dBFS).
inline int longestSilence(const std::vector<float>& x, size_t from, size_t to) {
    int run = 0, longest = 0;
    for (size_t i = from; i < to && i < x.size(); ++i) {
        run = std::fabs(x[i]) < 1e-4f ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

// What a knob swept across its range while the voice plays does to it,
// against the same voice through the chain held still at settings along the
// range (its steady sound): the largest step between samples over the largest
// steady one (a click); the highest peak over the highest steady one, in dB (a
// spike); the most energy above 6 kHz in 5 ms over the steady sound's most in
// the same 5 ms, in dB (a burst); and the longest silence, in samples, beyond
// the steady sound's longest (a gap). Many settings, because a steady sound
// may be loudest inside the range (a band passing a tone). And packet by
// packet, the largest step over the largest of the sound held at the settings
// on either side of that packet: where a knob makes the sound quiet, a click
// cannot hide under the steps of its loud end.
struct SweepFindings {
    float stepRatio;
    float spikeDb;
    float burstDb;
    int extraSilence;
    float localStepRatio;
};

// `input` plays through chains made by `make()` (prepared, with `p` handed
// over) in packets of `packet`: half a second at the range's minimum, two
// seconds moving to its maximum a packet at a time on the knob's scale (as a
// mouse drag gives), then at the maximum. The sweep and the 30 ms after it
// are measured.
template <typename Make, typename Preset, typename Set>
SweepFindings sweepKnob(const Make& make, const Preset& p, const Set& set, const Parameter& range,
                        int packet, const std::vector<float>& input) {
    constexpr int kSteadySettings = 33;
    const int second = 48000 / packet;
    const int before = second / 2, sweep = 2 * second;
    const int packets = static_cast<int>(input.size()) / packet;
    const auto start = static_cast<size_t>(packet * before);
    const auto end = static_cast<size_t>(packet * (before + sweep) + 1440);
    auto valueAt = [&range](float t) {
        return range.logarithmic ? range.minimum * std::pow(range.maximum / range.minimum, t)
                                 : range.minimum + (range.maximum - range.minimum) * t;
    };
    auto render = [&](auto positionAt) {
        std::vector<float> x(input.begin(), input.begin() + packets * packet);
        auto chain = make();
        Preset q = p;
        for (int k = 0; k < packets; ++k) {
            set(q, valueAt(positionAt(k)));
            chain->setParameters(q);
            float* planes[1] = {x.data() + k * packet};
            chain->process(planes, 1, packet);
        }
        return x;
    };
    const std::vector<float> swept =
        render([&](int k) { return static_cast<float>(std::clamp(k - before, 0, sweep)) / sweep; });
    std::vector<std::vector<float>> held;
    float step = 0.0f, top = 0.0f;
    int silence = 0;
    // Below -70 dBFS above 6 kHz nothing is heard as a burst, however far it is
    // above the steady sound's even quieter pauses.
    constexpr double kInaudible = 240.0 * 1e-7;
    std::vector<double> band(highBandWindows(swept, start, end).size(), kInaudible);
    for (int i = 0; i < kSteadySettings; ++i) {
        const float t = static_cast<float>(i) / (kSteadySettings - 1);
        held.push_back(render([t](int) { return t; }));
        const std::vector<float>& steady = held.back();
        step = std::max(step, largestStep(steady, start, end));
        top = std::max(top, peak(steady, start, end));
        silence = std::max(silence, longestSilence(steady, start, end));
        // A shifter's voice wanders a few ms about its timeline as the pitch
        // moves (it splices whole periods): within 10 ms is the same moment.
        const std::vector<double> windows = highBandWindows(steady, start, end);
        for (size_t w = 0; w < band.size(); ++w) {
            for (size_t v = w > 2 ? w - 2 : 0; v <= w + 2 && v < band.size(); ++v) {
                band[w] = std::max(band[w], windows[v]);
            }
        }
    }
    double burst = 0.0;
    const std::vector<double> windows = highBandWindows(swept, start, end);
    for (size_t w = 0; w < band.size(); ++w) {
        burst = std::max(burst, 10.0 * std::log10(std::max(windows[w], 1e-12) / band[w]));
    }
    // Steps under -80 dBFS are nobody's click.
    constexpr float kInaudibleStep = 1e-4f;
    float local = 0.0f;
    for (int k = before; k <= before + sweep; ++k) {
        const float t0 = static_cast<float>(std::clamp(k - 1 - before, 0, sweep)) / sweep;
        const float t1 = static_cast<float>(std::clamp(k - before, 0, sweep)) / sweep;
        const auto first = static_cast<size_t>(std::floor(t0 * (kSteadySettings - 1)));
        const auto last = static_cast<size_t>(std::ceil(t1 * (kSteadySettings - 1)));
        const size_t a = static_cast<size_t>(k) * packet, b = a + packet + 1440;
        float reference = kInaudibleStep;
        for (size_t i = first; i <= last; ++i) {
            reference = std::max(reference, largestStep(held[i], a, b));
        }
        local = std::max(local, std::max(largestStep(swept, a, b), kInaudibleStep) / reference);
    }
    return {largestStep(swept, start, end) / step,
            static_cast<float>(toDb(peak(swept, start, end) / top)), static_cast<float>(burst),
            longestSilence(swept, start, end) - silence, local};
}

// A knob turned across its whole range in two seconds, a new value each
// packet as a mouse drag gives, on a steady tone and on `voice`, in packets of
// 480 and 1024: no step between samples larger than 1.5 times the steady
// sound's largest, no peak more than 1 dB over its highest, no 5 ms above
// 6 kHz more than 6 dB over its most there, no silence 2 ms longer than its
// longest; and, `packetByPacket`, no step more than twice the largest of the
// knob held on either side of that packet. (A knob whose sound depends on when
// it was set, a read position or an LFO phase moved with it, is at another
// point of its cycle at a nearby setting: only the range-wide limits apply.)
template <typename Make, typename Preset, typename Set>
void expectSmoothSweep(const Make& make, const Preset& p, const Set& set, const Parameter& range,
                       const std::vector<float>& voice, bool packetByPacket = true) {
    ASSERT_FALSE(voice.empty()) << "no recorded speech";
    const std::vector<float> tone = sine(233.0, 48000.0, static_cast<int>(voice.size()), 0.1f);
    for (const int packet : {480, 1024}) {
        for (const std::vector<float>* input : {&tone, &voice}) {
            SCOPED_TRACE(std::string(input == &tone ? "tone" : "speech") + ", packets of " +
                         std::to_string(packet));
            const SweepFindings found = sweepKnob(make, p, set, range, packet, *input);
            EXPECT_LE(found.stepRatio, 1.5f);
            EXPECT_LE(found.spikeDb, 1.0f);
            EXPECT_LE(found.burstDb, 6.0f);
            EXPECT_LE(found.extraSilence, 96);
            if (packetByPacket) {
                EXPECT_LE(found.localStepRatio, 2.0f);
            }
        }
    }
}

// One knob of a sweep test: its name, its range in the parameter table, and how
// it is set (switching its stage on too).
template <typename Preset>
struct SweptKnob {
    const char* name;
    const Parameter* parameter;
    std::function<void(Preset&, float)> set;
    // Its sound depends on when it was set (a read position, an LFO phase, a
    // shifter's splices): no packet-by-packet comparison.
    bool timed = false;
};

// Test names and failures show the knob's name, not its bytes.
template <typename Preset>
void PrintTo(const SweptKnob<Preset>& knob, std::ostream* out) {
    *out << knob.name;
}

template <typename Preset>
std::string sweptKnobName(const ::testing::TestParamInfo<SweptKnob<Preset>>& knob) {
    std::string name = knob.param.name;
    std::replace(name.begin(), name.end(), '.', '_');
    return name;
}

// Sets one field of one stage's settings, switching the stage on.
template <typename Preset, typename Group>
std::function<void(Preset&, float)> field(Group Preset::*group, float Group::*knob) {
    return [group, knob](Preset& p, float v) {
        (p.*group).enabled = true;
        (p.*group).*knob = v;
    };
}

} // namespace Lumora::TestSignals
