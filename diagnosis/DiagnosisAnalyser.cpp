#include "diagnosis/DiagnosisAnalyser.h"

#include "dsp/FilterDesign.h"

#include "dsp/DenormalGuard.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Lumora {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr float kFloorDb = -96.0f;
constexpr float kMinLufs = -70.0f;
constexpr float kMaxLufs = 4.0f;
constexpr double kSmoothingSeconds = 0.3;
constexpr double kPeakDecaySeconds = 1.5;
constexpr double kLowBandHz = 500.0;
constexpr double kHighBandHz = 4000.0;
// A plosive's breath on the capsule is a pressure wave with its energy mostly
// below 60 Hz. At 150 Hz a low male voice's fundamental (the CMU speaker's
// "numbers") read 12-14 dB over the same voice elsewhere without any pop; at
// 100 Hz (fourth order) the fundamental falls off and the whole pop stays.
constexpr double kBurstBandHz = 100.0;
constexpr double kBurstWindowSeconds = 0.01;

// 20·log10(x), never below -96; -96 also stands for "nothing there" (x ≤ 0).
float toDb(double x) {
    if (!(x > 0.0)) {
        return kFloorDb;
    }
    const double db = 20.0 * std::log10(x);
    return db < kFloorDb ? kFloorDb : static_cast<float>(db);
}

float clampLufs(double v) {
    if (std::isnan(v)) {
        return kMinLufs;
    }
    return static_cast<float>(
        std::clamp(v, static_cast<double>(kMinLufs), static_cast<double>(kMaxLufs)));
}

} // namespace

double DiagnosisAnalyser::lowBandPower(double rate, double hz) {
    return FilterDesign::powerResponse(
        FilterDesign::highCut(kLowBandHz, FilterDesign::kButterworthQ, rate), hz, rate);
}

double DiagnosisAnalyser::highBandPower(double rate, double hz) {
    return FilterDesign::powerResponse(FilterDesign::lowCut(kHighBandHz, rate), hz, rate);
}

struct DiagnosisAnalyser::LoudnessMeter {
    ebur128_state* state = nullptr;
};

void DiagnosisAnalyser::MeterDeleter::operator()(LoudnessMeter* meter) const {
    if (meter->state) {
        ebur128_destroy(&meter->state);
    }
    delete meter;
}

DiagnosisAnalyser::DiagnosisAnalyser() : capture_(new float[kCaptureSize]()) {
    for (int i = 0; i < kFftSize; ++i) {
        window_[static_cast<size_t>(i)] =
            static_cast<float>(0.5 * (1.0 - std::cos(2.0 * kPi * i / (kFftSize - 1))));
    }
    prepare(48000.0);
}

DiagnosisAnalyser::~DiagnosisAnalyser() = default;

void DiagnosisAnalyser::resetPublished() {
    smoothedLevelDb_.store(kFloorDb, std::memory_order_relaxed);
    blockLevelDb_.store(kFloorDb, std::memory_order_relaxed);
    peakDb_.store(kFloorDb, std::memory_order_relaxed);
    noiseFloorPubDb_.store(kFloorDb, std::memory_order_relaxed);
    lowBandDb_.store(kFloorDb, std::memory_order_relaxed);
    midBandDb_.store(kFloorDb, std::memory_order_relaxed);
    highBandDb_.store(kFloorDb, std::memory_order_relaxed);
    clipped_.store(false, std::memory_order_relaxed);
    lowBurstDb_.store(kFloorDb, std::memory_order_relaxed);
    momentaryLufs_.store(kMinLufs, std::memory_order_relaxed);
    shortTermLufs_.store(kMinLufs, std::memory_order_relaxed);
    for (auto& band : spectrumDb_) {
        band.store(kFloorDb, std::memory_order_relaxed);
    }
    blockCount_.store(0, std::memory_order_release);
}

