// What a word at the prompt can become.
#pragma once

#include "shell/evaluator.h"

#include <string>
#include <vector>

namespace velsh {

// Whole words that begin with `word`, sorted: keywords, functions, variables and the built-in
// methods of the objects among them; behind a dot the members of the object or struct that stands
// before it; in quotes what the rest of the line asks for: the constants of a property's
// enumeration behind `h.Color = '` and `set(h, 'Color', '`, names of properties behind `get(h, '`,
// of methods behind `invoke(h, '` and of events behind `addlistener(h, '`. `before` is the line up
// to the word. Reads properties, never calls a server's methods.
std::vector<std::string> complete(const Variables& variables, const std::string& before,
                                  const std::string& word);

} // namespace velsh
