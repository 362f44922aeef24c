#include "ui/KeyRouter.h"

#include "settings/SettingsStore.h"
#include "ui/EngineBinding.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyBadgeBoard.h"
#include "ui/KeyBadgeLabel.h"
#include "ui/WizardDialog.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace Lumora {

namespace {

ArrowKey arrowOf(int key) {
    switch (key) {
    case Qt::Key_Up:
        return ArrowKey::Up;
    case Qt::Key_Down:
        return ArrowKey::Down;
    case Qt::Key_Left:
        return ArrowKey::Left;
    case Qt::Key_Right:
        return ArrowKey::Right;
    default:
        return ArrowKey::Other;
    }
}

// Arrow keys keep their editing meaning in text fields, open lists and views.
bool focusEditsWithArrows() {
    QWidget* focus = QApplication::focusWidget();
    if (qobject_cast<QLineEdit*>(focus) || qobject_cast<QAbstractItemView*>(focus)) {
        return true;
    }
    auto* combo = qobject_cast<QComboBox*>(focus);
    return combo && combo->view() && combo->view()->isVisible();
}

} // namespace

KeyRouter::KeyRouter(WizardDialog* dialog, EngineBinding* binding)
    : QObject(dialog), dialog_(dialog), binding_(binding) {
    // Keys pressed elsewhere (OBS hotkeys, obs-websocket) show here too.
    connect(binding_, &EngineBinding::keysChanged, this, &KeyRouter::showState);
    // Keys reach the dialog's focused child first; the application sees them all.
    qApp->installEventFilter(this);
}

KeyRouter::~KeyRouter() {
    if (qApp) {
        qApp->removeEventFilter(this);
    }
}

void KeyRouter::setViews(KeyBadgeLabel* badge, KeyBadgeBoard* board, KeyAssignPanel* assignPage) {
    badge_ = badge;
    board_ = board;
    assignPage_ = assignPage;
}

const KeyAssignmentRules& KeyRouter::rules() const {
    return binding_->keys();
}

void KeyRouter::reset() {
    showState();
}

void KeyRouter::releaseHeldKey() {
    binding_->releaseHeldKey();
    showState();
}

void KeyRouter::assignmentsChanged() {
    binding_->keyAssignmentsChanged();
    showState();
}

void KeyRouter::showState() {
    if (badge_) {
        badge_->showBadge(rules().badge());
    }
    if (assignPage_) {
        assignPage_->setLamps(rules().activeSlot());
    }
}

bool KeyRouter::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease) {
        return QObject::eventFilter(watched, event);
    }
    auto* key = static_cast<QKeyEvent*>(event);
    const int slot = slotOfKey(arrowOf(key->key()));
    if (slot == kNoSlot || !dialog_->isVisible() || !dialog_->isActiveWindow()) {
        return QObject::eventFilter(watched, event);
    }
    if (key->isAutoRepeat()) {
        return true;
    }
    if (focusEditsWithArrows()) {
        return false;
    }
    const bool pressed = type == QEvent::KeyPress;
    if (dialog_->keyAssignPageShown()) {
        if (pressed && assignPage_) {
            assignPage_->highlightSlot(slot);
        }
        return true;
    }
    if (dialog_->keysTabShown()) {
        if (board_) {
            board_->setPressed(slot, pressed);
        }
        return true;
    }
    binding_->pressKey(slot, pressed);
    showState();
    return true;
}

} // namespace Lumora
