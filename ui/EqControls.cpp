#include "ui/EqControls.h"

#include "ui/EqBandRow.h"
#include "ui/EqCurveDisplay.h"
#include "ui/Knob.h"
#include "ui/SoundShapes.h"
#include "ui/SubGroup.h"
#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace Lumora {

namespace {

const char kShapeStyle[] =
    "QPushButton { background: {blue@30}; color: {deepBlueInk}; border-radius: 6px;"
    " padding: 4px 6px; font-size: 8pt; font-weight: bold; border: 1px solid"
    " {blue@120}; }QPushButton:hover { background: {blue@70}; border-color:"
    " {blue}; }QPushButton:pressed { background: {blue@130}; }";
const char kAddStyle[] =
    "QPushButton {  background: {blue@140}; color: {white}; border-radius: 8px;  padding:"
    " 4px 12px; font-size: 9pt; border: none; }QPushButton:hover { background:"
    " {glowBlue@200}; }QPushButton:disabled { background: {blueDeep@80}; color:"
    " {greyLight@120}; }";
const char kResetStyle[] =
    "QPushButton { background: {white@200}; color: {blueInk}; border-radius: 6px;"
    " padding: 2px 8px; font-size: 8pt; border: 1px solid {blue@120}; }"
    "QPushButton:hover { background: {blue@40}; }";

const KnobSpec kLowCut{"lowCutHz", "Hz",
                       QT_TRANSLATE_NOOP("Lumora::EqControls",
                                         "Low cut frequency\nRemoves rumble, desk knocks and "
                                         "pops below it"),
                       &Params::kLowCut};
const KnobSpec kHighCut{
    "highCutHz", "Hz",
    QT_TRANSLATE_NOOP("Lumora::EqControls", "High cut frequency\nRemoves hiss above it"),
    &Params::kHighCut};
const KnobSpec kHighCutQ{"highCutQ", "Q",
                         QT_TRANSLATE_NOOP("Lumora::EqControls",
                                           "High cut resonance (Q)\n0.707 = flat; higher = a "
                                           "small peak before the cut"),
                         &Params::kHighCutQ, 2};

QFrame* separator(QWidget* parent, const char* colour) {
    auto* line = new QFrame(parent);
    line->setFixedHeight(1);
    line->setStyleSheet(themed(
        QStringLiteral("QFrame { background: %1; border: none; }").arg(QLatin1String(colour))));
    return line;
}

QLabel* rowLabel(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setStyleSheet(themed(QLatin1String(SubGroup::kTitleStyle)));
    label->setMinimumWidth(70);
    return label;
}

} // namespace

EqControls::EqControls(QWidget* parent, EffectPreset* preset) : QWidget(parent), preset_(preset) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto edit = [this] { this->edit(); };

    reset_ = new QPushButton(this);
    reset_->setStyleSheet(themed(QLatin1String(kResetStyle)));
    reset_->setCursor(Qt::PointingHandCursor);
    connect(reset_, &QPushButton::clicked, this, [this] { applyShape(&SoundShapes::defaultEq); });

    auto* shapeRow = new QHBoxLayout();
    shapeRow->setSpacing(6);
    void (*const shapes[3])(EqParams&) = {&SoundShapes::deEssing, &SoundShapes::maleVoice,
                                          &SoundShapes::femaleVoice};
    for (size_t i = 0; i < shapes_.size(); ++i) {
        shapes_[i] = new QPushButton(this);
        shapes_[i]->setStyleSheet(themed(QLatin1String(kShapeStyle)));
        shapes_[i]->setCursor(Qt::PointingHandCursor);
        shapeRow->addWidget(shapes_[i], 1);
        connect(shapes_[i], &QPushButton::clicked, this,
                [this, shape = shapes[i]] { applyShape(shape); });
    }
    layout->addLayout(shapeRow);

    curve_ = new EqCurveDisplay(this);
    layout->addWidget(curve_);

    auto* lowRow = new QHBoxLayout();
    lowCutSwitch_ = new ToggleSwitch(this);
    lowCutSwitch_->setFixedSize(38, 20);
    lowCutLabel_ = rowLabel(this);
    lowRow->addWidget(lowCutSwitch_);
    lowRow->addWidget(lowCutLabel_);
    lowRow->addWidget(knobs_.add(
        this, kLowCut, [this]() -> float& { return preset_->eq.lowCutHz; }, edit));
    lowRow->addStretch(1);
    layout->addLayout(lowRow);
    connect(lowCutSwitch_, &ToggleSwitch::toggled, this, [this](bool on) {
        preset_->eq.lowCutEnabled = on;
        this->edit();
    });

    QFrame* first = separator(this, "{blue@100}");
    layout->addWidget(first);
    advancedOnly_.push_back(first);
    for (int i = 0; i < kNotchBandCount; ++i) {
        auto* row = new EqBandRow(this, i, &preset_->eq.notchBands[static_cast<size_t>(i)]);
        rows_[static_cast<size_t>(i)] = row;
        layout->addWidget(row);
        connect(row, &EqBandRow::edited, this, edit);
        connect(row, &EqBandRow::removeRequested, this, &EqControls::removeBand);
    }
    add_ = new QPushButton(this);
    add_->setStyleSheet(themed(QLatin1String(kAddStyle)));
    add_->setCursor(Qt::PointingHandCursor);
    layout->addWidget(add_, 0, Qt::AlignLeft);
    advancedOnly_.push_back(add_);
    connect(add_, &QPushButton::clicked, this, &EqControls::addBand);
    QFrame* second = separator(this, "{blue@70}");
    layout->addWidget(second);
    advancedOnly_.push_back(second);

    auto* highRowWidget = new QWidget(this);
    auto* highRow = new QHBoxLayout(highRowWidget);
    highRow->setContentsMargins(0, 0, 0, 0);
    highCutSwitch_ = new ToggleSwitch(highRowWidget);
    highCutSwitch_->setFixedSize(38, 20);
    highCutLabel_ = rowLabel(highRowWidget);
    highRow->addWidget(highCutSwitch_);
    highRow->addWidget(highCutLabel_);
    highRow->addWidget(knobs_.add(
        highRowWidget, kHighCut, [this]() -> float& { return preset_->eq.highCutHz; }, edit));
    highRow->addWidget(knobs_.add(
        highRowWidget, kHighCutQ, [this]() -> float& { return preset_->eq.highCutQ; }, edit));
    highRow->addStretch(1);
    layout->addWidget(highRowWidget);
    advancedOnly_.push_back(highRowWidget);
    connect(highCutSwitch_, &ToggleSwitch::toggled, this, [this](bool on) {
        preset_->eq.highCutEnabled = on;
        this->edit();
    });

    retranslateUi();
    refresh();
}

