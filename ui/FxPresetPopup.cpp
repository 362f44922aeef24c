#include "ui/FxPresetPopup.h"

#include "ui/FxPresetCardFilter.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace Lumora {

FxPresetPopup::FxPresetPopup(QWidget* parent, const std::vector<FxPresetDef>& presets)
    : QFrame(parent, Qt::Popup) {
    // A see-through window around a rounded panel, so the corners stay round.
    setObjectName(QStringLiteral("fxPresetPopup"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_TranslucentBackground);
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* body = new QFrame(this);
    body->setObjectName(QStringLiteral("fxPresetPopupBody"));
    body->setStyleSheet(themed(QStringLiteral("QFrame#fxPresetPopupBody { background: {night@240};"
                                              " border: 1px solid {blueStrong@160};"
                                              " border-radius: 10px; }")));
    outer->addWidget(body);
    auto* layout = new QVBoxLayout(body);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);
    for (const FxPresetDef& def : presets) {
        const int index = static_cast<int>(actions_.size());
        actions_.push_back(def.apply);
        auto* card = new QFrame(body);
        card->setObjectName(QStringLiteral("presetCard"));
        card->setCursor(Qt::PointingHandCursor);
        card->setAttribute(Qt::WA_Hover);
        auto* text = new QVBoxLayout(card);
        text->setContentsMargins(10, 6, 10, 7);
        text->setSpacing(2);
        auto* name = new QLabel(def.name(), card);
        name->setStyleSheet(
            themed(QStringLiteral("QLabel { color: {white}; font-size: 9pt;"
                                  " font-weight: bold; background: transparent; }")));
        auto* description = new QLabel(def.description(), card);
        description->setWordWrap(true);
        description->setStyleSheet(
            themed(QStringLiteral("QLabel { color: {displayText@230};"
                                  " font-size: 8pt; background: transparent; }")));
        for (QLabel* label : {name, description}) {
            // The card takes every pointer event, so its filter sees them all.
            label->setAttribute(Qt::WA_TransparentForMouseEvents);
            text->addWidget(label);
        }
        layout->addWidget(card);
        new FxPresetCardFilter(card, [this, index] {
            emit chosen(index);
            close();
        });
    }
    setFixedWidth(300);
    adjustSize();
}

const std::function<void(SoundFxPreset&)>& FxPresetPopup::action(int index) const {
    static const std::function<void(SoundFxPreset&)> none;
    return index >= 0 && index < cardCount() ? actions_[static_cast<size_t>(index)] : none;
}

void FxPresetPopup::showBelow(QWidget* anchor) {
    QPoint at = anchor
                    ? anchor->mapToGlobal(QPoint(anchor->width() - width(), anchor->height() + 4))
                    : parentWidget()->mapToGlobal(QPoint(0, 0));
    const QScreen* screen = anchor ? anchor->screen() : QApplication::primaryScreen();
    if (screen) {
        const QRect area = screen->availableGeometry();
        at.setX(std::clamp(at.x(), area.left(), std::max(area.left(), area.right() - width())));
        if (anchor && at.y() + height() > area.bottom()) {
            at.setY(anchor->mapToGlobal(QPoint(0, 0)).y() - height() - 4);
        }
        at.setY(std::max(at.y(), area.top()));
    }
    move(at);
    show();
}

} // namespace Lumora
