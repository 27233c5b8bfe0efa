// Measures every case beside its raw work with Google Benchmark.
#include "bench/cases.h"
#include "bench/memory.h"
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

void add(const std::string& name, Work work, const Case& which, const Effort& effort) {
    auto* registered = benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        const auto batch = static_cast<benchmark::IterationCount>(which.batch);
        while (state.KeepRunningBatch(batch))
            work(which.batch);
    });
    registered->Unit(benchmark::kNanosecond)->Repetitions(effort.rounds);
    if (which.most)
        registered->Iterations(static_cast<benchmark::IterationCount>(which.most / 5));
    else
        registered->MinTime(effort.secondsEach);
}

} // namespace

int main(int argc, char** argv) {
    const Effort effort = Effort::of(argc, argv);
    RegisterAxlink2();
    const Memory memory = memoryOfObjects();
    // Freed memory stays with the program: giving large blocks back to the system and asking for
    // them again would be most of what the cases with much data measure.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, -1);

    std::vector<Case> cases;
    for (auto listed : {callCases, arrayCases, builtinCases, eventCases, populationCases})
        for (Case& which : listed())
            if (effort.wants(which)) cases.push_back(std::move(which));
    for (const Case& which : cases) {
        add(which.name + "/raw", which.raw, which, effort);
        add(which.name + "/ours", which.ours, which, effort);
    }
    int noArguments = 1;
    benchmark::Initialize(&noArguments, argv);
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);

    Report report(effort);
    for (const Case& which : cases)
        report.add(which, collector.times[which.name + "/raw"],
                   collector.times[which.name + "/ours"]);
    if (effort.only.empty()) report.add(memory);
    return report.finish();
}
