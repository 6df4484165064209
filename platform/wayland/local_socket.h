// A stream socket of this machine with bounded waits: what answers on the other side may be anything. Any
// thread, one at a time.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/result.h"

namespace pintle::wayland {

class LocalSocket {
  public:
    /// Absent with errno's error: nobody listens, or the path is too long for an address. Each later wait
    /// lasts at most `patience`.
    static Result<LocalSocket> connect(const std::filesystem::path& path, std::chrono::milliseconds patience);
    LocalSocket(LocalSocket&& other) noexcept;
    LocalSocket& operator=(LocalSocket&&) = delete;
    LocalSocket(const LocalSocket&) = delete;
    ~LocalSocket();

    Status send(std::string_view bytes);
    /// Exactly `count` bytes.
    Result<std::string> receive(std::size_t count);
    /// All until the other side ends; EFBIG when that is more than `most`.
    Result<std::string> receiveAll(std::size_t most);
    /// What is there now, at most a few kilobytes, without waiting; empty when nothing is.
    Result<std::string> receiveNow();
    /// Stays the socket's.
    int descriptor() const { return descriptor_; }

  private:
    explicit LocalSocket(int descriptor) : descriptor_(descriptor) {}
    int descriptor_;
};

}  // namespace pintle::wayland
