#pragma once

#include <algorithm>

namespace Lumora {

// The on and off of an effect, or of a whole chain, as a crossfade between the
// sound without it (dry) and with it (wet), over kFadeMs, instead of a step
// from one sample to the next. What is switched keeps running while it fades
// out.
class SwitchFade {
public:
    static constexpr double kFadeMs = 25.0;

    void prepare(double sampleRate);
    // Off at once: the next switch-on fades in from the dry sound.
    void reset() { level_ = 0.0f; }
    // Straight to on or off, without a fade (nothing was playing before).
    void settle(bool on) { level_ = on ? 1.0f : 0.0f; }

    // 0: only dry (off, or not yet faded in), 1: only wet.
    float level() const { return level_; }
    bool silent() const { return level_ == 0.0f; }
    bool full() const { return level_ == 1.0f; }

    // wet := dry + (wet − dry)·level, with level moving towards 1 when `on`,
    // towards 0 otherwise, one step per sample.
    void mix(const float* const* dry, float* const* wet, int channels, int frames, bool on);
    // One sample's step of the level towards 1 (`on`) or 0; returns the new
    // level. For a fade applied to something other than a dry/wet pair.
    float advance(bool on) {
        level_ = std::clamp(level_ + (on ? step_ : -step_), 0.0f, 1.0f);
        return level_;
    }

private:
    float step_ = 1.0f / 1200.0f;
    float level_ = 0.0f;
};

} // namespace Lumora
