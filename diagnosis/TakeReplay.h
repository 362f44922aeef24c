#pragma once

#include "diagnosis/DiagnosisAnalyser.h"
#include "diagnosis/DiagnosisSession.h"

#include <vector>

namespace Lumora {

// Plays one recorded take through the analyser the way the live filter and the
// wizard hear it, for the command line, the corpus and the tests.
//
// The take is fed in packets of `block` frames (a stereo source's packets mixed
// down in blocks of at most 512, as the filter does). The dialog's 16 ms timer
// is played by one snapshot per 16 ms of audio. The take's last seconds (its
// step's duration in the wizard) are the recorded part; what comes before is
// the lead-in, like the wizard's countdown. When the recorded part begins the
// held measures restart, as the wizard restarts them, and the snapshots from
// then on go into the step's list; the silence take's recorded audio also goes
// into the session for the noise profile.
void replayTake(DiagnosisAnalyser& analyser, DiagnosisSession& session, DiagnosisStep step,
                const std::vector<float>& mono, bool stereo, int block);

} // namespace Lumora
