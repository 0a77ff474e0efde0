#include "platform/router/RouterProtocols.h"

#include "platform/router/RouterModule.h"
#include "platform/runtime/Modules.h"

namespace pixmora {

namespace {

/// Where the module is not installed.
class NoProtocols : public RouterProtocols {
public:
    RouterReply Open(int /*port*/) override { return {}; }
    void Close() override {}
};

}  // namespace

std::unique_ptr<RouterProtocols> SystemRouterProtocols() {
    const auto make =
        reinterpret_cast<decltype(&PixmoraRouterProtocols)>(LoadModule("router", "PixmoraRouterProtocols"));
    return std::unique_ptr<RouterProtocols>(make != nullptr ? make() : new NoProtocols);
}

}  // namespace pixmora
