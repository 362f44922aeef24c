#include "module/WebSocketVendor.h"

#include "engine/FilterEngine.h"
#include "engine/VoiceRequests.h"
#include "module/FilterKeys.h"
#include "settings/JsonText.h"
#include "settings/SettingsStore.h"

#include <obs-module.h>

#include <atomic>
#include <cstring>
#include <functional>
#include <string>

namespace Lumora {

namespace {

// obs-websocket's vendor interface: procedures on its own handler, fetched
// through OBS's global one. A vendor is an opaque pointer.
struct RequestCallback {
    void (*callback)(obs_data_t* request, obs_data_t* response, void* priv);
    void* priv;
};

std::atomic<proc_handler_t*> webSocket{nullptr};
std::atomic<void*> vendor{nullptr};

constexpr const char* kRequests[] = {"GetVoices", "GetState", "SetVoice", "ApplyEffectPreset",
                                     "PressKey"};

// The Tindra filter named `filterName` (else the first) on the source named
// `sourceName`. Runs on the interface thread; the engine stays valid there
// for the rest of the request, as filters are destroyed on that thread too.
VoiceRequests::Filter findFilter(const std::string& sourceName, const std::string& filterName,
                                 std::string& error) {
    VoiceRequests::Filter found;
    obs_source_t* source = obs_get_source_by_name(sourceName.c_str());
    if (!source) {
        error = "no source named \"" + sourceName + "\"";
        return found;
    }
    struct Search {
        const std::string* name;
        obs_source_t* hit;
    } search{&filterName, nullptr};
    obs_source_enum_filters(
        source,
        [](obs_source_t*, obs_source_t* filter, void* param) {
            auto* s = static_cast<Search*>(param);
            const char* id = obs_source_get_unversioned_id(filter);
            if (s->hit || !id || std::strcmp(id, kFilterId) != 0) {
                return;
            }
            if (s->name->empty() || *s->name == obs_source_get_name(filter)) {
                s->hit = filter;
            }
        },
        &search);
    if (search.hit) {
        found.engine = static_cast<FilterEngine*>(obs_obj_get_data(search.hit));
        found.sourceName = sourceName;
        found.filterName = obs_source_get_name(search.hit);
    } else {
        error = filterName.empty()
                    ? "no Tindra filter on \"" + sourceName + "\""
                    : "no Tindra filter named \"" + filterName + "\" on \"" + sourceName + "\"";
    }
    obs_source_release(source);
    return found;
}

void answer(obs_data_t* response, const JsonValue& value) {
    obs_data_t* data = obs_data_create_from_json(renderJson(value).c_str());
    if (data) {
        obs_data_apply(response, data);
        obs_data_release(data);
    }
}

struct Job {
    std::string request;
    JsonValue data;
    JsonValue result;
};

// On obs-websocket's own thread. The engine's writers live on the interface
// thread, so the request runs there while this thread waits (as the filter's
// procedures do); an OBS without an interface thread answers with an error.
void onRequest(obs_data_t* request, obs_data_t* response, void* priv) {
    Job job{static_cast<const char*>(priv), JsonValue(),
            VoiceRequests::error("no interface thread to run on")};
    const char* text = request ? obs_data_get_json(request) : nullptr;
    const size_t length = text ? std::strlen(text) : 0;
    if (length > VoiceRequests::kMaxRequestBytes) {
        answer(response, VoiceRequests::error("request data too large"));
        return;
    }
    if (length > 0) {
        const JsonParseResult parsed = parseJson(text);
        if (!parsed.ok) {
            answer(response, VoiceRequests::error("request data is not JSON"));
            return;
        }
        job.data = parsed.value;
    }
    obs_queue_task(
        OBS_TASK_UI,
        [](void* param) {
            auto* j = static_cast<Job*>(param);
            SettingsStore store{std::string()};
            VoiceRequests requests(findFilter, store);
            j->result = requests.handle(j->request, j->data);
        },
        &job, true);
    answer(response, job.result);
}

bool callVendorProc(const char* name, calldata_t* cd) {
    proc_handler_t* ph = webSocket.load();
    void* v = vendor.load();
    if (!ph || !v) {
        return false;
    }
    calldata_set_ptr(cd, "vendor", v);
    proc_handler_call(ph, name, cd);
    return calldata_bool(cd, "success");
}

void emitVoiceChanged(obs_source_t* filter, FilterEngine* engine) {
    obs_source_t* parent = obs_filter_get_parent(filter);
    if (!parent || !vendor.load()) {
        return;
    }
    const VoiceRequests::Filter named{engine, obs_source_get_name(parent),
                                      obs_source_get_name(filter)};
    obs_data_t* data =
        obs_data_create_from_json(renderJson(VoiceRequests::voiceChanged(named)).c_str());
    if (!data) {
        return;
    }
    calldata_t cd = {};
    calldata_set_string(&cd, "type", "VoiceChanged");
    calldata_set_ptr(&cd, "data", data);
    callVendorProc("vendor_event_emit", &cd);
    calldata_free(&cd);
    obs_data_release(data);
}

} // namespace

void registerWebSocketVendor() {
    calldata_t cd = {};
    proc_handler_t* global = obs_get_proc_handler();
    if (!global || !proc_handler_call(global, "obs_websocket_api_get_ph", &cd)) {
        calldata_free(&cd);
        blog(LOG_INFO, "[Lumora] obs-websocket not loaded: no remote control");
        return;
    }
    auto* ph = static_cast<proc_handler_t*>(calldata_ptr(&cd, "ph"));
    calldata_free(&cd);
    if (!ph) {
        return;
    }
    webSocket.store(ph);
    calldata_t reg = {};
    calldata_set_string(&reg, "name", kVendorName);
    proc_handler_call(ph, "vendor_register", &reg);
    vendor.store(calldata_ptr(&reg, "vendor"));
    calldata_free(&reg);
    if (!vendor.load()) {
        blog(LOG_WARNING, "[Lumora] obs-websocket refused the vendor \"%s\"", kVendorName);
        return;
    }
    int registered = 0;
    for (const char* request : kRequests) {
        // obs-websocket copies the callback record during the call.
        RequestCallback callback{onRequest, const_cast<char*>(request)};
        calldata_t r = {};
        calldata_set_string(&r, "type", request);
        calldata_set_ptr(&r, "callback", &callback);
        registered += callVendorProc("vendor_request_register", &r) ? 1 : 0;
        calldata_free(&r);
    }
    blog(LOG_INFO, "[Lumora] obs-websocket vendor \"%s\" registered with %d requests", kVendorName,
         registered);
}

void watchVoiceChanges(obs_source* filter, FilterEngine* engine) {
    if (!filter || !engine) {
        return;
    }
    // Only a change of voice or of key is news; a knob turned on the FX page
    // is not, and must not flood the clients.
    struct Last {
        std::string voice;
        int slot = kNoSlot;
    };
    auto last = std::make_shared<Last>();
    last->voice = engine->soundFxPresetName();
    last->slot = engine->keys().activeSlot();
    engine->addListener([filter, engine, last](unsigned changes) {
        if (!(changes & (FilterEngine::kSoundFxChanged | FilterEngine::kKeysChanged))) {
            return;
        }
        const std::string& voice = engine->soundFxPresetName();
        const int slot = engine->keys().activeSlot();
        if (voice == last->voice && slot == last->slot) {
            return;
        }
        last->voice = voice;
        last->slot = slot;
        emitVoiceChanged(filter, engine);
    });
}

} // namespace Lumora
