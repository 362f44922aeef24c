#include "ui/ReorderableColumn.h"

#include "ui/CollapsibleSection.h"
#include "ui/Theme.h"

#include <QFrame>
#include <QVBoxLayout>

#include <algorithm>

namespace Lumora {

ReorderableColumn::ReorderableColumn(QWidget* parent) : QWidget(parent) {
    layout_ = new QVBoxLayout(this);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(10);
    dropLine_ = new QFrame(this);
    dropLine_->setFixedHeight(4);
    dropLine_->setStyleSheet(
        themed(QStringLiteral("QFrame { background: {blue}; border-radius: 2px; border: none; }")));
    dropLine_->hide();
}

void ReorderableColumn::addSection(int key, CollapsibleSection* section) {
    section->setParent(this);
    sections_.push_back({key, section});
    order_.push_back(key);
    layout_->addWidget(section);
    connect(section, &CollapsibleSection::dragMoved, this,
            [this, key](const QPoint& pos) { showDropLine(key, pos); });
    connect(section, &CollapsibleSection::dragReleased, this, [this, key](const QPoint& pos) {
        dropLine_->hide();
        moveSection(key, dropPosition(key, pos));
    });
}

CollapsibleSection* ReorderableColumn::section(int key) const {
    for (const Entry& e : sections_) {
        if (e.key == key) {
            return e.section;
        }
    }
    return nullptr;
}

void ReorderableColumn::setOrder(const std::vector<int>& keys) {
    std::vector<int> order;
    for (int key : keys) {
        if (section(key) && std::find(order.begin(), order.end(), key) == order.end()) {
            order.push_back(key);
        }
    }
    for (int key : order_) {
        if (std::find(order.begin(), order.end(), key) == order.end()) {
            order.push_back(key);
        }
    }
    order_ = order;
    arrange();
}

void ReorderableColumn::arrange() {
    for (const Entry& e : sections_) {
        layout_->removeWidget(e.section);
    }
    for (int key : order_) {
        layout_->addWidget(section(key));
    }
}

void ReorderableColumn::moveSection(int key, int position) {
    auto at = std::find(order_.begin(), order_.end(), key);
    if (at == order_.end()) {
        return;
    }
    order_.erase(at);
    position = std::clamp(position, 0, static_cast<int>(order_.size()));
    order_.insert(order_.begin() + position, key);
    arrange();
    emit moved();
}

int ReorderableColumn::dropPosition(int key, const QPoint& globalPos) const {
    // Among the other cards, count those whose middle lies above the pointer.
    const int y = mapFromGlobal(globalPos).y();
    int position = 0;
    for (int other : order_) {
        if (other != key && section(other)->geometry().center().y() < y) {
            ++position;
        }
    }
    return position;
}

void ReorderableColumn::showDropLine(int key, const QPoint& globalPos) {
    const int position = dropPosition(key, globalPos);
    // The line goes into the gap above the card that would follow.
    int y = 0;
    int seen = 0;
    for (int other : order_) {
        if (other == key) {
            continue;
        }
        const QWidget* s = section(other);
        if (seen == position) {
            y = s->geometry().top() - layout_->spacing() / 2 - 2;
            break;
        }
        ++seen;
        y = s->geometry().bottom() + layout_->spacing() / 2 - 1;
    }
    dropLine_->setGeometry(8, std::max(0, y), width() - 16, 4);
    dropLine_->show();
    dropLine_->raise();
}

bool ReorderableColumn::dropLineShown() const {
    return dropLine_->isVisible();
}

} // namespace Lumora
