// Every text the Japanese interface shows, page by page and sub-page by
// sub-page, read off the widgets themselves: an English word left in it is a
// text that never went through the translation.

#include "engine/FilterEngine.h"
#include "settings/SettingsStore.h"
#include "settings/support/TempFolder.h"
#include "ui/Localisation.h"
#include "ui/PresetsPage.h"
#include "ui/WizardDialog.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace Lumora {
namespace {

// Names, units and abbreviations that stay in Latin letters in Japanese too.
bool allowedWord(const QString& word) {
    static const std::set<QString> allowed = {
        "Tindra", "Lumora",  "OBS",  "FX",    "EQ",        "AI",      "dB",
        "dBFS",   "Hz",      "kHz",  "ms",    "LUFS",      "Thresh",  "DeepFilterNet",
        "PC",     "FM",      "Klee", "One",   "Fontworks", "SIL",     "Open",
        "Font",   "License", "Q",    "Ratio", "Attack",    "Release", "Knee",
        "Makeup", "Gain",    "Mix",  "Low",   "High",      "Cut",     "Shelf",
        "Peak",   "BPM",     "LFO",  "Hi",    "Lo"};
    return allowed.count(word) > 0;
}

// The visible texts under `root`: labels, buttons, choosers, placeholders.
QStringList visibleTexts(QWidget* root) {
    QStringList texts;
    for (QWidget* w : root->findChildren<QWidget*>()) {
        if (!w->isVisibleTo(root)) {
            continue;
        }
        if (auto* label = qobject_cast<QLabel*>(w)) {
            texts << label->text();
        } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
            texts << button->text();
        } else if (auto* combo = qobject_cast<QComboBox*>(w)) {
            texts << combo->currentText();
        } else if (auto* edit = qobject_cast<QLineEdit*>(w)) {
            texts << edit->placeholderText();
        }
    }
    return texts;
}

TEST(JapaneseWalk, EveryPageShowsNoUntranslatedEnglish) {
    Testing::TempFolder folder;
    FilterEngine engine;
    engine.prepare(48000.0);
    engine.setStore(std::make_unique<SettingsStore>(folder.path()));
    engine.restoreFromSettings();
    applyLanguage(QStringLiteral("ja"));
    WizardDialog dialog(nullptr, &engine);
    dialog.show();
    dialog.tickTimer()->stop();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&dialog));

    const QRegularExpression word(QStringLiteral("[A-Za-z][A-Za-z]+"));
    auto check = [&](const QString& where) {
        for (const QString& text : visibleTexts(&dialog)) {
            if (text.startsWith(QLatin1Char('<'))) {
                continue; // rich text: its tags are not words
            }
            auto it = word.globalMatch(text);
            while (it.hasNext()) {
                const QString w = it.next().captured();
                EXPECT_TRUE(allowedWord(w)) << where.toStdString() << ": \"" << w.toStdString()
                                            << "\" in \"" << text.toStdString() << "\"";
            }
        }
    };
    for (int tab = 0; tab <= WizardDialog::kKeysTab; ++tab) {
        dialog.selectTab(tab);
        if (tab == WizardDialog::kPresetsTab) {
            for (int sub = 0; sub < PresetsPage::kSubPageCount; ++sub) {
                dialog.presetsPage()->selectSubTab(sub);
                check(QStringLiteral("presets %1").arg(sub));
            }
        } else {
            check(QStringLiteral("tab %1").arg(tab));
        }
    }
}

} // namespace
} // namespace Lumora
