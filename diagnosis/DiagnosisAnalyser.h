#pragma once

#include "dsp/Biquad.h"

#include "diagnosis/AudioMetrics.h"
#include "dsp/Fft.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace Lumora {

// Listens to the processed voice on the audio thread and publishes level, peak,
// noise floor, bands, loudness and spectrum as atomics for the interface.
//
// Threads: `process` runs on the audio thread and never allocates or locks;
// `snapshot` and `readCapture` run on any other single thread. `prepare` must not
// run concurrently with `process`.
class DiagnosisAnalyser {
public:
    static constexpr int kFftSize = 1024;
    static constexpr int kNoiseRingSize = 300;
    static constexpr int kNoiseFloorInterval = 30;
    static constexpr size_t kCaptureSize = 262144;
    static constexpr float kClipThreshold = 0.999f;

    DiagnosisAnalyser();
    ~DiagnosisAnalyser();
    DiagnosisAnalyser(const DiagnosisAnalyser&) = delete;
    DiagnosisAnalyser& operator=(const DiagnosisAnalyser&) = delete;

    // Computes coefficients, band edges and the window, resets every published
    // value and both capture positions, and re-creates the loudness meter. The
    // only member that allocates after construction (the loudness meter).
    void prepare(double sampleRate);

    // One mono block of n samples; returns at once if n < 1. Non-finite samples
    // count as silence, so one NaN never poisons the published values.
    void process(const float* samples, int n);

    AudioMetrics snapshot() const;

    // Starts a new take: the held measures (peak, low-frequency burst) forget
    // what earlier takes left in them, from the next block on. Returns the
    // epoch that snapshots taken after the restart carry (`heldEpoch`), so a
    // caller can tell a snapshot of the new take from a stale one whatever
    // the audio thread's timing. Any thread but the audio thread.
    uint32_t restartHeld();

    // Copies up to `max` captured samples, oldest first, and frees their room.
    size_t readCapture(float* dest, size_t max);
    void setRecording(bool on) { recording_.store(on, std::memory_order_release); }
    bool isRecording() const { return recording_.load(std::memory_order_acquire); }

    // The power response |H|^2 at `hz` of the low band's 500 Hz low-pass and
    // the high band's 4 kHz high-pass at `rate`: what the band levels weigh.
    static double lowBandPower(double rate, double hz);
    static double highBandPower(double rate, double hz);

    double sampleRate() const { return sampleRate_; }
    bool hasLoudnessMeter() const { return meter_ != nullptr; }
    // First and last FFT bin of a spectrum band (last < first: the band is empty).
    int bandFirstBin(int band) const { return bandLo_[static_cast<size_t>(band)]; }
    int bandLastBin(int band) const { return bandHi_[static_cast<size_t>(band)]; }

private:
    // libebur128's state, behind a type of ours (its own is an anonymous struct
    // and cannot be declared ahead).
    struct LoudnessMeter;
    struct MeterDeleter {
        void operator()(LoudnessMeter* meter) const;
    };

    void resetPublished();
    void computeSpectrum();
    void trackLowBursts(double x);

    // Configuration, set in prepare.
    double sampleRate_ = 48000.0;
    double smoothCoeff_ = 0.0; // a: the per-sample smoothing coefficient
    double peakDecay_ = 0.0;   // d: the per-sample peak decay
    std::array<int, kSpectrumBandCount> bandLo_{};
    std::array<int, kSpectrumBandCount> bandHi_{};
    std::array<float, kFftSize> window_{};
    Fft fft_{kFftSize};

    // Audio-thread state.
    double smoothedMs_ = 0.0;
    double heldPeak_ = 0.0;
    PreciseBiquad lowPass_;
    PreciseBiquad highPass_;
    // Fourth order (two sections) below 100 Hz, summed over 10 ms windows.
    PreciseBiquad burstPass_[2];
    double burstSum_ = 0.0;
    int burstFill_ = 0;
    int burstWindow_ = 480;
    double heldBurst_ = 0.0;  // mean square, held and decayed like the peak
    double burstDecay_ = 1.0; // the peak's decay over one window
    uint32_t honouredEpoch_ = 0;
    std::array<float, kNoiseRingSize> noiseRing_{};
    int noiseIndex_ = 0;
    uint64_t noiseBlocks_ = 0;
    float noiseFloorDb_ = -96.0f;
    std::array<float, kFftSize> specRing_{};
    int specWrite_ = 0;
    int specCount_ = 0;
    int loudnessSamples_ = 0;
    int loudnessInterval_ = 4800;
    std::array<float, kFftSize> fftRe_{};
    std::array<float, kFftSize> fftIm_{};
    std::array<float, kFftSize> scratch_{};
    std::unique_ptr<LoudnessMeter, MeterDeleter> meter_;
    std::unique_ptr<float[]> capture_;

    // Published values: written by the audio thread, read by the interface. On
    // cache lines of their own so the readers do not slow the writer's state.
    alignas(64) std::atomic<float> smoothedLevelDb_{-96.0f};
    std::atomic<float> blockLevelDb_{-96.0f};
    std::atomic<float> peakDb_{-96.0f};
    std::atomic<float> noiseFloorPubDb_{-96.0f};
    std::atomic<float> lowBandDb_{-96.0f};
    std::atomic<float> midBandDb_{-96.0f};
    std::atomic<float> highBandDb_{-96.0f};
    std::atomic<bool> clipped_{false};
    std::atomic<uint64_t> blockCount_{0};
    std::atomic<float> lowBurstDb_{-96.0f};
    std::atomic<uint32_t> heldEpoch_{0};
    std::atomic<float> momentaryLufs_{-70.0f};
    std::atomic<float> shortTermLufs_{-70.0f};
    std::array<std::atomic<float>, kSpectrumBandCount> spectrumDb_;
    alignas(64) std::atomic<uint64_t> captureWrite_{0};
    alignas(64) std::atomic<uint64_t> captureRead_{0};
    std::atomic<bool> recording_{false};
    std::atomic<uint32_t> requestedEpoch_{0};
};

} // namespace Lumora
