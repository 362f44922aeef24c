#include "ui/SoundFxPanel.h"

#include "ui/ResetPrompt.h"

#include "settings/SettingsStore.h"
#include "ui/CollapsibleSection.h"
#include "ui/FxModulationControls.h"
#include "ui/FxPitchControls.h"
#include "ui/FxPresetPopup.h"
#include "ui/Knob.h"
#include "ui/PanelFoot.h"
#include "ui/PresetNamePrompt.h"
#include "ui/ReorderableColumn.h"
#include "ui/SaveFailure.h"
#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace Lumora {

namespace {

const char kPresetButtonStyle[] =
    "QPushButton { background: {blue@30}; color: {deepBlueInk}; border-radius: 6px;"
    " padding: 2px 8px; font-size: 8pt; font-weight: bold; border: 1px solid"
    " {blue@120}; }QPushButton:hover { background: {blue@70}; border-color:"
    " {blue}; }";
const KnobSpec kRadioLow{
    "radioLowCut", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Low Cut"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel",
                      "The radio's lowest frequency\nHigher = thinner, smaller speaker"),
    &Params::kRadioLowCut};
const KnobSpec kRadioHigh{
    "radioHighCut", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "High Cut"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel",
                      "The radio's highest frequency\nLower = duller, older radio"),
    &Params::kRadioHighCut};
const KnobSpec kRadioDrive{"radioDrive", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Drive"),
                           QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Distortion of the radio"),
                           &Params::kRadioDrive};
const KnobSpec kDelayTime{"delayTime", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Time"),
                          QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Time until the echo returns"),
                          &Params::kDelayTime};
const KnobSpec kDelayFeedback{
    "delayFeedback", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Feedback"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "How much each echo repeats\nHigher = more repeats"),
    &Params::kDelayFeedback};
const KnobSpec kDelayWet{"delayWet", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Wet"),
                         QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Loudness of the echoes"),
                         &Params::kDelayWet};
const KnobSpec kReverbRoom{
    "reverbRoom", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Room Size"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Size of the room\nLarger = longer reverb"),
    &Params::kReverbRoom};
const KnobSpec kReverbDamping{
    "reverbDamping", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Damping"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel",
                      "How much the walls absorb the highs\nHigher = darker"),
    &Params::kReverbDamping};
const KnobSpec kReverbLowCut{
    "reverbLowCut", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Low Cut"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel",
                      "Removes the lows from the reverb only\nKeeps it from "
                      "booming"),
    &Params::kReverbLowCut};
const KnobSpec kReverbDucking{
    "reverbDucking", QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Ducking"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel",
                      "Lowers the reverb while you speak\nHigher = clearer words"),
    &Params::kReverbDucking};
const KnobSpec kReverbMix{
    "reverbMix", "MIX",
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Share of the reverb in the output"),
    &Params::kReverbWet};

// Titles and switch tips in section order (effect codes 0..4).
const char* const kTitles[kEffectCount] = {
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Pitch Shifter & Formant"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Modulation"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Radio"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Delay & Echo"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Reverb")};
const char* const kSwitchTips[kEffectCount] = {
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Pitch shifter on/off"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Modulation on/off"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Radio effect on/off"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Delay & Echo on/off"),
    QT_TRANSLATE_NOOP("Lumora::SoundFxPanel", "Reverb on/off")};

template <typename Group>
bool& enabledOf(SoundFxPreset& p, Group SoundFxPreset::*group) {
    return (p.*group).enabled;
}

bool& enabledOf(SoundFxPreset& p, int code) {
    switch (code) {
    case kEffectPitch:
        return enabledOf(p, &SoundFxPreset::pitch);
    case kEffectModulation:
        return enabledOf(p, &SoundFxPreset::mod);
    case kEffectRadio:
        return enabledOf(p, &SoundFxPreset::radio);
    case kEffectDelay:
        return enabledOf(p, &SoundFxPreset::delay);
    default:
        return enabledOf(p, &SoundFxPreset::reverb);
    }
}

} // namespace

