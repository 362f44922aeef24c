#pragma once

#include <QWidget>

class QPushButton;
class QScrollArea;

namespace Lumora {

class MeterFaderWidget;

// The sound tab: the cleaning chain's meter-fader strip, the button that goes
// back to the diagnosis's settings, and a scroll area for the sound panel.
class SoundPage : public QWidget {
    Q_OBJECT
public:
    explicit SoundPage(QWidget* parent);

    void retranslateUi();

    MeterFaderWidget* strip() const { return strip_; }
    QPushButton* revertButton() const { return revertButton_; }
    QScrollArea* scrollArea() const { return scroll_; }
    // Puts the sound panel into the scroll area (replacing the empty host).
    void setPanel(QWidget* panel);

signals:
    void revertRequested();

private:
    MeterFaderWidget* strip_ = nullptr;
    QPushButton* revertButton_ = nullptr;
    QScrollArea* scroll_ = nullptr;
};

} // namespace Lumora
