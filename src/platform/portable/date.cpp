// DATE and the calendar.
#include "platform/portable/date.h"

#include "platform/portable/date_parts.h"

#include <cmath>

using namespace std::chrono;

namespace {

constexpr double firstDay = -657434;
constexpr double lastDay = 2958465;

} // namespace

bool isDate(double date) noexcept { return date > firstDay - 1 && date < lastDay + 1; }

std::optional<DateParts> splitDate(double date) noexcept {
    if (!isDate(date)) return std::nullopt;
    // The fraction counts forward even before the epoch: -1.25 is 6:00 on 29 December 1899.
    double day = std::trunc(date);
    auto second = static_cast<int>(std::lround(std::fabs(date - day) * secondsPerDay));
    if (second == secondsPerDay && day < lastDay) {
        second = 0;
        day += 1;
    } else if (second == secondsPerDay) {
        --second; // there is no day after the last
    }
    return DateParts{dateEpoch + days(static_cast<int>(day)), second};
}

double joinDate(sys_days day, int second) noexcept {
    const auto whole = static_cast<double>((day - dateEpoch).count());
    const double direction = whole < 0 ? -1 : 1;
    // Hours, minutes and seconds are added one by one, which decides the last bit.
    const int hours = second / 3600;
    const int minutes = second / 60 % 60;
    return whole + direction * hours / 24 + direction * minutes / 1440 +
           direction * (second % 60) / secondsPerDay;
}

INT SystemTimeToVariantTime(SYSTEMTIME* time, DOUBLE* date) {
    if (!time || !date || time->wMonth < 1 || time->wMonth > 12 || time->wDay > 31 ||
        time->wHour > 23 || time->wMinute > 59 || time->wSecond > 59)
        return FALSE;
    int fullYear = time->wYear;
    if (fullYear < 100) fullYear += fullYear < 30 ? 2000 : 1900;
    // A day past its month's end runs into the next month, day 0 is the end of the month before.
    const sys_days day = sys_days(year(fullYear) / month(time->wMonth) / 1) + days(time->wDay - 1);
    const double result = joinDate(day, time->wHour * 3600 + time->wMinute * 60 + time->wSecond);
    if (!isDate(result)) return FALSE;
    *date = result;
    return TRUE;
}

INT VariantTimeToSystemTime(DOUBLE date, SYSTEMTIME* time) {
    const auto parts = splitDate(date);
    if (!time || !parts) return FALSE;
    const year_month_day& day = parts->day;
    *time = SYSTEMTIME{static_cast<WORD>(static_cast<int>(day.year())),
                       static_cast<WORD>(static_cast<unsigned>(day.month())),
                       static_cast<WORD>(weekday(sys_days(day)).c_encoding()),
                       static_cast<WORD>(static_cast<unsigned>(day.day())),
                       static_cast<WORD>(parts->second / 3600),
                       static_cast<WORD>(parts->second / 60 % 60),
                       static_cast<WORD>(parts->second % 60),
                       0};
    return TRUE;
}
