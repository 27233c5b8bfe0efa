// Programs that between them reach every way from the language into COM and back.
#pragma once

#include <span>
#include <string>

namespace torture {

struct Script {
    const char* name;
    // The part that runs before anything fails; without one, the classes are made in the part that
    // may fail, and can stay smaller.
    std::string prologue;
    const char* body;
    // What the body prints; null where what it prints without a failure is the measure.
    const char* printed;
    // Lines that stand for what a smaller result lacks.
    const char* less = "";
};

std::span<const Script> scripts();

} // namespace torture