SoundFxPanel::SoundFxPanel(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 4, 0, 8);
    layout->setSpacing(10);

    column_ = new ReorderableColumn(this);
    layout->addWidget(column_);
    connect(column_, &ReorderableColumn::moved, this, &SoundFxPanel::orderMoved);

    for (int code = 0; code < kEffectCount; ++code) {
        auto* section = new CollapsibleSection(column_);
        column_->addSection(code, section);
        section->setSwitchEnabled(true);
        section->setDragHandleEnabled(true);
        auto* button = new QPushButton(section);
        button->setObjectName(QStringLiteral("fxPresetButton%1").arg(code));
        button->setStyleSheet(themed(QLatin1String(kPresetButtonStyle)));
        button->setCursor(Qt::PointingHandCursor);
        section->addHeaderWidget(button);
        sections_[static_cast<size_t>(code)] = section;
        presetButtons_[static_cast<size_t>(code)] = button;
        connect(button, &QPushButton::clicked, this,
                [this, code, button] { showFxPresetPopup(button, fxPresetsFor(code)); });
        connect(section->toggle(), &ToggleSwitch::toggled, this, [this, code](bool on) {
            enabledOf(preset_, code) = on;
            edited();
        });
    }
    pitch_ = new FxPitchControls(sections_[kEffectPitch]->body(), &preset_);
    sections_[kEffectPitch]->bodyLayout()->addWidget(pitch_);
    connect(pitch_, &FxPitchControls::edited, this, &SoundFxPanel::edited);
    modulation_ = new FxModulationControls(sections_[kEffectModulation]->body(), &preset_);
    sections_[kEffectModulation]->bodyLayout()->addWidget(modulation_);
    connect(modulation_, &FxModulationControls::edited, this, &SoundFxPanel::edited);
    buildRadio();
    buildDelay();
    buildReverb();

    layout->addLayout(saveAndResetRow(this, saveButton_, resetButton_));
    layout->addStretch(1);
    connect(saveButton_, &QPushButton::clicked, this, &SoundFxPanel::savePreset);
    connect(resetButton_, &QPushButton::clicked, this, &SoundFxPanel::confirmReset);

    retranslateUi();
    refresh();
    setEasyMode(true);
}

QHBoxLayout* SoundFxPanel::knobRow(CollapsibleSection* section) {
    auto* row = new QHBoxLayout();
    row->setSpacing(4);
    section->bodyLayout()->addLayout(row);
    return row;
}

void SoundFxPanel::addKnob(CollapsibleSection* section, QHBoxLayout* row, const KnobSpec& spec,
                           KnobBindings::Field field, bool advanced) {
    Knob* knob = knobs_.add(section->body(), spec, std::move(field), [this] { edited(); });
    row->addWidget(knob);
    if (advanced) {
        advancedOnly_.push_back(knob);
    }
}

void SoundFxPanel::buildRadio() {
    CollapsibleSection* s = sections_[kEffectRadio];
    QHBoxLayout* row = knobRow(s);
    addKnob(
        s, row, kRadioLow, [this]() -> float& { return preset_.radio.lowCutHz; }, true);
    addKnob(
        s, row, kRadioHigh, [this]() -> float& { return preset_.radio.highCutHz; }, true);
    addKnob(
        s, row, kRadioDrive, [this]() -> float& { return preset_.radio.overdrive; }, false);
    row->addStretch(1);
}

void SoundFxPanel::buildDelay() {
    CollapsibleSection* s = sections_[kEffectDelay];
    QHBoxLayout* row = knobRow(s);
    addKnob(
        s, row, kDelayTime, [this]() -> float& { return preset_.delay.timeMs; }, false);
    addKnob(
        s, row, kDelayFeedback, [this]() -> float& { return preset_.delay.feedback; }, true);
    addKnob(
        s, row, kDelayWet, [this]() -> float& { return preset_.delay.wetMix; }, false);
    row->addStretch(1);
}

void SoundFxPanel::buildReverb() {
    CollapsibleSection* s = sections_[kEffectReverb];
    QHBoxLayout* row = knobRow(s);
    addKnob(
        s, row, kReverbRoom, [this]() -> float& { return preset_.reverb.roomSize; }, false);
    addKnob(
        s, row, kReverbDamping, [this]() -> float& { return preset_.reverb.damping; }, true);
    addKnob(
        s, row, kReverbLowCut, [this]() -> float& { return preset_.reverb.lowCutHz; }, true);
    addKnob(
        s, row, kReverbDucking, [this]() -> float& { return preset_.reverb.duckingAmount; }, true);
    addKnob(
        s, row, kReverbMix, [this]() -> float& { return preset_.reverb.wetMix; }, false);
    row->addStretch(1);
}

void SoundFxPanel::edited() {
    emit presetEdited();
}

void SoundFxPanel::refresh() {
    knobs_.refresh();
    pitch_->refresh();
    for (int code = 0; code < kEffectCount; ++code) {
        ToggleSwitch* toggle = sections_[static_cast<size_t>(code)]->toggle();
        const QSignalBlocker quiet(toggle);
        toggle->setChecked(enabledOf(preset_, code));
    }
    modulation_->refresh();
}

void SoundFxPanel::orderFromPreset() {
    // The chain runs codes in the stored order and may meet one twice or a code
    // it does not know; the column shows each effect once, where it first
    // appears, and any that never appears below the others in code order.
    std::vector<int> keys(preset_.effectOrder.begin(), preset_.effectOrder.end());
    for (int code = 0; code < kEffectCount; ++code) {
        keys.push_back(code);
    }
    column_->setOrder(keys);
}

void SoundFxPanel::loadPreset(const SoundFxPreset& preset) {
    preset_ = preset;
    orderFromPreset();
    refresh();
}

