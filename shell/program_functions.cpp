// Functions that act: time, errors, listeners.
#include "host/axlink.h"
#include "shell/errors.h"
#include "shell/format.h"
#include "shell/function_handles.h"
#include "shell/functions.h"
#include "shell/interpreter.h"

#include <chrono>
#include <cstdio>
#include <optional>

namespace velsh {

namespace {

using Clock = std::chrono::steady_clock;
std::optional<Clock::time_point> started;

Values ticFunction(const Call&) {
    started = Clock::now();
    return {};
}

Values tocFunction(const Call& call) {
    if (!started) raise("toc", "\"toc\" needs a \"tic\" before it.");
    const double seconds = std::chrono::duration<double>(Clock::now() - *started).count();
    if (call.outputCount > 0) return {number(seconds)};
    char text[64];
    std::snprintf(text, sizeof text, "Elapsed time is %.6f seconds.\n", seconds);
    print(text);
    return {};
}

// Component:key, without blanks.
bool isIdentifier(const std::string& text) {
    return text.find(':') != std::string::npos && text.back() != ':' &&
           text.find_first_of(" \t\n\\%") == std::string::npos;
}

// error(text), error(format, values...), error(identifier, format, values...).
Values errorFunction(const Call& call) {
    if (call.count() == 1 && hxGetClassID(call[0]) == hxSTRUCT_CLASS) rethrowStruct(call[0]);
    const std::string first = narrowTextOf(call[0], "The message");
    if (call.count() == 1) velmar::raiseError("VELMAR:error", first);
    if (!isIdentifier(first))
        velmar::raiseError("VELMAR:error", formatText(first, call.inputs.subspan(1)));
    velmar::raiseError(first,
                       formatText(narrowTextOf(call[1], "The message"), call.inputs.subspan(2)));
}

Values addlistenerFunction(const Call& call) {
    return {addListener(call[0], narrowTextOf(call[1], "The name of an event"), call[2])};
}

struct Option {
    const char* name;
    unsigned char (*get)();
    void (*set)(bool on);
};
constexpr Option options[] = {
    {"SafeArraySingleDim", axlink::SafeArraySingleDim, axlink::setSafeArraySingleDim},
    {"PassSafeArrayByRef", axlink::PassSafeArrayByRef, axlink::setPassSafeArrayByRef},
};

// axlinkoption(name), axlinkoption(name, value): the value, or the one before.
Values axlinkoptionFunction(const Call& call) {
    const std::string name = narrowTextOf(call[0], "The name of an option");
    std::string known;
    for (const Option& option : options) {
        known += (known.empty() ? "\"" : ", \"") + std::string(option.name) + "\"";
        if (name != option.name) continue;
        const Value before = logical(option.get() != 0);
        if (call.count() == 2) option.set(scalarOf(call[1], "The value of an option") != 0);
        return {before};
    }
    raise("axlinkoption", "There is no option \"" + name + "\". The options are " + known + ".");
}

// Objects with a method of that name never come here.
Values deleteFunction(const Call& call) {
    if (!isListener(call[0])) raiseWrongType("\"delete\" takes an object", call[0]);
    removeListener(call[0]);
    return {};
}

constexpr FunctionRow rows[] = {
    {"tic", 0, 0, ticFunction},
    {"toc", 0, 0, tocFunction},
    {"error", 1, anyNumber, errorFunction},
    {"rethrow", 1, 1, [](const Call& call) -> Values { rethrowStruct(call[0]); }},
    {"addlistener", 3, 3, addlistenerFunction},
    {"axlinkoption", 1, 2, axlinkoptionFunction},
    {"delete", 1, 1, deleteFunction},
};

} // namespace

std::span<const FunctionRow> programFunctions() { return rows; }

} // namespace velsh
