// A test-only OBS module: an audio filter that appends the first channel of every
// packet it sees, as 32-bit floats, to the file named by its "path" setting.
// Placed last in a source's filter list it records what the source outputs, so
// an end-to-end run can measure the sound a user would hear. The file is flushed
// after every packet so that a script can cut it at the moment of a key press.
#include <obs-module.h>

#include <cstdio>
#include <string>

OBS_DECLARE_MODULE()

namespace {

struct Tap {
    std::FILE* file = nullptr;
    std::string path;
};

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

void* tapCreate(obs_data_t* settings, obs_source_t*) {
    auto* tap = new Tap;
    tapUpdate(tap, settings);
    return tap;
}

void tapDestroy(void* data) {
    auto* tap = static_cast<Tap*>(data);
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
