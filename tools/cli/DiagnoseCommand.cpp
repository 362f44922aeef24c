// lumora-cli diagnose: runs five recorded takes through the diagnosis analyser
// the way the live filter and the wizard hear them, and prints the result.
//
// Every take is played whole, in packets of --block frames (stereo mixed to mono
// as (L + R) * 0.5 in blocks of at most 512, as the filter does). The dialog's
// 16 ms timer is played by taking one snapshot per 16 ms of audio; snapshots of
// the last 3 s of a take (2 s for the plosive take) are recorded, so a take may
// start with a lead-in, like the wizard's countdown. One analyser hears all five
// takes, prepared once at the first take's rate; a take of another rate is
// resampled linearly to it.

#include "Commands.h"

#include "WavFile.h"
#include "diagnosis/DiagnosisAnalyser.h"
#include "diagnosis/DiagnosisAnalysis.h"
#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/RecommendedSettings.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace Lumora::Cli {

namespace {

constexpr double kTickSeconds = 0.016;
constexpr int kMixBlock = 512;
constexpr int kMaxBlock = 1 << 20;

struct TakeSpec {
    const char* option;
    DiagnosisStep step;
    double recordSeconds;
};

// Wizard order.
constexpr TakeSpec kTakes[] = {
    {"--normal", kStepNormal, 3.0},   {"--loud", kStepLoud, 3.0},       {"--soft", kStepSoft, 3.0},
    {"--plosive", kStepPlosive, 2.0}, {"--silence", kStepSilence, 3.0},
};

struct Options {
    int micType = -1;
    std::string files[6];
    int block = 480;
    std::string lang;
};

// ---- a small JSON text writer (pretty-printed, UTF-8 passed through) ----

class JsonOut {
public:
    std::string text;

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    void key(const char* k) {
        separate();
        quote(k);
        text += ": ";
        afterKey_ = true;
    }
    void value(const std::string& s) {
        separate();
        quote(s);
    }
    void value(const char* s) { value(std::string(s)); }
    void value(bool b) {
        separate();
        text += b ? "true" : "false";
    }
    void value(int v) {
        separate();
        text += std::to_string(v);
    }
    void value(float v) {
        separate();
        if (!std::isfinite(v)) {
            text += "null";
            return;
        }
        char buf[32];
        std::snprintf(buf, sizeof buf, "%.7g", static_cast<double>(v));
        text += buf;
    }
    template <typename T>
    void field(const char* k, const T& v) {
        key(k);
        value(v);
    }

private:
    void open(char c) {
        separate();
        text += c;
        first_.push_back(true);
    }
    void close(char c) {
        const bool empty = first_.back();
        first_.pop_back();
        if (!empty) {
            newline();
        }
        text += c;
    }
    void separate() {
        if (afterKey_) {
            afterKey_ = false;
            return;
        }
        if (first_.empty()) {
            return;
        }
        if (!first_.back()) {
            text += ',';
        }
        first_.back() = false;
        newline();
    }
    void newline() {
        text += '\n';
        text.append(first_.size() * 2, ' ');
    }
    void quote(const std::string& s) {
        text += '"';
        for (const char ch : s) {
            const auto c = static_cast<unsigned char>(ch);
            switch (c) {
            case '"':
                text += "\\\"";
                break;
            case '\\':
                text += "\\\\";
                break;
            case '\n':
                text += "\\n";
                break;
            case '\t':
                text += "\\t";
                break;
            case '\r':
                text += "\\r";
                break;
            default:
                if (c < 0x20) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\u%04x", c);
                    text += buf;
                } else {
                    text += ch;
                }
            }
        }
        text += '"';
    }

    std::vector<bool> first_;
    bool afterKey_ = false;
};

void writeStats(JsonOut& j, const StepStats& s) {
    j.beginObject();
    j.field("level", s.level);
    j.field("peak95", s.peak95);
    j.field("peakMax", s.peakMax);
    j.field("noiseFloorMin", s.noiseFloorMin);
    j.field("low", s.low);
    j.field("mid", s.mid);
    j.field("high", s.high);
    j.field("clipped", s.clipped);
    j.field("count", static_cast<int>(s.count));
    j.field("valid", s.valid);
    j.endObject();
}

