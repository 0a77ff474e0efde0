// What speaks with the router, a module of its own: a site that asks none for its port never loads it.
#pragma once

#include "platform/router/RouterProtocols.h"

namespace pixmora {

/// The module's one symbol. @return owned by the caller
extern "C" __attribute__((visibility("default"))) RouterProtocols *PixmoraRouterProtocols();

}  // namespace pixmora
