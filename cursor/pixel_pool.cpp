#include "cursor/pixel_pool.h"

#include <sys/mman.h>

#include <algorithm>
#include <new>
#include <utility>

namespace pintle {
namespace {

/// Each run by itself, so that the address sanitizer sees every step beyond it.
#ifdef PINTLE_SEPARATE_RUNS
constexpr bool kSeparateRuns = true;
#else
constexpr bool kSeparateRuns = false;
#endif

constexpr std::size_t kHugePage = std::size_t{2} << 20;
/// Runs begin at a cache line.
constexpr std::size_t kRunAlignment = 64;
/// A multiple of every system's page.
constexpr std::size_t kBlockUnit = std::size_t{64} << 10;
/// Above this a block asks for huge pages.
constexpr std::size_t kSmallBlock = std::size_t{512} << 10;

constexpr std::size_t roundedUp(std::size_t bytes, std::size_t unit) {
    return (bytes + unit - 1) / unit * unit;
}

/// Most of the time of reading a theme is the system's, handing out fresh pages one by one. So large blocks
/// ask for huge pages and smaller ones for all their pages at once, where the system knows these wishes.
void askForPages(void* start, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    if (bytes >= kHugePage) {
        ::madvise(start, bytes, MADV_HUGEPAGE);
        return;
    }
#endif
#ifdef MADV_POPULATE_WRITE
    ::madvise(start, bytes, MADV_POPULATE_WRITE);
#endif
    static_cast<void>(start);
    static_cast<void>(bytes);
}

/// `bytes` is a multiple of kBlockUnit or of kHugePage; huge pages need blocks that begin at a multiple of
/// one.
std::shared_ptr<std::uint8_t> makeBlock(std::size_t bytes) {
    const bool huge = bytes % kHugePage == 0;
    const std::size_t mapped = huge ? bytes + kHugePage : bytes;
    void* start = ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED) return nullptr;
    auto* first = static_cast<std::uint8_t*>(start);
    if (huge) {
        const std::size_t before =
            (kHugePage - reinterpret_cast<std::uintptr_t>(first) % kHugePage) % kHugePage;
        if (before > 0) ::munmap(first, before);
        first += before;
        if (before < kHugePage) ::munmap(first + bytes, kHugePage - before);
    }
    askForPages(first, bytes);
    return {first, [bytes](std::uint8_t* block) { ::munmap(block, bytes); }};
}

}  // namespace

std::shared_ptr<std::uint32_t> PixelPool::allocate(std::size_t count) {
    return reserve(count) ? allocateReserved(count) : nullptr;
}

bool PixelPool::reserve(std::size_t count) {
    if (count > left_ / sizeof(std::uint32_t)) return false;
    left_ -= count * sizeof(std::uint32_t);
    return true;
}

std::shared_ptr<std::uint32_t> PixelPool::allocateReserved(std::size_t count) {
    if constexpr (kSeparateRuns) {
        std::shared_ptr<std::uint32_t[]> run(new (std::nothrow) std::uint32_t[count]);
        return run ? std::shared_ptr<std::uint32_t>(run, run.get()) : nullptr;
    }
    const std::size_t bytes =
        roundedUp(std::max<std::size_t>(count, 1) * sizeof(std::uint32_t), kRunAlignment);
    if (bytes > freeBytes_) {
        std::size_t size = roundedUp(std::max(bytes, nextBlock_), kBlockUnit);
        if (size > kSmallBlock) size = roundedUp(size, kHugePage);
        auto block = makeBlock(size);
        if (!block) return nullptr;
        free_ = std::move(block);
        freeBytes_ = size;
        // A huge page costs no more than a few dozen small ones.
        nextBlock_ = kHugePage;
    }
    std::shared_ptr<std::uint32_t> run(free_, reinterpret_cast<std::uint32_t*>(free_.get()));
    free_ = std::shared_ptr<std::uint8_t>(free_, free_.get() + bytes);
    freeBytes_ -= bytes;
    return run;
}

}  // namespace pintle
