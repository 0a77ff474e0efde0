#include "platform/runtime/Clock.h"

#include <gtest/gtest.h>

#include <limits>

#include "platform/loop/MessageLoop.h"

namespace pixmora {
namespace {

TEST(Clock, WrapsAsASigned32BitCounter) {
    constexpr Tick highest = std::numeric_limits<Tick>::max();
    constexpr Tick lowest = std::numeric_limits<Tick>::min();
    ClockSetForTest clock(highest - 10, MakeDate(2004, 3, 1));
    const auto isThere = [] {
        return GetTickCount() == lowest + 89;
    };
    for (int turn = 0; turn < 10 && !isThere(); ++turn) WaitUntilTick(lowest + 89);
    EXPECT_TRUE(isThere()) << "a moment beyond the wrap is ahead";
    clock.Advance(600);
    clock.Advance(600);
    EXPECT_EQ(GetTickCount(), lowest + 1289);
    EXPECT_EQ(TicksBetween(highest, lowest + 4), 5);
    EXPECT_EQ(TicksBetween(lowest + 4, highest), -5);
    EXPECT_EQ(TickAfter(highest, 5), lowest + 4);
    EXPECT_TRUE(IsWithin(highest - 9, 1300));
    EXPECT_FALSE(IsWithin(highest - 9, 1298));
    EXPECT_FALSE(IsWithin(lowest + 1290, 1000)) << "49.7 days are long past";
    EXPECT_FALSE(IsWithin(GetTickCount(), -1));
    EXPECT_EQ(Now(), MakeDate(2004, 3, 1, 0, 0, 1)) << "the day's time moves with the ticks";
}

}  // namespace
}  // namespace pixmora
