#pragma once

#include "dsp/SoundFxPreset.h"
#include "ui/FxPresetDef.h"
#include "ui/KnobBindings.h"

#include "ui/PresetNamePrompt.h"

#include <QWidget>

#include <array>
#include <functional>
#include <vector>

class QFrame;
class QHBoxLayout;
class QPushButton;

namespace Lumora {

class CollapsibleSection;
class FxModulationControls;
class FxPitchControls;
class Knob;
class ReorderableColumn;
class SettingsStore;

// The content of the "FX" tab: one card per voice effect (pitch and formant,
// modulation, radio, delay and echo, reverb), each with a drag handle, an
// on/off switch, its knobs and a button that opens the effect's built-in
// presets. Dragging a card by its handle moves it in the column, and the
// column's order is the order in which the effects chain runs them
// (effectOrder): a reverb dragged above the delay reverberates before it echoes.
//
// Like the sound panel it keeps its own copy of the preset, emits
// presetEdited() after every edit and loads quietly.
class SoundFxPanel : public QWidget {
    Q_OBJECT
public:
    explicit SoundFxPanel(QWidget* parent);

    void loadPreset(const SoundFxPreset& preset);
    const SoundFxPreset& currentPreset() const { return preset_; }

    void setEasyMode(bool easy);
    bool easyMode() const { return easy_; }
    void retranslateUi();

    // Every effect off with its starting values, in the starting order.
    void resetToDefaults();
    // Asks "Reset to defaults?"; on OK resets and returns true.
    bool confirmReset();

    void setStore(SettingsStore* store) { store_ = store; }
    void setNamePrompt(NamePrompt prompt) { prompt_ = std::move(prompt); }
    // Asks "Enter a preset name:" and saves the whole FX state (with a store).
    bool savePreset();

    // Opens the built-in presets of one effect under `anchor`; the popup is
    // returned for tests and closes itself when a card is chosen.
    QFrame* showFxPresetPopup(QWidget* anchor, const std::vector<FxPresetDef>& presets);

    // The effects a preset has on, in the order they run ("Pitch Shifter &
    // Formant → Reverb"), or "No effects": the description of a saved preset.
    static QString describe(const SoundFxPreset& preset);

    // The effect codes from top to bottom.
    std::array<int32_t, kEffectCount> displayOrder() const;
    // Moves an effect's card to `position` (0 = top) and makes the new column
    // order the processing order.
    void moveSection(int effectCode, int position);

    CollapsibleSection* section(int effectCode) const;
    QPushButton* presetButton(int effectCode) const;
    FxPitchControls* pitchControls() const { return pitch_; }
    FxModulationControls* modulationControls() const { return modulation_; }
    Knob* knob(const QString& name) const;
    QPushButton* resetButton() const { return resetButton_; }
    QPushButton* saveButton() const { return saveButton_; }

signals:
    void presetEdited();
    void resetDone();
    void saveRequested();
    void presetSaved(const QString& name);

private:
    void edited();
    void refresh();
    void buildRadio();
    void buildDelay();
    void buildReverb();
    QHBoxLayout* knobRow(CollapsibleSection* section);
    void addKnob(CollapsibleSection* section, QHBoxLayout* row, const KnobSpec& spec,
                 KnobBindings::Field field, bool advanced);
    void orderFromPreset();
    void orderMoved();

    SoundFxPreset preset_;
    bool easy_ = true;
    SettingsStore* store_ = nullptr;
    NamePrompt prompt_;
    KnobBindings knobs_{"Lumora::SoundFxPanel"};
    std::array<CollapsibleSection*, kEffectCount> sections_{};
    std::array<QPushButton*, kEffectCount> presetButtons_{};
    FxPitchControls* pitch_ = nullptr;
    FxModulationControls* modulation_ = nullptr;
    std::vector<QWidget*> advancedOnly_;
    ReorderableColumn* column_ = nullptr;
    QPushButton* resetButton_ = nullptr;
    QPushButton* saveButton_ = nullptr;
};

} // namespace Lumora
