#include "platform/core/DateTime.h"
#include "platform/core/Exceptions.h"

#include <gtest/gtest.h>

using namespace qv;

TEST(DateTime, DaysCountFromTheEpochOf1899) {
    EXPECT_EQ(EncodeDate(1899, 12, 30), 0.0);
    EXPECT_EQ(EncodeDate(1900, 1, 1), 2.0);
    EXPECT_EQ(EncodeDate(2000, 3, 1), 36586.0);
    const TDateParts d = DecodeDate(EncodeDate(2024, 2, 29));
    EXPECT_EQ(d.year, 2024);
    EXPECT_EQ(d.month, 2);
    EXPECT_EQ(d.day, 29);
    EXPECT_THROW(EncodeDate(2023, 2, 29), EConvertError);
    EXPECT_THROW(EncodeTime(24, 0, 0, 0), EConvertError);
}

TEST(DateTime, TimeRoundTripsThroughTheDayFraction) {
    const TTimeParts t = DecodeTime(EncodeDate(2001, 5, 6) + EncodeTime(23, 59, 58, 999));
    EXPECT_EQ(t.hour, 23);
    EXPECT_EQ(t.minute, 59);
    EXPECT_EQ(t.second, 58);
    EXPECT_EQ(t.millisecond, 999);
}

TEST(DateTime, ReplaceableClockDrivesNowDateAndTime) {
    const TDateTime fixed = EncodeDate(2020, 1, 2) + EncodeTime(9, 30, 0, 0);
    {
        TScopedClock clock([&] { return fixed; });
        EXPECT_EQ(Now(), fixed);
        EXPECT_EQ(Date(), EncodeDate(2020, 1, 2));
        EXPECT_NEAR(Time(), EncodeTime(9, 30, 0, 0), 1e-9);
    }
    EXPECT_GT(Now(), EncodeDate(2020, 1, 3)); // back on the system clock
}

TEST(FormatDateTime, HoursMinutesSecondsAndTwelveHourMarkers) {
    const TDateTime morning = EncodeDate(2020, 1, 2) + EncodeTime(9, 5, 7, 0);
    const TDateTime evening = EncodeDate(2020, 1, 2) + EncodeTime(21, 30, 0, 0);
    EXPECT_EQ(FormatDateTime("hh:nn:ss", morning), "09:05:07");
    EXPECT_EQ(FormatDateTime("h:n:s", morning), "9:5:7");
    EXPECT_EQ(FormatDateTime("hh:nn am/pm", evening), "09:30 pm");
    EXPECT_EQ(FormatDateTime("h:nn a/p", morning), "9:05 a");
    EXPECT_EQ(FormatDateTime("hh:nn ampm", EncodeTime(0, 15, 0, 0)), "12:15 AM");
    EXPECT_EQ(FormatDateTime("hh:mm", morning), "09:05"); // m after an hour is minutes
    EXPECT_EQ(FormatDateTime("'at' hh\"h\"", morning), "at 09h");
    EXPECT_EQ(FormatDateTime("yyyy-mm-dd ddd", morning), "2020-01-02 Thu");
    EXPECT_EQ(FormatDateTime("d mmmm yy", morning), "2 January 20");
}
