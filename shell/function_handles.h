// Function handles and listeners.
#pragma once

#include "shell/ast.h"
#include "shell/evaluator.h"
#include "shell/value.h"

#include <string>

namespace velsh {

// @name
Value makeNamedHandle(const std::string& name);
// @(parameters) expression, with the variables of its body as they are now.
Value makeAnonymousHandle(const AnonymousFunction& function, Variables captured);

// Calls `handle` with the source and the event's structure at each event. Gives an object of class
// "velsh.Listener", whose property `Enabled` lets it run, and which `removeListener` ends; losing
// it changes nothing.
Value addListener(const hxArray* object, const std::string& event, const hxArray* handle);
bool isListener(const hxArray* array);
void removeListener(const hxArray* listener);
// Ends every listener of the process, and with them the variables that their functions hold.
void removeAllListeners();

} // namespace velsh
