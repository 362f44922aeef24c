// The interface tests need one QApplication for the whole run, so this area
// brings its own main instead of gtest_main. Under Xvfb the real X11 platform
// is used; without a display, the offscreen one.

#include "ui/Localisation.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", qEnvironmentVariableIsEmpty("DISPLAY") ? "offscreen" : "xcb");
    }
    QApplication app(argc, argv);
    Lumora::setPluginDataFolder(QStringLiteral(LUMORA_SOURCE_DIR "/data"));
    return RUN_ALL_TESTS();
}
