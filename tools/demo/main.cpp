// lumora-demo: the demo's own helpers.
//   takes OUTDIR        five diagnosis takes and a longer voice of a streamer in a
//                       noisy room, from real recorded speech
//   stats FILE...       level, noise floor and loudness of each file, as JSON
//   plot BEFORE AFTER OUT.png   the long-term spectrum of both files on one chart
#include "PinkNoise.h"
#include "WavFile.h"
#include "dsp/Fft.h"

#include <ebur128.h>

#include <QColor>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kRate = 48000;
const char* kVoices[] = {"Front_Center", "Front_Left", "Front_Right", "Rear_Center",
                         "Rear_Left",    "Rear_Right", "Side_Left",   "Side_Right"};

int fail(const std::string& message) {
    std::fprintf(stderr, "lumora-demo: %s\n", message.c_str());
    return 1;
}

double rmsDb(const std::vector<float>& x, size_t from = 0, size_t to = SIZE_MAX) {
    to = std::min(to, x.size());
    double s = 0;
    for (size_t i = from; i < to; ++i) {
        s += static_cast<double>(x[i]) * x[i];
    }
    return to > from && s > 0 ? 10.0 * std::log10(s / static_cast<double>(to - from)) : -96.0;
}

// A room a streamer really has: a PC fan (pink noise) and mains hum.
std::vector<float> roomNoise(size_t n, double levelDb, unsigned seed) {
    std::mt19937 rng(seed);
    std::normal_distribution<double> white(0.0, 1.0);
    std::vector<float> out(n);
    Lumora::PinkNoise fan;
    for (size_t i = 0; i < n; ++i) {
        const double pink = fan.next(white(rng));
        const double t = static_cast<double>(i) / kRate;
        const double hum = 1.5 * std::sin(2 * M_PI * 50 * t) + 0.7 * std::sin(2 * M_PI * 100 * t) +
                           0.4 * std::sin(2 * M_PI * 150 * t);
        out[i] = static_cast<float>(pink + hum);
    }
    const double g = std::pow(10.0, (levelDb - rmsDb(out)) / 20.0);
    for (float& v : out) {
        v = static_cast<float>(v * g);
    }
    return out;
}

bool loadSpeech(std::vector<float>& speech, std::string& error) {
    for (const char* name : kVoices) {
        Lumora::WavData w;
        if (!Lumora::readWav(std::string("/usr/share/sounds/alsa/") + name + ".wav", w, error)) {
            return false;
        }
        speech.insert(speech.end(), static_cast<size_t>(kRate / 5), 0.0f);
        speech.insert(speech.end(), w.planes[0].begin(), w.planes[0].end());
    }
    return true;
}

// `seconds` of speech at `levelDb` (RMS while speaking), starting at `offset` s.
std::vector<float> speechTake(const std::vector<float>& speech, double offset, double seconds,
                              double levelDb) {
    std::vector<float> out(static_cast<size_t>(seconds * kRate));
    const size_t start = static_cast<size_t>(offset * kRate);
    for (size_t i = 0; i < out.size(); ++i) {
        out[i] = speech[(start + i) % speech.size()];
    }
    const double g = std::pow(10.0, (levelDb - rmsDb(out)) / 20.0);
    for (float& v : out) {
        v = static_cast<float>(v * g);
    }
    return out;
}

bool save(const std::string& path, const std::vector<float>& x) {
    Lumora::WavData w;
    w.sampleRate = kRate;
    w.planes = {x};
    std::string error;
    if (!Lumora::writeWav(path, w, error, true)) {
        std::fprintf(stderr, "lumora-demo: %s\n", error.c_str());
        return false;
    }
    return true;
}

