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

// Peaks: the clipping truth read from the takes' own samples (see clippingTruth),
// since a voice's peaks over its speech level are its own (11 to 18 dB on the
// corpus's voices), so a fixed level does not say whether a take comes near full scale.
enum class Want { Any, Good, Caution, Warning, NotGood, Close, Far, Peaks };

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
    // voices' own low-to-mid balance (-9 to +3.5 dB around the average voice)
    // from the recommended distance: a wrong distance verdict here is shown
    // and counted apart, as the limit of a one-take spectral measure.
    bool atResolutionLimit = false;
    // The room's tail (RT60 0.45 s) even though the mic is near: an untreated
    // room heard by a well-placed mic. Far mics (60 cm and more) always hear it.
    bool liveRoom = false;
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

// Where a take's recorded part begins: it is the take's last durationS
// seconds, after the lead-in (0 for a take shorter than that).
size_t recordedFrom(const std::vector<float>& take, DiagnosisStep step);

// What the recorded parts of the normal, loud and "pa" takes say of clipping:
// Warning when a sample reached full scale, Good when no sample came within
// 3 dB of it. Between the two the truth is Any: whether peaks near full scale
// deserve a Caution depends on how often they come, which the verdict judges
// by the 95th percentile of its held peak, and one stray peak is no fault.
Want clippingTruth(const TakeSet& set);

struct Voices {
    std::vector<Voice> list;
    std::string missing;
};

// The voices named in the comma-separated `only` (all when empty).
Voices loadVoices(const std::string& only);

} // namespace Lumora::Corpus
