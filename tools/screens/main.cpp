// lumora-screens: builds the dialog under a real display (Xvfb), drives it to
// every page and every diagnosis state in Japanese and English, and saves one
// PNG per view into the folder given on the command line.
//
//   xvfb-run -a -s "-screen 0 1280x1024x24" lumora-screens OUT_DIR [ja|en ...]
//
// With --idle-cpu SECONDS it instead leaves the dialog open and idle on the
// diagnose tab with its real timer, and prints the share of one core the
// process used (CPU time over wall time): with no dialog, with the dialog the
// active window, and with the dialog behind another window.
//
// A filter state is built without OBS and fed with recorded speech, so the
// meters move and the diagnosis records real snapshots.

#include "WavFile.h"
#include "diagnosis/DiagnosisController.h"
#include "engine/FilterEngine.h"
#include "ui/DiagnosisPresenter.h"
#include "ui/Localisation.h"
#include "ui/MainMenu.h"
#include "ui/PresetsPage.h"
#include "ui/WizardDialog.h"
#include "ui/WizardPanel.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QPushButton>
#include <QThread>
#include <QTimer>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace {

using Lumora::DiagnosisController;
using Lumora::DiagnosisItem;
using Lumora::DiagnosisResult;

constexpr int kRate = 48000;
constexpr double kTick = 0.016;

// Plays speech (or quiet room noise) into the filter, one tick's worth at a time.
struct Feeder {
    std::vector<float> speech;
    size_t position = 0;
    float gain = 1.0f;
    bool silent = false;
    uint32_t noiseSeed = 1;
    std::vector<float> block;

    void feed(Lumora::FilterEngine& state, int frames) {
        block.resize(static_cast<size_t>(frames));
        for (float& sample : block) {
            if (silent || speech.empty()) {
                noiseSeed = noiseSeed * 1664525u + 1013904223u;
                sample = (static_cast<float>(noiseSeed >> 8) / 16777216.0f - 0.5f) * 0.002f;
            } else {
                sample = speech[position] * gain;
                position = (position + 1) % speech.size();
            }
        }
        float* planes[1] = {block.data()};
        state.processAudio(planes, 1, frames);
    }
};

struct Session {
    Lumora::WizardDialog* dialog;
    Lumora::FilterEngine* state;
    Feeder* feeder;
    QDir dir;
    QString language;
    int saved = 0;

    void run(double seconds) {
        const int ticks = static_cast<int>(std::lround(seconds / kTick));
        for (int i = 0; i < ticks; ++i) {
            feeder->feed(*state, static_cast<int>(kRate * kTick));
            dialog->advance(kTick);
            QCoreApplication::processEvents();
        }
    }

    void shot(QWidget* widget, const QString& name) {
        QCoreApplication::processEvents();
        const QString path = dir.filePath(QStringLiteral("%1-%2.png").arg(language, name));
        if (widget->grab().save(path)) {
            ++saved;
            std::printf("%s\n", qPrintable(path));
        } else {
            std::fprintf(stderr, "lumora-screens: cannot write %s\n", qPrintable(path));
        }
    }
};

// A believable result for the pictures until the analysis is wired in: one
// verdict of each level and the texts the verdicts use.
DiagnosisResult sampleResult(const Lumora::DiagnosisSession& session) {
    DiagnosisResult r;
    auto add = [&r](const char* key, int level, const char* tj, const char* aj, const char* te,
                    const char* ae, float value) {
        DiagnosisItem item;
        item.key = key;
        item.level = level;
        item.titleJa = tj;
        item.adviceJa = aj;
        item.titleEn = te;
        item.adviceEn = ae;
        item.value = value;
        r.items.push_back(item);
    };
    add("clipping", 0, "クリップはないよ！", "", "No clipping — nice!", "", -6.2f);
    add("volume", 0, "いい感じ！音量バッチリ", "", "Sounds great! Volume is spot on.", "", -21.4f);
    add("noise", 1, "少しノイズがあるかも", "エアコンや PC ファンが近いかも！",
        "A little background noise detected", "Could be an AC or PC fan nearby!", -49.0f);
    add("distance", 0, "距離はいい感じ！", "ダイナミックマイクとして理想的な距離感！",
        "Distance looks great!", "Great positioning for a dynamic mic!", 1.5f);
    add("dynamics", 0, "声の強弱がいい感じ！",
        "大きい声: -12 dBFS / 小さい声: -31 dBFS / 差: 19 dB", "Volume dynamics sound great!",
        "Loud: -12 dBFS / Soft: -31 dBFS / Range: 19 dB", 19.0f);
    add("pop", 2,
        "ポップノイズ（吹かれ）が強いです！マイクの正面ではなく少し横から話すか、ポップガードを使い"
        "ましょう。",
        "「ぱ・ば・ぴ・び・ぷ・ぶ」などが原因になりやすい",
        "Strong plosive wind noise! Try speaking slightly off-axis or use a pop filter.",
        "P, B, and other plosive sounds are common culprits.", 22.5f);
    r.overall = 2;
    r.micType = session.micType;
    r.valid = 1;
    r.summaryJa = "1 つ気になるところがあるかも！";
    r.summaryEn = "One thing to keep an eye on!";
    return r;
}

