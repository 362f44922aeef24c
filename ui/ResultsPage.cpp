#include "ui/ResultsPage.h"

#include "ui/AdviceCard.h"
#include "ui/PhraseBreaks.h"
#include "ui/ResultSummaryCard.h"
#include "ui/Theme.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace Lumora {

ResultsPage::ResultsPage(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    scroll_ = new QScrollArea(this);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setWidgetResizable(true);
    scroll_->setStyleSheet(Styles::scrollArea());
    scroll_->viewport()->setAutoFillBackground(false);
    content_ = new QWidget(scroll_);
    content_->setAttribute(Qt::WA_TranslucentBackground);
    contentLayout_ = new QVBoxLayout(content_);
    contentLayout_->setContentsMargins(12, 12, 12, 12);
    contentLayout_->setSpacing(10);
    placeholder_ = new QLabel(content_);
    placeholder_->setWordWrap(true);
    placeholder_->setAlignment(Qt::AlignCenter);
    placeholder_->setStyleSheet(
        themed(QStringLiteral("QLabel {  color: {lilac}; font-size: 10pt; padding: 20px 28px;"
                              "  background: {white@210}; border-radius: 14px; }")));
    markPanel(placeholder_, 14);
    contentLayout_->addWidget(placeholder_);
    contentLayout_->addStretch(1);
    scroll_->setWidget(content_);
    layout->addWidget(scroll_, 1);

    auto* bar = new QWidget(this);
    bar->setAttribute(Qt::WA_StyledBackground);
    bar->setStyleSheet(themed(QStringLiteral("QWidget { background: {white@210};"
                                             " border-top: 1px solid {lilacLine@120}; }")));
    markPanel(bar, 0);
    auto* grid = new QGridLayout(bar);
    grid->setContentsMargins(10, 8, 10, 10);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(8);
    applyButton_ = new QPushButton(bar);
    applyButton_->setStyleSheet(Styles::accentButton());
    saveButton_ = new QPushButton(bar);
    saveButton_->setStyleSheet(Styles::darkButton());
    rerunButton_ = new QPushButton(bar);
    rerunButton_->setStyleSheet(Styles::outlinedButton());
    for (QPushButton* button : {applyButton_, saveButton_, rerunButton_}) {
        button->setCursor(Qt::PointingHandCursor);
        button->setMinimumHeight(40);
    }
    grid->addWidget(applyButton_, 0, 0, 1, 2);
    grid->addWidget(saveButton_, 1, 0);
    grid->addWidget(rerunButton_, 1, 1);
    layout->addWidget(bar);

    connect(applyButton_, &QPushButton::clicked, this, &ResultsPage::applyRequested);
    connect(saveButton_, &QPushButton::clicked, this, &ResultsPage::saveRequested);
    connect(rerunButton_, &QPushButton::clicked, this, &ResultsPage::rerunRequested);
    retranslateUi();
}

void ResultsPage::showResult(const DiagnosisResult* result) {
    hasResult_ = result != nullptr;
    result_ = result ? *result : DiagnosisResult{};
    render();
}

void ResultsPage::retranslateUi() {
    placeholder_->setText(keepPhrases(tr("Run the diagnosis to see advice here.")));
    applyButton_->setText(tr("🔧 Apply recommended settings"));
    saveButton_->setText(tr("💾 Save preset"));
    render();
}

void ResultsPage::render() {
    delete summary_;
    summary_ = nullptr;
    qDeleteAll(cards_);
    cards_.clear();
    placeholder_->setVisible(!hasResult_);
    applyButton_->setEnabled(hasResult_);
    saveButton_->setEnabled(hasResult_);
    // "Again" only once there was a first time.
    rerunButton_->setText(hasResult_ ? tr("🔄 Run diagnosis again") : tr("🎤 Start diagnosis"));
    if (!hasResult_) {
        emit contentChanged();
        return;
    }
    int row = 0;
    summary_ = new ResultSummaryCard(content_, result_);
    contentLayout_->insertWidget(row++, summary_);
    // The worst verdicts first: the first view under the summary's chip shows
    // what the chip names (a warning below the fold reads as a false alarm).
    std::vector<DiagnosisItem> items = result_.items;
    std::stable_sort(
        items.begin(), items.end(),
        [](const DiagnosisItem& a, const DiagnosisItem& b) { return a.level > b.level; });
    for (const DiagnosisItem& item : items) {
        auto* card = new AdviceCard(content_, item);
        contentLayout_->insertWidget(row++, card);
        cards_.append(card);
    }
    emit contentChanged();
}

int ResultsPage::cardCount() const {
    return static_cast<int>(cards_.size());
}

AdviceCard* ResultsPage::card(int index) const {
    return index >= 0 && index < cards_.size() ? cards_.at(index) : nullptr;
}

} // namespace Lumora
