#include "platform/wayland/local_socket.h"

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

namespace pintle::wayland {
namespace {

Error errorOf(int code) { return {"errno", code, std::generic_category().message(code)}; }

}  // namespace

Result<LocalSocket> LocalSocket::connect(const std::filesystem::path& path,
                                         std::chrono::milliseconds patience) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const auto& text = path.native();
    if (text.empty() || text.size() >= sizeof address.sun_path) return errorOf(ENAMETOOLONG);
    std::memcpy(address.sun_path, text.data(), text.size());
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0) return errorOf(errno);
    LocalSocket made(descriptor);
    const timeval wait = {patience.count() / 1000, static_cast<suseconds_t>(patience.count() % 1000 * 1000)};
    // The first one bounds connecting as well, to a listener that takes nobody.
    if (::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &wait, sizeof wait) != 0 ||
        ::setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait) != 0 ||
        ::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        return errorOf(errno);
    return made;
}

LocalSocket::LocalSocket(LocalSocket&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

LocalSocket::~LocalSocket() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

Status LocalSocket::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto sent = ::send(descriptor_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) continue;
        if (sent <= 0) return errorOf(sent < 0 ? errno : EPIPE);
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return Done{};
}

Result<std::string> LocalSocket::receive(std::size_t count) {
    std::string bytes(count, '\0');
    std::size_t filled = 0;
    while (filled < count) {
        const auto got = ::recv(descriptor_, bytes.data() + filled, count - filled, 0);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return errorOf(got < 0 ? errno : EPIPE);
        filled += static_cast<std::size_t>(got);
    }
    return bytes;
}

Result<std::string> LocalSocket::receiveAll(std::size_t most) {
    std::string bytes;
    std::array<char, 4096> block;
    while (true) {
        const auto got = ::recv(descriptor_, block.data(), block.size(), 0);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return errorOf(errno);
        if (got == 0) return bytes;
        bytes.append(block.data(), static_cast<std::size_t>(got));
        if (bytes.size() > most) return errorOf(EFBIG);
    }
}

Result<std::string> LocalSocket::receiveNow() {
    std::array<char, 4096> block;
    while (true) {
        const auto got = ::recv(descriptor_, block.data(), block.size(), MSG_DONTWAIT);
        if (got > 0) return std::string(block.data(), static_cast<std::size_t>(got));
        if (got == 0) return errorOf(EPIPE);
        if (errno == EAGAIN || errno == EWOULDBLOCK) return std::string();
        if (errno != EINTR) return errorOf(errno);
    }
}

}  // namespace pintle::wayland
