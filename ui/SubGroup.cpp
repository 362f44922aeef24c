#include "ui/SubGroup.h"

#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace Lumora {

const char* const SubGroup::kTitleStyle = "QLabel { color: {blueInk}; font-weight: bold;"
                                          " font-size: 8pt; background: transparent; }";

SubGroup::SubGroup(QWidget* parent, bool withSwitch) : QWidget(parent) {
    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(4);
    header_ = new QHBoxLayout();
    header_->setSpacing(6);
    title_ = new QLabel(this);
    title_->setStyleSheet(themed(QLatin1String(kTitleStyle)));
    header_->addWidget(title_, 1);
    if (withSwitch) {
        toggle_ = new ToggleSwitch(this);
        toggle_->setFixedSize(38, 20);
        header_->addWidget(toggle_);
    }
    outer->addLayout(header_);
    body_ = new QVBoxLayout();
    body_->setContentsMargins(0, 0, 0, 0);
    body_->setSpacing(4);
    outer->addLayout(body_);
}

void SubGroup::setTitle(const QString& title) {
    title_->setText(title);
}

void SubGroup::addHeaderWidget(QWidget* widget) {
    widget->setParent(this);
    header_->insertWidget(header_->count() - (toggle_ ? 1 : 0), widget);
}

} // namespace Lumora
