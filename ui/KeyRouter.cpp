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
    rules_.setTarget(binding_);
    // The assignments are read afresh at every key, from the settings file.
    rules_.setReader([this]() -> std::optional<AppSettings> {
        if (SettingsStore* store = binding_->store()) {
            return store->load();
        }
        return std::nullopt;
    });
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

void KeyRouter::reset() {
    rules_.reset();
    showState();
}

void KeyRouter::releaseHeldKey() {
    const int held = rules_.heldSlot();
    if (held == kNoSlot) {
        return;
    }
    rules_.release(held);
    showState();
}

void KeyRouter::assignmentsChanged() {
    rules_.refreshIdle();
    showState();
}

void KeyRouter::showState() {
    if (badge_) {
        badge_->showBadge(rules_.badge());
    }
    if (assignPage_) {
        assignPage_->setLamps(rules_.activeSlot());
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
    pressed ? rules_.press(slot) : rules_.release(slot);
    showState();
    return true;
}

} // namespace Lumora
