#include "platform/mac/mac_window_server.h"

#include "platform/mac/private_functions.h"
#include "tests/mac/fake/fake_test.h"

namespace pintle {
namespace {

using mac_fake::world;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::array kFunctions = {
    std::pair{WindowServerFunction::mainConnectionID, "CGSMainConnectionID"},
    std::pair{WindowServerFunction::registerCursorWithImages, "CGSRegisterCursorWithImages"},
    std::pair{WindowServerFunction::coreCursorUnregisterAll, "CoreCursorUnregisterAll"},
    std::pair{WindowServerFunction::copyRegisteredCursorImages, "CGSCopyRegisteredCursorImages"},
};
const std::string kOpenCoreGraphics = "open /System/Library/Frameworks/CoreGraphics.framework/CoreGraphics 2";
const std::string kOpenApplicationServices =
    "open /System/Library/Frameworks/ApplicationServices.framework/ApplicationServices 2";

TEST(MacWindowServerLookup, NothingIsOpenedBeforeTheFirstQuestion) {
    IN_A_NEW_PROCESS([] {
        makeMacWindowServer();
        EXPECT_THAT(world().lookups, IsEmpty());
    });
}

TEST(MacWindowServerLookup, BothLibrariesAreOpenedOnceWithImmediateBindingAndEachFunctionIsSoughtOnce) {
    IN_A_NEW_PROCESS([] {
        for (int i = 0; i < 2; ++i) {
            const auto server = makeMacWindowServer();
            for (const auto& [function, name] : kFunctions) EXPECT_TRUE(server->provides(function));
        }
        EXPECT_THAT(world().lookups, ElementsAre(kOpenCoreGraphics, kOpenApplicationServices,
                                                 "find CoreGraphics CGSMainConnectionID",
                                                 "find CoreGraphics CGSRegisterCursorWithImages",
                                                 "find CoreGraphics CoreCursorUnregisterAll",
                                                 "find CoreGraphics CGSCopyRegisteredCursorImages"));
    });
}

TEST(MacWindowServerLookup, ApplicationServicesIsAskedOnlyForWhatCoreGraphicsLacks) {
    IN_A_NEW_PROCESS([] {
        world().missingFunctions = {{"CoreGraphics", "CoreCursorUnregisterAll"}};
        const auto server = makeMacWindowServer();
        EXPECT_TRUE(server->provides(WindowServerFunction::coreCursorUnregisterAll));
        EXPECT_TRUE(server->provides(WindowServerFunction::mainConnectionID));
        EXPECT_THAT(world().lookups, ElementsAre(kOpenCoreGraphics, kOpenApplicationServices,
                                                 "find CoreGraphics CoreCursorUnregisterAll",
                                                 "find ApplicationServices CoreCursorUnregisterAll",
                                                 "find CoreGraphics CGSMainConnectionID"));
        server->coreCursorUnregisterAll(7);
        EXPECT_THAT(world().unregistered, ElementsAre(7U));
    });
}

TEST(MacWindowServerLookup, ALibraryThatDoesNotOpenIsSkipped) {
    IN_A_NEW_PROCESS([] {
        world().missingLibraries = {"CoreGraphics"};
        const auto server = makeMacWindowServer();
        for (const auto& [function, name] : kFunctions) EXPECT_TRUE(server->provides(function)) << name;
    });
}

TEST(MacWindowServerLookup, WithoutLibrariesNothingIsProvidedAndNoLookupIsRetried) {
    IN_A_NEW_PROCESS([] {
        world().missingLibraries = {"CoreGraphics", "ApplicationServices"};
        const auto server = makeMacWindowServer();
        for (int i = 0; i < 2; ++i)
            for (const auto& [function, name] : kFunctions) EXPECT_FALSE(server->provides(function));
        world().missingLibraries.clear();
        for (const auto& [function, name] : kFunctions) EXPECT_FALSE(server->provides(function));
        EXPECT_THAT(world().lookups, ElementsAre(kOpenCoreGraphics, kOpenApplicationServices));
    });
}

TEST(MacWindowServerLookup, EachFunctionMayBeMissingByItselfForTheLifeOfTheProcess) {
    for (const auto& missing : kFunctions)
        IN_A_NEW_PROCESS([&] {
            world().missingFunctions = {{"CoreGraphics", missing.second},
                                        {"ApplicationServices", missing.second}};
            const auto server = makeMacWindowServer();
            for (const auto& [function, name] : kFunctions)
                EXPECT_EQ(server->provides(function), function != missing.first) << name;
            world().missingFunctions.clear();
            EXPECT_FALSE(server->provides(missing.first));
            EXPECT_FALSE(makeMacWindowServer()->provides(missing.first));
        });
}

TEST(MacWindowServerLookup, AnUnknownNameIsSoughtInBothLibrariesAndNotFound) {
    IN_A_NEW_PROCESS([] {
        EXPECT_EQ(findPrivateFunction("CGSNoSuchThing"), nullptr);
        EXPECT_THAT(world().lookups, ElementsAre(kOpenCoreGraphics, kOpenApplicationServices,
                                                 "find CoreGraphics CGSNoSuchThing",
                                                 "find ApplicationServices CGSNoSuchThing"));
    });
}

RegisteredCursor strip() {
    return {"com.apple.coregraphics.Wait", {picture(8, 24)}, {8, 8}, {3.5, 4.25}, 3, 0.05};
}

TEST(MacWindowServer, ARegistrationArrivesWithEveryArgument) {
    const auto server = makeMacWindowServer();
    EXPECT_EQ(server->mainConnectionID(), 4711U);
    EXPECT_EQ(server->registerCursorWithImages(4711, strip(), RegistrationPurpose::theme), 0);
    ASSERT_EQ(world().registrations.size(), 1U);
    const auto& arrived = world().registrations.front();
    EXPECT_EQ(arrived.connection, 4711U);
    EXPECT_EQ(arrived.identifier, "com.apple.coregraphics.Wait");
    EXPECT_TRUE(arrived.setGlobally);
    EXPECT_TRUE(arrived.instantly);
    EXPECT_EQ(arrived.size.width, 8);
    EXPECT_EQ(arrived.size.height, 8);
    EXPECT_EQ(arrived.hotspot.x, 3.5);
    EXPECT_EQ(arrived.hotspot.y, 4.25);
    EXPECT_EQ(arrived.frameCount, 3U);
    EXPECT_EQ(arrived.frameDuration, 0.05);
    EXPECT_THAT(arrived.images, ElementsAre(picture(8, 24)));
    EXPECT_EQ(arrived.seedBefore, 0);
}

TEST(MacWindowServer, ThePurposeChangesNothing) {
    const auto server = makeMacWindowServer();
    EXPECT_EQ(server->registerCursorWithImages(1, strip(), RegistrationPurpose::original), 0);
    EXPECT_THAT(world().registrations.at(0).images, ElementsAre(picture(8, 24)));
}

TEST(MacWindowServer, SeveralImagesArriveInOrder) {
    auto cursor = strip();
    cursor.images = {picture(8, 8, 1), picture(16, 16, 2), picture(8, 8, 3)};
    EXPECT_EQ(makeMacWindowServer()->registerCursorWithImages(1, cursor, RegistrationPurpose::original), 0);
    EXPECT_THAT(world().registrations.at(0).images,
                ElementsAre(picture(8, 8, 1), picture(16, 16, 2), picture(8, 8, 3)));
}

TEST(MacWindowServer, ErrorsComeBackAsTheyAre) {
    const auto server = makeMacWindowServer();
    world().registerErrors["com.apple.coregraphics.Wait"] = 1001;
    EXPECT_EQ(server->registerCursorWithImages(1, strip(), RegistrationPurpose::theme), 1001);
    world().unregisterError = -5;
    EXPECT_EQ(server->coreCursorUnregisterAll(9), -5);
    EXPECT_THAT(world().unregistered, ElementsAre(9U));
    world().copyError = 1004;
    const auto copied = server->copyRegisteredCursorImages(4711, "com.apple.coregraphics.Arrow");
    EXPECT_EQ(copied.error, 1004);
    EXPECT_THAT(copied.cursor.images, IsEmpty());
}

TEST(MacWindowServer, ACopyBringsEveryValueAndAllImages) {
    world().served["com.apple.coregraphics.Arrow"] = {
        {24, 32}, {4.5, 3}, 2, 0.1, {picture(24, 64, 1), picture(48, 128, 2)}};
    const auto copied =
        makeMacWindowServer()->copyRegisteredCursorImages(4711, "com.apple.coregraphics.Arrow");
    EXPECT_EQ(copied.error, 0);
    EXPECT_EQ(copied.cursor, (RegisteredCursor{"com.apple.coregraphics.Arrow",
                                               {picture(24, 64, 1), picture(48, 128, 2)},
                                               {24, 32},
                                               {4.5, 3},
                                               2,
                                               0.1}));
}

TEST(MacWindowServer, WhatIsNoImageIsLeftOutOfACopy) {
    world().served["a"] = {{8, 8}, {0, 0}, 1, 0, {picture(8, 8)}, true};
    const auto copied = makeMacWindowServer()->copyRegisteredCursorImages(4711, "a");
    EXPECT_THAT(copied.cursor.images, ElementsAre(picture(8, 8)));
}

TEST(MacWindowServer, ACopyWithoutAnArrayHasNoImages) {
    world().served["a"] = {{8, 8}, {1, 2}, 1, 0, {}, false, true};
    const auto copied = makeMacWindowServer()->copyRegisteredCursorImages(4711, "a");
    EXPECT_EQ(copied.error, 0);
    EXPECT_THAT(copied.cursor.images, IsEmpty());
    EXPECT_EQ(copied.cursor.hotspot, (Point{1, 2}));
}

TEST(MacWindowServer, AnArrayThatComesWithAnErrorIsGivenBack) {
    world().served["a"] = {{8, 8}, {1, 2}, 1, 0, {picture(8, 8)}};
    world().failing = {"CGSCopyRegisteredCursorImages"};
    const auto copied = makeMacWindowServer()->copyRegisteredCursorImages(4711, "a");
    EXPECT_EQ(copied.error, 1000);
    EXPECT_THAT(copied.cursor.images, IsEmpty());
}

TEST(MacWindowServer, ACursorWithoutAnImageThatCanBeMadeIsSkippedAndNotRegistered) {
    auto cursor = strip();
    cursor.images = {picture(8, 8, 1), picture(8, 8, 2)};
    for (const auto purpose : {RegistrationPurpose::theme, RegistrationPurpose::original})
        for (const char* function :
             {"CGDataProviderCreateWithData", "CGColorSpaceCreateDeviceRGB", "CGImageCreate"}) {
            world().failing = {function};
            EXPECT_EQ(makeMacWindowServer()->registerCursorWithImages(1, cursor, purpose),
                      kRegistrationSkipped)
                << function;
        }
    world().failing.clear();
    cursor.images.clear();
    EXPECT_EQ(makeMacWindowServer()->registerCursorWithImages(1, cursor, RegistrationPurpose::original),
              kRegistrationSkipped);
    EXPECT_THAT(world().registrations, IsEmpty());
}

TEST(MacWindowServer, OfSeveralImagesTheOneThatCannotBeMadeIsLeftOut) {
    auto cursor = strip();
    cursor.images = {picture(8, 8, 1), picture(8, 8, 2)};
    // The provider of the first image.
    world().failAt = 1;
    EXPECT_EQ(makeMacWindowServer()->registerCursorWithImages(1, cursor, RegistrationPurpose::original), 0);
    EXPECT_THAT(world().registrations.at(0).images, ElementsAre(picture(8, 8, 2)));
}

TEST(MacWindowServer, AnImageThatCannotBeDrawnIsLeftOutOfACopy) {
    world().served["a"] = {{8, 8}, {0, 0}, 1, 0, {picture(8, 8)}};
    for (const char* function : {"CGColorSpaceCreateDeviceRGB", "CGBitmapContextCreate"}) {
        world().failing = {function};
        EXPECT_THAT(makeMacWindowServer()->copyRegisteredCursorImages(4711, "a").cursor.images, IsEmpty())
            << function;
    }
}

TEST(MacWindowServer, WhateverFailsNothingIsKept) {
    failEachCallByItself([] {
        world().served["a"] = {{8, 8}, {0, 0}, 1, 0, {picture(8, 8), picture(16, 16)}};
        const auto server = makeMacWindowServer();
        auto cursor = strip();
        cursor.images = {picture(8, 8, 1), picture(8, 8, 2)};
        server->registerCursorWithImages(1, cursor, RegistrationPurpose::theme);
        EXPECT_LE(server->copyRegisteredCursorImages(4711, "a").cursor.images.size(), 2U);
    });
}

TEST(MacWindowServer, AFlushDoesNothing) {
    const auto server = makeMacWindowServer();
    server->flush();
    EXPECT_THAT(world().registrations, IsEmpty());
    EXPECT_THAT(world().unregistered, IsEmpty());
}

}  // namespace
}  // namespace pintle
