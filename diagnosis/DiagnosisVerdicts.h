#pragma once

#include "diagnosis/AudioMetrics.h"
#include "diagnosis/DiagnosisResult.h"

#include <string>
#include <vector>

namespace Lumora {

// The summaries of the five takes that the verdicts read.
struct TakeSummaries {
    StepStats normal;  // step 1
    StepStats loud;    // step 2
    StepStats soft;    // step 3
    StepStats plosive; // step 4
    StepStats silence; // step 5
    // How fast the speech takes' quickest word endings fall 20 dB, in ms
    // (WordEndFall); -1 when unknown.
    float wordEndFallMs = -1.0f;
};

// The six verdicts, always in the order clipping, volume, noise, distance,
// dynamics, pop. A take with fewer than five snapshots gives the Caution
// "couldn't measure" verdict of its item (clipping is always judged).
std::vector<DiagnosisItem> judgeItems(const TakeSummaries& takes, int32_t micType);

// The highest level among the items (0 for none).
int32_t overallLevel(const std::vector<DiagnosisItem>& items);

// A whole result from the take summaries: items, overall level, both summary
// lines, valid = 1 and the speech and silence summaries. The noise spectrum is
// left at -96 (the analysis fills it from the silence take's snapshots).
DiagnosisResult judge(const TakeSummaries& takes, int32_t micType);

// The label of a verdict level. Japanese only when the language is exactly
// "ja": any other language string gets the English label.
std::string statusLabel(int32_t level, const std::string& language);

// The summary line to show. English only when the language is exactly "en":
// any other language string gets the Japanese line. The two tests differ on
// purpose.
const std::string& summaryText(const DiagnosisResult& result, const std::string& language);

} // namespace Lumora
