#include "ui/MeterTick.h"

#include "engine/FilterEngine.h"

#include <QTimer>

#include <algorithm>

namespace Lumora {

namespace {
constexpr int kForegroundTickMs = 33;
constexpr int kBackgroundTickMs = 100;
// A longer step (the machine was busy, the window was minimised) would make the
// animation jump and the diagnosis's clocks skip.
constexpr double kMaxStep = 0.1;
} // namespace

MeterTick::MeterTick(QObject* parent) : QObject(parent), timer_(new QTimer(this)) {
    timer_->setInterval(kForegroundTickMs);
    connect(timer_, &QTimer::timeout, this,
            [this] { advance(static_cast<double>(elapsed_.restart()) / 1000.0); });
}

void MeterTick::start() {
    elapsed_.restart();
    timer_->start();
}

void MeterTick::stop() {
    timer_->stop();
}

void MeterTick::setForeground(bool foreground) {
    timer_->setInterval(foreground ? kForegroundTickMs : kBackgroundTickMs);
}

void MeterTick::advance(double dt) {
    ++count_;
    emit ticked(dt > 0.0 ? std::min(dt, kMaxStep) : 0.0);
}

void MeterTick::readLevels(const FilterEngine& engine) {
    const VoiceChain& chain = engine.chain();
    const VoiceFxChain& effects = engine.effects();
    Levels levels;
    levels.chainInput = chain.inputLevelDb();
    levels.chainOutput = chain.outputLevelDb();
    levels.compressorInput = std::max(levels.chainInput, -60.0f);
    levels.compressorReduction = std::max(chain.compressorGainReductionDb(), 0.0f);
    levels.compressorOutput = std::max(levels.chainOutput, -60.0f);
    levels.fxInput = std::max(effects.inputLevelDb(), -96.0f);
    levels.fxOutput = effects.outputLevelDb();
    levels.outputDelayMs = engine.latencyMs();
    emit levelsUpdated(levels);
}

} // namespace Lumora
