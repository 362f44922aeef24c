#pragma once

#include "dsp/EffectPreset.h"
#include "ui/KnobBindings.h"

#include <QWidget>

#include <array>
#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace Lumora {

class EqBandRow;
class EqCurveDisplay;
class Knob;
class ToggleSwitch;

// The body of the sound panel's equaliser section: the response curve, three
// one-click shapes, the low cut, the band rows with add and delete, and the
// high cut. Its "Default" button goes into the section's title row (the
// panel puts it there). Edits the record in place and reports each edit.
class EqControls : public QWidget {
    Q_OBJECT
public:
    EqControls(QWidget* parent, EffectPreset* preset);

    void refresh();
    void setEasyMode(bool easy);
    void retranslateUi();

    // Adds the next unused band (neutral: 1 kHz, 0 dB); false when all five are in use.
    bool addBand();
    void removeBand(int index);
    int bandRowsShown() const;

    QPushButton* resetButton() const { return reset_; }
    QPushButton* addButton() const { return add_; }
    QPushButton* shapeButton(int i) const { return shapes_[static_cast<size_t>(i)]; }
    EqCurveDisplay* curve() const { return curve_; }
    EqBandRow* bandRow(int index) const { return rows_[static_cast<size_t>(index)]; }
    ToggleSwitch* lowCutSwitch() const { return lowCutSwitch_; }
    ToggleSwitch* highCutSwitch() const { return highCutSwitch_; }
    Knob* knob(const QString& name) const { return knobs_.knob(name); }

signals:
    void edited();

private:
    void edit();
    void applyShape(void (*shape)(EqParams&));

    EffectPreset* preset_;
    KnobBindings knobs_{"Lumora::EqControls"};
    bool easy_ = true;
    EqCurveDisplay* curve_ = nullptr;
    QPushButton* reset_ = nullptr;
    std::array<QPushButton*, 3> shapes_{};
    ToggleSwitch* lowCutSwitch_ = nullptr;
    ToggleSwitch* highCutSwitch_ = nullptr;
    QLabel* lowCutLabel_ = nullptr;
    QLabel* highCutLabel_ = nullptr;
    std::array<EqBandRow*, kNotchBandCount> rows_{};
    QPushButton* add_ = nullptr;
    std::vector<QWidget*> advancedOnly_;
};

} // namespace Lumora
