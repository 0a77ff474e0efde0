// Ticks that wrap, the calendar's arithmetic, and the local time of files.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <limits>

#include "platform/loop/MessageLoop.h"

namespace pixmora {

TEST(Clock, WrapsAsASigned32BitCounter) {
    constexpr Tick highest = std::numeric_limits<Tick>::max();
    constexpr Tick lowest = std::numeric_limits<Tick>::min();
    ClockSetForTest clock(highest - 10, MakeDate(2004, 3, 1));
    for (int turn = 0; turn < 10 && GetTickCount() != lowest + 89; ++turn) WaitUntilTick(lowest + 89);
    EXPECT_EQ(GetTickCount(), lowest + 89) << "a moment beyond the wrap is ahead";
    clock.Advance(1200);
    EXPECT_EQ(TicksBetween(lowest + 4, highest), -5);
    EXPECT_TRUE(IsWithin(highest - 9, 1299));
    EXPECT_FALSE(IsWithin(highest - 9, 1298));
    EXPECT_FALSE(IsWithin(lowest + 1290, 1000)) << "49.7 days are long past";
    EXPECT_EQ(Now(), MakeDate(2004, 3, 1, 0, 0, 1)) << "the day's time moves with the ticks";
}

TEST(Dates, CountMidnightsAndTurnFileTimesToLocalTime) {
    EXPECT_EQ(DateDiffDays(MakeDate(2004, 3, 1, 23, 59, 59), MakeDate(2004, 3, 2)), 1);
    EXPECT_EQ(DateDiffDays(MakeDate(1970, 1, 1), MakeDate(1969, 12, 31, 23)), -1);
    EXPECT_EQ(AddDays(MakeDate(2004, 1, 1, 5), -32000), MakeDate(1916, 5, 22, 5));

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
