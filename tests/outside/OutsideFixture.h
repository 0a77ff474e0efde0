// Settings, sockets and a played service for the tests of the requests to the outside.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "core/site/Globals.h"
#include "core/site/frmSystray.h"
#include "platform/loop/MessageLoop.h"
#include "platform/runtime/Clock.h"
#include "support/PlayedService.h"
#include "support/ProgramFolder.h"

namespace pixmora {

class OutsideFixture : public testing::Test {
protected:
    OutsideFixture() {
        gSystray = std::make_unique<frmSystray>();
        gOnlineTimer = std::make_unique<clsTimer>();
    }
    ~OutsideFixture() override {
        gOnlineTimer.reset();
        gSystray.reset();
    }

    /// Sets the clock at its present tick: from here on, waits in which nothing happens are over at once.
    void SetClock() {
        clockStart = GetTickCount();
        clock.emplace(clockStart, MakeDate(2004, 3, 1));
    }
    /// ms that the set clock has moved on, then lets the real one go on.
    Tick TakeWaited() {
        const Tick waited = GetTickCount() - clockStart;
        clock.reset();
        return waited;
    }

    /// Calls back once, as soon as a part of an answer has arrived.
    void WhenAnswerBegins(std::function<void()> action) {
        watch.OnTimer = [this, action = std::move(action)] {
            if (gSystray->wnskDownload->Tag.empty()) return;
            watch.SetEnabled(false);
            action();
        };
        watch.SetInterval(1);
        watch.SetEnabled(true);
    }

    ProgramFolder folder;
    PlayedService service;
    std::optional<ClockSetForTest> clock;
    Tick clockStart = 0;
    Timer watch;
};

}  // namespace pixmora
