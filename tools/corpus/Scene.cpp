#include "Scene.h"

#include "dsp/FilterDesign.h"

#include "WavFile.h"
#include "dsp/Fft.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>

namespace Lumora::Corpus {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kSpeedOfSound = 343.0;
constexpr double kReferenceDistance = 0.3;
constexpr double kCriticalDistance = 0.8;
constexpr size_t kBlock = kRate / 100;

bool readRaw(const std::string& path, std::vector<float>& out) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) {
        return false;
    }
    unsigned char b[2];
    while (std::fread(b, 1, 2, f) == 2) {
        out.push_back(static_cast<float>(static_cast<int16_t>(b[0] | (b[1] << 8))) / 32768.0f);
    }
    std::fclose(f);
    return true;
}

// Upsampling at any ratio by a windowed sinc evaluated at each output
// instant, low-passed at 0.45 of the source rate (speech recorded at 16 kHz
// has nothing above 8 kHz; espeak-ng writes 22.05 kHz).
std::vector<float> upsample(const std::vector<float>& x, int from) {
    if (from == kRate) {
        return x;
    }
    const int half = 24;
    const double step = static_cast<double>(from) / kRate;
    const double cutoff = 0.45;
    std::vector<float> y(static_cast<size_t>(static_cast<double>(x.size()) / step));
    for (size_t n = 0; n < y.size(); ++n) {
        const double pos = static_cast<double>(n) * step;
        const long centre = static_cast<long>(std::floor(pos));
        double acc = 0.0;
        for (long k = centre - half + 1; k <= centre + half; ++k) {
            if (k < 0 || static_cast<size_t>(k) >= x.size()) {
                continue;
            }
            const double t = pos - static_cast<double>(k);
            const double sinc =
                std::fabs(t) < 1e-9 ? 2.0 * cutoff : std::sin(2.0 * kPi * cutoff * t) / (kPi * t);
            const double w = 0.5 + 0.5 * std::cos(kPi * t / half);
            acc += sinc * w * x[static_cast<size_t>(k)];
        }
        y[n] = static_cast<float>(acc);
    }
    return y;
}

// Linear convolution by overlap-add with a power-of-two FFT.
std::vector<float> convolve(const std::vector<float>& x, const std::vector<float>& h) {
    const int size = 1 << 16;
    const size_t step = static_cast<size_t>(size) - h.size() + 1;
    Fft fft(size);
    std::vector<float> hr(size, 0.0f), hi(size, 0.0f);
    std::copy(h.begin(), h.end(), hr.begin());
    fft.forward(hr.data(), hi.data());
    std::vector<float> y(x.size() + h.size(), 0.0f);
    std::vector<float> re(size), im(size);
    for (size_t at = 0; at < x.size(); at += step) {
        std::fill(re.begin(), re.end(), 0.0f);
        std::fill(im.begin(), im.end(), 0.0f);
        const size_t n = std::min(step, x.size() - at);
        std::copy(x.begin() + static_cast<long>(at), x.begin() + static_cast<long>(at + n),
                  re.begin());
        fft.forward(re.data(), im.data());
        for (int k = 0; k < size; ++k) {
            const float r = re[k] * hr[k] - im[k] * hi[k];
            im[k] = re[k] * hi[k] + im[k] * hr[k];
            re[k] = r;
        }
        fft.inverse(re.data(), im.data());
        for (size_t k = 0; k < static_cast<size_t>(size) && at + k < y.size(); ++k) {
            y[at + k] += re[k] / static_cast<float>(size);
        }
    }
    y.resize(x.size());
    return y;
}

std::vector<double> blockPowers(const std::vector<float>& x, size_t from, size_t to) {
    std::vector<double> p;
    for (size_t at = from; at + kBlock <= to; at += kBlock) {
        double s = 0.0;
        for (size_t i = at; i < at + kBlock; ++i) {
            s += static_cast<double>(x[i]) * x[i];
        }
        p.push_back(s / kBlock);
    }
    return p;
}

double activeThreshold(const std::vector<double>& powers) {
    std::vector<double> sorted = powers;
    std::sort(sorted.begin(), sorted.end());
    const double p90 = sorted[static_cast<size_t>(0.9 * static_cast<double>(sorted.size() - 1))];
    return p90 * 0.01; // 20 dB under
}

} // namespace

bool loadVoice(const std::string& name, const std::vector<std::string>& files, bool synthetic,
               int rawRate, Voice& out, std::string& error) {
    out = Voice{name, synthetic, {}};
    for (const std::string& path : files) {
        std::vector<float> mono;
        int rate = rawRate;
        if (path.size() > 4 && path.compare(path.size() - 4, 4, ".raw") == 0) {
            if (!readRaw(path, mono)) {
                error = "cannot read " + path;
                return false;
            }
        } else {
            WavData wav;
            if (!readWav(path, wav, error)) {
                return false;
            }
            rate = wav.sampleRate;
            mono = wav.planes[0];
        }
        if (rate < 8000 || rate > kRate) {
            error = path + ": rate " + std::to_string(rate) + " is not between 8 and 48 kHz";
            return false;
        }
        const std::vector<float> up = upsample(mono, rate);
        out.speech.insert(out.speech.end(), up.begin(), up.end());
        out.speech.insert(out.speech.end(), kRate / 4, 0.0f);
    }
    // A recording's DC and rumble are not the voice: left in, the proximity
    // lift would raise them by 10 dB and more, and the chain's low cut would
    // then remove "speech" that never was.
    PreciseBiquad rumble;
    rumble.setCoefficients(FilterDesign::lowCut(60.0, kRate));
    rumble.process(out.speech.data(), static_cast<int>(out.speech.size()));
    if (out.speech.size() < static_cast<size_t>(kRate)) {
        error = name + ": less than a second of speech";
        return false;
    }
    return true;
}

