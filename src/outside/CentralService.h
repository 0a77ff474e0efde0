// What a running site has to do with the central service: the check at the start, the listing, the ping. Everything the
// service answers is optional: without it the site works, with its local address.
#pragma once

#include <cstdint>
#include <string>

namespace pixmora {

/// The service's base address of the kind "http://host", from the settings; empty for none: then nothing is sent.
std::string ServiceBase();

/// The site's account at the service as addresses carry it; empty for none.
std::string EncodedAccountName();

/// The address at the service that leads on to the site wherever it is; empty without a service or an account.
std::string RedirectingAddress();
std::string RedirectingAddress(const std::string &serviceBase, const std::string &accountName);

/// The version as the service reads it: two digits, two digits, four digits ("01000000").
std::string VersionText();

enum class ServiceCheck {
    NoAnswer,   ///< or there is no service: the site starts without it
    Answered,   ///< also by news that the owner has seen
    CalledOff,  ///< this version of the program must not start any more
};

/// Asks the service for the site's public address and for news, puts its questions to the owner, and sets
/// gWebsiteAddress. Waits as GetWebPage does. @param startingServer whether a website start is under way
ServiceCheck CheckCentralService(bool startingServer);

/// Announces the site to the public listing, as SendWebRequest does. @param pictures and @param movies in all albums
void SendListing(std::int32_t pictures, std::int32_t movies);

/// The report of every tenth minute: reads the last hour's figures, deletes what is older, and sends the ping as
/// SendWebRequest does; only that last step needs the service. @throws RunTimeError for a database error
void SendPing();

}  // namespace pixmora
