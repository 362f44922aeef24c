// The settings file's JSON writer and parser: the exact bytes written, and what
// the parser does with everything from good text to hostile bytes.

#include "settings/JsonText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace Lumora;

namespace {

std::string number(double x) {
    return renderJson(JsonValue(x));
}

JsonValue parsed(std::string_view text) {
    const JsonParseResult r = parseJson(text);
    EXPECT_TRUE(r.ok) << text;
    return r.value;
}

bool refused(std::string_view text) {
    const JsonParseResult r = parseJson(text);
    return !r.ok && r.value.isNull();
}

} // namespace

TEST(JsonWriter, NumbersAreIntegersWhenWholeElseSixSignificantDigits) {
    EXPECT_EQ(number(-55), "-55");
    EXPECT_EQ(number(0.5), "0.5");
    EXPECT_EQ(number(static_cast<double>(0.3f)), "0.3");
    EXPECT_EQ(number(123456.7), "123457");
    EXPECT_EQ(number(99999999999999.0), "99999999999999"); // just below 1e14: integer
    EXPECT_EQ(number(1e14), "1e+14");
}

TEST(JsonWriter, NonFiniteNumbersBecomeNullSoTheTextStillParses) {
    EXPECT_EQ(number(std::nan("")), "null");
    EXPECT_EQ(number(HUGE_VAL), "null");
    EXPECT_EQ(number(-HUGE_VAL), "null");
}

// Every kind of value, the bytes the writer must escape and the ones it must
// not (raw UTF-8: the parser would turn a \u escape into "?"), back as they were.
TEST(JsonParser, ReadsWhatTheWriterWrites) {
    JsonValue root = JsonValue::object();
    root.set("name", "配信 \"声\"\t\\/\n\r\x7f\xff");
    root.set("values", JsonValue::array()
                           .push(-55)
                           .push(0.25)
                           .push(1e15)
                           .push(false)
                           .push(JsonValue::object())
                           .push(JsonValue::array()));
    root.set("nested", JsonValue::object().set("x", nullptr));
    root.set("\xc3\xa9", true);
    EXPECT_EQ(parsed(renderJson(root)), root);
    // Control bytes are escaped, so the file stays text.
    EXPECT_EQ(renderJson(JsonValue(std::string("\0\x01\x1f", 3))), "\"\\u0000\\u0001\\u001f\"");
}

TEST(JsonParser, StringEscapes) {
    EXPECT_EQ(parsed(R"("\"\\\/\b\f\n\r\t")").stringValue(), "\"\\/\b\f\n\r\t");
    // \u is never decoded: four characters are skipped and one "?" stands for them.
    EXPECT_EQ(parsed(R"("a\u0001b")").stringValue(), "a?b");
    EXPECT_EQ(parsed(R"("\u00e9\uD83D\uDE00")").stringValue(), "???");
    EXPECT_EQ(parsed(R"("\uzz}]")").stringValue(), "?");
    // Raw bytes, valid UTF-8 or not, control bytes and NUL included, are copied.
    EXPECT_EQ(parsed("\"\xe5\xa3\xb0\"").stringValue(), "\xe5\xa3\xb0");
    EXPECT_EQ(parsed("\"\xff\xfe\xc3\"").stringValue(), "\xff\xfe\xc3");
    EXPECT_EQ(parsed(std::string("\"a\0b\tc\"", 7)).stringValue(), std::string("a\0b\tc", 5));
    // An unknown escape letter stands for itself.
    EXPECT_EQ(parsed(R"("\q")").stringValue(), "q");
}

TEST(JsonParser, NumbersAndLiterals) {
    EXPECT_EQ(parsed("-12.5e1").numberValue(), -125.0);
    EXPECT_EQ(parsed("0.3").numberValue(), 0.3);
    EXPECT_EQ(parsed("007").numberValue(), 7.0);
    EXPECT_EQ(parsed("1.").numberValue(), 1.0);
    EXPECT_EQ(parsed("2E+2").numberValue(), 200.0);
    EXPECT_EQ(parsed("true"), JsonValue(true));
    EXPECT_EQ(parsed("false"), JsonValue(false));
    EXPECT_TRUE(parsed("null").isNull());
    for (const char* bad : {"-", "+1", ".5", "1e", "tru", "nul", "True"}) {
        EXPECT_TRUE(refused(bad)) << bad;
    }
}

