// lumora-panels-screens: builds each of the dialog's knob and presets panels on
// its own, in a window as wide as the dialog's content area (500 px, the
// panel itself 470 px beside a scroll bar's room), and saves one PNG per panel,
// mode and language into the folder given on the command line:
//
//   xvfb-run -a -s "-screen 0 1280x1024x24" lumora-panels-screens OUT_DIR
//
// The window grows to the panel's whole height, so nothing is scrolled away.

#include "diagnosis/RecommendedSettings.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"
#include "ui/CompressorDisplay.h"
#include "ui/EffectPanel.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyAssignPresetsPanel.h"
#include "ui/Localisation.h"
#include "ui/PresetsPanel.h"
#include "ui/SoundFxPanel.h"
#include "ui/SoundFxPresetsPanel.h"
#include "ui/SoundShapes.h"

#include <QApplication>
#include <QDir>
#include <QFrame>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace {

constexpr int kWidth = 500;

// The dialog's sky without its sprites, so the panels are seen over the same colours.
class Backdrop : public QWidget {
public:
    explicit Backdrop(bool bare) {
        setFixedWidth(kWidth);
        auto* layout = new QVBoxLayout(this);
        if (bare) {
            layout->setContentsMargins(0, 0, 0, 0);
        } else {
            layout->setContentsMargins(12, 8, 18, 8);
        }
    }
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        QLinearGradient g(rect().topLeft(), rect().bottomRight());
        g.setColorAt(0.0, QColor(230, 222, 248));
        g.setColorAt(0.45, QColor(214, 246, 234));
        g.setColorAt(1.0, QColor(230, 222, 248));
        p.fillRect(rect(), g);
    }
};

struct Shot {
    const char* name;
    std::function<QWidget*(QWidget* parent, bool easy)> make;
    int height = 0; // a fixed window height for pages that scroll on their own
    // Pages put straight into the dialog's stack bring their own margins; the
    // sound and FX panels sit in a scroll area with 12 px margins.
    bool bare = false;
};

// What a diagnosed streamer's voice looks like: every stage on, the room learned.
Lumora::EffectPreset streamingVoice() {
    using namespace Lumora;
    EffectPreset p = SoundShapes::panelDefaults();
    p.gate.enabled = true;
    p.gate.thresholdDb = -48.0f;
    SoundShapes::maleVoice(p.eq);
    SoundShapes::talkMode(p);
    p.spectral.enabled = true;
    for (int b = 0; b < kProfileBandCount; ++b) {
        // A fan's broadband rumble falling with frequency, and a little mains hum.
        p.spectral.profileDb[static_cast<size_t>(b)] =
            -62.0f - 0.35f * static_cast<float>(b) + (b >= 7 && b <= 13 ? 12.0f : 0.0f);
    }
    p.noise.enabled = true;
    p.active = true;
    return p;
}

// A settings folder with the built-ins, two effect presets, a key name and two
// diagnoses in the history, as a user would have after a week.
void fillStore(Lumora::SettingsStore& store) {
    using namespace Lumora;
    store.load();
    DiagnosisResult result;
    result.valid = 1;
    result.micType = kMicCondenser;
    result.overall = kLevelCaution;
    const char* keys[] = {"clipping", "volume", "noise", "distance", "dynamics", "pop"};
    const int levels[] = {0, 1, 0, 0, 2, 0};
    for (int i = 0; i < 6; ++i) {
        DiagnosisItem item;
        item.key = keys[i];
        item.level = levels[i];
        result.items.push_back(item);
    }
    EffectPreset recommended = recommend(result, false);
    SavedEffectPreset a;
    a.name = "配信最適化プリセット";
    a.description = describe(recommended);
    a.preset = recommended;
    store.saveEffectPreset(a);
    SavedEffectPreset b;
    b.name = "Manual adjustment preset";
    b.description = "Low cut 120 Hz, talk compressor";
    store.saveEffectPreset(b);
    AppFields fields;
    fields.lastPresetName = a.name;
    store.saveAppFields(fields);
    DiagnosisHistoryEntry first;
    first.timestamp = "2025-05-02 21:14:03";
    first.presetApplied = true;
    first.result = result;
    store.addDiagnosisHistory(first);
    DiagnosisHistoryEntry second = first;
    second.timestamp = "2025-05-09 20:02:41";
    second.presetApplied = false;
    second.result.overall = kLevelGood;
    second.result.micType = kMicUsb;
    for (DiagnosisItem& item : second.result.items) {
        item.level = 0;
    }
    store.addDiagnosisHistory(second);
    AppSettings s = store.load();
    s.keyAssignments.keys[0].keyName = "ロボ声";
    store.saveKeyAssignments(s.keyAssignments);
}

