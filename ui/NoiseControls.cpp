#include "ui/NoiseControls.h"

#include "engine/FilterEngine.h"
#include "ui/Knob.h"
#include "ui/NoiseLearner.h"
#include "ui/NoiseProfileDisplay.h"
#include "ui/SoundShapes.h"
#include "ui/SubGroup.h"
#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <cmath>

namespace Lumora {

namespace {

const char kLearnStyle[] =
    "QPushButton { background: {blue@30};  color: {deepBlueInk}; border-radius: 6px;"
    " padding: 3px 10px;  font-size: 8pt; font-weight: bold;  border: 1px solid"
    " {blue@120}; }QPushButton:hover { background: {blue@70};  border-color:"
    " {blue}; }QPushButton:pressed { background: {blue@130}; }";
const char kModeStyle[] =
    "QPushButton { background: {blue@22}; color: {deepBlueInk}; border-radius: 8px;"
    " padding: 6px 8px; font-size: 9pt; font-weight: bold; border: 1px solid"
    " {blue@110}; text-align: left; }QPushButton:hover { background:"
    " {blue@60}; border-color: {blue}; }QPushButton:pressed { background:"
    " {blue@120}; }";
const char kLearnedStyle[] =
    "QLabel { color: {blueInk}; font-size: 8pt; font-weight: bold; background: transparent; }";
const char kNotLearnedStyle[] =
    "QLabel { color: {muted}; font-size: 8pt; background: transparent; }";
const char kStatusStyle[] = "QLabel { color: {muted}; font-size: 8pt; background: transparent; }";

const KnobSpec kSpectralAmount{
    "spectralAmount", QT_TRANSLATE_NOOP("Lumora::NoiseControls", "Strength"),
    QT_TRANSLATE_NOOP("Lumora::NoiseControls", "Ambient filter strength\nHigher = more room "
                                               "noise removed;\ntoo high makes the voice "
                                               "sound watery"),
    &Params::kSpectralAmount};
const KnobSpec kNoiseAtten{
    "noiseAttenuation", QT_TRANSLATE_NOOP("Lumora::NoiseControls", "Attenuation"),
    QT_TRANSLATE_NOOP("Lumora::NoiseControls", "How far the AI filter may turn noise down\nHigher "
                                               "= quieter background; lower = more natural"),
    &Params::kNoiseAttenuation};
const KnobSpec kNoiseBlend{"noiseBlend", QT_TRANSLATE_NOOP("Lumora::NoiseControls", "Blend"),
                           QT_TRANSLATE_NOOP("Lumora::NoiseControls",
                                             "Share of the AI-filtered voice\n100% = fully "
                                             "filtered; lower mixes the original back in"),
                           &Params::kNoiseMix};
const KnobSpec kGateThreshold{"gateThreshold", "Thresh",
                              QT_TRANSLATE_NOOP("Lumora::NoiseControls",
                                                "Gate threshold\nSounds quieter than this are "
                                                "cut!\nLower = more delicate sounds pass; higher "
                                                "= more noise cut"),
                              &Params::kGateThreshold};
const KnobSpec kGateAttack{"gateAttack", "Attack",
                           QT_TRANSLATE_NOOP("Lumora::NoiseControls",
                                             "How fast the gate opens when you start "
                                             "speaking\nShorter = the first sound is not cut"),
                           &Params::kGateAttack};
const KnobSpec kGateHold{"gateHold", "Hold",
                         QT_TRANSLATE_NOOP("Lumora::NoiseControls",
                                           "How long the gate stays open after you stop\nLonger "
                                           "= word endings are not cut"),
                         &Params::kGateHold};
const KnobSpec kGateRelease{"gateRelease", "Rel",
                            QT_TRANSLATE_NOOP("Lumora::NoiseControls",
                                              "How fast the gate closes\nLonger = a smoother "
                                              "fade-out"),
                            &Params::kGateRelease};

QLabel* latencyNote(QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setStyleSheet(themed(
        QStringLiteral("QLabel { background: transparent; color: {blueInk}; font-size: 8pt; }")));
    return label;
}

} // namespace

NoiseControls::NoiseControls(QWidget* parent, EffectPreset* preset)
    : QWidget(parent), preset_(preset) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);
    auto edit = [this] { this->edit(); };

    strictButton_ = new QPushButton(this);
    detailButton_ = new QPushButton(this);
    for (QPushButton* b : {strictButton_, detailButton_}) {
        b->setStyleSheet(themed(QLatin1String(kModeStyle)));
        b->setCursor(Qt::PointingHandCursor);
        layout->addWidget(b);
    }
    connect(strictButton_, &QPushButton::clicked, this, [this] {
        SoundShapes::strictNoiseMode(*preset_);
        refresh();
        this->edit();
    });
    connect(detailButton_, &QPushButton::clicked, this, [this] {
        SoundShapes::detailMode(*preset_);
        refresh();
        this->edit();
    });

    // Ambient (spectral) filter with its learned profile.
    ambient_ = new SubGroup(this, true);
    auto* ambientRow = new QHBoxLayout();
    ambientRow->addWidget(knobs_.add(
        this, kSpectralAmount, [this]() -> float& { return preset_->spectral.amount; }, edit));
    auto* learnColumn = new QVBoxLayout();
    learnColumn->setSpacing(4);
    learnButton_ = new QPushButton(this);
    learnButton_->setStyleSheet(themed(QLatin1String(kLearnStyle)));
    learnButton_->setCursor(Qt::PointingHandCursor);
    learnColumn->addWidget(learnButton_, 0, Qt::AlignLeft);
    learnedLabel_ = new QLabel(this);
    learnColumn->addWidget(learnedLabel_);
    ambientLatency_ = latencyNote(this);
    ambientLatency_->setObjectName(QStringLiteral("ambientLatency"));
    learnColumn->addWidget(ambientLatency_);
    learnColumn->addStretch(1);
    ambientRow->addLayout(learnColumn, 1);
    ambient_->bodyLayout()->addLayout(ambientRow);
    profile_ = new NoiseProfileDisplay(this);
    ambient_->bodyLayout()->addWidget(profile_);
    advancedOnly_.push_back(profile_);
    layout->addWidget(ambient_);
    connect(ambient_->toggle(), &ToggleSwitch::toggled, this, [this](bool on) {
        preset_->spectral.enabled = on;
        this->edit();
    });
    connect(learnButton_, &QPushButton::clicked, this, &NoiseControls::startNoiseLearning);

    // Neural (AI) filter.
    ai_ = new SubGroup(this, true);
    auto* aiRow = new QHBoxLayout();
    aiRow->addWidget(knobs_.add(
        this, kNoiseAtten, [this]() -> float& { return preset_->noise.attenLimitDb; }, edit));
    Knob* blend = knobs_.add(
        this, kNoiseBlend, [this]() -> float& { return preset_->noise.mix; }, edit);
    aiRow->addWidget(blend);
    advancedOnly_.push_back(blend);
    auto* aiColumn = new QVBoxLayout();
    aiStatus_ = new QLabel(this);
    aiStatus_->setWordWrap(true);
    aiStatus_->setStyleSheet(themed(QLatin1String(kStatusStyle)));
    aiColumn->addWidget(aiStatus_);
    aiLatency_ = latencyNote(this);
    aiColumn->addWidget(aiLatency_);
    aiColumn->addStretch(1);
    aiRow->addLayout(aiColumn, 1);
    ai_->bodyLayout()->addLayout(aiRow);
    layout->addWidget(ai_);
    connect(ai_->toggle(), &ToggleSwitch::toggled, this, [this](bool on) {
        preset_->noise.enabled = on;
        this->edit();
    });

    // Gate.
    gate_ = new SubGroup(this, true);
    auto* gateRow = new QHBoxLayout();
    gateRow->setSpacing(2);
    gateRow->addWidget(knobs_.add(
        this, kGateThreshold, [this]() -> float& { return preset_->gate.thresholdDb; }, edit));
    for (const auto& [spec, field] :
         {std::pair<const KnobSpec*, float GateParams::*>{&kGateAttack, &GateParams::attackMs},
          {&kGateHold, &GateParams::holdMs},
          {&kGateRelease, &GateParams::releaseMs}}) {
        Knob* k = knobs_.add(
            this, *spec, [this, f = field]() -> float& { return preset_->gate.*f; }, edit);
        gateRow->addWidget(k);
        advancedOnly_.push_back(k);
    }
    gateRow->addStretch(1);
    gate_->bodyLayout()->addLayout(gateRow);
    layout->addWidget(gate_);
    connect(gate_->toggle(), &ToggleSwitch::toggled, this, [this](bool on) {
        preset_->gate.enabled = on;
        this->edit();
    });

    learner_ = new NoiseLearner(this);
    connect(learner_, &NoiseLearner::learned, this, &NoiseControls::onLearned);
    connect(learner_, &NoiseLearner::failed, this, &NoiseControls::onLearnFailed);
    connect(learner_, &NoiseLearner::progressed, this, &NoiseControls::onLearnProgress);

    setEngine(nullptr);
    retranslateUi();
    refresh();
}

