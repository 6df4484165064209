// Memory for many runs of pixels that live and go together: a theme's parsed images, a set's bitmaps. Runs
// are carved out of few large blocks, which go back to the system at once when the last run in them is
// released. One thread at a time; what it hands out may be used and released on any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pintle {

class PixelPool {
  public:
    /// The pool never hands out more than `limit` bytes in its life, so that a hostile theme cannot take all
    /// memory.
    explicit PixelPool(std::size_t limit = kUsualLimit) : left_(limit) {}

    /// `count` words of uninitialised memory; null when the memory cannot be had.
    std::shared_ptr<std::uint32_t> allocate(std::size_t count);
    /// The same in two steps: takes the words off the limit, and hands them out. False beyond the limit.
    bool reserve(std::size_t count);
    std::shared_ptr<std::uint32_t> allocateReserved(std::size_t count);
    /// Takes back a reservation of which nothing was handed out.
    void giveBack(std::size_t count) { left_ += count * sizeof(std::uint32_t); }

    /// Far above what any theme needs.
    static constexpr std::size_t kUsualLimit = std::size_t{1} << 30;

  private:
    std::size_t left_;
    std::size_t nextBlock_ = kFirstBlock;
    /// What is free in the newest block.
    std::shared_ptr<std::uint8_t> free_;
    std::size_t freeBytes_ = 0;

    static constexpr std::size_t kFirstBlock = std::size_t{64} << 10;
};

}  // namespace pintle
