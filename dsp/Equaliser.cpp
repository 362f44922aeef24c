#include "dsp/Equaliser.h"

#include "dsp/FilterDesign.h"
#include "dsp/GlideSteps.h"

#include <algorithm>
#include <cmath>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define LUMORA_EQ_SSE 1
#endif

namespace Lumora {

namespace {

constexpr int kMaxSections = 3 + kNotchBandCount;

#ifdef LUMORA_EQ_SSE
// Runs N sections in series over both channels at once, lane 0 the left channel
// and lane 1 the right, every section on each sample before the next sample.
// A section's recursion is a chain of dependent multiplies and adds; taken one
// section over the whole block, the processor waits on that chain. Interleaved,
// the sections and channels overlap and only the arithmetic counts. Each lane
// does exactly the scalar section's operations in the same order, so the result
// is identical to running the sections one after the other.
template <int N>
void cascadeStereo(Biquad* const* left, Biquad* const* right, float* l, float* r, int frames) {
    __m128 b0[N], b1[N], b2[N], a1[N], a2[N], s1[N], s2[N];
    for (int k = 0; k < N; ++k) {
        const BiquadCoefficients& cl = left[k]->coefficients();
        const BiquadCoefficients& cr = right[k]->coefficients();
        b0[k] = _mm_setr_ps(cl.b0, cr.b0, 0.0f, 0.0f);
        b1[k] = _mm_setr_ps(cl.b1, cr.b1, 0.0f, 0.0f);
        b2[k] = _mm_setr_ps(cl.b2, cr.b2, 0.0f, 0.0f);
        a1[k] = _mm_setr_ps(cl.a1, cr.a1, 0.0f, 0.0f);
        a2[k] = _mm_setr_ps(cl.a2, cr.a2, 0.0f, 0.0f);
        s1[k] = _mm_setr_ps(left[k]->s1(), right[k]->s1(), 0.0f, 0.0f);
        s2[k] = _mm_setr_ps(left[k]->s2(), right[k]->s2(), 0.0f, 0.0f);
    }
    for (int i = 0; i < frames; ++i) {
        __m128 x = _mm_setr_ps(l[i], r[i], 0.0f, 0.0f);
        for (int k = 0; k < N; ++k) {
            const __m128 y = _mm_add_ps(_mm_mul_ps(b0[k], x), s1[k]);
            s1[k] = _mm_add_ps(_mm_sub_ps(_mm_mul_ps(b1[k], x), _mm_mul_ps(a1[k], y)), s2[k]);
            s2[k] = _mm_sub_ps(_mm_mul_ps(b2[k], x), _mm_mul_ps(a2[k], y));
            x = y;
        }
        l[i] = _mm_cvtss_f32(x);
        r[i] = _mm_cvtss_f32(_mm_shuffle_ps(x, x, 1));
    }
    for (int k = 0; k < N; ++k) {
        alignas(16) float v1[4], v2[4];
        _mm_store_ps(v1, s1[k]);
        _mm_store_ps(v2, s2[k]);
        left[k]->setState(v1[0], v2[0]);
        right[k]->setState(v1[1], v2[1]);
    }
}

bool runStereo(Biquad* const* left, Biquad* const* right, int count, float* l, float* r,
               int frames) {
    switch (count) {
    case 1:
        cascadeStereo<1>(left, right, l, r, frames);
        return true;
    case 2:
        cascadeStereo<2>(left, right, l, r, frames);
        return true;
    case 3:
        cascadeStereo<3>(left, right, l, r, frames);
        return true;
    case 4:
        cascadeStereo<4>(left, right, l, r, frames);
        return true;
    case 5:
        cascadeStereo<5>(left, right, l, r, frames);
        return true;
    case 6:
        cascadeStereo<6>(left, right, l, r, frames);
        return true;
    case 7:
        cascadeStereo<7>(left, right, l, r, frames);
        return true;
    case 8:
        cascadeStereo<8>(left, right, l, r, frames);
        return true;
    default:
        return false;
    }
}
#else
bool runStereo(Biquad* const*, Biquad* const*, int, float*, float*, int) {
    return false;
}
#endif

} // namespace

void Equaliser::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Equaliser::reset() {
    for (int c = 0; c < kChannels; ++c) {
        lowCut_[c].reset();
        highShelf_[c].reset();
        highCut_[c].reset();
        for (auto& band : bands_) {
            band[c].reset();
        }
    }
    cachedLowCutHz_ = 0.0f;
    cachedBands_.fill(BandCache{});
    cachedShelfHz_ = 0.0f;
    cachedShelfGainDb_ = 0.0f;
    cachedHighCutHz_ = 0.0f;
    cachedHighCutQ_ = 0.0f;
    shaped_ = false;
}

bool Equaliser::isActive(const EqParams& p) {
    if (!p.enabled) {
        return false;
    }
    if (p.lowCutEnabled || p.highShelfEnabled || p.highCutEnabled) {
        return true;
    }
    return std::any_of(p.notchBands.begin(), p.notchBands.end(),
                       [](const NotchBand& b) { return b.enabled; });
}

void Equaliser::setBoth(std::array<Biquad, kChannels>& pair, const BiquadCoeffs<double>& c) {
    for (Biquad& section : pair) {
        section.setCoefficients(c.to<float>());
    }
}

void Equaliser::updateCoefficients(const EqParams& p) {
    // A filter that is off keeps its old coefficients and cache: when it is
    // switched on again, the cache differs and it is recomputed at once.
    if (p.lowCutEnabled && p.lowCutHz != cachedLowCutHz_) {
        setBoth(lowCut_, FilterDesign::lowCut(p.lowCutHz, sampleRate_));
        cachedLowCutHz_ = p.lowCutHz;
    }
    for (int b = 0; b < kNotchBandCount; ++b) {
        const NotchBand& band = p.notchBands[b];
        BandCache& cache = cachedBands_[b];
        if (bandRuns(band) &&
            (band.centerHz != cache.centerHz || band.gainDb != cache.gainDb || band.q != cache.q)) {
            setBoth(bands_[b],
                    FilterDesign::peaking(band.centerHz, band.gainDb, band.q, sampleRate_));
            cache = {band.centerHz, band.gainDb, band.q};
        }
    }
    if (p.highShelfEnabled &&
        (p.highShelfHz != cachedShelfHz_ || p.highShelfGainDb != cachedShelfGainDb_)) {
        setBoth(highShelf_, FilterDesign::highShelf(p.highShelfHz, p.highShelfGainDb, sampleRate_));
        cachedShelfHz_ = p.highShelfHz;
        cachedShelfGainDb_ = p.highShelfGainDb;
    }
    if (p.highCutEnabled && (p.highCutHz != cachedHighCutHz_ || p.highCutQ != cachedHighCutQ_)) {
        setBoth(highCut_, FilterDesign::highCut(p.highCutHz, p.highCutQ, sampleRate_));
        cachedHighCutHz_ = p.highCutHz;
        cachedHighCutQ_ = p.highCutQ;
    }
}

int Equaliser::activeSections(int channel, const EqParams& p, Biquad** sections) {
    // In order; a band at exactly 0 dB is skipped outright (it would change nothing).
    int count = 0;
    if (p.lowCutEnabled) {
        sections[count++] = &lowCut_[channel];
    }
    for (int b = 0; b < kNotchBandCount; ++b) {
        if (bandRuns(p.notchBands[b])) {
            sections[count++] = &bands_[b][channel];
        }
    }
    if (p.highShelfEnabled) {
        sections[count++] = &highShelf_[channel];
    }
    if (p.highCutEnabled) {
        sections[count++] = &highCut_[channel];
    }
    return count;
}

namespace {

// A frequency or Q moves on a log scale (as its knob does), a gain in dB.
float towards(float from, float to, float t, bool logScale) {
    if (logScale && from > 0.0f && to > 0.0f) {
        return from * std::pow(to / from, t);
    }
    return from + (to - from) * t;
}

// The record a fraction t of the way from `a` to `b`. A filter that was off
// in `a` has no way to come from: it takes b's values at once.
EqParams between(const EqParams& a, const EqParams& b, float t) {
    EqParams q = b;
    if (a.lowCutEnabled) {
        q.lowCutHz = towards(a.lowCutHz, b.lowCutHz, t, true);
    }
    for (int k = 0; k < kNotchBandCount; ++k) {
        const NotchBand& from = a.notchBands[k];
        NotchBand& band = q.notchBands[k];
        if (from.enabled) {
            band.centerHz = towards(from.centerHz, band.centerHz, t, true);
            band.gainDb = towards(from.gainDb, band.gainDb, t, false);
            band.q = towards(from.q, band.q, t, true);
        }
    }
    if (a.highShelfEnabled) {
        q.highShelfHz = towards(a.highShelfHz, b.highShelfHz, t, true);
        q.highShelfGainDb = towards(a.highShelfGainDb, b.highShelfGainDb, t, false);
    }
    if (a.highCutEnabled) {
        q.highCutHz = towards(a.highCutHz, b.highCutHz, t, true);
        q.highCutQ = towards(a.highCutQ, b.highCutQ, t, true);
    }
    return q;
}

bool sameShape(const EqParams& a, const EqParams& b) {
    auto same = [](const NotchBand& x, const NotchBand& y) {
        return x.centerHz == y.centerHz && x.gainDb == y.gainDb && x.q == y.q;
    };
    return a.lowCutHz == b.lowCutHz && a.highShelfHz == b.highShelfHz &&
           a.highShelfGainDb == b.highShelfGainDb && a.highCutHz == b.highCutHz &&
           a.highCutQ == b.highCutQ &&
           std::equal(a.notchBands.begin(), a.notchBands.end(), b.notchBands.begin(), same);
}

} // namespace

void Equaliser::process(float* const* planes, int channels, int frames, const EqParams& p) {
    const bool moving = shaped_ && !sameShape(shape_, p);
    const EqParams from = shape_;
    inGlideSteps(frames, moving, [&](float t, int offset, int count) {
        updateCoefficients(t < 1.0f ? between(from, p, t) : p);
        run(planes, channels, offset, count, p);
    });
    shape_ = p;
    shaped_ = true;
}

void Equaliser::run(float* const* planes, int channels, int offset, int frames, const EqParams& p) {
    const int used = std::min(channels, kChannels);
    std::array<std::array<Biquad*, kMaxSections>, kChannels> sections{};
    int count = 0;
    for (int c = 0; c < used; ++c) {
        count = activeSections(c, p, sections[c].data());
    }
    const bool sideBySide = used == 2 && runStereo(sections[0].data(), sections[1].data(), count,
                                                   planes[0] + offset, planes[1] + offset, frames);
    if (!sideBySide) {
        for (int c = 0; c < used; ++c) {
            for (int k = 0; k < count; ++k) {
                sections[c][k]->process(planes[c] + offset, frames);
            }
        }
    }
    for (int c = 0; c < used; ++c) {
        for (int k = 0; k < count; ++k) {
            sections[c][k]->clearIfNonFinite();
        }
    }
}

} // namespace Lumora
