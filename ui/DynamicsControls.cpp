#include "ui/DynamicsControls.h"

#include "ui/CompressorDisplay.h"
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

const char kModeStyle[] =
    "QPushButton { background: {blue@30}; color: {deepBlueInk}; border-radius: 6px;"
    " padding: 5px 8px; font-size: 9pt; font-weight: bold; border: 1px solid"
    " {blue@120}; }QPushButton:hover { background: {blue@70}; border-color:"
    " {blue}; }QPushButton:pressed { background: {blue@130}; }";

const KnobSpec kThreshold{"compThreshold", "Thresh",
                          QT_TRANSLATE_NOOP("Lumora::DynamicsControls",
                                            "Compressor threshold\nLouder than this gets turned "
                                            "down\nLower = more evening out"),
                          &Params::kCompThreshold};
const KnobSpec kRatio{"compRatio", "Ratio",
                      QT_TRANSLATE_NOOP("Lumora::DynamicsControls",
                                        "How strongly loud parts are turned down\n2:1 = gentle, "
                                        "6:1 = strong"),
                      &Params::kCompRatio, 1};
const KnobSpec kKnee{"compKnee", "Knee",
                     QT_TRANSLATE_NOOP("Lumora::DynamicsControls",
                                       "Softens the start of compression\n0 = hard, higher = "
                                       "smoother"),
                     &Params::kCompKnee};
const KnobSpec kAttack{"compAttack", "Attack",
                       QT_TRANSLATE_NOOP("Lumora::DynamicsControls",
                                         "How fast the compressor reacts\nShorter = catches "
                                         "peaks; longer = keeps the punch"),
                       &Params::kCompAttack};
const KnobSpec kMakeup{"compMakeup", "Makeup",
                       QT_TRANSLATE_NOOP("Lumora::DynamicsControls",
                                         "Gain after compression\nBrings the evened-out voice "
                                         "back up"),
                       &Params::kCompMakeup};
const KnobSpec kCeiling{"limiterCeiling", "Ceiling",
                        QT_TRANSLATE_NOOP("Lumora::DynamicsControls",
                                          "Limiter ceiling\nThe output never goes above this: "
                                          "no clipping!"),
                        &Params::kLimiterCeiling, 1};

} // namespace

DynamicsControls::DynamicsControls(QWidget* parent, EffectPreset* preset)
    : QWidget(parent), preset_(preset) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    auto edit = [this] { this->edit(); };

    auto* modes = new QHBoxLayout();
    talk_ = new QPushButton(this);
    singing_ = new QPushButton(this);
    for (QPushButton* b : {talk_, singing_}) {
        b->setStyleSheet(themed(QLatin1String(kModeStyle)));
        b->setCursor(Qt::PointingHandCursor);
        modes->addWidget(b, 1);
    }
    layout->addLayout(modes);
    connect(talk_, &QPushButton::clicked, this, [this] {
        SoundShapes::talkMode(*preset_);
        refresh();
        this->edit();
    });
    connect(singing_, &QPushButton::clicked, this, [this] {
        SoundShapes::singingMode(*preset_);
        refresh();
        this->edit();
    });

    auto* row = new QHBoxLayout();
    row->setSpacing(2);
    const std::pair<const KnobSpec*, float CompParams::*> specs[] = {
        {&kThreshold, &CompParams::thresholdDb},
        {&kRatio, &CompParams::ratio},
        {&kKnee, &CompParams::kneeDb},
        {&kAttack, &CompParams::attackMs},
        {&kMakeup, &CompParams::makeupGainDb}};
    for (const auto& [spec, field] : specs) {
        Knob* k = knobs_.add(
            this, *spec, [this, f = field]() -> float& { return preset_->comp.*f; }, edit);
        row->addWidget(k);
        if (spec == &kRatio || spec == &kKnee || spec == &kAttack) {
            advancedOnly_.push_back(k);
        }
    }
    row->addStretch(1);
    layout->addLayout(row);

    display_ = new CompressorDisplay(this);
    layout->addWidget(display_);
    advancedOnly_.push_back(display_);

    auto* line = new QFrame(this);
    line->setFixedHeight(1);
    line->setStyleSheet(themed(QStringLiteral("QFrame { background: {blue@80}; border: none; }")));
    layout->addWidget(line);

    limiter_ = new SubGroup(this, true);
    auto* limiterRow = new QHBoxLayout();
    limiterRow->addWidget(knobs_.add(
        this, kCeiling, [this]() -> float& { return preset_->limiter.ceilingDb; }, edit));
    limiterRow->addStretch(1);
    limiter_->bodyLayout()->addLayout(limiterRow);
    layout->addWidget(limiter_);
    connect(limiter_->toggle(), &ToggleSwitch::toggled, this, [this](bool on) {
        preset_->limiter.enabled = on;
        this->edit();
    });

    retranslateUi();
    refresh();
}

void DynamicsControls::edit() {
    display_->setPreset(*preset_);
    emit edited();
}

void DynamicsControls::refresh() {
    knobs_.refresh();
    const QSignalBlocker quiet(limiter_->toggle());
    limiter_->toggle()->setChecked(preset_->limiter.enabled);
    display_->setPreset(*preset_);
}

void DynamicsControls::setEasyMode(bool easy) {
    for (QWidget* w : advancedOnly_) {
        w->setVisible(!easy);
    }
}

void DynamicsControls::retranslateUi() {
    talk_->setText(tr("🎙 Talk Mode"));
    talk_->setToolTip(tr("Gentle ratio from a deep threshold, soft knee, fast attack:\nevens out "
                         "a talking voice"));
    singing_->setText(tr("🎤 Singing Mode"));
    singing_->setToolTip(tr("Middle threshold, 4:1, small knee, 30 ms attack:\nholds belted "
                            "notes and keeps the song's dynamics"));
    limiter_->setTitle(tr("Limiter"));
    limiter_->toggle()->setToolTip(tr("Limiter on/off"));
    knobs_.retranslate();
}

} // namespace Lumora
