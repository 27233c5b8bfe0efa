// From text to tokens.
#pragma once

#include "shell/source.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velsh {

enum class TokenKind { Number, Char, String, Name, Symbol, Newline, End };

struct Token {
    TokenKind kind = TokenKind::End;
    Position position;
    std::size_t begin = 0; // offsets in the program's text
    std::size_t end = 0;
    bool spaceBefore = false;
    bool spaceAfter = false;
    std::string name;    // of names and symbols
    std::u16string text; // of char and string text
    double number = 0;

    bool is(std::string_view symbol) const { return kind == TokenKind::Symbol && name == symbol; }
    bool isName(std::string_view word) const { return kind == TokenKind::Name && name == word; }
};

// The tokens of a program, comments and continued lines left out; the last one is `End`.
// Raises SyntaxError.
std::vector<Token> tokenize(std::string_view text);

} // namespace velsh
