#include "settings/JsonValue.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace Lumora {

namespace {

template <typename T>
const T& emptyOf() {
    static const T kEmpty{};
    return kEmpty;
}

} // namespace

bool JsonValue::boolValue() const {
    const bool* b = std::get_if<bool>(&data_);
    return b ? *b : false;
}

double JsonValue::numberValue() const {
    const double* x = std::get_if<double>(&data_);
    return x ? *x : 0.0;
}

const std::string& JsonValue::stringValue() const {
    const std::string* s = std::get_if<std::string>(&data_);
    return s ? *s : emptyOf<std::string>();
}

const JsonValue::Array& JsonValue::elements() const {
    const Array* a = std::get_if<Array>(&data_);
    return a ? *a : emptyOf<Array>();
}

const JsonValue::Object& JsonValue::members() const {
    const Object* o = std::get_if<Object>(&data_);
    return o ? *o : emptyOf<Object>();
}

JsonValue& JsonValue::set(const std::string& key, JsonValue value) {
    if (!isObject()) {
        data_ = Object{};
    }
    std::get<Object>(data_)[key] = std::move(value);
    return *this;
}

JsonValue& JsonValue::push(JsonValue value) {
    if (!isArray()) {
        data_ = Array{};
    }
    std::get<Array>(data_).push_back(std::move(value));
    return *this;
}

const JsonValue& member(const JsonValue& v, const std::string& key) {
    static const JsonValue kNull;
    if (!v.isObject()) {
        return kNull;
    }
    const auto it = v.members().find(key);
    return it == v.members().end() ? kNull : it->second;
}

bool asBool(const JsonValue& v, bool d) {
    return v.isBool() ? v.boolValue() : d;
}

float asFloat(const JsonValue& v, float d) {
    if (!v.isNumber()) {
        return d;
    }
    const double x = v.numberValue();
    if (!std::isfinite(x) || std::fabs(x) > static_cast<double>(FLT_MAX)) {
        return d;
    }
    return static_cast<float>(x);
}

float asClampedFloat(const JsonValue& v, float d, float lo, float hi) {
    double x = v.isNumber() ? v.numberValue() : static_cast<double>(d);
    if (std::isnan(x)) {
        x = d;
    }
    x = std::max(std::min(x, static_cast<double>(hi)), static_cast<double>(lo));
    return static_cast<float>(x);
}

int32_t asInt(const JsonValue& v, int32_t d) {
    if (!v.isNumber() || std::isnan(v.numberValue())) {
        return d;
    }
    const double x = std::trunc(v.numberValue());
    constexpr double kMin = std::numeric_limits<int32_t>::min();
    constexpr double kMax = std::numeric_limits<int32_t>::max();
    if (x <= kMin) {
        return std::numeric_limits<int32_t>::min();
    }
    if (x >= kMax) {
        return std::numeric_limits<int32_t>::max();
    }
    return static_cast<int32_t>(x);
}

std::string asString(const JsonValue& v, const std::string& d) {
    return v.isString() ? v.stringValue() : d;
}

size_t size(const JsonValue& v) {
    if (v.isArray()) {
        return v.elements().size();
    }
    if (v.isObject()) {
        return v.members().size();
    }
    return 0;
}

} // namespace Lumora
