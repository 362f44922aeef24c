#include "ui/EffectPanel.h"

#include "ui/ResetPrompt.h"

#include "diagnosis/RecommendedSettings.h"
#include "engine/FilterEngine.h"
#include "settings/SettingsStore.h"
#include "ui/CollapsibleSection.h"
#include "ui/DynamicsControls.h"
#include "ui/EqControls.h"
#include "ui/EqCurveDisplay.h"
#include "ui/NoiseControls.h"
#include "ui/NoiseLearner.h"
#include "ui/PanelFoot.h"
#include "ui/PresetNamePrompt.h"
#include "ui/SaveFailure.h"
#include "ui/SoundShapes.h"
#include "ui/ToggleSwitch.h"

#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace Lumora {

EffectPanel::EffectPanel(QWidget* parent) : QWidget(parent), preset_(SoundShapes::panelDefaults()) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 8);
    layout->setSpacing(10);

    for (int s = 0; s < kSectionCount; ++s) {
        sections_[s] = new CollapsibleSection(this);
        layout->addWidget(sections_[s]);
    }
    noise_ = new NoiseControls(sections_[kNoiseSection]->body(), &preset_);
    sections_[kNoiseSection]->bodyLayout()->addWidget(noise_);
    eq_ = new EqControls(sections_[kEqSection]->body(), &preset_);
    sections_[kEqSection]->bodyLayout()->addWidget(eq_);
    sections_[kEqSection]->setSwitchEnabled(true);
    sections_[kEqSection]->addHeaderWidget(eq_->resetButton());
    dynamics_ = new DynamicsControls(sections_[kDynamicsSection]->body(), &preset_);
    sections_[kDynamicsSection]->bodyLayout()->addWidget(dynamics_);
    sections_[kDynamicsSection]->setSwitchEnabled(true);

    connect(noise_, &NoiseControls::edited, this, &EffectPanel::edited);
    connect(noise_, &NoiseControls::noiseLearningFinished, this,
            &EffectPanel::noiseLearningFinished);
    connect(eq_, &EqControls::edited, this, &EffectPanel::edited);
    connect(dynamics_, &DynamicsControls::edited, this, &EffectPanel::edited);
    connect(sections_[kEqSection]->toggle(), &ToggleSwitch::toggled, this, [this](bool on) {
        preset_.eq.enabled = on;
        eq_->refresh();
        edited();
    });
    // The card's switch is the whole stage: compressor and limiter together;
    // the limiter keeps a switch of its own inside.
    connect(sections_[kDynamicsSection]->toggle(), &ToggleSwitch::toggled, this, [this](bool on) {
        preset_.comp.enabled = on;
        preset_.limiter.enabled = on;
        dynamics_->refresh();
        edited();
    });

    layout->addLayout(saveAndResetRow(this, saveButton_, resetButton_));
    layout->addStretch(1);
    connect(saveButton_, &QPushButton::clicked, this, &EffectPanel::savePreset);
    connect(resetButton_, &QPushButton::clicked, this, &EffectPanel::confirmReset);

    retranslateUi();
    refresh();
    setEasyMode(true);
}

void EffectPanel::edited() {
    {
        const QSignalBlocker a(sections_[kEqSection]->toggle());
        const QSignalBlocker b(sections_[kDynamicsSection]->toggle());
        sections_[kEqSection]->toggle()->setChecked(preset_.eq.enabled);
        sections_[kDynamicsSection]->toggle()->setChecked(preset_.comp.enabled ||
                                                          preset_.limiter.enabled);
    }
    emit presetEdited();
}

void EffectPanel::refresh() {
    noise_->refresh();
    eq_->refresh();
    dynamics_->refresh();
    const QSignalBlocker a(sections_[kEqSection]->toggle());
    const QSignalBlocker b(sections_[kDynamicsSection]->toggle());
    sections_[kEqSection]->toggle()->setChecked(preset_.eq.enabled);
    sections_[kDynamicsSection]->toggle()->setChecked(preset_.comp.enabled ||
                                                      preset_.limiter.enabled);
}

void EffectPanel::loadPreset(const EffectPreset& preset) {
    preset_ = preset;
    refresh();
    setNoiseLearned(NoiseLearner::heardAnything(preset_.spectral.profileDb));
}

