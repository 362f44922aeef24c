// Keeps a copy of the filter's registration as the module hands it to libobs, so
// host tests can call its audio callback with packets libobs itself never sends
// (zero frames, missing planes). The test executable exports this function, which
// therefore takes the place of libobs's own for the module; it forwards to it.
#include "HostEnvironment.h"

#include <dlfcn.h>

#include <cstring>

namespace {
obs_source_info gFilterInfo = {};
}

extern "C" void obs_register_source_s(const struct obs_source_info* info, size_t size) {
    if (info && info->id && std::strcmp(info->id, "lumora_filter") == 0) {
        std::memcpy(&gFilterInfo, info, std::min(size, sizeof gFilterInfo));
    }
    using RegisterFn = void (*)(const struct obs_source_info*, size_t);
    static auto real = reinterpret_cast<RegisterFn>(dlsym(RTLD_NEXT, "obs_register_source_s"));
    real(info, size);
}

struct obs_audio_data* callFilterAudio(obs_source_t* filter, struct obs_audio_data* audio) {
    return gFilterInfo.filter_audio(obs_obj_get_data(filter), audio);
}
