// Cost of each voice effect and of the whole voice-effects chain, stereo at
// 48 kHz in packets of 480 and 1024 frames, and the pitch shifter's latency.
//
// Counters: ns_per_frame is processing time per frame (one sample on each of
// the two channels); core_pct is the share of one core the effect takes while
// audio flows in real time (time spent / audio time × 100). Both are derived
// from the benchmark's CPU time.
#include "dsp/fx/PitchShifterLayer.h"
#include "dsp/fx/VoiceFxChain.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

using namespace Lumora;

namespace {

constexpr double kRate = 48000.0;

// A voice-like test signal: a 140 Hz buzz with harmonics, its loudness moving
// like syllables, and a little noise.
std::vector<float> voiceLike(int frames, double offset) {
    std::vector<float> x(static_cast<size_t>(frames));
    uint32_t seed = 12345u + static_cast<uint32_t>(offset * 1000.0);
    for (int i = 0; i < frames; ++i) {
        const double t = (i + offset) / kRate;
        double v = 0.0;
        for (int h = 1; h <= 8; ++h) {
            v += std::sin(2.0 * M_PI * 140.0 * h * t) / h;
        }
        const double syllable = 0.5 + 0.5 * std::sin(2.0 * M_PI * 3.0 * t);
        seed = seed * 1664525u + 1013904223u;
        const double noise = (static_cast<double>(seed >> 8) / 16777216.0 - 0.5) * 0.02;
        x[static_cast<size_t>(i)] = static_cast<float>(0.2 * syllable * v + noise);
    }
    return x;
}

enum Setup { kPitch, kChorus, kFlanger, kTremolo, kRadio, kDelay, kReverb, kEverything };

SoundFxPreset presetFor(Setup setup) {
    SoundFxPreset p;
    const bool all = setup == kEverything;
    if (setup == kPitch || all) {
        // The heaviest pitch setting in use: two layers (four shifters), the
        // formant shelves of both, the formant equaliser and a dry blend.
        p.pitch.enabled = true;
        p.pitch.semitonesA = 5.0f;
        p.pitch.formantShiftA = 0.3f;
        p.pitch.layerBEnabled = true;
        p.pitch.semitonesB = -7.0f;
        p.pitch.formantShiftB = -0.3f;
        p.pitch.wetMix = 0.8f;
        p.pitch.formantEqEnabled = true;
        p.pitch.formantBands[1].gainDb = 4.0f;
        p.pitch.formantBands[3].gainDb = -3.0f;
    }
    if (setup == kChorus || setup == kFlanger || setup == kTremolo || all) {
        p.mod.enabled = true;
        p.mod.type = setup == kFlanger ? kModFlanger : setup == kTremolo ? kModTremolo : kModChorus;
    }
    if (setup == kRadio || all) {
        p.radio.enabled = true;
    }
    if (setup == kDelay || all) {
        p.delay.enabled = true;
    }
    if (setup == kReverb || all) {
        p.reverb.enabled = true;
        p.reverb.lowCutHz = 200.0f;
        p.reverb.duckingAmount = 0.3f;
    }
    return p;
}

void runChain(benchmark::State& state, Setup setup) {
    const int frames = static_cast<int>(state.range(0));
    VoiceFxChain chain;
    chain.prepare(kRate, static_cast<int>(kRate / 10));
    chain.setParameters(presetFor(setup));
    chain.setActive(true);
    // As the filter runs voices: on the constant delay that every voice shares.
    chain.setAligned(true);

    // One second of input cycled packet by packet, copied before each call so
    // the chain always sees fresh audio.
    const int period = static_cast<int>(kRate);
    const std::vector<float> sourceL = voiceLike(period + frames, 0.0);
    const std::vector<float> sourceR = voiceLike(period + frames, 0.37);
    std::vector<float> left(static_cast<size_t>(frames));
    std::vector<float> right(static_cast<size_t>(frames));
    float* planes[2] = {left.data(), right.data()};
    int position = 0;
    auto next = [&] {
        std::copy_n(sourceL.begin() + position, frames, left.begin());
        std::copy_n(sourceR.begin() + position, frames, right.begin());
        position = (position + frames) % period;
    };
    // Warm up: shifters filled, lines and caches in use.
    for (int i = 0; i < period / frames + 1; ++i) {
        next();
        chain.process(planes, 2, frames);
    }
    for (auto _ : state) {
        state.PauseTiming();
        next();
        state.ResumeTiming();
        chain.process(planes, 2, frames);
        benchmark::DoNotOptimize(left.data());
        benchmark::ClobberMemory();
    }
    const double processed = static_cast<double>(state.iterations()) * frames;
    state.counters["ns_per_frame"] = benchmark::Counter(
        processed * 1e-9, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["core_pct"] = benchmark::Counter(
        processed / kRate / 100.0, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_Pitch(benchmark::State& s) {
    runChain(s, kPitch);
}
void BM_Chorus(benchmark::State& s) {
    runChain(s, kChorus);
}
void BM_Flanger(benchmark::State& s) {
    runChain(s, kFlanger);
}
void BM_Tremolo(benchmark::State& s) {
    runChain(s, kTremolo);
}
void BM_Radio(benchmark::State& s) {
    runChain(s, kRadio);
}
void BM_Delay(benchmark::State& s) {
    runChain(s, kDelay);
}
void BM_Reverb(benchmark::State& s) {
    runChain(s, kReverb);
}
void BM_WholeChain(benchmark::State& s) {
    runChain(s, kEverything);
}

BENCHMARK(BM_Pitch)->Arg(480)->Arg(1024);
BENCHMARK(BM_Chorus)->Arg(480)->Arg(1024);
BENCHMARK(BM_Flanger)->Arg(480)->Arg(1024);
BENCHMARK(BM_Tremolo)->Arg(480)->Arg(1024);
BENCHMARK(BM_Radio)->Arg(480)->Arg(1024);
BENCHMARK(BM_Delay)->Arg(480)->Arg(1024);
BENCHMARK(BM_Reverb)->Arg(480)->Arg(1024);
BENCHMARK(BM_WholeChain)->Arg(480)->Arg(1024);

// The pitch shifter's latency, measured rather than timed: one layer on one
// channel, args semitones and packet size. fill_ms: silence after switching on
// until the first shifted sample; delay_ms: in steady state, from the onset of
// a tone to the onset of its shifted copy (half amplitude).
void BM_PitchLatency(benchmark::State& state) {
    const auto semitones = static_cast<float>(state.range(0));
    const int packet = static_cast<int>(state.range(1));
    double fillMs = 0.0;
    double delayMs = 0.0;
    for (auto _ : state) {
        PitchShifterLayer layer;
        layer.prepare(kRate);
        layer.setSemitones(semitones);
        const int total = static_cast<int>(2 * kRate);
        const int onset = static_cast<int>(kRate);
        std::vector<float> in(static_cast<size_t>(total), 0.0f);
        std::vector<float> out(static_cast<size_t>(total), 0.0f);
        for (int i = onset; i < total; ++i) {
            in[static_cast<size_t>(i)] =
                0.5f * static_cast<float>(std::sin(2.0 * M_PI * 700.0 * i / kRate));
        }
        int first = -1;
        for (int start = 0; start + packet <= total; start += packet) {
            const int k = layer.process(in.data() + start, packet, out.data() + start);
            if (k > 0 && first < 0) {
                first = start + packet - k;
            }
        }
        int detected = total;
        for (int i = onset; i < total; ++i) {
            if (std::fabs(out[static_cast<size_t>(i)]) > 0.25f) {
                detected = i;
                break;
            }
        }
        fillMs = first * 1000.0 / kRate;
        delayMs = (detected - onset) * 1000.0 / kRate;
    }
    state.counters["fill_ms"] = fillMs;
    state.counters["delay_ms"] = delayMs;
}
BENCHMARK(BM_PitchLatency)
    ->ArgsProduct({{-12, -7, 0, 5, 12}, {480, 1024}})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