void EffectPanel::setEasyMode(bool easy) {
    easy_ = easy;
    noise_->setEasyMode(easy);
    eq_->setEasyMode(easy);
    dynamics_->setEasyMode(easy);
}

void EffectPanel::setNoiseLearned(bool learned) {
    noise_->setNoiseLearned(learned);
}

bool EffectPanel::noiseLearned() const {
    return noise_->noiseLearned();
}

void EffectPanel::setEngine(FilterEngine* engine) {
    noise_->setEngine(engine);
    if (engine) {
        eq_->curve()->setSampleRate(engine->chain().sampleRate());
    }
}

void EffectPanel::setNoiseSuppressionStatus(NoiseSuppressionStatus status) {
    noise_->setNoiseSuppressionStatus(status);
}

EqCurveDisplay* EffectPanel::eqCurveDisplay() const {
    return eq_->curve();
}

CompressorDisplay* EffectPanel::compressorDisplay() const {
    return dynamics_->display();
}

void EffectPanel::resetToDefaults() {
    // The learned noise profile describes the room, not a setting: keep it.
    const auto profile = preset_.spectral.profileDb;
    const bool active = preset_.active;
    preset_ = SoundShapes::panelDefaults();
    preset_.spectral.profileDb = profile;
    preset_.active = active;
    refresh();
    edited();
}

bool EffectPanel::confirmReset() {
    if (!confirmResetToDefaults(this)) {
        return false;
    }
    resetToDefaults();
    emit resetDone();
    return true;
}

bool EffectPanel::savePreset() {
    emit saveRequested();
    if (!store_) {
        return false;
    }
    QString name = tr("Manual adjustment preset");
    const QString title = tr("Save Preset");
    const QString label = tr("Enter a preset name:");
    const bool named =
        prompt_ ? prompt_(title, label, name) : promptForPresetName(this, title, label, name);
    if (!named || name.trimmed().isEmpty()) {
        return false;
    }
    SavedEffectPreset saved;
    saved.name = name.trimmed().toStdString();
    saved.description = describe(preset_);
    saved.recording = preset_.recording;
    saved.preset = preset_;
    saved.preset.name = saved.name;
    saved.preset.description = saved.description;
    if (!store_->saveEffectPreset(saved)) {
        QMessageBox::warning(this, title,
                             saveFailureText(store_, tr("The preset could not be saved.")));
        return false;
    }
    preset_.name = saved.name;
    preset_.description = saved.description;
    emit presetSaved(QString::fromStdString(saved.name));
    return true;
}

void EffectPanel::retranslateUi() {
    sections_[kNoiseSection]->setTitle(tr("Noise Reduction"));
    sections_[kNoiseSection]->setTitleToolTip(
        tr("【Noise Reduction】\nRemove the noise behind your voice!\nThe ambient filter removes "
           "the room's steady noise, the AI filter all kinds of noise,\nand the gate mutes the "
           "mic while you are not speaking🔇"));
    sections_[kEqSection]->setTitle(tr("EQ / Filters"));
    sections_[kEqSection]->setTitleToolTip(
        tr("【EQ / Filters】\nAdjust volume by frequency!\nLow Cut removes low-frequency noise; "
           "bands boost or cut specific ranges🎚️"));
    sections_[kEqSection]->toggle()->setToolTip(tr("EQ overall on/off"));
    sections_[kDynamicsSection]->setTitle(tr("Compressor / Limiter"));
    sections_[kDynamicsSection]->setTitleToolTip(
        tr("【Compressor / Limiter】\nEven out loud and quiet!\nThe compressor turns loud parts "
           "down, the limiter stops clipping at its ceiling🛡️"));
    sections_[kDynamicsSection]->toggle()->setToolTip(tr("Compressor / Limiter overall on/off"));
    saveButton_->setText(QStringLiteral("💾 ") + tr("Save preset"));
    resetButton_->setText(QStringLiteral("🔄 ") + tr("Reset to defaults"));
    noise_->retranslateUi();
    eq_->retranslateUi();
    dynamics_->retranslateUi();
}

} // namespace Lumora
