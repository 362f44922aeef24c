// The interface tests need one QApplication for the whole run, so this area
// brings its own main instead of gtest_main. Under Xvfb the real X11 platform
// is used; without a display, the offscreen one.

#include "ui/Localisation.h"

#include <QApplication>
#include <gtest/gtest.h>

namespace {

// Every test starts in Japanese, the users' first language, with no host style
// sheet: a test that stops in the middle of an English or styled walk cannot
// pass its language or styles on to the tests after it.
struct FreshInterface : ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo&) override {
        Lumora::applyLanguage(QStringLiteral("ja"));
        qApp->setStyleSheet(QString());
    }
};

} // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", qEnvironmentVariableIsEmpty("DISPLAY") ? "offscreen" : "xcb");
    }
    QApplication app(argc, argv);
    Lumora::setPluginDataFolder(QStringLiteral(LUMORA_SOURCE_DIR "/data"));
    ::testing::UnitTest::GetInstance()->listeners().Append(new FreshInterface);
    return RUN_ALL_TESTS();
}
