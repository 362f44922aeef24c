#pragma once

#include <QWidget>

class QLabel;

namespace Lumora {

class KeyBadgeBoard;

// The keys tab: a hint on a card and the board of arrow keys that lights up
// as keys are pressed (their voices are assigned under Presets).
class KeysPage : public QWidget {
    Q_OBJECT
public:
    explicit KeysPage(QWidget* parent);

    KeyBadgeBoard* board() const { return board_; }
    void retranslateUi();

private:
    QLabel* hint_ = nullptr;
    KeyBadgeBoard* board_ = nullptr;
};

} // namespace Lumora
