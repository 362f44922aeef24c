#pragma once

#include <QAbstractButton>

class QVariantAnimation;

namespace Lumora {

// An on/off switch: a rounded track with a sliding knob, teal when on.
class ToggleSwitch : public QAbstractButton {
    Q_OBJECT
public:
    explicit ToggleSwitch(QWidget* parent);

    QSize sizeHint() const override { return QSize(52, 28); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void checkStateSet() override;
    void nextCheckState() override;

private:
    void animateTo(bool on);

    qreal position_ = 0.0; // 0 off .. 1 on
    QVariantAnimation* animation_ = nullptr;
};

} // namespace Lumora
