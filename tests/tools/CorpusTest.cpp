// The diagnosis on take sets with known truth (tools/corpus): every asserted
// verdict right on every voice, and the recommended preset safe on the user's
// own takes (mutes no speech, lifts a noisy room's voice over the noise by
// 8 dB, never clips, reduces noise exactly when the noise verdict says so).

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

namespace {

TEST(Corpus, EveryAssertedVerdictRightAndEveryRecommendationSafe) {
    const std::string cmd = std::string(LUMORA_BINARY_DIR) + "/tools/lumora-corpus --check 2>&1";
    std::FILE* pipe = popen(cmd.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string table;
    std::array<char, 512> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe)) {
        table += line.data();
    }
    const int status = pclose(pipe);
    // The whole table goes into the log: it is the evidence, case by case.
    std::printf("%s", table.c_str());
    EXPECT_EQ(status, 0) << "a verdict was wrong or a recommendation unsafe (XX or UNSAFE above)";
    EXPECT_NE(table.find("corpus: "), std::string::npos);
    EXPECT_EQ(table.find("voices missing"), std::string::npos);
}

} // namespace