std::vector<float> speechStretch(const Voice& voice, double offset, double seconds) {
    const size_t n = static_cast<size_t>(seconds * kRate);
    std::vector<float> out(n);
    size_t at = static_cast<size_t>(offset * kRate) % voice.speech.size();
    for (size_t i = 0; i < n; ++i) {
        out[i] = voice.speech[at];
        at = (at + 1) % voice.speech.size();
    }
    return out;
}

void applyDistance(std::vector<float>& x, double distanceM) {
    const double k = 2.0 * kRate;
    const double zero = kSpeedOfSound / (2.0 * distanceM);
    const double pole = kSpeedOfSound / (2.0 * kReferenceDistance);
    const double a0 = k + pole;
    const double b0 = (k + zero) / a0, b1 = (zero - k) / a0, a1 = (pole - k) / a0;
    double x1 = 0.0, y1 = 0.0;
    for (float& v : x) {
        const double y = b0 * v + b1 * x1 - a1 * y1;
        x1 = v;
        y1 = y;
        v = static_cast<float>(y);
    }
}

void applyRoom(std::vector<float>& x, double distanceM, double rt60, unsigned seed) {
    std::mt19937 rng(seed);
    std::normal_distribution<float> gauss;
    const size_t length = static_cast<size_t>(1.2 * rt60 * kRate);
    const size_t gap = static_cast<size_t>(0.003 * kRate); // first reflections after 3 ms
    std::vector<float> h(length, 0.0f);
    double energy = 0.0;
    for (size_t i = gap; i < length; ++i) {
        const double t = static_cast<double>(i) / kRate;
        h[i] = gauss(rng) * static_cast<float>(std::exp(-6.9078 * t / rt60));
        energy += static_cast<double>(h[i]) * h[i];
    }
    const double drrDb = 20.0 * std::log10(kCriticalDistance / distanceM);
    const float g = static_cast<float>(std::pow(10.0, -drrDb / 20.0) / std::sqrt(energy));
    const std::vector<float> wet = convolve(x, h);
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] += g * wet[i];
    }
}

std::vector<float> fanNoise(size_t n, double rmsDb, unsigned seed) {
    std::mt19937 rng(seed);
    std::normal_distribution<double> gauss;
    std::vector<float> out(n);
    double lp = 0.0;
    double sum = 0.0;
    for (size_t i = 0; i < n; ++i) {
        const double w = gauss(rng);
        lp = 0.97 * lp + 0.03 * w;
        const double t = static_cast<double>(i) / kRate;
        const double swell = 1.0 + 0.25 * std::sin(2.0 * kPi * 0.37 * t) +
                             0.15 * std::sin(2.0 * kPi * 1.1 * t + 1.0);
        const double v = (4.0 * lp + 0.15 * w) * swell;
        out[i] = static_cast<float>(v);
        sum += v * v;
    }
    const double gain = std::pow(10.0, rmsDb / 20.0) / std::sqrt(sum / static_cast<double>(n));
    for (float& v : out) {
        v = static_cast<float>(v * gain);
    }
    return out;
}

void addPops(std::vector<float>& x, double start, double spacing, double peak) {
    const double tau = 0.004;
    const size_t length = static_cast<size_t>(0.06 * kRate);
    for (double at = start; at * kRate + length < static_cast<double>(x.size()); at += spacing) {
        const size_t from = static_cast<size_t>(at * kRate);
        for (size_t i = 0; i < length; ++i) {
            const double t = static_cast<double>(i) / kRate;
            x[from + i] += static_cast<float>(peak * (t / tau) * std::exp(1.0 - t / tau));
        }
    }
}

double activeLevelDb(const std::vector<float>& x, size_t from, size_t to) {
    const std::vector<double> p = blockPowers(x, from, to);
    const double threshold = activeThreshold(p);
    double sum = 0.0;
    int n = 0;
    for (double v : p) {
        if (v >= threshold && v > 0.0) {
            sum += v;
            ++n;
        }
    }
    return n > 0 ? 10.0 * std::log10(sum / n) : -120.0;
}

std::vector<bool> activeBlocks(const std::vector<float>& x, size_t from, size_t to) {
    const std::vector<double> p = blockPowers(x, from, to);
    const double threshold = activeThreshold(p);
    std::vector<bool> active(p.size());
    for (size_t i = 0; i < p.size(); ++i) {
        active[i] = p[i] >= threshold && p[i] > 0.0;
    }
    return active;
}

double levelDb(const std::vector<float>& x, size_t from, size_t to) {
    double sum = 0.0;
    for (size_t i = from; i < to; ++i) {
        sum += static_cast<double>(x[i]) * x[i];
    }
    return to > from && sum > 0.0 ? 10.0 * std::log10(sum / static_cast<double>(to - from))
                                  : -120.0;
}

void scale(std::vector<float>& x, double db) {
    const float g = static_cast<float>(std::pow(10.0, db / 20.0));
    for (float& v : x) {
        v *= g;
    }
}

void hardClip(std::vector<float>& x) {
    for (float& v : x) {
        v = std::clamp(v, -1.0f, 1.0f);
    }
}

} // namespace Lumora::Corpus
