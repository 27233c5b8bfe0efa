// Lines from standard input as they come.
#include "shell/prompt_plain.h"

#include <cstdio>
#include <iostream>
#include <unistd.h>

namespace velsh {

bool isTerminal() { return isatty(STDIN_FILENO) != 0; }

std::optional<std::string> PlainReader::read(const std::string& prompt) {
    if (isInteractive()) std::fputs(prompt.c_str(), stdout);
    std::fflush(stdout);
    std::string line;
    if (!std::getline(std::cin, line)) return std::nullopt;
    return line;
}

} // namespace velsh
