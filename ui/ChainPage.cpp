#include "ui/ChainPage.h"

#include "ui/MeterFaderWidget.h"
#include "ui/Theme.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace Lumora {

ChainPage::ChainPage(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    layout_ = new QVBoxLayout(this);
    layout_->setContentsMargins(12, 6, 12, 0);
    layout_->setSpacing(8);

    strip_ = new MeterFaderWidget(this);
    layout_->addWidget(strip_);

    scroll_ = new QScrollArea(this);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(true);
    scroll_->setStyleSheet(Styles::scrollArea());
    scroll_->viewport()->setAutoFillBackground(false);
    auto* host = new QWidget(scroll_);
    host->setAttribute(Qt::WA_TranslucentBackground);
    scroll_->setWidget(host);
    layout_->addWidget(scroll_, 1);
}

void ChainPage::addAboveScrollArea(QWidget* widget) {
    layout_->insertWidget(layout_->indexOf(scroll_), widget);
}

void ChainPage::setPanel(QWidget* panel) {
    if (!panel) {
        return;
    }
    panel->setAttribute(Qt::WA_TranslucentBackground);
    delete scroll_->takeWidget();
    scroll_->setWidget(panel);
}

} // namespace Lumora
