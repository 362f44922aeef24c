// The results page: what the user sees before scrolling must agree with the
// verdict, nothing offers "again" before a first time, and the cards speak the
// current language.

#include "ui/ResultsPage.h"
#include "diagnosis/DiagnosisResult.h"
#include "ui/AdviceCard.h"
#include "ui/Localisation.h"
#include "ui/ResultSummaryCard.h"

#include <QLabel>
#include <QPushButton>
#include <gtest/gtest.h>

namespace Lumora {
namespace {

DiagnosisItem item(const char* key, int32_t level) {
    DiagnosisItem i;
    i.key = key;
    i.level = level;
    i.titleEn = i.titleJa = key;
    return i;
}

TEST(ResultsFirstView, TheWorstVerdictComesFirstAndAgainOnlyAfterAFirstDiagnosis) {
    applyLanguage(QStringLiteral("en"));
    ResultsPage page(nullptr);
    EXPECT_EQ(page.rerunButton()->text(), QStringLiteral("🎤 Start diagnosis"));

    DiagnosisResult result;
    result.overall = kLevelWarning;
    result.items = {item("clipping", kLevelGood), item("volume", kLevelCaution),
                    item("noise", kLevelGood),    item("distance", kLevelWarning),
                    item("dynamics", kLevelGood), item("pop", kLevelCaution)};
    page.showResult(&result);
    ASSERT_EQ(page.cardCount(), 6);
    // Warning, then the cautions in their order, then the good ones in theirs.
    const char* expected[] = {"distance", "volume", "pop", "clipping", "noise", "dynamics"};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(page.card(i)->title(), QString::fromUtf8(expected[i])) << i;
    }
    EXPECT_EQ(page.rerunButton()->text(), QStringLiteral("🔄 Run diagnosis again"));
}

DiagnosisResult twoItemResult() {
    DiagnosisResult r;
    DiagnosisItem volume;
    volume.key = "volume";
    volume.level = 1;
    volume.titleJa = "ちょっと大きいかも？";
    volume.adviceJa = "音量を少し下げると安心！";
    volume.titleEn = "A bit loud?";
    volume.adviceEn = "Try turning it down just a touch!";
    volume.value = -9.5f;
    DiagnosisItem pop;
    pop.key = "pop";
    pop.level = 0;
    pop.titleJa = "ポップノイズは大丈夫！";
    pop.titleEn = "No pop noise issues!";
    pop.value = 4.0f;
    r.items = {volume, pop};
    r.overall = 1;
    r.valid = 1;
    r.summaryJa = "ちょっと気になるところがあるかも！";
    r.summaryEn = "A few small things to look at!";
    return r;
}

TEST(ResultsPage, CardsShowTheResultInTheCurrentLanguage) {
    ResultsPage page(nullptr);
    EXPECT_FALSE(page.placeholder()->isHidden());
    EXPECT_FALSE(page.applyButton()->isEnabled());
    const DiagnosisResult r = twoItemResult();
    page.showResult(&r);
    EXPECT_TRUE(page.placeholder()->isHidden());
    ASSERT_EQ(page.cardCount(), 2);
    EXPECT_EQ(page.card(0)->verdict(), QStringLiteral("⚠️ 注意"));
    EXPECT_EQ(page.card(0)->title(), QStringLiteral("ちょっと大きいかも？"));
    EXPECT_EQ(page.card(0)->valueText(), QStringLiteral("-9.5 dBFS"));
    EXPECT_EQ(page.card(1)->valueText(), QStringLiteral("+4.0 dB"));
    EXPECT_EQ(page.summaryCard()->summary(), QStringLiteral("ちょっと気になるところがあるかも！"));

    applyLanguage(QStringLiteral("en"));
    page.retranslateUi();
    ASSERT_EQ(page.cardCount(), 2);
    EXPECT_EQ(page.card(0)->heading(), QStringLiteral("🔊 Volume"));
    EXPECT_EQ(page.card(0)->verdict(), QStringLiteral("⚠️ Caution"));
    EXPECT_EQ(page.card(0)->title(), QStringLiteral("A bit loud?"));
    EXPECT_EQ(page.summaryCard()->summary(), QStringLiteral("A few small things to look at!"));
    applyLanguage(QStringLiteral("ja"));
    page.showResult(nullptr);
    EXPECT_EQ(page.cardCount(), 0);
}

} // namespace
} // namespace Lumora
