#pragma once

#include "dsp/SoundFxPreset.h"
#include "ui/KnobBindings.h"

#include <QWidget>

#include <vector>

class QButtonGroup;
class QLabel;
class QRadioButton;

namespace Lumora {

class Knob;

// The body of the modulation section: the kind of sweep (chorus, flanger,
// tremolo) and its rate and depth, with feedback and the wet share in the
// advanced view.
class FxModulationControls : public QWidget {
    Q_OBJECT
public:
    FxModulationControls(QWidget* parent, SoundFxPreset* preset);

    void refresh();
    void setEasyMode(bool easy);
    void retranslateUi();

    QRadioButton* typeButton(int type) const;
    Knob* knob(const QString& name) const { return knobs_.knob(name); }

signals:
    void edited();

private:
    SoundFxPreset* preset_;
    KnobBindings knobs_{"Lumora::FxModulationControls"};
    QLabel* typeCaption_ = nullptr;
    QButtonGroup* types_ = nullptr;
    std::vector<QWidget*> advancedOnly_;
};

} // namespace Lumora
