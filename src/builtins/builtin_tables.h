// The built-in methods of each kind of class, in the order in which a class gets them.
#pragma once

#include "host/class.h"

#include <span>

namespace axlink2 {

using MakeMethod = hos::HOSMethodInfo* (*)(hos::HOSClass* owner);

std::span<const MakeMethod> everyClassBuiltins();
std::span<const MakeMethod> coclassBuiltins();
std::span<const MakeMethod> interfaceBuiltins();

// Adds them to a class under population, which takes ownership.
void addBuiltins(hos::HOSClass* target, std::span<const MakeMethod> builtins);

} // namespace axlink2
