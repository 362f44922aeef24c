#pragma once

#include "settings/JsonValue.h"

#include <string>
#include <string_view>

namespace Lumora {

// The settings file's own JSON text writer and parser. They are not general
// purpose: the writer's layout and number format are fixed byte for byte so that
// a file's checksum only depends on the document, and the parser reads exactly
// what the writer produces plus a few lenient extras (see parseJson).

// Renders a value: two-space indentation, object members in key order, numbers
// as integers when whole and below 1e14 in magnitude, otherwise as %g with six
// significant digits. Bytes from 0x20 up (UTF-8 included) are written raw; control
// bytes are escaped. Non-finite numbers, which JSON cannot carry, are written as
// null so that the text always parses again.
std::string renderJson(const JsonValue& value);

// Nesting deeper than this is rejected: the parser is recursive, and a hostile
// file must not be able to exhaust the stack.
constexpr int kMaxJsonDepth = 512;

struct JsonParseResult {
    bool ok = false;
    JsonValue value;
};

// Parses one value with optional white space around it. Any unexpected byte,
// trailing non-white-space text, or nesting deeper than kMaxJsonDepth gives ok
// false and a null value. Strings take their bytes raw; "\uXXXX" becomes "?".
JsonParseResult parseJson(std::string_view text);

} // namespace Lumora
