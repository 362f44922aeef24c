#pragma once

class QWidget;

namespace Lumora {

// "Reset to defaults?" in a box titled "Reset", Cancel by default; true on OK.
// Shared by the sound and FX panels.
bool confirmResetToDefaults(QWidget* parent);

} // namespace Lumora
