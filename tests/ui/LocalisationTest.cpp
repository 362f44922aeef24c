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
    setPluginDataFolder(saved);
}

// Every source text of the translation file has its Japanese text at run time.
TEST(Localisation, EveryTranslatableTextHasItsJapanese) {
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
