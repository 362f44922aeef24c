#include "ui/DiagnosisHistoryList.h"

#include "settings/SettingsStore.h"
#include "ui/AdviceCard.h"
#include "ui/Localisation.h"
#include "ui/PhraseBreaks.h"
#include "ui/Theme.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace Lumora {

DiagnosisHistoryList::DiagnosisHistoryList(QWidget* parent, SettingsStore* store)
    : QWidget(parent), store_(store) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    title_ = new QLabel(this);
    title_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt;"
                                                " font-weight: bold; background: transparent; }")));
    layout->addWidget(title_);
    // On a card of its own, like every other text over the sky.
    empty_ = new QLabel(this);
    empty_->setWordWrap(true);
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {lilac}; font-size: 9pt; padding: 14px 18px;"
                              "  background: {white@210}; border-radius: 12px; }")));
    markPanel(empty_, 12);
    layout->addWidget(empty_);
    cards_ = new QVBoxLayout();
    cards_->setSpacing(6);
    layout->addLayout(cards_);
    retranslateUi();
}

void DiagnosisHistoryList::setStore(SettingsStore* store) {
    store_ = store;
    refresh();
}

QString DiagnosisHistoryList::micTypeName(int micType) {
    switch (micType) {
    case kMicDynamic:
        return tr("Dynamic");
    case kMicCondenser:
        return tr("Condenser");
    case kMicUsb:
        return QStringLiteral("USB");
    default:
        return tr("Unknown mic");
    }
}

QString DiagnosisHistoryList::levelIcon(int level) {
    switch (level) {
    case kLevelGood:
        return QStringLiteral("✅");
    case kLevelCaution:
        return QStringLiteral("⚠️");
    case kLevelWarning:
        return QStringLiteral("❌");
    default:
        return QStringLiteral("—");
    }
}

QWidget* DiagnosisHistoryList::makeCard(const DiagnosisHistoryEntry& entry) {
    auto* card = new QFrame(this);
    card->setObjectName(QStringLiteral("historyCard"));
    card->setAttribute(Qt::WA_StyledBackground);
    card->setStyleSheet(themed(QStringLiteral("QFrame#historyCard { background: {white@210};"
                                              " border: 1px solid {lilacLine@90};"
                                              " border-radius: 10px; }"
                                              "QLabel { background: transparent; }")));
    markPanel(card, 10);
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(10, 6, 10, 8);
    layout->setSpacing(4);

    auto* top = new QHBoxLayout();
    auto* when = new QLabel(QString::fromStdString(entry.timestamp), card);
    when->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 9pt;"
                                              " font-weight: bold; }")));
    top->addWidget(when);
    auto* mic = new QLabel(QStringLiteral("🎙 ") + micTypeName(entry.result.micType), card);
    mic->setStyleSheet(themed(QStringLiteral("QLabel { color: {lilac}; font-size: 8pt; }")));
    top->addWidget(mic);
    top->addStretch(1);
    if (entry.presetApplied) {
        auto* applied = new QLabel(QStringLiteral("🔧 ") + tr("Applied"), card);
        applied->setToolTip(tr("The recommended settings were applied"));
        applied->setStyleSheet(
            themed(QStringLiteral("QLabel { color: {blueInk}; font-size: 8pt; }")));
        top->addWidget(applied);
    }
    auto* overall = new QLabel(verdictLabel(entry.result.overall), card);
    overall->setStyleSheet(Styles::verdictChip(entry.result.overall));
    top->addWidget(overall);
    layout->addLayout(top);

    if (!entry.result.items.empty()) {
        auto* grid = new QGridLayout();
        grid->setHorizontalSpacing(8);
        grid->setVerticalSpacing(1);
        int i = 0;
        for (const DiagnosisItem& item : entry.result.items) {
            auto* chip = new QLabel(
                AdviceCard::metricName(item.key) + QLatin1Char(' ') + levelIcon(item.level), card);
            chip->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 8pt; }")));
            grid->addWidget(chip, i / 3, i % 3);
            ++i;
        }
        layout->addLayout(grid);
    }
    return card;
}

void DiagnosisHistoryList::refresh() {
    while (QLayoutItem* item = cards_->takeAt(0)) {
        if (QWidget* w = item->widget()) {
            w->hide();
            w->deleteLater();
        }
        delete item;
    }
    entries_ = 0;
    if (store_) {
        const AppSettings s = store_->load();
        for (const DiagnosisHistoryEntry& entry : s.diagnosisHistory) {
            cards_->addWidget(makeCard(entry));
            ++entries_;
        }
    }
    empty_->setVisible(entries_ == 0);
}

void DiagnosisHistoryList::retranslateUi() {
    title_->setText(QStringLiteral("📋 ") + tr("Diagnosis history"));
    empty_->setText(keepPhrases(tr("No diagnosis yet.")));
    refresh();
}

} // namespace Lumora
