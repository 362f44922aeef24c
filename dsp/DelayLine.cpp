#include "dsp/DelayLine.h"

#include <algorithm>

namespace Lumora {

void DelayLine::prepare(int capacity) {
    line_.assign(static_cast<size_t>(std::max(capacity, 0)) + 1, 0.0f);
    write_ = 0;
}

void DelayLine::reset() {
    std::fill(line_.begin(), line_.end(), 0.0f);
    write_ = 0;
}

void DelayLine::process(const float* in, float* out, int frames, int delay) {
    if (line_.empty()) {
        return;
    }
    const int size = static_cast<int>(line_.size());
    delay = std::clamp(delay, 0, size - 1);
    float* line = line_.data();
    int write = write_;
    for (int i = 0; i < frames; ++i) {
        line[write] = in[i];
        const int read = write >= delay ? write - delay : write - delay + size;
        out[i] = line[read];
        write = write + 1 == size ? 0 : write + 1;
    }
    write_ = write;
}

void DelayLine::push(const float* in, int frames) {
    if (line_.empty()) {
        return;
    }
    const int size = static_cast<int>(line_.size());
    int write = write_;
    for (int i = 0; i < frames; ++i) {
        line_[static_cast<size_t>(write)] = in[i];
        write = write + 1 == size ? 0 : write + 1;
    }
    write_ = write;
}

} // namespace Lumora
