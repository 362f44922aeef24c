#include "dsp/NoiseSuppressor.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr float kDefaultLimitDb = 40.0f;
constexpr float kDefaultMix = 0.8f;

// The model reads limits from 0 dB (no suppression) to 100 dB (none to speak of);
// a value that is not a number falls back to the default.
float safeLimitDb(float db) {
    return std::isfinite(db) ? std::clamp(db, 0.0f, 100.0f) : kDefaultLimitDb;
}

float safeMix(float mix) {
    return std::isfinite(mix) ? std::clamp(mix, 0.0f, 1.0f) : kDefaultMix;
}

} // namespace

NoiseSuppressor::~NoiseSuppressor() {
    release();
}

bool NoiseSuppressor::prepare(const DeepFilterLibrary* library, const std::string& modelPath) {
    release();
    if (library && library->isLoaded() && !modelPath.empty()) {
        handle_ = library->create(modelPath.c_str(), safeLimitDb(attenLimitDb()), "error");
        library_ = handle_ ? library : nullptr;
        // Our framing is fixed at 480 samples; a model that wants other frames
        // is not one this stage can drive.
        if (handle_ && library->frameLength &&
            library->frameLength(handle_) != static_cast<std::size_t>(kFrameLength)) {
            release();
        }
    }
    limitDirty_.store(false, std::memory_order_relaxed);
    inputFrame_.fill(0.0f);
    inputCount_ = 0;
    dryFrame_.fill(0.0f);
    outputFrame_.fill(0.0f);
    outputIndex_ = 0;
    outputCount_ = 0;
    return handle_ != nullptr;
}

void NoiseSuppressor::release() {
    if (handle_ && library_) {
        library_->destroy(handle_);
    }
    handle_ = nullptr;
    library_ = nullptr;
}

void NoiseSuppressor::process(float* plane, int frames) {
    if (!handle_) {
        return;
    }
    if (limitDirty_.exchange(false, std::memory_order_acq_rel)) {
        library_->setAttenLim(handle_, safeLimitDb(attenLimitDb()));
    }
    const float mix = safeMix(this->mix());
    for (int i = 0; i < frames; ++i) {
        const float x = plane[i];
        plane[i] = outputIndex_ < outputCount_ ? outputFrame_[outputIndex_++] : 0.0f;
        if (outputIndex_ >= outputCount_) {
            outputIndex_ = 0;
            outputCount_ = 0;
        }
        // A sample that is not a number would spoil the model's recurrent state
        // for good; it enters as silence.
        inputFrame_[inputCount_++] = std::isfinite(x) ? x : 0.0f;
        if (inputCount_ == kFrameLength) {
            processFrame(mix);
        }
    }
}

void NoiseSuppressor::processFrame(float mix) {
    library_->processFrame(handle_, inputFrame_.data(), outputFrame_.data());
    float* out = outputFrame_.data();
    const float* dry = dryFrame_.data();
    if (mix < 1.0f) {
        const float wet = mix;
        const float keep = 1.0f - mix;
        for (int k = 0; k < kFrameLength; k += 4) {
            out[k] = keep * dry[k] + wet * out[k];
            out[k + 1] = keep * dry[k + 1] + wet * out[k + 1];
            out[k + 2] = keep * dry[k + 2] + wet * out[k + 2];
            out[k + 3] = keep * dry[k + 3] + wet * out[k + 3];
        }
    }
    for (int k = 0; k < kFrameLength; ++k) {
        if (!std::isfinite(out[k])) {
            out[k] = 0.0f;
        }
    }
    dryFrame_ = inputFrame_;
    outputCount_ = kFrameLength;
    outputIndex_ = 0;
    inputCount_ = 0;
}

} // namespace Lumora
