#pragma once

#include <QString>

namespace Lumora {

class SettingsStore;

// What to tell the user when a save did not happen. A settings file from a newer
// Lumora is never written over, and the user must learn that rather than retry
// for ever; any other failure is told as `fallback`.
QString saveFailureText(const SettingsStore* store, const QString& fallback);

} // namespace Lumora