void EqControls::edit() {
    curve_->setParameters(preset_->eq);
    emit edited();
}

void EqControls::applyShape(void (*shape)(EqParams&)) {
    shape(preset_->eq);
    refresh();
    edit();
}

int EqControls::bandRowsShown() const {
    int shown = 0;
    for (const NotchBand& band : preset_->eq.notchBands) {
        shown += band.enabled ? 1 : 0;
    }
    return shown;
}

bool EqControls::addBand() {
    for (NotchBand& band : preset_->eq.notchBands) {
        if (!band.enabled) {
            band = NotchBand{true, 1000.0f, 0.0f, 1.4f};
            refresh();
            edit();
            return true;
        }
    }
    return false;
}

void EqControls::removeBand(int index) {
    if (index < 0 || index >= kNotchBandCount) {
        return;
    }
    NotchBand& band = preset_->eq.notchBands[static_cast<size_t>(index)];
    if (!band.enabled) {
        return;
    }
    band.enabled = false;
    refresh();
    edit();
}

void EqControls::refresh() {
    knobs_.refresh();
    {
        const QSignalBlocker a(lowCutSwitch_);
        const QSignalBlocker b(highCutSwitch_);
        lowCutSwitch_->setChecked(preset_->eq.lowCutEnabled);
        highCutSwitch_->setChecked(preset_->eq.highCutEnabled);
    }
    int number = 0;
    for (EqBandRow* row : rows_) {
        const bool on = preset_->eq.notchBands[static_cast<size_t>(row->index())].enabled;
        row->setVisible(on && !easy_);
        if (on) {
            row->refresh(++number);
        }
    }
    add_->setEnabled(number < kNotchBandCount);
    curve_->setParameters(preset_->eq);
}

void EqControls::setEasyMode(bool easy) {
    easy_ = easy;
    for (QWidget* w : advancedOnly_) {
        w->setVisible(!easy);
    }
    refresh();
}

void EqControls::retranslateUi() {
    reset_->setText(tr("Default"));
    reset_->setToolTip(tr("Resets every EQ setting to its starting value."));
    const QString names[3] = {tr("🔇 De-essing"), tr("🎙 Male Voice"), tr("👩 Female Voice")};
    const QString tips[3] = {
        tr("Cuts the sibilance band of 5 to 8 kHz:\nsofter \"s\" and \"sh\" sounds"),
        tr("Warm lows, clearer mids and presence at 2.5 kHz"),
        tr("More air and clarity, less muffling")};
    for (size_t i = 0; i < shapes_.size(); ++i) {
        shapes_[i]->setText(names[i]);
        shapes_[i]->setToolTip(tips[i]);
    }
    lowCutLabel_->setText(QStringLiteral("Low Cut"));
    lowCutSwitch_->setToolTip(tr("Low cut on/off"));
    highCutLabel_->setText(QStringLiteral("High Cut"));
    highCutSwitch_->setToolTip(tr("High cut on/off"));
    add_->setText(tr("+ Add Band"));
    for (EqBandRow* row : rows_) {
        row->retranslateUi();
    }
    knobs_.retranslate();
}

} // namespace Lumora
