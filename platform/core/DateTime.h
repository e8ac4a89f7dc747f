#pragma once
// TDateTime: days since 1899-12-30 with the time of day as the fraction. Now, Date and Time
// read a replaceable clock so that tests can set the time.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace qv {

using TDateTime = double;

struct TTimeParts {
    int hour{0}, minute{0}, second{0}, millisecond{0};
};
struct TDateParts {
    int year{1899}, month{12}, day{30};
};

// The local wall-clock time; replaced by SetClockSource (null restores the system clock).
using TClockSource = std::function<TDateTime()>;
void SetClockSource(TClockSource source);
TDateTime Now();
TDateTime Date();
TDateTime Time();

// Replaces the clock for the lifetime of the object, then restores the system clock.
class TScopedClock {
public:
    explicit TScopedClock(TClockSource source) { SetClockSource(std::move(source)); }
    ~TScopedClock() { SetClockSource(nullptr); }
    TScopedClock(const TScopedClock&) = delete;
    TScopedClock& operator=(const TScopedClock&) = delete;
};

// EConvertError for parts out of range.
TDateTime EncodeTime(int hour, int minute, int second, int millisecond);
TDateTime EncodeDate(int year, int month, int day);
TTimeParts DecodeTime(TDateTime value);
TDateParts DecodeDate(TDateTime value);
bool IsLeapYear(int year);

// Formats with the classic specifiers: d dd ddd dddd m mm mmm mmmm yy yyyy h hh n nn s ss
// z zzz am/pm a/p ampm c t tt / : and literal text in quotes. "m" right after an hour means
// minutes.
std::string FormatDateTime(std::string_view format, TDateTime value);

} // namespace qv
