#include "dsp/DeepFilterLibrary.h"

namespace Lumora {

namespace {

template <typename Fn>
Fn lookUp(const Platform::DynamicLibrary& library, const char* name) {
    return reinterpret_cast<Fn>(library.symbol(name));
}

} // namespace

bool DeepFilterLibrary::load(const std::vector<std::string>& candidates) {
    unload();
    for (const std::string& candidate : candidates) {
        if (candidate.empty() || !library_.open(candidate)) {
            continue;
        }
        const auto createFn = lookUp<CreateFn>(library_, "df_create");
        processFrame = lookUp<ProcessFrameFn>(library_, "df_process_frame");
        setAttenLim = lookUp<SetAttenLimFn>(library_, "df_set_atten_lim");
        destroy = lookUp<FreeFn>(library_, "df_free");
        frameLength = lookUp<FrameLengthFn>(library_, "df_get_frame_length");
        if (createFn && processFrame && setAttenLim && destroy) {
            create = createFn;
            return true;
        }
        unload();
    }
    return false;
}

void DeepFilterLibrary::unload() {
    create = nullptr;
    frameLength = nullptr;
    processFrame = nullptr;
    setAttenLim = nullptr;
    destroy = nullptr;
    library_.close();
}

} // namespace Lumora
