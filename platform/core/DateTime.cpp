#include "DateTime.h"

#include "Exceptions.h"

#include <array>
#include <cctype>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <mutex>

namespace qv {

namespace {

constexpr double kMsPerDay = 86400000.0;

// The process-wide clock; guarded because timer threads read it too.
struct TClock {
    std::mutex lock;
    TClockSource source;
};
TClock& Clock() {
    static TClock clock;
    return clock;
}

TDateTime SystemNow() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t t = std::chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&t, &local);
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() %
        1000;
    return EncodeDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) +
           EncodeTime(local.tm_hour, local.tm_min, std::min(local.tm_sec, 59),
                      static_cast<int>(ms));
}

// Days from 0001-01-01 to the given date, proleptic Gregorian.
std::int64_t DayNumber(int year, int month, int day) {
    static constexpr std::array<int, 12> before = {0,   31,  59,  90,  120, 151,
                                                   181, 212, 243, 273, 304, 334};
    const std::int64_t y = year - 1;
    std::int64_t days =
        y * 365 + y / 4 - y / 100 + y / 400 + before[static_cast<std::size_t>(month - 1)] + day - 1;
    if (month > 2 && IsLeapYear(year)) ++days;
    return days;
}

constexpr std::int64_t kEpochDayNumber = 693593; // DayNumber(1899, 12, 30)

const std::array<const char*, 12> kShortMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const std::array<const char*, 12> kLongMonths = {"January",   "February", "March",    "April",
                                                 "May",       "June",     "July",     "August",
                                                 "September", "October",  "November", "December"};
const std::array<const char*, 7> kShortDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const std::array<const char*, 7> kLongDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                              "Thursday", "Friday", "Saturday"};

} // namespace

void SetClockSource(TClockSource source) {
    auto& c = Clock();
    std::lock_guard guard(c.lock);
    c.source = std::move(source);
}

TDateTime Now() {
    auto& c = Clock();
    TClockSource source;
    {
        std::lock_guard guard(c.lock);
        source = c.source;
    }
    return source ? source() : SystemNow();
}

TDateTime Date() {
    return std::floor(Now());
}
TDateTime Time() {
    const TDateTime now = Now();
    return now - std::floor(now);
}

bool IsLeapYear(int year) {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

TDateTime EncodeTime(int hour, int minute, int second, int millisecond) {
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59 ||
        millisecond < 0 || millisecond > 999)
        throw EConvertError("Invalid argument to time encode");
    return (((hour * 60.0 + minute) * 60.0 + second) * 1000.0 + millisecond) / kMsPerDay;
}

TDateTime EncodeDate(int year, int month, int day) {
    static constexpr std::array<int, 12> lengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 ||
        day >
            lengths[static_cast<std::size_t>(month - 1)] + (month == 2 && IsLeapYear(year) ? 1 : 0))
        throw EConvertError("Invalid argument to date encode");
    return static_cast<TDateTime>(DayNumber(year, month, day) - kEpochDayNumber);
}

TTimeParts DecodeTime(TDateTime value) {
    const double fraction = std::fabs(value - std::trunc(value));
    auto ms = static_cast<std::int64_t>(std::llround(fraction * kMsPerDay));
    if (ms >= static_cast<std::int64_t>(kMsPerDay)) ms = static_cast<std::int64_t>(kMsPerDay) - 1;
    TTimeParts t;
    t.millisecond = static_cast<int>(ms % 1000);
    t.second = static_cast<int>(ms / 1000 % 60);
    t.minute = static_cast<int>(ms / 60000 % 60);
    t.hour = static_cast<int>(ms / 3600000);
    return t;
}

TDateParts DecodeDate(TDateTime value) {
    if (!std::isfinite(value) || std::fabs(value) > 3e6) return {};
    std::int64_t days = static_cast<std::int64_t>(std::floor(value)) + kEpochDayNumber;
    // Walk by 400/100/4/1-year cycles from 0001-01-01.
    std::int64_t y400 = days / 146097;
    days %= 146097;
    std::int64_t y100 = std::min<std::int64_t>(days / 36524, 3);
    days -= y100 * 36524;
    std::int64_t y4 = days / 1461;
    days %= 1461;
    std::int64_t y1 = std::min<std::int64_t>(days / 365, 3);
    days -= y1 * 365;
    TDateParts d;
    d.year = static_cast<int>(y400 * 400 + y100 * 100 + y4 * 4 + y1 + 1);
    static constexpr std::array<int, 12> lengths = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    int month = 0;
    for (; month < 12; ++month) {
        const int len =
            lengths[static_cast<std::size_t>(month)] + (month == 1 && IsLeapYear(d.year) ? 1 : 0);
        if (days < len) break;
        days -= len;
    }
    d.month = month + 1;
    d.day = static_cast<int>(days) + 1;
    return d;
}

namespace {

class TDateFormatter {
public:
    TDateFormatter(std::string_view format, TDateTime value)
        : m_format(format), m_value(value), m_date(DecodeDate(value)), m_time(DecodeTime(value)) {
        const std::int64_t serial = static_cast<std::int64_t>(std::floor(value));
        m_weekday = static_cast<int>(((serial + 6) % 7 + 7) % 7); // 1899-12-30 was a Saturday
        m_twelveHour = HasAmPm(format);
    }

