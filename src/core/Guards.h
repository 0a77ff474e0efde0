// The guards of a site on the open internet: how many connections it has, how long they may idle, where it listens.
#pragma once

namespace pixmora {

/// What holds where the owner's settings are silent.
inline constexpr int DefaultMaxConnections = 200;
inline constexpr int DefaultIdleTimeout = 60;  ///< seconds

/// Reads ListenPort, ListenAddress, IPv6, TrustedProxy, MaxConnections and IdleTimeout of section Setup; the listening
/// element, the intake and the idle check go by them from then on. A guard's number below 1, or a text that is none,
/// turns it off. Not while the element listens. @throws RunTimeError TypeMismatch for the port
void LoadListenSettings();

/// To be called for each new connection, so that the idle check runs while there are any.
void WatchForIdling();

inline constexpr int IdleCheckIntervalMs = 1000;
/// Closes each connection whose peer has let it wait for the time of IdleTimeout, its transfer included.
/// Ends the check when no connection is open.
void HandleIdleTick();

}  // namespace pixmora
