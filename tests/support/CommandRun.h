#pragma once

// Runs a command line as a user's shell would, with nothing on its input, and
// keeps its exit code and everything it printed: the command-line tools are
// tested as the built programs they are.

#include "settings/support/TempFolder.h"

#include <cstdlib>
#include <string>
#include <sys/wait.h>

namespace Lumora::Testing {

struct CommandRun {
    int code = -1; // -1 when the program did not exit by itself
    std::string out;
    std::string err;
};

inline CommandRun runCommand(const std::string& commandLine) {
    static TempFolder capture;
    const std::string out = capture.file("out"), err = capture.file("err");
    const int status =
        std::system((commandLine + " >" + out + " 2>" + err + " </dev/null").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, TempFolder::read(out),
            TempFolder::read(err)};
}

// The built lumora-cli with `arguments`, as a command line.
inline std::string lumoraCli(const std::string& arguments) {
    return std::string(LUMORA_BINARY_DIR) + "/tools/lumora-cli " + arguments;
}

} // namespace Lumora::Testing
