// The sleep of what waits for other programs.
#pragma once

namespace pixmora {

/// Sleeps for so many ms without running any event. Returns at once when a test has set the clock (and moves it).
void Sleep(int ms);

}  // namespace pixmora
