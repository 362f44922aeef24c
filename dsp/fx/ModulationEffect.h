#pragma once

#include "dsp/SoundFxPreset.h"
#include "dsp/fx/Chorus.h"
#include "dsp/fx/Flanger.h"
#include "dsp/fx/Tremolo.h"

namespace Lumora {

// The modulation group: chorus, flanger or tremolo, chosen by `type`; any other
// type leaves the audio as it is. Each kind keeps its own state, so switching
// type and back does not restart the other's sweep.
class ModulationEffect {
public:
    void prepare(double sampleRate);
    void reset();
    void process(float* const* channels, int channelCount, int frames, const ModParams& p);

    const Tremolo& tremolo() const { return tremolo_; }

private:
    Chorus chorus_[2];
    Flanger flanger_[2];
    Tremolo tremolo_;
};

} // namespace Lumora
