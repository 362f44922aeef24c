// The embedded hand-written face is a subset of Klee One made from the texts of
// the day (scripts/make-font-subset.sh). A text added later with characters the
// subset lacks would be drawn in a fallback face in the middle of a sentence.

#include "ui/Localisation.h"

#include <QDir>
#include <QFile>
#include <QFontInfo>
#include <QRawFont>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include <set>

namespace Lumora {
namespace {

QString dataFolder() {
    return QStringLiteral(LUMORA_SOURCE_DIR "/data");
}

// Emoji and other pictographs (and their variation selectors) are left to the
// system's colour and symbol fonts by design; letters, digits, punctuation,
// maths and spaces must come from the hand-written face.
bool mustBeInFont(char32_t ucs4) {
    switch (QChar::category(ucs4)) {
    case QChar::Symbol_Other:
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Other_Control:
    case QChar::Other_Format:
        return false;
    default:
        return true;
    }
}

// Every text of the translation file (English source and Japanese translation,
// plural forms included) and every value of the locale files.
QStringList interfaceTexts() {
    QStringList texts;
    QFile ts(dataFolder() + QStringLiteral("/translations/lumora_ja.ts"));
    EXPECT_TRUE(ts.open(QIODevice::ReadOnly)) << ts.fileName().toStdString();
    QXmlStreamReader xml(&ts);
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement() &&
            (xml.name() == QLatin1String("source") || xml.name() == QLatin1String("translation"))) {
            texts << xml.readElementText(QXmlStreamReader::IncludeChildElements);
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();

    const QDir locale(dataFolder() + QStringLiteral("/locale"));
    for (const QString& name : locale.entryList({QStringLiteral("*.ini")}, QDir::Files)) {
        QFile ini(locale.filePath(name));
        EXPECT_TRUE(ini.open(QIODevice::ReadOnly | QIODevice::Text)) << name.toStdString();
        for (const QString& line : QString::fromUtf8(ini.readAll()).split(QLatin1Char('\n'))) {
            const int equals = line.indexOf(QLatin1Char('='));
            if (equals > 0) {
                texts << line.mid(equals + 1);
            }
        }
    }
    return texts;
}

TEST(FontSubset, CoversEveryTranslatedText) {
    // The interface's own loading path registers the resource and the face.
    const QFont face = appFont(12.0);
    QFile file(QStringLiteral(":/fonts/KleeOne-Lumora-Subset.ttf"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QRawFont raw(file.readAll(), 16.0);
    ASSERT_TRUE(raw.isValid());
    EXPECT_EQ(face.family(), raw.familyName());
    EXPECT_EQ(QFontInfo(face).family(), raw.familyName());

    const QStringList texts = interfaceTexts();
    EXPECT_GT(texts.size(), 500);
    std::set<char32_t> checked;
    for (const QString& text : texts) {
        QString missing;
        for (const char32_t ucs4 : text.toUcs4()) {
            if (mustBeInFont(ucs4) && !raw.supportsCharacter(ucs4)) {
                missing += QString::fromUcs4(&ucs4, 1);
            }
            checked.insert(ucs4);
        }
        EXPECT_TRUE(missing.isEmpty())
            << "not in the font subset: \"" << missing.toStdString() << "\" in \""
            << text.toStdString() << "\" (run scripts/make-font-subset.sh)";
    }
    // Kana and kanji were among them, so the walk saw the Japanese texts.
    EXPECT_TRUE(checked.count(U'あ') && checked.count(U'ア') && checked.count(U'音'));
}

} // namespace
} // namespace Lumora
