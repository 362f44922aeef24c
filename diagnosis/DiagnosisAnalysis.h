#pragma once

#include "diagnosis/DiagnosisResult.h"
#include "diagnosis/DiagnosisSession.h"

namespace Lumora {

// Summarises the takes (normal, loud, soft, silence, then plosive), judges them,
// and learns the room's noise profile from the silence take's audio (-96
// everywhere when none was captured). Pure: safe on any thread.
DiagnosisResult analyse(const DiagnosisSession& session);

} // namespace Lumora
