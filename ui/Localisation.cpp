#include "ui/Localisation.h"

#include <QCoreApplication>
#include <QTranslator>

namespace Lumora {

namespace {

QString& languageSlot() {
    static QString language = QStringLiteral("ja");
    return language;
}

QTranslator*& translatorSlot() {
    static QTranslator* translator = nullptr;
    return translator;
}

} // namespace

QString currentLanguage() { return languageSlot(); }

void applyLanguage(const QString& code) {
    QTranslator*& translator = translatorSlot();
    if (!translator) {
        translator = new QTranslator();
    }
    if (!QCoreApplication::instance()) {
        return;
    }
    QCoreApplication::removeTranslator(translator);
    if (code != QLatin1String("en")) {
        (void)translator->load(QStringLiteral(":/translations/lumora_%1.qm").arg(code));
        QCoreApplication::installTranslator(translator);
    }
    languageSlot() = code;
}

bool isJapanese() { return languageSlot() == QLatin1String("ja"); }

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

} // namespace Lumora
