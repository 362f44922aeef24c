#pragma once

#include "diagnosis/DiagnosisController.h"

#include <string>
#include <vector>

namespace Lumora {

// Friendly tips shown under the countdown while a take runs, rotated every five
// seconds: the ones for the chosen mic type first, then the take's general ones.
class WizardTips {
public:
    static constexpr double kRotationSeconds = 5.0;

    // The tips for take `step` (1..5) and mic type (0 Dynamic, 1 Condenser,
    // 2 USB, 3 Unknown); empty for other steps.
    static std::vector<BilingualText> tipsFor(int step, int micType);

    // The tip to show `elapsedSeconds` after the take's tips first appeared, in
    // the given language ("en" English, anything else Japanese); "" if none.
    static std::string tipAt(int step, int micType, double elapsedSeconds,
                             const std::string& language);
};

} // namespace Lumora
