// The whole diagnosis driven the way the dialog's timer drives it: a real
// filter state fed with recorded speech between ticks.

#include "Cases.h"
#include "PanelTestSupport.h"
#include "diagnosis/DiagnosisAnalysis.h"
#include "diagnosis/DiagnosisController.h"
#include "diagnosis/RecommendedSettings.h"
#include "diagnosis/TakeReplay.h"
#include "diagnosis/WordEndFall.h"
#include "dsp/NoiseProfileLearner.h"
#include "engine/FilterEngine.h"
#include "ui/DiagnosisHistoryList.h"
#include "ui/DiagnosisPresenter.h"
#include "ui/FxPage.h"
#include "ui/GainFader.h"
#include "ui/HomePanel.h"
#include "ui/LevelMeter.h"
#include "ui/Localisation.h"
#include "ui/MeterFaderWidget.h"
#include "ui/MeterTick.h"
#include "ui/PresetsPanel.h"
#include "ui/ResultsPage.h"
#include "ui/SoundPage.h"
#include "ui/WizardDialog.h"
#include "ui/WizardPanel.h"

#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>

namespace Lumora {
namespace {

constexpr int kRate = 48000;
constexpr double kTick = 0.016;
constexpr int kTickFrames = 768; // 16 ms at 48 kHz

class WizardFlow : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(voices_.list.size(), 1u) << voices_.missing;
        speech_ = voices_.list[0].speech;
        state_.prepare(kRate);
        ASSERT_TRUE(settingsDir_.isValid());
        state_.setStore(std::make_unique<SettingsStore>(settingsDir_.path().toStdString()));
        dialog_ = std::make_unique<WizardDialog>(nullptr, &state_);
        dialog_->show();
        dialog_->tickTimer()->stop();
    }
    void TearDown() override { dialog_.reset(); }

    // One timer tick with 16 ms of audio before it.
    void tick(float gain = 1.0f) {
        float* planes[1] = {block_};
        for (float& sample : block_) {
            if (take_ && takeAt_ < take_->size()) {
                sample = (*take_)[takeAt_++];
            } else if (take_) {
                sample = (*room_)[roomAt_];
                roomAt_ = (roomAt_ + 1) % room_->size();
            } else {
                sample = speech_[position_] * gain;
                position_ = (position_ + 1) % speech_.size();
            }
        }
        state_.processAudio(planes, 1, kTickFrames);
        dialog_->advance(kTick);
    }
    int tickWhile(DiagnosisController::State state, float gain = 1.0f, int limit = 1000) {
        int ticks = 0;
        while (dialog_->controller().state() == state && ticks < limit) {
            tick(gain);
            ++ticks;
        }
        return ticks;
    }
    void recordTake(float gain) {
        WizardPanel* wizard = dialog_->wizardPanel();
        ASSERT_EQ(dialog_->controller().state(), DiagnosisController::kPrompt);
        wizard->startButton()->click();
        tickWhile(DiagnosisController::kCountdown, gain);
        tickWhile(DiagnosisController::kRecording, gain);
        ASSERT_EQ(dialog_->controller().state(), DiagnosisController::kTakeDone);
    }
    // Records a corpus take as a quick user gives it: the take plays from the
    // click on start, lined up so that its recorded seconds (the last ones) are
    // what the wizard records after the countdown; the room goes on after it.
    void recordCorpusTake(const std::vector<float>& take, const std::vector<float>& room) {
        take_ = &take;
        room_ = &room;
        takeAt_ =
            static_cast<size_t>((Corpus::kLeadIn - DiagnosisController::kCountdownSeconds) * kRate);
        recordTake(1.0f);
    }
    // The wizard's closing words run out and it hides.
    void tickThroughClosingWords() {
        for (int i = 0; i < 100 && dialog_->diagnosisShown(); ++i) {
            tick();
        }
        EXPECT_FALSE(dialog_->diagnosisShown());
    }
    // Waits (really) for the analysis thread while ticking.
    void waitForAnalysis() {
        for (int i = 0; i < 500 && dialog_->controller().state() == DiagnosisController::kAnalysing;
             ++i) {
            tick();
            QThread::msleep(2);
        }
    }

    const Corpus::Voices voices_ = Corpus::loadVoices("alsa");
    std::vector<float> speech_;
    size_t position_ = 0;
    const std::vector<float>* take_ = nullptr; // a corpus take, then its room
    const std::vector<float>* room_ = nullptr;
    size_t takeAt_ = 0, roomAt_ = 0;
    float block_[kTickFrames] = {};
    QTemporaryDir settingsDir_;
    FilterEngine state_;
    std::unique_ptr<WizardDialog> dialog_;
};

