#include "ui/Localisation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QTranslator>

// Resources compiled into a static library are registered only when something
// refers to them; these calls do, and must sit outside any namespace.
static void initLumoraResources() {
    static bool done = false;
    if (done) {
        return;
    }
    done = true;
    Q_INIT_RESOURCE(lumora_ui);
    Q_INIT_RESOURCE(lumora_font);
}

namespace Lumora {

namespace {

const char kWindowsImagesFolder[] = "C:/Program Files/obs-studio/data/obs-plugins/Lumora/images";

QString& languageSlot() {
    static QString language = QStringLiteral("ja");
    return language;
}

QTranslator*& translatorSlot() {
    static QTranslator* translator = nullptr;
    return translator;
}

int& fontIdSlot() {
    static int id = -1;
    return id;
}

QString& dataFolderSlot() {
    static QString folder;
    return folder;
}

} // namespace

QString currentLanguage() {
    return languageSlot();
}

std::string currentLanguageCode() {
    return languageSlot().toStdString();
}

void applyLanguage(const QString& code) {
    initLumoraResources();
    QTranslator*& translator = translatorSlot();
    if (!translator) {
        translator = new QTranslator();
    }
    if (!QCoreApplication::instance()) {
        return;
    }
    QCoreApplication::removeTranslator(translator);
    if (code != QLatin1String("en")) {
        // A language without a translation file leaves the translator empty, so
        // the English source texts show.
        (void)translator->load(QStringLiteral(":/translations/lumora_%1.qm").arg(code));
        QCoreApplication::installTranslator(translator);
    }
    languageSlot() = code;
}

bool isJapanese() {
    return languageSlot() == QLatin1String("ja");
}

void releaseTranslator() {
    QTranslator*& translator = translatorSlot();
    if (!translator) {
        return;
    }
    if (QCoreApplication::instance()) {
        QCoreApplication::removeTranslator(translator);
    }
    delete translator;
    translator = nullptr;
}

const std::vector<LanguageEntry>& knownLanguages() {
    static const std::vector<LanguageEntry> languages = {
        {QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("ja"), QStringLiteral("日本語")},
        {QStringLiteral("es"), QStringLiteral("Español")},
        {QStringLiteral("ru"), QStringLiteral("Русский")},
        {QStringLiteral("pt"), QStringLiteral("Português")},
        {QStringLiteral("de"), QStringLiteral("Deutsch")},
        {QStringLiteral("fr"), QStringLiteral("Français")},
        {QStringLiteral("zh"), QStringLiteral("中文")},
        {QStringLiteral("ko"), QStringLiteral("한국어")},
        {QStringLiteral("tr"), QStringLiteral("Türkçe")},
    };
    return languages;
}

QFont appFont(qreal pointSize) {
    initLumoraResources();
    int& id = fontIdSlot();
    if (id < 0 && qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        // A failed load leaves -1, so the next request tries again.
        id = QFontDatabase::addApplicationFont(QStringLiteral(":/fonts/KleeOne-Lumora-Subset.ttf"));
    }
    QFont font;
    if (id >= 0) {
        const QStringList families = QFontDatabase::applicationFontFamilies(id);
        if (!families.isEmpty()) {
            font.setFamily(families.first());
        }
    }
    font.setPointSizeF(pointSize);
    return font;
}

void setPluginDataFolder(const QString& folder) {
    dataFolderSlot() = folder;
}

QString pluginDataFolder() {
    return dataFolderSlot();
}

QString imagePath(const QString& fileName) {
    QStringList candidates;
    if (!dataFolderSlot().isEmpty()) {
        candidates << QDir(dataFolderSlot()).filePath(QStringLiteral("images"));
    }
    candidates << QString::fromLatin1(kWindowsImagesFolder);
    for (const QString& folder : candidates) {
        const QString path = folder + QLatin1Char('/') + fileName;
        if (QFileInfo::exists(path)) {
            return path;
        }
    }
    return candidates.first() + QLatin1Char('/') + fileName;
}

QString characterImagePath(int n) {
    return imagePath(QStringLiteral("Tindra_%1.png").arg(n));
}

QString verdictLabel(int level) {
    const bool ja = isJapanese();
    switch (level) {
    case 0:
        return ja ? QStringLiteral("✅ 良好") : QStringLiteral("✅ Good");
    case 1:
        return ja ? QStringLiteral("⚠️ 注意") : QStringLiteral("⚠️ Caution");
    case 2:
        return ja ? QStringLiteral("❌ 警告") : QStringLiteral("❌ Warning");
    default:
        return QStringLiteral("—");
    }
}

} // namespace Lumora
