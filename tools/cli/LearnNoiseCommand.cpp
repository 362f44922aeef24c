// lumora-cli learn-noise: the spectral noise reducer's profile of a room, from a
// recording of the room alone, printed as the "spectral" group of an effect
// preset.
#include "Commands.h"

#include "WavFile.h"
#include "dsp/NoiseProfileLearner.h"
#include "settings/JsonText.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace Lumora::Cli {

int runLearnNoise(const Args& args) {
    std::string path;
    float margin = NoiseProfileLearner::kDefaultMarginDb;
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--margin" && i + 1 < args.size()) {
            margin = static_cast<float>(std::atof(args[++i].c_str()));
        } else if (!args[i].empty() && args[i][0] == '-') {
            return fail("learn-noise: unknown or incomplete option " + args[i], 2);
        } else if (path.empty()) {
            path = args[i];
        } else {
            return fail("learn-noise: one recording only", 2);
        }
    }
    if (path.empty()) {
        return fail("learn-noise: usage: learn-noise SILENCE.wav [--margin DB]", 2);
    }
    WavData audio;
    std::string error;
    if (!readWav(path, audio, error)) {
        return fail("learn-noise: " + error);
    }
    auto learner = std::make_unique<NoiseProfileLearner>();
    learner->prepare(audio.sampleRate);
    std::vector<float> mono(static_cast<size_t>(audio.frames()), 0.0f);
    for (const auto& plane : audio.planes) {
        for (size_t i = 0; i < mono.size(); ++i) {
            mono[i] += plane[i] / static_cast<float>(audio.channels());
        }
    }
    learner->process(mono.data(), static_cast<int>(mono.size()));
    if (learner->framesSeen() < 1) {
        return fail("learn-noise: " + path + " is too short (at least 2048 samples)");
    }
    JsonValue profile = JsonValue::array();
    for (float v : learner->profileDb(margin)) {
        profile.push(static_cast<double>(v));
    }
    JsonValue spectral = JsonValue::object();
    spectral.set("enabled", true);
    spectral.set("amount", 1.0);
    spectral.set("profileDb", std::move(profile));
    JsonValue root = JsonValue::object();
    root.set("spectral", std::move(spectral));
    std::printf("%s\n", renderJson(root).c_str());
    return 0;
}

} // namespace Lumora::Cli
