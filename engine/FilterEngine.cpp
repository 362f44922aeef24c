#include "engine/FilterEngine.h"

#include "settings/PresetLists.h"

#include <algorithm>
#include <new>

namespace Lumora {

FilterEngine::MeasurementHold::MeasurementHold(FilterEngine& engine) : engine_(&engine) {
    engine_->beginHold();
}

FilterEngine::MeasurementHold::MeasurementHold(MeasurementHold&& other) noexcept
    : engine_(other.engine_) {
    other.engine_ = nullptr;
}

FilterEngine::MeasurementHold&
FilterEngine::MeasurementHold::operator=(MeasurementHold&& other) noexcept {
    if (this != &other) {
        release();
        engine_ = other.engine_;
        other.engine_ = nullptr;
    }
    return *this;
}

FilterEngine::MeasurementHold::~MeasurementHold() {
    release();
}

void FilterEngine::MeasurementHold::release() {
    if (engine_) {
        FilterEngine* engine = engine_;
        engine_ = nullptr;
        engine->endHold();
    }
}

// The analyser's atomics are written by the audio thread and read by the
// interface: it is allocated on 64-byte lines of its own.
void FilterEngine::AlignedDelete::operator()(DiagnosisAnalyser* p) const {
    p->~DiagnosisAnalyser();
    ::operator delete(p, std::align_val_t(64));
}

FilterEngine::FilterEngine()
    : chain_(std::make_unique<VoiceChain>()), effects_(std::make_unique<VoiceFxChain>()) {
    void* memory = ::operator new(sizeof(DiagnosisAnalyser), std::align_val_t(64));
    analyser_.reset(new (memory) DiagnosisAnalyser());
    keys_.setTarget(&keyTarget_);
    keys_.setReader([this] { return readSettings(); });
}

FilterEngine::~FilterEngine() = default;

void FilterEngine::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    const int blockHint = std::max(1, static_cast<int>(sampleRate / 10));
    analyser_->prepare(sampleRate);
    chain_->prepare(sampleRate, blockHint);
    effects_->prepare(sampleRate, blockHint);
    // Room for the longest delay the chains can add, and a second to spare.
    for (DelayLine& line : otherLines_) {
        line.prepare(static_cast<int>(sampleRate));
    }
    safety_.setCeilingDb(kSafetyCeilingDb);
    safety_.setReleaseMs(kSafetyReleaseMs);
    safety_.prepare(sampleRate);
    pushCleaning();
    pushSoundFx();
}

void FilterEngine::setNoiseModelLocation(const NoiseModelLocation& location) {
    chain_->setNoiseModelLocation(location);
}

void FilterEngine::setStore(std::unique_ptr<SettingsStore> store) {
    store_ = std::move(store);
}

void FilterEngine::restoreFromSettings() {
    if (!store_) {
        return;
    }
    const AppSettings settings = store_->load();
    voiceOnKeys_ = keysHoldVoices(settings.keyAssignments);
    lastPresetName_ = settings.lastPresetName;
    uiScale_ = settings.uiScale;
    showNumericValues_ = settings.showNumericValues;
    if (!settings.lastPresetName.empty()) {
        if (const SavedEffectPreset* p = findEffectPreset(settings, settings.lastPresetName)) {
            applyEffectPreset(*p);
        }
    }
    // What is in force when no arrow key is held or toggled.
    const KeyAssignment& idle = settings.keyAssignments.defaultKey;
    if (idle.hasEffectPreset) {
        if (const SavedEffectPreset* p = findEffectPreset(settings, idle.effectPresetName)) {
            applyEffectPreset(*p);
        }
    }
    if (idle.hasSoundFxPreset) {
        if (const SavedSoundFxPreset* p = findSoundFxPreset(settings, idle.soundFxPresetName)) {
            fxName_ = p->name;
            setSoundFxPreset(p->preset, true);
        }
    }
    pushSoundFx();
    notify(kAppFieldsChanged);
}

