// The diagnosis analyser's cost on the audio thread: every block of the live
// voice goes through it, diagnosis or not.

#include "diagnosis/DiagnosisAnalyser.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

// Mono 48 kHz in blocks of range(0) samples: speech-like tone plus noise.
void BM_DiagnosisAnalyserProcess(benchmark::State& state) {
    const int block = static_cast<int>(state.range(0));
    const bool recording = state.range(1) != 0;
    auto analyser = std::make_unique<Lumora::DiagnosisAnalyser>();
    analyser->prepare(48000.0);
    analyser->setRecording(recording);

    // One second of signal, cycled through.
    std::vector<float> signal(48000);
    unsigned seed = 7;
    for (size_t i = 0; i < signal.size(); ++i) {
        seed = seed * 1664525u + 1013904223u;
        const double noise = (static_cast<double>(seed >> 8) / 16777216.0 - 0.5) * 0.02;
        signal[i] =
            static_cast<float>(0.2 * std::sin(2.0 * 3.14159265 * 220.0 * i / 48000.0) + noise);
    }
    std::vector<float> drain(Lumora::DiagnosisAnalyser::kCaptureSize);
    size_t at = 0;
    for (auto _ : state) {
        if (at + static_cast<size_t>(block) > signal.size()) {
            at = 0;
            if (recording) {
                state.PauseTiming();
                analyser->readCapture(drain.data(), drain.size());
                state.ResumeTiming();
            }
        }
        analyser->process(signal.data() + at, block);
        at += static_cast<size_t>(block);
    }
    benchmark::DoNotOptimize(analyser->snapshot());
    const auto samples = static_cast<double>(state.iterations()) * block;
    state.SetItemsProcessed(static_cast<int64_t>(samples));
    state.counters["ns_per_sample"] = benchmark::Counter(
        samples * 1e-9, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["realtime_x"] =
        benchmark::Counter(samples / 48000.0, benchmark::Counter::kIsRate);
}

BENCHMARK(BM_DiagnosisAnalyserProcess)
    ->ArgNames({"block", "recording"})
    ->Args({480, 0})
    ->Args({480, 1})
    ->Args({512, 0})
    ->Args({4800, 0});

} // namespace
