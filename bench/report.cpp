// The table of ratios, and what it says in the end.
#include "bench/report.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace axlink2::bench {
namespace {

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

Effort Effort::of(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    Effort effort;
    if (std::ranges::count(words, "short"))
        effort = {.rounds = 1, .secondsEach = 0.002, .judgesLimits = false, .only = {}};
    std::ranges::remove_copy(words, std::back_inserter(effort.only), "short");
    return effort;
}

bool Effort::wants(const Case& which) const {
    return only.empty() || std::ranges::any_of(only, [&](const std::string& part) {
               return which.name.find(part) != std::string::npos;
           });
}

Report::Report(const Effort& effort) : judgesLimits_(effort.judgesLimits) {
    std::printf("%-36s %12s %12s %8s\n", "", "raw, ns", "ours, ns", "ratio");
}

void Report::add(const Case& which, const std::vector<double>& raw,
                 const std::vector<double>& ours) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < raw.size() && i < ours.size(); ++i)
        ratios.push_back(ours[i] / raw[i]);
    const auto [least, most] = std::ranges::minmax(ratios);
    const double ratio = median(ratios);
    std::printf("%-36s %12.1f %12.1f %8.2f  (%.2f to %.2f, limit %.1f)\n", which.name.c_str(),
                median(raw), median(ours), ratio, least, most, which.limit);
    std::fflush(stdout);
    ++measured_;
    if (ratio > which.limit) over_.push_back(which.name);
}

void Report::add(const Memory& memory) {
    std::printf("An object needs %.0f bytes beside the %.0f of its server (limit %.0f)\n",
                memory.object, memory.server, memory.limit);
    if (memory.object > memory.limit) over_.push_back("memory of an object");
}

int Report::finish() const {
    if (measured_ == 0) {
        std::printf("bench: failed: nothing was measured\n");
        return 1;
    }
    if (!judgesLimits_) {
        std::printf("bench: %d measured once, not judged\n", measured_);
        return 0;
    }
    if (over_.empty()) {
        std::printf("bench: pass\n");
        return 0;
    }
    std::printf("bench: over the limit:");
    for (const std::string& name : over_)
        std::printf("%s %s", name == over_.front() ? "" : ";", name.c_str());
    std::printf("\n");
    return 1;
}

} // namespace axlink2::bench