void NoiseControls::edit() {
    emit edited();
}

void NoiseControls::refresh() {
    knobs_.refresh();
    const QSignalBlocker a(ambient_->toggle());
    const QSignalBlocker b(ai_->toggle());
    const QSignalBlocker c(gate_->toggle());
    ambient_->toggle()->setChecked(preset_->spectral.enabled);
    ai_->toggle()->setChecked(preset_->noise.enabled);
    gate_->toggle()->setChecked(preset_->gate.enabled);
    if (!learner_->isRunning()) {
        profile_->setProfile(preset_->spectral.profileDb);
    }
}

void NoiseControls::setEasyMode(bool easy) {
    for (QWidget* w : advancedOnly_) {
        w->setVisible(!easy);
    }
}

void NoiseControls::setEngine(FilterEngine* engine) {
    if (learner_->isRunning() && engine != engine_) {
        learner_->cancel();
    }
    engine_ = engine;
    learnButton_->setEnabled(engine_ && engine_->analyser());
    if (engine_) {
        setNoiseSuppressionStatus(engine_->chain().noiseSuppressionStatus());
    }
}

void NoiseControls::setNoiseSuppressionStatus(NoiseSuppressionStatus status) {
    status_ = status;
    retranslateUi();
}

void NoiseControls::setNoiseLearned(bool learned) {
    learned_ = learned;
    learnFailed_ = false;
    showLearnedState();
}

