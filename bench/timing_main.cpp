// Measures every case beside its raw work where Google Benchmark is missing.
#include "bench/cases.h"
#include "bench/report.h"
#include "entry/entry.h"

#include <algorithm>
#include <chrono>

namespace {

using namespace axlink2::bench;
using Clock = std::chrono::steady_clock;
using Nanoseconds = std::chrono::duration<double, std::nano>;

Nanoseconds timeOf(Work work, std::size_t count) {
    const auto start = Clock::now();
    work(count);
    return Clock::now() - start;
}

// How often the work fits into a measurement.
std::size_t countFor(const Case& which, Work work, const Effort& effort) {
    if (which.most) return std::max<std::size_t>(which.most / 5, 1);
    const std::chrono::duration<double> longEnough(effort.secondsEach);
    std::size_t count = which.batch;
    while (timeOf(work, count) < longEnough / 4)
        count *= 2;
    return count * 4;
}

void measure(const Case& which, const Effort& effort, Report& report) {
    const std::size_t rawCount = countFor(which, which.raw, effort);
    const std::size_t ourCount = countFor(which, which.ours, effort);
    std::vector<double> raw;
    std::vector<double> ours;
    for (int round = 0; round < effort.rounds; ++round) {
        raw.push_back(timeOf(which.raw, rawCount).count() / static_cast<double>(rawCount));
        ours.push_back(timeOf(which.ours, ourCount).count() / static_cast<double>(ourCount));
    }
    report.add(which, raw, ours);
}

} // namespace

int main(int argc, char** argv) {
    const Effort effort = Effort::of(argc, argv);
    RegisterAxlink2();
    Report report(effort);
    for (auto listed :
         {callCases, dictionaryCases, arrayCases, builtinCases, eventCases, populationCases})
        for (const Case& which : listed())
            if (effort.wants(which)) measure(which, effort, report);
    return report.finish();
}
