#pragma once

#include "diagnosis/DiagnosisResult.h"

#include <QWidget>

class QLabel;

namespace Lumora {

// The head of the results page: Tindra's face for the overall verdict, the
// overall label, the one-line summary and the mic type.
class ResultSummaryCard : public QWidget {
    Q_OBJECT
public:
    ResultSummaryCard(QWidget* parent, const DiagnosisResult& result);

    QString summary() const;
    QString verdict() const;

    // The summary line in the current language: English only for "en".
    static QString summaryFor(const DiagnosisResult& result);
    static QString micTypeName(int micType);

private:
    QLabel* character_ = nullptr;
    QLabel* verdict_ = nullptr;
    QLabel* summary_ = nullptr;
    QLabel* mic_ = nullptr;
};

} // namespace Lumora
