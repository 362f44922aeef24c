#pragma once

#include <QObject>

#include <functional>

class QFrame;

namespace Lumora {

// The click filter of a card in a built-in preset popup: it lights the card up
// while the pointer is over it, puts it back to rest when the pointer leaves
// (even after a press), and on a left-button release runs the card's action
// and consumes the release. Other events pass on.
class FxPresetCardFilter : public QObject {
    Q_OBJECT
public:
    static const char* const kRestingStyle;
    static const char* const kHighlightStyle;

    FxPresetCardFilter(QFrame* card, std::function<void()> action);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QFrame* card_;
    std::function<void()> action_;
};

} // namespace Lumora