void DiagnosisAnalyser::prepare(double sampleRate) {
    // A rate the host should never send (0, negative, NaN) falls back to 48 kHz
    // rather than dividing by it.
    sampleRate_ = (std::isfinite(sampleRate) && sampleRate > 0.0) ? sampleRate : 48000.0;
    const double rate = sampleRate_;

    smoothCoeff_ = 1.0 - std::exp(-1.0 / (rate * kSmoothingSeconds));
    peakDecay_ = std::exp(-1.0 / (rate * kPeakDecaySeconds));

    lowPass_.setCoefficients(FilterDesign::highCut(kLowBandHz, FilterDesign::kButterworthQ, rate));
    lowPass_.reset();
    highPass_.setCoefficients(FilterDesign::lowCut(kHighBandHz, rate));
    highPass_.reset();
    for (PreciseBiquad& section : burstPass_) {
        section.setCoefficients(
            FilterDesign::highCut(kBurstBandHz, FilterDesign::kButterworthQ, rate));
        section.reset();
    }
    burstWindow_ = std::max(1, static_cast<int>(std::lround(rate * kBurstWindowSeconds)));
    burstDecay_ = std::pow(std::exp(-1.0 / (rate * kPeakDecaySeconds)), 2.0 * burstWindow_);
    burstSum_ = 0.0;
    burstFill_ = 0;
    heldBurst_ = 0.0;
    honouredEpoch_ = requestedEpoch_.load(std::memory_order_acquire);
    heldEpoch_.store(honouredEpoch_, std::memory_order_relaxed);

    // Logarithmic bands from 20 Hz to Nyquist over the 1024-point FFT's bins.
    const double base = (rate / 2.0) / 20.0;
    const double binWidth = rate / kFftSize;
    for (int i = 0; i < kSpectrumBandCount; ++i) {
        const double loHz = 20.0 * std::pow(base, static_cast<double>(i) / kSpectrumBandCount);
        const double hiHz = 20.0 * std::pow(base, static_cast<double>(i + 1) / kSpectrumBandCount);
        const double lo = std::max(1.0, std::floor(loHz / binWidth));
        const double hi = std::min(static_cast<double>(kFftSize / 2), std::floor(hiHz / binWidth));
        bandLo_[static_cast<size_t>(i)] = static_cast<int>(std::min(lo, 1e6));
        bandHi_[static_cast<size_t>(i)] = static_cast<int>(std::max(hi, -1.0));
    }

    smoothedMs_ = 0.0;
    heldPeak_ = 0.0;
    noiseRing_.fill(kFloorDb);
    noiseIndex_ = 0;
    noiseBlocks_ = 0;
    noiseFloorDb_ = kFloorDb;
    specRing_.fill(0.0f);
    specWrite_ = 0;
    specCount_ = 0;
    loudnessInterval_ = std::max(1, static_cast<int>(rate * 0.1));
    loudnessSamples_ = loudnessInterval_; // read after the first block
    captureWrite_.store(0, std::memory_order_relaxed);
    captureRead_.store(0, std::memory_order_relaxed);
    resetPublished();

    // Histogram mode keeps the integrated-loudness state in a fixed table: in
    // block-list mode libebur128 appends a node (malloc) for every 100 ms
    // gating block, which grows without bound over a stream of many hours and
    // allocates on the audio thread. Momentary and short-term values are
    // identical in both modes.
    meter_.reset();
    const double roundedRate = std::floor(rate + 0.5);
    if (roundedRate >= 1.0 && roundedRate <= 4.0e6) {
        ebur128_state* state =
            ebur128_init(1, static_cast<unsigned long>(roundedRate),
                         EBUR128_MODE_M | EBUR128_MODE_S | EBUR128_MODE_I | EBUR128_MODE_HISTOGRAM);
        if (state) {
            meter_.reset(new LoudnessMeter{state});
        }
    }
}

