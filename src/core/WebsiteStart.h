// The website's start: a visible, cancellable sequence that ends in listening.
//
//     stopped --> starting --> started --> stopped
//                     |  no album, cancelled, called off, port in use: back through StopWebsite
//                     +--> stopped
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

/// Where the desktop's owner chooses a port.
inline constexpr std::string_view PortSetup = "Please go to Port Setup in Setup and";

/// What shows the sequence: the start window of the desktop, standard output of pixmorad, a record in tests.
class StartView {
public:
    virtual ~StartView() = default;
    /// A new status text, drawn before the call returns.
    virtual void ShowStatus(const std::string &text) = 0;
    /// The progress bar goes one further.
    virtual void AdvanceProgress() {}
    /// Whether the owner has asked to cancel; looked at in three places.
    virtual bool Cancelled() { return false; }
    /// The site is live: the last status text has been shown.
    virtual void ShowLive() {}
    /// The start was refused or has failed: the last status text has been shown.
    virtual void ShowStopped() {}
    /// The words that send the owner to where a port is chosen.
    virtual std::string PlaceOfPort() const { return std::string(PortSetup); }
};

/// Runs the whole sequence; gWebsiteStarted tells the outcome.
/// @throws RunTimeError for a setting that is no number, a database error, a file that vanishes during the scan
void RunStartSequence(StartView &view);

}  // namespace pixmora