void SoundFxPanel::setEasyMode(bool easy) {
    easy_ = easy;
    for (QWidget* w : advancedOnly_) {
        w->setVisible(!easy);
    }
    pitch_->setEasyMode(easy);
    modulation_->setEasyMode(easy);
}

CollapsibleSection* SoundFxPanel::section(int effectCode) const {
    if (effectCode < 0 || effectCode >= kEffectCount) {
        return nullptr;
    }
    return sections_[static_cast<size_t>(effectCode)];
}

QPushButton* SoundFxPanel::presetButton(int effectCode) const {
    if (effectCode < 0 || effectCode >= kEffectCount) {
        return nullptr;
    }
    return presetButtons_[static_cast<size_t>(effectCode)];
}

Knob* SoundFxPanel::knob(const QString& name) const {
    if (Knob* k = knobs_.knob(name)) {
        return k;
    }
    if (Knob* k = modulation_->knob(name)) {
        return k;
    }
    return pitch_->knob(name);
}

// ---- Reordering -------------------------------------------------------------------

std::array<int32_t, kEffectCount> SoundFxPanel::displayOrder() const {
    std::array<int32_t, kEffectCount> order{};
    std::copy(column_->order().begin(), column_->order().end(), order.begin());
    return order;
}

void SoundFxPanel::moveSection(int effectCode, int position) {
    column_->moveSection(effectCode, position);
}

void SoundFxPanel::orderMoved() {
    // The column's order becomes the processing order. A stored order with
    // repeats or unknown codes becomes a plain one at the first move.
    const std::array<int32_t, kEffectCount> order = displayOrder();
    if (preset_.effectOrder == order) {
        return;
    }
    preset_.effectOrder = order;
    edited();
}

// ---- Presets ------------------------------------------------------------------------

QFrame* SoundFxPanel::showFxPresetPopup(QWidget* anchor, const std::vector<FxPresetDef>& presets) {
    auto* popup = new FxPresetPopup(this, presets);
    connect(popup, &FxPresetPopup::chosen, this, [this, popup](int index) {
        const auto& action = popup->action(index);
        if (action) {
            action(preset_);
        }
        refresh();
        edited();
    });
    popup->showBelow(anchor);
    return popup;
}

void SoundFxPanel::resetToDefaults() {
    preset_ = SoundFxPreset{};
    orderFromPreset();
    refresh();
    edited();
}

bool SoundFxPanel::confirmReset() {
    if (!confirmResetToDefaults(this)) {
        return false;
    }
    resetToDefaults();
    emit resetDone();
    return true;
}

QString SoundFxPanel::describe(const SoundFxPreset& preset) {
    SoundFxPreset copy = preset;
    QStringList names;
    std::array<bool, kEffectCount> seen{};
    for (int32_t code : copy.effectOrder) {
        if (code >= 0 && code < kEffectCount && !seen[static_cast<size_t>(code)] &&
            enabledOf(copy, code)) {
            seen[static_cast<size_t>(code)] = true;
            names << tr(kTitles[code]);
        }
    }
    return names.isEmpty() ? tr("No effects") : names.join(QStringLiteral(" → "));
}

bool SoundFxPanel::savePreset() {
    emit saveRequested();
    if (!store_) {
        return false;
    }
    QString name;
    const QString title = tr("Save Sound FX Preset");
    const QString label = tr("Enter a preset name:");
    const bool named =
        prompt_ ? prompt_(title, label, name) : promptForPresetName(this, title, label, name);
    if (!named || name.trimmed().isEmpty()) {
        return false;
    }
    SavedSoundFxPreset saved;
    saved.name = name.trimmed().toStdString();
    saved.description = describe(preset_).toStdString();
    saved.preset = preset_;
    if (!store_->saveSoundFxPreset(saved)) {
        QMessageBox::warning(this, title,
                             saveFailureText(store_, tr("The preset could not be saved.")));
        return false;
    }
    emit presetSaved(QString::fromStdString(saved.name));
    return true;
}

void SoundFxPanel::retranslateUi() {
    for (int code = 0; code < kEffectCount; ++code) {
        CollapsibleSection* s = sections_[static_cast<size_t>(code)];
        s->setTitle(tr(kTitles[code]));
        s->toggle()->setToolTip(tr(kSwitchTips[code]));
        s->dragHandle()->setToolTip(tr("Drag to reorder"));
        presetButtons_[static_cast<size_t>(code)]->setText(QStringLiteral("✨ ") + tr("Presets"));
        presetButtons_[static_cast<size_t>(code)]->setToolTip(tr("Built-in presets"));
    }
    saveButton_->setText(QStringLiteral("💾 ") + tr("Save FX preset"));
    resetButton_->setText(QStringLiteral("🔄 ") + tr("Reset to defaults"));
    knobs_.retranslate();
    pitch_->retranslateUi();
    modulation_->retranslateUi();
}

} // namespace Lumora
