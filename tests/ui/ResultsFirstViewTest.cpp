// The results page as it first opens: what the user sees before scrolling
// must agree with the verdict, and nothing offers "again" before a first time.

#include "diagnosis/DiagnosisResult.h"
#include "ui/AdviceCard.h"
#include "ui/Localisation.h"
#include "ui/ResultsPage.h"

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

    applyLanguage(QStringLiteral("ja"));
    page.showResult(nullptr);
    page.retranslateUi();
    EXPECT_EQ(page.rerunButton()->text(), QStringLiteral("🎤 診断をはじめる"));
    applyLanguage(QStringLiteral("en"));
}

} // namespace
} // namespace Lumora
