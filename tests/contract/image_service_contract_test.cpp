#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "platform/fake/fake_image_service.h"
#include "platform/qt/qt_image_service.h"

namespace pintle {
namespace {

struct FakeImages {
    static std::unique_ptr<ImageService> make() { return std::make_unique<FakeImageService>(); }
};
struct QtImages {
    static std::unique_ptr<ImageService> make() { return makeQtImageService(); }
};

using ImageServices = ::testing::Types<FakeImages, QtImages>;

}  // namespace
}  // namespace pintle

#include "tests/contract/image_service_contract.h"

namespace pintle {
namespace {

std::uint32_t checksum(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0xffffffffU;
    for (const auto byte : bytes) {
        value ^= byte;
        for (int i = 0; i < 8; ++i) value = (value >> 1) ^ ((value & 1U) ? 0xedb88320U : 0U);
    }
    return ~value;
}

void appendNumber(Bytes& file, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) file.push_back(static_cast<std::uint8_t>(value >> shift));
}

Bytes chunk(std::string_view type, const Bytes& content) {
    Bytes body(type.begin(), type.end());
    body.insert(body.end(), content.begin(), content.end());
    Bytes whole;
    appendNumber(whole, static_cast<std::uint32_t>(content.size()));
    whole.insert(whole.end(), body.begin(), body.end());
    appendNumber(whole, checksum(body));
    return whole;
}

constexpr std::size_t kHeaderEnd = 8 + 12 + 13;

class QtImageService : public ::testing::Test {
  protected:
    std::unique_ptr<ImageService> images_ = makeQtImageService();
    const Bitmap image_ = filled(8, 8, [](int x, int y) { return std::array{x, y, 3, 255}; });
    const Bytes file_ = images_->encodePng(image_).value();
};

TEST_F(QtImageService, WritesACompletePngFile) {
    const Bytes start = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0,
                         0,    13,  'I', 'H', 'D',  'R',  0,    0,    0, 8};
    ASSERT_GT(file_.size(), start.size());
    EXPECT_TRUE(std::equal(start.begin(), start.end(), file_.begin()));
    const Bytes end = chunk("IEND", {});
    EXPECT_TRUE(std::equal(end.rbegin(), end.rend(), file_.rbegin()));
}

TEST_F(QtImageService, RefusesAHeaderThatClaimsAbsurdSizes) {
    for (const auto& [width, height] : {std::pair{0x7fffffffU, 0x7fffffffU}, std::pair{100000U, 1U},
                                        std::pair{20000U, 20000U}, std::pair{0U, 8U}}) {
        Bytes header;
        appendNumber(header, width);
        appendNumber(header, height);
        header.insert(header.end(), {8, 6, 0, 0, 0});
        Bytes hostile(file_.begin(), file_.begin() + 8);
        const auto head = chunk("IHDR", header);
        hostile.insert(hostile.end(), head.begin(), head.end());
        hostile.insert(hostile.end(), file_.begin() + kHeaderEnd, file_.end());
        EXPECT_FALSE(images_->decodePng(hostile)) << width << " x " << height;
    }
}

TEST_F(QtImageService, RefusesAFileWithADamagedChecksum) {
    Bytes damaged = file_;
    damaged[kHeaderEnd - 1] ^= 1;
    EXPECT_FALSE(images_->decodePng(damaged));
}

TEST_F(QtImageService, DoesNotUnpackComments) {
    // A comment that claims to be compressed and is not: a reader that looked at it would complain or worse.
    Bytes comment = {'k', 0, 0};
    comment.resize(1000, 0xff);
    const auto extra = chunk("zTXt", comment);
    Bytes file(file_.begin(), file_.begin() + kHeaderEnd);
    for (int i = 0; i < 100; ++i) file.insert(file.end(), extra.begin(), extra.end());
    file.insert(file.end(), file_.begin() + kHeaderEnd, file_.end());
    const auto back = images_->decodePng(file);
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, image_);
}

}  // namespace
}  // namespace pintle
