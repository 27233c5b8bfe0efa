// The host's functions by name.
#pragma once

#include "host/dispatcher.h"
#include "host/embedding.h"

namespace velmar {

// The function of that name; null without one. It stays, also when it is defined anew.
Hfunction_handle* findFunction(hos::id name);

// Calls a function as `Hfunction_handle::call` does.
void callFunction(const Function& function, int outputCount, hxArray** outputs, int inputCount,
                  const hxArray* const* inputs);

// disp, builtin and methods.
void defineBuiltinFunctions();

} // namespace velmar
