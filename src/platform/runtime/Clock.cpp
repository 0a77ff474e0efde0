// Reads the machine's clocks, or the one that a test has set.
#include "platform/runtime/Clock.h"

#include <optional>
#include <thread>

#include "platform/runtime/Sleep.h"

namespace pixmora {

namespace {

using std::chrono::milliseconds;

const auto processStart = std::chrono::steady_clock::now();

struct SetClock {
    std::int64_t uptime;
    std::chrono::local_time<milliseconds> now;
};

std::optional<SetClock> setClock;

std::uint32_t Unsigned(Tick tick) {
    return static_cast<std::uint32_t>(tick);
}

}  // namespace

std::int64_t Uptime() {
    if (setClock) return setClock->uptime;
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - processStart).count();
}

Tick GetTickCount() {
    return static_cast<Tick>(Uptime());
}

Tick TicksBetween(Tick from, Tick to) {
    return static_cast<Tick>(Unsigned(to) - Unsigned(from));
}

Tick TickAfter(Tick tick, Tick ms) {
    return static_cast<Tick>(Unsigned(tick) + Unsigned(ms));
}

bool IsWithin(Tick since, Tick ms) {
    return ms >= 0 && Unsigned(GetTickCount()) - Unsigned(since) <= Unsigned(ms);
}

void Sleep(int ms) {
    if (IsClockSet()) {
        MoveSetClockTo(TickAfter(GetTickCount(), ms));
    } else {
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
    }
}

DateTime Now() {
    if (setClock) return std::chrono::floor<std::chrono::seconds>(setClock->now);
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    return LocalTime(now.time_since_epoch().count());
}

DateTime Today() {
    return std::chrono::floor<std::chrono::days>(Now());
}

ClockSetForTest::ClockSetForTest(Tick tick, DateTime now) {
    setClock = SetClock{tick, now};
}

ClockSetForTest::~ClockSetForTest() {
    setClock.reset();
}

void ClockSetForTest::Advance(std::int32_t ms) {
    setClock->uptime += ms;
    setClock->now += milliseconds(ms);
}

void ClockSetForTest::SetNow(DateTime now) {
    setClock->now = now;
}

bool IsClockSet() {
    return setClock.has_value();
}

void MoveSetClockTo(Tick tick) {
    if (!setClock) return;
    const std::int32_t ms = TicksBetween(GetTickCount(), tick);
    if (ms <= 0) return;  // the moment is past
    setClock->uptime += ms;
    setClock->now += milliseconds(ms);
}

}  // namespace pixmora
