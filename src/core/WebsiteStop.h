// The website's stop.
#pragma once

namespace pixmora {

/// Undoes the start. Answers under way finish by themselves; no new connection comes in.
/// @param silent no question when visitors are there
/// @return false when the owner refused: nothing has changed
bool StopWebsite(bool silent);

}  // namespace pixmora
