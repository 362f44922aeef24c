#include "ui/EngineBinding.h"

#include "engine/FilterEngine.h"

namespace Lumora {

EngineBinding::EngineBinding(QObject* parent, FilterEngine* engine)
    : QObject(parent), engine_(engine) {
    if (engine_) {
        listener_ = engine_->addListener([this](unsigned changes) { onEngineChanged(changes); });
        cleaning_ = engine_->effectPreset();
        soundFx_ = engine_->soundFxPreset();
        soundFxActive_ = engine_->soundFxActive();
    }
}

EngineBinding::~EngineBinding() {
    detach();
}

void EngineBinding::detach() {
    if (engine_) {
        engine_->removeListener(listener_);
    }
    engine_ = nullptr;
}

SettingsStore* EngineBinding::store() const {
    return engine_ ? engine_->store() : nullptr;
}

bool EngineBinding::recordingMode() const {
    return engine_ && engine_->recordingMode();
}

void EngineBinding::switchOn() {
    EffectPreset on = cleaning_;
    on.active = true;
    writeCleaning(on, false);
    writeSoundFx(soundFx_, true, false);
}

void EngineBinding::editCleaning(const EffectPreset& preset) {
    writeCleaning(preset, true);
}

void EngineBinding::editSoundFx(const SoundFxPreset& preset, bool active) {
    writeSoundFx(preset, active, true);
}

void EngineBinding::useCleaning(const EffectPreset& preset, const std::string& lastPresetName) {
    applyEffectPreset(preset);
    if (engine_ && !lastPresetName.empty()) {
        engine_->setLastPresetName(lastPresetName);
        (void)engine_->saveAppFields();
    }
}

void EngineBinding::applyEffectPreset(const EffectPreset& preset) {
    EffectPreset applied = preset;
    applied.active = true;
    writeCleaning(applied, false);
}

void EngineBinding::applySoundFxPreset(const SoundFxPreset& preset, const std::string& storedName) {
    if (engine_ && !storedName.empty()) {
        engine_->applyNamedSoundFxPreset(preset, storedName);
        return;
    }
    writeSoundFx(preset, soundFxActive_, false);
}

const KeyAssignmentRules& EngineBinding::keys() const {
    return engine_ ? engine_->keys() : idleKeys_;
}

void EngineBinding::pressKey(int slot, bool down) {
    if (engine_) {
        engine_->pressKey(slot, down);
        return;
    }
    down ? idleKeys_.press(slot) : idleKeys_.release(slot);
    emit keysChanged();
}

void EngineBinding::releaseHeldKey() {
    if (engine_) {
        engine_->releaseHeldKey();
    } else if (idleKeys_.heldSlot() != kNoSlot) {
        idleKeys_.release(idleKeys_.heldSlot());
        emit keysChanged();
    }
}

void EngineBinding::keyAssignmentsChanged() {
    if (engine_) {
        engine_->keyAssignmentsChanged();
    }
}

void EngineBinding::writeCleaning(const EffectPreset& preset, bool fromPage) {
    if (!engine_) {
        cleaning_ = preset;
        if (!fromPage) {
            emit cleaningChanged();
        }
        return;
    }
    pageEdits_ += fromPage ? 1 : 0;
    engine_->setEffectPreset(preset);
    pageEdits_ -= fromPage ? 1 : 0;
}

void EngineBinding::writeSoundFx(const SoundFxPreset& preset, bool active, bool fromPage) {
    if (!engine_) {
        soundFx_ = preset;
        soundFxActive_ = active;
        if (!fromPage) {
            emit soundFxChanged();
        }
        return;
    }
    pageEdits_ += fromPage ? 1 : 0;
    engine_->setSoundFxPreset(preset, active);
    pageEdits_ -= fromPage ? 1 : 0;
}

void EngineBinding::onEngineChanged(unsigned changes) {
    cleaning_ = engine_->effectPreset();
    soundFx_ = engine_->soundFxPreset();
    soundFxActive_ = engine_->soundFxActive();
    if (pageEdits_ > 0) {
        return;
    }
    if (changes & FilterEngine::kCleaningChanged) {
        emit cleaningChanged();
    }
    if (changes & FilterEngine::kSoundFxChanged) {
        emit soundFxChanged();
    }
    if (changes & FilterEngine::kKeysChanged) {
        emit keysChanged();
    }
}

} // namespace Lumora