void DiagnosisAnalyser::process(const float* samples, int n) {
    if (n < 1 || samples == nullptr) {
        return;
    }
    DenormalGuard denormals;

    const uint32_t epoch = requestedEpoch_.load(std::memory_order_acquire);
    if (epoch != honouredEpoch_) {
        honouredEpoch_ = epoch;
        heldPeak_ = 0.0;
        heldBurst_ = 0.0;
        burstSum_ = 0.0;
        burstFill_ = 0;
    }

    // The capture either takes the whole block or none of it, decided up front.
    const uint64_t captureAt = captureWrite_.load(std::memory_order_relaxed);
    bool capture = false;
    if (recording_.load(std::memory_order_acquire)) {
        const uint64_t used = captureAt - captureRead_.load(std::memory_order_acquire);
        capture = used <= kCaptureSize && static_cast<uint64_t>(n) <= kCaptureSize - used;
    }

    float peak = 0.0f;
    bool clipped = false;
    double sum = 0.0;
    double sumLow = 0.0;
    double sumHigh = 0.0;
    // Work in chunks of the scratch buffer's size, so any n is handled without
    // allocating; every per-block value below is still over the whole block.
    for (int start = 0; start < n; start += kFftSize) {
        const int m = std::min(kFftSize, n - start);
        float* x = scratch_.data();
        for (int i = 0; i < m; ++i) {
            float v = samples[start + i];
            if (!std::isfinite(v)) {
                v = 0.0f;
            }
            x[i] = v;
            const float a = std::fabs(v);
            peak = std::max(peak, a);
            clipped = clipped || a >= kClipThreshold;
            const double d = v;
            sum += d * d;
            const double lo = lowPass_.processSample(d);
            sumLow += lo * lo;
            const double hi = highPass_.processSample(d);
            sumHigh += hi * hi;
            trackLowBursts(d);
        }
        if (meter_) {
            ebur128_add_frames_float(meter_->state, x, static_cast<size_t>(m));
        }
        for (int i = 0; i < m; ++i) {
            specRing_[static_cast<size_t>(specWrite_)] = x[i];
            specWrite_ = (specWrite_ + 1) & (kFftSize - 1);
        }
        if (capture) {
            const size_t at =
                static_cast<size_t>((captureAt + static_cast<uint64_t>(start)) % kCaptureSize);
            const size_t first = std::min(static_cast<size_t>(m), kCaptureSize - at);
            std::memcpy(capture_.get() + at, x, first * sizeof(float));
            std::memcpy(capture_.get(), x + first,
                        (static_cast<size_t>(m) - first) * sizeof(float));
        }
    }

    const double count = static_cast<double>(n);
    const double ms = sum / count;
    const double blockRms = std::sqrt(ms);

    // The smoothing coefficient is per sample (a 300 ms time constant), and the
    // smoothed mean square moves as if it had been applied to each of the n
    // samples: S <- (1 - a)^n S + (1 - (1 - a)^n) ms. Applying the per-sample
    // coefficient once per block instead would stretch the time constant by
    // the block length (about 144 s at 480-sample blocks), so a few seconds of
    // speech would never lift the level from its start and every level-based
    // verdict would be wrong; the per-sample form also reads the same for any
    // block size.
    const double keep = std::exp(count * std::log1p(-smoothCoeff_));
    smoothedMs_ = keep * smoothedMs_ + (1.0 - keep) * ms;

    heldPeak_ *= std::pow(peakDecay_, count);
    if (peak > heldPeak_) {
        heldPeak_ = peak;
    }

    const double lowMs = sumLow / count;
    const double highMs = sumHigh / count;
    const double midMs = ms - lowMs - highMs;
    const double mid = midMs > 0.0 ? std::sqrt(midMs) : 0.0;

    // Noise floor: the quietest of the last 300 block levels, refreshed every
    // 30th block only, so a short pause does not make it jump around.
    const float blockDb = toDb(blockRms);
    noiseRing_[static_cast<size_t>(noiseIndex_)] = blockDb;
    noiseIndex_ = (noiseIndex_ + 1) % kNoiseRingSize;
    ++noiseBlocks_;
    if (noiseBlocks_ % kNoiseFloorInterval == 0) {
        noiseFloorDb_ = *std::min_element(noiseRing_.begin(), noiseRing_.end());
    }

    smoothedLevelDb_.store(toDb(std::sqrt(smoothedMs_)), std::memory_order_relaxed);
    blockLevelDb_.store(blockDb, std::memory_order_relaxed);
    peakDb_.store(toDb(heldPeak_), std::memory_order_relaxed);
    noiseFloorPubDb_.store(noiseFloorDb_, std::memory_order_relaxed);
    lowBandDb_.store(toDb(std::sqrt(lowMs)), std::memory_order_relaxed);
    midBandDb_.store(toDb(mid), std::memory_order_relaxed);
    highBandDb_.store(toDb(std::sqrt(highMs)), std::memory_order_relaxed);
    clipped_.store(clipped, std::memory_order_relaxed);
    lowBurstDb_.store(toDb(std::sqrt(heldBurst_)), std::memory_order_relaxed);
    // Released after the held values: a reader that sees the new epoch sees
    // the restarted peak and burst with it.
    heldEpoch_.store(honouredEpoch_, std::memory_order_release);
    blockCount_.fetch_add(1, std::memory_order_release);

    // libebur128 sums its whole window (400 ms and 3 s of samples) on every
    // read, which cost ten times the rest of the analyser when done for every
    // 10 ms block. The interface samples loudness at 60 Hz and a loudness meter
    // moves at ~10 Hz anyway, so read it at most every 100 ms of audio; the
    // samples themselves are fed on every block.
    loudnessSamples_ += n;
    if (meter_ && loudnessSamples_ >= loudnessInterval_) {
        loudnessSamples_ = 0;
        double momentary = kMinLufs;
        if (ebur128_loudness_momentary(meter_->state, &momentary) != EBUR128_SUCCESS) {
            momentary = kMinLufs;
        }
        double shortTerm = kMinLufs;
        if (ebur128_loudness_shortterm(meter_->state, &shortTerm) != EBUR128_SUCCESS) {
            shortTerm = kMinLufs;
        }
        momentaryLufs_.store(clampLufs(momentary), std::memory_order_relaxed);
        shortTermLufs_.store(clampLufs(shortTerm), std::memory_order_relaxed);
    }

    specCount_ = n >= kFftSize ? kFftSize : specCount_ + n;
    if (specCount_ >= kFftSize) {
        specCount_ = 0;
        computeSpectrum();
    }

    if (capture) {
        captureWrite_.store(captureAt + static_cast<uint64_t>(n), std::memory_order_release);
    }
}

