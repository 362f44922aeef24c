#pragma once

#include <algorithm>

namespace Lumora {

// The meters' level and peak-hold rule. A level is clamped to -60..0 dB; the
// peak jumps to any higher level at once with a hold count of 1500, every later
// update that is not higher takes 100 from it (so the peak holds for 15
// updates), and at 0 the peak falls to the current level.
struct PeakHold {
    static constexpr float kFloorDb = -60.0f;
    static constexpr float kCeilingDb = 0.0f;
    static constexpr int kHoldCount = 1500;
    static constexpr int kHoldStep = 100;

    float levelDb = kFloorDb;
    float peakDb = kFloorDb;
    int hold = 0;

    void update(float db) {
        // NaN counts as silence.
        levelDb = db == db ? std::clamp(db, kFloorDb, kCeilingDb) : kFloorDb;
        if (levelDb > peakDb) {
            peakDb = levelDb;
            hold = kHoldCount;
            return;
        }
        hold = std::max(0, hold - kHoldStep);
        if (hold == 0) {
            peakDb = levelDb;
        }
    }

    void reset() { *this = PeakHold{}; }

    // 0..1 along the meter for a level in dB.
    static float fraction(float db) {
        return (std::clamp(db, kFloorDb, kCeilingDb) - kFloorDb) / -kFloorDb;
    }
};

} // namespace Lumora
