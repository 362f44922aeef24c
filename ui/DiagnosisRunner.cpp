#include "ui/DiagnosisRunner.h"

#include "diagnosis/DiagnosisAnalysis.h"

#include <chrono>
#include <exception>

namespace Lumora {

DiagnosisRunner::DiagnosisRunner() : analyse_(&Lumora::analyse) {}

void DiagnosisRunner::setAnalyseFunction(AnalyseFunction analyse) {
    analyse_ = analyse ? std::move(analyse) : AnalyseFunction(&Lumora::analyse);
}

void DiagnosisRunner::holdEffects(FilterEngine& engine) {
    if (!hold_.holding()) {
        hold_ = engine.holdForMeasurement();
    }
}

std::future<DiagnosisResult>* DiagnosisRunner::futureFor(FilterEngine* engine) {
    if (usesEngineFuture_) {
        return engine ? &engine->diagnosisTask().pending : nullptr;
    }
    return &ownFuture_;
}

void DiagnosisRunner::start(FilterEngine* engine, const DiagnosisSession& session) {
    analysing_ = true;
    failed_ = false;
    usesEngineFuture_ = engine != nullptr;
    if (engine) {
        engine->diagnosisTask().started = true;
    }
    try {
        // The thread gets its own copy: the wizard may be restarted while it runs.
        std::future<DiagnosisResult> future = std::async(
            std::launch::async, [analyse = analyse_, copy = session] { return analyse(copy); });
        // Replacing a still-running earlier analysis waits for it here.
        *futureFor(engine) = std::move(future);
    } catch (const std::exception&) {
        failed_ = true; // no thread: the wizard stays on "analysing" until cancelled
    }
}

std::optional<DiagnosisResult> DiagnosisRunner::poll(FilterEngine* engine) {
    if (!analysing_) {
        return std::nullopt;
    }
    std::future<DiagnosisResult>* future = futureFor(engine);
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

void DiagnosisRunner::forgetEngine() {
    hold_.release();
    if (usesEngineFuture_) {
        usesEngineFuture_ = false;
        analysing_ = false;
    }
}

} // namespace Lumora
