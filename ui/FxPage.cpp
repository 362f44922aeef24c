#include "ui/FxPage.h"

#include "ui/MeterFaderWidget.h"
#include "ui/Theme.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace Lumora {

FxPage::FxPage(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 6, 12, 0);
    layout->setSpacing(8);

    strip_ = new MeterFaderWidget(this);
    layout->addWidget(strip_);

    scroll_ = new QScrollArea(this);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(true);
    scroll_->setStyleSheet(Styles::scrollArea());
    scroll_->viewport()->setAutoFillBackground(false);
    auto* host = new QWidget(scroll_);
    host->setAttribute(Qt::WA_TranslucentBackground);
    scroll_->setWidget(host);
    layout->addWidget(scroll_, 1);
    retranslateUi();
}

void FxPage::retranslateUi() {
    strip_->setTitle(QStringLiteral("🎵 ") + tr("Voice effects"));
    strip_->retranslateUi();
}

void FxPage::setPanel(QWidget* panel) {
    if (!panel) {
        return;
    }
    panel->setAttribute(Qt::WA_TranslucentBackground);
    delete scroll_->takeWidget();
    scroll_->setWidget(panel);
}

} // namespace Lumora
