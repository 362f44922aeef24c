#include "ui/CollapsibleSection.h"

#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QToolButton>
#include <QVBoxLayout>

namespace Lumora {

CollapsibleSection::CollapsibleSection(QWidget* parent) : QFrame(parent) {
    setObjectName(QStringLiteral("collapsibleSection"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(themed(QStringLiteral("QFrame#collapsibleSection { background: {white@215};"
                                        " border: 1px solid {blue@60}; border-radius: 12px; }")));
    markPanel(this, 12);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    auto* header = new QWidget(this);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(8, 6, 10, 6);
    row->setSpacing(4);

    handle_ = new QLabel(QStringLiteral("⠿"), header);
    handle_->setStyleSheet(themed(
        QStringLiteral("QLabel { color: {greyCool}; font-size: 13pt; background: transparent; }")));
    handle_->setCursor(Qt::OpenHandCursor);
    handle_->installEventFilter(this);
    handle_->hide();
    row->addWidget(handle_);

    arrow_ = new QToolButton(header);
    arrow_->setAutoRaise(true);
    arrow_->setCursor(Qt::PointingHandCursor);
    arrow_->setFixedSize(20, 20);
    arrow_->setStyleSheet(themed(QStringLiteral("QToolButton { color: {blueInk}; border: none;"
                                                " background: transparent; font-size: 9pt; }")));
    row->addWidget(arrow_);

    title_ = new QLabel(header);
    title_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt;"
                                                " font-weight: bold; background: transparent; }")));
    title_->setCursor(Qt::PointingHandCursor);
    title_->installEventFilter(this);
    row->addWidget(title_, 1);

    headerExtras_ = new QHBoxLayout();
    headerExtras_->setSpacing(6);
    row->addLayout(headerExtras_);

    toggle_ = new ToggleSwitch(header);
    toggle_->setFixedSize(44, 24);
    toggle_->hide();
    row->addWidget(toggle_);
    outer->addWidget(header);

    body_ = new QWidget(this);
    bodyLayout_ = new QVBoxLayout(body_);
    bodyLayout_->setContentsMargins(12, 2, 12, 12);
    bodyLayout_->setSpacing(8);
    outer->addWidget(body_);

    connect(arrow_, &QToolButton::clicked, this, [this] { setExpanded(!expanded_); });
    arrow_->setText(QStringLiteral("▾"));
}

void CollapsibleSection::setTitle(const QString& title) {
    title_->setText(title);
}

QString CollapsibleSection::title() const {
    return title_->text();
}

void CollapsibleSection::setTitleToolTip(const QString& tip) {
    title_->setToolTip(tip);
}

void CollapsibleSection::setSwitchEnabled(bool on) {
    toggle_->setVisible(on);
}

void CollapsibleSection::setDragHandleEnabled(bool on) {
    handle_->setVisible(on);
}

void CollapsibleSection::addHeaderWidget(QWidget* widget) {
    widget->setParent(toggle_->parentWidget());
    headerExtras_->addWidget(widget);
}

void CollapsibleSection::setExpanded(bool expanded) {
    if (expanded_ == expanded) {
        return;
    }
    expanded_ = expanded;
    body_->setVisible(expanded);
    arrow_->setText(expanded ? QStringLiteral("▾") : QStringLiteral("▸"));
    emit expandedChanged(expanded);
}

bool CollapsibleSection::eventFilter(QObject* watched, QEvent* event) {
    if (watched == title_ && event->type() == QEvent::MouseButtonRelease) {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() == Qt::LeftButton && title_->rect().contains(mouse->pos())) {
            setExpanded(!expanded_);
            return true;
        }
    }
    if (watched != handle_) {
        return QFrame::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() != Qt::LeftButton) {
            return false;
        }
        dragging_ = true;
        handle_->setCursor(Qt::ClosedHandCursor);
        emit dragStarted();
        return true;
    }
    case QEvent::MouseMove:
        if (dragging_) {
            emit dragMoved(handle_->mapToGlobal(static_cast<QMouseEvent*>(event)->pos()));
            return true;
        }
        return false;
    case QEvent::MouseButtonRelease:
        if (dragging_ && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
            dragging_ = false;
            handle_->setCursor(Qt::OpenHandCursor);
            emit dragReleased(handle_->mapToGlobal(static_cast<QMouseEvent*>(event)->pos()));
            return true;
        }
        return false;
    default:
        return false;
    }
}

} // namespace Lumora