class WizardFlowOnCorpus : public WizardFlow, public ::testing::WithParamInterface<const char*> {};

// Three of the corpus's cases, as a quick user records them through the
// dialog: a USB mic at 20 cm with a fan 12 dB under the voice (the
// recommendation that changes the most), a dynamic mic with plosives that clip
// (the take whose peaks a held meter would carry into the silence take), and a
// USB mic in a live room (whose word endings the distance verdict reads from
// the takes' audio). The real analysis
// runs on its thread and the real recommendation is applied.
TEST_P(WizardFlowOnCorpus, WholeDiagnosisFromMicChoiceToAppliedSettings) {
    const Corpus::Case* scene = Corpus::findCase(GetParam());
    ASSERT_NE(scene, nullptr);
    const Corpus::TakeSet set = Corpus::makeTakes(voices_.list[0], *scene);
    const auto mic = static_cast<MicType>(scene->mic);

    std::atomic<bool> ranOnOtherThread{false};
    DiagnosisSession analysed;
    DiagnosisResult shown;
    const std::thread::id uiThread = std::this_thread::get_id();
    dialog_->diagnosis()->setAnalyseFunction([&](const DiagnosisSession& session) {
        ranOnOtherThread = std::this_thread::get_id() != uiThread;
        analysed = session;
        shown = analyse(session);
        return shown;
    });

    // The effects go off for the takes.
    state_.setSoundFxActive(true);
    ASSERT_TRUE(state_.chain().isActive());
    dialog_->homePanel()->startButton()->click();
    ASSERT_TRUE(dialog_->diagnosisShown());
    EXPECT_FALSE(state_.chain().isActive());
    EXPECT_FALSE(state_.effects().isActive());

    WizardPanel* wizard = dialog_->wizardPanel();
    EXPECT_EQ(wizard->bubbleText().toStdString(), dialog_->controller().currentText("ja"));
    wizard->micButton(mic)->click();
    EXPECT_EQ(dialog_->controller().session().micType, mic);

    const std::vector<float>& room = set.takes[kStepSilence];
    for (int step = kStepNormal; step <= kStepSilence; ++step) {
        recordCorpusTake(set.takes[step], room);
        if (step == kStepLoud) {
            // Once more: the first loud take is thrown away.
            wizard->retryButton()->click();
            EXPECT_TRUE(dialog_->controller().session().steps[kStepLoud].empty());
            EXPECT_EQ(dialog_->controller().session().steps[kStepNormal].size(), 188u);
            recordCorpusTake(set.takes[step], room);
        }
        if (step < kStepSilence) {
            EXPECT_GT(state_.chain().inputLevelDb(), -90.0f) << "step " << step;
        }
        wizard->nextButton()->click();
    }
    ASSERT_EQ(dialog_->controller().state(), DiagnosisController::kAnalysing);
    EXPECT_TRUE(dialog_->runner().analysing());
    waitForAnalysis();
    ASSERT_EQ(dialog_->controller().state(), DiagnosisController::kResult);
    EXPECT_TRUE(ranOnOtherThread);
    EXPECT_EQ(analysed.steps[0].size(), 0u);
    EXPECT_NEAR(static_cast<double>(analysed.steps[kStepNormal].size()), 188.0, 1.0);
    EXPECT_NEAR(static_cast<double>(analysed.steps[kStepPlosive].size()), 125.0, 1.0);
    EXPECT_NEAR(static_cast<double>(analysed.steps[kStepSilence].size()), 188.0, 1.0);

    // The verdicts the physics of the case asks for, and the same figures the
    // command line reads from the same takes: the dialog's timing (a snapshot
    // per tick, the held measures restarted as each take records, each take's
    // audio captured) loses nothing. The dialog's takes start up to a
    // tick later, so a held measure can catch a different 10 ms of the room.
    DiagnosisSession replayed;
    replayed.micType = mic;
    auto analyser = std::make_unique<DiagnosisAnalyser>();
    analyser->prepare(kRate);
    for (int step = kStepNormal; step <= kStepSilence; ++step) {
        replayTake(*analyser, replayed, static_cast<DiagnosisStep>(step), set.takes[step], false,
                   kTickFrames);
    }
    const DiagnosisResult reference = analyse(replayed);
    // Each take's audio whole, to its last tick, under its own take.
    using PanelTest::rmsDb;
    for (size_t step = kStepNormal; step <= kStepSilence; ++step) {
        EXPECT_NEAR(static_cast<double>(analysed.audio[step].size()),
                    static_cast<double>(replayed.audio[step].size()), 0.5 * kTickFrames)
            << "step " << step;
        EXPECT_NEAR(rmsDb(analysed.audio[step]), rmsDb(replayed.audio[step]), 0.5) << step;
    }
    const auto endings = [&](const DiagnosisSession& s) {
        return WordEndFall::measureMs(
            {&s.audio[kStepNormal], &s.audio[kStepLoud], &s.audio[kStepSoft]}, kRate,
            rmsDb(s.audio[kStepSilence]));
    };
    EXPECT_NEAR(endings(analysed), endings(replayed), 5.0f);
    ASSERT_EQ(shown.items.size(), 6u);
    for (size_t i = 0; i < 6; ++i) {
        const DiagnosisItem& verdict = shown.items[i];
        const Corpus::Want want =
            scene->want[i] == Corpus::Want::Peaks ? Corpus::clippingTruth(set) : scene->want[i];
        EXPECT_TRUE(Corpus::meets(want, verdict))
            << verdict.key << " level " << verdict.level << " value " << verdict.value;
        EXPECT_EQ(verdict.level, reference.items[i].level) << verdict.key;
        EXPECT_NEAR(verdict.value, reference.items[i].value, 1.5f) << verdict.key;
    }

    // The result is shown, stored and the effects are back.
    EXPECT_TRUE(state_.chain().isActive());
    EXPECT_TRUE(state_.effects().isActive());
    EXPECT_EQ(state_.store()->load().diagnosisHistory.size(), 1u);
    EXPECT_TRUE(dialog_->diagnosis()->hasResult(0));
    EXPECT_EQ(dialog_->resultsPage()->cardCount(), 6);
    EXPECT_EQ(wizard->bubbleText().toStdString(), shown.summaryJa);
    EXPECT_TRUE(state_.diagnosisTask().started);

    // Apply: the recommended preset becomes the chain's, active.
    wizard->applyButton()->click();
    EXPECT_EQ(dialog_->controller().state(), DiagnosisController::kEnd);
    const EffectPreset live = state_.chain().getParameters();
    EXPECT_TRUE(live.active);
    EXPECT_TRUE(state_.chain().isActive());
    EXPECT_EQ(state_.lastPresetName(), "配信最適化プリセット");
    EXPECT_EQ(state_.store()->load().lastPresetName, "配信最適化プリセット");
    EXPECT_TRUE(dialog_->diagnosis()->hasDiagnosisPreset());
    // The presets page's history shows the diagnosis, its verdict, and that it
    // was applied.
    DiagnosisHistoryList* history = dialog_->findChild<PresetsPanel*>()->historyList();
    EXPECT_EQ(history->entryCount(), 1);
    QStringList shownTexts;
    for (QLabel* label : history->findChildren<QLabel*>()) {
        shownTexts << (label->isVisibleTo(history) ? label->text() : QString());
    }
    EXPECT_TRUE(shownTexts.contains(verdictLabel(shown.overall)));
    EXPECT_EQ(shownTexts.filter(QStringLiteral("🔧")).size(), 1);
    // Noise reduction exactly when the room was not quiet, the AI filter for a
    // loud room only.
    EXPECT_EQ(live.spectral.enabled, shown.items[2].level != kLevelGood);
    EXPECT_EQ(live.noise.enabled, shown.items[2].level == kLevelWarning);
    // What the command line recommends from the same takes.
    const EffectPreset recommended = recommend(reference, false);
    EXPECT_EQ(live.gate.enabled, recommended.gate.enabled);
    EXPECT_NEAR(live.gate.thresholdDb, recommended.gate.thresholdDb, 1.5f);
    EXPECT_NEAR(live.inputGainDb, recommended.inputGainDb, 1.0f);
    EXPECT_EQ(live.comp.enabled, recommended.comp.enabled);
    EXPECT_NEAR(live.comp.thresholdDb, recommended.comp.thresholdDb, 1.5f);
    EXPECT_EQ(live.eq.lowCutEnabled, recommended.eq.lowCutEnabled);
    EXPECT_FLOAT_EQ(live.spectral.amount, recommended.spectral.amount);
    // The gate never closes on the user's soft voice.
    if (live.gate.enabled) {
        EXPECT_LT(live.gate.thresholdDb, scene->softDb - 6.0);
    }
    // The reducer's profile is the room as the silence take recorded it: the
    // same learner over the take's recorded seconds, not its lead-in.
    NoiseProfileLearner learner;
    learner.prepare(kRate);
    const size_t from = Corpus::recordedFrom(room, kStepSilence);
    learner.process(room.data() + from, static_cast<int>(room.size() - from));
    const auto expected = learner.profileDb();
    for (int band = 0; band < kProfileBandCount && live.spectral.enabled; ++band) {
        if (expected[static_cast<size_t>(band)] > kSilenceDb) {
            EXPECT_NEAR(live.spectral.profileDb[static_cast<size_t>(band)],
                        expected[static_cast<size_t>(band)], 1.0f)
                << "band " << band;
        }
    }

    // The closing words, then the results tab.
    tickThroughClosingWords();
    EXPECT_EQ(dialog_->currentTab(), WizardDialog::kResultsTab);
}

