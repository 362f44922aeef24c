#pragma once

#include <vector>

namespace Lumora {

// Streaming sample-rate conversion by an arbitrary, changeable step (input
// samples per output sample), by windowed-sinc interpolation (Kaiser window,
// 8 zero crossings each side). For steps above one the kernel is widened by
// the step, which lowers its cut-off below the output's Nyquist frequency:
// what the resampling would fold back is filtered out first.
//
// The kernels are precomputed as polyphase banks (128 phases, linear
// interpolation between neighbouring phases): one bank for interpolation and
// one per semitone of decimation up to 24, the decimating cut-off rounded down
// to the next semitone (at most 6 % lower than ideal). The banks are built once
// per process and shared; changing the step costs nothing and allocates
// nothing, so the pitch can follow a knob.
class BandlimitedResampler {
public:
    static constexpr int kZeroCrossings = 8;
    static constexpr int kPhases = 128;
    // Pass band as a share of the lower Nyquist frequency; the rest is the
    // transition band of the kernel.
    static constexpr double kPassBand = 0.95;
    static constexpr int kMaxDecimationSemitones = 24;

    struct Bank {
        int taps = 0;            // a multiple of 4
        std::vector<float> rows; // (kPhases + 1) rows of `taps` weights
    };

    // maxInput: the longest input block; steps are kept in minStep..maxStep
    // (maxStep at most two octaves).
    void prepare(int maxInput, double minStep, double maxStep);
    void reset();
    void setStep(double step);
    double step() const { return step_; }

    // Consumes all n (≤ maxInput) input samples and writes the outputs that
    // became computable, at most maxOutput(n); returns their count.
    int process(const float* in, int n, float* out);
    // The most outputs one call can give for n inputs at the smallest step.
    int maxOutput(int n) const;

    // Input samples between an input sample and its output (half the kernel).
    double latencyInputSamples() const { return bank_ ? bank_->taps / 2 : 0; }

private:
    const std::vector<Bank>* banks_ = nullptr;
    const Bank* bank_ = nullptr;
    std::vector<float> history_;
    int historyLength_ = 0;
    double position_ = 0.0; // of the next output, in history samples
    double step_ = 1.0;
    double maxStep_ = 1.0;
    double minStep_ = 0.25;
    int maxInput_ = 0;
    int keep_ = 0; // history kept in front of the first sample still needed
};

} // namespace Lumora
