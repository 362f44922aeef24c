// lumora-cli process: runs a WAV file through the filter engine (the cleaning
// chain, the voice effects, the safety limiter), in packets, as the filter does
// in OBS; `--at SECONDS --preset P.json` and `--at SECONDS --fx FX.json` switch
// presets mid-file as the dialog applies them, so a voice switch or a knob
// sweep can be rendered offline.
#include "Commands.h"

#include "WavFile.h"
#include "engine/FilterEngine.h"
#include "settings/AppSettings.h"
#include "settings/JsonText.h"
#include "settings/SettingsJson.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

namespace Lumora::Cli {

namespace {

bool readText(const std::string& path, std::string& text) {
    std::ifstream f(path, std::ios::binary);
    if (!f) {
        return false;
    }
    std::stringstream s;
    s << f.rdbuf();
    text = s.str();
    return true;
}

// A preset file may be one preset object, a preset bundle ({"presets": [...]},
// as `presets export` writes) or the output of `diagnose` ({"recommended": ...}).
bool presetObject(const std::string& path, const char* listKey, JsonValue& out,
                  std::string& error) {
    std::string text;
    if (!readText(path, text)) {
        error = "cannot read " + path;
        return false;
    }
    const JsonParseResult parsed = parseJson(text);
    if (!parsed.ok || !parsed.value.isObject()) {
        error = path + " is not a JSON object";
        return false;
    }
    const JsonValue& list = member(parsed.value, listKey);
    if (list.isArray()) {
        if (list.elements().empty() || !list.elements().front().isObject()) {
            error = path + " holds no preset in \"" + listKey + "\"";
            return false;
        }
        out = list.elements().front();
        return true;
    }
    const JsonValue& recommended = member(parsed.value, "recommended");
    out = recommended.isObject() ? recommended : parsed.value;
    return true;
}

// A preset given on the command line, applied from `seconds` on (0: from the start).
struct Change {
    double seconds = 0.0;
    bool effects = false; // a sound-effect preset, else an effect preset
    std::string path;
    JsonValue preset;
};

} // namespace

int runProcess(const Args& args) {
    std::vector<Change> changes;
    std::vector<std::string> files;
    int block = 480;
    double at = 0.0;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if ((a == "--preset" || a == "--fx") && hasValue) {
            changes.push_back(Change{at, a == "--fx", args[++i], JsonValue{}});
        } else if (a == "--at" && hasValue) {
            char* end = nullptr;
            const double seconds = std::strtod(args[++i].c_str(), &end);
            if (!end || *end != '\0' || !(seconds >= at)) {
                return fail("process: --at takes seconds, in time order", 2);
            }
            at = seconds;
        } else if (a == "--block" && hasValue) {
            block = std::atoi(args[++i].c_str());
        } else if (!a.empty() && a[0] == '-') {
            return fail("process: unknown or incomplete option " + a, 2);
        } else {
            files.push_back(a);
        }
    }
    const bool startsWithPreset = std::any_of(changes.begin(), changes.end(), [](const Change& c) {
        return c.seconds == 0.0 && !c.effects;
    });
    if (!startsWithPreset || files.size() != 2) {
        return fail("process: usage: process --preset P.json [--fx FX.json] "
                    "[--at SECONDS (--preset P2.json | --fx FX2.json)]... [--block N] "
                    "IN.wav OUT.wav",
                    2);
    }
    if (block < 1 || block > 65536) {
        return fail("process: --block must be 1..65536", 2);
    }

    std::string error;
    for (Change& change : changes) {
        if (!presetObject(change.path, change.effects ? "soundFxPresets" : "presets", change.preset,
                          error)) {
            return fail("process: " + error);
        }
    }

    WavData audio;
    if (!readWav(files[0], audio, error)) {
        return fail("process: " + error);
    }
    if (audio.channels() > 8) {
        return fail("process: more than 8 channels are not supported");
    }

    // The engine is large (delay lines, pitch shifters): keep it off the stack.
    auto engine = std::make_unique<FilterEngine>();
    engine->prepare(audio.sampleRate);
    engine->setSoundFxActive(true);
    size_t next = 0;
    // As the dialog applies a preset: whole, between two packets.
    auto applyDue = [&](double now) {
        for (; next < changes.size() && changes[next].seconds <= now; ++next) {
            const Change& change = changes[next];
            if (change.effects) {
                engine->applySoundFxPreset(soundFxPresetFromJson(change.preset).preset);
            } else {
                const SavedEffectPreset saved = effectPresetFromJson(change.preset);
                EffectPreset preset = saved.preset;
                preset.name = saved.name;
                engine->applyEffectPreset(preset);
            }
        }
    };

    // Like OBS with the filter's timestamps: each packet lands in the file as
    // early as the filter says it is late, so the output lines up with the
    // input; a second of silence after the end brings the last voice out.
    const int frames = audio.frames();
    const int padded = frames + static_cast<int>(audio.sampleRate);
    WavData rendered = audio;
    for (std::vector<float>& plane : rendered.planes) {
        plane.resize(static_cast<size_t>(padded), 0.0f);
    }
    int lastDelay = -1;
    for (int start = 0; start < padded; start += block) {
        applyDue(static_cast<double>(start) / audio.sampleRate);
        const int n = std::min(block, padded - start);
        float* planes[8] = {};
        for (int c = 0; c < audio.channels(); ++c) {
            planes[c] = rendered.planes[c].data() + start;
        }
        const int delay = engine->processAudio(planes, audio.channels(), n);
        if (delay != lastDelay && start < frames) {
            std::printf("%.3f s: output delay %.1f ms (moved earlier to match)\n",
                        static_cast<double>(start) / audio.sampleRate,
                        1000.0 * delay / audio.sampleRate);
            lastDelay = delay;
        }
        for (int c = 0; c < audio.channels(); ++c) {
            const int from = std::max(start - delay, 0);
            const int to = std::min(start + n - delay, frames);
            for (int i = from; i < to; ++i) {
                audio.planes[c][static_cast<size_t>(i)] =
                    rendered.planes[c][static_cast<size_t>(i + delay)];
            }
        }
    }
    if (!writeWav(files[1], audio, error)) {
        return fail("process: " + error);
    }
    return 0;
}

} // namespace Lumora::Cli
