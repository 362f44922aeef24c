#pragma once

#include <atomic>

namespace Lumora {

// Hands whole parameter records from one writer thread (the interface) to one
// reader thread (the audio) with no lock: neither side ever waits, and the
// reader never copies or allocates.
//
// Three slots. The writer fills the slot it owns, then swaps it for the spare
// one and marks the spare fresh. The reader, at the start of a packet, swaps
// the slot it owns for the spare when that is fresh. So the writer never writes
// a slot the reader may be reading: the reader keeps one whole record for as
// long as it works with it, however many the writer hands over meanwhile, and
// takes the newest at its next packet.
//
// Two slots and a flipped index are not enough: the writer cannot tell when
// the reader has left the slot it was reading, and a second change within one
// packet would overwrite the record under the reader's feet.
template <typename T>
class ParameterHandOver {
public:
    // Writer thread.
    void publish(const T& record) {
        slots_[back_] = record;
        latest_ = back_;
        back_ = spare_.exchange(back_ | kFresh, std::memory_order_acq_rel) & kIndex;
    }
    // Writer thread: the record it handed over last. Only the writer ever
    // writes a slot, so reading one here never races with the reader.
    const T& latest() const { return slots_[latest_]; }

    // Reader thread: the newest record handed over; it stays as it is until the
    // reader's next call.
    const T& acquire() {
        if (spare_.load(std::memory_order_relaxed) & kFresh) {
            front_ = spare_.exchange(front_, std::memory_order_acq_rel) & kIndex;
        }
        return slots_[front_];
    }

private:
    static constexpr int kIndex = 3;
    static constexpr int kFresh = 4;

    T slots_[3] = {};
    int back_ = 0;   // the writer's
    int latest_ = 0; // the writer's: the slot it published last
    int front_ = 2;  // the reader's
    std::atomic<int> spare_{1};
};

} // namespace Lumora
