#pragma once

#include "diagnosis/DiagnosisResult.h"
#include "diagnosis/DiagnosisSession.h"

#include <future>
#include <optional>

namespace Lumora {

// Summarises the takes (normal, loud, soft, silence, then plosive), judges them,
// and learns the room's noise profile from the silence take's audio (-96
// everywhere when none was captured). Pure: safe on any thread.
DiagnosisResult analyse(const DiagnosisSession& session);

// Runs `analyse` on a thread of its own (std::async, launch::async) over a copy
// of the session, so the wizard may go on touching its own session. Never
// throws: if no thread can be started, the future carries that failure.
std::future<DiagnosisResult> startAnalysis(DiagnosisSession session);

// For the dialog's timer: the result once the analysis has finished, else
// nothing. Never waits and never throws. After the result (or a failure) has
// been taken the future is spent and later polls return nothing; `failed` (if
// given) is set true when the analysis ended with an exception.
std::optional<DiagnosisResult> pollAnalysis(std::future<DiagnosisResult>& future,
                                            bool* failed = nullptr);

} // namespace Lumora
