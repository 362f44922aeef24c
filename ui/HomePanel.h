#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace Lumora {

class LevelMeter;

// The diagnose tab's start page: Tindra's invitation, the button that starts the
// diagnosis, the live microphone and output levels, and the last result's line.
class HomePanel : public QWidget {
    Q_OBJECT
public:
    explicit HomePanel(QWidget* parent);

    void retranslateUi();

    void setLevels(float micDb, float outputDb);
    void clearLevels();
    // Without a filter the meters stay empty and a note says why.
    void setLevelsAvailable(bool available);
    // The last diagnosis in one line; empty hides the line.
    void setStatus(const QString& text);
    QString status() const;

    QPushButton* startButton() const { return startButton_; }
    LevelMeter* micMeter() const { return micMeter_; }
    LevelMeter* outputMeter() const { return outputMeter_; }

signals:
    void startRequested();

private:
    QLabel* character_ = nullptr;
    QLabel* title_ = nullptr;
    QLabel* description_ = nullptr;
    QPushButton* startButton_ = nullptr;
    QLabel* levelsTitle_ = nullptr;
    QLabel* micLabel_ = nullptr;
    QLabel* outputLabel_ = nullptr;
    LevelMeter* micMeter_ = nullptr;
    LevelMeter* outputMeter_ = nullptr;
    QLabel* noLevels_ = nullptr;
    QLabel* status_ = nullptr;
};

} // namespace Lumora
