#include "tools/mac_probe/kept_registrations.h"

#include <utility>

namespace pintle {
namespace {

bool provides(WindowServer& server, WindowServerFunction function) {
    return server.provides(WindowServerFunction::mainConnectionID) && server.provides(function);
}

}  // namespace

KeptRegistrations::KeptRegistrations(WindowServer& server, const std::vector<std::string>& identifiers)
    : server_(server) {
    if (!provides(server_, WindowServerFunction::copyRegisteredCursorImages)) return;
    const auto connection = server_.mainConnectionID();
    for (const std::string& identifier : identifiers) {
        auto copied = server_.copyRegisteredCursorImages(connection, identifier);
        if (copied.error == 0 && !copied.cursor.images.empty()) kept_.push_back(std::move(copied.cursor));
    }
}

int KeptRegistrations::restore() {
    if (!provides(server_, WindowServerFunction::registerCursorWithImages)) return 0;
    const auto connection = server_.mainConnectionID();
    int restored = 0;
    for (const RegisteredCursor& cursor : kept_) {
        const auto now = server_.copyRegisteredCursorImages(connection, cursor.identifier);
        if (now.error == 0 && now.cursor == cursor) continue;
        if (server_.registerCursorWithImages(connection, cursor, RegistrationPurpose::theme) == 0) ++restored;
    }
    return restored;
}

}  // namespace pintle
