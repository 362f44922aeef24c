#include "ui/PresetsPage.h"

#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace Lumora {

namespace {
const char kSelected[] = "QPushButton { background: transparent; color: {tealInk}; border: none;"
                         " border-bottom: 2px solid {teal}; padding: 4px 2px; font-size: 9pt;"
                         " font-weight: bold; }";
const char kPlain[] = "QPushButton { background: transparent; color: {muted}; border: none;"
                      " border-bottom: 2px solid transparent; padding: 4px 2px; font-size: 9pt; }";
} // namespace

PresetsPage::PresetsPage(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto* bar = new QWidget(this);
    bar->setAttribute(Qt::WA_StyledBackground);
    bar->setFixedHeight(36);
    bar->setStyleSheet(themed(QStringLiteral("QWidget { background: {white@200};"
                                             " border-bottom: 1px solid {teal@80}; }")));
    markPanel(bar, 0);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(8, 2, 8, 0);
    row->setSpacing(4);
    for (int i = 0; i < kSubPageCount; ++i) {
        auto* button = new QPushButton(bar);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
        button->setCursor(Qt::PointingHandCursor);
        row->addWidget(button);
        buttons_[static_cast<size_t>(i)] = button;
        connect(button, &QPushButton::clicked, this, [this, i] { selectSubTab(i); });
    }
    layout->addWidget(bar);

    stack_ = new QStackedWidget(this);
    for (int i = 0; i < kKeyAssignment; ++i) {
        auto* placeholder = new QWidget(stack_);
        placeholder->setAttribute(Qt::WA_TranslucentBackground);
        stack_->addWidget(placeholder);
    }
    keyAssignScroll_ = new QScrollArea(stack_);
    keyAssignScroll_->setFrameShape(QFrame::NoFrame);
    keyAssignScroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    keyAssignScroll_->setWidgetResizable(true);
    keyAssignScroll_->setStyleSheet(Styles::scrollArea());
    keyAssignScroll_->viewport()->setAutoFillBackground(false);
    auto* keyAssignHost = new QWidget(keyAssignScroll_);
    keyAssignHost->setAttribute(Qt::WA_TranslucentBackground);
    keyAssignScroll_->setWidget(keyAssignHost);
    stack_->addWidget(keyAssignScroll_);
    layout->addWidget(stack_, 1);

    selectSubTab(0);
    retranslateUi();
}

void PresetsPage::selectSubTab(int index) {
    if (index < 0 || index >= kSubPageCount) {
        return;
    }
    stack_->setCurrentIndex(index);
    for (int i = 0; i < kSubPageCount; ++i) {
        buttons_[static_cast<size_t>(i)]->setStyleSheet(
            themed(QLatin1String(i == index ? kSelected : kPlain)));
    }
}

int PresetsPage::currentSubTab() const {
    return stack_->currentIndex();
}

void PresetsPage::retranslateUi() {
    // Each tab names its page (in the order of SubPage).
    const QString labels[kSubPageCount] = {tr("🎛 Sound"), tr("🎵 FX"), tr("🎹 Key Assign"),
                                           tr("🎹 Assign")};
    for (int i = 0; i < kSubPageCount; ++i) {
        buttons_[static_cast<size_t>(i)]->setText(labels[i]);
    }
}

QWidget* PresetsPage::subPage(int index) const {
    return stack_->widget(index);
}

void PresetsPage::setPanel(int index, QWidget* panel) {
    if (index < 0 || index >= kSubPageCount || !panel) {
        return;
    }
    if (index == kKeyAssignment) {
        panel->setAttribute(Qt::WA_TranslucentBackground);
        delete keyAssignScroll_->takeWidget();
        keyAssignScroll_->setWidget(panel);
        return;
    }
    const int current = stack_->currentIndex();
    QWidget* old = stack_->widget(index);
    stack_->insertWidget(index, panel);
    stack_->removeWidget(old);
    delete old;
    stack_->setCurrentIndex(current);
}

} // namespace Lumora
