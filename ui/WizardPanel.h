#pragma once

#include <QPixmap>
#include <QWidget>

#include <array>
#include <string>

class QGridLayout;
class QLabel;
class QPushButton;
class QStackedWidget;

namespace Lumora {

class CountdownWidget;
class DiagnosisController;
class LevelMeter;

// The full-window diagnosis flow: Tindra, the speech bubble with the wizard's
// text, and per state the mic choice, the start button, the countdown with live
// level and tips, retry/next, the analysis and the result's actions. It shows a
// DiagnosisController; every button only emits a signal for the dialog.
class WizardPanel : public QWidget {
    Q_OBJECT
public:
    // The action area's pages, one per group of wizard states.
    enum Page {
        kMicPage,
        kPromptPage,
        kTakePage,
        kDonePage,
        kBusyPage,
        kResultPage,
        kSavePage,
        kEndPage,
        kPageCount
    };

    explicit WizardPanel(QWidget* parent);

    // Called by the dialog's tick: follows the controller's state, advances the
    // countdown, the tips and the live meter. Repaints only what changed.
    void refresh(const DiagnosisController& controller, double dt, float levelDb);
    // Re-reads every text (after a language change).
    void retranslateUi(const DiagnosisController& controller);

    // For tests and the screenshot tool.
    QString bubbleText() const;
    QString hintText() const;
    QString tipText() const;
    int actionPage() const;
    QPushButton* micButton(int micType) const { return micButtons_[static_cast<size_t>(micType)]; }
    QPushButton* startButton() const { return startButton_; }
    QPushButton* retryButton() const { return retryButton_; }
    QPushButton* nextButton() const { return nextButton_; }
    QPushButton* cancelButton() const { return cancelButton_; }
    QPushButton* closeButton() const { return closeButton_; }
    QPushButton* applyButton() const { return applyButton_; }
    QPushButton* offerSaveButton() const { return offerSaveButton_; }
    QPushButton* detailsButton() const { return detailsButton_; }
    QPushButton* saveButton() const { return saveButton_; }
    QPushButton* notNowButton() const { return notNowButton_; }
    CountdownWidget* countdown() const { return countdown_; }

signals:
    void micChosen(int micType);
    void startRequested();
    void retryRequested();
    void nextRequested();
    void cancelRequested();
    void closeRequested();
    void applyRequested();
    void offerSaveRequested();
    void saveRequested();
    void detailsRequested();

private:
    QWidget* buildMicPage();
    QWidget* buildTakePage();
    QWidget* buildButtonsPage(std::initializer_list<QPushButton*> buttons, bool vertical);
    QPushButton* makeButton(const QString& style);
    void setTextIfChanged(QLabel* label, const QString& text);
    void showMood(int mood);
    void updateStepDots(int completed, int current);

    QLabel* titleLabel_ = nullptr;
    QLabel* stepLabel_ = nullptr;
    QPushButton* closeButton_ = nullptr;
    QLabel* character_ = nullptr;
    QLabel* bubble_ = nullptr;
    QLabel* hint_ = nullptr;
    QStackedWidget* actions_ = nullptr;
    std::array<QPushButton*, 4> micButtons_{};
    QPushButton* startButton_ = nullptr;
    CountdownWidget* countdown_ = nullptr;
    CountdownWidget* busy_ = nullptr;
    LevelMeter* liveMeter_ = nullptr;
    QLabel* liveLabel_ = nullptr;
    QPushButton* retryButton_ = nullptr;
    QPushButton* nextButton_ = nullptr;
    QPushButton* applyButton_ = nullptr;
    QPushButton* offerSaveButton_ = nullptr;
    QPushButton* detailsButton_ = nullptr;
    QPushButton* saveButton_ = nullptr;
    QPushButton* notNowButton_ = nullptr;
    QLabel* tip_ = nullptr;
    QPushButton* cancelButton_ = nullptr;

    std::array<QPixmap, 4> moods_{};
    int shownMood_ = -1;
    int shownState_ = -1;
    int shownStep_ = -1;
    std::string shownLanguage_;
    double tipClock_ = 0.0;
    QString dotsKey_;
};

} // namespace Lumora
