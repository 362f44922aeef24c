#pragma once

#include "diagnosis/DiagnosisResult.h"

#include <future>

namespace Lumora {

// The analysis running for one filter, polled by the dialog. It lives with the
// filter, not the dialog: a filter removed mid-analysis waits here for the
// thread before it is freed.
struct DiagnosisTaskState {
    bool started = false;
    std::future<DiagnosisResult> pending;
};

} // namespace Lumora
