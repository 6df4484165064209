#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "platform/fake/fake_image_service.h"
#include "platform/qt/qt_image_service.h"

namespace pintle {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct FakeImages {
    static std::unique_ptr<ImageService> make() { return std::make_unique<FakeImageService>(); }
};
struct QtImages {
    static std::unique_ptr<ImageService> make() { return makeQtImageService(); }
};

Bitmap filled(int width, int height, const std::function<std::array<int, 4>(int x, int y)>& pixel) {
    return *Bitmap::create(width, height, [&](std::span<std::uint8_t> out) {
        std::size_t i = 0;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                for (const int channel : pixel(x, y)) out[i++] = static_cast<std::uint8_t>(channel);
    });
}

template <typename Backend>
class ImageServiceContract : public ::testing::Test {
  protected:
    std::unique_ptr<ImageService> images_ = Backend::make();
};
using Backends = ::testing::Types<FakeImages, QtImages>;
TYPED_TEST_SUITE(ImageServiceContract, Backends);

TYPED_TEST(ImageServiceContract, AnOpaqueImageComesBackBitForBit) {
    const auto image = filled(37, 23, [](int x, int y) {
        return std::array{x * 6, y * 11, (x * y) % 256, 255};
    });
    const auto file = this->images_->encodePng(image);
    ASSERT_TRUE(file);
    const auto back = this->images_->decodePng(*file);
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, image);
}

TYPED_TEST(ImageServiceContract, AnEmptyImageComesBackEmpty) {
    const auto image = filled(5, 4, [](int, int) { return std::array{0, 0, 0, 0}; });
    const auto back = this->images_->decodePng(this->images_->encodePng(image).value());
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, image);
}

TYPED_TEST(ImageServiceContract, TranslucentPixelsComeBackWithinOneLevel) {
    // Every alpha with every colour that it allows.
    const auto image = filled(256, 256, [](int colour, int alpha) {
        const int allowed = std::min(colour, alpha);
        return std::array{allowed, alpha - allowed, allowed / 2, alpha};
    });
    const auto back = this->images_->decodePng(this->images_->encodePng(image).value());
    ASSERT_TRUE(back);
    int worst = 0;
    for (std::size_t i = 0; i < image.bytes().size(); ++i)
        worst = std::max(worst, std::abs(int{image.bytes()[i]} - int{back->bytes()[i]}));
    EXPECT_LE(worst, 1);
    for (std::size_t i = 3; i < image.bytes().size(); i += 4) ASSERT_EQ(image.bytes()[i], back->bytes()[i]);
}

TYPED_TEST(ImageServiceContract, ATallStripOfFramesKeepsItsSize) {
    const auto image = filled(3, 5760, [](int x, int y) { return std::array{x, y % 256, 7, 255}; });
    const auto back = this->images_->decodePng(this->images_->encodePng(image).value());
    ASSERT_TRUE(back);
    EXPECT_EQ(*back, image);
}

TYPED_TEST(ImageServiceContract, BytesThatAreNoImageAreAbsent) {
    EXPECT_FALSE(this->images_->decodePng({}));
    const Bytes text = {'n', 'o', ' ', 'i', 'm', 'a', 'g', 'e', ' ', 'a', 't', ' ', 'a', 'l', 'l'};
    EXPECT_FALSE(this->images_->decodePng(text));
}

TYPED_TEST(ImageServiceContract, ATruncatedFileIsAbsentAtEveryLength) {
    const auto image = filled(9, 9, [](int x, int y) { return std::array{x * y, x, y, 255}; });
    const auto file = this->images_->encodePng(image).value();
    for (std::size_t length = 0; length < file.size(); ++length)
        EXPECT_FALSE(this->images_->decodePng(std::span(file).first(length))) << length;
}

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
