#pragma once

#include "dsp/EffectPreset.h"
#include "dsp/SoundFxPreset.h"
#include "settings/KeyAssignmentRules.h"

#include <QObject>

#include <string>

namespace Lumora {

class FilterEngine;
class SettingsStore;

// The dialog's one path to the filter engine. Every page reads what is on air
// from here and makes every edit through it; every change the engine reports
// (a procedure, a key, the diagnosis) comes back out as a signal that the pages
// reload from. Without an engine (a dialog on no filter, the screenshot tool)
// it keeps its own copies, so the pages behave the same.
class EngineBinding : public QObject {
    Q_OBJECT
public:
    EngineBinding(QObject* parent, FilterEngine* engine);
    ~EngineBinding() override;

    FilterEngine* engine() const { return engine_; }
    // Null without an engine or without a settings file.
    SettingsStore* store() const;
    // The engine is about to be freed: nothing of it is touched any more.
    void detach();

    const EffectPreset& cleaning() const { return cleaning_; }
    const SoundFxPreset& soundFx() const { return soundFx_; }
    bool soundFxActive() const { return soundFxActive_; }
    bool recordingMode() const;

    // The dialog opens: both chains run what the filter has.
    void switchOn();
    // An edit made on a page, which already shows it: the other pages are not
    // reloaded (a knob being turned must not be set back under the mouse).
    void editCleaning(const EffectPreset& preset);
    void editSoundFx(const SoundFxPreset& preset, bool active);
    // A preset chosen as a whole (a list, the diagnosis): every page shows it,
    // and a non-empty name becomes the one a new filter starts with.
    void useCleaning(const EffectPreset& preset, const std::string& lastPresetName = {});

    // A preset applied as a whole; the sound-effect one keeps the effects'
    // on/off, and a stored one is known on air by its name.
    void applyEffectPreset(const EffectPreset& preset);
    void applySoundFxPreset(const SoundFxPreset& preset, const std::string& storedName = {});

    // The voice keys: the engine's state, shared with OBS hotkeys and
    // obs-websocket. Without an engine nothing is assigned: keys only go down
    // and up.
    const KeyAssignmentRules& keys() const;
    void pressKey(int slot, bool down);
    void releaseHeldKey();
    void keyAssignmentsChanged();

signals:
    // The cleaning preset changed other than by an edit on a page.
    void cleaningChanged();
    // The same for the sound-effect preset or whether it runs.
    void soundFxChanged();
    // A voice key went down or up, wherever it was pressed.
    void keysChanged();

private:
    void writeCleaning(const EffectPreset& preset, bool fromPage);
    void writeSoundFx(const SoundFxPreset& preset, bool active, bool fromPage);
    void onEngineChanged(unsigned changes);

    FilterEngine* engine_;
    int listener_ = 0;
    int pageEdits_ = 0; // inside a write made by a page
    // What the engine has (mirrored on every change), or the own copies.
    EffectPreset cleaning_;
    SoundFxPreset soundFx_;
    bool soundFxActive_ = true;
    KeyAssignmentRules idleKeys_;
};

} // namespace Lumora