void NoiseControls::showLearnedState() {
    if (learner_->isRunning()) {
        return;
    }
    if (learnFailed_) {
        learnedLabel_->setStyleSheet(themed(QLatin1String(kNotLearnedStyle)));
        learnedLabel_->setText(tr("⚠️ No sound reached the filter"));
    } else if (learned_) {
        learnedLabel_->setStyleSheet(themed(QLatin1String(kLearnedStyle)));
        learnedLabel_->setText(tr("✅ Learned"));
    } else {
        learnedLabel_->setStyleSheet(themed(QLatin1String(kNotLearnedStyle)));
        learnedLabel_->setText(tr("⬜ Not learned"));
    }
    learnButton_->setText(QStringLiteral("🎤 ") + tr("Noise Learn"));
}

bool NoiseControls::startNoiseLearning() {
    if (!learner_->start(engine_)) {
        return false;
    }
    learnButton_->setEnabled(false);
    onLearnProgress(0.0);
    return true;
}

void NoiseControls::onLearnProgress(double fraction) {
    const double left = (1.0 - fraction) * NoiseLearner::kDurationMs / 1000.0;
    learnedLabel_->setStyleSheet(themed(QLatin1String(kLearnedStyle)));
    learnedLabel_->setText(tr("🤫 Stay quiet… %1 s").arg(std::ceil(std::max(left, 0.0))));
    profile_->setProfile(learner_->latestSpectrum(), true);
}

