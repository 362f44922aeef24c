#pragma once

// The corpus's cases: where the mic is, how loud the user speaks, what the room
// adds, and the verdicts that physics says are right; and the five takes each
// case gives, made from a voice the way the wizard records them.

#include "Scene.h"
#include "diagnosis/DiagnosisResult.h"
#include "diagnosis/DiagnosisSession.h"

#include <string>
#include <vector>

namespace Lumora::Corpus {

enum class Want { Any, Good, Caution, Warning, NotGood, Close, Far };

constexpr double kLeadIn = 3.5;         // a quick user: the take starts 3.5 s after the last
constexpr double kSpeechStartsAt = 0.5; // the user starts talking during the countdown
constexpr const char* kItems[] = {"clipping", "volume", "noise", "distance", "dynamics", "pop"};

struct Case {
    const char* name;
    int mic;
    double distance;  // metres
    double normalDb;  // active speech level of the normal take, dBFS
    double loudDb;    // of the loud take
    double softDb;    // of the soft take
    double roomUnder; // the room's RMS this many dB under the normal take
    bool pops;        // plosive bursts in the "pa" take
    bool noisy;       // the voice-over-noise gain is checked
    Want want[6];     // clipping, volume, noise, distance, dynamics, pop
    // The distance these cases put the mic at is within the spread of real
    // voices' own low-to-mid balance (about ±3 dB around the average voice)
    // from the recommended distance: a wrong distance verdict here is shown
    // and counted apart, as the limit of a one-take spectral measure.
    bool atResolutionLimit = false;
};

// Whether a verdict is what the case wants (Close and Far: not Good, and on
// that side of the reference).
bool meets(Want want, const DiagnosisItem& item);

// Every case, in the order the table prints them.
const std::vector<Case>& cases();
// The case called `name`, or nullptr.
const Case* findCase(const std::string& name);

struct TakeSet {
    std::vector<float> takes[6]; // by DiagnosisStep, each kLeadIn seconds longer than recorded
    std::vector<float> clean[6]; // the voice alone, for the truth of active speech
};

TakeSet makeTakes(const Voice& voice, const Case& c);

struct Voices {
    std::vector<Voice> list;
    std::string missing;
};

// The voices named in the comma-separated `only` (all when empty).
Voices loadVoices(const std::string& only);

} // namespace Lumora::Corpus
