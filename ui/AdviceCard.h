#pragma once

#include "diagnosis/DiagnosisResult.h"

#include <QWidget>

class QLabel;

namespace Lumora {

// One of the six verdicts on the results page: what was measured, the verdict,
// the measured value and the advice, in the current language.
class AdviceCard : public QWidget {
    Q_OBJECT
public:
    AdviceCard(QWidget* parent, const DiagnosisItem& item);

    QString heading() const;
    QString verdict() const;
    QString title() const;
    QString advice() const;
    QString valueText() const;

    // "Volume", "Noise", ... for a verdict key (translated; emoji prefix joined).
    static QString metricName(const std::string& key);
    // The measured value with its unit, "—" when unknown (-96).
    static QString formatValue(const DiagnosisItem& item);

private:
    QLabel* heading_ = nullptr;
    QLabel* value_ = nullptr;
    QLabel* verdict_ = nullptr;
    QLabel* title_ = nullptr;
    QLabel* advice_ = nullptr;
};

} // namespace Lumora
