#include "ui/FxPitchControls.h"

#include "ui/Knob.h"
#include "ui/SubGroup.h"
#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace Lumora {

namespace {

const char kLayerBStyle[] =
    "QCheckBox { color: {blueInk}; font-size: 9pt; font-weight: bold; spacing: 6px; background:"
    " transparent; }QCheckBox::indicator { width: 14px; height: 14px; border-radius: 3px;  border:"
    " 2px solid {blue@160}; background: {white}; }QCheckBox::indicator:checked {"
    " background: {blue}; border-color: {blueStrong}; }";

const KnobSpec kPitchA{"pitchSemitonesA",
                       QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "Pitch A"),
                       QT_TRANSLATE_NOOP("Lumora::FxPitchControls",
                                         "Layer A pitch in semitones\n+12 = an octave up, -12 = "
                                         "an octave down"),
                       &Params::kPitch,
                       1,
                       QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "st")};
const KnobSpec kFormantA{"pitchFormantA", QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "Formant A"),
                         QT_TRANSLATE_NOOP("Lumora::FxPitchControls",
                                           "Layer A voice character\n+ = brighter, smaller; - = "
                                           "darker, bigger"),
                         &Params::kFormantShift};
const KnobSpec kMixAB{"pitchMixAB",
                      "MIX A:B",
                      QT_TRANSLATE_NOOP("Lumora::FxPitchControls",
                                        "Blend of the two layers\n0% = layer A only, 100% = "
                                        "layer B only"),
                      &Params::kPitchMixAB,
                      0,
                      "%B"};
const KnobSpec kPitchB{"pitchSemitonesB",
                       QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "Pitch B"),
                       QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "Layer B pitch in semitones"),
                       &Params::kPitch,
                       1,
                       QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "st")};
const KnobSpec kFormantB{"pitchFormantB", QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "Formant B"),
                         QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "Layer B voice character"),
                         &Params::kFormantShift};
const KnobSpec kWet{
    "pitchWet", "D/W",
    QT_TRANSLATE_NOOP("Lumora::FxPitchControls", "Dry/wet\n100% = only the shifted voice"),
    &Params::kPitchWet};

QHBoxLayout* knobRow() {
    auto* row = new QHBoxLayout();
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    return row;
}

} // namespace

FxPitchControls::FxPitchControls(QWidget* parent, SoundFxPreset* preset)
    : QWidget(parent), preset_(preset) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    auto edit = [this] { this->edit(); };

    auto* rowA = knobRow();
    rowA->addWidget(knobs_.add(
        this, kPitchA, [this]() -> float& { return preset_->pitch.semitonesA; }, edit));
    rowA->addWidget(knobs_.add(
        this, kFormantA, [this]() -> float& { return preset_->pitch.formantShiftA; }, edit));
    Knob* wet = knobs_.add(
        this, kWet, [this]() -> float& { return preset_->pitch.wetMix; }, edit);
    wetKnob_ = wet;
    rowA->addWidget(wet);
    rowA->addStretch(1);
    layout->addLayout(rowA);

    layerB_ = new QCheckBox(this);
    layerB_->setStyleSheet(themed(QLatin1String(kLayerBStyle)));
    layerB_->setCursor(Qt::PointingHandCursor);
    layout->addWidget(layerB_);
    auto* line = new QFrame(this);
    line->setFixedHeight(1);
    line->setStyleSheet(
        themed(QStringLiteral("QFrame { background: {blueStrong@80}; border: none; }")));
    separator_ = line;
    layout->addWidget(line);
    layerBRow_ = new QWidget(this);
    auto* rowB = knobRow();
    layerBRow_->setLayout(rowB);
    rowB->addWidget(knobs_.add(
        layerBRow_, kPitchB, [this]() -> float& { return preset_->pitch.semitonesB; }, edit));
    rowB->addWidget(knobs_.add(
        layerBRow_, kFormantB, [this]() -> float& { return preset_->pitch.formantShiftB; }, edit));
    rowB->addWidget(knobs_.add(
        layerBRow_, kMixAB, [this]() -> float& { return preset_->pitch.mixAB; }, edit));
    rowB->addStretch(1);
    layout->addWidget(layerBRow_);
    connect(layerB_, &QCheckBox::toggled, this, [this](bool on) {
        preset_->pitch.layerBEnabled = on;
        showLayers();
        this->edit();
    });

    formantEq_ = new SubGroup(this, true);
    bandGrid_ = new QWidget(formantEq_);
    auto* grid = new QGridLayout(bandGrid_);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(2);
    grid->setVerticalSpacing(0);
    for (int b = 0; b < kFormantBandCount; ++b) {
        auto* hz = new Knob(bandGrid_);
        hz->setObjectName(QStringLiteral("formantBand%1Hz").arg(b));
        applyParameter(hz, Params::kFormantHz);
        hz->setSuffix(QStringLiteral("Hz"));
        auto* gain = new Knob(bandGrid_);
        gain->setObjectName(QStringLiteral("formantBand%1Gain").arg(b));
        applyParameter(gain, Params::kFormantGain);
        gain->setDecimals(1);
        gain->setSuffix(QStringLiteral("dB"));
        auto* q = new Knob(bandGrid_);
        q->setObjectName(QStringLiteral("formantBand%1Q").arg(b));
        applyParameter(q, Params::kFormantWidth);
        q->setDecimals(2);
        bandHz_[static_cast<size_t>(b)] = hz;
        bandGain_[static_cast<size_t>(b)] = gain;
        bandQ_[static_cast<size_t>(b)] = q;
        grid->addWidget(hz, 0, b);
        grid->addWidget(gain, 1, b);
        grid->addWidget(q, 2, b);
        auto band = [this, b]() -> FormantBand& {
            return preset_->pitch.formantBands[static_cast<size_t>(b)];
        };
        connect(hz, &Knob::valueChanged, this, [this, band](double v) {
            band().hz = static_cast<float>(v);
            this->edit();
        });
        connect(gain, &Knob::valueChanged, this, [this, band](double v) {
            band().gainDb = static_cast<float>(v);
            this->edit();
        });
        connect(q, &Knob::valueChanged, this, [this, band](double v) {
            band().width = static_cast<float>(v);
            this->edit();
        });
    }
    grid->setColumnStretch(kFormantBandCount, 1);
    formantEq_->bodyLayout()->addWidget(bandGrid_);
    layout->addWidget(formantEq_);
    connect(formantEq_->toggle(), &ToggleSwitch::toggled, this, [this](bool on) {
        preset_->pitch.formantEqEnabled = on;
        showLayers();
        this->edit();
    });

    retranslateUi();
    refresh();
}

