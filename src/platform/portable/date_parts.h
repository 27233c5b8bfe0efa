// DATE taken apart into a day and a second of that day, and the calendar behind it.
#pragma once

#include <chrono>
#include <optional>

// 30 December 1899 is day 0.
inline constexpr std::chrono::sys_days dateEpoch{std::chrono::year(1899) / 12 / 30};

inline constexpr int secondsPerDay = 86400;

struct DateParts {
    std::chrono::year_month_day day;
    int second = 0; // of the day
};

// Whether a number is a DATE: 1 January 100 to 31 December 9999.
bool isDate(double date) noexcept;

// To the nearest second. Nothing when the number is no DATE.
std::optional<DateParts> splitDate(double date) noexcept;

// The DATE of a valid day of the years 100 to 9999.
double joinDate(std::chrono::sys_days day, int second) noexcept;