INSTANTIATE_TEST_SUITE_P(FanPopsAndALiveRoom, WizardFlowOnCorpus,
                         ::testing::Values("fan-12dB", "pops-clipping", "good-usb-20cm-live-room"));

TEST_F(WizardFlow, CancelDuringRecordingEndsWithoutAnalysis) {
    bool analysed = false;
    dialog_->diagnosis()->setAnalyseFunction([&](const DiagnosisSession& s) {
        analysed = true;
        return analyse(s);
    });
    state_.setSoundFxActive(true);
    dialog_->diagnosis()->start();
    WizardPanel* wizard = dialog_->wizardPanel();
    wizard->micButton(kMicUsb)->click();
    recordTake(1.0f);
    wizard->nextButton()->click();
    wizard->startButton()->click();
    tickWhile(DiagnosisController::kCountdown);
    for (int i = 0; i < 20; ++i) {
        tick();
    }
    ASSERT_EQ(dialog_->controller().state(), DiagnosisController::kRecording);
    EXPECT_FALSE(wizard->cancelButton()->isHidden());
    wizard->cancelButton()->click();
    EXPECT_EQ(dialog_->controller().state(), DiagnosisController::kEnd);
    EXPECT_TRUE(dialog_->controller().session().steps[2].empty());
    EXPECT_FALSE(dialog_->runner().analysing());
    EXPECT_TRUE(state_.chain().isActive());
    EXPECT_TRUE(state_.effects().isActive());
    tickThroughClosingWords();
    EXPECT_EQ(dialog_->currentTab(), WizardDialog::kDiagnoseTab);
    EXPECT_FALSE(analysed);
    EXPECT_FALSE(dialog_->diagnosis()->hasResult(0));
}

