// lumora-host: runs OBS audio filters (ours or any plug-in's) in the real libobs
// without the OBS window, streaming a WAV file through them in packets.
#include "ObsHarness.h"
#include "WavFile.h"

#include <obs.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

const char* kUsage =
    "usage: lumora-host --module FILE[=DATA] ... --filter ID [--settings JSON] ...\n"
    "                   --in IN.wav [--out OUT.wav] [--block N] [--rate R] [--channels C]\n"
    "                   [--repeat K] [--proc NAME JSON] [--log all|lumora|none]\n"
    "Loads each module into libobs, builds a private audio source carrying the filters\n"
    "in the order given, streams IN.wav through it in packets of N frames (default 480)\n"
    "at the output's rate (default: the file's) and layout (default: the file's), and\n"
    "writes the filtered audio to OUT.wav. --proc calls a procedure of the last filter\n"
    "given before it with JSON parameters. Prints a JSON summary on stdout.\n";

struct FilterSpec {
    std::string id;
    std::string settings;
    std::vector<std::pair<std::string, std::string>> procs;
};

double levelDb(const std::vector<std::vector<float>>& planes) {
    double sum = 0.0;
    size_t count = 0;
    for (size_t c = 0; c < planes.size() && c < 2; ++c) {
        for (float x : planes[c]) {
            sum += static_cast<double>(x) * x;
        }
        count += planes[c].size();
    }
    if (count == 0 || sum <= 0.0) {
        return -96.0;
    }
    return 10.0 * std::log10(sum / static_cast<double>(count));
}

int fail(const std::string& message) {
    std::fprintf(stderr, "lumora-host: %s\n", message.c_str());
    return 1;
}

