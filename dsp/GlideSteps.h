#pragma once

#include <algorithm>

namespace Lumora {

// A filter whose coefficients jump a whole packet's move at once knocks, even
// with its state kept (a high cut dragged up by 2.5 % a packet of 1024 frames
// was heard on a pure tone). A new setting therefore glides across the packet
// in steps of about 64 frames, each step with coefficients designed that far
// along: `step(fraction, offset, count)` is called for each, the last with
// fraction 1. A setting that does not move takes one step.
template <typename Step>
void inGlideSteps(int frames, bool moving, Step&& step) {
    constexpr int kStepFrames = 64;
    constexpr int kMaxSteps = 32;
    const int steps =
        moving ? std::clamp((frames + kStepFrames - 1) / kStepFrames, 1, kMaxSteps) : 1;
    int done = 0;
    for (int s = 1; s <= steps; ++s) {
        const int end = static_cast<int>(static_cast<long long>(frames) * s / steps);
        step(static_cast<float>(s) / static_cast<float>(steps), done, end - done);
        done = end;
    }
}

} // namespace Lumora
