#include "Commands.h"

namespace Lumora::Cli {

int runDiagnose(const Args&) { return fail("diagnose: not available in this build"); }

} // namespace Lumora::Cli
