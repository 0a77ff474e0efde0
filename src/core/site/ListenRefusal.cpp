// Why a port can't be listened on, in words for the owner.
#include "core/site/ListenRefusal.h"

#include "platform/runtime/RunTimeError.h"
#include "store/Settings.h"

namespace pixmora {

std::string ListenRefusal(const RunTimeError &error, int port, std::string_view place) {
    const std::string number = std::to_string(port);
    const std::string choose = " " + std::string(place) + " choose ";
    switch (error.Number()) {
        case ErrorNumber::AddressInUse:
            return "There is another application already listening on port " + number + "!" + choose + "another port.";
        case ErrorNumber::PermissionDenied:
            return "You have no right to listen on port " + number +
                   "! This computer keeps the ports up to 1023 for its administrator." + choose +
                   "a port above 1023, such as 8080.";
        case ErrorNumber::InvalidProcedureCall:
            return "There is no port " + number + "! Ports go from 1 to 65535." + choose + "another port.";
        case ErrorNumber::AddressNotAvailable:
            return "The address '" + GetSetting("Setup", "ListenAddress") +
                   "' is not an address of this computer! Please correct the setting ListenAddress, or remove it to "
                   "listen on all addresses.";
        default:
            return "This computer cannot listen on port " + number + "!\r\n\r\n" + error.Message();
    }
}

}  // namespace pixmora
