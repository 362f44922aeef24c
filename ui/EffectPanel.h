#pragma once

#include "dsp/EffectPreset.h"
#include "dsp/NoiseModelLocation.h"

#include "ui/PresetNamePrompt.h"

#include <QWidget>

#include <functional>

class QPushButton;

namespace Lumora {

class FilterEngine;
class CollapsibleSection;
class CompressorDisplay;
class DynamicsControls;
class EqControls;
class EqCurveDisplay;
class NoiseControls;
class SettingsStore;

// The content of the "Sound" tab: one column of cards through which the user
// edits every stage of the cleaning chain: noise (ambient filter with noise
// learning, AI filter, gate), equaliser and filters, compressor and limiter.
//
// The panel keeps its own copy of the preset. Every edit changes that copy and
// emits presetEdited() at once; the dialog answers by handing currentPreset()
// to the filter, so the voice follows the knob while it turns. loadPreset()
// sets the controls quietly. Easy mode shows the one-click modes and the main
// knob of each stage; Advanced mode shows every knob, band and display.
class EffectPanel : public QWidget {
    Q_OBJECT
public:
    enum Section { kNoiseSection, kEqSection, kDynamicsSection, kSectionCount };

    explicit EffectPanel(QWidget* parent);

    void loadPreset(const EffectPreset& preset);
    const EffectPreset& currentPreset() const { return preset_; }

    void setEasyMode(bool easy);
    bool easyMode() const { return easy_; }

    // The noise-profile label: "✅ Learned" or "⬜ Not learned".
    void setNoiseLearned(bool learned);
    bool noiseLearned() const;
    // The filter whose analyser noise is learned from, and whose chain says
    // whether the AI filter can run; null: no learning. A learning run in
    // progress is cancelled (and the chains put back) when the engine changes,
    // so the dialog sets null before the engine goes away.
    void setEngine(FilterEngine* engine);
    void setNoiseSuppressionStatus(NoiseSuppressionStatus status);

    // Every control back to its starting value (the learned profile stays).
    void resetToDefaults();
    // Asks "Reset to defaults?"; on OK resets and returns true.
    bool confirmReset();

    // Saving the current settings as a preset: with a store the panel asks for a
    // name and saves; without one it only emits saveRequested().
    void setStore(SettingsStore* store) { store_ = store; }
    void setNamePrompt(NamePrompt prompt) { prompt_ = std::move(prompt); }
    bool savePreset();

    void retranslateUi();

    CollapsibleSection* section(Section s) const { return sections_[s]; }
    NoiseControls* noiseControls() const { return noise_; }
    EqControls* eqControls() const { return eq_; }
    DynamicsControls* dynamicsControls() const { return dynamics_; }
    // The two live displays, fed by the dialog's timer.
    EqCurveDisplay* eqCurveDisplay() const;
    CompressorDisplay* compressorDisplay() const;
    QPushButton* resetButton() const { return resetButton_; }
    QPushButton* saveButton() const { return saveButton_; }

signals:
    // After every edit; currentPreset() holds the result.
    void presetEdited();
    // After a confirmed reset (the dialog puts the chain's faders to 0 dB).
    void resetDone();
    void saveRequested();
    void presetSaved(const QString& name);
    void noiseLearningFinished(bool learned);

private:
    void edited();
    void refresh();

    EffectPreset preset_;
    bool easy_ = true;
    SettingsStore* store_ = nullptr;
    NamePrompt prompt_;
    CollapsibleSection* sections_[kSectionCount] = {};
    NoiseControls* noise_ = nullptr;
    EqControls* eq_ = nullptr;
    DynamicsControls* dynamics_ = nullptr;
    QPushButton* resetButton_ = nullptr;
    QPushButton* saveButton_ = nullptr;
};

} // namespace Lumora
