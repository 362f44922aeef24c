#include "diagnosis/WordEndFall.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr double kFallDb = 20.0;
constexpr double kOverRoomDb = kFallDb + 10.0;
constexpr double kUnderLoudDb = 15.0;
constexpr int kPeakReach = 4;     // a peak is the highest of its +-10 ms
constexpr double kLongestS = 1.0; // an ending slower than this is no ending

std::vector<double> envelopeDb(const std::vector<float>& x, size_t window, size_t hop) {
    std::vector<double> e;
    if (x.size() < window) {
        return e;
    }
    e.reserve((x.size() - window) / hop + 1);
    for (size_t at = 0; at + window <= x.size(); at += hop) {
        double sum = 0.0;
        for (size_t i = at; i < at + window; ++i) {
            const double v = std::isfinite(x[i]) ? x[i] : 0.0;
            sum += v * v;
        }
        e.push_back(10.0 * std::log10(sum / static_cast<double>(window) + 1e-12));
    }
    return e;
}

void collectFalls(const std::vector<double>& e, double hopMs, double roomDb,
                  std::vector<double>& falls) {
    if (e.size() < 2 * kPeakReach + 2) {
        return;
    }
    std::vector<double> sorted = e;
    const size_t p90 = sorted.size() * 9 / 10;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<long>(p90), sorted.end());
    const double loud = sorted[p90];
    const auto reach = static_cast<size_t>(kLongestS * 1000.0 / hopMs);
    for (size_t i = kPeakReach; i + kPeakReach < e.size(); ++i) {
        const double top = e[i];
        if (top < loud - kUnderLoudDb || top - roomDb < kOverRoomDb) {
            continue;
        }
        // The first frame of a flat top is the peak, so one ending counts once.
        bool peak = true;
        for (size_t k = i - kPeakReach; k <= i + kPeakReach && peak; ++k) {
            peak = k < i ? e[k] < top : e[k] <= top;
        }
        if (!peak) {
            continue;
        }
        for (size_t k = i + 1; k < e.size() && k <= i + reach; ++k) {
            if (k > i + 1 && e[k] > top) {
                break;
            }
            if (e[k] <= top - kFallDb) {
                falls.push_back(static_cast<double>(k - i) * hopMs);
                break;
            }
        }
    }
}

} // namespace

float WordEndFall::measureMs(const std::vector<const std::vector<float>*>& takes, double rate,
                             double roomDb) {
    if (!(rate >= 8000.0) || !(rate <= 384000.0)) {
        return -1.0f;
    }
    const auto window = static_cast<size_t>(rate / 100.0);
    const auto hop = static_cast<size_t>(rate / 400.0);
    const double hopMs = 1000.0 * static_cast<double>(hop) / rate;
    std::vector<double> falls;
    for (const std::vector<float>* take : takes) {
        if (take != nullptr) {
            collectFalls(envelopeDb(*take, window, hop), hopMs, roomDb, falls);
        }
    }
    if (falls.size() < static_cast<size_t>(kMinEndings)) {
        return -1.0f;
    }
    const size_t p5 = falls.size() / 20;
    std::nth_element(falls.begin(), falls.begin() + static_cast<long>(p5), falls.end());
    return static_cast<float>(falls[p5]);
}

} // namespace Lumora
