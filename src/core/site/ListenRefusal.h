// Why a port can't be listened on, in words for the owner.
#pragma once

#include <string>
#include <string_view>

namespace pixmora {

class RunTimeError;

/// @param error what Listen threw @param place where the owner chooses a port, and how: "Please go to Port Setup and"
std::string ListenRefusal(const RunTimeError &error, int port, std::string_view place);

}  // namespace pixmora
