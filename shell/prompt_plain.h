// Lines from standard input as they come.
#pragma once

#include "shell/prompt.h"

namespace velsh {

// What ends a word that can be completed.
inline constexpr char wordBreaks[] = " \t\n()[]{},;=+-*/^<>&|~:@'\"";

// Whether standard input is a terminal.
bool isTerminal();

class PlainReader : public LineReader {
  public:
    bool isInteractive() const override { return isTerminal(); }
    std::optional<std::string> read(const std::string& prompt) override;
    void remember(const std::string&) override {}
};

} // namespace velsh
