// A private X server, three themes for its desktop, the backend as the root would wire it, and a client that
// looks.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/fake/fake_log.h"
#include "platform/x11/cursors/x11_window_server.h"
#include "tests/contract/x11/poll_queue.h"
#include "tests/contract/x11/x_test_client.h"
#include "tests/contract/x11/x_test_server.h"
#include "tests/support/temporary_folder.h"

namespace pintle {

inline const std::string kArrow = "com.apple.coregraphics.Arrow";
inline const std::string kIBeam = "com.apple.coregraphics.IBeam";
inline const std::string kWait = "com.apple.coregraphics.Wait";
inline const std::string kPointingHand = "com.apple.cursor.13";

/// `frames` frames of one colour each, as the program registers a theme's cursor.
inline RegisteredCursor themeCursor(const std::string& identifier, std::uint8_t red, int frames = 1,
                                    int side = 20, Point hotspot = {1, 2}) {
    RegisteredCursor cursor;
    cursor.identifier = identifier;
    cursor.images.push_back(*Bitmap::create(side, std::int64_t{side} * frames, [&](auto bytes) {
        const std::size_t frameBytes = bytes.size() / static_cast<std::size_t>(frames);
        for (std::size_t i = 0; i < bytes.size(); i += 4) {
            bytes[i] = red;
            bytes[i + 1] = static_cast<std::uint8_t>(i / frameBytes);
            bytes[i + 2] = 7;
            bytes[i + 3] = 255;
        }
    }));
    cursor.size = {static_cast<double>(side), static_cast<double>(side)};
    cursor.hotspot = hotspot;
    cursor.frameCount = static_cast<std::uint64_t>(frames);
    cursor.frameDuration = frames > 1 ? 0.03 : 0;
    return cursor;
}

/// The pixel value that themeCursor gives a frame.
inline std::uint32_t themePixel(std::uint8_t red, int frame = 0) {
    return 0xFF000000u | std::uint32_t{red} << 16 | static_cast<std::uint32_t>(frame) << 8 | 7;
}

inline constexpr std::uint32_t kThemeA = 0xFFAA0000;
inline constexpr std::uint32_t kThemeB = 0xFF00BB00;
inline constexpr std::uint32_t kThemeC = 0xFF0000CC;

/// One for the process: the cursor library reads its search path once.
inline const TemporaryFolder& themesFolder() {
    static const TemporaryFolder folder;
    return folder;
}

class X11Test : public testing::Test {
  protected:
    X11Test() {
        for (const auto& [theme, base] :
             {std::pair("A", kThemeA), std::pair("B", kThemeB), std::pair("C", kThemeC)})
            writeTestTheme(themes.path(), theme,
                           {{"left_ptr", base + 0x10},
                            {"xterm", base + 0x20},
                            {"hand2", base + 0x30},
                            {"fleur", base + 0x40},
                            {"watch", base + 0x50, 3, 40}});
        ::setenv("XCURSOR_PATH", themes.path().c_str(), 1);
        ::unsetenv("XCURSOR_THEME");
        ::unsetenv("XCURSOR_SIZE");
        environment["XCURSOR_PATH"] = themes.path();
        environment["XCURSOR_SIZE"] = "24";
        client = std::make_unique<XTestClient>(x.display(), "A");
        client->setResources("Xcursor.theme:\tA\n");
    }

    void start() {
        X11WindowServerOptions options{x.display(), queue, log, {}, {}, {}, {}};
        options.watchReadable = [this](int descriptor, std::function<void()> readable) {
            return queue.watchReadable(descriptor, std::move(readable));
        };
        options.serverDied = [this] { ++deaths; };
        options.environment = [this](const std::string& name) -> std::optional<std::string> {
            const auto found = environment.find(name);
            if (found == environment.end()) return std::nullopt;
            return found->second;
        };
        options.nameSent = [this](std::string_view name) { namesSent.emplace_back(name); };
        server = makeX11WindowServer(std::move(options));
        endOfTurn = queue.atEndOfTurn([this] { server->flush(); });
    }
    /// The process ends, in order.
    void stop() {
        endOfTurn.end();
        server.reset();
    }

    RegistrationAnswer registerTheme(const RegisteredCursor& cursor) {
        return server->registerCursorWithImages(server->mainConnectionID(), cursor,
                                                RegistrationPurpose::theme);
    }
    RegistrationAnswer registerOriginal(const std::string& identifier) {
        return server->registerCursorWithImages(server->mainConnectionID(), themeCursor(identifier, 99),
                                                RegistrationPurpose::original);
    }
    int unregisterAll() { return server->coreCursorUnregisterAll(server->mainConnectionID()); }
    /// What a reset does.
    void restore() {
        unregisterAll();
        for (const auto& identifier : {kArrow, kIBeam, kWait}) registerOriginal(identifier);
        server->flush();
    }
    void apply(std::uint8_t red) {
        unregisterAll();
        for (const auto& identifier : {kArrow, kIBeam, kPointingHand})
            EXPECT_EQ(registerTheme(themeCursor(identifier, red)), 0);
        server->flush();
    }

    template <typename Condition>
    bool eventually(Condition condition) {
        const auto end = queue.now() + std::chrono::seconds(10);
        while (queue.now() < end) {
            if (condition()) return true;
            queue.runOnce(std::chrono::milliseconds(5));
        }
        return condition();
    }
    /// Lets everything happen that is under way, until the backend has nothing left to do, to wait for or to
    /// read. More than one round in which that is so, because the server answers a request before it gives
    /// others the events that came of it.
    void settle() {
        const auto end = queue.now() + std::chrono::seconds(10);
        for (int idle = 0; idle < 3; ++idle) {
            if (client) client->synchronize();
            if (queue.isIdle()) continue;
            ASSERT_LT(queue.now(), end) << "the backend does not come to rest";
            idle = -1;
            queue.runOnce(std::chrono::milliseconds(5));
        }
    }

    std::uint32_t shownPixel() {
        const auto seen = client->shown();
        return seen && !seen->pixels.empty() ? seen->pixels.front() : 0;
    }
    std::string shownName() {
        const auto seen = client->shown();
        return seen ? seen->name : "unreadable";
    }
    bool becomes(std::uint32_t pixel) {
        return eventually([&] { return shownPixel() == pixel; });
    }

    const TemporaryFolder& themes = themesFolder();
    XTestServer x;
    PollQueue queue;
    FakeLog log;
    std::map<std::string, std::string> environment;
    int deaths = 0;
    std::vector<std::string> namesSent;
    std::unique_ptr<XTestClient> client;
    std::unique_ptr<WindowServer> server;
    Subscription endOfTurn;
};

}  // namespace pintle
