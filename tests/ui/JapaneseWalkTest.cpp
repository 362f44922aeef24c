// Every text the Japanese interface shows, page by page and sub-page by
// sub-page, read off the widgets themselves: an English word left in it is a
// text that never went through the translation.

#include "engine/FilterEngine.h"
#include "settings/SettingsStore.h"
#include "settings/support/TempFolder.h"
#include "ui/Localisation.h"
#include "ui/PhraseBreaks.h"
#include "ui/PresetsPage.h"
#include "ui/WizardDialog.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QStackedWidget>
#include <QTest>
#include <QTextLayout>
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

// The dialog on a real engine and settings file, in Japanese, with a way to
// visit every tab and presets sub-page.
struct JapaneseDialog {
    Testing::TempFolder folder;
    FilterEngine engine;
    std::unique_ptr<WizardDialog> dialog;
    JapaneseDialog() {
        engine.prepare(48000.0);
        engine.setStore(std::make_unique<SettingsStore>(folder.path()));
        engine.restoreFromSettings();
        applyLanguage(QStringLiteral("ja"));
        dialog = std::make_unique<WizardDialog>(nullptr, &engine);
        dialog->show();
        dialog->tickTimer()->stop();
    }
    template <typename F>
    void visitEveryPage(F check) {
        for (int tab = 0; tab <= WizardDialog::kKeysTab; ++tab) {
            dialog->selectTab(tab);
            if (tab == WizardDialog::kPresetsTab) {
                for (int sub = 0; sub < PresetsPage::kSubPageCount; ++sub) {
                    dialog->presetsPage()->selectSubTab(sub);
                    check(QStringLiteral("presets %1").arg(sub));
                }
            } else {
                check(QStringLiteral("tab %1").arg(tab));
            }
        }
    }
};

TEST(JapaneseWalk, EveryPageShowsNoUntranslatedEnglish) {
    JapaneseDialog d;
    ASSERT_TRUE(QTest::qWaitForWindowExposed(d.dialog.get()));
    const QRegularExpression word(QStringLiteral("[A-Za-z][A-Za-z]+"));
    d.visitEveryPage([&](const QString& where) {
        for (const QString& text : visibleTexts(d.dialog.get())) {
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
    });
}

// Wrapped Japanese never breaks inside a phrase ("「プ" / "リセット」") or
// leaves an opening bracket at a line's end: every wrapped label is laid out
// at its real width and each line end is checked.
TEST(JapaneseWalk, WrappedTextBreaksOnlyBetweenPhrases) {
    JapaneseDialog d;
    ASSERT_TRUE(QTest::qWaitForWindowExposed(d.dialog.get()));
    int linesChecked = 0;
    d.visitEveryPage([&](const QString& where) {
        QCoreApplication::processEvents();
        for (QLabel* label : d.dialog->findChildren<QLabel*>()) {
            if (!label->isVisibleTo(d.dialog.get()) || !label->wordWrap() ||
                label->text().startsWith(QLatin1Char('<')) || label->contentsRect().width() < 20) {
                continue;
            }
            const QString text = label->text();
            QTextLayout layout(text, label->font());
            QTextOption option;
            option.setWrapMode(QTextOption::WordWrap);
            layout.setTextOption(option);
            layout.beginLayout();
            QString shown = withoutJoiners(text);
            for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
                line.setLineWidth(label->contentsRect().width() - 2 * label->margin());
                const int end = line.textStart() + line.textLength();
                if (end <= 0 || end >= text.size()) {
                    continue;
                }
                ++linesChecked;
                // The characters either side of the break, joiners aside.
                const QString before = withoutJoiners(text.left(end)).trimmed();
                const QString after = withoutJoiners(text.mid(end)).trimmed();
                if (before.isEmpty() || after.isEmpty()) {
                    continue;
                }
                EXPECT_TRUE(phraseBreakAllowed(before.back(), after.front()))
                    << where.toStdString() << ": \"" << before.toStdString() << "\" | \""
                    << after.toStdString() << "\"";
            }
            layout.endLayout();
        }
    });
    EXPECT_GE(linesChecked, 3); // the walk did see wrapped Japanese
}

// No single-line text is wider than its widget: a clipped word in Japanese
// reads as a different word.
TEST(JapaneseWalk, NoSingleLineTextIsClipped) {
    JapaneseDialog d;
    ASSERT_TRUE(QTest::qWaitForWindowExposed(d.dialog.get()));
    int labelsChecked = 0;
    d.visitEveryPage([&](const QString& where) {
        QCoreApplication::processEvents();
        for (QLabel* label : d.dialog->findChildren<QLabel*>()) {
            if (!label->isVisibleTo(d.dialog.get()) || label->wordWrap() ||
                label->text().isEmpty() || label->text().startsWith(QLatin1Char('<')) ||
                label->text().contains(QLatin1Char('\n'))) {
                continue;
            }
            ++labelsChecked;
            const int needed = label->fontMetrics().horizontalAdvance(label->text());
            const int room = label->contentsRect().width() - 2 * label->margin();
            EXPECT_LE(needed, room + 1)
                << where.toStdString() << ": \"" << label->text().toStdString() << "\" needs "
                << needed << " px, has " << room;
        }
    });
    EXPECT_GT(labelsChecked, 30); // the walk did measure the pages' labels
}

} // namespace
} // namespace Lumora