int makeTakes(const std::string& dir) {
    std::vector<float> speech;
    std::string error;
    if (!loadSpeech(speech, error)) {
        return fail(error);
    }
    const double roomDb = -52.0;
    auto withRoom = [&](std::vector<float> x, unsigned seed) {
        const auto noise = roomNoise(x.size(), roomDb, seed);
        for (size_t i = 0; i < x.size(); ++i) {
            x[i] += noise[i];
        }
        return x;
    };
    // Each take is 5 s: the wizard's countdown gives the meters 2 s to settle
    // before its 3 s of recording, and so does this lead-in.
    auto plosive = speechTake(speech, 3.0, 4.0, -20.0);
    for (double at : {0.6, 1.4, 2.2, 3.0}) { // breath on the capsule: a low thump
        const size_t s = static_cast<size_t>(at * kRate);
        for (size_t i = 0; i < 2400 && s + i < plosive.size(); ++i) {
            const double t = static_cast<double>(i) / kRate;
            plosive[s + i] +=
                static_cast<float>(0.5 * std::sin(2 * M_PI * 45 * t) * std::exp(-t * 60.0));
        }
    }
    // The held peak meter falls about 6 dB a second: the silence take gets a
    // longer lead-in so the loud takes before it have died away.
    std::vector<float> silence(static_cast<size_t>(10 * kRate), 0.0f);
    const bool ok =
        save(dir + "/normal.wav", withRoom(speechTake(speech, 0.0, 5.0, -24.0), 1)) &&
        save(dir + "/loud.wav", withRoom(speechTake(speech, 5.0, 5.0, -17.0), 2)) &&
        save(dir + "/soft.wav", withRoom(speechTake(speech, 9.0, 5.0, -36.0), 3)) &&
        save(dir + "/plosive.wav", withRoom(speechTake(plosive, 0.0, 5.0, -20.0), 4)) &&
        save(dir + "/silence.wav", withRoom(silence, 5)) &&
        save(dir + "/voice-noisy.wav",
             withRoom(speechTake(speech, 0.0, speech.size() / double(kRate), -26.0), 6));
    return ok ? 0 : 1;
}

std::vector<float> monoOf(const Lumora::WavData& w) {
    std::vector<float> m(static_cast<size_t>(w.frames()), 0.0f);
    for (const auto& p : w.planes) {
        for (size_t i = 0; i < m.size(); ++i) {
            m[i] += p[i] / static_cast<float>(w.channels());
        }
    }
    return m;
}

int stats(const std::vector<std::string>& files) {
    std::printf("[");
    for (size_t f = 0; f < files.size(); ++f) {
        Lumora::WavData w;
        std::string error;
        if (!Lumora::readWav(files[f], w, error)) {
            return fail(error);
        }
        const auto x = monoOf(w);
        // Noise floor: the quietest tenth of 50 ms frames.
        std::vector<double> frames;
        const size_t hop = static_cast<size_t>(w.sampleRate / 20);
        for (size_t i = 0; i + hop <= x.size(); i += hop) {
            frames.push_back(rmsDb(x, i, i + hop));
        }
        std::sort(frames.begin(), frames.end());
        const double floorDb = frames.empty() ? -96.0 : frames[frames.size() / 10];
        double lufs = -70.0;
        if (ebur128_state* st =
                ebur128_init(1, static_cast<unsigned long>(w.sampleRate), EBUR128_MODE_I)) {
            ebur128_add_frames_float(st, x.data(), x.size());
            if (ebur128_loudness_global(st, &lufs) != EBUR128_SUCCESS || !std::isfinite(lufs)) {
                lufs = -70.0;
            }
            ebur128_destroy(&st);
        }
        std::printf("%s{\"file\": \"%s\", \"levelDb\": %.1f, \"noiseFloorDb\": %.1f, "
                    "\"loudnessLufs\": %.1f}",
                    f ? ", " : "", files[f].c_str(), rmsDb(x), floorDb, lufs);
    }
    std::printf("]\n");
    return 0;
}

std::vector<double> longTermSpectrum(const std::vector<float>& x) {
    constexpr int n = 4096;
    Lumora::Fft fft(n);
    std::vector<float> re(n), im(n);
    std::vector<double> power(n / 2 + 1, 0.0);
    int frames = 0;
    for (size_t start = 0; start + n <= x.size(); start += n / 2, ++frames) {
        for (int i = 0; i < n; ++i) {
            const double w = 0.5 - 0.5 * std::cos(2 * M_PI * i / (n - 1));
            re[i] = static_cast<float>(x[start + i] * w);
            im[i] = 0.0f;
        }
        fft.forward(re.data(), im.data());
        for (int k = 0; k <= n / 2; ++k) {
            power[k] += static_cast<double>(re[k]) * re[k] + static_cast<double>(im[k]) * im[k];
        }
    }
    for (double& p : power) {
        p = 10.0 * std::log10(std::max(p / std::max(frames, 1) / (n * 0.375 * n / 4), 1e-12));
    }
    return power;
}

