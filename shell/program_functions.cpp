// Functions that act: time, errors, listeners, files.
#include "host/axlink.h"
#include "host/text.h"
#include "platform/file_replacement.h"
#include "shell/errors.h"
#include "shell/format.h"
#include "shell/function_handles.h"
#include "shell/functions.h"
#include "shell/interpreter.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <random>

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

// A path for a file that isn't there, in the system's folder for such files.
Values tempnameFunction(const Call&) {
    std::random_device random;
    std::filesystem::path path;
    do {
        path = std::filesystem::temp_directory_path() /
               ("velsh-" + std::to_string(random()) + std::to_string(random()));
    } while (std::filesystem::exists(path));
    const std::u8string text = path.generic_u8string();
    return {charText(std::string(text.begin(), text.end()))};
}

void deleteFile(const std::string& name) {
    const std::filesystem::path path = platform::pathOf(platform::toOle(name));
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        raise("delete", "\"" + name + "\" is a folder: only files are deleted.");
    if (!std::filesystem::remove(path, error))
        raise("delete", "\"" + name + "\" can't be deleted" +
                            (error ? ": " + error.message() : " as it isn't there") + ".");
}

// Of a listener or of a file. Objects with a method of that name never come here.
Values deleteFunction(const Call& call) {
    if (isListener(call[0]))
        removeListener(call[0]);
    else if (hoststring::isScalarText(call[0], true, true))
        deleteFile(narrowTextOf(call[0], "The name of a file"));
    else
        raiseWrongType("\"delete\" takes an object or the name of a file", call[0]);
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
    {"tempname", 0, 0, tempnameFunction},
};

} // namespace

std::span<const FunctionRow> programFunctions() { return rows; }

} // namespace velsh
