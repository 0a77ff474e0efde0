#include "platform/Clock.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/MessageLoop.h"

namespace pixmora {
namespace {

TEST(Clock, MovesTickAndDateTogether) {
    ClockSetForTest clock(1000, MakeDate(2004, 2, 29, 23, 59, 58));
    clock.Advance(600);
    clock.Advance(600);
    EXPECT_EQ(GetTickCount(), 2200);
    EXPECT_EQ(Now(), MakeDate(2004, 2, 29, 23, 59, 59));
    EXPECT_EQ(Today(), MakeDate(2004, 2, 29));
    SleepBlocking(800);
    EXPECT_EQ(GetTickCount(), 3000);
    EXPECT_EQ(Now(), MakeDate(2004, 3, 1));
    MoveSetClockTo(2999);
    EXPECT_EQ(GetTickCount(), 3000) << "never back";
}

TEST(Clock, WrapsAsASigned32BitCounter) {
    constexpr Tick highest = std::numeric_limits<Tick>::max();
    constexpr Tick lowest = std::numeric_limits<Tick>::min();
    ClockSetForTest clock(highest - 10, MakeDate(2004, 3, 1));
    const auto isThere = [] {
        return GetTickCount() == lowest + 89;
    };
    for (int turn = 0; turn < 10 && !isThere(); ++turn) WaitUntilTick(lowest + 89);
    EXPECT_TRUE(isThere()) << "a moment beyond the wrap is ahead";
    clock.Advance(1);
    EXPECT_EQ(GetTickCount(), lowest + 90);
}

TEST(Clock, RunsByItselfOnceTheTestGivesItBack) {
    { const ClockSetForTest clock(1'000'000'000, MakeDate(1999, 1, 1)); }
    EXPECT_FALSE(IsClockSet());
    const Tick before = GetTickCount();
    EXPECT_LT(before, 1'000'000'000);
    SleepBlocking(20);
    EXPECT_GE(GetTickCount() - before, 20);
    EXPECT_LT(GetTickCount() - before, 5000);
    EXPECT_GE(YearOf(Now()), 2024);
}

}  // namespace
}  // namespace pixmora