// The mean square below 100 Hz over consecutive 10 ms windows, whatever the
// block size; the loudest window is held and decays like the peak (the decay
// is applied per window, as a mean square falls at twice the amplitude's rate).
void DiagnosisAnalyser::trackLowBursts(double x) {
    const double low = burstPass_[1].processSample(burstPass_[0].processSample(x));
    burstSum_ += low * low;
    if (++burstFill_ < burstWindow_) {
        return;
    }
    const double ms = burstSum_ / burstWindow_;
    burstSum_ = 0.0;
    burstFill_ = 0;
    heldBurst_ *= burstDecay_;
    if (ms > heldBurst_) {
        heldBurst_ = ms;
    }
}

uint32_t DiagnosisAnalyser::restartHeld() {
    return requestedEpoch_.fetch_add(1, std::memory_order_acq_rel) + 1;
}

void DiagnosisAnalyser::computeSpectrum() {
    // Oldest sample first: the write position is where the oldest one sits.
    for (int i = 0; i < kFftSize; ++i) {
        const size_t src = static_cast<size_t>((specWrite_ + i) & (kFftSize - 1));
        fftRe_[static_cast<size_t>(i)] = specRing_[src] * window_[static_cast<size_t>(i)];
    }
    fftIm_.fill(0.0f);
    fft_.forward(fftRe_.data(), fftIm_.data());
    for (int band = 0; band < kSpectrumBandCount; ++band) {
        const int lo = bandLo_[static_cast<size_t>(band)];
        const int hi = bandHi_[static_cast<size_t>(band)];
        float value = kFloorDb;
        if (lo <= hi) {
            double best = 0.0;
            for (int k = lo; k <= hi; ++k) {
                const double re = fftRe_[static_cast<size_t>(k)];
                const double im = fftIm_[static_cast<size_t>(k)];
                best = std::max(best, re * re + im * im);
            }
            value = toDb(std::sqrt(best) / (kFftSize / 2));
        }
        spectrumDb_[static_cast<size_t>(band)].store(value, std::memory_order_relaxed);
    }
}

AudioMetrics DiagnosisAnalyser::snapshot() const {
    AudioMetrics m;
    m.heldEpoch = heldEpoch_.load(std::memory_order_acquire);
    m.blockCount = blockCount_.load(std::memory_order_acquire);
    m.smoothedLevelDb = smoothedLevelDb_.load(std::memory_order_relaxed);
    m.blockLevelDb = blockLevelDb_.load(std::memory_order_relaxed);
    m.peakDb = peakDb_.load(std::memory_order_relaxed);
    m.noiseFloorDb = noiseFloorPubDb_.load(std::memory_order_relaxed);
    m.lowBandDb = lowBandDb_.load(std::memory_order_relaxed);
    m.midBandDb = midBandDb_.load(std::memory_order_relaxed);
    m.highBandDb = highBandDb_.load(std::memory_order_relaxed);
    m.clipped = clipped_.load(std::memory_order_relaxed);
    m.lowBurstDb = lowBurstDb_.load(std::memory_order_relaxed);
    m.momentaryLufs = momentaryLufs_.load(std::memory_order_relaxed);
    m.shortTermLufs = shortTermLufs_.load(std::memory_order_relaxed);
    for (size_t i = 0; i < m.spectrumDb.size(); ++i) {
        m.spectrumDb[i] = spectrumDb_[i].load(std::memory_order_relaxed);
    }
    return m;
}

size_t DiagnosisAnalyser::readCapture(float* dest, size_t max) {
    if (dest == nullptr || max == 0) {
        return 0;
    }
    const uint64_t write = captureWrite_.load(std::memory_order_acquire);
    const uint64_t read = captureRead_.load(std::memory_order_relaxed);
    const uint64_t available = write - read;
    const size_t count = static_cast<size_t>(std::min<uint64_t>(available, max));
    const size_t at = static_cast<size_t>(read % kCaptureSize);
    const size_t first = std::min(count, kCaptureSize - at);
    std::memcpy(dest, capture_.get() + at, first * sizeof(float));
    std::memcpy(dest + first, capture_.get(), (count - first) * sizeof(float));
    captureRead_.store(read + count, std::memory_order_release);
    return count;
}

} // namespace Lumora