void settle() {
    for (int i = 0; i < 5; ++i) {
        QApplication::processEvents();
    }
}

bool shoot(const Shot& shot, bool easy, const QString& language, const QDir& dir) {
    Backdrop host(shot.bare);
    QWidget* panel = shot.make(&host, easy);
    host.layout()->addWidget(panel);
    host.show();
    settle();
    if (shot.height > 0) {
        host.setFixedHeight(shot.height);
    } else {
        host.adjustSize();
    }
    settle();
    const QString file = dir.filePath(
        QStringLiteral("%1-%2-%3.png")
            .arg(QLatin1String(shot.name),
                 easy ? QStringLiteral("easy") : QStringLiteral("advanced"), language));
    const bool ok = host.grab().save(file);
    std::printf("%s %s (%dx%d)\n", ok ? "saved" : "FAILED", qPrintable(file), host.width(),
                host.height());
    return ok;
}

// The built-in presets of the reverb as its popup lists them.
bool shootPopup(const QString& language, const QDir& dir) {
    Backdrop host(false);
    auto* panel = new Lumora::SoundFxPanel(&host);
    host.layout()->addWidget(panel);
    host.show();
    settle();
    QFrame* popup = panel->showFxPresetPopup(panel->presetButton(Lumora::kEffectReverb),
                                             Lumora::reverbPresets());
    settle();
    const QString file = dir.filePath(QStringLiteral("fx-preset-popup-%1.png").arg(language));
    const bool ok = popup->grab().save(file);
    std::printf("%s %s (%dx%d)\n", ok ? "saved" : "FAILED", qPrintable(file), popup->width(),
                popup->height());
    popup->close();
    settle();
    return ok;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: lumora-panels-screens OUT_DIR\n");
        return 2;
    }
    Lumora::setPluginDataFolder(QStringLiteral(LUMORA_SOURCE_DATA_DIR));
    QDir dir(QString::fromLocal8Bit(argv[1]));
    if (!dir.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot create %s\n", argv[1]);
        return 1;
    }

    QTemporaryDir folder;
    Lumora::SettingsStore store(folder.path().toStdString());
    fillStore(store);

    const std::vector<Shot> shots = {
        {"effect-panel",
         [](QWidget* parent, bool easy) {
             auto* panel = new Lumora::EffectPanel(parent);
             panel->loadPreset(streamingVoice());
             panel->setEasyMode(easy);
             // A few seconds of talk on the compressor display.
             for (int i = 0; i < Lumora::CompressorDisplay::kHistory; ++i) {
                 const float in = -30.0f + 14.0f * static_cast<float>(std::sin(i * 0.11)) *
                                               static_cast<float>(std::sin(i * 0.023));
                 const float gr = std::max(0.0f, (in + 28.0f) * 0.6f);
                 panel->compressorDisplay()->push(in, gr, in - gr + 6.0f);
             }
             return panel;
         }},
        {"soundfx-panel",
         [](QWidget* parent, bool easy) {
             auto* panel = new Lumora::SoundFxPanel(parent);
             Lumora::SoundFxPreset fx;
             fx.pitch.enabled = true;
             fx.pitch.layerBEnabled = true;
             fx.pitch.formantEqEnabled = true;
             fx.reverb.enabled = true;
             panel->loadPreset(fx);
             panel->setEasyMode(easy);
             return panel;
         }},
        {"presets-panel",
         [&store](QWidget* parent, bool) { return new Lumora::PresetsPanel(parent, &store); }, 650,
         true},
        {"soundfx-presets-panel",
         [&store](QWidget* parent, bool) {
             return new Lumora::SoundFxPresetsPanel(parent, &store);
         },
         650, true},
        {"keyassign-presets-panel",
         [&store](QWidget* parent, bool) {
             return new Lumora::KeyAssignPresetsPanel(parent, &store);
         },
         650, true},
        {"keyassign-panel",
         [&store](QWidget* parent, bool easy) {
             auto* panel = new Lumora::KeyAssignPanel(parent, &store);
             panel->setEasyMode(easy);
             panel->setLamps(2);
             return panel;
         },
         0, true},
    };

    int failed = 0;
    for (const QString& language : {QStringLiteral("ja"), QStringLiteral("en")}) {
        Lumora::applyLanguage(language);
        for (const Shot& shot : shots) {
            for (bool easy : {true, false}) {
                failed += shoot(shot, easy, language, dir) ? 0 : 1;
            }
        }
        failed += shootPopup(language, dir) ? 0 : 1;
    }
    return failed == 0 ? 0 : 1;
}
