#pragma once

#include <QWidget>

class QScrollArea;

namespace Lumora {

class MeterFaderWidget;

// The FX tab: the voice-effects chain's meter-fader strip and a scroll area for
// the sound-effects panel.
class FxPage : public QWidget {
    Q_OBJECT
public:
    explicit FxPage(QWidget* parent);

    void retranslateUi();

    MeterFaderWidget* strip() const { return strip_; }
    QScrollArea* scrollArea() const { return scroll_; }
    // Puts the sound-effects panel into the scroll area (replacing the empty host).
    void setPanel(QWidget* panel);

private:
    MeterFaderWidget* strip_ = nullptr;
    QScrollArea* scroll_ = nullptr;
};

} // namespace Lumora
