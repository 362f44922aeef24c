#pragma once

#include "dsp/EffectPreset.h"

#include <QWidget>

class QLabel;

namespace Lumora {

class Knob;
class TrashButton;

// One peaking band of the equaliser: centre frequency, gain and width, and a
// waste-bin button that removes the band. Writes the band it was given.
class EqBandRow : public QWidget {
    Q_OBJECT
public:
    EqBandRow(QWidget* parent, int index, NotchBand* band);

    int index() const { return index_; }
    // Sets the knobs from the band, quietly; `number` is the row's place shown.
    void refresh(int number);
    void retranslateUi();

    Knob* frequencyKnob() const { return frequency_; }
    Knob* gainKnob() const { return gain_; }
    Knob* qKnob() const { return q_; }
    TrashButton* trashButton() const { return trash_; }

signals:
    void edited();
    void removeRequested(int index);

private:
    int index_;
    NotchBand* band_;
    QLabel* number_ = nullptr;
    Knob* frequency_ = nullptr;
    Knob* gain_ = nullptr;
    Knob* q_ = nullptr;
    TrashButton* trash_ = nullptr;
};

} // namespace Lumora
