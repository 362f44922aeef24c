#pragma once

// Pink noise from white: Paul Kellet's refined filter, within 0.05 dB of
// -3 dB/octave above 10 Hz. The fans of a streamer's room sound like this.
namespace Lumora {

class PinkNoise {
public:
    // The next sample, from the next white one.
    double next(double white) {
        b0_ = 0.99886 * b0_ + white * 0.0555179;
        b1_ = 0.99332 * b1_ + white * 0.0750759;
        b2_ = 0.96900 * b2_ + white * 0.1538520;
        b3_ = 0.86650 * b3_ + white * 0.3104856;
        b4_ = 0.55000 * b4_ + white * 0.5329522;
        b5_ = -0.7616 * b5_ - white * 0.0168980;
        const double pink = b0_ + b1_ + b2_ + b3_ + b4_ + b5_ + b6_ + white * 0.5362;
        b6_ = white * 0.115926;
        return pink;
    }

private:
    double b0_ = 0, b1_ = 0, b2_ = 0, b3_ = 0, b4_ = 0, b5_ = 0, b6_ = 0;
};

} // namespace Lumora
