// Ticks that wrap, and dates: arithmetic over the calendar, their texts, and reading them back.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <limits>

#include "platform/loop/MessageLoop.h"
#include "platform/runtime/RunTimeError.h"

namespace pixmora {

TEST(Clock, WrapsAsASigned32BitCounter) {
    constexpr Tick highest = std::numeric_limits<Tick>::max();
    constexpr Tick lowest = std::numeric_limits<Tick>::min();
    ClockSetForTest clock(highest - 10, MakeDate(2004, 3, 1));
    for (int turn = 0; turn < 10 && GetTickCount() != lowest + 89; ++turn) WaitUntilTick(lowest + 89);
    EXPECT_EQ(GetTickCount(), lowest + 89) << "a moment beyond the wrap is ahead";
    clock.Advance(1200);
    EXPECT_EQ(TicksBetween(highest, lowest + 4), 5);
    EXPECT_EQ(TicksBetween(lowest + 4, highest), -5);
    EXPECT_EQ(TickAfter(highest, 5), lowest + 4);
    EXPECT_TRUE(IsWithin(highest - 9, 1299));
    EXPECT_FALSE(IsWithin(highest - 9, 1298));
    EXPECT_FALSE(IsWithin(lowest + 1290, 1000)) << "49.7 days are long past";
    EXPECT_FALSE(IsWithin(GetTickCount(), -1));
    EXPECT_EQ(Now(), MakeDate(2004, 3, 1, 0, 0, 1)) << "the day's time moves with the ticks";
}

TEST(Dates, CountsMidnights) {
    EXPECT_EQ(DateDiffDays(MakeDate(2004, 3, 1, 23, 59, 59), MakeDate(2004, 3, 2)), 1);
    EXPECT_EQ(DateDiffDays(MakeDate(2004, 3, 1), MakeDate(2004, 2, 28)), -2);
    EXPECT_EQ(DateDiffDays(MakeDate(1969, 12, 31, 23), MakeDate(1970, 1, 1)), 1);
    EXPECT_EQ(AddDays(MakeDate(2004, 1, 1, 5), -32000), MakeDate(1916, 5, 22, 5));
}

TEST(Dates, ReadsBackWhatItPrints) {
    const std::tuple<DateTime, const char *, const char *, const char *> cases[] = {
        // date, as people read it, with its time, in the database
        {MakeDate(2004, 3, 1, 16, 5, 6), "Monday, March 1, 2004", "3/1/2004 4:05:06 PM", "2004-03-01 16:05:06"},
        {MakeDate(2004, 12, 31), "Friday, December 31, 2004", "12/31/2004", "2004-12-31"},
        {MakeDate(2004, 12, 31, 0, 0, 1), "Friday, December 31, 2004", "12/31/2004 12:00:01 AM", "2004-12-31 00:00:01"},
        {MakeDate(1960, 2, 29, 12), "Monday, February 29, 1960", "2/29/1960 12:00:00 PM", "1960-02-29 12:00:00"},
    };
    for (const auto &[date, text, withTime, iso] : cases) {
        EXPECT_EQ(LongDate(date), text);
        EXPECT_EQ(DateText(date), withTime);
        EXPECT_EQ(IsoDate(date), iso);
        EXPECT_EQ(ParseDate(withTime), date) << withTime;
        EXPECT_EQ(ParseDate(iso), date) << iso;
    }
    EXPECT_EQ(ParseDate("3/1/2004 16:05:06"), MakeDate(2004, 3, 1, 16, 5, 6));
    EXPECT_THROW(MonthName(0), RunTimeError);
    EXPECT_THROW(MonthName(13), RunTimeError);
}

TEST(Dates, RefusesWhatIsNoDate) {
    for (const char *text :
         {"", "today", "2/30/2004", "2003-02-29", "13/1/2004", "0/1/2004", "3/1", "3/1/04", "3-1-2004", "2004-03/01",
          "3/1/2004 ", "3/1/2004 4:05", "3/1/2004 13:05:06 PM", "3/1/2004 0:05:06 AM", "2004-03-01 24:00:00",
          "2004-03-01 1:60:00", "2004-03-01T01:00:00", "2004-03-01 1:00:00x", "-2004-03-01"}) {
        EXPECT_THROW(ParseDate(text), RunTimeError) << text;
    }
}

TEST(Dates, TurnsFileTimesToLocalTime) {
    EXPECT_EQ(LocalTime(1078157106), MakeDate(2004, 3, 1, 16, 5, 6));
    EXPECT_EQ(LocalTime(-1), MakeDate(1969, 12, 31, 23, 59, 59));
    EXPECT_EQ(LocalTime(std::numeric_limits<std::int64_t>::max()), DateTime{}) << "no year holds it";

    setenv("TZ", "EST5EDT,M3.2.0,M11.1.0", 1);
    tzset();
    EXPECT_EQ(LocalTime(1078157106), MakeDate(2004, 3, 1, 11, 5, 6));
    EXPECT_EQ(LocalTime(1091376306), MakeDate(2004, 8, 1, 12, 5, 6)) << "in summer";
    setenv("TZ", "UTC", 1);
    tzset();
}

}  // namespace pixmora
