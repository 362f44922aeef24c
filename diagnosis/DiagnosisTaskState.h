#pragma once

#include "diagnosis/DiagnosisResult.h"

#include <future>
#include <vector>

namespace Lumora {

// The asynchronous diagnosis results of one filter, polled by the dialog.
struct DiagnosisTaskState {
    bool started = false;
    int state = 2;
    int resultIndex = -1;
    int counter = 0;
    std::vector<DiagnosisResult> results;
    std::future<DiagnosisResult> pending[2];
};

} // namespace Lumora
