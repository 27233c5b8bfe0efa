// Runs every case beside its raw work and prints the ratios.
#include "bench/cases.h"
#include "entry/entry.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
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

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

void print(const Case& which, const Collector& collector) {
    const auto& raw = collector.times.at(which.name + "/raw");
    const auto& ours = collector.times.at(which.name + "/ours");
    std::vector<double> ratios;
    for (std::size_t i = 0; i < raw.size() && i < ours.size(); ++i)
        ratios.push_back(ours[i] / raw[i]);
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    std::printf("%-36s %12.1f %12.1f %8.2f  (%.2f to %.2f, limit %.1f)\n", which.name.c_str(),
                median(raw), median(ours), median(ratios), *least, *most, which.limit);
}

} // namespace

int main(int argc, char** argv) {
    RegisterAxlink2();
    std::vector<Case> cases = callCases();
    for (Case& more : populationCases())
        cases.push_back(std::move(more));

    benchmark::Initialize(&argc, argv);
    for (const Case& which : cases) {
        add(which.name + "/raw", which.raw, which);
        add(which.name + "/ours", which.ours, which);
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);

    std::printf("%-36s %12s %12s %8s\n", "", "raw, ns", "ours, ns", "ratio");
    for (const Case& which : cases)
        if (collector.times.contains(which.name + "/raw") &&
            collector.times.contains(which.name + "/ours"))
            print(which, collector);
    return 0;
}