bool FilterEngine::keysHoldVoices(const KeyAssignmentSet& keys) {
    return keys.defaultKey.hasSoundFxPreset ||
           std::any_of(keys.keys.begin(), keys.keys.end(),
                       [](const KeyAssignment& key) { return key.hasSoundFxPreset; });
}

bool FilterEngine::saveAppFields() const {
    return store_ &&
           store_->saveAppFields({recordingMode(), lastPresetName_, uiScale_, showNumericValues_});
}

void FilterEngine::applyEffectPreset(EffectPreset preset) {
    preset.active = true;
    setEffectPreset(preset);
}

void FilterEngine::applyEffectPreset(const SavedEffectPreset& saved) {
    EffectPreset preset = saved.preset;
    preset.name = saved.name;
    preset.description = saved.description;
    preset.recording = saved.recording;
    applyEffectPreset(std::move(preset));
}

void FilterEngine::setEffectPreset(const EffectPreset& preset) {
    cleaning_ = preset;
    pushCleaning();
    notify(kCleaningChanged);
}

void FilterEngine::setGains(float inputDb, float outputDb) {
    cleaning_.inputGainDb = inputDb;
    cleaning_.outputGainDb = outputDb;
    pushCleaning();
    notify(kCleaningChanged);
}

void FilterEngine::applySoundFxPreset(const SoundFxPreset& preset) {
    fxName_.clear(); // a preset object, not a stored voice
    setSoundFxPreset(preset, true);
}

void FilterEngine::applyNamedSoundFxPreset(const SoundFxPreset& preset, const std::string& name) {
    fxName_ = name;
    setSoundFxPreset(preset, fxActive_);
}

double FilterEngine::latencyMs() const {
    if (sampleRate_ <= 0.0) {
        return 0.0;
    }
    int frames = effects_->isAligned() ? VoiceAlignment::delayFramesAt(sampleRate_) : 0;
    if (holds_ == 0 && cleaning_.active && !cleaning_.bypass) {
        frames += chain_->delayFrames(cleaning_);
    }
    return 1000.0 * frames / sampleRate_;
}

std::optional<AppSettings> FilterEngine::readSettings() const {
    return store_ ? std::optional<AppSettings>(store_->load()) : std::nullopt;
}

void FilterEngine::pressKey(int slot, bool down) {
    down ? keys_.press(slot) : keys_.release(slot);
    notify(kKeysChanged);
}

void FilterEngine::releaseHeldKey() {
    if (keys_.heldSlot() != kNoSlot) {
        keys_.release(keys_.heldSlot());
        notify(kKeysChanged);
    }
}

void FilterEngine::keyAssignmentsChanged() {
    if (const std::optional<AppSettings> settings = readSettings()) {
        voiceOnKeys_ = keysHoldVoices(settings->keyAssignments);
        pushSoundFx();
    }
    keys_.refreshIdle();
    notify(kKeysChanged);
}

void FilterEngine::KeyTarget::applyEffectPreset(const EffectPreset& preset) {
    engine_.applyEffectPreset(preset);
}

void FilterEngine::KeyTarget::applySoundFxPreset(const SoundFxPreset& preset) {
    applyNamedSoundFxPreset(preset, std::string());
}

// A voice key means hearing that voice: the effects chain goes on with it (a
// streamer who binds the hotkeys may never have opened the dialog, where the
// chain is switched on). Coming back from the keys puts the earlier voice back
// as it was, effects on or off.
void FilterEngine::KeyTarget::applyNamedSoundFxPreset(const SoundFxPreset& preset,
                                                      const std::string& name) {
    engine_.fxName_ = name;
    engine_.setSoundFxPreset(preset, true);
}

void FilterEngine::KeyTarget::restoreSoundFxPreset(const SoundFxPreset& preset,
                                                   const std::string& name, bool on) {
    engine_.fxName_ = name;
    engine_.setSoundFxPreset(preset, on);
}

