#pragma once

#include <QString>

namespace Lumora {

// The process-wide interface language ("ja" at start, never persisted).
QString currentLanguage();
void applyLanguage(const QString& code);
bool isJapanese();

// Removes the interface translation from the application and frees it; the
// module calls this when OBS unloads it.
void releaseTranslator();

} // namespace Lumora
