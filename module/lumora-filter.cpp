// The "Tindra" audio filter: OBS callbacks around a FilterEngine.
#include "engine/FilterEngine.h"
#include "module/DialogRegistry.h"
#include "module/FilterKeys.h"
#include "module/FilterProcedures.h"
#include "module/VoiceHotkeys.h"
#include "module/WebSocketVendor.h"
#include "platform/Platform.h"

#include <media-io/audio-io.h>
#include <obs-module.h>
#include <util/util_uint64.h>

#include <cmath>
#include <memory>
#include <new>

namespace Lumora {

namespace {

uint32_t channelsOf(enum speaker_layout layout) {
    switch (layout) {
    case SPEAKERS_MONO:
        return 1;
    case SPEAKERS_STEREO:
        return 2;
    case SPEAKERS_2POINT1:
        return 3;
    case SPEAKERS_4POINT0:
        return 4;
    case SPEAKERS_4POINT1:
        return 5;
    case SPEAKERS_5POINT1:
        return 6;
    case SPEAKERS_7POINT1:
        return 8;
    default:
        return 0;
    }
}

const char* filterName(void*) {
    return kFilterDisplayName;
}

void filterUpdate(void* data, obs_data_t* settings) {
    auto* engine = static_cast<FilterEngine*>(data);
    if (!engine || !settings) {
        return;
    }
    engine->setRecordingMode(obs_data_get_bool(settings, kSettingRecordingMode));
}

// The log says how late the filter's output is whenever that changes, so that
// a voice out of step with the picture can be traced to a setting.
void logDelayChanges(FilterEngine* engine) {
    auto last = std::make_shared<long>(-1);
    auto report = [engine, last](unsigned) {
        const long tenths = std::lround(engine->latencyMs() * 10.0);
        if (tenths != *last) {
            *last = tenths;
            blog(LOG_INFO, "[Lumora] output delay %.1f ms; timestamps moved earlier to match",
                 tenths / 10.0);
        }
    };
    report(0);
    engine->addListener(report);
}

void* filterCreate(obs_data_t* settings, obs_source_t* source) {
    FilterEngine* engine = new (std::nothrow) FilterEngine();
    if (!engine) {
        return nullptr;
    }
    engine->setStore(std::make_unique<SettingsStore>(std::string()));

    uint32_t sampleRate = 48000, channels = 2;
    if (audio_t* audio = obs_get_audio()) {
        if (const audio_output_info* info = audio_output_get_info(audio)) {
            sampleRate = info->samples_per_sec;
            channels = channelsOf(info->speakers);
        }
    }

    // The neural suppressor's library may sit beside this module or on the
    // system's path; its model lives in the module's data folder.
    const char* dataPath = obs_get_module_data_path(obs_current_module());
    engine->setNoiseModelLocation(NoiseModelLocation::standard(
        Platform::folderOfBinaryContaining(reinterpret_cast<const void*>(&filterName)),
        dataPath ? dataPath : ""));
    // The analyser's rings, filters and loudness meter and the chains are
    // sized here, once: an update while audio flows must never rebuild what
    // the audio thread is using.
    engine->prepare(static_cast<double>(sampleRate));

    filterUpdate(engine, settings);
    engine->restoreFromSettings();
    registerFilterProcedures(source, engine);
    registerVoiceHotkeys(source, engine);
    watchVoiceChanges(source, engine);
    blog(LOG_INFO, "[Lumora] filter created (sr=%u ch=%u)", sampleRate, channels);
    logDelayChanges(engine);
    return engine;
}

void filterDestroy(void* data) {
    auto* engine = static_cast<FilterEngine*>(data);
    if (!engine) {
        return;
    }
    unregisterVoiceHotkeys(engine);
    closeDialogThenRelease(engine, [](FilterEngine* e) {
        delete e;
        blog(LOG_INFO, "[Lumora] filter destroyed");
    });
}

void filterRemoved(void* data, obs_source_t*) {
    unregisterVoiceHotkeys(static_cast<FilterEngine*>(data));
}

obs_audio_data* filterAudio(void* data, obs_audio_data* audio) {
    auto* engine = static_cast<FilterEngine*>(data);
    if (!engine || !audio) {
        return audio;
    }
    float* planes[8] = {};
    int count = 0;
    while (count < 8 && count < MAX_AV_PLANES && audio->data[count]) {
        planes[count] = reinterpret_cast<float*>(audio->data[count]);
        ++count;
    }
    if (count == 0 || audio->frames == 0) {
        return audio;
    }
    // Like OBS's own delaying filters: the packet says when its sound was
    // heard, so OBS keeps voice and picture together by itself.
    const int delay = engine->processAudio(planes, count, static_cast<int>(audio->frames));
    if (delay > 0 && engine->sampleRate() > 0.0) {
        const uint64_t ns = util_mul_div64(static_cast<uint64_t>(delay), 1000000000ULL,
                                           static_cast<uint64_t>(engine->sampleRate()));
        audio->timestamp = audio->timestamp > ns ? audio->timestamp - ns : 0;
    }
    return audio;
}

void filterDefaults(obs_data_t* settings) {
    obs_data_set_default_bool(settings, kSettingRecordingMode, false);
}

bool openWizardClicked(obs_properties_t*, obs_property_t*, void* data) {
    if (!data) {
        return false;
    }
    openDialogFor(static_cast<FilterEngine*>(data));
    return false;
}

obs_properties_t* filterProperties(void* data) {
    obs_properties_t* props = obs_properties_create();
    obs_properties_add_button2(props, kPropertyOpenWizard, obs_module_text(kTextOpen),
                               openWizardClicked, data);
    return props;
}

} // namespace

void registerFilter() {
    obs_source_info info = {};
    info.id = kFilterId;
    info.type = OBS_SOURCE_TYPE_FILTER;
    info.output_flags = OBS_SOURCE_AUDIO;
    info.get_name = filterName;
    info.create = filterCreate;
    info.destroy = filterDestroy;
    info.get_defaults = filterDefaults;
    info.get_properties = filterProperties;
    info.update = filterUpdate;
    info.filter_audio = filterAudio;
    info.filter_remove = filterRemoved;
    obs_register_source(&info);
    blog(LOG_INFO, "[Lumora] audio filter registered");
}

} // namespace Lumora