bool callProcedure(obs_source_t* filter, const std::string& name, const std::string& json,
                   std::string& reply, std::string& error) {
    proc_handler_t* handler = obs_source_get_proc_handler(filter);
    calldata_t cd;
    calldata_init(&cd);
    calldata_set_string(&cd, "json", json.c_str());
    const bool ok = proc_handler_call(handler, name.c_str(), &cd);
    if (!ok) {
        error = "the filter has no procedure '" + name + "'";
    } else {
        const char* out = calldata_string(&cd, "result");
        reply = out ? out : "";
        if (!calldata_bool(&cd, "ok")) {
            const char* why = calldata_string(&cd, "error");
            error = std::string("procedure '") + name + "' failed: " + (why ? why : "no reason");
        }
    }
    calldata_free(&cd);
    return ok && error.empty();
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::pair<std::string, std::string>> modules;
    std::vector<FilterSpec> filters;
    std::string inPath, outPath, logMode = "lumora";
    int block = 480, repeat = 1, rate = 0, channels = 0;

    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        auto next = [&](const char* what) -> std::string {
            if (i + 1 >= argc) {
                std::fprintf(stderr, "lumora-host: %s needs %s\n", a.c_str(), what);
                std::exit(2);
            }
            return argv[++i];
        };
        if (a == "--help" || a == "-h") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (a == "--module") {
            const std::string m = next("a file");
            const auto eq = m.find('=');
            modules.emplace_back(m.substr(0, eq), eq == std::string::npos ? "" : m.substr(eq + 1));
        } else if (a == "--filter") {
            filters.push_back({next("an id"), "", {}});
        } else if (a == "--settings") {
            const std::string s = next("JSON");
            if (filters.empty()) {
                return fail("--settings must follow a --filter");
            }
            filters.back().settings = s;
        } else if (a == "--proc") {
            const std::string name = next("a procedure name");
            const std::string json = next("JSON");
            if (filters.empty()) {
                return fail("--proc must follow a --filter");
            }
            filters.back().procs.emplace_back(name, json);
        } else if (a == "--in") {
            inPath = next("a file");
        } else if (a == "--out") {
            outPath = next("a file");
        } else if (a == "--block") {
            block = std::atoi(next("a frame count").c_str());
        } else if (a == "--repeat") {
            repeat = std::atoi(next("a count").c_str());
        } else if (a == "--rate") {
            rate = std::atoi(next("a sample rate").c_str());
        } else if (a == "--channels") {
            channels = std::atoi(next("a channel count").c_str());
        } else if (a == "--log") {
            logMode = next("all, lumora or none");
        } else {
            std::fprintf(stderr, "lumora-host: unknown option %s\n%s", a.c_str(), kUsage);
            return 2;
        }
    }
    if (inPath.empty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (block < 1 || block > 48000 || repeat < 1) {
        return fail("--block must be 1..48000 and --repeat at least 1");
    }

    Lumora::WavData input;
    std::string error;
    if (!Lumora::readWav(inPath, input, error)) {
        return fail(error);
    }
    if (rate <= 0) {
        rate = input.sampleRate;
    }
    if (channels <= 0) {
        channels = input.channels();
    }

    Lumora::ObsHarness host;
    host.setLogEcho([&](int, const std::string& line) {
        if (logMode == "all" || (logMode == "lumora" && line.rfind("[Lumora]", 0) == 0)) {
            std::fprintf(stderr, "%s\n", line.c_str());
        }
    });
    if (!host.start(static_cast<uint32_t>(rate), channels, error)) {
        return fail(error);
    }
    for (const auto& [path, data] : modules) {
        if (!host.loadModule(path, data, error)) {
            return fail(error);
        }
    }
    for (const auto& spec : filters) {
        obs_source_t* filter = host.addFilter(spec.id, spec.settings, error);
        if (!filter) {
            return fail(error);
        }
        for (const auto& [name, json] : spec.procs) {
            std::string reply;
            if (!callProcedure(filter, name, json, reply, error)) {
                return fail(error);
            }
            if (!reply.empty()) {
                std::fprintf(stderr, "%s\n", reply.c_str());
            }
        }
    }

    if (!host.prepareInput(error)) {
        return fail(error);
    }

    // Packets follow the output's layout: extra channels repeat the file's last one.
    std::vector<std::vector<float>> source(static_cast<size_t>(channels));
    for (int c = 0; c < channels; ++c) {
        source[c] = input.planes[std::min(c, input.channels() - 1)];
    }
    std::vector<std::vector<float>> output;
    double cpu = 0.0;
    uint64_t framesPushed = 0;
    const int total = input.frames();
    for (int r = 0; r < repeat; ++r) {
        std::vector<std::vector<float>> pass;
        for (int start = 0; start < total; start += block) {
            const int n = std::min(block, total - start);
            std::vector<const float*> planes;
            for (int c = 0; c < channels; ++c) {
                planes.push_back(source[c].data() + start);
            }
            cpu += host.push(planes, static_cast<uint32_t>(n), pass);
            framesPushed += static_cast<uint64_t>(n);
        }
        if (r == repeat - 1) {
            output = std::move(pass);
        }
    }

    if (!outPath.empty()) {
        Lumora::WavData out;
        out.sampleRate = rate;
        out.planes = output;
        if (out.planes.empty() || out.frames() == 0) {
            return fail("no audio came out of the filters");
        }
        if (!Lumora::writeWav(outPath, out, error)) {
            return fail(error);
        }
    }
    const double audioSeconds = static_cast<double>(framesPushed) / rate;
    std::printf("{\"sampleRate\": %d, \"channels\": %d, \"block\": %d, \"framesIn\": %llu, "
                "\"framesOut\": %zu, \"audioSeconds\": %.3f, \"cpuSeconds\": %.6f, "
                "\"cpuPercentOfOneCore\": %.4f, \"levelInDb\": %.2f, \"levelOutDb\": %.2f}\n",
                rate, channels, block, static_cast<unsigned long long>(framesPushed),
                output.empty() ? size_t{0} : output[0].size(), audioSeconds, cpu,
                audioSeconds > 0 ? 100.0 * cpu / audioSeconds : 0.0, levelDb(source),
                levelDb(output));
    return 0;
}
