#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace Lumora {

// Asks for a name; false when the user cancelled. The pages that save presets
// take one so that a tool or test can answer in place of the name box.
using NamePrompt = std::function<bool(const QString& title, const QString& label, QString& name)>;

// The name dialog of every "save as" and "rename": a one-line text box preset
// with `name`. True with the trimmed, non-empty name when accepted.
bool promptForPresetName(QWidget* parent, const QString& title, const QString& label,
                         QString& name);

} // namespace Lumora
