// axlink2_torture: the hard tests, in a form of seconds or of minutes.
#include "torture/program.h"
#include "torture/report.h"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

using namespace torture;

Problems runPart(const std::vector<std::string>& arguments) {
    const std::string& what = arguments.at(0);
    if (what == "point")
        return runPoint(arguments.at(1), arguments.at(2), std::stoi(arguments.at(3)));
    const bool isLong = arguments.size() > 1 && arguments[1] == "long";
    if (what == "failures") return runFailures(isLong);
    if (what == "faults") return runFaults(isLong);
    if (what == "soak") return runSoak(isLong);
    throw std::out_of_range(what);
}

} // namespace

int main(int argc, char** argv) {
    const Environment environment;
    Problems problems;
    try {
        problems = runPart({argv + 1, argv + argc});
    } catch (const std::logic_error&) {
        std::fprintf(stderr, "usage: axlink2_torture failures|faults|soak [long]\n"
                             "       axlink2_torture point PROGRAM PASS NUMBER\n");
        return 2;
    }
    for (const std::string& problem : problems)
        std::printf("FAILED: %s\n", problem.c_str());
    if (problems.empty())
        std::printf("pass\n");
    else
        std::printf("%zu failed\n", problems.size());
    return problems.empty() ? 0 : 1;
}
