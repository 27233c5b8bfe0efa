// GUIDs from their text form, at compile time.
#pragma once

#include "platform/com.h"

#include <string_view>

namespace kit {

// The GUID of a text such as "00020400-0000-0000-C000-000000000046"; anything else doesn't compile.
consteval GUID guid(std::string_view text) {
    if (text.size() != 36) throw "a GUID has 36 characters";
    std::size_t at = 0;
    auto digits = [&](int count) {
        unsigned value = 0;
        for (; count > 0; ++at) {
            const char c = text[at];
            if (c == '-') continue;
            const bool decimal = c >= '0' && c <= '9';
            const bool upper = c >= 'A' && c <= 'F';
            const bool lower = c >= 'a' && c <= 'f';
            if (!decimal && !upper && !lower) throw "not a hexadecimal digit";
            const int digit = decimal ? c - '0' : upper ? c - 'A' + 10 : c - 'a' + 10;
            value = value * 16 + static_cast<unsigned>(digit);
            --count;
        }
        return value;
    };
    GUID result{};
    result.Data1 = digits(8);
    result.Data2 = static_cast<decltype(result.Data2)>(digits(4));
    result.Data3 = static_cast<decltype(result.Data3)>(digits(4));
    for (auto& byte : result.Data4)
        byte = static_cast<std::remove_reference_t<decltype(byte)>>(digits(2));
    return result;
}

} // namespace kit
