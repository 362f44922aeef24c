#pragma once

#include "diagnosis/AudioMetrics.h"
#include "diagnosis/DiagnosisResult.h"
#include "diagnosis/DiagnosisSession.h"

#include <cstdint>
#include <functional>
#include <string>

namespace Lumora {

// A text the wizard carries in both languages (UTF-8). English is shown only when
// the language code is exactly "en"; every other code gets the Japanese text.
struct BilingualText {
    const char* ja = "";
    const char* en = "";

    // Japanese for "ja" and English for every other language: the interface
    // has only these two, and a screen half in a language the user did not
    // choose helps nobody.
    const char* pick(const std::string& language) const { return language == "ja" ? ja : en; }
    bool empty() const { return ja[0] == '\0' && en[0] == '\0'; }
};

// One row of the wizard's step table: 0 is the mic choice, 1 to 5 the takes,
// 6 the result.
struct WizardStep {
    BilingualText prompt;
    BilingualText whileRecording;
    BilingualText done;
    float durationS = 0.0f; // 0 for the steps that record nothing
    bool records = false;
    BilingualText hint;
    int ordinal = 0;
};

// The diagnosis wizard's state machine, without any toolkit: the main dialog
// forwards the user's choices and its 16 ms tick, and shows `currentText`.
// Every operation that is not allowed in the current state does nothing and
// returns false.
class DiagnosisController {
public:
    enum State : int32_t {
        kIntro = 0,     // intro and mic choice
        kPrompt = 1,    // prompt for the current take
        kCountdown = 2, // 3 s countdown before a take
        kRecording = 3, // recording one take
        kTakeDone = 4,  // take finished: retry or move on
        kAnalysing = 5, // analysis running on its own thread
        kResult = 6,    // result shown
        kOfferSave = 7, // asking whether to save
        kEnd = 8,       // finished or cancelled
    };

    static constexpr int kStepCount = 7;
    static constexpr int kFirstTake = 1;
    static constexpr int kLastTake = 5;
    static constexpr int kResultStep = 6;
    static constexpr double kCountdownSeconds = 3.0;

    using ResultCallback = std::function<void(const DiagnosisResult&)>;

    DiagnosisController();

    static const WizardStep& step(int index); // clamped to 0..6

    // Back to the mic choice, as on opening the wizard: timers zeroed, duration
    // 3 s, latest snapshot at its initial values, session cleared, result and
    // single-step flag dropped.
    void reset();

    bool selectMic(int32_t micType);
    bool startTake();
    void tick(double dt, const AudioMetrics& snapshot);
    bool retry();
    // From a finished take to the next take's prompt, or after the silence take
    // to the analysis (state 5): the dialog then starts the analysis.
    bool next();
    // Stops a countdown, a take or the analysis and ends the wizard; a take in
    // progress loses its snapshots.
    bool cancel();
    // Leaves the wizard from a state that has nothing running (mic choice,
    // prompt, finished take, result, save offer).
    bool finish();
    bool deliverResult(DiagnosisResult result);
    bool apply();
    bool offerSave();
    bool save();

    // Each take measures that take alone. When a take's recording starts, the
    // dialog restarts the analyser's held measures and passes the epoch it got:
    // snapshots still carrying an earlier epoch (the audio thread has not run
    // since) are not recorded.
    void setTakeEpoch(uint32_t epoch) { takeEpoch_ = epoch; }
    // The recording take's raw audio at `sampleRate`: the room's noise profile
    // and how live the room is are measured from it.
    void appendAudio(const float* samples, size_t n, double sampleRate);

    void setResultCallback(ResultCallback callback) { callback_ = std::move(callback); }

    State state() const { return state_; }
    int currentStep() const { return session_.currentStep; }
    const DiagnosisSession& session() const { return session_; }
    const AudioMetrics& latestSnapshot() const { return latest_; }
    bool hasResult() const { return hasResult_; }
    const DiagnosisResult& result() const { return result_; }

    double countdownElapsed() const { return countdownElapsed_; }
    double recordingElapsed() const { return recordingElapsed_; }
    double recordingDuration() const { return recordingDuration_; }
    // Whole seconds left in the countdown, 3 down to 1 (0 outside the countdown).
    int countdownSecondsLeft() const;
    // 0..1 for the countdown widget: the countdown in state 2, the take in state 3.
    double progress() const;
    // The takes done so far out of five, for the step dots.
    int takesCompleted() const;

    std::string currentText(const std::string& language) const;
    std::string currentHint(const std::string& language) const;

private:
    void clearTimers();

    State state_ = kIntro;
    double countdownElapsed_ = 0.0;
    double recordingElapsed_ = 0.0;
    double recordingDuration_ = 3.0;
    AudioMetrics latest_;
    DiagnosisSession session_;
    bool hasResult_ = false;
    DiagnosisResult result_;
    uint32_t takeEpoch_ = 0;
    ResultCallback callback_;
};

} // namespace Lumora
