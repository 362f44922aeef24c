// lumora-cli diagnose: runs five recorded takes through the diagnosis analyser
// the way the live filter and the wizard hear them, and prints the result.
//
// Every take is played whole through one analyser (replayTake: packets of
// --block frames, stereo mixed to mono as (L + R) * 0.5, one snapshot per 16 ms,
// the last 3 s of a take recorded, 2 s of the plosive take, after the held
// measures restart), so a take may start with a lead-in like the wizard's
// countdown. The analyser is prepared once at the first take's rate; a take of
// another rate is resampled linearly to it.

#include "Commands.h"

#include "WavFile.h"
#include "diagnosis/DiagnosisAnalyser.h"
#include "diagnosis/DiagnosisAnalysis.h"
#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/RecommendedSettings.h"
#include "diagnosis/TakeReplay.h"
#include "settings/AppSettings.h"
#include "settings/JsonText.h"
#include "settings/SettingsJson.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace Lumora::Cli {

namespace {

constexpr int kMaxBlock = 1 << 20;

struct TakeSpec {
    const char* option;
    DiagnosisStep step;
};

// Wizard order.
constexpr TakeSpec kTakes[] = {
    {"--normal", kStepNormal},   {"--loud", kStepLoud},       {"--soft", kStepSoft},
    {"--plosive", kStepPlosive}, {"--silence", kStepSilence},
};

struct Options {
    int micType = -1;
    std::string files[6];
    int block = 480;
    std::string lang;
};

// ---- the JSON result, in the settings file's own text format ----

JsonValue statsJson(const StepStats& st) {
    JsonValue o = JsonValue::object();
    o.set("level", static_cast<double>(st.level));
    o.set("peak95", static_cast<double>(st.peak95));
    o.set("peakMax", static_cast<double>(st.peakMax));
    o.set("noiseFloorMin", static_cast<double>(st.noiseFloorMin));
    o.set("low", static_cast<double>(st.low));
    o.set("mid", static_cast<double>(st.mid));
    o.set("high", static_cast<double>(st.high));
    o.set("clipped", st.clipped);
    o.set("lowBurstMax", static_cast<double>(st.lowBurstMax));
    o.set("activeLevelDb", static_cast<double>(st.activeLevelDb));
    o.set("activeLowDb", static_cast<double>(st.activeLowDb));
    o.set("activeMidDb", static_cast<double>(st.activeMidDb));
    o.set("activeLevelP10", static_cast<double>(st.activeLevelP10));
    o.set("count", static_cast<int>(st.count));
    o.set("valid", st.valid);
    return o;
}

std::string toJson(const DiagnosisResult& r, const EffectPreset& recommended) {
    JsonValue root = JsonValue::object();
    root.set("overall", static_cast<int>(r.overall));
    root.set("summaryJa", r.summaryJa);
    root.set("summaryEn", r.summaryEn);
    root.set("micType", static_cast<int>(r.micType));
    JsonValue items = JsonValue::array();
    for (const DiagnosisItem& item : r.items) {
        JsonValue o = JsonValue::object();
        o.set("key", item.key);
        o.set("level", static_cast<int>(item.level));
        o.set("value", static_cast<double>(item.value));
        o.set("titleJa", item.titleJa);
        o.set("adviceJa", item.adviceJa);
        o.set("titleEn", item.titleEn);
        o.set("adviceEn", item.adviceEn);
        items.push(std::move(o));
    }
    root.set("items", std::move(items));
    root.set("speech", statsJson(r.speech));
    root.set("silence", statsJson(r.silence));
    root.set("soft", statsJson(r.soft));
    JsonValue spectrum = JsonValue::array();
    for (const float v : r.noiseSpectrum) {
        spectrum.push(static_cast<double>(v));
    }
    root.set("noiseSpectrum", std::move(spectrum));
    SavedEffectPreset saved;
    saved.name = recommended.name;
    saved.description = recommended.description;
    saved.recording = recommended.recording;
    saved.preset = recommended;
    root.set("recommended", effectPresetToJson(saved));
    return renderJson(root) + "\n";
}

// ---- the readable report ----

const char* micName(int micType, bool ja) {
    switch (micType) {
    case kMicDynamic:
        return ja ? "ダイナミック" : "dynamic";
    case kMicCondenser:
        return ja ? "コンデンサー" : "condenser";
    case kMicUsb:
        return "USB";
    default:
        return ja ? "不明" : "unknown";
    }
}

std::string toReport(const DiagnosisResult& r, const EffectPreset& recommended,
                     const std::string& lang) {
    const bool ja = lang == "ja";
    std::string out;
    char line[256];
    out += ja ? "声の診断結果\n" : "Voice diagnosis\n";
    std::snprintf(line, sizeof line, "%s %s / %s\n",
                  ja ? "マイク:" : "Mic:", micName(r.micType, ja),
                  statusLabel(r.overall, lang).c_str());
    out += line;
    out += summaryText(r, lang) + "\n\n";
    for (const DiagnosisItem& item : r.items) {
        std::snprintf(line, sizeof line, "%s  %s (%s %.1f)\n",
                      statusLabel(item.level, lang).c_str(),
                      (ja ? item.titleJa : item.titleEn).c_str(), item.key.c_str(),
                      static_cast<double>(item.value));
        out += line;
        const std::string& advice = ja ? item.adviceJa : item.adviceEn;
        if (!advice.empty()) {
            out += "    " + advice + "\n";
        }
    }
    std::snprintf(line, sizeof line, "\n%s %.1f dBFS, %s %.1f dBFS, %s %.1f dBFS\n",
                  ja ? "話し声:" : "Speech:", static_cast<double>(r.speech.level),
                  ja ? "ピーク(95%):" : "peak (95%):", static_cast<double>(r.speech.peak95),
                  ja ? "無音:" : "silence:", static_cast<double>(r.silence.level));
    out += line;
    out += (ja ? "おすすめ設定: " : "Recommended: ") + recommended.name + "\n    " +
           recommended.description + "\n";
    return out;
}

// ---- running the takes ----

bool parseMic(const std::string& s, int& out) {
    static const char* const names[] = {"dynamic", "condenser", "usb", "unknown"};
    for (int i = 0; i < 4; ++i) {
        if (s == names[i]) {
            out = i;
            return true;
        }
    }
    return false;
}

bool parseBlock(const std::string& s, int& out) {
    if (s.empty() || s.size() > 9 || s.find_first_not_of("0123456789") != std::string::npos) {
        return false;
    }
    const long v = std::strtol(s.c_str(), nullptr, 10);
    if (v < 1 || v > kMaxBlock) {
        return false;
    }
    out = static_cast<int>(v);
    return true;
}

// The mono signal the analyser would hear from this file, at `rate`.
std::vector<float> monoAt(const WavData& wav, int rate) {
    const int frames = wav.frames();
    std::vector<float> mono(static_cast<size_t>(frames));
    if (wav.channels() == 1) {
        mono = wav.planes[0];
    } else {
        for (int i = 0; i < frames; ++i) {
            mono[static_cast<size_t>(i)] =
                (wav.planes[0][static_cast<size_t>(i)] + wav.planes[1][static_cast<size_t>(i)]) *
                0.5f;
        }
    }
    if (wav.sampleRate == rate || frames == 0) {
        return mono;
    }
    // Linear interpolation is enough here: the verdicts read levels and bands
    // over seconds, not fine spectral detail.
    const double step = static_cast<double>(wav.sampleRate) / rate;
    const auto outFrames = static_cast<size_t>(std::floor((frames - 1) / step) + 1.0);
    std::vector<float> out(outFrames);
    for (size_t i = 0; i < outFrames; ++i) {
        const double pos = static_cast<double>(i) * step;
        const auto k = static_cast<size_t>(pos);
        const double f = pos - static_cast<double>(k);
        const float a = mono[k];
        const float b = k + 1 < mono.size() ? mono[k + 1] : a;
        out[i] = static_cast<float>(a + (b - a) * f);
    }
    return out;
}

} // namespace

