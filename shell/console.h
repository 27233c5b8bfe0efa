// The conversation at the prompt, and programs that come through a pipe.
#pragma once

#include "shell/prompt.h"
#include "shell/session.h"

namespace velsh {

// Reads and runs until the end of the input, "exit" or "quit". A person goes on after an error; a
// program that comes through a pipe ends there, and the answer is false.
bool runConsole(Session& session, LineReader& reader);

} // namespace velsh
