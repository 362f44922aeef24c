#include "Commands.h"

namespace Lumora::Cli {

int runProcess(const Args&) { return fail("process: not available in this build"); }

} // namespace Lumora::Cli
