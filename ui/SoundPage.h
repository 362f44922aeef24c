#pragma once

#include "ui/ChainPage.h"

class QPushButton;

namespace Lumora {

// The sound tab: the cleaning chain's strip, the button that goes back to the
// diagnosis's settings, and the sound panel.
class SoundPage : public ChainPage {
    Q_OBJECT
public:
    explicit SoundPage(QWidget* parent);

    void retranslateUi();

    QPushButton* revertButton() const { return revertButton_; }

signals:
    void revertRequested();

private:
    QPushButton* revertButton_ = nullptr;
};

} // namespace Lumora
