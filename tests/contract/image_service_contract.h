// What every image service does. Include it once, after naming the backends to try as the
// type list `ImageServices`.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include "platform/image_service.h"

namespace pintle {
namespace {

using Bytes = std::vector<std::uint8_t>;

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
TYPED_TEST_SUITE(ImageServiceContract, ImageServices);

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

}  // namespace
}  // namespace pintle
