#include "ui/WizardDialog.h"
#include "ui/DiagnosisPresenter.h"
#include "ui/EffectPanel.h"
#include "ui/EqBandRow.h"
#include "ui/EqControls.h"
#include "ui/FxPitchControls.h"
#include "ui/HomePanel.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyAssignPresetsPanel.h"
#include "ui/KeyRouter.h"
#include "ui/Knob.h"
#include "ui/LevelMeter.h"
#include "ui/Localisation.h"
#include "ui/MainMenu.h"
#include "ui/MainTabBar.h"
#include "ui/PresetsPage.h"
#include "ui/PresetsPanel.h"
#include "ui/ResultsPage.h"
#include "ui/SoundFxPanel.h"
#include "ui/SoundFxPresetsPanel.h"
#include "ui/SoundShapes.h"
#include "ui/SubGroup.h"
#include "ui/ToggleSwitch.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace Lumora {
namespace {

// A dialog without a filter, shown, with its timer stopped so ticks are ours.
struct ShownDialog {
    WizardDialog dialog{nullptr, nullptr};
    ShownDialog() {
        dialog.show();
        dialog.tickTimer()->stop();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    }
};

void chooseLanguage(WizardDialog& dialog, const char* code) {
    MainMenu* menu = dialog.buildMainMenu();
    for (QAction* action : menu->languageMenu()->actions()) {
        if (action->data().toString() == QLatin1String(code)) {
            action->trigger();
        }
    }
    delete menu;
    QCoreApplication::processEvents(); // the texts follow on the next turn of the loop
}

TEST(WizardDialog, ClickingATabShowsItsPage) {
    ShownDialog d;
    EXPECT_EQ(d.dialog.currentTab(), WizardDialog::kDiagnoseTab);
    for (int tab : {4, 1, 5, 2, 3, 0}) {
        QTest::mouseClick(d.dialog.tabBar()->tab(tab), Qt::LeftButton);
        EXPECT_EQ(d.dialog.currentTab(), tab);
        EXPECT_EQ(d.dialog.tabBar()->selected(), tab);
    }
    // A click on a tab's label reaches the tab too.
    QTest::mouseClick(d.dialog.tabBar()->textLabel(2), Qt::LeftButton);
    EXPECT_EQ(d.dialog.currentTab(), WizardDialog::kSoundTab);
}

TEST(WizardDialog, LanguageMenuRelabelsWithoutRebuilding) {
    ShownDialog d;
    MainTabBar* tabs = d.dialog.tabBar();
    QLabel* firstLabel = tabs->textLabel(0);
    QPushButton* apply = d.dialog.resultsPage()->applyButton();
    EXPECT_EQ(firstLabel->text(), QStringLiteral("診断"));
    EXPECT_EQ(apply->text(), QStringLiteral("🔧 おすすめ設定を適用"));

    chooseLanguage(d.dialog, "en");
    EXPECT_EQ(currentLanguage(), QStringLiteral("en"));
    EXPECT_EQ(tabs->textLabel(0)->text(), QStringLiteral("Diagnose"));
    EXPECT_EQ(tabs->textLabel(0), firstLabel); // the same widgets, re-labelled
    EXPECT_EQ(d.dialog.resultsPage()->applyButton(), apply);
    EXPECT_EQ(apply->text(), QStringLiteral("🔧 Apply recommended settings"));

    chooseLanguage(d.dialog, "ja");
    EXPECT_EQ(firstLabel->text(), QStringLiteral("診断"));

    // A language without a translation file shows the English texts, and the
    // menu marks it as the current one.
    chooseLanguage(d.dialog, "de");
    EXPECT_EQ(tabs->textLabel(4)->text(), QStringLiteral("Presets"));
    EXPECT_EQ(apply->text(), QStringLiteral("🔧 Apply recommended settings"));
    MainMenu* menu = d.dialog.buildMainMenu();
    const QList<QAction*> actions = menu->languageMenu()->actions();
    ASSERT_EQ(actions.size(), static_cast<int>(knownLanguages().size()));
    for (QAction* action : actions) {
        const bool current = action->data().toString() == QLatin1String("de");
        EXPECT_EQ(action->text().startsWith(QStringLiteral("✓")), current)
            << action->text().toStdString();
        EXPECT_EQ(action->font().bold(), current) << action->text().toStdString();
    }
    delete menu;
}

TEST(WizardDialog, EasyModeSwitchRelabelsAndHidesTheAdvancedControlsOfBothPanels) {
    ShownDialog d;
    applyLanguage(QStringLiteral("en"));
    EffectPanel* sound = d.dialog.effectPanel();
    SoundFxPanel* fx = d.dialog.soundFxPanel();
    sound->loadPreset(SoundShapes::panelDefaults()); // with its three equaliser bands
    auto shown = [](QWidget* panel, const char* knob) {
        return panel->findChild<Knob*>(QString::fromLatin1(knob))->isVisibleTo(panel);
    };
    auto mainKnobsShown = [&] {
        for (const char* name : {"gateThreshold", "lowCutHz", "compThreshold", "limiterCeiling"}) {
            EXPECT_TRUE(shown(sound, name)) << name;
        }
        EXPECT_TRUE(shown(fx, "pitchSemitonesA"));
        EXPECT_TRUE(shown(fx, "reverbMix"));
    };
    mainKnobsShown();
    for (const char* name : {"gateHold", "compKnee", "highCutQ"}) {
        EXPECT_FALSE(shown(sound, name)) << name;
    }
    EXPECT_FALSE(shown(fx, "reverbDucking"));
    EXPECT_FALSE(fx->pitchControls()->layerBCheck()->isVisibleTo(fx));

    QSignalSpy spy(&d.dialog, &WizardDialog::easyModeChanged);
    MainMenu* menu = d.dialog.buildMainMenu();
    EXPECT_TRUE(menu->modeSwitch()->isChecked());
    menu->modeSwitch()->click();
    EXPECT_FALSE(d.dialog.easyMode());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_FALSE(spy.at(0).at(0).toBool());
    delete menu;
    MainMenu* again = d.dialog.buildMainMenu();
    EXPECT_FALSE(again->modeSwitch()->isChecked());
    delete again;

    mainKnobsShown();
    for (const char* name : {"gateHold", "compKnee", "highCutQ"}) {
        EXPECT_TRUE(shown(sound, name)) << name;
    }
    EXPECT_TRUE(sound->eqControls()->bandRow(0)->isVisibleTo(sound));
    EXPECT_TRUE(shown(fx, "reverbDucking"));
    EXPECT_TRUE(fx->pitchControls()->layerBCheck()->isVisibleTo(fx));
    EXPECT_TRUE(fx->pitchControls()->formantEqGroup()->isVisibleTo(fx));
    EXPECT_FALSE(shown(fx, "formantBand0Hz")); // folded: the formant equaliser is off
}

TEST(WizardDialog, WithoutAFilterEveryPageShowsAndNoLevels) {
    ShownDialog d;
    d.dialog.selectTab(WizardDialog::kDiagnoseTab);
    d.dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&d.dialog));
    const float before = d.dialog.animationTime();
    const float starX = d.dialog.sky().stars()[0].x;
    for (int i = 0; i < 30; ++i) {
        d.dialog.advance(0.016);
    }
    EXPECT_NEAR(d.dialog.animationTime() - before, 0.48f, 1e-4f);
    EXPECT_NE(d.dialog.sky().stars()[0].x, starX);
    // Behind another window (OBS, a game) the sky stands still: nobody watches
    // it, and its repaints are most of what the open dialog costs.
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    const float still = d.dialog.sky().stars()[0].x;
    for (int i = 0; i < 30; ++i) {
        d.dialog.advance(0.016);
    }
    EXPECT_EQ(d.dialog.sky().stars()[0].x, still);
    HomePanel* home = d.dialog.homePanel();
    EXPECT_FLOAT_EQ(home->micMeter()->peakHold().levelDb, -60.0f);
    EXPECT_FLOAT_EQ(home->micMeter()->peakHold().peakDb, -60.0f);
    EXPECT_FALSE(home->startButton()->isEnabled());
    d.dialog.diagnosis()->start(); // nothing to diagnose
    EXPECT_FALSE(d.dialog.diagnosisShown());
    // A voice key with no filter to switch only holds the key rules.
    d.dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&d.dialog));
    QTest::keyPress(&d.dialog, Qt::Key_Left);
    EXPECT_EQ(d.dialog.keys()->rules().heldSlot(), 2);
    QTest::keyRelease(&d.dialog, Qt::Key_Left);
    EXPECT_EQ(d.dialog.keys()->rules().heldSlot(), kNoSlot);
}

