// lumora-quality: makes noisy speech for listening and measuring, and scores a
// processed file against the clean speech (SI-SDR after finding the delay).
#include "PinkNoise.h"
#include "WavFile.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

const char* kUsage =
    "usage:\n"
    "  lumora-quality speech OUT.wav FILE...        join recordings (mono, 48 kHz) with gaps\n"
    "  lumora-quality mix --speech S.wav --noise pink|brown|hum --snr DB\n"
    "                 --noisy OUT.wav --noise-take OUT.wav [--seed N] [--take-seconds S]\n"
    "  lumora-quality score --clean C.wav --test T.wav [--max-delay N]\n"
    "  lumora-quality gain IN.wav OUT.wav DB               scale a file by DB decibels\n";

int fail(const std::string& message, int code = 1) {
    std::fprintf(stderr, "lumora-quality: %s\n", message.c_str());
    return code;
}

// Stationary noises a streamer's room really has: fans (pink), rumble (brown) and
// mains hum with its harmonics.
std::vector<float> makeNoise(const std::string& kind, size_t n, int rate, unsigned seed) {
    std::mt19937 rng(seed);
    std::normal_distribution<double> white(0.0, 1.0);
    std::vector<float> out(n);
    if (kind == "pink") {
        Lumora::PinkNoise pink;
        for (float& v : out) {
            v = static_cast<float>(pink.next(white(rng)));
        }
    } else if (kind == "brown") {
        double y = 0;
        for (size_t i = 0; i < n; ++i) {
            y = 0.998 * y + 0.02 * white(rng); // leaky integrator: -6 dB/octave
            out[i] = static_cast<float>(y);
        }
    } else if (kind == "hum") {
        const double amps[] = {1.0, 0.5, 0.35, 0.2, 0.12, 0.08};
        std::uniform_real_distribution<double> phase(0.0, 2.0 * M_PI);
        double phases[6];
        for (double& p : phases) {
            p = phase(rng);
        }
        for (size_t i = 0; i < n; ++i) {
            double v = 0;
            for (int h = 0; h < 6; ++h) {
                v += amps[h] * std::sin(2.0 * M_PI * 50.0 * (h + 1) * i / rate + phases[h]);
            }
            out[i] = static_cast<float>(v + 0.02 * white(rng));
        }
    } else {
        out.clear();
    }
    return out;
}

double power(const std::vector<float>& x) {
    double s = 0;
    for (float v : x) {
        s += static_cast<double>(v) * static_cast<double>(v);
    }
    return x.empty() ? 0.0 : s / static_cast<double>(x.size());
}

std::vector<float> mono(const Lumora::WavData& w) {
    std::vector<float> m(static_cast<size_t>(w.frames()), 0.0f);
    for (const auto& p : w.planes) {
        for (size_t i = 0; i < m.size(); ++i) {
            m[i] += p[i] / static_cast<float>(w.channels());
        }
    }
    return m;
}

std::string option(const std::vector<std::string>& args, const std::string& name,
                   const std::string& fallback = "") {
    for (size_t i = 0; i + 1 < args.size(); ++i) {
        if (args[i] == name) {
            return args[i + 1];
        }
    }
    return fallback;
}

int joinSpeech(const std::vector<std::string>& args) {
    if (args.size() < 2) {
        return fail("speech needs OUT.wav and at least one recording", 2);
    }
    Lumora::WavData out;
    out.sampleRate = 48000;
    out.planes.resize(1);
    std::string error;
    for (size_t i = 1; i < args.size(); ++i) {
        Lumora::WavData in;
        if (!Lumora::readWav(args[i], in, error)) {
            return fail(error);
        }
        if (in.sampleRate != 48000) {
            return fail(args[i] + " is not 48 kHz");
        }
        auto m = mono(in);
        out.planes[0].insert(out.planes[0].end(), 14400, 0.0f); // 0.3 s pause
        out.planes[0].insert(out.planes[0].end(), m.begin(), m.end());
    }
    out.planes[0].insert(out.planes[0].end(), 14400, 0.0f);
    return Lumora::writeWav(args[0], out, error) ? 0 : fail(error);
}

