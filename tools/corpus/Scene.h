#pragma once

#include <string>
#include <vector>

namespace Lumora::Corpus {

constexpr int kRate = 48000;

// A voice of the corpus: speech at 48 kHz mono, treated as the far-field voice
// heard by a cardioid at 30 cm.
struct Voice {
    std::string name;
    bool synthetic = false; // espeak-ng: a robustness check, not a human voice
    std::vector<float> speech;
};

// Reads the files (WAV through libsndfile; ".raw" as 16-bit mono at `rawRate`)
// one after another with a quarter second of silence between them, at 48 kHz.
bool loadVoice(const std::string& name, const std::vector<std::string>& files, bool synthetic,
               int rawRate, Voice& out, std::string& error);

// `seconds` of the voice's speech from `offset` seconds on, looping.
std::vector<float> speechStretch(const Voice& voice, double offset, double seconds);

// The mic at `distanceM` instead of 30 cm: the proximity effect of a cardioid,
// |H(f, r)| = sqrt(1 + (1 / 2kr)^2), applied as H(f, r) / H(f, 0.3). Each H is a
// first-order shelf (s + c / 2r) / s, so the ratio is the exact first-order
// filter (s + c / 2r) / (s + c / 0.6), here by the bilinear transform.
void applyDistance(std::vector<float>& x, double distanceM);

// A far mic also hears the room: the voice convolved with exponentially
// decaying noise (RT60 `rt60` s), added at a direct-to-reverberant ratio that
// falls with distance, 20 log10(rc / r) with the critical distance rc = 0.8 m
// of a cardioid in a small furnished room.
void applyRoom(std::vector<float>& x, double distanceM, double rt60, unsigned seed);

// Fan-like room noise: broadband with most of its energy low, slowly swelling
// by a few dB, at `rmsDb` dBFS.
std::vector<float> fanNoise(size_t n, double rmsDb, unsigned seed);

// Plosive bursts: the breath of a "pa" on the capsule, a unipolar pressure
// pulse of a few ms rising time with its energy below 100 Hz, every `spacing`
// seconds from `start` on, at `peak` (linear); the caller's sum clips at 1.
void addPops(std::vector<float>& x, double start, double spacing, double peak);

// The active speech level (dB): energy mean of the 10 ms blocks within 20 dB of
// the 90th percentile block, as the analyser's summary selects them.
double activeLevelDb(const std::vector<float>& x, size_t from, size_t to);
// The 10 ms blocks of [from, to) that are active speech by that rule.
std::vector<bool> activeBlocks(const std::vector<float>& x, size_t from, size_t to);
// Energy mean level of [from, to) in dB.
double levelDb(const std::vector<float>& x, size_t from, size_t to);

void scale(std::vector<float>& x, double db);
void hardClip(std::vector<float>& x);

} // namespace Lumora::Corpus
