#pragma once

#include <string>
#include <vector>

namespace Lumora::Cli {

using Args = std::vector<std::string>;

// Each command gets the words after its own name; it prints its result on stdout,
// one clear line on stderr on error, and returns the process's exit code.
int runSettings(const Args& args);
int runPresets(const Args& args);
int runDiagnose(const Args& args);
int runProcess(const Args& args);
int runLearnNoise(const Args& args);

// Prints "lumora-cli: <message>" on stderr and returns 2 (usage) or 1.
int fail(const std::string& message, int code = 1);

} // namespace Lumora::Cli
