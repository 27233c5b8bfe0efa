// A session: sources run one after the other on the same variables, errors reported.
#include "shell/session.h"

#include "platform/console.h"
#include "shell/function_handles.h"
#include "shell/functions.h"
#include "shell/parser.h"

#include <cstdio>
#include <fstream>
#include <iterator>

namespace velsh {

Session::Session() { defineFunctions(); }

Session::~Session() {
    removeAllListeners();
    interpreter_.variables().clear();
}

void reportError(const std::string& text) {
    std::fflush(stdout);
    platform::writeText(stderr, text + "\n");
}

std::string errorLine(const velmar::ErrorText& error) {
    return error.text + " (" + error.identifier + ")";
}

bool isIncomplete(std::string_view source) {
    try {
        parse(source);
    } catch (const SyntaxError& error) {
        return error.incomplete;
    }
    return false;
}

bool Session::run(std::string_view source, const std::string& name) {
    try {
        const Block program = parse(source);
        interpreter_.run(program);
        return true;
    } catch (const SyntaxError& error) {
        reportError((name.empty() ? "" : name + ":") + std::to_string(error.position.line) + ":" +
                    std::to_string(error.position.column) + ": " + error.what());
    } catch (...) {
        const std::string place =
            name.empty() ? "" : name + ":" + std::to_string(interpreter_.position().line) + ": ";
        reportError(place + errorLine(velmar::describeError(std::current_exception())));
    }
    return false;
}

bool Session::runFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string source{std::istreambuf_iterator<char>(stream), {}};
    if (!stream && !stream.eof()) {
        reportError(file.string() + ": The file can't be read.");
        return false;
    }
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return run(std::string_view(source).substr(source.starts_with(mark) ? mark.size() : 0),
               file.string());
}

} // namespace velsh
