#pragma once

#include <QIcon>
#include <QMenu>

class QLabel;

namespace Lumora {

class ToggleSwitch;

// The "≡" menu: language, Easy/Advanced mode, feedback (only when the build
// names a feedback address), version and credits. The dialog builds a fresh
// one for every click.
class MainMenu : public QMenu {
    Q_OBJECT
public:
    MainMenu(QWidget* parent, bool easyMode, bool offerFeedback);

    QMenu* languageMenu() const { return languageMenu_; }
    ToggleSwitch* modeSwitch() const { return modeSwitch_; }
    QLabel* modeLabel() const { return modeLabel_; }

    static QString menuStyle();
    // The three bars of the button that opens the menu, drawn rather than taken
    // from a font: inside OBS the host's style shrank the "≡" glyph to half size.
    static QIcon buttonIcon();

signals:
    void languageChosen(const QString& code);
    void easyModeChanged(bool easy);
    void feedbackRequested();
    void creditsRequested();

private:
    void refreshModeLabel();

    QMenu* languageMenu_ = nullptr;
    ToggleSwitch* modeSwitch_ = nullptr;
    QLabel* modeLabel_ = nullptr;
};

} // namespace Lumora