TEST_F(WizardFlow, AFailingAnalysisDeliversNothing) {
    dialog_->diagnosis()->setAnalyseFunction(
        [](const DiagnosisSession&) -> DiagnosisResult { throw std::runtime_error("boom"); });
    dialog_->diagnosis()->start();
    WizardPanel* wizard = dialog_->wizardPanel();
    wizard->micButton(kMicCondenser)->click();
    for (int step = 1; step <= 5; ++step) {
        recordTake(1.0f);
        wizard->nextButton()->click();
    }
    for (int i = 0; i < 50; ++i) {
        tick();
        QThread::msleep(2);
    }
    EXPECT_EQ(dialog_->controller().state(), DiagnosisController::kAnalysing);
    EXPECT_TRUE(dialog_->runner().analysing());
    EXPECT_TRUE(dialog_->runner().failed());
    EXPECT_FALSE(dialog_->diagnosis()->hasResult(0));
    wizard->cancelButton()->click();
    EXPECT_EQ(dialog_->controller().state(), DiagnosisController::kEnd);
    EXPECT_TRUE(state_.chain().isActive());
}

// Any text of the kana and kanji blocks: what a Japanese text always has and
// an English one never does.
bool hasJapanese(const QString& text) {
    return std::any_of(text.begin(), text.end(),
                       [](QChar c) { return c.unicode() >= 0x3000 && c.unicode() <= 0x9FFF; });
}