    std::string Run() {
        std::string out;
        Append(out, m_format);
        return out;
    }

private:
    static bool HasAmPm(std::string_view f) {
        for (std::size_t i = 0; i < f.size(); ++i) {
            if (f[i] == '"' || f[i] == '\'') {
                const char q = f[i];
                while (++i < f.size() && f[i] != q) {
                }
                continue;
            }
            if (Starts(f.substr(i), "am/pm") || Starts(f.substr(i), "a/p") ||
                Starts(f.substr(i), "ampm"))
                return true;
        }
        return false;
    }
    static bool Starts(std::string_view s, std::string_view prefix) {
        if (s.size() < prefix.size()) return false;
        for (std::size_t i = 0; i < prefix.size(); ++i)
            if (std::tolower(static_cast<unsigned char>(s[i])) != prefix[i]) return false;
        return true;
    }
    static std::string Two(int v) {
        char digits[16];
        std::snprintf(digits, sizeof digits, "%02d", v);
        return digits;
    }
    static std::size_t Run(std::string_view f, std::size_t i) {
        const char c = static_cast<char>(std::tolower(static_cast<unsigned char>(f[i])));
        std::size_t n = 1;
        while (i + n < f.size() && std::tolower(static_cast<unsigned char>(f[i + n])) == c)
            ++n;
        return n;
    }

    int DisplayHour() const {
        if (!m_twelveHour) return m_time.hour;
        const int h = m_time.hour % 12;
        return h == 0 ? 12 : h;
    }

    void Append(std::string& out, std::string_view f) {
        for (std::size_t i = 0; i < f.size();) {
            const char raw = f[i];
            const char c = static_cast<char>(std::tolower(static_cast<unsigned char>(raw)));
            if (raw == '"' || raw == '\'') {
                std::size_t j = i + 1;
                while (j < f.size() && f[j] != raw)
                    out += f[j++];
                i = j + 1;
                continue;
            }
            if (Starts(f.substr(i), "am/pm")) {
                const bool pm = m_time.hour >= 12;
                out += std::isupper(static_cast<unsigned char>(raw)) ? (pm ? "PM" : "AM")
                                                                     : (pm ? "pm" : "am");
                i += 5;
                continue;
            }
            if (Starts(f.substr(i), "a/p")) {
                const bool pm = m_time.hour >= 12;
                out += std::isupper(static_cast<unsigned char>(raw)) ? (pm ? "P" : "A")
                                                                     : (pm ? "p" : "a");
                i += 3;
                continue;
            }
            if (Starts(f.substr(i), "ampm")) {
                out += m_time.hour >= 12 ? "PM" : "AM";
                i += 4;
                continue;
            }
            const std::size_t n = Run(f, i);
            switch (c) {
            case 'h':
                out += n >= 2 ? Two(DisplayHour()) : std::to_string(DisplayHour());
                m_afterHour = true;
                i += std::min<std::size_t>(n, 2);
                continue;
            case 'n':
                out += n >= 2 ? Two(m_time.minute) : std::to_string(m_time.minute);
                break;
            case 's':
                out += n >= 2 ? Two(m_time.second) : std::to_string(m_time.second);
                break;
            case 'z': {
                const std::string ms = std::to_string(m_time.millisecond);
                out += n >= 3 ? std::string(3 - ms.size(), '0') + ms : ms;
                break;
            }
            case 'm':
                if (m_afterHour && n <= 2)
                    out += n == 2 ? Two(m_time.minute) : std::to_string(m_time.minute);
                else if (n == 1)
                    out += std::to_string(m_date.month);
                else if (n == 2)
                    out += Two(m_date.month);
                else if (n == 3)
                    out += kShortMonths[static_cast<std::size_t>(m_date.month - 1)];
                else
                    out += kLongMonths[static_cast<std::size_t>(m_date.month - 1)];
                break;
            case 'd':
                if (n == 1)
                    out += std::to_string(m_date.day);
                else if (n == 2)
                    out += Two(m_date.day);
                else if (n == 3)
                    out += kShortDays[static_cast<std::size_t>(m_weekday)];
                else if (n == 4)
                    out += kLongDays[static_cast<std::size_t>(m_weekday)];
                else
                    out += TDateFormatter("m/d/yyyy", m_value).Run();
                break;
            case 'y':
                out += n <= 2 ? Two(m_date.year % 100) : std::to_string(m_date.year);
                break;
            case 'c':
                out += TDateFormatter("m/d/yyyy", m_value).Run();
                if (m_time.hour || m_time.minute || m_time.second)
                    out += TDateFormatter(" h:nn:ss AMPM", m_value).Run();
                break;
            case 't':
                out += TDateFormatter(n >= 2 ? "h:nn:ss AMPM" : "h:nn AMPM", m_value).Run();
                break;
            default:
                out += raw;
                i += 1;
                continue;
            }
            if (c != 'h' && c != 'm' && c != 'n' && c != ':' && c != ' ') m_afterHour = false;
            if (c == 'm') m_afterHour = false;
            i += n;
        }
    }

    std::string_view m_format;
    TDateTime m_value;
    TDateParts m_date;
    TTimeParts m_time;
    int m_weekday{0};
    bool m_twelveHour{false};
    bool m_afterHour{false};
};

} // namespace

std::string FormatDateTime(std::string_view format, TDateTime value) {
    return TDateFormatter(format, value).Run();
}

} // namespace qv