int runDiagnose(const Args& args) {
    Options opt;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& name = args[i];
        if (i + 1 >= args.size()) {
            return fail("diagnose: option '" + name + "' needs a value (try --help)", 2);
        }
        const std::string& value = args[++i];
        bool known = false;
        for (const TakeSpec& take : kTakes) {
            if (name == take.option) {
                opt.files[take.step] = value;
                known = true;
            }
        }
        if (known) {
            continue;
        }
        if (name == "--mic") {
            if (!parseMic(value, opt.micType)) {
                return fail("diagnose: --mic must be dynamic, condenser, usb or unknown, not '" +
                                value + "'",
                            2);
            }
        } else if (name == "--block") {
            if (!parseBlock(value, opt.block)) {
                return fail("diagnose: --block must be a whole number from 1 to 1048576, not '" +
                                value + "'",
                            2);
            }
        } else if (name == "--lang") {
            if (value != "ja" && value != "en") {
                return fail("diagnose: --lang must be ja or en, not '" + value + "'", 2);
            }
            opt.lang = value;
        } else {
            return fail("diagnose: unknown option '" + name + "' (try --help)", 2);
        }
    }
    if (opt.micType < 0) {
        return fail("diagnose: --mic is required (dynamic, condenser, usb or unknown)", 2);
    }
    for (const TakeSpec& take : kTakes) {
        if (opt.files[take.step].empty()) {
            return fail(std::string("diagnose: ") + take.option + " FILE is required", 2);
        }
    }

    WavData wavs[6];
    for (const TakeSpec& take : kTakes) {
        std::string error;
        if (!readWav(opt.files[take.step], wavs[take.step], error)) {
            return fail("diagnose: " + error);
        }
        if (wavs[take.step].frames() < 1) {
            return fail("diagnose: " + opt.files[take.step] + " holds no audio");
        }
    }

    const int rate = wavs[kStepNormal].sampleRate;
    auto analyser = std::make_unique<DiagnosisAnalyser>();
    analyser->prepare(rate);
    DiagnosisSession session;
    session.micType = opt.micType;
    for (const TakeSpec& take : kTakes) {
        const WavData& wav = wavs[take.step];
        replayTake(*analyser, session, take.step, monoAt(wav, rate), wav.channels() > 1, opt.block);
    }

    const DiagnosisResult result = analyse(session);
    const EffectPreset recommended = recommend(result, false);
    const std::string out =
        opt.lang.empty() ? toJson(result, recommended) : toReport(result, recommended, opt.lang);
    std::fputs(out.c_str(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

} // namespace Lumora::Cli
