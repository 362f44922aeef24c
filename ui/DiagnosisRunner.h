#pragma once

#include "diagnosis/DiagnosisResult.h"
#include "diagnosis/DiagnosisSession.h"
#include "engine/FilterEngine.h"

#include <functional>
#include <future>
#include <optional>

namespace Lumora {

// The dialog's side of a running diagnosis: holding the filter's chains
// straight through while the takes are recorded, and running the analysis on a
// thread of its own, polled from the dialog's tick.
class DiagnosisRunner {
public:
    using AnalyseFunction = std::function<DiagnosisResult(const DiagnosisSession&)>;

    DiagnosisRunner();

    void setAnalyseFunction(AnalyseFunction analyse);

    // Holds the chains straight through so the analyser hears the raw voice;
    // whatever is applied meanwhile goes on air when the hold is released.
    void holdEffects(FilterEngine& engine);
    void releaseEffects() { hold_.release(); }
    bool effectsHeld() const { return hold_.holding(); }

    // Starts the analysis of a copy of `session` on a new thread. The future is
    // kept in the engine's diagnosis task when there is an engine, so a filter
    // removed mid-analysis waits for the thread before it is freed.
    void start(FilterEngine* engine, const DiagnosisSession& session);
    // Without waiting: the result once the analysis has finished. A failed
    // analysis leaves the analysing flag set and yields nothing.
    std::optional<DiagnosisResult> poll(FilterEngine* engine);
    bool analysing() const { return analysing_; }
    bool failed() const { return failed_; }
    // The engine is going away: let go of the hold and forget its future (the
    // engine waits for it).
    void forgetEngine();

private:
    std::future<DiagnosisResult>* futureFor(FilterEngine* engine);

    AnalyseFunction analyse_;
    std::future<DiagnosisResult> ownFuture_;
    bool usesEngineFuture_ = false;
    bool analysing_ = false;
    bool failed_ = false;
    FilterEngine::MeasurementHold hold_;
};

} // namespace Lumora
