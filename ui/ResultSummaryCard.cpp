#include "ui/ResultSummaryCard.h"

#include "ui/Localisation.h"
#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace Lumora {

ResultSummaryCard::ResultSummaryCard(QWidget* parent, const DiagnosisResult& result)
    : QWidget(parent) {
    setObjectName(QStringLiteral("resultSummary"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(
        themed(QStringLiteral("#resultSummary { background: {white@225};"
                              " border: 1.5px solid {teal@120}; border-radius: 16px; }")));
    markPanel(this, 16);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 10, 16, 10);
    row->setSpacing(12);

    character_ = new QLabel(this);
    character_->setFixedSize(96, 96);
    character_->setStyleSheet(themed(QStringLiteral("QLabel { background: transparent; }")));
    QPixmap face(characterImagePath(std::clamp(result.overall, 0, 2)));
    if (!face.isNull()) {
        const qreal dpr = devicePixelRatioF();
        face = face.scaled(QSize(96, 96) * dpr, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        face.setDevicePixelRatio(dpr);
        character_->setPixmap(face);
    }
    row->addWidget(character_);

    auto* column = new QVBoxLayout();
    column->setSpacing(4);
    verdict_ = new QLabel(verdictLabel(result.overall), this);
    verdict_->setStyleSheet(Styles::verdictChip(result.overall) +
                            QStringLiteral("QLabel { border-radius: 10px; padding: 3px 10px;"
                                           " font-size: 9pt; }"));
    summary_ = new QLabel(summaryFor(result), this);
    summary_->setWordWrap(true);
    summary_->setTextFormat(Qt::PlainText);
    summary_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {ink}; font-size: 12pt;"
                              " font-weight: bold; background: transparent; }")));
    mic_ = new QLabel(QStringLiteral("🎤 ") + micTypeName(result.micType), this);
    mic_->setStyleSheet(themed(QStringLiteral("QLabel { color: {lilac}; font-size: 9pt;"
                                              " background: transparent; }")));
    column->addWidget(verdict_, 0, Qt::AlignLeft);
    column->addWidget(summary_);
    column->addWidget(mic_);
    column->addStretch(1);
    row->addLayout(column, 1);
}

QString ResultSummaryCard::summary() const {
    return summary_->text();
}
QString ResultSummaryCard::verdict() const {
    return verdict_->text();
}

QString ResultSummaryCard::summaryFor(const DiagnosisResult& result) {
    return QString::fromStdString(isJapanese() ? result.summaryJa : result.summaryEn);
}

QString ResultSummaryCard::micTypeName(int micType) {
    switch (micType) {
    case 0:
        return tr("Dynamic mic");
    case 1:
        return tr("Condenser mic");
    case 2:
        return tr("USB mic");
    default:
        return tr("Mic type not given");
    }
}

} // namespace Lumora