void shootLanguage(Session& s) {
    Lumora::WizardDialog& d = *s.dialog;
    Lumora::WizardPanel* wizard = d.wizardPanel();
    s.feeder->gain = 1.0f;
    s.feeder->silent = false;
    d.setLanguage(s.language);
    QCoreApplication::processEvents();

    // The main pages before any diagnosis.
    const char* tabNames[] = {"diagnose", "results-empty", "sound", "fx", "presets", "keys"};
    for (int tab = 0; tab < 6; ++tab) {
        d.selectTab(tab);
        s.run(0.5);
        s.shot(&d, QStringLiteral("tab%1-%2").arg(tab).arg(QLatin1String(tabNames[tab])));
    }
    for (int sub = 1; sub < Lumora::PresetsPage::kSubPageCount; ++sub) {
        d.selectTab(Lumora::WizardDialog::kPresetsTab);
        d.presetsPage()->selectSubTab(sub);
        s.run(0.1);
        s.shot(&d, QStringLiteral("tab4-presets-sub%1").arg(sub));
    }
    d.presetsPage()->selectSubTab(0);

    // The menu and its language list.
    Lumora::MainMenu* menu = d.buildMainMenu();
    menu->popup(d.menuButton()->mapToGlobal(QPoint(0, d.menuButton()->height())));
    s.run(0.2);
    s.shot(menu, QStringLiteral("menu"));
    Lumora::MainMenu* menu2 = d.buildMainMenu();
    menu2->languageMenu()->popup(QPoint(40, 40));
    s.run(0.2);
    s.shot(menu2->languageMenu(), QStringLiteral("menu-language"));
    menu2->languageMenu()->close();
    menu->close();
    menu->deleteLater();
    menu2->deleteLater();

    // The whole diagnosis.
    d.selectTab(Lumora::WizardDialog::kDiagnoseTab);
    d.diagnosis()->start();
    s.run(0.2);
    s.shot(&d, QStringLiteral("wizard-0-mic"));
    wizard->micButton(0)->click();
    s.run(0.2);
    s.shot(&d, QStringLiteral("wizard-1-prompt"));
    const float gains[] = {0.0f, 1.0f, 2.5f, 0.15f, 1.6f, 0.0f};
    for (int take = 1; take <= 5; ++take) {
        s.feeder->gain = gains[take];
        s.feeder->silent = take == 5;
        wizard->startButton()->click();
        s.run(1.2);
        if (take == 1 || take == 4) {
            s.shot(&d, QStringLiteral("wizard-2-countdown-step%1").arg(take));
        }
        s.run(2.0);
        if (take == 1 || take == 5) {
            s.shot(&d, QStringLiteral("wizard-3-recording-step%1").arg(take));
        }
        s.run(3.2);
        if (take == 1 || take == 5) {
            s.shot(&d, QStringLiteral("wizard-4-done-step%1").arg(take));
        }
        if (take < 5) {
            wizard->nextButton()->click();
            s.run(0.1);
            if (take == 3) {
                s.shot(&d, QStringLiteral("wizard-1-prompt-step4"));
            }
        }
    }
    d.diagnosis()->setAnalyseFunction([](const Lumora::DiagnosisSession& session) {
        // Slow enough to see the analysing state.
        QThread::msleep(600);
        return sampleResult(session);
    });
    wizard->nextButton()->click();
    s.run(0.2);
    s.shot(&d, QStringLiteral("wizard-5-analysing"));
    // The analysis runs on its own thread in real time: wait for it (up to 4 s).
    for (int i = 0; i < 200 && d.controller().state() == DiagnosisController::kAnalysing; ++i) {
        s.run(0.05);
        QThread::msleep(20);
    }
    s.run(0.2);
    s.shot(&d, QStringLiteral("wizard-6-result"));
    wizard->offerSaveButton()->click();
    s.run(0.2);
    s.shot(&d, QStringLiteral("wizard-7-offer-save"));
    wizard->notNowButton()->click();
    s.run(0.3);
    s.shot(&d, QStringLiteral("wizard-8-end"));
    s.run(2.0);
    s.shot(&d, QStringLiteral("tab1-results"));
    s.feeder->gain = 1.0f;
    s.feeder->silent = false;
    d.diagnosis()->applyRecommended();
    d.selectTab(Lumora::WizardDialog::kDiagnoseTab);
    s.run(0.5);
    s.shot(&d, QStringLiteral("tab0-diagnose-after"));
    d.selectTab(Lumora::WizardDialog::kSoundTab);
    s.run(0.5);
    s.shot(&d, QStringLiteral("tab2-sound-after"));
}

