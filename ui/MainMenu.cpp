#include "ui/MainMenu.h"

#include "LumoraVersion.h"
#include "ui/Localisation.h"
#include "ui/Theme.h"
#include "ui/ToggleSwitch.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPixmap>
#include <QWidgetAction>

namespace Lumora {

QIcon MainMenu::buttonIcon() {
    constexpr int kSize = 20; // logical pixels
    QIcon icon;
    // Sharp at 100 %, 150 %, 200 % and 300 % scaling.
    for (int scale : {1, 2, 3}) {
        QPixmap pixmap(kSize * scale, kSize * scale);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        p.scale(scale, scale);
        p.setPen(QPen(Palette::colour(Palette::kInk), 2.2, Qt::SolidLine, Qt::RoundCap));
        for (int bar = 0; bar < 3; ++bar) {
            const qreal y = 4.5 + bar * 5.5;
            p.drawLine(QPointF(3, y), QPointF(kSize - 3, y));
        }
        p.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

QString MainMenu::menuStyle() {
    return QStringLiteral(
        "QMenu {  background: {white};  border: 1px solid {teal@120};"
        "  padding: 6px 0px 6px 0px; }"
        "QMenu::item { padding: 8px 20px; font-size: 11pt; color: {ink}; min-height: 28px;"
        " background: transparent; }"
        "QMenu::item:selected { background: {teal@40}; }"
        "QMenu::item:disabled { color: {muted}; }"
        "QMenu::separator { height: 1px; background: {teal@60}; margin: 4px 12px; }");
}

MainMenu::MainMenu(QWidget* parent, bool easyMode, bool offerFeedback) : QMenu(parent) {
    setStyleSheet(themed(menuStyle()));

    languageMenu_ = addMenu(QStringLiteral("🌐 ") + tr("Language"));
    // Native names read best in the system's own face (the hand-written one sets
    // Cyrillic full-width); the current language is bold.
    languageMenu_->setStyleSheet(themed(
        menuStyle() + QStringLiteral("QMenu { font-family: \"%1\"; }"
                                     "QMenu::item:checked { font-weight: bold; }"
                                     "QMenu::indicator { width: 0px; height: 0px; }")
                          .arg(QFontDatabase::systemFont(QFontDatabase::GeneralFont).family())));
    const QString current = currentLanguage();
    for (const LanguageEntry& language : knownLanguages()) {
        const bool isCurrent = language.code == current;
        QAction* action = languageMenu_->addAction(
            (isCurrent ? QStringLiteral("✓  ") : QStringLiteral("    ")) + language.nativeName);
        action->setData(language.code);
        if (isCurrent) {
            QFont bold = action->font();
            bold.setWeight(QFont::Bold);
            action->setFont(bold);
            action->setCheckable(true);
            action->setChecked(true);
        }
        const QString code = language.code;
        connect(action, &QAction::triggered, this, [this, code] { emit languageChosen(code); });
    }

    addSeparator();
    auto* modeRow = new QWidget(this);
    modeRow->setMinimumWidth(220);
    auto* rowLayout = new QHBoxLayout(modeRow);
    rowLayout->setContentsMargins(20, 8, 20, 8);
    rowLayout->setSpacing(12);
    modeLabel_ = new QLabel(modeRow);
    modeLabel_->setStyleSheet(themed(
        QStringLiteral("QLabel { color: {ink}; font-size: 11pt; background: transparent; }")));
    modeSwitch_ = new ToggleSwitch(modeRow);
    modeSwitch_->setChecked(easyMode);
    rowLayout->addWidget(modeLabel_, 1);
    rowLayout->addWidget(modeSwitch_);
    auto* modeAction = new QWidgetAction(this);
    modeAction->setDefaultWidget(modeRow);
    addAction(modeAction);
    refreshModeLabel();
    connect(modeSwitch_, &ToggleSwitch::toggled, this, [this](bool on) {
        refreshModeLabel();
        emit easyModeChanged(on);
    });

    addSeparator();
    if (offerFeedback) {
        connect(addAction(QStringLiteral("📬 ") + tr("Send Feedback")), &QAction::triggered, this,
                &MainMenu::feedbackRequested);
    }
    QAction* version = addAction(QStringLiteral("Tindra  v") + QString::fromLatin1(kVersion));
    version->setEnabled(false);
    connect(addAction(tr("Credits")), &QAction::triggered, this, &MainMenu::creditsRequested);
}

void MainMenu::refreshModeLabel() {
    modeLabel_->setText(modeSwitch_->isChecked() ? tr("🌟 Easy Mode") : tr("⚙ Advanced Mode"));
}

} // namespace Lumora
