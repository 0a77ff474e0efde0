// Connections and their requests: the handlers of the sockets' events.
#pragma once

#include "core/site/Response.h"

namespace pixmora {

/// A new element takes the connection; one that doesn't come to be connected is unloaded again.
void HandleConnectionRequest(int requestId);

/// Takes everything that has arrived as one whole request and answers it, with "Bad Request" for an error anywhere on
/// the way. A login whose body is not there yet is answered when it comes, or after 25 ms.
void HandleDataArrival(const Connection &socket);

/// The answer, or a chunk of it, has left: sends the next chunk of a transfer, or closes and trims the array.
/// @throws RunTimeError SubscriptOutOfRange for an index above 256, the accepted ceiling of the design
void HandleSendComplete(const Connection &socket);

}  // namespace pixmora