int plot(const std::string& before, const std::string& after, const std::string& out) {
    Lumora::WavData a, b;
    std::string error;
    if (!Lumora::readWav(before, a, error) || !Lumora::readWav(after, b, error)) {
        return fail(error);
    }
    const auto sa = longTermSpectrum(monoOf(a));
    const auto sb = longTermSpectrum(monoOf(b));
    const int width = 1000, height = 560, left = 70, right = 30, top = 50, bottom = 60;
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(QColor(250, 248, 255));
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const double fLo = 20.0, fHi = 20000.0, dbLo = -120.0, dbHi = -30.0;
    auto xOf = [&](double f) {
        return left + (width - left - right) * std::log(f / fLo) / std::log(fHi / fLo);
    };
    auto yOf = [&](double db) {
        return top + (height - top - bottom) * (dbHi - std::clamp(db, dbLo, dbHi)) / (dbHi - dbLo);
    };
    p.setPen(QColor(220, 214, 235));
    QFont font = p.font();
    font.setPointSize(9);
    p.setFont(font);
    for (double f : {20., 50., 100., 200., 500., 1000., 2000., 5000., 10000., 20000.}) {
        p.setPen(QColor(220, 214, 235));
        p.drawLine(QPointF(xOf(f), top), QPointF(xOf(f), height - bottom));
        p.setPen(QColor(90, 80, 120));
        p.drawText(QPointF(xOf(f) - 14, height - bottom + 18),
                   f >= 1000 ? QString("%1k").arg(f / 1000) : QString::number(f));
    }
    for (double db = dbLo; db <= dbHi; db += 10) {
        p.setPen(QColor(220, 214, 235));
        p.drawLine(QPointF(left, yOf(db)), QPointF(width - right, yOf(db)));
        p.setPen(QColor(90, 80, 120));
        p.drawText(QPointF(18, yOf(db) + 4), QString::number(db));
    }
    auto curve = [&](const std::vector<double>& s, double rate, QColor colour) {
        QPainterPath path;
        bool started = false;
        const int n = static_cast<int>(s.size() - 1) * 2;
        for (size_t k = 1; k < s.size(); ++k) {
            const double f = k * rate / n;
            if (f < fLo || f > fHi) {
                continue;
            }
            const QPointF pt(xOf(f), yOf(s[k]));
            started ? path.lineTo(pt) : path.moveTo(pt);
            started = true;
        }
        p.setPen(QPen(colour, 1.6));
        p.drawPath(path);
    };
    curve(sa, a.sampleRate, QColor(200, 90, 120));
    curve(sb, b.sampleRate, QColor(0, 150, 140));
    font.setPointSize(12);
    font.setBold(true);
    p.setFont(font);
    p.setPen(QColor(45, 27, 105));
    p.drawText(QPointF(left, 30), "Long-term spectrum of the voice, before and after Tindra");
    font.setPointSize(10);
    font.setBold(false);
    p.setFont(font);
    p.setPen(QColor(200, 90, 120));
    p.drawText(QPointF(width - 330, top + 20), "before: raw microphone in a noisy room");
    p.setPen(QColor(0, 150, 140));
    p.drawText(QPointF(width - 330, top + 40), "after: recommended settings applied");
    p.setPen(QColor(90, 80, 120));
    p.drawText(QPointF(width / 2 - 30, height - 16), "frequency (Hz)");
    p.drawText(QPointF(10, top - 10), "dB");
    p.end();
    return image.save(QString::fromStdString(out)) ? 0 : fail("cannot write " + out);
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() == 2 && args[0] == "takes") {
        return makeTakes(args[1]);
    }
    if (args.size() >= 2 && args[0] == "stats") {
        return stats({args.begin() + 1, args.end()});
    }
    if (args.size() == 4 && args[0] == "plot") {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        if (qgetenv("XDG_RUNTIME_DIR").isEmpty()) {
            const QByteArray dir = QByteArray("/tmp/lumora-demo-") + QByteArray::number(getuid());
            mkdir(dir.constData(), 0700);
            qputenv("XDG_RUNTIME_DIR", dir);
        }
        QGuiApplication app(argc, argv);
        return plot(args[1], args[2], args[3]);
    }
    std::fputs("usage: lumora-demo takes OUTDIR | stats FILE... | plot BEFORE AFTER OUT.png\n",
               stderr);
    return 2;
}
