#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace Lumora {

// The value model of the settings file: null, bool, number, string, array or
// object. Object members are kept sorted by key, byte-wise (std::string compares
// its chars as unsigned), and each key occurs once.
class JsonValue {
public:
    // The numbers are the tags as stored; do not reorder.
    enum class Kind : uint8_t { Null = 0, Bool = 1, Number = 2, String = 3, Array = 4, Object = 5 };
    using Array = std::vector<JsonValue>;
    using Object = std::map<std::string, JsonValue>;

    JsonValue() = default;
    JsonValue(std::nullptr_t) {}
    JsonValue(bool b) : data_(b) {}
    JsonValue(double x) : data_(x) {}
    JsonValue(int x) : data_(static_cast<double>(x)) {}
    JsonValue(const char* s) : data_(std::string(s)) {}
    JsonValue(std::string s) : data_(std::move(s)) {}
    JsonValue(Array a) : data_(std::move(a)) {}
    JsonValue(Object o) : data_(std::move(o)) {}

    static JsonValue array() { return JsonValue(Array{}); }
    static JsonValue object() { return JsonValue(Object{}); }

    Kind kind() const { return static_cast<Kind>(data_.index()); }
    bool isNull() const { return kind() == Kind::Null; }
    bool isBool() const { return kind() == Kind::Bool; }
    bool isNumber() const { return kind() == Kind::Number; }
    bool isString() const { return kind() == Kind::String; }
    bool isArray() const { return kind() == Kind::Array; }
    bool isObject() const { return kind() == Kind::Object; }

    // The payloads. Each is empty (false, 0, an empty container) unless the value
    // is of that kind.
    bool boolValue() const;
    double numberValue() const;
    const std::string& stringValue() const;
    const Array& elements() const;
    const Object& members() const;

    // Building. `set` turns a non-object into an empty object first and replaces
    // an existing member; `push` does the same for arrays.
    JsonValue& set(const std::string& key, JsonValue value);
    JsonValue& push(JsonValue value);

    bool operator==(const JsonValue& other) const { return data_ == other.data_; }
    bool operator!=(const JsonValue& other) const { return !(*this == other); }

private:
    // The alternatives stand in the order of Kind. A variant keeps a value small
    // (a parsed file of many tiny values must not cost much more than its text).
    std::variant<std::monostate, bool, double, std::string, Array, Object> data_;
};

// Reading helpers: each takes a value and a default and never fails.

// The member's value if `v` is an object holding `key`; otherwise a shared null.
const JsonValue& member(const JsonValue& v, const std::string& key);
// The bool if `v` is a bool, else `d`. A number 1 is not a bool.
bool asBool(const JsonValue& v, bool d);
// The number as a 32-bit float if `v` is a number that a float can hold, else `d`.
// Infinite numbers (an overflowing literal such as 1e999) and numbers beyond the
// float range take the default: they would otherwise be written back as text the
// parser cannot read.
float asFloat(const JsonValue& v, float d);
// The number clamped to [lo, hi] before it is narrowed to float; a value that is
// not a number takes `d` before clamping. Huge numbers land on the bound.
float asClampedFloat(const JsonValue& v, float d, float lo, float hi);
// The number truncated toward zero to a 32-bit integer if `v` is a number, else
// `d`. Numbers beyond the 32-bit range saturate at its ends.
int32_t asInt(const JsonValue& v, int32_t d);
// The string if `v` is a string, else `d`.
std::string asString(const JsonValue& v, const std::string& d);
// Element count of an array, member count of an object, 0 otherwise.
size_t size(const JsonValue& v);

} // namespace Lumora
