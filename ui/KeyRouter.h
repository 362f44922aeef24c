#pragma once

#include "settings/KeyAssignmentRules.h"

#include <QObject>

namespace Lumora {

class EngineBinding;
class KeyAssignPanel;
class KeyBadgeBoard;
class KeyBadgeLabel;
class WizardDialog;

// Where an arrow key goes while the dialog has the keyboard. On the
// key-assignment page it picks the slot to edit, on the keys tab it only lights
// the board, and everywhere else it switches the voice by the key rules, shown
// on the header's badge and the assignment page's lamps. Text fields, lists
// and open choosers keep the keys' editing meaning.
class KeyRouter : public QObject {
    Q_OBJECT
public:
    KeyRouter(WizardDialog* dialog, EngineBinding* binding);
    ~KeyRouter() override;

    void setViews(KeyBadgeLabel* badge, KeyBadgeBoard* board, KeyAssignPanel* assignPage);

    // The dialog opens again: it shows the keys as they are (a key toggled by
    // an OBS hotkey stays toggled).
    void reset();
    // A momentary key still down when the dialog loses the keyboard will never
    // be seen going up: it is released here and the voice restored.
    void releaseHeldKey();
    // The assignments were edited: a new default voice is heard at once.
    void assignmentsChanged();

    const KeyAssignmentRules& rules() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showState();

    WizardDialog* dialog_;
    EngineBinding* binding_;
    KeyBadgeLabel* badge_ = nullptr;
    KeyBadgeBoard* board_ = nullptr;
    KeyAssignPanel* assignPage_ = nullptr;
};

} // namespace Lumora
