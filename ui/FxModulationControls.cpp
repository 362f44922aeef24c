#include "ui/FxModulationControls.h"

#include "ui/Knob.h"
#include "ui/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace Lumora {

namespace {

const KnobSpec kModRate{"modRate", QT_TRANSLATE_NOOP("Lumora::FxModulationControls", "Rate"),
                        QT_TRANSLATE_NOOP("Lumora::FxModulationControls", "Speed of the sweep"),
                        &Params::kModRate, 1};
const KnobSpec kModDepth{
    "modDepth", QT_TRANSLATE_NOOP("Lumora::FxModulationControls", "Depth"),
    QT_TRANSLATE_NOOP("Lumora::FxModulationControls", "How far the sweep swings"),
    &Params::kModDepth};
const KnobSpec kModFeedback{
    "modFeedback", QT_TRANSLATE_NOOP("Lumora::FxModulationControls", "Feedback"),
    QT_TRANSLATE_NOOP("Lumora::FxModulationControls",
                      "How much of the effect is fed back\nHigher = more metallic"),
    &Params::kModFeedback};
const KnobSpec kModWet{
    "modWet", QT_TRANSLATE_NOOP("Lumora::FxModulationControls", "Wet"),
    QT_TRANSLATE_NOOP("Lumora::FxModulationControls", "Share of the effect in the output"),
    &Params::kModWet};

} // namespace

FxModulationControls::FxModulationControls(QWidget* parent, SoundFxPreset* preset)
    : QWidget(parent), preset_(preset) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);

    auto* typeRow = new QHBoxLayout();
    typeRow->setSpacing(10);
    typeCaption_ = new QLabel(this);
    typeCaption_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {blueInk}; font-weight: bold;"
                              " font-size: 8pt; background: transparent; }")));
    typeRow->addWidget(typeCaption_);
    types_ = new QButtonGroup(this);
    types_->setExclusive(true);
    for (int type = kModChorus; type <= kModTremolo; ++type) {
        auto* radio = new QRadioButton(this);
        radio->setStyleSheet(Styles::radioButton("{deepBlueInk}"));
        radio->setCursor(Qt::PointingHandCursor);
        types_->addButton(radio, type);
        typeRow->addWidget(radio);
    }
    typeRow->addStretch(1);
    layout->addLayout(typeRow);
    connect(types_, &QButtonGroup::idToggled, this, [this](int id, bool checked) {
        if (checked && preset_->mod.type != id) {
            preset_->mod.type = id;
            emit edited();
        }
    });

    auto* row = new QHBoxLayout();
    row->setSpacing(4);
    auto add = [this, row](const KnobSpec& spec, float ModParams::*field, bool advanced) {
        Knob* knob = knobs_.add(
            this, spec, [this, field]() -> float& { return preset_->mod.*field; },
            [this] { emit edited(); });
        row->addWidget(knob);
        if (advanced) {
            advancedOnly_.push_back(knob);
        }
    };
    add(kModRate, &ModParams::rate, false);
    add(kModDepth, &ModParams::depth, false);
    add(kModFeedback, &ModParams::feedback, true);
    add(kModWet, &ModParams::wetMix, true);
    row->addStretch(1);
    layout->addLayout(row);
}

void FxModulationControls::refresh() {
    knobs_.refresh();
    const QSignalBlocker quiet(types_);
    if (QAbstractButton* b = types_->button(preset_->mod.type)) {
        b->setChecked(true);
        return;
    }
    // A type the panel does not know (the chain runs nothing for it).
    types_->setExclusive(false);
    for (QAbstractButton* other : types_->buttons()) {
        other->setChecked(false);
    }
    types_->setExclusive(true);
}

void FxModulationControls::setEasyMode(bool easy) {
    for (QWidget* w : advancedOnly_) {
        w->setVisible(!easy);
    }
}

void FxModulationControls::retranslateUi() {
    typeCaption_->setText(tr("Type"));
    const QString names[] = {tr("Chorus"), tr("Flanger"), tr("Tremolo")};
    for (int type = kModChorus; type <= kModTremolo; ++type) {
        typeButton(type)->setText(names[type]);
    }
    knobs_.retranslate();
}

QRadioButton* FxModulationControls::typeButton(int type) const {
    return qobject_cast<QRadioButton*>(types_->button(type));
}

} // namespace Lumora
