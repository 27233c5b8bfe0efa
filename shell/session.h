// A session: sources run one after the other on the same variables, errors reported.
#pragma once

#include "host/embedding.h"
#include "shell/interpreter.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace velsh {

class Session {
  public:
    // Defines the functions of the language. One session exists at a time.
    Session();
    // Ends the variables and the listeners.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Runs a source; false after an error, which has then been reported. `name` stands before the
    // error's place; without one only the message is shown.
    bool run(std::string_view source, const std::string& name);
    bool runFile(const std::filesystem::path& file);
    Variables& variables() { return interpreter_.variables(); }

  private:
    Interpreter interpreter_;
};

// Whether more lines could make this a program.
bool isIncomplete(std::string_view source);

// One line on standard error, behind what was printed so far.
void reportError(const std::string& text);
// "message (identifier)".
std::string errorLine(const velmar::ErrorText& error);

} // namespace velsh
