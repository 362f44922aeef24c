// Every text the Japanese interface shows, page by page and sub-page by
// sub-page, read off the widgets themselves: an English word left in it is a
// text that never went through the translation.

#include "PanelTestSupport.h"
#include "engine/FilterEngine.h"
#include "settings/SettingsStore.h"
#include "settings/support/TempFolder.h"
#include "ui/PhraseBreaks.h"
#include "ui/PresetsPage.h"
#include "ui/ResultsPage.h"
#include "ui/Theme.h"
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

#include <algorithm>
#include <map>
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
    DiagnosisResult result; // a diagnosis with a verdict of every level
    JapaneseDialog() {
        engine.prepare(48000.0);
        result.overall = kLevelWarning;
        const char* keys[] = {"clipping", "volume", "distance"};
        for (int32_t level = kLevelGood; level <= kLevelWarning; ++level) {
            DiagnosisItem item;
            item.key = keys[level];
            item.level = level;
            item.titleJa = "マイクとの距離を見直しましょう";
            item.adviceJa = "口からこぶし一つ分はなしてください。";
            result.items.push_back(item);
        }
        // The history holds one diagnosis of each verdict, so its cards are walked too.
        auto store = std::make_unique<SettingsStore>(folder.path());
        AppSettings settings;
        for (int32_t level = kLevelGood; level <= kLevelWarning; ++level) {
            DiagnosisHistoryEntry entry;
            entry.timestamp = "2026-11-24 20:00:00";
            entry.presetApplied = level == kLevelGood;
            entry.result = result;
            entry.result.overall = level;
            settings.diagnosisHistory.push_back(entry);
        }
        store->save(settings);
        engine.setStore(std::move(store));
        engine.restoreFromSettings();
        // Inside OBS the host's dark theme styles every widget: light text, and
        // margins and padding on buttons. Whatever the dialog does not set itself
        // comes from there, so the walk looks at the dialog under those rules.
        qApp->setStyleSheet(QStringLiteral(
            "QWidget { color: rgb(254,254,254); font-size: 10pt; }"
            "QPushButton { margin-top: 3px; margin-bottom: 3px; }"
            "QToolButton { background-color: rgb(60,64,75); padding: 4px 6px; margin: 0px 2px; }"));
        dialog = std::make_unique<WizardDialog>(nullptr, &engine);
        dialog->show();
        dialog->tickTimer()->stop();
    }
    template <typename F>
    void visitEveryPage(F check) {
        for (int tab = 0; tab <= WizardDialog::kKeysTab; ++tab) {
            dialog->selectTab(tab);
            if (tab == WizardDialog::kResultsTab) {
                dialog->resultsPage()->showResult(&result);
            }
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

// An English word left in the page is a text that never went through the translation.
void expectNoUntranslatedEnglish(QWidget* dialog, const QString& where) {
    static const QRegularExpression word(QStringLiteral("[A-Za-z][A-Za-z]+"));
    for (const QString& text : visibleTexts(dialog)) {
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
}

// Wrapped Japanese never breaks inside a phrase ("「プ" / "リセット」") or
// leaves an opening bracket at a line's end: every wrapped label is laid out
// at its real width and each line end is checked. Returns the breaks checked.
int expectBreaksOnlyBetweenPhrases(QWidget* dialog, const QString& where) {
    int linesChecked = 0;
    for (QLabel* label : dialog->findChildren<QLabel*>()) {
        if (!label->isVisibleTo(dialog) || !label->wordWrap() ||
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
    return linesChecked;
}

// No single-line text is wider than its widget: a clipped word in Japanese
// reads as a different word. Returns the labels measured.
int expectNothingClipped(QWidget* dialog, const QString& where) {
    int labelsChecked = 0;
    for (QLabel* label : dialog->findChildren<QLabel*>()) {
        if (!label->isVisibleTo(dialog) || label->wordWrap() || label->text().isEmpty() ||
            label->text().startsWith(QLatin1Char('<')) ||
            label->text().contains(QLatin1Char('\n'))) {
            continue;
        }
        ++labelsChecked;
        const int needed = label->fontMetrics().horizontalAdvance(label->text());
        const int room = label->contentsRect().width() - 2 * label->margin();
        EXPECT_LE(needed, room + 1) << where.toStdString() << ": \"" << label->text().toStdString()
                                    << "\" needs " << needed << " px, has " << room;
    }
    return labelsChecked;
}

// The colour most of a widget's area shows in the dialog as drawn: for a label
// or a button that is what its text stands on.
QColor backgroundUnder(const QImage& shot, QWidget* dialog, QWidget* w) {
    // Only the part in view: a widget scrolled out of its area is not drawn.
    const QRect seen = w->visibleRegion().boundingRect();
    const qreal dpr = shot.devicePixelRatio();
    const QRect area(w->mapTo(dialog, seen.topLeft()) * dpr, seen.size() * dpr);
    std::map<QRgb, int> counts;
    const QRect inside = area.intersected(shot.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            ++counts[shot.pixel(x, y) | 0xFF000000u];
        }
    }
    const auto most = std::max_element(counts.begin(), counts.end(),
                                       [](auto& a, auto& b) { return a.second < b.second; });
    return most == counts.end() ? QColor(Qt::white) : QColor(most->first);
}

// Every text a streamer reads, on every page, stands out from what is behind
// it by at least 4.5:1 (3:1 for large text). Emoji take their own colours and
// disabled controls are not read as content, so both are left out. Returns
// the texts checked.
int expectTextsStandOut(QWidget* dialog, const QString& where) {
    int textsChecked = 0;
    const QImage shot = dialog->grab().toImage().convertToFormat(QImage::Format_RGB32);
    for (QWidget* w : dialog->findChildren<QWidget*>()) {
        QString text;
        if (auto* label = qobject_cast<QLabel*>(w)) {
            text = label->text();
        } else if (auto* button = qobject_cast<QAbstractButton*>(w)) {
            text = button->text();
        }
        const bool hasWords =
            std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetterOrNumber(); });
        if (!w->isVisibleTo(dialog) || !w->isEnabled() || !hasWords ||
            text.startsWith(QLatin1Char('<')) || w->visibleRegion().boundingRect().width() < 4 ||
            w->visibleRegion().boundingRect().height() < 4) {
            continue;
        }
        ++textsChecked;
        const QColor background = backgroundUnder(shot, dialog, w);
        const QColor ink =
            PanelTest::over(w->palette().color(QPalette::Active, w->foregroundRole()), background);
        const QFont font = w->font();
        const bool large = font.pointSizeF() >= 18 || (font.pointSizeF() >= 14 && font.bold());
        EXPECT_GE(contrastRatio(ink, background), large ? 3.0 : 4.5)
            << where.toStdString() << ": \"" << text.toStdString() << "\" "
            << ink.name().toStdString() << " on " << background.name().toStdString();
    }
    return textsChecked;
}

// Every page and presets sub-page, as OBS's dark theme styles it: no English
// left, no phrase broken, nothing clipped, every text readable. And every style
// sheet and rich text names its colours from the palette, each name one the
// palette knows: a misspelt name would leave a colour unset.
TEST(JapaneseWalk, EveryPageReadsWholeInJapaneseAndStandsOut) {
    JapaneseDialog d;
    ASSERT_TRUE(QTest::qWaitForWindowExposed(d.dialog.get()));
    int breaks = 0, labels = 0, texts = 0;
    d.visitEveryPage([&](const QString& where) {
        QCoreApplication::processEvents();
        expectNoUntranslatedEnglish(d.dialog.get(), where);
        breaks += expectBreaksOnlyBetweenPhrases(d.dialog.get(), where);
        labels += expectNothingClipped(d.dialog.get(), where);
        texts += expectTextsStandOut(d.dialog.get(), where);
    });
    EXPECT_GE(breaks, 3);  // the walk did see wrapped Japanese
    EXPECT_GT(labels, 30); // and measured the pages' labels
    EXPECT_GT(texts, 60);

    const QRegularExpression leftover(QStringLiteral("\\{[A-Za-z]+(@\\d+)?\\}"));
    int sheets = 0;
    for (QWidget* w : d.dialog->findChildren<QWidget*>()) {
        auto* label = qobject_cast<QLabel*>(w);
        for (const QString& sheet : {w->styleSheet(), label ? label->text() : QString()}) {
            sheets += sheet.isEmpty() ? 0 : 1;
            EXPECT_FALSE(leftover.match(sheet).hasMatch())
                << w->metaObject()->className() << ": " << sheet.toStdString();
        }
    }
    EXPECT_GT(sheets, 50);
}

} // namespace
} // namespace Lumora
