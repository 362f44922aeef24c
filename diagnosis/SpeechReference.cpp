#include "diagnosis/SpeechReference.h"

#include "diagnosis/DiagnosisAnalyser.h"
#include "diagnosis/DiagnosisResult.h"

#include <array>
#include <cmath>

namespace Lumora {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kSpeedOfSound = 343.0;
// The analyser's bands at the usual host rate; at 44.1 kHz they differ by
// well under 0.1 dB in the balance.
constexpr double kRate = 48000.0;

// Byrne et al. (1994), the international LTASS: third-octave centres (Hz) and
// levels (dB SPL) for an overall level of 70 dB.
constexpr std::array<double, 25> kCentreHz = {
    63,   80,   100,  125,  160,  200,  250,  315,  400,  500,   630,   800,  1000,
    1250, 1600, 2000, 2500, 3150, 4000, 5000, 6300, 8000, 10000, 12500, 16000};
constexpr std::array<double, 25> kLevelDb = {38.6, 43.5, 54.4, 57.7, 56.8, 60.2, 60.3, 59.0, 62.1,
                                             62.1, 60.5, 56.8, 53.7, 53.0, 52.0, 48.7, 48.1, 46.8,
                                             45.6, 44.5, 44.3, 43.7, 43.4, 41.3, 40.7};

} // namespace

double speechReferenceBalanceDb(double distanceM) {
    // Each third-octave band's power spread evenly over its band, integrated in
    // 64 steps per band against the band filters and the proximity lift.
    constexpr int kSteps = 64;
    double total = 0.0, low = 0.0, high = 0.0;
    for (size_t b = 0; b < kCentreHz.size(); ++b) {
        const double lo = kCentreHz[b] * std::pow(2.0, -1.0 / 6.0);
        const double hi = kCentreHz[b] * std::pow(2.0, 1.0 / 6.0);
        const double bandPower = std::pow(10.0, kLevelDb[b] / 10.0) / kSteps;
        for (int i = 0; i < kSteps; ++i) {
            const double hz = lo + (hi - lo) * (i + 0.5) / kSteps;
            double p = bandPower;
            if (distanceM > 0.0) {
                const double kr = 2.0 * kPi * hz / kSpeedOfSound * distanceM;
                p *= 1.0 + 1.0 / (4.0 * kr * kr);
            }
            total += p;
            low += p * DiagnosisAnalyser::lowBandPower(kRate, hz);
            high += p * DiagnosisAnalyser::highBandPower(kRate, hz);
        }
    }
    return 10.0 * std::log10(low / (total - low - high));
}

double recommendedMicDistanceM(int32_t micType) {
    switch (micType) {
    case kMicDynamic:
        return 0.08;
    case kMicCondenser:
        return 0.15;
    case kMicUsb:
        return 0.20;
    default:
        return 0.15;
    }
}

} // namespace Lumora
