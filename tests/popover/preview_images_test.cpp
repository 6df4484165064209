#include "app/quick/preview_images.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>

namespace pintle {
namespace {

Bitmap plain(int width, int height, std::uint8_t level) {
    return *Bitmap::create(width, height, [&](auto bytes) { std::fill(bytes.begin(), bytes.end(), level); });
}

struct PreviewImagesTest : testing::Test {
    PreviewImages images;
    std::unique_ptr<QQuickImageProvider> provider = images.makeProvider();

    QImage ask(const QString& address, QSize room) const {
        const auto start = QString("image://%1/").arg(PreviewImages::providerName);
        EXPECT_TRUE(address.startsWith(start)) << address.toStdString();
        return provider->requestImage(address.mid(start.size()), nullptr, room);
    }
};

TEST_F(PreviewImagesTest, TheSamePixelsKeepTheirAddressAndOthersGetAnother) {
    const auto first = images.offer("ice", plain(24, 24, 200));
    EXPECT_EQ(images.offer("ice", plain(24, 24, 200)), first);
    EXPECT_NE(images.offer("ice", plain(24, 24, 100)), first);
}

TEST_F(PreviewImagesTest, AThemeWithoutAPictureHasNoAddressAndItsOldOneAnswersNothing) {
    const auto address = images.offer("ice", plain(24, 24, 200));
    EXPECT_EQ(images.offer("ice", std::nullopt), "");
    EXPECT_TRUE(ask(address, {24, 24}).isNull());
}

TEST_F(PreviewImagesTest, APictureComesAtTheSizeItIsDrawnAtAndKeepsItsProportions) {
    const auto address = images.offer("wide", plain(64, 32, 255));
    EXPECT_EQ(ask(address, {48, 48}).size(), QSize(48, 24));
    EXPECT_EQ(ask(address, {24, 24}).size(), QSize(24, 12));
    EXPECT_EQ(ask(address, {}).size(), QSize(64, 32));
}

TEST_F(PreviewImagesTest, APictureOfTheRightSizeKeepsItsPixels) {
    const auto bitmap = *Bitmap::create(2, 1, [](auto bytes) {
        const std::array<std::uint8_t, 8> pixels{10, 20, 30, 255, 0, 0, 0, 0};
        std::copy(pixels.begin(), pixels.end(), bytes.begin());
    });
    const auto image = ask(images.offer("two", bitmap), {2, 1});
    EXPECT_EQ(image.pixelColor(0, 0), QColor(10, 20, 30));
    EXPECT_EQ(image.pixelColor(1, 0).alpha(), 0);
}

TEST_F(PreviewImagesTest, AnImageKeepsItsPixelsWhenTheBitmapIsGone) {
    QImage image;
    {
        const auto bitmap = plain(4, 4, 77);
        image = imageOf(bitmap);
    }
    EXPECT_EQ(image.constScanLine(3)[15], 77);
}

TEST_F(PreviewImagesTest, IsAskedByAnotherThreadWhileRowsOfferAndTheRowsMayEndFirst) {
    auto offering = std::make_unique<PreviewImages>();
    const auto asked = offering->makeProvider();
    std::atomic<bool> done = false;
    std::thread reader([&] {
        while (!done) {
            const auto image = asked->requestImage("ice/1", nullptr, {24, 24});
            if (!image.isNull()) {
                EXPECT_EQ(image.width(), 24);
            }
        }
    });
    for (int round = 0; round < 200; ++round)
        offering->offer("ice", plain(16, 16, static_cast<std::uint8_t>(round)));
    offering.reset();
    done = true;
    reader.join();
}

}  // namespace
}  // namespace pintle
