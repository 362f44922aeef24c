#include "ui/FxPresetCardFilter.h"
#include "ui/Theme.h"

#include <QEvent>
#include <QFrame>
#include <QMouseEvent>

namespace Lumora {

const char* const FxPresetCardFilter::kRestingStyle =
    "QFrame#presetCard {  background: {display@210};  border-radius: 8px;  border: 1px solid "
    "{blueStrong@110};}";
const char* const FxPresetCardFilter::kHighlightStyle =
    "QFrame#presetCard {  background: {blueDeep};  border-radius: 8px;  border: 1px "
    "solid {glowBlue@200};}";

FxPresetCardFilter::FxPresetCardFilter(QFrame* card, std::function<void()> action)
    : QObject(card), card_(card), action_(std::move(action)) {
    card_->setStyleSheet(themed(QLatin1String(kRestingStyle)));
    card_->installEventFilter(this);
}

bool FxPresetCardFilter::eventFilter(QObject* watched, QEvent* event) {
    if (watched != card_) {
        return false;
    }
    switch (event->type()) {
    case QEvent::Enter:
        card_->setStyleSheet(themed(QLatin1String(kHighlightStyle)));
        return false;
    case QEvent::Leave:
        card_->setStyleSheet(themed(QLatin1String(kRestingStyle)));
        return false;
    case QEvent::MouseButtonRelease:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            if (action_) {
                action_();
            }
            return true;
        }
        return false;
    default:
        return false;
    }
}

} // namespace Lumora
