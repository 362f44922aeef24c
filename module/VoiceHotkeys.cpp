#include "module/VoiceHotkeys.h"

#include "engine/FilterEngine.h"
#include "module/FilterKeys.h"

#include <obs-module.h>

#include <QCoreApplication>
#include <QTimer>

#include <array>
#include <map>
#include <memory>
#include <mutex>

namespace Lumora {

namespace {

constexpr int kEffectsToggle = kKeySlotCount; // the fifth hotkey
// How long attach() looks for the filter's source before giving up.
constexpr int kAttachTries = 100;
constexpr int kAttachRetryMs = 50;

struct Hotkey {
    obs_weak_source_t* filter = nullptr;
    int action = 0; // a key slot, or kEffectsToggle
    obs_hotkey_id id = OBS_INVALID_HOTKEY_ID;
};

struct FilterHotkeys {
    std::array<Hotkey, kKeySlotCount + 1> keys;
    bool registered = false;
};

// Every filter's hotkeys, by engine. Lock order: this, then OBS's hotkeys.
std::mutex registryMutex;
std::map<FilterEngine*, std::unique_ptr<FilterHotkeys>>& registry() {
    static std::map<FilterEngine*, std::unique_ptr<FilterHotkeys>> r;
    return r;
}

struct Press {
    obs_weak_source_t* filter;
    int action;
    bool down;
};

// On the interface thread, where the engine's writers run. The filter is
// looked up afresh: it may have gone since the key was pressed.
void pressOnInterfaceThread(void* param) {
    std::unique_ptr<Press> press(static_cast<Press*>(param));
    obs_source_t* filter = obs_weak_source_get_source(press->filter);
    obs_weak_source_release(press->filter);
    if (!filter) {
        return;
    }
    if (auto* engine = static_cast<FilterEngine*>(obs_obj_get_data(filter))) {
        if (press->action == kEffectsToggle) {
            if (press->down) {
                engine->setSoundFxActive(!engine->soundFxActive());
            }
        } else {
            engine->pressKey(press->action, press->down);
        }
    }
    obs_source_release(filter);
}

// On OBS's hotkey thread, which holds the hotkeys' lock: the work is queued,
// never waited for (the interface thread may be unregistering hotkeys).
void hotkeyFired(void* data, obs_hotkey_id, obs_hotkey_t*, bool pressed) {
    const auto* key = static_cast<const Hotkey*>(data);
    obs_source_t* filter = obs_weak_source_get_source(key->filter);
    if (!filter) {
        return;
    }
    auto* press = new Press{obs_source_get_weak_source(filter), key->action, pressed};
    obs_source_release(filter);
    obs_queue_task(OBS_TASK_UI, pressOnInterfaceThread, press, false);
}

// OBS keeps no hotkeys on a filter (filters are private sources), so they
// live on the source the filter is on: listed under it in Settings > Hotkeys
// and saved with it in the scene collection, from where registering them again
// finds their bindings. A new filter is put on its source right after it is
// made, so this runs from the interface thread's event queue (OBS would run a
// task queued from that thread at once, before the filter has its source) and
// looks again a little later while the filter has no source yet.
void attach(obs_weak_source_t* weak, int triesLeft) {
    obs_source_t* filter = obs_weak_source_get_source(weak);
    obs_source_t* parent = filter ? obs_filter_get_parent(filter) : nullptr;
    if (filter && !parent && triesLeft > 0) {
        obs_source_release(filter);
        QTimer::singleShot(kAttachRetryMs, qApp,
                           [weak, triesLeft] { attach(weak, triesLeft - 1); });
        return;
    }
    obs_weak_source_release(weak);
    if (!filter) {
        return;
    }
    auto* engine = static_cast<FilterEngine*>(obs_obj_get_data(filter));
    if (parent && engine) {
        static constexpr const char* kNames[kKeySlotCount + 1] = {
            kHotkeyUp, kHotkeyDown, kHotkeyLeft, kHotkeyRight, kHotkeyEffects};
        static constexpr const char* kTexts[kKeySlotCount + 1] = {
            kTextHotkeyUp, kTextHotkeyDown, kTextHotkeyLeft, kTextHotkeyRight, kTextHotkeyEffects};
        std::lock_guard<std::mutex> lock(registryMutex);
        auto it = registry().find(engine);
        if (it != registry().end() && !it->second->registered) {
            for (int i = 0; i <= kKeySlotCount; ++i) {
                Hotkey& key = it->second->keys[static_cast<size_t>(i)];
                key.id = obs_hotkey_register_source(parent, kNames[i], obs_module_text(kTexts[i]),
                                                    hotkeyFired, &key);
            }
            it->second->registered = true;
            blog(LOG_INFO, "[Lumora] hotkeys of filter \"%s\" on source \"%s\" registered",
                 obs_source_get_name(filter), obs_source_get_name(parent));
        }
    }
    obs_source_release(filter);
}

} // namespace

void registerVoiceHotkeys(obs_source* filter, FilterEngine* engine) {
    // The hotkeys find their source from the interface's event queue; a host
    // without one (a headless libobs) has no hotkeys to offer either.
    if (!filter || !engine || !QCoreApplication::instance()) {
        return;
    }
    auto hotkeys = std::make_unique<FilterHotkeys>();
    for (int i = 0; i <= kKeySlotCount; ++i) {
        Hotkey& key = hotkeys->keys[static_cast<size_t>(i)];
        key.filter = obs_source_get_weak_source(filter);
        key.action = i;
    }
    {
        std::lock_guard<std::mutex> lock(registryMutex);
        registry()[engine] = std::move(hotkeys);
    }
    obs_weak_source_t* weak = obs_source_get_weak_source(filter);
    QMetaObject::invokeMethod(
        qApp, [weak] { attach(weak, kAttachTries); }, Qt::QueuedConnection);
}

void unregisterVoiceHotkeys(FilterEngine* engine) {
    std::lock_guard<std::mutex> lock(registryMutex);
    auto it = registry().find(engine);
    if (it == registry().end()) {
        return;
    }
    // Unregistering takes the hotkeys' lock: once it returns no callback is
    // running with this data, and it can go.
    for (Hotkey& key : it->second->keys) {
        if (key.id != OBS_INVALID_HOTKEY_ID) {
            obs_hotkey_unregister(key.id);
        }
        obs_weak_source_release(key.filter);
    }
    registry().erase(it);
}

} // namespace Lumora
