// The dialog on a screen shorter than the window: a 1366 x 768 laptop, or
// 1080p at 150 %. The window shrinks to fit and its pages scroll inside it.

#include "ui/HomePanel.h"
#include "ui/WizardDialog.h"

#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <gtest/gtest.h>

namespace Lumora {
namespace {

TEST(SmallScreen, TheWindowFitsAndEveryPartCanBeScrolledTo) {
    WizardDialog dialog(nullptr, nullptr);
    dialog.show(); // sizes itself for the test display, which is tall enough
    dialog.fitToHeight(768 - 40 - WizardDialog::kWindowFrameAllowance); // taskbar, title bar
    EXPECT_LE(dialog.height(), 768 - 40 - WizardDialog::kWindowFrameAllowance);
    QScrollBar* bar = dialog.frame()->verticalScrollBar();
    EXPECT_GE(bar->maximum(), WizardDialog::kHeight - dialog.height() - 1);

    // The diagnose tab's start button and the tab bar at the bottom can both be
    // brought into the window.
    QWidget* start = dialog.homePanel()->startButton();
    dialog.frame()->ensureWidgetVisible(start);
    const QRect inWindow(start->mapTo(&dialog, QPoint(0, 0)), start->size());
    EXPECT_TRUE(dialog.rect().contains(inWindow)) << inWindow.y();
    bar->setValue(bar->maximum());
    EXPECT_EQ(bar->value(), bar->maximum());

    // Enough room: the designed size, nothing to scroll.
    dialog.fitToHeight(1000);
    EXPECT_EQ(dialog.size(), QSize(WizardDialog::kWidth, WizardDialog::kHeight));
    EXPECT_EQ(dialog.frame()->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
}

} // namespace
} // namespace Lumora
