// Programs of the shell's language, run inside this process, and what is left when they are done.
#pragma once

#include "servers/kit/kit.h"
#include "shell/interpreter.h"
#include "support/living.h"
#include "torture/points.h"

#include <filesystem>
#include <functional>
#include <list>
#include <string>
#include <unistd.h>

namespace torture {

// Loads the client module and serves the sample servers in this process, each object behind a
// faulty front, and "Torture.Control.1" beside them. Works in a folder of its own.
class Environment {
  public:
    Environment();
    Environment(const Environment&) = delete;
    ~Environment();

  private:
    void serve(const char* progId, const CLSID& clsid, kit::Maker make);

    const std::filesystem::path folder_ =
        std::filesystem::temp_directory_path() / ("axlink2-torture-" + std::to_string(getpid()));
    std::list<kit::ClassRegistration> registrations_;
};

// What a program did.
struct Outcome {
    std::string printed;    // a line for each warning's identifier among it
    std::string identifier; // of the error that ended it; empty when it ran to its end
    std::string text;       // of the error
};

// Variables that last from one program to the next. One exists at a time.
class Workspace {
  public:
    Workspace();
    Workspace(const Workspace&) = delete;
    // Ends the listeners and the variables.
    ~Workspace();

    // Runs a source; `armed` and `disarmed` are called just before and after, when it has been
    // parsed already. Raises for a source that isn't a program.
    Outcome run(const std::string& source, const std::function<void()>& armed = {},
                const std::function<void()>& disarmed = {});

  private:
    velsh::Interpreter interpreter_;
    std::string printed_;
};

// What is alive at a moment, descriptions of types among it.
struct Living : axlink2::test::Living {
    int descriptions = serverCalls.outstanding;

    std::string newcomers() const;
};

} // namespace torture