void NoiseControls::onLearned() {
    // Learning is asked for to use the ambient filter: the profile goes in and
    // the filter is switched on, so the room noise goes away at once.
    preset_->spectral.profileDb = learner_->profile();
    preset_->spectral.enabled = true;
    learned_ = true;
    learnFailed_ = false;
    learnButton_->setEnabled(engine_ != nullptr);
    refresh();
    showLearnedState();
    emit edited();
    emit noiseLearningFinished(true);
}

void NoiseControls::onLearnFailed() {
    learnFailed_ = true;
    learnButton_->setEnabled(engine_ != nullptr);
    refresh();
    showLearnedState();
    emit noiseLearningFinished(false);
}

void NoiseControls::retranslateUi() {
    strictButton_->setText(tr("🚫🔊 Zero-Tolerance Noise Mode"));
    strictButton_->setToolTip(
        tr("💡 Best for: game streams, chatting, noisy rooms\nTurns every noise stage on and "
           "strong: ambient filter, AI filter and gate"));
    detailButton_->setText(tr("👂✨ Catch-Every-Detail Mode"));
    detailButton_->setToolTip(
        tr("💡 Best for: singing, ASMR, instruments\nKeeps breaths and reverb tails; only a light "
           "ambient filter removes the room's steady hum"));

    ambient_->setTitle(tr("Ambient Noise Filter"));
    profile_->setEmptyText(tr("No room noise learned yet: press \"Noise Learn\" and stay quiet "
                              "for 3 seconds"));
    ambient_->toggle()->setToolTip(tr("Ambient noise filter on/off"));
    learnButton_->setToolTip(
        tr("Learn your room's noise to improve the Ambient Noise Filter accuracy!\nRecords 3 "
           "seconds of silence to measure the room's noise profile."));
    if (!engine_ || !engine_->analyser()) {
        learnButton_->setToolTip(learnButton_->toolTip() + QLatin1Char('\n') +
                                 tr("(Needs the filter running in OBS.)"));
    }
    // Each filter's own share of the delay, at the rate the filter runs.
    const double rate = engine_ && engine_->sampleRate() > 0.0 ? engine_->sampleRate() : 48000.0;
    const auto ms = [rate](int frames) {
        return QString::number(std::lround(1000.0 * frames / rate));
    };
    ambientLatency_->setText(tr("① Latency: ~%1ms").arg(ms(VoiceChain::kSpectralDelayFrames)));

    ai_->setTitle(tr("AI Noise Filter"));
    ai_->toggle()->setToolTip(tr("AI noise filter on/off"));
    aiLatency_->setText(tr("② Latency: ~%1ms").arg(ms(VoiceChain::kNeuralDelayFrames)));
    switch (status_) {
    case NoiseSuppressionStatus::Available:
        aiStatus_->setText(tr("✅ AI filter ready"));
        break;
    case NoiseSuppressionStatus::NotPrepared:
        aiStatus_->setText(tr("⏳ Starts with the filter in OBS"));
        break;
    case NoiseSuppressionStatus::LibraryMissing:
        aiStatus_->setText(tr("⚠️ Not available: the DeepFilterNet library was not found"));
        break;
    case NoiseSuppressionStatus::ModelMissing:
        aiStatus_->setText(tr("⚠️ Not available: the model file is missing"));
        break;
    case NoiseSuppressionStatus::UnsupportedRate:
        aiStatus_->setText(tr("⚠️ Not available: needs 48 kHz audio (set OBS to 48 kHz)"));
        break;
    case NoiseSuppressionStatus::ModelRejected:
        aiStatus_->setText(tr("⚠️ Not available: the model could not be loaded"));
        break;
    }

    gate_->setTitle(tr("Noise Gate"));
    gate_->toggle()->setToolTip(tr("Noise gate on/off"));
    knobs_.retranslate();
    showLearnedState();
}

} // namespace Lumora