// The page is the panel, or holds it.
template <typename Panel>
bool holds(QWidget* page) {
    return qobject_cast<Panel*>(page) != nullptr || page->findChild<Panel*>() != nullptr;
}

// Each sub-tab of the presets page opens the page it names, in both languages.
TEST(WizardDialog, PresetSubTabsOpenThePagesTheyName) {
    ShownDialog d;
    PresetsPage* page = d.dialog.presetsPage();
    for (const char* language : {"en", "ja"}) {
        chooseLanguage(d.dialog, language);
        for (int i = 0; i < PresetsPage::kSubPageCount; ++i) {
            QTest::mouseClick(page->subTabButton(i), Qt::LeftButton);
            const QString label = page->subTabButton(i)->text();
            QWidget* shown = page->subPage(page->currentSubTab());
            ASSERT_EQ(page->currentSubTab(), i);
            const bool sound =
                label.contains(QStringLiteral("Sound")) || label.contains(QStringLiteral("音質"));
            const bool fx = label.contains(QStringLiteral("FX"));
            const bool keyPresets = label.contains(QStringLiteral("Key Assign")) ||
                                    label.contains(QStringLiteral("キーアサイン"));
            EXPECT_EQ(sound, holds<PresetsPanel>(shown)) << label.toStdString();
            EXPECT_EQ(fx, holds<SoundFxPresetsPanel>(shown)) << label.toStdString();
            EXPECT_EQ(keyPresets, holds<KeyAssignPresetsPanel>(shown)) << label.toStdString();
            EXPECT_EQ(!sound && !fx && !keyPresets, holds<KeyAssignPanel>(shown))
                << label.toStdString();
        }
    }
}

} // namespace
} // namespace Lumora
