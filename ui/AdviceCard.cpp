#include "ui/AdviceCard.h"

#include "ui/Localisation.h"
#include "ui/PhraseBreaks.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace Lumora {

AdviceCard::AdviceCard(QWidget* parent, const DiagnosisItem& item) : QWidget(parent) {
    setObjectName(QStringLiteral("adviceCard"));
    setAttribute(Qt::WA_StyledBackground);
    const QColor accent = Palette::verdictColour(item.level);
    setStyleSheet(themed(QStringLiteral("#adviceCard { background: {white@215};"
                                        " border: 1px solid {lilacLine@90};"
                                        " border-left: 4px solid %1; border-radius: 14px; }")
                             .arg(accent.name())));

    markPanel(this, 14);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 10, 14, 12);
    layout->setSpacing(4);
    auto* head = new QHBoxLayout();
    head->setSpacing(8);
    heading_ = new QLabel(metricName(item.key), this);
    heading_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt;"
                              " font-weight: bold; background: transparent; }")));
    value_ = new QLabel(formatValue(item), this);
    value_->setStyleSheet(themed(QStringLiteral("QLabel { color: {muted}; font-size: 8pt;"
                                                " background: transparent; }")));
    verdict_ = new QLabel(verdictLabel(item.level), this);
    verdict_->setStyleSheet(Styles::verdictChip(item.level));
    head->addWidget(heading_);
    head->addStretch(1);
    head->addWidget(value_);
    head->addWidget(verdict_);
    layout->addLayout(head);

    const bool ja = isJapanese();
    const std::string& title = ja ? item.titleJa : item.titleEn;
    const std::string& advice = ja ? item.adviceJa : item.adviceEn;
    title_ = new QLabel(keepPhrases(QString::fromStdString(title)), this);
    title_->setWordWrap(true);
    title_->setTextFormat(Qt::PlainText);
    title_->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt;"
                                                " background: transparent; }")));
    layout->addWidget(title_);
    advice_ = new QLabel(keepPhrases(QString::fromStdString(advice)), this);
    advice_->setWordWrap(true);
    advice_->setTextFormat(Qt::PlainText);
    advice_->setStyleSheet(themed(QStringLiteral("QLabel { color: {lilac}; font-size: 9pt;"
                                                 " background: transparent; }")));
    advice_->setVisible(!advice.empty());
    layout->addWidget(advice_);
}

QString AdviceCard::heading() const {
    return heading_->text();
}
QString AdviceCard::verdict() const {
    return verdict_->text();
}
QString AdviceCard::title() const {
    return withoutJoiners(title_->text());
}
QString AdviceCard::advice() const {
    return withoutJoiners(advice_->text());
}
QString AdviceCard::valueText() const {
    return value_->text();
}

QString AdviceCard::metricName(const std::string& key) {
    if (key == "clipping") {
        return QStringLiteral("💥 ") + tr("Clipping");
    }
    if (key == "volume") {
        return QStringLiteral("🔊 ") + tr("Volume");
    }
    if (key == "noise") {
        return QStringLiteral("🌫 ") + tr("Background noise");
    }
    if (key == "distance") {
        return QStringLiteral("📏 ") + tr("Mic distance");
    }
    if (key == "dynamics") {
        return QStringLiteral("🎢 ") + tr("Dynamics");
    }
    if (key == "pop") {
        return QStringLiteral("💨 ") + tr("Pop noise");
    }
    return QString::fromStdString(key);
}

QString AdviceCard::formatValue(const DiagnosisItem& item) {
    if (!(item.value > -96.0f)) {
        return QStringLiteral("—");
    }
    const double v = static_cast<double>(item.value);
    if (item.key == "clipping" || item.key == "volume" || item.key == "noise") {
        return QStringLiteral("%1 dBFS").arg(v, 0, 'f', 1);
    }
    if (item.key == "dynamics") {
        return QStringLiteral("%1 dB").arg(v, 0, 'f', 1);
    }
    return QStringLiteral("%1%2 dB")
        .arg(v > 0.0 ? QStringLiteral("+") : QString())
        .arg(v, 0, 'f', 1);
}

} // namespace Lumora
