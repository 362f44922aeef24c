// The cleaning chain's cost, stage by stage and whole: stereo at 48 kHz in the
// host's usual packet lengths. Each stage runs inside the chain with only
// itself switched on, so every figure includes the chain's own frame (levels,
// hand-over), which BM_ChainFrameOnly shows alone.
//
// Counters: ns_per_sample is the time per sample of one channel; core_pct is
// the share of one core the stage needs in real time (time per packet divided
// by the packet's duration), in percent.
#include "dsp/VoiceChain.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

using Lumora::EffectPreset;
using Lumora::VoiceChain;

constexpr double kRate = 48000.0;

// A voice-like test signal: a few harmonics under a syllable-rate envelope on a
// noise floor, so the gate opens and closes and the compressor works.
std::vector<float> voiceLike(int n, unsigned seed) {
    std::vector<float> x(static_cast<size_t>(n));
    unsigned state = seed;
    for (int i = 0; i < n; ++i) {
        state = state * 1664525u + 1013904223u;
        const float noise = 0.003f * (static_cast<float>(state >> 8) / 8388608.0f - 1.0f);
        const double t = i / kRate;
        const double envelope = std::max(0.0, std::sin(2.0 * 3.14159265 * 3.0 * t));
        double voice = 0.0;
        for (int h = 1; h <= 6; ++h) {
            voice += std::sin(2.0 * 3.14159265 * 140.0 * h * t) / h;
        }
        x[i] = static_cast<float>(0.25 * envelope * voice) + noise;
    }
    return x;
}

EffectPreset base() {
    EffectPreset p;
    p.active = true;
    return p;
}

void enableSpectral(EffectPreset& p) {
    p.spectral.enabled = true;
    p.spectral.profileDb.fill(-60.0f);
}
void enableGate(EffectPreset& p) {
    p.gate.enabled = true;
}
void enableEq(EffectPreset& p) {
    p.eq.enabled = true;
    p.eq.lowCutEnabled = true;
    p.eq.highShelfEnabled = true;
    p.eq.highShelfGainDb = 3.0f;
    p.eq.highCutEnabled = true;
    for (int b = 0; b < Lumora::kNotchBandCount; ++b) {
        p.eq.notchBands[b] = {true, 150.0f * (b + 1) * (b + 1), 3.0f - 1.5f * b, 2.0f};
    }
}
void enableCompressor(EffectPreset& p) {
    p.comp.enabled = true;
    p.comp.thresholdDb = -24.0f;
    p.comp.ratio = 3.0f;
    p.comp.kneeDb = 6.0f;
}
void enableLimiter(EffectPreset& p) {
    p.limiter.enabled = true;
}

// Runs the chain over ten seconds of stereo audio, packet after packet. With
// `dragged`, every packet brings a new record (every corner, gain and
// threshold a little elsewhere, as a knob being dragged), so the glides run
// all the time.
void runChain(benchmark::State& state, const EffectPreset& p, float scale = 1.0f,
              bool dragged = false) {
    const int frames = static_cast<int>(state.range(0));
    const int total = 480000;
    std::vector<float> left = voiceLike(total, 1), right = voiceLike(total, 2);
    for (size_t i = 0; i < left.size(); ++i) {
        left[i] *= scale;
        right[i] *= scale;
    }
    std::vector<float> work(static_cast<size_t>(frames) * 2);
    auto chain = std::make_unique<VoiceChain>();
    chain->prepare(kRate, frames);
    chain->setParameters(p);
    EffectPreset moved = p;
    moved.inputGainDb += 1.0f;
    moved.outputGainDb -= 1.0f;
    moved.eq.lowCutHz *= 1.02f;
    moved.eq.highShelfGainDb -= 0.5f;
    moved.eq.highCutHz *= 0.98f;
    for (Lumora::NotchBand& band : moved.eq.notchBands) {
        band.centerHz *= 1.02f;
        band.gainDb += 0.5f;
    }
    moved.comp.thresholdDb -= 1.0f;
    moved.limiter.ceilingDb -= 0.5f;
    int offset = 0;
    bool odd = false;
    for (auto _ : state) {
        if (dragged) {
            chain->setParameters((odd = !odd) ? moved : p);
        }
        if (offset + frames > total) {
            offset = 0;
        }
        // Fresh input every packet, as the host gives it (the copy is part of
        // the measured time and is negligible next to the chain).
        std::copy(left.begin() + offset, left.begin() + offset + frames, work.begin());
        std::copy(right.begin() + offset, right.begin() + offset + frames, work.begin() + frames);
        float* planes[2] = {work.data(), work.data() + frames};
        chain->process(planes, 2, frames);
        benchmark::DoNotOptimize(work.data());
        offset += frames;
    }
    using benchmark::Counter;
    state.counters["ns_per_sample"] =
        Counter(2.0 * frames * 1e-9, Counter::kIsIterationInvariantRate | Counter::kInvert);
    state.counters["core_pct"] =
        Counter(frames / kRate / 100.0, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void BM_ChainFrameOnly(benchmark::State& state) {
    runChain(state, base());
}

void BM_Spectral(benchmark::State& state) {
    EffectPreset p = base();
    enableSpectral(p);
    runChain(state, p);
}

void BM_Gate(benchmark::State& state) {
    EffectPreset p = base();
    enableGate(p);
    runChain(state, p);
}

void BM_EqualiserAllFilters(benchmark::State& state) {
    EffectPreset p = base();
    enableEq(p);
    runChain(state, p);
}

void BM_Compressor(benchmark::State& state) {
    EffectPreset p = base();
    enableCompressor(p);
    runChain(state, p);
}

void BM_Limiter(benchmark::State& state) {
    EffectPreset p = base();
    enableLimiter(p);
    runChain(state, p);
}

EffectPreset wholeChain() {
    EffectPreset p = base();
    enableSpectral(p);
    enableGate(p);
    enableEq(p);
    enableCompressor(p);
    enableLimiter(p);
    p.inputGainDb = 2.0f;
    p.outputGainDb = -1.0f;
    return p;
}

// Everything but neural suppression (an external model with its own cost).
void BM_WholeChainWithoutNeural(benchmark::State& state) {
    runChain(state, wholeChain());
}

// The whole chain while every knob is being dragged: the worst case of the glides.
void BM_WholeChainDragged(benchmark::State& state) {
    runChain(state, wholeChain(), 1.0f, true);
}

// The same on input so quiet that filter states fall towards the denormal range.
void BM_WholeChainDenormalInput(benchmark::State& state) {
    runChain(state, wholeChain(), 1e-37f);
}

} // namespace

BENCHMARK(BM_ChainFrameOnly)->Arg(480)->Arg(1024);
BENCHMARK(BM_Spectral)->Arg(480)->Arg(1024);
BENCHMARK(BM_Gate)->Arg(480)->Arg(1024);
BENCHMARK(BM_EqualiserAllFilters)->Arg(480)->Arg(1024);
BENCHMARK(BM_Compressor)->Arg(480)->Arg(1024);
BENCHMARK(BM_Limiter)->Arg(480)->Arg(1024);
BENCHMARK(BM_WholeChainWithoutNeural)->Arg(480)->Arg(1024);
BENCHMARK(BM_WholeChainDragged)->Arg(480)->Arg(1024);
BENCHMARK(BM_WholeChainDenormalInput)->Arg(480)->Arg(1024);
