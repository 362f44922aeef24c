// Module entry points: what OBS calls when it loads and unloads Lumora.
#include "LumoraVersion.h"
#include "ui/Localisation.h"

#include <obs-module.h>

OBS_DECLARE_MODULE()
OBS_MODULE_USE_DEFAULT_LOCALE("lumora", "en-US")

namespace Lumora {
void registerFilter();
void registerWebSocketVendor();
} // namespace Lumora

extern "C" {

MODULE_EXPORT const char* obs_module_name(void) {
    return "Tindra";
}

MODULE_EXPORT const char* obs_module_description(void) {
    return "Voice quality diagnosis for streamers";
}

bool obs_module_load(void) {
    // The dialog's pictures live in the plug-in's data folder.
    if (const char* data = obs_get_module_data_path(obs_current_module())) {
        Lumora::setPluginDataFolder(QString::fromUtf8(data));
    }
    Lumora::registerFilter();
    blog(LOG_INFO, "[Lumora] Plugin loaded (v%s)", Lumora::kVersion);
    return true;
}

// obs-websocket takes vendors once every module has loaded.
void obs_module_post_load(void) {
    Lumora::registerWebSocketVendor();
}

void obs_module_unload(void) {
    Lumora::releaseTranslator();
    blog(LOG_INFO, "[Lumora] Plugin unloaded");
}
}
