// The guards of a site on the open internet: how many connections it has, how long they may idle, where it listens.
#pragma once

namespace pixmora {

/// What holds where the owner's settings are silent. The site as such has no guards.
struct GuardDefaults {
    int MaxConnections = 0;  ///< 0: any number
    int IdleTimeout = 0;     ///< seconds, 0: for ever
};

/// Reads MaxConnections, IdleTimeout and ListenAddress of section Setup; the listening element and the idle check go by
/// them from then on. A number below 1, or a text that is none, turns its guard off. Not while the element listens.
void LoadGuards(const GuardDefaults &defaults);

/// To be called for each new connection, so that the idle check runs while there are any.
void WatchForIdling();

inline constexpr int IdleCheckIntervalMs = 1000;
/// Closes each connection whose peer has let it wait for the time of IdleTimeout, its transfer included. Ends the check
/// when no connection is open.
void HandleIdleTick();

}  // namespace pixmora
