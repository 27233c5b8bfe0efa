// The text of a program and places in it.
#pragma once

#include <stdexcept>
#include <string>

namespace velsh {

// Both count from 1; columns count bytes.
struct Position {
    int line = 1;
    int column = 1;
};

// Text that is no program, and where.
struct SyntaxError : std::runtime_error {
    SyntaxError(Position position, const std::string& text, bool incomplete = false)
        : std::runtime_error(text), position(position), incomplete(incomplete) {}

    Position position;
    bool incomplete; // more lines could make it a program
};

} // namespace velsh
