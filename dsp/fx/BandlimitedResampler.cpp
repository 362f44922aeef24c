#include "dsp/fx/BandlimitedResampler.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#if defined(__SSE__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 1)
#include <xmmintrin.h>
#define LUMORA_RESAMPLER_SSE 1
#endif

namespace Lumora {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kKaiserBeta = 8.0; // side lobes near -80 dB

double besselI0(double x) {
    double sum = 1.0;
    double term = 1.0;
    for (int k = 1; k < 50; ++k) {
        term *= (x / (2.0 * k)) * (x / (2.0 * k));
        sum += term;
        if (term < 1e-12 * sum) {
            break;
        }
    }
    return sum;
}

// Kaiser-windowed sinc, x in input samples, scaled to a cut-off of `scale`
// times the input's Nyquist frequency (gain `scale` keeps the pass band at 0 dB).
double kernel(double x, double scale) {
    const double u = x * scale;
    const double r = u / BandlimitedResampler::kZeroCrossings;
    if (std::fabs(r) >= 1.0) {
        return 0.0;
    }
    const double sinc = u == 0.0 ? 1.0 : std::sin(kPi * u) / (kPi * u);
    const double window = besselI0(kKaiserBeta * std::sqrt(1.0 - r * r)) / besselI0(kKaiserBeta);
    return scale * sinc * window;
}

BandlimitedResampler::Bank makeBank(double scale) {
    BandlimitedResampler::Bank bank;
    const int half = static_cast<int>(std::ceil(BandlimitedResampler::kZeroCrossings / scale));
    bank.taps = (2 * half + 3) / 4 * 4;
    const int centre = bank.taps / 2 - 1; // tap j sits at offset (centre − j) + phase
    constexpr int phases = BandlimitedResampler::kPhases;
    bank.rows.assign(static_cast<size_t>(phases + 1) * bank.taps, 0.0f);
    for (int p = 0; p <= phases; ++p) {
        const double frac = static_cast<double>(p) / phases;
        double sum = 0.0;
        float* row = bank.rows.data() + static_cast<size_t>(p) * bank.taps;
        for (int j = 0; j < bank.taps; ++j) {
            const double w = kernel(frac + centre - j, scale);
            row[j] = static_cast<float>(w);
            sum += w;
        }
        // Unity gain at DC for every phase, so a constant stays constant.
        for (int j = 0; j < bank.taps; ++j) {
            row[j] = static_cast<float>(row[j] / sum);
        }
    }
    return bank;
}

// Bank 0 interpolates; bank k decimates by steps up to 2^(k/12).
const std::vector<BandlimitedResampler::Bank>& sharedBanks() {
    static const std::vector<BandlimitedResampler::Bank> banks = [] {
        std::vector<BandlimitedResampler::Bank> b;
        for (int k = 0; k <= BandlimitedResampler::kMaxDecimationSemitones; ++k) {
            b.push_back(makeBank(BandlimitedResampler::kPassBand / std::pow(2.0, k / 12.0)));
        }
        return b;
    }();
    return banks;
}

// The two neighbouring phases' dot products with the input, blended by f.
// Taps come in fours: one vector register per row.
inline float interpolate(const float* x, const float* r0, const float* r1, int taps, float f) {
#ifdef LUMORA_RESAMPLER_SSE
    __m128 a = _mm_setzero_ps();
    __m128 b = _mm_setzero_ps();
    for (int j = 0; j < taps; j += 4) {
        const __m128 v = _mm_loadu_ps(x + j);
        a = _mm_add_ps(a, _mm_mul_ps(v, _mm_loadu_ps(r0 + j)));
        b = _mm_add_ps(b, _mm_mul_ps(v, _mm_loadu_ps(r1 + j)));
    }
    __m128 y = _mm_add_ps(a, _mm_mul_ps(_mm_sub_ps(b, a), _mm_set1_ps(f)));
    y = _mm_add_ps(y, _mm_movehl_ps(y, y));
    y = _mm_add_ss(y, _mm_shuffle_ps(y, y, 1));
    return _mm_cvtss_f32(y);
#else
    float a = 0.0f;
    float b = 0.0f;
    for (int j = 0; j < taps; ++j) {
        a += x[j] * r0[j];
        b += x[j] * r1[j];
    }
    return a + (b - a) * f;
#endif
}

} // namespace

void BandlimitedResampler::prepare(int maxInput, double minStep, double maxStep) {
    banks_ = &sharedBanks();
    maxInput_ = maxInput;
    minStep_ = std::clamp(minStep, 1.0 / 16.0, 1.0);
    maxStep_ = std::clamp(maxStep, 1.0, std::pow(2.0, kMaxDecimationSemitones / 12.0));
    keep_ = banks_->back().taps + 2;
    history_.assign(static_cast<size_t>(2 * keep_ + maxInput + 8), 0.0f);
    step_ = 1.0;
    bank_ = &(*banks_)[0];
    reset();
}

void BandlimitedResampler::reset() {
    std::fill(history_.begin(), history_.end(), 0.0f);
    historyLength_ = keep_;
    position_ = keep_;
}

void BandlimitedResampler::setStep(double step) {
    step_ = std::isfinite(step) ? std::clamp(step, minStep_, maxStep_) : 1.0;
    if (!banks_) {
        return;
    }
    int k = 0;
    if (step_ > 1.0) {
        k = static_cast<int>(std::ceil(12.0 * std::log2(step_) - 1e-9));
        k = std::clamp(k, 0, kMaxDecimationSemitones);
    }
    bank_ = &(*banks_)[static_cast<size_t>(k)];
}

int BandlimitedResampler::maxOutput(int n) const {
    return static_cast<int>(std::ceil((n + 2.0 * keep_) / minStep_)) + 2;
}

int BandlimitedResampler::process(const float* in, int n, float* out) {
    if (history_.empty() || !bank_) {
        return 0;
    }
    n = std::clamp(n, 0, maxInput_);
    std::memcpy(history_.data() + historyLength_, in, static_cast<size_t>(n) * sizeof(float));
    historyLength_ += n;

    const int taps = bank_->taps;
    const int centre = taps / 2 - 1;
    const float* rows = bank_->rows.data();
    const float* h = history_.data();
    int count = 0;
    // Output at t uses inputs floor(t) − centre … floor(t) − centre + taps − 1.
    while (static_cast<int>(position_) - centre + taps <= historyLength_) {
        const int base = static_cast<int>(position_);
        const double phase = (position_ - base) * kPhases;
        const int p = std::min(static_cast<int>(phase), kPhases - 1);
        const float f = static_cast<float>(phase - p);
        const float* r0 = rows + static_cast<size_t>(p) * taps;
        const float* x = h + base - centre;
        out[count++] = interpolate(x, r0, r0 + taps, taps, f);
        position_ += step_;
    }

    // Drop what no later output can reach; keep_ covers the widest kernel.
    const int drop = std::max(0, static_cast<int>(position_) - keep_);
    if (drop > 0) {
        std::memmove(history_.data(), history_.data() + drop,
                     static_cast<size_t>(historyLength_ - drop) * sizeof(float));
        historyLength_ -= drop;
        position_ -= drop;
    }
    return count;
}

} // namespace Lumora
