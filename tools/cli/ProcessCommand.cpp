// lumora-cli process: runs a WAV file through the processing chain and the
// voice-effects chain, in packets, as the filter would in OBS.
#include "Commands.h"

#include "WavFile.h"
#include "dsp/VoiceChain.h"
#include "dsp/fx/VoiceFxChain.h"
#include "settings/AppSettings.h"
#include "settings/JsonText.h"
#include "settings/SettingsJson.h"

#include <algorithm>
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

} // namespace

int runProcess(const Args& args) {
    std::string presetPath, fxPath;
    std::vector<std::string> files;
    int block = 480;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == "--preset" && hasValue) {
            presetPath = args[++i];
        } else if (a == "--fx" && hasValue) {
            fxPath = args[++i];
        } else if (a == "--block" && hasValue) {
            block = std::atoi(args[++i].c_str());
        } else if (!a.empty() && a[0] == '-') {
            return fail("process: unknown or incomplete option " + a, 2);
        } else {
            files.push_back(a);
        }
    }
    if (presetPath.empty() || files.size() != 2) {
        return fail("process: usage: process --preset P.json [--fx FX.json] [--block N] "
                    "IN.wav OUT.wav",
                    2);
    }
    if (block < 1 || block > 65536) {
        return fail("process: --block must be 1..65536", 2);
    }

    std::string error;
    JsonValue presetJson;
    if (!presetObject(presetPath, "presets", presetJson, error)) {
        return fail("process: " + error);
    }
    const SavedEffectPreset saved = effectPresetFromJson(presetJson);
    JsonValue fxJson;
    const bool withFx = !fxPath.empty();
    if (withFx && !presetObject(fxPath, "soundFxPresets", fxJson, error)) {
        return fail("process: " + error);
    }

    WavData audio;
    if (!readWav(files[0], audio, error)) {
        return fail("process: " + error);
    }
    if (audio.channels() > 8) {
        return fail("process: more than 8 channels are not supported");
    }

    // The chains are large (delay lines, pitch shifters): keep them off the stack.
    auto chain = std::make_unique<VoiceChain>();
    auto effects = std::make_unique<VoiceFxChain>();
    chain->prepare(audio.sampleRate, audio.sampleRate / 10);
    effects->prepare(audio.sampleRate, audio.sampleRate / 10);
    EffectPreset preset = saved.preset;
    preset.name = saved.name;
    preset.active = true;
    chain->setParameters(preset);
    if (withFx) {
        effects->setParameters(soundFxPresetFromJson(fxJson).preset);
        effects->setActive(true);
    }

    const int frames = audio.frames();
    for (int start = 0; start < frames; start += block) {
        const int n = std::min(block, frames - start);
        float* planes[8] = {};
        for (int c = 0; c < audio.channels(); ++c) {
            planes[c] = audio.planes[c].data() + start;
        }
        chain->process(planes, audio.channels(), n);
        effects->process(planes, audio.channels(), n);
    }
    if (!writeWav(files[1], audio, error)) {
        return fail("process: " + error);
    }
    return 0;
}

} // namespace Lumora::Cli