void FilterEngine::setSoundFxPreset(const SoundFxPreset& preset, bool active) {
    fx_ = preset;
    fxActive_ = active;
    pushSoundFx();
    notify(kSoundFxChanged);
}

void FilterEngine::setSoundFxActive(bool active) {
    fxActive_ = active;
    pushSoundFx();
    notify(kSoundFxChanged);
}

void FilterEngine::setLastPresetName(const std::string& name) {
    lastPresetName_ = name;
    notify(kAppFieldsChanged);
}

void FilterEngine::beginHold() {
    if (holds_++ == 0) {
        pushCleaning();
        pushSoundFx();
        notify(kHoldChanged);
    }
}

void FilterEngine::endHold() {
    if (holds_ > 0 && --holds_ == 0) {
        pushCleaning();
        pushSoundFx();
        notify(kHoldChanged);
    }
}

void FilterEngine::pushCleaning() {
    if (holds_ > 0) {
        EffectPreset through = cleaning_;
        through.active = false;
        chain_->setParameters(through);
        return;
    }
    chain_->setParameters(cleaning_);
}

void FilterEngine::pushSoundFx() {
    effects_->setParameters(fx_);
    effects_->setActive(fxActive_ && holds_ == 0);
    // The voice is aligned while any voice can come on air without the
    // dialog: the effects are on, or a key holds a voice. A key, a hotkey or
    // obs-websocket then switches voices on one timeline (see
    // VoiceAlignment). A streamer who uses no voices keeps the undelayed
    // voice; switching the effects on or off in the dialog, or giving the
    // first key a voice, is the one change that moves the delay. A
    // measurement hold moves nothing.
    effects_->setAligned(fxActive_ || voiceOnKeys_);
}

int FilterEngine::addListener(Listener listener) {
    const int id = nextListenerId_++;
    listeners_.emplace_back(id, std::move(listener));
    return id;
}

void FilterEngine::removeListener(int id) {
    listeners_.erase(std::remove_if(listeners_.begin(), listeners_.end(),
                                    [id](const auto& entry) { return entry.first == id; }),
                     listeners_.end());
}

void FilterEngine::notify(unsigned changes) {
    for (const auto& entry : listeners_) {
        entry.second(changes);
    }
}

int FilterEngine::processAudio(float* const* planes, int planeCount, int frames) {
    chain_->process(planes, planeCount, frames);
    // The analyser hears the voice before the voice effects (held off while a
    // take records) and their constant delay, so that a take measures its own
    // moments, and before the safety limiter: a diagnosis take must see a
    // clipping microphone as it is.
    analyse(planes, planeCount, frames);
    effects_->process(planes, planeCount, frames);
    safety_.process(planes, planeCount, frames);
    const int delay = chain_->lastDelayFrames() + effects_->delayFrames();
    delayOtherPlanes(planes, planeCount, frames, delay);
    return delay;
}

void FilterEngine::delayOtherPlanes(float* const* planes, int planeCount, int frames, int delay) {
    const int others = std::min(planeCount - 2, kOtherPlanes);
    for (int c = 0; c < others; ++c) {
        otherLines_[c].process(planes[c + 2], planes[c + 2], frames, delay);
    }
}

void FilterEngine::analyse(const float* const* planes, int planeCount, int frames) {
    if (!analyser_ || frames < 1 || planeCount < 1) {
        return;
    }
    if (planeCount == 1) {
        analyser_->process(planes[0], frames);
        return;
    }
    const float* left = planes[0];
    const float* right = planes[1];
    for (int start = 0; start < frames; start += 512) {
        const int n = std::min(512, frames - start);
        for (int i = 0; i < n; ++i) {
            analyserMix_[i] = (left[start + i] + right[start + i]) * 0.5f;
        }
        analyser_->process(analyserMix_, n);
    }
}

} // namespace Lumora
