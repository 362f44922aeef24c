#include "Commands.h"

#include "platform/Platform.h"

#include <cstdio>
#include <cstring>

namespace Lumora::Cli {

int fail(const std::string& message, int code) {
    std::fprintf(stderr, "lumora-cli: %s\n", message.c_str());
    return code;
}

} // namespace Lumora::Cli

namespace {

const char* kUsage =
    "usage: lumora-cli <command> [options]\n"
    "commands:\n"
    "  settings verify [--dir D]          which settings file loads, and why\n"
    "  presets list [--effect|--fx] [--dir D]             the stored presets\n"
    "  presets export NAME FILE|- [--effect|--fx] [--dir D] write one preset as JSON\n"
    "  presets import FILE|- [--dir D]                    store the preset(s) in FILE\n"
    "  diagnose --mic M --normal F --loud F --soft F --plosive F --silence F\n"
    "           [--block N] [--lang ja|en]   diagnose five recorded takes\n"
    "  process --preset P.json [--fx FX.json] [--block N] IN.wav OUT.wav\n"
    "          [--at SECONDS (--preset P2.json | --fx FX2.json)]...   switch mid-file\n"
    "  learn-noise SILENCE.wav [--margin DB]   the spectral noise profile of a room\n";

} // namespace

int main(int argc, char** argv) {
    using namespace Lumora::Cli;
    if (argc < 2 || std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
        std::fputs(kUsage, argc < 2 ? stderr : stdout);
        return argc < 2 ? 2 : 0;
    }
    // UTF-8 arguments and output whatever the system's code page: preset names
    // and folders are often Japanese.
    const std::vector<std::string> words = Lumora::Platform::commandLine(argc, argv);
    Lumora::Platform::useUtf8Console();
    const std::string command = words[1];
    const Args args(words.begin() + 2, words.end());
    if (command == "settings") {
        return runSettings(args);
    }
    if (command == "presets") {
        return runPresets(args);
    }
#ifndef LUMORA_CLI_SETTINGS_ONLY
    if (command == "diagnose") {
        return runDiagnose(args);
    }
    if (command == "process") {
        return runProcess(args);
    }
    if (command == "learn-noise") {
        return runLearnNoise(args);
    }
#else
    if (command == "diagnose" || command == "process" || command == "learn-noise") {
        return fail("'" + command + "' is not part of this build (settings and presets only)", 2);
    }
#endif
    return fail("unknown command '" + command + "' (try --help)", 2);
}
