// What a call raised, as text.
#pragma once

#include "host/embedding.h"

#include <functional>
#include <string>

namespace axlink2::test {

// The identifier of what `action` raises; empty when it raises nothing.
inline std::string errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (...) {
        return velmar::describeError(std::current_exception()).identifier;
    }
    return {};
}

// The same with the message's text.
inline velmar::ErrorText describedErrorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (...) {
        return velmar::describeError(std::current_exception());
    }
    return {};
}

} // namespace axlink2::test
