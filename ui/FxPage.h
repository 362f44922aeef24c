#pragma once

#include "ui/ChainPage.h"

namespace Lumora {

// The FX tab: the voice-effects chain's strip and the sound-effects panel.
class FxPage : public ChainPage {
    Q_OBJECT
public:
    explicit FxPage(QWidget* parent);

    void retranslateUi();
};

} // namespace Lumora
