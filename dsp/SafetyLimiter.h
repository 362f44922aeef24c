#pragma once

namespace Lumora {

// The filter's last stage, always on and not a user setting: nothing leaves
// the filter above kCeilingDb, whatever a voice, a knob or a hot microphone
// does upstream. (The cleaning chain's limiter is a tone control the user sets;
// this is a guarantee.)
//
// Why it is built this way:
// - No look-ahead. A look-ahead would delay every voice by its length and move
//   the filter's timeline; the voices are loudness-matched, so this stage acts
//   on rare peaks only, and a peak it meets unannounced is caught on its first
//   sample by an instant attack. Nothing can pass above the ceiling.
// - Sample by sample, one gain for all channels: the stereo image stays, and
//   the gain never jumps at packet edges (a per-packet gain would click).
// - Release of kReleaseMs, exponential back towards 1: slow enough not to
//   pump on a voice's pitch period, quick enough not to duck the next words.
// - Transparent below the ceiling: while the gain is 1 and nothing reaches the
//   ceiling the samples are not touched at all (bit for bit).
class SafetyLimiter {
public:
    static constexpr float kCeilingDb = -1.0f;
    static constexpr float kReleaseMs = 60.0f;

    // Computes the release for the rate; allocates nothing.
    void prepare(double sampleRate);
    void reset();
    // In place; `planes` holds `channels` non-null planes of `frames` samples.
    void process(float* const* planes, int channels, int frames);

    float gainReductionDb() const;

private:
    float ceiling_ = 0.891f;
    float release_ = 0.0f;
    float gain_ = 1.0f;
};

} // namespace Lumora
