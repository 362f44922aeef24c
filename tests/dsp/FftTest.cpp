// The transforms against a direct DFT. Their round trip is the spectral
// denoiser's exact reconstruction at amount zero (SpectralDenoiserTest).
#include "dsp/Fft.h"
#include "DspTestSignals.h"
#include "dsp/RealFft.h"

#include <gtest/gtest.h>

#include <complex>

using namespace Lumora;

namespace {

std::vector<std::complex<float>> randomSignal(int n) {
    const auto re = TestSignals::noise(n, 1.0f, 7);
    const auto im = TestSignals::noise(n, 1.0f, 11);
    std::vector<std::complex<float>> x(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        x[i] = {re[i], im[i]};
    }
    return x;
}

std::vector<std::complex<double>> directDft(const std::vector<std::complex<float>>& x, int sign) {
    const int n = static_cast<int>(x.size());
    std::vector<std::complex<double>> out(x.size());
    for (int k = 0; k < n; ++k) {
        std::complex<double> sum = 0.0;
        for (int i = 0; i < n; ++i) {
            const double w = sign * 2.0 * TestSignals::kPi * (static_cast<long>(k) * i % n) / n;
            sum += std::complex<double>(x[i]) * std::polar(1.0, w);
        }
        out[k] = sum;
    }
    return out;
}

} // namespace

TEST(Fft, MatchesTheDirectTransformBothWays) {
    for (int n : {8, 64, 1024}) {
        Fft fft(n);
        const auto x = randomSignal(n);
        for (int sign : {-1, +1}) {
            const auto expected = directDft(x, sign);
            auto y = x;
            sign < 0 ? fft.forward(y.data()) : fft.inverse(y.data());
            double worst = 0.0;
            for (int k = 0; k < n; ++k) {
                worst = std::max(worst, std::abs(std::complex<double>(y[k]) - expected[k]));
            }
            // Values of size up to ~sqrt(n); single precision.
            EXPECT_LT(worst, 2e-5 * n) << "n " << n << " sign " << sign;
        }
    }
}

TEST(RealFft, MatchesTheComplexTransformOfARealSignal) {
    const int n = 1024;
    const auto x = TestSignals::noise(n, 1.0f, 3);
    std::vector<std::complex<float>> full(x.begin(), x.end());
    Fft fft(n);
    fft.forward(full.data());
    RealFft real(n);
    std::vector<float> re(n / 2 + 1), im(n / 2 + 1);
    real.forward(x.data(), re.data(), im.data());
    for (int k = 0; k <= n / 2; ++k) {
        ASSERT_NEAR(re[k], full[k].real(), 2e-4f) << k;
        ASSERT_NEAR(im[k], full[k].imag(), 2e-4f) << k;
    }
}
