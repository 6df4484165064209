// What the Xcursor reader reads from: bytes in memory or a file. One thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <utility>

namespace pintle {

class ByteSource {
  public:
    virtual ~ByteSource() = default;
    /// Bytes there are, as far as known; a read that comes short lowers it.
    std::uint64_t length() const { return length_; }
    /// Fills `out` from `offset` on and answers how many bytes there were.
    std::size_t read(std::uint64_t offset, std::span<std::uint8_t> out);

  protected:
    explicit ByteSource(std::uint64_t length) : length_(length) {}
    ByteSource(const ByteSource&) = default;
    ByteSource& operator=(const ByteSource&) = default;
    void setLength(std::uint64_t length) { length_ = length; }
    /// `offset` + the size of `out` is at most length().
    virtual std::size_t readInside(std::uint64_t offset, std::span<std::uint8_t> out) = 0;

  private:
    std::uint64_t length_;
};

class MemorySource : public ByteSource {
  public:
    explicit MemorySource(std::span<const std::uint8_t> data) : ByteSource(data.size()), data_(data) {}

  private:
    std::size_t readInside(std::uint64_t offset, std::span<std::uint8_t> out) override;

    std::span<const std::uint8_t> data_;
};

/// A regular file, read piece by piece: a mapping would end the program when the file shrinks meanwhile.
/// Its beginning, where most of the small reads go, is read with the first of them. Of length 0 when the file
/// cannot be read or is not regular.
class FileSource : public ByteSource {
  public:
    explicit FileSource(const std::filesystem::path& file);
    /// `name` in the folder that the descriptor `folder` stands for.
    FileSource(int folder, const std::string& name);
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    /// Device and inode; zeros when the file cannot be read.
    using Identity = std::pair<std::uint64_t, std::uint64_t>;
    Identity identity() const { return identity_; }

    /// Whether the file is as it was when it was opened, and every read found all of it.
    bool isUnchanged() const;

  private:
    /// Needs an open descriptor or -1.
    void examine();
    std::size_t readInside(std::uint64_t offset, std::span<std::uint8_t> out) override;
    std::size_t readFromFile(std::uint64_t offset, std::span<std::uint8_t> out) const;

    int descriptor_ = -1;
    Identity identity_;
    /// Seconds and nanoseconds.
    std::pair<std::int64_t, std::int64_t> modified_;
    std::size_t headBytes_ = 0;
    std::array<std::uint8_t, 4096> head_;
};

}  // namespace pintle
