// A test-only OBS module: an audio filter that appends the first channel of every
// packet it sees, as 32-bit floats, to the file named by its "path" setting.
// Placed last in a source's filter list it records what the source outputs, so
// an end-to-end run can measure the sound a user would hear. The file is flushed
// after every packet so that a script can cut it at the moment of a key press.
//
// With a "voice" setting (a sound-effect preset as JSON) it also plays the part
// of another plug-in or script: from a thread of its own it applies that voice
// to the source's "Tindra" filter through the filter's apply_sound_fx_preset
// procedure, once the filter is there, and logs the answer.
#include <obs-module.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

OBS_DECLARE_MODULE()

namespace {

struct Tap {
    obs_source_t* self = nullptr;
    std::FILE* file = nullptr;
    std::string path;
    std::thread caller;
    std::atomic<bool> stopping{false};
};

// Waits (up to 30 s) for the filter named Tindra on the tap's own source,
// then calls its procedure from this thread.
void applyVoice(Tap* tap, std::string json) {
    for (int i = 0; i < 300 && !tap->stopping; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        obs_source_t* parent = obs_filter_get_parent(tap->self);
        obs_source_t* tindra = parent ? obs_source_get_filter_by_name(parent, "Tindra") : nullptr;
        if (!tindra) {
            continue;
        }
        calldata_t cd;
        calldata_init(&cd);
        calldata_set_string(&cd, "json", json.c_str());
        const bool called =
            proc_handler_call(obs_source_get_proc_handler(tindra), "apply_sound_fx_preset", &cd);
        const char* error = calldata_string(&cd, "error");
        blog(LOG_INFO, "[Lumora test tap] apply_sound_fx_preset from another thread: %s%s%s",
             called && calldata_bool(&cd, "ok") ? "ok" : "failed", error && *error ? ": " : "",
             error ? error : "");
        calldata_free(&cd);
        obs_source_release(tindra);
        return;
    }
}

const char* tapName(void*) {
    return "Lumora test tap";
}

void tapUpdate(void* data, obs_data_t* settings) {
    auto* tap = static_cast<Tap*>(data);
    const char* path = obs_data_get_string(settings, "path");
    if (!path || tap->path == path) {
        return;
    }
    if (tap->file) {
        std::fclose(tap->file);
        tap->file = nullptr;
    }
    tap->path = path;
    if (!tap->path.empty()) {
        tap->file = std::fopen(path, "ab");
        blog(LOG_INFO, "[Lumora test tap] writing %s%s", path, tap->file ? "" : " failed");
    }
}

void* tapCreate(obs_data_t* settings, obs_source_t* source) {
    auto* tap = new Tap;
    tap->self = source;
    tapUpdate(tap, settings);
    const char* voice = obs_data_get_string(settings, "voice");
    if (voice && *voice) {
        tap->caller = std::thread(applyVoice, tap, std::string(voice));
    }
    return tap;
}

void tapDestroy(void* data) {
    auto* tap = static_cast<Tap*>(data);
    tap->stopping = true;
    if (tap->caller.joinable()) {
        tap->caller.join();
    }
    if (tap->file) {
        std::fclose(tap->file);
    }
    delete tap;
}

obs_audio_data* tapAudio(void* data, obs_audio_data* audio) {
    auto* tap = static_cast<Tap*>(data);
    if (tap->file && audio && audio->data[0] && audio->frames > 0) {
        std::fwrite(audio->data[0], sizeof(float), audio->frames, tap->file);
        std::fflush(tap->file);
    }
    return audio;
}

} // namespace

bool obs_module_load(void) {
    obs_source_info info = {};
    info.id = "lumora_test_tap";
    info.type = OBS_SOURCE_TYPE_FILTER;
    info.output_flags = OBS_SOURCE_AUDIO;
    info.get_name = tapName;
    info.create = tapCreate;
    info.destroy = tapDestroy;
    info.update = tapUpdate;
    info.filter_audio = tapAudio;
    obs_register_source(&info);
    return true;
}
