#pragma once

#include <QPoint>
#include <QWidget>

#include <vector>

class QFrame;
class QVBoxLayout;

namespace Lumora {

class CollapsibleSection;

// A column of cards that the user reorders by dragging a card's handle: while
// the handle is dragged a line shows where the card would land, and on release
// the card moves there. Each card is known by a key (the effect code, say);
// order() lists the keys from top to bottom.
class ReorderableColumn : public QWidget {
    Q_OBJECT
public:
    explicit ReorderableColumn(QWidget* parent);

    // Adds a card at the bottom and follows its handle.
    void addSection(int key, CollapsibleSection* section);
    CollapsibleSection* section(int key) const;

    const std::vector<int>& order() const { return order_; }
    // Arranges the cards in this order; keys it does not name keep their
    // relative order below the named ones. Emits nothing.
    void setOrder(const std::vector<int>& keys);
    // Moves one card to `position` (0 = top, clamped) and emits moved().
    void moveSection(int key, int position);
    // Where a card dragged to `globalPos` would land.
    int dropPosition(int key, const QPoint& globalPos) const;
    bool dropLineShown() const;

signals:
    // A card was moved by the user or by moveSection (the order may be the same).
    void moved();

private:
    void arrange();
    void showDropLine(int key, const QPoint& globalPos);

    struct Entry {
        int key;
        CollapsibleSection* section;
    };
    std::vector<Entry> sections_;
    std::vector<int> order_;
    QVBoxLayout* layout_ = nullptr;
    QFrame* dropLine_ = nullptr;
};

} // namespace Lumora
