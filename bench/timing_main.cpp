// Runs every case beside its raw work where Google Benchmark is missing. Arguments select cases:
// those whose names hold one of them.
#include "bench/cases.h"
#include "bench/report.h"
#include "entry/entry.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace {

using namespace axlink2::bench;
using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

constexpr int rounds = 5;
constexpr Nanoseconds longEnough = std::chrono::milliseconds(100);

Nanoseconds timeOf(Work work, std::size_t count) {
    const auto start = Clock::now();
    work(count);
    return Clock::now() - start;
}

// How often the work fits into a measurement.
std::size_t countFor(const Case& which, Work work) {
    if (which.most) return std::max<std::size_t>(which.most / rounds, 1);
    std::size_t count = which.batch;
    while (timeOf(work, count) < longEnough / 4)
        count *= 2;
    return count * 4;
}

void measure(const Case& which) {
    const std::size_t rawCount = countFor(which, which.raw);
    const std::size_t ourCount = countFor(which, which.ours);
    std::vector<double> raw;
    std::vector<double> ours;
    for (int round = 0; round < rounds; ++round) {
        raw.push_back(timeOf(which.raw, rawCount).count() / static_cast<double>(rawCount));
        ours.push_back(timeOf(which.ours, ourCount).count() / static_cast<double>(ourCount));
    }
    printRow(which, raw, ours);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    RegisterAxlink2();
    const auto isWanted = [&](const Case& which) {
        return argc < 2 || std::any_of(argv + 1, argv + argc, [&](const char* part) {
                   return which.name.find(part) != std::string::npos;
               });
    };
    printHeading();
    for (auto listed :
         {callCases, dictionaryCases, arrayCases, builtinCases, eventCases, populationCases})
        for (const Case& which : listed())
            if (isWanted(which)) measure(which);
    return 0;
}
