#include "settings/JsonText.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

namespace Lumora {

namespace {

constexpr int kIndent = 2;

void appendNumber(std::string& out, double x) {
    char buf[64];
    std::to_chars_result r{};
    if (!std::isfinite(x)) {
        out += "null";
        return;
    }
    if (x == std::trunc(x) && std::fabs(x) < 1e14) {
        // Whole numbers as integers; -0.0 becomes 0 on the way.
        r = std::to_chars(buf, buf + sizeof buf, static_cast<int64_t>(x));
    } else {
        // %g with six significant digits, independent of the process's locale
        // (the host may have switched the C locale to one with a decimal comma).
        r = std::to_chars(buf, buf + sizeof buf, x, std::chars_format::general, 6);
    }
    out.append(buf, r.ptr);
}

void appendString(std::string& out, const std::string& s) {
    static const char kHex[] = "0123456789abcdef";
    out += '"';
    for (const char c : s) {
        const auto b = static_cast<unsigned char>(c);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            if (b < 0x20) {
                out += "\\u00";
                out += kHex[b >> 4];
                out += kHex[b & 0xF];
            } else {
                out += c;
            }
        }
    }
    out += '"';
}

void appendIndent(std::string& out, int depth) {
    out.append(static_cast<size_t>(depth * kIndent), ' ');
}

void render(std::string& out, const JsonValue& v, int depth) {
    switch (v.kind()) {
    case JsonValue::Kind::Null:
        out += "null";
        return;
    case JsonValue::Kind::Bool:
        out += v.boolValue() ? "true" : "false";
        return;
    case JsonValue::Kind::Number:
        appendNumber(out, v.numberValue());
        return;
    case JsonValue::Kind::String:
        appendString(out, v.stringValue());
        return;
    case JsonValue::Kind::Array: {
        const auto& elements = v.elements();
        if (elements.empty()) {
            out += "[]";
            return;
        }
        out += "[\n";
        for (size_t i = 0; i < elements.size(); ++i) {
            appendIndent(out, depth + 1);
            render(out, elements[i], depth + 1);
            out += i + 1 < elements.size() ? ",\n" : "\n";
        }
        appendIndent(out, depth);
        out += ']';
        return;
    }
    case JsonValue::Kind::Object: {
        const auto& members = v.members();
        if (members.empty()) {
            out += "{}";
            return;
        }
        out += "{\n";
        size_t i = 0;
        for (const auto& [key, value] : members) {
            appendIndent(out, depth + 1);
            appendString(out, key);
            out += ": ";
            render(out, value, depth + 1);
            out += ++i < members.size() ? ",\n" : "\n";
        }
        appendIndent(out, depth);
        out += '}';
        return;
    }
    }
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// The white space of the C library's isspace in the "C" locale, spelled out so
// that the host's locale cannot change what the file means.
bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// What strtod gives for a literal too large or too small for a double: infinity
// or zero with the literal's sign. `span` is known to match the number grammar.
double outOfRangeValue(std::string_view span) {
    const bool negative = !span.empty() && span.front() == '-';
    size_t i = negative ? 1 : 0;
    // The decimal position of the first significant digit, plus the exponent.
    int64_t intDigits = 0;
    int64_t leadingFractionZeros = 0;
    bool seenSignificant = false;
    bool inFraction = false;
    for (; i < span.size() && (isDigit(span[i]) || span[i] == '.'); ++i) {
        if (span[i] == '.') {
            inFraction = true;
        } else if (!seenSignificant && span[i] == '0') {
            if (inFraction) {
                ++leadingFractionZeros;
            }
        } else {
            seenSignificant = true;
            if (!inFraction) {
                ++intDigits;
            }
        }
    }
    int64_t exponent = 0;
    if (i < span.size()) { // 'e' or 'E'
        ++i;
        bool negativeExponent = false;
        if (i < span.size() && (span[i] == '+' || span[i] == '-')) {
            negativeExponent = span[i] == '-';
            ++i;
        }
        for (; i < span.size(); ++i) {
            if (exponent < 1000000000) {
                exponent = exponent * 10 + (span[i] - '0');
            }
        }
        exponent = negativeExponent ? -exponent : exponent;
    }
    const int64_t magnitude = (intDigits > 0 ? intDigits : -leadingFractionZeros) + exponent;
    const double v = magnitude > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return negative ? -v : v;
}

class Parser {
public:
    explicit Parser(std::string_view text) : p_(text.data()), end_(text.data() + text.size()) {}

    bool parseDocument(JsonValue& out) {
        skipSpace();
        if (p_ == end_ || !parseValue(out)) {
            return false;
        }
        skipSpace();
        return p_ == end_;
    }

private:
    const char* p_;
    const char* end_;
    int depth_ = 0;

    void skipSpace() {
        while (p_ != end_ && isSpace(*p_)) {
            ++p_;
        }
    }

    bool parseValue(JsonValue& out) {
        skipSpace();
        if (p_ == end_) {
            return false;
        }
        switch (*p_) {
        case '{':
            return parseObject(out);
        case '[':
            return parseArray(out);
        case '"': {
            std::string s;
            if (!parseString(s)) {
                return false;
            }
            out = JsonValue(std::move(s));
            return true;
        }
        case 't':
            out = JsonValue(true);
            return parseLiteral("true");
        case 'f':
            out = JsonValue(false);
            return parseLiteral("false");
        case 'n':
            out = JsonValue();
            return parseLiteral("null");
        default:
            if (*p_ == '-' || isDigit(*p_)) {
                return parseNumber(out);
            }
            return false;
        }
    }

    bool parseLiteral(const char* word) {
        for (; *word; ++word, ++p_) {
            if (p_ == end_ || *p_ != *word) {
                return false;
            }
        }
        return true;
    }

    bool parseNumber(JsonValue& out) {
        const char* start = p_;
        if (*p_ == '-') {
            ++p_;
        }
        const char* digits = p_;
        while (p_ != end_ && isDigit(*p_)) {
            ++p_;
        }
        if (p_ == digits) {
            return false;
        }
        if (p_ != end_ && *p_ == '.') {
            ++p_;
            while (p_ != end_ && isDigit(*p_)) {
                ++p_;
            }
        }
        // An exponent counts only with at least one digit; a bare "e" is left for
        // the caller, which then rejects it as an unexpected byte.
        if (p_ != end_ && (*p_ == 'e' || *p_ == 'E')) {
            const char* q = p_ + 1;
            if (q != end_ && (*q == '+' || *q == '-')) {
                ++q;
            }
            if (q != end_ && isDigit(*q)) {
                while (q != end_ && isDigit(*q)) {
                    ++q;
                }
                p_ = q;
            }
        }
        double x = 0.0;
        const auto r = std::from_chars(start, p_, x, std::chars_format::general);
        if (r.ec == std::errc::result_out_of_range) {
            x = outOfRangeValue(std::string_view(start, static_cast<size_t>(p_ - start)));
        } else if (r.ec != std::errc() || r.ptr != p_) {
            return false;
        }
        out = JsonValue(x);
        return true;
    }

    bool parseString(std::string& out) {
        ++p_; // the opening quote
        while (p_ != end_) {
            const char c = *p_++;
            if (c == '"') {
                return true;
            }
            if (c != '\\') {
                out += c;
                continue;
            }
            if (p_ == end_) {
                return false;
            }
            const char e = *p_++;
            switch (e) {
            case 'b':
                out += '\b';
                break;
            case 'f':
                out += '\f';
                break;
            case 'n':
                out += '\n';
                break;
            case 'r':
                out += '\r';
                break;
            case 't':
                out += '\t';
                break;
            case 'u':
                // Code points are never decoded: the writer escapes only control
                // bytes this way, and those are not worth keeping.
                if (end_ - p_ < 4) {
                    return false;
                }
                p_ += 4;
                out += '?';
                break;
            default:
                // '"', '\\', '/' and, leniently, any other byte stand for themselves.
                out += e;
            }
        }
        return false;
    }

    bool enter() { return ++depth_ <= kMaxJsonDepth; }

    bool parseArray(JsonValue& out) {
        ++p_; // '['
        if (!enter()) {
            return false;
        }
        JsonValue::Array elements;
        skipSpace();
        if (p_ != end_ && *p_ == ']') {
            ++p_;
        } else {
            for (;;) {
                JsonValue element;
                if (!parseValue(element)) {
                    return false;
                }
                elements.push_back(std::move(element));
                skipSpace();
                if (p_ == end_) {
                    return false;
                }
                const char c = *p_++;
                if (c == ']') {
                    break;
                }
                if (c != ',') {
                    return false;
                }
            }
        }
        --depth_;
        out = JsonValue(std::move(elements));
        return true;
    }

    bool parseObject(JsonValue& out) {
        ++p_; // '{'
        if (!enter()) {
            return false;
        }
        JsonValue::Object members;
        skipSpace();
        if (p_ != end_ && *p_ == '}') {
            ++p_;
        } else {
            for (;;) {
                skipSpace();
                std::string key;
                if (p_ == end_ || *p_ != '"' || !parseString(key)) {
                    return false;
                }
                skipSpace();
                if (p_ == end_ || *p_ != ':') {
                    return false;
                }
                ++p_;
                JsonValue value;
                if (!parseValue(value)) {
                    return false;
                }
                members[std::move(key)] = std::move(value); // a later duplicate wins
                skipSpace();
                if (p_ == end_) {
                    return false;
                }
                const char c = *p_++;
                if (c == '}') {
                    break;
                }
                if (c != ',') {
                    return false;
                }
            }
        }
        --depth_;
        out = JsonValue(std::move(members));
        return true;
    }
};

} // namespace

std::string renderJson(const JsonValue& value) {
    std::string out;
    render(out, value, 0);
    return out;
}

JsonParseResult parseJson(std::string_view text) {
    JsonParseResult result;
    Parser parser(text);
    JsonValue value;
    if (parser.parseDocument(value)) {
        result.ok = true;
        result.value = std::move(value);
    }
    return result;
}

} // namespace Lumora
