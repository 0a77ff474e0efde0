// The website's one-minute heartbeat.
#pragma once

namespace pixmora {

inline constexpr int SweepIntervalMs = 60000;
/// Ticks between two reports to the central service.
inline constexpr const char *TicksBetweenReports = "10";

/// One tick: notes that the site is online, counts a running minute, reports on every tenth, and clears out idle
/// visitors, old download cookies and stalled transfers.
void HandleConnectionsTick();

void SweepVisitors();
void SweepDownloadCookies();
void SweepTransfers();

}  // namespace pixmora
