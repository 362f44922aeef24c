#pragma once

#include <cstdint>
#include <vector>

namespace Lumora {

// The reverb's feedback delay network: eight delay lines whose outputs are fed
// back through m − o_i, with m a quarter of their sum. That matrix (a negated
// Householder reflection) is orthogonal, so the loop neither gains nor loses
// energy by itself; the decay comes only from the line gain g < 1 and from the
// one-pole damping in each line, which makes the network stable for every room
// size and damping.
//
// Line lengths, 29 to 67 ms at any sample rate: eight values with no common
// factor at 48 kHz (1399, 1637, 1877, 2087, 2381, 2647, 2903 and 3209 samples
// are primes), spread so that the left lines (even) and the right lines (odd)
// each cover the whole range. With g = 0.5 a tail then lasts about half a
// second, with g = 0.98 some ten seconds: a small room to a cathedral.
//
// Read modulation: each line's read position drifts towards a new random target
// within ±0.2 ms of its length every 100 to 250 ms (a slope of at most 0.4 %,
// about 7 cents). That breaks up the metallic ringing of fixed lengths without
// an audible chorus on the tail. Reads are four-point Lagrange interpolations
// between the second and third points, where the interpolator's gain never
// exceeds one.
class FdnReverb {
public:
    static constexpr int kLines = 8;
    static constexpr double kLineMs[kLines] = {29.146, 34.104, 39.104, 43.479,
                                               49.604, 55.146, 60.479, 66.854};
    static constexpr double kModDepthMs = 0.2;
    static constexpr double kModMinPeriodS = 0.1;
    static constexpr double kModMaxPeriodS = 0.25;
    static constexpr int kFracBits = 28;

    void prepare(double sampleRate);
    void reset();

    // Damping corner: recomputes the damping coefficient when it changes.
    void setDampingHz(double hz);
    double dampingCoefficient() const { return damping_; }

    // Runs the network over n frames; left feeds the even lines, right the odd.
    // The outputs may be the inputs: each sample is read before it is written.
    void process(const float* left, const float* right, float* outLeft, float* outRight, int n,
                 float lineGain);

private:
    // The lines' state side by side (one array per field), so the per-sample
    // arithmetic runs over eight lanes the compiler can vectorise.
    struct Lines {
        float* ring[kLines] = {};
        uint32_t mask[kLines] = {};
        uint32_t write[kLines] = {};
        uint64_t read[kLines] = {}; // fixed point: integer part, then kFracBits of fraction
        int64_t step[kLines] = {};
        int32_t count[kLines] = {};
        int32_t length[kLines] = {};
        uint32_t random[kLines] = {};
        float last[kLines] = {}; // o_i
    };

    void renewModulation(int line);
    float nextRandom(int line); // 0..1

    double sampleRate_ = 48000.0;
    std::vector<float> storage_[kLines];
    Lines lines_;
    double dampingHz_ = -1.0;
    double damping_ = 0.0;
};

} // namespace Lumora
