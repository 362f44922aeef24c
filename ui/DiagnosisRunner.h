#pragma once

#include "diagnosis/DiagnosisResult.h"
#include "diagnosis/DiagnosisSession.h"
#include "dsp/EffectPreset.h"

#include <functional>
#include <future>
#include <optional>

namespace Lumora {

struct ObsFilterState;

// The dialog's side of a running diagnosis: switching the filter's effects off
// while the takes are recorded and back on afterwards, and running the analysis
// on a thread of its own, polled from the dialog's tick.
class DiagnosisRunner {
public:
    using AnalyseFunction = std::function<DiagnosisResult(const DiagnosisSession&)>;

    DiagnosisRunner();

    // Stands in for the analysis until the real one is wired in: a valid
    // result without items, with the session's mic type.
    static DiagnosisResult placeholderAnalyse(const DiagnosisSession& session);

    void setAnalyseFunction(AnalyseFunction analyse);

    // Saves the chain's and the effects' on switches, then turns both off so the
    // analyser hears the raw voice. `working` is the dialog's copy of the chain's
    // parameters.
    void disableEffects(ObsFilterState& state, const EffectPreset& working);
    // Puts both switches back as they were; does nothing when they are not off.
    void restoreEffects(ObsFilterState& state, const EffectPreset& working);
    bool effectsDisabled() const { return effectsDisabled_; }

    // Starts the analysis of a copy of `session` on a new thread. The future is
    // kept in the filter's diagnosis task state when there is one.
    void start(ObsFilterState* state, const DiagnosisSession& session);
    // Without waiting: the result once the analysis has finished. A failed
    // analysis leaves the analysing flag set and yields nothing.
    std::optional<DiagnosisResult> poll(ObsFilterState* state);
    bool analysing() const { return analysing_; }
    bool failed() const { return failed_; }
    // The filter state is going away: forget its future (the state waits for it).
    void forgetState();

private:
    std::future<DiagnosisResult>* futureFor(ObsFilterState* state);

    AnalyseFunction analyse_;
    std::future<DiagnosisResult> ownFuture_;
    bool usesStateFuture_ = false;
    bool analysing_ = false;
    bool failed_ = false;
    bool effectsDisabled_ = false;
    bool savedChainActive_ = false;
    bool savedFxActive_ = false;
};

} // namespace Lumora
