// Ticks that wrap, waits inside waits, timers inside both, and errors that no handler caught.
#include "platform/loop/MessageLoop.h"

#include <gtest/gtest.h>

#include <QObject>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

namespace pixmora {
namespace {

/// Waits as a page does: over and over until the moment has come.
void WaitThrough(Tick moment) {
    while (GetTickCount() < moment) WaitUntilTick(moment);
}

TEST(MessageLoopWait, IdlesHoweverManyWaitsAreNested) {
    (new QObject)->deleteLater();  // one that an outer loop has to delete, so it stays pending
    bool isOver = false;
    int waiting = 0;
    int disturbances = 0;
    std::function<void()> handler = [&] {
        if (++waiting < 20) QTimer::singleShot(1, handler);
        if (waiting == 20) QTimer::singleShot(40, [&] { isOver = true; });
        for (; !isOver; ++disturbances) WaitUntilTick(GetTickCount() + 600'000);
    };
    handler();
    EXPECT_LE(disturbances, 2 * 20) << "each is woken by the timer of the next and the last";
}

/// How deep events run inside each other whose handlers all turn the loop.
int DeepestOf(int events, const std::function<void()> &turn) {
    int depth = 0;
    int deepest = 0;
    std::function<void()> handler = [&] {
        if (--events <= 0) return;
        deepest = std::max(deepest, ++depth);
        QTimer::singleShot(0, handler);
        turn();
        --depth;
    };
    handler();
    while (events > 0) DoEvents();
    return deepest;
}

TEST(MessageLoop, NestsToAnEnd) {
    const int events = DeepestOf(1000, DoEvents);
    EXPECT_GT(events, 4) << "events do run inside each other";
    EXPECT_LE(events, 17);
    const Tick end = GetTickCount() + 200;
    const int waits = DeepestOf(5000, [end] { WaitThrough(end); });
    EXPECT_GT(waits, 300) << "as many as a site has visitors";
    EXPECT_LT(waits, 600);
}

TEST(MessageLoopTimer, TicksWhileEnabledWithAnIntervalAndMayBeDestroyedByItsHandler) {
    auto timer = std::make_unique<Timer>();
    int ticks = 0;
    timer->OnTimer = [&] {
        ++ticks;
        WaitThrough(GetTickCount() + 15);  // it does not tick inside itself
    };
    timer->SetEnabled(true);
    WaitThrough(GetTickCount() + 10);
    EXPECT_EQ(ticks, 0) << "an interval of 0";
    timer->SetInterval(5);
    while (ticks < 3) WaitUntilTick(GetTickCount() + 600'000);
    timer->SetEnabled(false);
    ticks = 0;
    WaitThrough(GetTickCount() + 20);
    EXPECT_EQ(ticks, 0);

    timer->OnTimer = [&, captured = std::string(100, 'x')] {
        timer.reset();
        DoEvents();
        ticks = static_cast<int>(captured.size());
    };
    timer->SetEnabled(true);
    while (timer) WaitUntilTick(GetTickCount() + 600'000);
    EXPECT_EQ(ticks, 100);
}

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

TEST(MessageLoop, EndsTheProcessOnAnErrorThatNoHandlerCaught) {
    const auto overflow = [] {
        throw RunTimeError(ErrorNumber::Overflow);
    };
    EXPECT_EXIT(RunEventHandler(overflow), testing::ExitedWithCode(70), "^Overflow\n$");
}

}  // namespace
}  // namespace pixmora
