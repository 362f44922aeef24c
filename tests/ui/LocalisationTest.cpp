#include "ui/Localisation.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

namespace Lumora {
namespace {

QString dataFolder() {
    return QStringLiteral(LUMORA_SOURCE_DIR "/data");
}

struct LanguageGuard {
    ~LanguageGuard() { applyLanguage(QStringLiteral("ja")); }
};

TEST(Localisation, LanguagesSwitchTheTranslator) {
    LanguageGuard guard;
    applyLanguage(QStringLiteral("ja"));
    EXPECT_TRUE(isJapanese());
    EXPECT_EQ(QCoreApplication::translate("Lumora::MainTabBar", "Diagnose"),
              QStringLiteral("診断"));

    applyLanguage(QStringLiteral("en"));
    EXPECT_EQ(currentLanguage(), QStringLiteral("en"));
    EXPECT_EQ(currentLanguageCode(), "en");
    EXPECT_FALSE(isJapanese());
    EXPECT_EQ(QCoreApplication::translate("Lumora::MainTabBar", "Diagnose"),
              QStringLiteral("Diagnose"));

    // A language without a translation file shows the English sources.
    applyLanguage(QStringLiteral("de"));
    EXPECT_EQ(currentLanguage(), QStringLiteral("de"));
    EXPECT_FALSE(isJapanese());
    EXPECT_EQ(QCoreApplication::translate("Lumora::MainTabBar", "Presets"),
              QStringLiteral("Presets"));
}

TEST(Localisation, VerdictLabelsFollowTheJapaneseTest) {
    LanguageGuard guard;
    applyLanguage(QStringLiteral("ja"));
    EXPECT_EQ(verdictLabel(0), QStringLiteral("✅ 良好"));
    EXPECT_EQ(verdictLabel(1), QStringLiteral("⚠️ 注意"));
    EXPECT_EQ(verdictLabel(2), QStringLiteral("❌ 警告"));
    EXPECT_EQ(verdictLabel(3), QStringLiteral("—"));
    applyLanguage(QStringLiteral("fr"));
    EXPECT_EQ(verdictLabel(0), QStringLiteral("✅ Good"));
    EXPECT_EQ(verdictLabel(1), QStringLiteral("⚠️ Caution"));
    EXPECT_EQ(verdictLabel(2), QStringLiteral("❌ Warning"));
    EXPECT_EQ(verdictLabel(-1), QStringLiteral("—"));
}

TEST(Localisation, MenuListsTenLanguagesInOrder) {
    const auto& languages = knownLanguages();
    ASSERT_EQ(languages.size(), 10u);
    const char* codes[] = {"en", "ja", "es", "ru", "pt", "de", "fr", "zh", "ko", "tr"};
    for (size_t i = 0; i < languages.size(); ++i) {
        EXPECT_EQ(languages[i].code, QLatin1String(codes[i]));
    }
    EXPECT_EQ(languages[1].nativeName, QStringLiteral("日本語"));
    EXPECT_EQ(languages[9].nativeName, QStringLiteral("Türkçe"));
}

TEST(Localisation, ImagesAreFoundInThePluginDataFolderOrFailSoftly) {
    const QString saved = pluginDataFolder();
    setPluginDataFolder(dataFolder());
    const QString bg = imagePath(QStringLiteral("BG.png"));
    EXPECT_TRUE(QFileInfo::exists(bg)) << bg.toStdString();
    EXPECT_TRUE(characterImagePath(2).endsWith(QStringLiteral("/Tindra_2.png")));
    EXPECT_TRUE(QFileInfo::exists(characterImagePath(0)));
    // Missing: the first candidate all the same.
    EXPECT_EQ(imagePath(QStringLiteral("nope.png")),
              dataFolder() + QStringLiteral("/images/nope.png"));
    setPluginDataFolder(QString());
    EXPECT_EQ(
        imagePath(QStringLiteral("nope.png")),
        QStringLiteral("C:/Program Files/obs-studio/data/obs-plugins/Lumora/images/nope.png"));
    setPluginDataFolder(saved);
}

TEST(Localisation, HandwrittenFontComesFromTheResourceOrFallsBack) {
    const QFont font = appFont(13);
    EXPECT_DOUBLE_EQ(font.pointSizeF(), 13.0);
    if (QFile::exists(QStringLiteral(":/fonts/Yomogi-Regular.ttf"))) {
        EXPECT_EQ(font.family(), QStringLiteral("Klee One"));
    } else {
        EXPECT_EQ(font.family(), QFont().family());
    }
    EXPECT_TRUE(QFile::exists(QStringLiteral(":/translations/lumora_ja.qm")));
    EXPECT_TRUE(QFile::exists(QStringLiteral(":/images/BG.png")));
}

// Every source text of the translation file has its Japanese text at run time.
TEST(Localisation, EveryTranslatableTextHasItsJapanese) {
    LanguageGuard guard;
    applyLanguage(QStringLiteral("ja"));
    QFile ts(dataFolder() + QStringLiteral("/translations/lumora_ja.ts"));
    ASSERT_TRUE(ts.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&ts);
    QString context;
    QString source;
    int checked = 0;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement()) {
            continue;
        }
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            const QString expected = xml.readElementText();
            EXPECT_FALSE(expected.isEmpty()) << source.toStdString();
            EXPECT_EQ(QCoreApplication::translate(context.toUtf8().constData(),
                                                  source.toUtf8().constData()),
                      expected)
                << context.toStdString() << ": " << source.toStdString();
            ++checked;
        }
    }
    EXPECT_FALSE(xml.hasError());
    EXPECT_GT(checked, 60);
}

} // namespace
} // namespace Lumora
