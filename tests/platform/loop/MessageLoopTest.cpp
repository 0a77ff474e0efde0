// Waits inside waits, timers inside both, and errors that no handler caught.
#include "platform/loop/MessageLoop.h"

#include <gtest/gtest.h>

#include <QObject>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <stdexcept>
#include <vector>

#include "support/ProcessorTime.h"

namespace pixmora {
namespace {

/// Waits as a page does: over and over until the moment has come.
void WaitThrough(Tick moment) {
    while (GetTickCount() < moment) WaitUntilTick(moment);
}

TEST(MessageLoopWait, IdlesHoweverManyWaitsAreNested) {
    (new QObject)->deleteLater();  // one that an outer loop has to delete, so it stays pending
    const Tick start = GetTickCount();
    int waiting = 0;
    int deepest = 0;
    Timer timer;
    timer.OnTimer = [&] {
        timer.SetEnabled(false);
        deepest = std::max(deepest, ++waiting);
        Timer next;
        if (waiting < 20) {
            next.OnTimer = [&] {
                next.SetEnabled(false), timer.OnTimer();
            };
            next.SetInterval(10);
            next.SetEnabled(true);
        }
        WaitThrough(start + 400);
        --waiting;
    };
    timer.SetInterval(10);
    timer.SetEnabled(true);
    const double before = test::ProcessorSeconds();
    WaitThrough(start + 300);
    EXPECT_LT(test::ProcessorSeconds() - before, 0.2);
    EXPECT_EQ(deepest, 20);
    EXPECT_GE(GetTickCount() - start, 400) << "the innermost ends first";
}

TEST(MessageLoop, HandlersThatTurnTheLoopDoNotPileUpWithoutEnd) {
    int left = 1000;
    int depth = 0;
    int deepest = 0;
    std::function<void()> handler = [&] {
        if (--left <= 0) return;
        deepest = std::max(deepest, ++depth);
        QTimer::singleShot(0, handler);
        DoEvents();
        --depth;
    };
    QTimer::singleShot(0, handler);
    while (left > 0) DoEvents();
    EXPECT_GT(deepest, 4) << "events do run inside each other";
    EXPECT_LE(deepest, 16);
}

TEST(MessageLoopWait, NestsToAnEndToo) {
    const Tick end = GetTickCount() + 300;
    int left = 5000;
    int depth = 0;
    int deepest = 0;
    std::function<void()> handler = [&] {
        if (--left <= 0) return;
        deepest = std::max(deepest, ++depth);
        QTimer::singleShot(0, handler);
        WaitThrough(end);
        --depth;
    };
    handler();
    while (left > 0) DoEvents();
    EXPECT_GT(deepest, 300) << "as many as a site has visitors";
    EXPECT_LT(deepest, 600);
}

TEST(MessageLoopWait, EndsWithTheFirstEventOrTheMoment) {
    Timer timer;
    int ticks = 0;
    timer.OnTimer = [&] {
        ++ticks;
    };
    timer.SetInterval(20);
    timer.SetEnabled(true);
    WaitUntilTick(GetTickCount() + 600'000);
    WaitUntilTick(GetTickCount() - 1);
    timer.SetEnabled(false);
    const Tick end = GetTickCount() + 60;
    WaitThrough(end);
    EXPECT_LE(ticks, 2);
}

TEST(MessageLoopTimer, TicksWhileEnabledWithAnInterval) {
    Timer timer;
    int ticks = 0;
    timer.OnTimer = [&] {
        ++ticks;
        WaitThrough(GetTickCount() + 30);  // it does not tick inside itself
        EXPECT_EQ(timer.Tag, "own");
    };
    timer.Tag = "own";
    EXPECT_FALSE(timer.Enabled());
    timer.SetEnabled(true);
    WaitThrough(GetTickCount() + 20);
    EXPECT_EQ(ticks, 0) << "an interval of 0";
    timer.SetInterval(10);
    EXPECT_EQ(timer.Interval(), 10);
    while (ticks < 3) WaitUntilTick(GetTickCount() + 1000);
    timer.SetEnabled(false);
    ticks = 0;
    WaitThrough(GetTickCount() + 40);
    EXPECT_EQ(ticks, 0);
}

TEST(MessageLoopTimer, MayBeDestroyedByItsHandler) {
    auto timer = std::make_unique<Timer>();
    bool hasRun = false;
    timer->OnTimer = [&, captured = std::string(100, 'x')] {
        timer.reset();
        DoEvents();
        hasRun = captured.size() == 100;
    };
    timer->SetInterval(1);
    timer->SetEnabled(true);
    const Tick end = GetTickCount() + 5000;
    while (!hasRun && GetTickCount() < end) WaitUntilTick(end);
    EXPECT_TRUE(hasRun);
}

TEST(MessageLoop, EndsTheProcessOnAnErrorThatNoHandlerCaught) {
    const auto overflow = [] {
        throw RunTimeError(ErrorNumber::Overflow);
    };
    EXPECT_EXIT(RunEventHandler(overflow), testing::ExitedWithCode(70), "^Overflow\n$");

    std::vector<ErrorNumber> errors;
    SetUnhandledErrorHandler([&](const RunTimeError &error) { errors.push_back(error.Number()); });
    RunEventHandler(overflow);
    RunEventHandler([] {});
    SetUnhandledErrorHandler(nullptr);
    EXPECT_EQ(errors, std::vector{ErrorNumber::Overflow});
    EXPECT_THROW(RunEventHandler([] { throw std::length_error("a bug"); }), std::length_error)
        << "not an event's business";
}

}  // namespace
}  // namespace pixmora
