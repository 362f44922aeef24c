// The 1024-point complex transform: our own radix-2 against the packaged
// libraries it was chosen over. Built only when both libraries are installed
// (libkissfft-dev, libfftw3-dev); they are not dependencies of the product.
#include "dsp/Fft.h"
#include "dsp/RealFft.h"

#include <benchmark/benchmark.h>
#include <fftw3.h>
#include <kissfft/kiss_fft.h>

#include <cmath>
#include <complex>
#include <vector>

namespace {

constexpr int kSize = 1024;

std::vector<std::complex<float>> testSignal() {
    std::vector<std::complex<float>> x(kSize);
    for (int i = 0; i < kSize; ++i) {
        x[i] = {std::sin(0.01f * i) + 0.3f * std::cos(0.37f * i), 0.1f * std::sin(0.5f * i)};
    }
    return x;
}

void BM_FftOwnSplit(benchmark::State& state) {
    Lumora::Fft fft(kSize);
    const auto x = testSignal();
    std::vector<float> re(kSize), im(kSize);
    for (int i = 0; i < kSize; ++i) {
        re[i] = x[i].real();
        im[i] = x[i].imag();
    }
    for (auto _ : state) {
        fft.forward(re.data(), im.data());
        fft.inverse(re.data(), im.data());
        for (int i = 0; i < kSize; ++i) { // keep the values bounded
            re[i] *= 1.0f / kSize;
            im[i] *= 1.0f / kSize;
        }
        benchmark::DoNotOptimize(re.data());
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_FftOwnSplit);

void BM_FftOwnInterleaved(benchmark::State& state) {
    Lumora::Fft fft(kSize);
    auto x = testSignal();
    for (auto _ : state) {
        fft.forward(x.data());
        fft.inverse(x.data());
        for (auto& v : x) {
            v *= 1.0f / kSize;
        }
        benchmark::DoNotOptimize(x.data());
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_FftOwnInterleaved);

void BM_FftKiss(benchmark::State& state) {
    kiss_fft_cfg fwd = kiss_fft_alloc(kSize, 0, nullptr, nullptr);
    kiss_fft_cfg inv = kiss_fft_alloc(kSize, 1, nullptr, nullptr);
    const auto x = testSignal();
    std::vector<kiss_fft_cpx> a(kSize), b(kSize);
    for (int i = 0; i < kSize; ++i) {
        a[i].r = x[i].real();
        a[i].i = x[i].imag();
    }
    for (auto _ : state) {
        kiss_fft(fwd, a.data(), b.data());
        kiss_fft(inv, b.data(), a.data());
        for (auto& v : a) {
            v.r *= 1.0f / kSize;
            v.i *= 1.0f / kSize;
        }
        benchmark::DoNotOptimize(a.data());
    }
    state.SetItemsProcessed(state.iterations() * 2);
    kiss_fft_free(fwd);
    kiss_fft_free(inv);
}
BENCHMARK(BM_FftKiss);

void BM_FftFftw(benchmark::State& state) {
    fftwf_complex* a = fftwf_alloc_complex(kSize);
    fftwf_complex* b = fftwf_alloc_complex(kSize);
    // FFTW_MEASURE would pick a faster plan after timing trials at start-up; the
    // plan a filter could afford to make while being created is the estimated one.
    const unsigned flags = state.range(0) ? FFTW_MEASURE : FFTW_ESTIMATE;
    fftwf_plan fwd = fftwf_plan_dft_1d(kSize, a, b, FFTW_FORWARD, flags);
    fftwf_plan inv = fftwf_plan_dft_1d(kSize, b, a, FFTW_BACKWARD, flags);
    const auto x = testSignal();
    for (int i = 0; i < kSize; ++i) {
        a[i][0] = x[i].real();
        a[i][1] = x[i].imag();
    }
    for (auto _ : state) {
        fftwf_execute(fwd);
        fftwf_execute(inv);
        for (int i = 0; i < kSize; ++i) {
            a[i][0] *= 1.0f / kSize;
            a[i][1] *= 1.0f / kSize;
        }
        benchmark::DoNotOptimize(a);
    }
    state.SetItemsProcessed(state.iterations() * 2);
    fftwf_destroy_plan(fwd);
    fftwf_destroy_plan(inv);
    fftwf_free(a);
    fftwf_free(b);
}
BENCHMARK(BM_FftFftw)->Arg(0)->Arg(1);

// The spectral stage's own use: a real frame of 1024 samples, there and back.
void BM_RealOwn(benchmark::State& state) {
    Lumora::RealFft fft(kSize);
    std::vector<float> x(kSize), re(kSize / 2 + 1), im(kSize / 2 + 1);
    for (int i = 0; i < kSize; ++i) {
        x[i] = std::sin(0.01f * i) + 0.3f * std::cos(0.37f * i);
    }
    for (auto _ : state) {
        fft.forward(x.data(), re.data(), im.data());
        fft.inverse(re.data(), im.data(), x.data());
        for (float& v : x) {
            v *= 1.0f / kSize;
        }
        benchmark::DoNotOptimize(x.data());
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_RealOwn);

void BM_RealFftw(benchmark::State& state) {
    float* x = fftwf_alloc_real(kSize);
    fftwf_complex* spectrum = fftwf_alloc_complex(kSize / 2 + 1);
    const unsigned flags = state.range(0) ? FFTW_MEASURE : FFTW_ESTIMATE;
    fftwf_plan fwd = fftwf_plan_dft_r2c_1d(kSize, x, spectrum, flags);
    fftwf_plan inv = fftwf_plan_dft_c2r_1d(kSize, spectrum, x, flags);
    for (int i = 0; i < kSize; ++i) {
        x[i] = std::sin(0.01f * i) + 0.3f * std::cos(0.37f * i);
    }
    for (auto _ : state) {
        fftwf_execute(fwd);
        fftwf_execute(inv);
        for (int i = 0; i < kSize; ++i) {
            x[i] *= 1.0f / kSize;
        }
        benchmark::DoNotOptimize(x);
    }
    state.SetItemsProcessed(state.iterations() * 2);
    fftwf_destroy_plan(fwd);
    fftwf_destroy_plan(inv);
    fftwf_free(x);
    fftwf_free(spectrum);
}
BENCHMARK(BM_RealFftw)->Arg(0)->Arg(1);

} // namespace
