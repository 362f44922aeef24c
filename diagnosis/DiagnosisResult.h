#pragma once

#include "diagnosis/AudioMetrics.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Lumora {

enum MicType : int32_t { kMicDynamic = 0, kMicCondenser = 1, kMicUsb = 2, kMicUnknown = 3 };

enum VerdictLevel : int32_t { kLevelGood = 0, kLevelCaution = 1, kLevelWarning = 2 };

struct DiagnosisItem {
    std::string key; // "clipping", "volume", "noise", "distance", "dynamics" or "pop"
    int32_t level = kLevelGood;
    std::string titleJa;
    std::string adviceJa;
    std::string titleEn;
    std::string adviceEn;
    float value = -96.0f;
};

struct DiagnosisResult {
    std::vector<DiagnosisItem> items;
    int32_t overall = kLevelGood;
    int32_t micType = kMicUnknown;
    int32_t valid = 0;
    std::string summaryJa;
    std::string summaryEn;
    StepStats speech;
    StepStats silence;
    // The soft take: the gate is never set above its quiet syllables.
    StepStats soft;
    // The room's noise per spectral-reducer band, learned from the silence
    // take's audio; -96 where unknown.
    std::array<float, kSpectrumBandCount> noiseSpectrum = AudioMetrics{}.spectrumDb;
};

} // namespace Lumora
