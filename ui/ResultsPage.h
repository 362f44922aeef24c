#pragma once

#include "diagnosis/DiagnosisResult.h"

#include <QWidget>

class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace Lumora {

class AdviceCard;
class ResultSummaryCard;

// The results tab: the summary card and the six advice cards of the result in
// use (or a placeholder before the first diagnosis), over a bar with "Apply
// recommended settings", "Save preset" and "Run diagnosis again".
class ResultsPage : public QWidget {
    Q_OBJECT
public:
    explicit ResultsPage(QWidget* parent);

    // Null shows the placeholder. The result is copied, so a language change
    // can render it again.
    void showResult(const DiagnosisResult* result);
    // Re-sets the buttons and placeholder and renders the result again.
    void retranslateUi();

    int cardCount() const;
    AdviceCard* card(int index) const;
    ResultSummaryCard* summaryCard() const { return summary_; }
    QLabel* placeholder() const { return placeholder_; }
    QPushButton* applyButton() const { return applyButton_; }
    QPushButton* saveButton() const { return saveButton_; }
    QPushButton* rerunButton() const { return rerunButton_; }

signals:
    void applyRequested();
    void saveRequested();
    void rerunRequested();
    // Cards were added or removed.
    void contentChanged();

private:
    void render();

    QScrollArea* scroll_ = nullptr;
    QWidget* content_ = nullptr;
    QVBoxLayout* contentLayout_ = nullptr;
    QLabel* placeholder_ = nullptr;
    ResultSummaryCard* summary_ = nullptr;
    QList<AdviceCard*> cards_;
    QPushButton* applyButton_ = nullptr;
    QPushButton* saveButton_ = nullptr;
    QPushButton* rerunButton_ = nullptr;
    bool hasResult_ = false;
    DiagnosisResult result_;
};

} // namespace Lumora
