#include "ui/DiagnosisRunner.h"

#include "diagnosis/DiagnosisAnalysis.h"

#include "module/ObsFilterState.h"

#include <chrono>
#include <exception>

namespace Lumora {

DiagnosisRunner::DiagnosisRunner() : analyse_(&Lumora::analyse) {}

DiagnosisResult DiagnosisRunner::placeholderAnalyse(const DiagnosisSession& session) {
    DiagnosisResult result;
    result.micType = session.micType;
    result.valid = 1;
    result.summaryJa = "診断が終わったよ！";
    result.summaryEn = "Diagnosis complete!";
    return result;
}

void DiagnosisRunner::setAnalyseFunction(AnalyseFunction analyse) {
    analyse_ = analyse ? std::move(analyse) : AnalyseFunction(&Lumora::analyse);
}

void DiagnosisRunner::disableEffects(ObsFilterState& state, const EffectPreset& working) {
    if (!effectsDisabled_) {
        savedChainActive_ = state.chain.isActive();
        savedFxActive_ = state.effects.isActive();
    }
    EffectPreset off = working;
    off.active = false;
    state.chain.setParameters(off);
    state.effects.setActive(false);
    effectsDisabled_ = true;
}

void DiagnosisRunner::restoreEffects(ObsFilterState& state, const EffectPreset& working) {
    if (!effectsDisabled_) {
        return;
    }
    EffectPreset restored = working;
    if (!savedChainActive_) {
        restored.active = false;
    }
    state.chain.setParameters(restored);
    state.effects.setActive(savedFxActive_);
    effectsDisabled_ = false;
}

std::future<DiagnosisResult>* DiagnosisRunner::futureFor(ObsFilterState* state) {
    if (usesStateFuture_) {
        if (!state || !state->diagnosisTask) {
            return nullptr;
        }
        return &state->diagnosisTask->pending[0];
    }
    return &ownFuture_;
}

void DiagnosisRunner::start(ObsFilterState* state, const DiagnosisSession& session) {
    analysing_ = true;
    failed_ = false;
    usesStateFuture_ = state && state->diagnosisTask;
    if (usesStateFuture_) {
        state->diagnosisTask->started = true;
    }
    try {
        // The thread gets its own copy: the wizard may be restarted while it runs.
        std::future<DiagnosisResult> future = std::async(
            std::launch::async, [analyse = analyse_, copy = session] { return analyse(copy); });
        // Replacing a still-running earlier analysis waits for it here.
        *futureFor(state) = std::move(future);
    } catch (const std::exception&) {
        failed_ = true; // no thread: the wizard stays on "analysing" until cancelled
    }
}

std::optional<DiagnosisResult> DiagnosisRunner::poll(ObsFilterState* state) {
    if (!analysing_) {
        return std::nullopt;
    }
    std::future<DiagnosisResult>* future = futureFor(state);
    if (!future || !future->valid()) {
        return std::nullopt;
    }
    if (future->wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        return std::nullopt;
    }
    try {
        DiagnosisResult result = future->get();
        analysing_ = false;
        return result;
    } catch (const std::exception&) {
        failed_ = true;
    } catch (...) {
        failed_ = true;
    }
    return std::nullopt;
}

void DiagnosisRunner::forgetState() {
    if (usesStateFuture_) {
        usesStateFuture_ = false;
        analysing_ = false;
    }
}

} // namespace Lumora
