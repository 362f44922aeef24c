#pragma once

#include "dsp/EffectPreset.h"
#include "ui/KnobBindings.h"

#include <QWidget>

#include <vector>

class QPushButton;

namespace Lumora {

class CompressorDisplay;
class Knob;
class SubGroup;

// The body of the sound panel's compressor and limiter section: two one-click
// modes, the five compressor knobs, the compressor display and the limiter.
class DynamicsControls : public QWidget {
    Q_OBJECT
public:
    DynamicsControls(QWidget* parent, EffectPreset* preset);

    void refresh();
    void setEasyMode(bool easy);
    void retranslateUi();

    QPushButton* talkButton() const { return talk_; }
    QPushButton* singingButton() const { return singing_; }
    CompressorDisplay* display() const { return display_; }
    SubGroup* limiterGroup() const { return limiter_; }
    Knob* knob(const QString& name) const { return knobs_.knob(name); }

signals:
    void edited();

private:
    void edit();

    EffectPreset* preset_;
    KnobBindings knobs_{"Lumora::DynamicsControls"};
    QPushButton* talk_ = nullptr;
    QPushButton* singing_ = nullptr;
    CompressorDisplay* display_ = nullptr;
    SubGroup* limiter_ = nullptr;
    std::vector<QWidget*> advancedOnly_;
};

} // namespace Lumora
