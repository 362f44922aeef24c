#pragma once

#include "platform/Platform.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Lumora {

// The DeepFilterNet C interface, opened at run time so that the module loads
// (and the stage passes audio through) when the library is not installed.
class DeepFilterLibrary {
public:
    using CreateFn = void* (*)(const char* modelPath, float attenLimDb, const char* logLevel);
    using FrameLengthFn = std::size_t (*)(void* state);
    using ProcessFrameFn = float (*)(void* state, float* input, float* output);
    using SetAttenLimFn = void (*)(void* state, float limDb);
    using FreeFn = void (*)(void* state);

    // Opens the first candidate that exports df_create, df_process_frame,
    // df_set_atten_lim and df_free; df_get_frame_length is optional.
    bool load(const std::vector<std::string>& candidates);
    void unload();
    bool isLoaded() const { return create != nullptr; }

    CreateFn create = nullptr;
    FrameLengthFn frameLength = nullptr;
    ProcessFrameFn processFrame = nullptr;
    SetAttenLimFn setAttenLim = nullptr;
    FreeFn destroy = nullptr;

private:
    Platform::DynamicLibrary library_;
};

} // namespace Lumora
