// What a word at the prompt can become.
#pragma once

#include "shell/evaluator.h"

#include <string>
#include <vector>

namespace velsh {

// Whole words that begin with `word`, sorted: keywords, functions and variables; behind a dot the
// members of the object or struct that stands before it. Reads properties, never calls methods.
std::vector<std::string> complete(const Variables& variables, const std::string& word);

} // namespace velsh