Knob* FxPitchControls::knob(const QString& name) const {
    if (Knob* k = knobs_.knob(name)) {
        return k;
    }
    return bandGrid_->findChild<Knob*>(name);
}

void FxPitchControls::showLayers() {
    layerB_->setVisible(!easy_);
    separator_->setVisible(!easy_);
    layerBRow_->setVisible(!easy_);
    layerBRow_->setEnabled(preset_->pitch.layerBEnabled);
    wetKnob_->setVisible(!easy_);
    formantEq_->setVisible(!easy_);
    bandGrid_->setVisible(preset_->pitch.formantEqEnabled);
}

void FxPitchControls::refresh() {
    knobs_.refresh();
    {
        const QSignalBlocker a(layerB_);
        const QSignalBlocker b(formantEq_->toggle());
        layerB_->setChecked(preset_->pitch.layerBEnabled);
        formantEq_->toggle()->setChecked(preset_->pitch.formantEqEnabled);
    }
    for (size_t b = 0; b < bandHz_.size(); ++b) {
        const FormantBand& band = preset_->pitch.formantBands[b];
        const QSignalBlocker x(bandHz_[b]);
        const QSignalBlocker y(bandGain_[b]);
        const QSignalBlocker z(bandQ_[b]);
        bandHz_[b]->setValue(band.hz);
        bandGain_[b]->setValue(band.gainDb);
        bandQ_[b]->setValue(band.width);
    }
    showLayers();
}

void FxPitchControls::setEasyMode(bool easy) {
    easy_ = easy;
    showLayers();
}

void FxPitchControls::retranslateUi() {
    layerB_->setText(tr("Enable Layer B"));
    layerB_->setToolTip(tr("Splits audio into 2 layers with independent pitch shifting\nUse the "
                           "MIX knob to blend the two layers!"));
    formantEq_->setTitle(tr("Formant EQ (5 bands)"));
    formantEq_->toggle()->setToolTip(tr("5-band formant EQ\nEnable to expand the analyzer and "
                                        "knobs\nFine-tune voice texture by frequency band!"));
    for (int b = 0; b < kFormantBandCount; ++b) {
        const size_t i = static_cast<size_t>(b);
        bandHz_[i]->setCaption(QStringLiteral("F%1 Hz").arg(b + 1));
        bandHz_[i]->setToolTip(
            tr("Band %1 center frequency\nAdjust to match voice formants").arg(b + 1));
        bandGain_[i]->setCaption(tr("Gain%1").arg(b + 1));
        bandGain_[i]->setToolTip(tr("Band %1 gain\n+ = boost, - = cut").arg(b + 1));
        bandQ_[i]->setCaption(QStringLiteral("Q%1").arg(b + 1));
        bandQ_[i]->setToolTip(
            tr("Band %1 bandwidth (Q)\nHigher = narrower, sharper EQ curve").arg(b + 1));
    }
    knobs_.retranslate();
}

} // namespace Lumora
