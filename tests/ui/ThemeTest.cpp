// The palette: text painted by the controls stays readable, and style sheets
// get exactly the colours they name.

#include "ui/Theme.h"
#include "PanelTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Lumora {
namespace {

using PanelTest::over;

// Painted text is never read at less than 4.5:1, whether its see-through
// ground sits on a white panel or on the sky's darkest lilac.
TEST(Theme, PaintedTextStandsOutOnWhatItIsDrawnOn) {
    for (const Palette::PaintedText& t : Palette::kPaintedTexts) {
        double worst = 21.0;
        for (QRgb behind : {Palette::kWhite, Palette::kSkyLilac}) {
            const QColor ground =
                over(Palette::colour(t.ground, t.groundAlpha), Palette::colour(behind));
            const QColor ink = over(Palette::colour(t.ink, t.inkAlpha), ground);
            worst = std::min(worst, contrastRatio(ink, ground));
        }
        EXPECT_GE(worst, 4.5) << t.where;
    }
}

TEST(Theme, StyleSheetsGetTheNamedColoursAndNothingElseChanges) {
    EXPECT_EQ(themed(QStringLiteral("QLabel { color: {ink}; background: {white@200}; }")),
              QStringLiteral("QLabel { color: #2d1b69; background: rgba(255,255,255,200); }"));
    // Unknown names, bad alphas and a sheet's own braces stay as written.
    for (const char* kept : {"{nosuch}", "{ink@256}", "{ink@}", "QFrame#a { }", "{", "{ink"}) {
        EXPECT_EQ(themed(QString::fromLatin1(kept)), QString::fromLatin1(kept)) << kept;
    }
    EXPECT_DOUBLE_EQ(contrastRatio(Qt::black, Qt::white), 21.0);
}

} // namespace
} // namespace Lumora
