// velsh: tries and scripts Automation servers.
#include "host/embedding.h"
#include "platform/console.h"
#include "platform/guarded_call.h"
#include "platform/registry_files.h"
#include "shell/completion.h"
#include "shell/console.h"
#include "shell/describe.h"

#include <CLI/CLI.hpp>

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/runtime_symbol_info.hpp>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace {

struct Options {
    std::vector<std::string> files;
    std::vector<std::string> classes;
    std::string module;
    std::string code;
    std::string progId;
};

// A path from an argument, which is UTF-8 whatever the locale.
std::filesystem::path pathOf(const std::string& argument) {
    return std::u8string(argument.begin(), argument.end());
}

void addOptions(CLI::App& app, Options& options) {
    app.add_option("FILE", options.files, "Programs to run, one after the other; none: a prompt")
        ->type_name("");
    app.add_option("-e", options.code, "Run this code")->type_name("CODE");
    app.add_option("--describe", options.progId,
                   "Show the class of a server: its members and types")
        ->type_name("PROGID");
    app.add_option("--classes", options.classes, "Class registrations to bring in, a .reg file")
        ->type_name("FILE")
        ->allow_extra_args(false); // what follows the file is a program
    app.add_option("--module", options.module,
                   "The client module; by default the one beside this program")
        ->type_name("FILE");
    app.set_version_flag("--version", "velsh " AXLINK2_VERSION);
}

void start(const Options& options) {
    platform::loadUserRegistryFiles();
    for (const auto& file : options.classes)
        platform::loadRegistryFile(pathOf(file));
    velmar::loadModule(options.module.empty()
                           ? boost::dll::program_location().parent_path() / AXLINK2_MODULE
                           : pathOf(options.module));
}

bool runSession(const Options& options, bool hasCode) {
    velsh::Session session;
    if (hasCode && !session.run(options.code, "")) return false;
    for (const auto& file : options.files)
        if (!session.runFile(pathOf(file))) return false;
    if (hasCode || !options.files.empty()) return true;
    const auto reader =
        velsh::makeLineReader([&](const std::string& before, const std::string& word) {
            return velsh::complete(session.variables(), before, word);
        });
    return velsh::runConsole(session, *reader);
}

bool endsByItself = false;

// The program ends from here alone: a server that calls exit has lost what was under way.
void reportForeignEnd() {
    if (endsByItself) return;
    velsh::reportError("velsh: A server ended the program.");
    std::_Exit(1);
}

// What is left to do at the end is what servers have asked for; a fault there changes nothing.
[[noreturn]] void leave(int status) {
    endsByItself = true;
    platform::guarded([status] { std::exit(status); });
    std::_Exit(status);
}

int run(int argc, char** argv) {
    CLI::App app("Tries and scripts Automation servers.", "velsh");
    Options options;
    addOptions(app, options);
    app.allow_windows_style_options(false); // a path may begin with a slash
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        std::ostringstream output;
        std::ostringstream errors;
        const int status = app.exit(end, output, errors);
        platform::writeText(stdout, output.str());
        platform::writeText(stderr, errors.str());
        return platform::flushText(stdout) ? status : 1;
    }
    try {
        start(options);
    } catch (const std::exception& error) {
        velsh::reportError(std::string("velsh: ") + error.what());
        return 1;
    }
    try {
        if (app.count("--describe") == 0) return runSession(options, app.count("-e") > 0) ? 0 : 1;
        platform::writeText(stdout, velsh::describeServer(options.progId));
        velmar::flushOutput();
        return 0;
    } catch (...) {
        velsh::reportError("velsh: " +
                           velsh::errorLine(velmar::describeError(std::current_exception())));
        return 1;
    }
}

} // namespace

int main(int argc, char** argv) {
    std::atexit(reportForeignEnd);
    leave(run(argc, argv));
}
