#include "platform/freedesktop/bus_address.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace pintle {
namespace {

constexpr int kProbeMilliseconds = 1000;

/// Without the bus's identity: one that is started again at its old place has a new one.
std::string withoutIdentity(std::string address) {
    for (auto at = address.find(",guid="); at != std::string::npos; at = address.find(",guid=", at))
        address.erase(at, std::min(address.find_first_of(",;", at + 1), address.size()) - at);
    return address;
}

std::string unescaped(std::string_view value) {
    return QByteArray::fromPercentEncoding(QByteArray(value.data(), static_cast<qsizetype>(value.size())))
        .toStdString();
}

/// The socket of the first entry of an address list when that is a local one.
std::optional<std::pair<sockaddr_un, socklen_t>> localSocket(std::string_view address) {
    address = address.substr(0, address.find(';'));
    if (!address.starts_with("unix:")) return std::nullopt;
    address.remove_prefix(5);
    while (!address.empty()) {
        const auto end = address.find(',');
        const auto entry = address.substr(0, end);
        address = end == std::string_view::npos ? std::string_view() : address.substr(end + 1);
        const bool abstract = entry.starts_with("abstract=");
        if (!abstract && !entry.starts_with("path=")) continue;
        const std::string name = unescaped(entry.substr(entry.find('=') + 1));
        sockaddr_un socket = {};
        socket.sun_family = AF_UNIX;
        if (name.empty() || name.size() + 1 >= sizeof socket.sun_path) return std::nullopt;
        std::memcpy(socket.sun_path + (abstract ? 1 : 0), name.data(), name.size());
        return std::pair{socket, static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + 1)};
    }
    return std::nullopt;
}

std::optional<std::string> sessionBusAddress() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address && *address) {
        // This form would start a bus of its own.
        if (std::string_view(address).starts_with("autolaunch")) return std::nullopt;
        return withoutIdentity(address);
    }
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || *runtime != '/') return std::nullopt;
    const std::string socket = std::string(runtime) + "/bus";
    if (::access(socket.c_str(), F_OK) != 0) return std::nullopt;
    return "unix:path=" + socket;
}

std::string systemBusAddress() {
    const char* address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
    return address && *address ? withoutIdentity(address) : "unix:path=/var/run/dbus/system_bus_socket";
}

}  // namespace

std::optional<std::string> busAddress(BusKind kind) {
    return kind == BusKind::session ? sessionBusAddress() : systemBusAddress();
}

bool busAnswers(const std::string& address) {
    const auto local = localSocket(address);
    if (!local) return true;
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (fd < 0) return true;
    bool alive = false;
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&local->first), local->second) == 0) {
        std::string hello(1, '\0');
        hello += "AUTH EXTERNAL " + QByteArray::number(::getuid()).toHex().toStdString() + "\r\n";
        pollfd reply{fd, POLLIN, 0};
        char first = 0;
        alive = ::send(fd, hello.data(), hello.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(hello.size()) &&
                ::poll(&reply, 1, kProbeMilliseconds) == 1 && ::recv(fd, &first, 1, 0) == 1;
    }
    ::close(fd);
    return alive;
}

}  // namespace pintle
