#include "ui/MainTabBar.h"

#include "ui/Theme.h"
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace Lumora {

namespace {

const char* const kEmojis[MainTabBar::kTabCount] = {"🔍", "💬", "🎛", "🎵", "💾", "🎹"};

const char kSelectedTab[] = "QWidget { background: {teal@14};"
                            " border-top: 2px solid {teal}; }";
const char kPlainTab[] = "QWidget { background: transparent; border-top: 2px solid transparent; }";
const char kSelectedEmoji[] = "QLabel { font-size: 18pt; color: {tealInk}; background: transparent;"
                              " border: none; }";
const char kPlainEmoji[] = "QLabel { font-size: 18pt; color: {muted}; background: transparent;"
                           " border: none; }";
const char kSelectedText[] = "QLabel { font-size: 8pt; font-weight: bold; color: {tealInk};"
                             " background: transparent; border: none; }";
const char kPlainText[] = "QLabel { font-size: 8pt; color: {muted}; background: transparent;"
                          " border: none; }";

} // namespace

MainTabBar::MainTabBar(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("mainTabBar"));
    setAttribute(Qt::WA_StyledBackground);
    setFixedHeight(kHeight);
    // Cascades to the tabs and labels too, but each of them sets its own.
    setStyleSheet(themed(QStringLiteral("QWidget { background: {white@235};"
                                        " border-top: 1px solid {teal@80}; }")));
    markPanel(this, 0);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (int i = 0; i < kTabCount; ++i) {
        auto* tab = new QWidget(this);
        tab->setObjectName(QStringLiteral("tab%1").arg(i));
        tab->setAttribute(Qt::WA_StyledBackground);
        tab->setCursor(Qt::PointingHandCursor);
        auto* column = new QVBoxLayout(tab);
        column->setContentsMargins(0, 6, 0, 6);
        column->setSpacing(0);
        auto* emoji = new QLabel(QString::fromUtf8(kEmojis[i]), tab);
        emoji->setObjectName(QStringLiteral("tabEmoji"));
        emoji->setAlignment(Qt::AlignCenter);
        auto* text = new QLabel(tab);
        text->setObjectName(QStringLiteral("tabText"));
        text->setAlignment(Qt::AlignCenter);
        column->addWidget(emoji, 1);
        column->addWidget(text);
        row->addWidget(tab, 1);
        tabs_[static_cast<size_t>(i)] = tab;
        emojis_[static_cast<size_t>(i)] = emoji;
        texts_[static_cast<size_t>(i)] = text;
    }
    setSelected(0);
    retranslateUi();
}

int MainTabBar::indexOf(const QObject* object) const {
    for (int i = 0; i < kTabCount; ++i) {
        if (tabs_[static_cast<size_t>(i)] == object) {
            return i;
        }
    }
    return -1;
}

void MainTabBar::setSelected(int index) {
    selected_ = index;
    for (int i = 0; i < kTabCount; ++i) {
        const bool on = i == index;
        tabs_[static_cast<size_t>(i)]->setStyleSheet(
            themed(QLatin1String(on ? kSelectedTab : kPlainTab)));
        emojis_[static_cast<size_t>(i)]->setStyleSheet(
            themed(QLatin1String(on ? kSelectedEmoji : kPlainEmoji)));
        texts_[static_cast<size_t>(i)]->setStyleSheet(
            themed(QLatin1String(on ? kSelectedText : kPlainText)));
    }
}

void MainTabBar::retranslateUi() {
    const QString labels[kTabCount] = {tr("Diagnose"), tr("Results"), tr("Sound"),
                                       tr("FX"),       tr("Presets"), tr("Keys")};
    for (int i = 0; i < kTabCount; ++i) {
        texts_[static_cast<size_t>(i)]->setText(labels[i]);
    }
}

} // namespace Lumora