// The preset as the settings document stores one (same key names).
void writePreset(JsonOut& j, const EffectPreset& p) {
    j.beginObject();
    j.field("name", p.name);
    j.field("description", p.description);
    j.field("recording", p.recording);
    j.key("eq");
    j.beginObject();
    j.field("enabled", p.eq.enabled);
    j.field("lowCutEnabled", p.eq.lowCutEnabled);
    j.field("lowCutHz", p.eq.lowCutHz);
    j.field("highShelfEnabled", p.eq.highShelfEnabled);
    j.field("highShelfHz", p.eq.highShelfHz);
    j.field("highShelfGainDb", p.eq.highShelfGainDb);
    j.key("notchBands");
    j.beginArray();
    for (const NotchBand& b : p.eq.notchBands) {
        j.beginObject();
        j.field("enabled", b.enabled);
        j.field("centerHz", b.centerHz);
        j.field("gainDb", b.gainDb);
        j.field("q", b.q);
        j.endObject();
    }
    j.endArray();
    j.field("highCutEnabled", p.eq.highCutEnabled);
    j.field("highCutHz", p.eq.highCutHz);
    j.field("highCutQ", p.eq.highCutQ);
    j.endObject();
    j.key("comp");
    j.beginObject();
    j.field("enabled", p.comp.enabled);
    j.field("thresholdDb", p.comp.thresholdDb);
    j.field("ratio", p.comp.ratio);
    j.field("kneeDb", p.comp.kneeDb);
    j.field("attackMs", p.comp.attackMs);
    j.field("releaseMs", p.comp.releaseMs);
    j.field("makeupGainDb", p.comp.makeupGainDb);
    j.endObject();
    j.key("limiter");
    j.beginObject();
    j.field("enabled", p.limiter.enabled);
    j.field("ceilingDb", p.limiter.ceilingDb);
    j.field("releaseMs", p.limiter.releaseMs);
    j.endObject();
    j.key("gate");
    j.beginObject();
    j.field("enabled", p.gate.enabled);
    j.field("thresholdDb", p.gate.thresholdDb);
    j.field("attackMs", p.gate.attackMs);
    j.field("holdMs", p.gate.holdMs);
    j.field("releaseMs", p.gate.releaseMs);
    j.field("rangeDb", p.gate.rangeDb);
    j.endObject();
    j.key("noise");
    j.beginObject();
    j.field("enabled", p.noise.enabled);
    j.field("attenLimitDb", p.noise.attenLimitDb);
    j.field("mix", p.noise.mix);
    j.endObject();
    j.key("spectral");
    j.beginObject();
    j.field("enabled", p.spectral.enabled);
    j.field("amount", p.spectral.amount);
    j.key("profileDb");
    j.beginArray();
    for (const float v : p.spectral.profileDb) {
        j.value(v);
    }
    j.endArray();
    j.endObject();
    j.field("inputGainDb", p.inputGainDb);
    j.field("outputGainDb", p.outputGainDb);
    j.endObject();
}

std::string toJson(const DiagnosisResult& r, const EffectPreset& recommended) {
    JsonOut j;
    j.beginObject();
    j.field("overall", static_cast<int>(r.overall));
    j.field("summaryJa", r.summaryJa);
    j.field("summaryEn", r.summaryEn);
    j.field("micType", static_cast<int>(r.micType));
    j.key("items");
    j.beginArray();
    for (const DiagnosisItem& item : r.items) {
        j.beginObject();
        j.field("key", item.key);
        j.field("level", static_cast<int>(item.level));
        j.field("value", item.value);
        j.field("titleJa", item.titleJa);
        j.field("adviceJa", item.adviceJa);
        j.field("titleEn", item.titleEn);
        j.field("adviceEn", item.adviceEn);
        j.endObject();
    }
    j.endArray();
    j.key("speech");
    writeStats(j, r.speech);
    j.key("silence");
    writeStats(j, r.silence);
    j.key("noiseSpectrum");
    j.beginArray();
    for (const float v : r.noiseSpectrum) {
        j.value(v);
    }
    j.endArray();
    j.key("recommended");
    writePreset(j, recommended);
    j.endObject();
    return j.text + "\n";
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

// Feeds one packet to the analyser as the filter's audio callback does: a mono
// source's packet whole, a stereo source's mixed down in blocks of at most 512.
void feedPacket(DiagnosisAnalyser& analyser, bool stereo, const float* mono, int n) {
    if (!stereo) {
        analyser.process(mono, n);
        return;
    }
    for (int offset = 0; offset < n; offset += kMixBlock) {
        analyser.process(mono + offset, std::min(kMixBlock, n - offset));
    }
}

void runTake(DiagnosisAnalyser& analyser, DiagnosisSession& session, const TakeSpec& take,
             bool stereo, const std::vector<float>& mono, int block, int rate) {
    session.currentStep = take.step;
    const double tick = kTickSeconds * rate;
    const double recordFrom = static_cast<double>(mono.size()) - take.recordSeconds * rate;
    double nextTick = tick;
    size_t done = 0;
    while (done < mono.size()) {
        const int n =
            static_cast<int>(std::min<size_t>(static_cast<size_t>(block), mono.size() - done));
        feedPacket(analyser, stereo, mono.data() + done, n);
        done += static_cast<size_t>(n);
        while (nextTick <= static_cast<double>(done)) {
            if (nextTick >= recordFrom) {
                session.record(take.step, analyser.snapshot());
            }
            nextTick += tick;
        }
    }
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
        runTake(*analyser, session, take, wav.channels() > 1, monoAt(wav, rate), opt.block, rate);
    }

    const DiagnosisResult result = analyse(session);
    const EffectPreset recommended = recommend(result, false);
    const std::string out =
        opt.lang.empty() ? toJson(result, recommended) : toReport(result, recommended, opt.lang);
    std::fputs(out.c_str(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}

} // namespace Lumora::Cli
