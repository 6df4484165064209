// A socket that answers as a compositor does, on a thread of its own until it goes.
#pragma once

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace pintle::wayland {

class FakeCompositor {
  public:
    /// `serve` talks on one connection at a time and returns when it has said all.
    FakeCompositor(const std::filesystem::path& path, std::function<void(int descriptor)> serve)
        : serve_(std::move(serve)), end_(::eventfd(0, EFD_CLOEXEC)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        listener_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listener_, 8) != 0)
            throw std::runtime_error("no socket");
        thread_ = std::thread([this] { run(); });
    }
    ~FakeCompositor() {
        const std::uint64_t one = 1;
        (void)!::write(end_, &one, sizeof one);
        thread_.join();
        ::close(listener_);
        ::close(end_);
    }
    FakeCompositor(const FakeCompositor&) = delete;
    FakeCompositor& operator=(const FakeCompositor&) = delete;

    static std::string receive(int descriptor, std::size_t count) {
        std::string bytes(count, '\0');
        std::size_t filled = 0;
        while (filled < count) {
            const auto got = ::recv(descriptor, bytes.data() + filled, count - filled, 0);
            if (got <= 0) return {};
            filled += static_cast<std::size_t>(got);
        }
        return bytes;
    }
    static void send(int descriptor, const std::string& bytes) {
        (void)!::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }

  private:
    void run() {
        while (true) {
            pollfd watched[2] = {{listener_, POLLIN, 0}, {end_, POLLIN, 0}};
            ::poll(watched, 2, -1);
            if (watched[1].revents) return;
            const int connection = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            if (connection < 0) continue;
            serve_(connection);
            ::close(connection);
        }
    }

    const std::function<void(int)> serve_;
    int listener_ = -1;
    const int end_;
    std::thread thread_;
};

}  // namespace pintle::wayland
