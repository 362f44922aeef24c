#pragma once

#include <vector>

namespace Lumora {

// One channel's plain delay by a whole number of frames: what goes in comes
// out `delay` frames later. The delay may differ from call to call (up to the
// capacity given to prepare); the line then reads from another point of the
// same past, so nothing is lost or repeated beyond the change itself.
class DelayLine {
public:
    // The longest delay it will be asked for. Allocates; the only call that does.
    void prepare(int capacity);
    // Silence in the line.
    void reset();
    int capacity() const { return static_cast<int>(line_.size()) - 1; }

    // out[i] := the input of `delay` frames ago (clamped to 0..capacity); in
    // may equal out. Does nothing before prepare().
    void process(const float* in, float* out, int frames, int delay);
    // Takes the input in without giving anything out: the line stays current
    // while its output is not wanted.
    void push(const float* in, int frames);

private:
    std::vector<float> line_;
    int write_ = 0;
};

} // namespace Lumora
