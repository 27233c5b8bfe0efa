// The functions of the language, defined as functions of the host.
#pragma once

#include "shell/value.h"

#include <span>
#include <string>
#include <vector>

namespace velsh {

// One call: how many outputs are asked for, and the inputs.
struct Call {
    int outputCount;
    std::span<const hxArray* const> inputs;

    const hxArray* operator[](std::size_t i) const { return inputs[i]; }
    std::size_t count() const { return inputs.size(); }
};

struct FunctionRow {
    const char* name;
    std::size_t minInputs;
    std::size_t maxInputs;
    Values (*run)(const Call& call);
};
constexpr std::size_t anyNumber = static_cast<std::size_t>(-1);

std::span<const FunctionRow> arrayFunctions();
std::span<const FunctionRow> classFunctions();
std::span<const FunctionRow> textFunctions();
std::span<const FunctionRow> programFunctions();

// Makes them known to the host, once.
void defineFunctions();
// Their names, for completion.
std::vector<std::string> functionNames();

// Whether two values are equal: shape, and content whatever the number class.
bool isEqual(const hxArray* a, const hxArray* b);

} // namespace velsh
