#pragma once

#include "dsp/SoundFxPreset.h"
#include "ui/KnobBindings.h"

#include <QWidget>

#include <array>
#include <vector>

class QCheckBox;
class QWidget;

namespace Lumora {

class Knob;
class SubGroup;

// The body of the pitch section: layer A's pitch and formant with the dry/wet
// knob, the second layer (its own pitch and formant and the A:B blend) behind
// a check box, and the five-band formant equaliser behind a switch.
class FxPitchControls : public QWidget {
    Q_OBJECT
public:
    FxPitchControls(QWidget* parent, SoundFxPreset* preset);

    void refresh();
    void setEasyMode(bool easy);
    void retranslateUi();

    QCheckBox* layerBCheck() const { return layerB_; }
    SubGroup* formantEqGroup() const { return formantEq_; }
    Knob* knob(const QString& name) const;

signals:
    void edited();

private:
    void edit() { emit edited(); }
    void showLayers();

    SoundFxPreset* preset_;
    KnobBindings knobs_{"Lumora::FxPitchControls"};
    bool easy_ = true;
    QCheckBox* layerB_ = nullptr;
    QWidget* layerBRow_ = nullptr;
    QWidget* separator_ = nullptr;
    QWidget* wetKnob_ = nullptr;
    SubGroup* formantEq_ = nullptr;
    QWidget* bandGrid_ = nullptr;
    std::array<Knob*, kFormantBandCount> bandHz_{};
    std::array<Knob*, kFormantBandCount> bandGain_{};
    std::array<Knob*, kFormantBandCount> bandQ_{};
};

} // namespace Lumora