// Process CPU time in seconds.
double cpuSeconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

// Runs the event loop for `seconds` and prints the process's CPU share.
void measure(const char* what, double seconds, const Lumora::WizardDialog* dialog) {
    // Let the first full paint and the font loading pass before measuring.
    QEventLoop settle;
    QTimer::singleShot(2000, &settle, &QEventLoop::quit);
    settle.exec();
    const quint64 ticksBefore = dialog ? dialog->tickCount() : 0;
    const double cpuBefore = cpuSeconds();
    QElapsedTimer wall;
    wall.start();
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000.0), &loop, &QEventLoop::quit);
    loop.exec();
    const double cpu = cpuSeconds() - cpuBefore;
    const double elapsed = static_cast<double>(wall.elapsed()) / 1000.0;
    const double ticks = dialog ? static_cast<double>(dialog->tickCount() - ticksBefore) : 0.0;
    std::printf("%-34s %.2f s CPU in %.2f s = %.2f %% of one core (%.1f ticks a second)\n", what,
                cpu, elapsed, 100.0 * cpu / elapsed, ticks / elapsed);
}

// The dialog on a filter fed nothing (OBS idle), open on the diagnose tab with
// its real timer: the active window, then behind another window; and the
// process with no dialog at all, for comparison.
int measureIdleCpu(double seconds) {
    Lumora::FilterEngine state;
    state.prepare(kRate);
    measure("no dialog:", seconds, nullptr);
    Lumora::WizardDialog dialog(nullptr, &state);
    dialog.show();
    dialog.activateWindow();
    measure("dialog open, the active window:", seconds, &dialog);
    QWidget other;
    other.resize(300, 200);
    other.show();
    other.activateWindow();
    measure("dialog open, another window active:", seconds, &dialog);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: lumora-screens OUT_DIR [ja|en ...]\n"
                             "       lumora-screens --idle-cpu [SECONDS]\n");
        return 2;
    }
    Lumora::setPluginDataFolder(QStringLiteral(LUMORA_SOURCE_DATA_DIR));
    if (QString::fromLocal8Bit(argv[1]) == QLatin1String("--idle-cpu")) {
        return measureIdleCpu(argc > 2 ? std::atof(argv[2]) : 20.0);
    }
    QDir dir(QString::fromLocal8Bit(argv[1]));
    if (!QDir().mkpath(dir.path())) {
        std::fprintf(stderr, "lumora-screens: cannot create %s\n", argv[1]);
        return 1;
    }
    QStringList languages;
    for (int i = 2; i < argc; ++i) {
        languages << QString::fromLocal8Bit(argv[i]);
    }
    if (languages.isEmpty()) {
        languages << QStringLiteral("ja") << QStringLiteral("en");
    }

    Feeder feeder;
    Lumora::WavData wav;
    std::string error;
    if (Lumora::readWav("/usr/share/sounds/alsa/Front_Center.wav", wav, error) &&
        wav.channels() > 0) {
        feeder.speech = wav.planes[0];
    } else {
        std::fprintf(stderr, "lumora-screens: no speech (%s); using noise\n", error.c_str());
    }

    int saved = 0;
    for (const QString& language : languages) {
        Lumora::FilterEngine state;
        state.prepare(kRate);

        Lumora::WizardDialog dialog(nullptr, &state);
        dialog.tickTimer()->stop();
        dialog.show();
        dialog.tickTimer()->stop();
        Session session{&dialog, &state, &feeder, dir, language};
        shootLanguage(session);
        saved += session.saved;
        dialog.detach();
    }
    std::printf("%d screenshots\n", saved);
    return saved > 0 ? 0 : 1;
}
