#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

#include <string>
#include <vector>

namespace Lumora {

// The process-wide interface language ("ja" at start, never persisted).
QString currentLanguage();
// The same code as UTF-8, for the toolkit-free diagnosis code.
std::string currentLanguageCode();
// Installs the translation for `code` (none for "en") and makes it current.
// Without an application object nothing changes.
void applyLanguage(const QString& code);
// True only for exactly "ja": texts carried in both languages inline use it.
bool isJapanese();

// Removes the interface translation from the application and frees it; the
// module calls this when OBS unloads it.
void releaseTranslator();

// The languages of the language menu, in menu order: code and native name.
struct LanguageEntry {
    QString code;
    QString nativeName;
};
const std::vector<LanguageEntry>& knownLanguages();

// The hand-written face at the given size, or the default family when the
// embedded font cannot be loaded.
QFont appFont(qreal pointSize);

// The installed plug-in's data folder (the one OBS resolves module files
// against); the module sets it at load. Images are looked up in its "images".
void setPluginDataFolder(const QString& folder);
QString pluginDataFolder();

// Full path of one of the program's images; the first candidate folder that
// holds the file wins, otherwise the first candidate is returned all the same so
// that loading fails softly into a null pixmap.
QString imagePath(const QString& fileName);
// "Tindra_<n>.png", the character picture for verdict level n.
QString characterImagePath(int n);

// The verdict label of a level in the current language ("✅ 良好", "⚠️ Caution", ...).
QString verdictLabel(int level);

} // namespace Lumora
