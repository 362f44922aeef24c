#pragma once

namespace Lumora {

// The project's one peak limiter: the cleaning chain's limiter (the user's
// ceiling and release) and the filter's safety limiter behind everything.
//
// Why it is built this way:
// - No look-ahead. A look-ahead would delay every voice by its length and move
//   the filter's timeline; a peak is met unannounced and caught on its first
//   sample by an instant attack, so nothing passes above the ceiling.
// - Sample by sample, one gain for all channels: the stereo image stays, and
//   the gain never jumps at packet edges (a per-packet gain clicked, and its
//   release, computed per packet with a per-sample time constant, took
//   hundreds of times longer than set).
// - Release exponential back towards 1, with the set time constant.
// - Transparent below the ceiling: while the gain is 1 and nothing reaches the
//   ceiling the samples are not touched at all (bit for bit).
class PeakLimiter {
public:
    // Allocates nothing; the settings stay.
    void prepare(double sampleRate);
    void reset();
    // Cheap when unchanged; may be called every packet from the audio thread.
    void setCeilingDb(float ceilingDb);
    void setReleaseMs(float releaseMs);

    // In place; `planes` holds `channels` non-null planes of `frames` samples.
    void process(float* const* planes, int channels, int frames);

    float gain() const { return gain_; }
    float gainReductionDb() const;

private:
    double sampleRate_ = 48000.0;
    float ceilingDb_ = 0.0f;       // as last asked for
    float ceiling_ = 1.0f - 1e-6f; // its gain, a hair under (0 dB until asked)
    float releaseMs_ = 50.0f;
    float release_ = 0.0f;
    float gain_ = 1.0f;
};

} // namespace Lumora