// Every state the wizard passes through, in Japanese for "ja" and in English
// for any other language (Korean here): the bubble shows the controller's text
// in that language, and the hint and the tip beside it speak the same one. The
// Japanese pass saves the recommendation under the name the user gives, for a
// mic the user could not name; the others close from the offer to save.
TEST_F(WizardFlow, EveryWizardTextFollowsTheLanguageAndASaveAsksForItsName) {
    dialog_->diagnosis()->setNamePrompt(PanelTest::answerName(QStringLiteral("夜配信")));
    for (const char* language : {"en", "ja", "ko"}) {
        applyLanguage(QString::fromLatin1(language));
        dialog_->retranslateUi();
        dialog_->diagnosis()->start();
        WizardPanel* wizard = dialog_->wizardPanel();
        const bool japanese = std::string(language) == "ja";
        auto expectText = [&](const char* where) {
            const QString bubble = wizard->bubbleText();
            EXPECT_FALSE(bubble.isEmpty()) << language << " " << where;
            EXPECT_EQ(bubble.toStdString(),
                      dialog_->controller().currentText(japanese ? "ja" : "en"))
                << language << " " << where;
            for (const QString& text : {bubble, wizard->hintText(), wizard->tipText()}) {
                EXPECT_TRUE(text.isEmpty() || hasJapanese(text) == japanese)
                    << language << " " << where << ": " << text.toStdString();
            }
        };
        expectText("mic choice");
        wizard->micButton(japanese ? kMicUnknown : kMicDynamic)->click();
        for (int take = 1; take <= 5; ++take) {
            expectText("prompt");
            wizard->startButton()->click();
            tick();
            expectText("countdown");
            tickWhile(DiagnosisController::kCountdown);
            expectText("recording");
            tickWhile(DiagnosisController::kRecording);
            expectText("take done");
            wizard->nextButton()->click();
        }
        expectText("analysing");
        waitForAnalysis();
        ASSERT_EQ(dialog_->controller().state(), DiagnosisController::kResult);
        expectText("result");
        wizard->offerSaveButton()->click();
        EXPECT_EQ(dialog_->controller().state(), DiagnosisController::kOfferSave);
        expectText("offer to save");
        (japanese ? wizard->saveButton() : wizard->closeButton())->click();
        expectText("closing words");
        if (japanese) {
            // What is kept is the recommendation for the result (as the file writes numbers).
            const auto saved = state_.store()->findEffectPreset("夜配信");
            const EffectPreset recommended = recommend(dialog_->diagnosis()->result(0), false);
            EXPECT_TRUE(saved.has_value());
            if (saved) {
                EXPECT_EQ(saved->preset.gate.enabled, recommended.gate.enabled);
                EXPECT_NEAR(saved->preset.comp.thresholdDb, recommended.comp.thresholdDb, 1e-3f);
                EXPECT_NEAR(saved->preset.inputGainDb, recommended.inputGainDb, 1e-3f);
            }
        }
        tickThroughClosingWords();
    }
    // The results page saves too.
    ASSERT_TRUE(state_.store()->deleteEffectPreset("夜配信"));
    dialog_->resultsPage()->saveButton()->click();
    EXPECT_TRUE(state_.store()->findEffectPreset("夜配信").has_value());
}

TEST_F(WizardFlow, FadersReachTheChainsAndMetersShowTheLevels) {
    dialog_->selectTab(WizardDialog::kSoundTab);
    QCoreApplication::processEvents();
    int updates = 0;
    MeterTick::Levels last;
    QObject::connect(dialog_->meterTick(), &MeterTick::levelsUpdated,
                     [&](const MeterTick::Levels& levels) {
                         ++updates;
                         last = levels;
                     });
    for (int i = 0; i < 20; ++i) {
        tick();
    }
    EXPECT_EQ(updates, 20);
    EXPECT_GE(last.compressorInput, -60.0f);
    // The compressor display's OUT trace is the chain's real output level.
    EXPECT_LT(last.compressorOutput, -1.0f);
    EXPECT_FLOAT_EQ(last.compressorOutput, std::max(state_.chain().outputLevelDb(), -60.0f));
    EXPECT_FLOAT_EQ(last.chainInput, state_.chain().inputLevelDb());
    MeterFaderWidget* sound = dialog_->soundPage()->strip();
    EXPECT_GT(sound->inputMeter()->peakHold().peakDb, -50.0f);
    EXPECT_GT(dialog_->homePanel()->micMeter()->peakHold().peakDb, -50.0f);

    GainFader* input = sound->inputFader();
    QTest::mouseClick(input, Qt::LeftButton, Qt::NoModifier,
                      QPoint(input->width() - 1, input->height() / 2));
    // The fader's ends are the gain's range, as the settings file holds it.
    EXPECT_FLOAT_EQ(state_.chain().getParameters().inputGainDb, Params::kInputGain.maximum);
    EXPECT_FLOAT_EQ(dialog_->workingPreset().inputGainDb, Params::kInputGain.maximum);
    sound->bypassButton()->click();
    EXPECT_FALSE(state_.chain().isActive());
    sound->bypassButton()->click();
    EXPECT_TRUE(state_.chain().isActive());

    GainFader* fxOutput = dialog_->fxPage()->strip()->outputFader();
    QTest::mouseClick(fxOutput, Qt::LeftButton, Qt::NoModifier, QPoint(0, fxOutput->height() / 2));
    EXPECT_FLOAT_EQ(state_.effects().getParameters().outputGainDb, Params::kFxOutputGain.minimum);
}

} // namespace
} // namespace Lumora
