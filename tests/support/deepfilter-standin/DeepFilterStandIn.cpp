// A stand-in for the DeepFilterNet library with the same C interface and a
// behaviour simple enough to predict sample by sample:
//   output = input × 10^(−limit/20), one frame late (like the real model), or
//   at once when the model file says "delay=0".
// The "model" is a small text file read by df_create:
//   delay=N   frames of delay, 0 or 1 (default 1)
//   frame=N   what df_get_frame_length reports (default 480)
//   reject    df_create returns null
// Like the real library, it aborts the process when the model path cannot be
// read, so a caller that forgets to check the file first cannot pass a test.
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#if defined(_WIN32)
#define STANDIN_EXPORT extern "C" __declspec(dllexport)
#else
#define STANDIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

constexpr int kFrame = 480;

struct StandInState {
    float limitDb = 100.0f;
    int delayFrames = 1;
    std::size_t frameLength = kFrame;
    std::vector<float> previous = std::vector<float>(kFrame, 0.0f);
};

int liveStates = 0;
int limitCalls = 0;

int numberAfter(const std::string& text, const char* key, int fallback) {
    const auto at = text.find(key);
    return at == std::string::npos ? fallback : std::atoi(text.c_str() + at + std::strlen(key));
}

} // namespace

STANDIN_EXPORT void* df_create(const char* path, float attenLim, const char* /*logLevel*/) {
    std::FILE* file = path ? std::fopen(path, "rb") : nullptr;
    if (!file) {
        std::fprintf(stderr, "deepfilter stand-in: cannot read model '%s'\n", path ? path : "");
        std::abort();
    }
    std::string text;
    char buffer[256];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0) {
        text.append(buffer, n);
    }
    std::fclose(file);
    if (text.find("reject") != std::string::npos) {
        return nullptr;
    }
    auto* state = new StandInState;
    state->limitDb = attenLim;
    state->delayFrames = numberAfter(text, "delay=", 1);
    state->frameLength = static_cast<std::size_t>(numberAfter(text, "frame=", kFrame));
    ++liveStates;
    return state;
}

STANDIN_EXPORT std::size_t df_get_frame_length(void* state) {
    return static_cast<StandInState*>(state)->frameLength;
}

STANDIN_EXPORT float df_process_frame(void* state, float* input, float* output) {
    auto* s = static_cast<StandInState*>(state);
    const float scale = std::pow(10.0f, -s->limitDb / 20.0f);
    for (int i = 0; i < kFrame; ++i) {
        const float x = input[i];
        output[i] = (s->delayFrames > 0 ? s->previous[i] : x) * scale;
        s->previous[i] = x;
    }
    return 0.0f;
}

STANDIN_EXPORT void df_set_atten_lim(void* state, float limDb) {
    static_cast<StandInState*>(state)->limitDb = limDb;
    ++limitCalls;
}

STANDIN_EXPORT void df_free(void* state) {
    delete static_cast<StandInState*>(state);
    --liveStates;
}

// For the tests: what the stand-in has seen.
STANDIN_EXPORT int standin_live_states() {
    return liveStates;
}
STANDIN_EXPORT int standin_limit_calls() {
    return limitCalls;
}
