// The table of ratios.
#pragma once

#include "bench/cases.h"

namespace axlink2::bench {

void printHeading();

// Medians of the times, in nanoseconds, and of the ratios between the two of each round, with their
// range. Prints nothing where one of the two wasn't measured.
void printRow(const Case& which, const std::vector<double>& raw, const std::vector<double>& ours);

} // namespace axlink2::bench