TEST(JsonParser, HugeAndTinyNumbersBehaveLikeStrtod) {
    EXPECT_EQ(parsed("1e999").numberValue(), HUGE_VAL);
    EXPECT_EQ(parsed("-1e999").numberValue(), -HUGE_VAL);
    EXPECT_EQ(parsed("1e-999").numberValue(), 0.0);
    EXPECT_EQ(parsed("0.000000000000000000001e-400").numberValue(), 0.0);
    EXPECT_EQ(parsed("123456789012345678901234567890e300").numberValue(), HUGE_VAL);
    EXPECT_EQ(parsed("1e99999999999999999999999").numberValue(), HUGE_VAL);
    const std::string manyDigits = std::string(5000, '9');
    EXPECT_EQ(parsed(manyDigits).numberValue(), HUGE_VAL);
    EXPECT_EQ(parsed("0." + std::string(5000, '0') + "1").numberValue(), 0.0);
}

TEST(JsonParser, ObjectsAndArrays) {
    const JsonValue v = parsed(" {\"a\" : [1 ,2,{}],\r\n\t\"b\":{\"c\":[]}, \"a\": 3}\n ");
    EXPECT_EQ(member(v, "a").numberValue(), 3.0); // a later duplicate wins
    EXPECT_EQ(size(v), 2u);
    EXPECT_TRUE(member(member(v, "b"), "c").isArray());
    for (const char* bad : {"{\"a\":1,}", "[1,]", "[1 2]", "{\"a\" 1}", "{a:1}", "{1:1}"}) {
        EXPECT_TRUE(refused(bad)) << bad;
    }
}

TEST(JsonParser, DamagedOrForeignTextIsRefusedCleanly) {
    const std::string good = renderJson(
        JsonValue::object().set("name", "配信").set("list", JsonValue::array().push(1).push(2)));
    // Every truncation of a good document, the empty text first, is refused and
    // none crashes.
    for (size_t n = 0; n < good.size(); ++n) {
        EXPECT_TRUE(refused(std::string_view(good).substr(0, n))) << n;
    }
    EXPECT_TRUE(refused("   \n\t"));
    EXPECT_TRUE(refused("\xEF\xBB\xBF{}"));              // a byte-order mark
    EXPECT_TRUE(refused(std::string("{}\0", 3)));        // a NUL after the document
    EXPECT_TRUE(refused(std::string("{\0\"a\":1}", 8))); // a NUL inside
    EXPECT_TRUE(refused("{} {}"));                       // two documents
    EXPECT_TRUE(refused("\"unterminated"));
    EXPECT_TRUE(refused("\"ends in escape\\"));
    EXPECT_TRUE(refused("\"short \\u12"));
    EXPECT_TRUE(refused("\xff\xfe"));
    // Carriage returns are white space between tokens.
    EXPECT_EQ(parsed("{\r\n  \"a\": 1\r\n}"), JsonValue::object().set("a", 1));
}

TEST(JsonParser, NestingIsLimitedTo512Levels) {
    const auto nested = [](int depth, char open, char close) {
        return std::string(static_cast<size_t>(depth), open) +
               std::string(static_cast<size_t>(depth), close);
    };
    EXPECT_TRUE(parseJson(nested(kMaxJsonDepth, '[', ']')).ok);
    EXPECT_TRUE(refused(nested(kMaxJsonDepth + 1, '[', ']')));
    std::string objects;
    for (int i = 0; i < kMaxJsonDepth; ++i) {
        objects += "{\"k\":";
    }
    objects += "1" + std::string(kMaxJsonDepth, '}');
    EXPECT_TRUE(parseJson(objects).ok);
    EXPECT_TRUE(refused("[" + objects + "]"));
    // A hostile file nests far deeper; it must be refused, not overflow the stack.
    EXPECT_TRUE(refused(std::string(1000000, '[')));
    EXPECT_TRUE(refused(nested(100000, '[', ']')));
}
