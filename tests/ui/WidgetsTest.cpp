#include "PanelTestSupport.h"
#include "ui/GainFader.h"
#include "ui/KeyCap.h"
#include "ui/LevelMeter.h"
#include "ui/PanelTracker.h"
#include "ui/PeakHold.h"
#include "ui/SkyBackground.h"
#include "ui/Theme.h" // markPanel
#include "ui/WizardTips.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Lumora {
namespace {

// The peak jumps to a louder level, holds for fifteen updates, then follows the
// level until a louder one holds it again; levels stay on the meter's -60..0 dB
// and NaN reads as silence.
TEST(PeakHold, PeakHoldsFifteenUpdatesAndLevelsStayOnTheMeter) {
    PeakHold m;
    m.update(-12.0f);
    for (int i = 1; i <= 14; ++i) {
        m.update(-40.0f);
        EXPECT_FLOAT_EQ(m.peakDb, -12.0f) << "update " << i;
    }
    m.update(-40.0f); // the 15th
    EXPECT_FLOAT_EQ(m.peakDb, -40.0f);
    m.update(-45.0f);
    EXPECT_FLOAT_EQ(m.peakDb, -45.0f);
    m.update(-44.0f);
    m.update(-50.0f);
    EXPECT_FLOAT_EQ(m.peakDb, -44.0f);
    m.update(6.0f);
    EXPECT_FLOAT_EQ(m.levelDb, 0.0f);
    m.update(-96.0f);
    EXPECT_FLOAT_EQ(m.levelDb, -60.0f);
    m.update(std::numeric_limits<float>::quiet_NaN());
    EXPECT_FLOAT_EQ(m.levelDb, -60.0f);
    EXPECT_FLOAT_EQ(PeakHold::fraction(-30.0f), 0.5f);
}

TEST(LevelMeter, RepaintsOnlyWhenTheBarMoves) {
    LevelMeter meter(nullptr);
    meter.resize(200, 10);
    meter.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&meter));
    meter.setLevel(-20.0f);
    QTest::qWait(30);
    PanelTest::PaintCounter counter;
    meter.installEventFilter(&counter);
    for (int i = 0; i < 10; ++i) {
        meter.setLevel(-20.0f);
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(counter.paints, 0);
    meter.setLevel(-3.0f);
    QTest::qWait(30);
    EXPECT_GE(counter.paints, 1);
}

TEST(GainFader, DoubleClickResetsToZeroAndTellsTheUser) {
    GainFader fader(nullptr);
    fader.resize(140, 22);
    fader.setValue(6.0f);
    QSignalSpy spy(&fader, &GainFader::valueChanged);
    QTest::mouseDClick(&fader, Qt::LeftButton);
    EXPECT_FLOAT_EQ(fader.value(), 0.0f);
    ASSERT_GE(spy.count(), 1);
    EXPECT_FLOAT_EQ(spy.last().at(0).toFloat(), 0.0f);
}

TEST(WizardTips, TipsRotateEveryFiveSecondsInTheChosenLanguage) {
    const auto tips = WizardTips::tipsFor(5, kMicCondenser);
    ASSERT_GE(tips.size(), 3u);
    EXPECT_EQ(WizardTips::tipAt(5, kMicCondenser, 0.0, "en"), tips[0].en);
    EXPECT_EQ(WizardTips::tipAt(5, kMicCondenser, 4.9, "en"), tips[0].en);
    EXPECT_EQ(WizardTips::tipAt(5, kMicCondenser, 5.0, "ja"), tips[1].ja);
    EXPECT_EQ(WizardTips::tipAt(5, kMicCondenser, 5.0 * tips.size(), "de"), tips[0].en);
    EXPECT_TRUE(WizardTips::tipsFor(0, kMicDynamic).empty());
    EXPECT_TRUE(WizardTips::tipAt(6, kMicDynamic, 1.0, "en").empty());
    // Every take has tips for every mic type, and English ones are English.
    for (int step = 1; step <= 5; ++step) {
        for (int mic = 0; mic < 4; ++mic) {
            for (const auto& tip : WizardTips::tipsFor(step, mic)) {
                for (unsigned char ch : std::string(tip.en)) {
                    EXPECT_FALSE(ch >= 0xE3 && ch <= 0xE9) << tip.en;
                }
            }
            EXPECT_GE(WizardTips::tipsFor(step, mic).size(), 3u);
        }
    }
}

TEST(SkyBackground, OnlyMovedSpritesAreRepainted) {
    SkyBackground sky;
    QPixmap star(32, 32);
    star.fill(Qt::yellow);
    QPixmap cloud(100, 60);
    cloud.fill(Qt::white);
    sky.setPixmaps(star, star, cloud);
    sky.setSize(QSize(500, 776), 1.0);
    sky.layoutStars();
    sky.layoutClouds();
    EXPECT_TRUE(sky.takeChangedRegion(0.0f).contains(QRect(0, 0, 500, 776)));
    const QRegion again = sky.takeChangedRegion(0.0f);
    for (const QRect& r : again) {
        ADD_FAILURE() << r.x() << "," << r.y() << " " << r.width() << "x" << r.height();
    }
    sky.advance(0.1f); // about 2 px along x
    const QRegion moved = sky.takeChangedRegion(0.0f);
    EXPECT_FALSE(moved.isEmpty());
    qint64 area = 0;
    for (const QRect& r : moved) {
        area += static_cast<qint64>(r.width()) * r.height();
    }
    EXPECT_LT(area, 500 * 776 / 2); // the stars and clouds, not the whole sky
}

TEST(PanelTracker, CoversVisiblePanelsClippedByTheirContainers) {
    QWidget window;
    window.resize(200, 200);
    auto* viewport = new QWidget(&window);
    viewport->setGeometry(50, 50, 100, 100);
    auto* card = new QWidget(viewport);
    card->setGeometry(0, -20, 100, 60); // scrolled partly out of view
    markPanel(card, 14);
    auto* hidden = new QWidget(&window);
    hidden->setGeometry(0, 0, 40, 40);
    markPanel(hidden, 0);
    auto* plain = new QWidget(&window);
    plain->setGeometry(0, 160, 40, 40);
    window.show();
    hidden->hide();
    PanelTracker tracker;
    tracker.collect(&window);
    EXPECT_EQ(tracker.count(), 2u);
    EXPECT_EQ(tracker.region(&window), QRegion(QRect(50, 50, 100, 40)));
    delete card; // a panel that went away is skipped
    EXPECT_TRUE(tracker.region(&window).isEmpty());
}

} // namespace
} // namespace Lumora

// A key cap's name: a combined voice on two lines split before its "＋", each
// line at a readable size (a shrinking name was cut off inside OBS).
TEST(KeyCap, CombinedVoiceNamesStandOnTwoLines) {
    EXPECT_EQ(
        Lumora::KeyCap::nameLines(QStringLiteral("コンピューターシステム＋FMラジオ")),
        QStringList({QStringLiteral("コンピューターシステム"), QStringLiteral("＋FMラジオ")}));
    EXPECT_EQ(Lumora::KeyCap::nameLines(QStringLiteral("Robot + Radio")),
              QStringList({QStringLiteral("Robot"), QStringLiteral("+ Radio")}));
    EXPECT_EQ(Lumora::KeyCap::nameLines(QStringLiteral("デスゲーム")),
              QStringList({QStringLiteral("デスゲーム")}));
    EXPECT_EQ(Lumora::KeyCap::nameLines(QStringLiteral("＋ only")),
              QStringList({QStringLiteral("＋ only")}));
}
