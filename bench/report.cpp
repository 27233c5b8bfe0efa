// The table of ratios.
#include "bench/report.h"

#include <algorithm>
#include <cstdio>

namespace axlink2::bench {
namespace {

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

void printHeading() { std::printf("%-36s %12s %12s %8s\n", "", "raw, ns", "ours, ns", "ratio"); }

void printRow(const Case& which, const std::vector<double>& raw, const std::vector<double>& ours) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < raw.size() && i < ours.size(); ++i)
        ratios.push_back(ours[i] / raw[i]);
    if (ratios.empty()) return;
    const auto [least, most] = std::minmax_element(ratios.begin(), ratios.end());
    std::printf("%-36s %12.1f %12.1f %8.2f  (%.2f to %.2f, limit %.1f)\n", which.name.c_str(),
                median(raw), median(ours), median(ratios), *least, *most, which.limit);
}

} // namespace axlink2::bench
