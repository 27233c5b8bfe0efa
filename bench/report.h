// The table of ratios, and what it says in the end.
#pragma once

#include "bench/cases.h"
#include "bench/memory.h"

namespace axlink2::bench {

// How much is measured of each case.
struct Effort {
    int rounds = 5;                // ratios, each of one measurement of both works
    double secondsEach = 0.1;      // of a measurement, at least
    bool judgesLimits = true;      // one hasty round says nothing about speed
    std::vector<std::string> only; // parts of names; empty for all cases

    // From a program's arguments: "short", and parts of the names of the cases that are wanted.
    static Effort of(int argc, char** argv);
    bool wants(const Case& which) const;
};

class Report {
  public:
    explicit Report(const Effort& effort);

    // Medians of the times, in nanoseconds, and of the ratios between the two of each round, with
    // their range.
    void add(const Case& which, const std::vector<double>& raw, const std::vector<double>& ours);
    void add(const Memory& memory);

    // Names the cases whose median is over its limit; the status for the program to end with.
    int finish() const;

  private:
    bool judgesLimits_;
    int measured_ = 0;
    std::vector<std::string> over_;
};

} // namespace axlink2::bench
