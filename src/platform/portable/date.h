// DATE: days since 30 December 1899 with the time of day as fraction, and the calendar.
#pragma once

#include "platform/portable/base_types.h"

// FALSE when the moment is outside the years 100 to 9999 or no moment at all. Times are rounded
// to whole seconds; a year below 100 means 1930 to 2029.
STDAPI_(INT) SystemTimeToVariantTime(SYSTEMTIME* time, DOUBLE* date);
STDAPI_(INT) VariantTimeToSystemTime(DOUBLE date, SYSTEMTIME* time);
