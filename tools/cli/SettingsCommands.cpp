#include "Commands.h"

namespace Lumora::Cli {

int runSettings(const Args&) { return fail("settings: not available in this build"); }
int runPresets(const Args&) { return fail("presets: not available in this build"); }

} // namespace Lumora::Cli
