// What is measured: pairs of the raw COM work and the same work through the module.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace axlink2::bench {

// Does the work `count` times.
using Work = void (*)(std::size_t count);

struct Case {
    std::string name;
    Work raw;
    Work ours;
    double limit;          // the ratio that is allowed
    std::size_t batch = 1; // how often the work is done between two looks at the clock
    std::size_t most = 0;  // how often it may be done at all; 0 for any number
};

std::vector<Case> callCases();
std::vector<Case> arrayCases();
std::vector<Case> builtinCases();
std::vector<Case> eventCases();
std::vector<Case> populationCases();
// Those of a server that comes with the system; only on Windows.
std::vector<Case> dictionaryCases();

} // namespace axlink2::bench
