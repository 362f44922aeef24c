// Measures cuts of a recorded output stream (mono 32-bit floats, as the test tap
// writes them) and compares them: the level of each cut and its long-term
// spectrum in octave bands, then the distance between two cuts as the RMS of
// their band differences in dB.
//
//   lumora-tap-measure [--rate HZ] NAME=FILE:FROM:TO ... [--same A,B,MAX_DB]
//                      [--differ A,B,MIN_DB]
//
// FROM and TO count samples. Exit status: 0 when every check holds, 1 when one
// fails, 2 on bad arguments or unreadable cuts.
#include "dsp/Fft.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr int kFrame = 4096;
constexpr double kCentres[] = {125, 250, 500, 1000, 2000, 4000, 8000};
constexpr int kBands = sizeof(kCentres) / sizeof(kCentres[0]);
constexpr double kFloorDb = -140.0;

struct Cut {
    std::vector<float> samples;
    double levelDb = kFloorDb;
    double bandDb[kBands] = {};
};

double toDb(double power) {
    return power > 0.0 ? std::max(kFloorDb, 10.0 * std::log10(power)) : kFloorDb;
}

bool readCut(const std::string& spec, Cut& cut) {
    const size_t to = spec.rfind(':');
    const size_t from = to == std::string::npos ? to : spec.rfind(':', to - 1);
    if (from == std::string::npos || from == 0) {
        return false;
    }
    const long first = std::atol(spec.substr(from + 1, to - from - 1).c_str());
    const long last = std::atol(spec.substr(to + 1).c_str());
    if (first < 0 || last - first < kFrame) {
        return false;
    }
    std::FILE* f = std::fopen(spec.substr(0, from).c_str(), "rb");
    if (!f) {
        return false;
    }
    cut.samples.resize(static_cast<size_t>(last - first));
    const bool ok =
        std::fseek(f, first * static_cast<long>(sizeof(float)), SEEK_SET) == 0 &&
        std::fread(cut.samples.data(), sizeof(float), cut.samples.size(), f) == cut.samples.size();
    std::fclose(f);
    return ok;
}

// Welch's average of Hann-windowed frames, half overlapping, summed into bands
// one octave wide; the level is the plain mean square.
void analyse(Cut& cut, double rate) {
    double sum = 0.0;
    for (float s : cut.samples) {
        sum += std::isfinite(s) ? double(s) * s : 0.0;
    }
    cut.levelDb = toDb(sum / double(cut.samples.size()));

    Lumora::Fft fft(kFrame);
    std::vector<float> re(kFrame), im(kFrame), window(kFrame);
    double windowPower = 0.0;
    for (int i = 0; i < kFrame; ++i) {
        window[i] = float(0.5 - 0.5 * std::cos(2.0 * M_PI * i / kFrame));
        windowPower += double(window[i]) * window[i];
    }
    std::vector<double> power(kFrame / 2 + 1, 0.0);
    int frames = 0;
    for (size_t start = 0; start + kFrame <= cut.samples.size(); start += kFrame / 2) {
        for (int i = 0; i < kFrame; ++i) {
            const float s = cut.samples[start + size_t(i)];
            re[i] = std::isfinite(s) ? s * window[i] : 0.0f;
            im[i] = 0.0f;
        }
        fft.forward(re.data(), im.data());
        for (int k = 0; k <= kFrame / 2; ++k) {
            power[k] += double(re[k]) * re[k] + double(im[k]) * im[k];
        }
        ++frames;
    }
    for (int b = 0; b < kBands; ++b) {
        const double lo = kCentres[b] / std::sqrt(2.0), hi = kCentres[b] * std::sqrt(2.0);
        double band = 0.0;
        for (int k = 1; k < kFrame / 2; ++k) {
            const double f = k * rate / kFrame;
            if (f >= lo && f < hi) {
                band += 2.0 * power[k];
            }
        }
        cut.bandDb[b] = toDb(band / (frames * windowPower * kFrame));
    }
}

double distance(const Cut& a, const Cut& b) {
    double sum = 0.0;
    for (int i = 0; i < kBands; ++i) {
        sum += (a.bandDb[i] - b.bandDb[i]) * (a.bandDb[i] - b.bandDb[i]);
    }
    return std::sqrt(sum / kBands);
}

struct Check {
    std::string a, b;
    double limit;
    bool same;
};

bool parseCheck(const std::string& text, bool same, Check& check) {
    const size_t c1 = text.find(','), c2 = text.rfind(',');
    if (c1 == std::string::npos || c2 == c1) {
        return false;
    }
    check = {text.substr(0, c1), text.substr(c1 + 1, c2 - c1 - 1),
             std::atof(text.substr(c2 + 1).c_str()), same};
    return true;
}

} // namespace

int main(int argc, char** argv) {
    double rate = 48000.0;
    std::map<std::string, Cut> cuts;
    std::vector<std::string> order;
    std::vector<Check> checks;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        Check check;
        if (arg == "--rate" && i + 1 < argc) {
            rate = std::atof(argv[++i]);
        } else if ((arg == "--same" || arg == "--differ") && i + 1 < argc &&
                   parseCheck(argv[i + 1], arg == "--same", check)) {
            checks.push_back(check);
            ++i;
        } else if (const size_t eq = arg.find('='); eq != std::string::npos && eq > 0) {
            Cut cut;
            if (!readCut(arg.substr(eq + 1), cut)) {
                std::fprintf(stderr, "cannot read the cut %s\n", arg.c_str());
                return 2;
            }
            analyse(cut, rate);
            cuts[arg.substr(0, eq)] = std::move(cut);
            order.push_back(arg.substr(0, eq));
        } else {
            std::fprintf(stderr, "usage: lumora-tap-measure [--rate HZ] NAME=FILE:FROM:TO ... "
                                 "[--same A,B,MAX_DB] [--differ A,B,MIN_DB]\n");
            return 2;
        }
    }
    if (rate < 8000.0 || order.empty()) {
        std::fprintf(stderr, "nothing to measure\n");
        return 2;
    }

    std::printf("%-22s %8s %8s", "cut", "seconds", "dBFS");
    for (double c : kCentres) {
        std::printf(" %7.0f", c);
    }
    std::printf("  (octave bands, dBFS)\n");
    for (const std::string& name : order) {
        const Cut& cut = cuts[name];
        std::printf("%-22s %8.2f %8.1f", name.c_str(), cut.samples.size() / rate, cut.levelDb);
        for (double db : cut.bandDb) {
            std::printf(" %7.1f", db);
        }
        std::printf("\n");
    }

    int failed = 0;
    for (const Check& check : checks) {
        if (!cuts.count(check.a) || !cuts.count(check.b)) {
            std::fprintf(stderr, "no cut named %s or %s\n", check.a.c_str(), check.b.c_str());
            return 2;
        }
        const double d = distance(cuts[check.a], cuts[check.b]);
        const bool ok = check.same ? d <= check.limit : d >= check.limit;
        failed += ok ? 0 : 1;
        std::printf("%s: %s vs %s: spectral distance %.1f dB (%s %.1f dB)\n", ok ? "ok" : "FAIL",
                    check.a.c_str(), check.b.c_str(), d, check.same ? "at most" : "at least",
                    check.limit);
    }
    return failed ? 1 : 0;
}