int mix(const std::vector<std::string>& args) {
    const std::string speechPath = option(args, "--speech"), kind = option(args, "--noise");
    const std::string noisyPath = option(args, "--noisy"), takePath = option(args, "--noise-take");
    const double snr = std::atof(option(args, "--snr", "nan").c_str());
    const unsigned seed = static_cast<unsigned>(std::atoi(option(args, "--seed", "1").c_str()));
    const double takeSeconds = std::atof(option(args, "--take-seconds", "3.5").c_str());
    if (speechPath.empty() || noisyPath.empty() || takePath.empty() || !std::isfinite(snr)) {
        return fail("mix needs --speech, --noise, --snr, --noisy and --noise-take", 2);
    }
    Lumora::WavData speech;
    std::string error;
    if (!Lumora::readWav(speechPath, speech, error)) {
        return fail(error);
    }
    const auto clean = mono(speech);
    const int rate = speech.sampleRate;
    const size_t takeFrames = static_cast<size_t>(takeSeconds * rate);
    // One noise process: the take of silence comes first, then the speech over it,
    // as a streamer's room keeps humming between the two.
    auto noise = makeNoise(kind, takeFrames + clean.size(), rate, seed);
    if (noise.empty()) {
        return fail("unknown noise '" + kind + "' (pink, brown or hum)", 2);
    }
    const double gain = std::sqrt(power(clean) / (power(noise) * std::pow(10.0, snr / 10.0)));
    Lumora::WavData take, noisy;
    take.sampleRate = noisy.sampleRate = rate;
    take.planes.assign(1, std::vector<float>(takeFrames));
    noisy.planes.assign(1, std::vector<float>(clean.size()));
    for (size_t i = 0; i < takeFrames; ++i) {
        take.planes[0][i] = static_cast<float>(noise[i] * gain);
    }
    for (size_t i = 0; i < clean.size(); ++i) {
        noisy.planes[0][i] = clean[i] + static_cast<float>(noise[takeFrames + i] * gain);
    }
    if (!Lumora::writeWav(takePath, take, error) || !Lumora::writeWav(noisyPath, noisy, error)) {
        return fail(error);
    }
    return 0;
}

// Scale-invariant signal-to-distortion ratio of `test` against `clean`, after
// finding the processing delay that lines the two up best.
int score(const std::vector<std::string>& args) {
    Lumora::WavData c, t;
    std::string error;
    if (!Lumora::readWav(option(args, "--clean"), c, error) ||
        !Lumora::readWav(option(args, "--test"), t, error)) {
        return fail(error);
    }
    const auto clean = mono(c), test = mono(t);
    const int maxDelay = std::atoi(option(args, "--max-delay", "4096").c_str());
    int bestLag = 0;
    double bestCorr = -1e300;
    for (int lag = 0; lag <= maxDelay; ++lag) {
        double corr = 0;
        const size_t n = std::min(clean.size(), test.size() > static_cast<size_t>(lag)
                                                    ? test.size() - static_cast<size_t>(lag)
                                                    : size_t{0});
        for (size_t i = 0; i < n; i += 4) {
            corr += static_cast<double>(clean[i]) * static_cast<double>(test[i + lag]);
        }
        if (corr > bestCorr) {
            bestCorr = corr;
            bestLag = lag;
        }
    }
    const size_t n = std::min(clean.size(), test.size() - static_cast<size_t>(bestLag));
    double st = 0, ss = 0;
    for (size_t i = 0; i < n; ++i) {
        st += static_cast<double>(clean[i]) * static_cast<double>(test[i + bestLag]);
        ss += static_cast<double>(clean[i]) * static_cast<double>(clean[i]);
    }
    const double alpha = ss > 0 ? st / ss : 0.0;
    double target = 0, residual = 0;
    for (size_t i = 0; i < n; ++i) {
        const double s = alpha * clean[i];
        const double e = test[i + bestLag] - s;
        target += s * s;
        residual += e * e;
    }
    const double sisdr = 10.0 * std::log10((target + 1e-20) / (residual + 1e-20));
    std::printf("{\"siSdrDb\": %.2f, \"delaySamples\": %d}\n", sisdr, bestLag);
    return 0;
}

int gain(const std::vector<std::string>& args) {
    if (args.size() != 3) {
        return fail("gain needs IN.wav OUT.wav DB", 2);
    }
    Lumora::WavData w;
    std::string error;
    if (!Lumora::readWav(args[0], w, error)) {
        return fail(error);
    }
    const float g = std::pow(10.0f, static_cast<float>(std::atof(args[2].c_str())) / 20.0f);
    for (auto& plane : w.planes) {
        for (float& x : plane) {
            x *= g;
        }
    }
    return Lumora::writeWav(args[1], w, error) ? 0 : fail(error);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const std::string command = argv[1];
    const std::vector<std::string> args(argv + 2, argv + argc);
    if (command == "speech") {
        return joinSpeech(args);
    }
    if (command == "mix") {
        return mix(args);
    }
    if (command == "score") {
        return score(args);
    }
    if (command == "gain") {
        return gain(args);
    }
    std::fputs(kUsage, stderr);
    return 2;
}
