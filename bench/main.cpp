// Runs every case beside its raw work and prints the ratios.
#include "bench/cases.h"
#include "bench/report.h"
#include "entry/entry.h"

#include <benchmark/benchmark.h>

#include <malloc.h>
#include <map>

namespace {

using namespace axlink2::bench;

// Times by benchmark name, in nanoseconds, one for each repetition.
class Collector : public benchmark::ConsoleReporter {
  public:
    std::map<std::string, std::vector<double>> times;

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                times[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
    }
};

void add(const std::string& name, Work work, const Case& which) {
    auto* registered = benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const auto batch = static_cast<benchmark::IterationCount>(which.batch);
        while (state.KeepRunningBatch(batch))
            work(which.batch);
    });
    registered->Unit(benchmark::kNanosecond)->Repetitions(5);
    if (which.most) registered->Iterations(static_cast<benchmark::IterationCount>(which.most / 5));
}

} // namespace

int main(int argc, char** argv) {
    // Freed memory stays with the program: giving large blocks back to the system and asking for
    // them again would be most of what the cases with much data measure.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);
    RegisterAxlink2();
    std::vector<Case> cases = callCases();
    for (auto listed : {arrayCases, builtinCases, eventCases, populationCases})
        for (Case& more : listed())
            cases.push_back(std::move(more));

    benchmark::Initialize(&argc, argv);
    for (const Case& which : cases) {
        add(which.name + "/raw", which.raw, which);
        add(which.name + "/ours", which.ours, which);
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);

    printHeading();
    for (const Case& which : cases)
        printRow(which, collector.times[which.name + "/raw"],
                 collector.times[which.name + "/ours"]);
    return 0;
}
