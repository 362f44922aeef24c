#pragma once

#include <QString>

class QWidget;

namespace Lumora {

// The name dialog of every "save as" and "rename": a one-line text box preset
// with `name`. True with the trimmed, non-empty name when accepted.
bool promptForPresetName(QWidget* parent, const QString& title, const QString& label,
                         QString& name);

} // namespace Lumora
