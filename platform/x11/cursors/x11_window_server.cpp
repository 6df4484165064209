#include "platform/x11/cursors/x11_window_server.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/lifetime.h"
#include "platform/x11/cursors/cursor_names.h"
#include "platform/x11/cursors/keeper.h"

namespace pintle {
namespace {

using namespace x11;

constexpr int kFailure = 1000;
constexpr int kIllegalArgument = 1001;
constexpr int kMostRounds = 64;

std::optional<std::string> processEnvironment(const std::string& name) {
    const char* const value = std::getenv(name.c_str());
    if (!value) return std::nullopt;
    return value;
}

class X11WindowServer : public WindowServer {
  public:
    explicit X11WindowServer(X11WindowServerOptions options);
    ~X11WindowServer() override;

    bool provides(WindowServerFunction) override { return isUsable(); }
    ConnectionId mainConnectionID() override;
    RegistrationAnswer registerCursorWithImages(ConnectionId connection, const RegisteredCursor& cursor,
                                                RegistrationPurpose purpose) override;
    int coreCursorUnregisterAll(ConnectionId connection) override;
    CopiedCursor copyRegisteredCursorImages(ConnectionId connection, const std::string& identifier) override;
    void flush() override;

  private:
    bool isUsable() const { return parts_.registration && parts_.watcher && !lost_; }
    std::string displayName() const;
    CursorThemeChoice desktopChoice() const;
    void watchRegistration();
    void watchWatcher();
    void showOnRoot(const CursorPicture& picture);
    void registrationReadable();
    void handleNews();
    void handleNewsSoon();
    void desktopThemeChanged();
    void refreshDesktopTheme();
    /// What was wanted is not left to the end of some later turn: a click in the toolkit is no turn of the
    /// queue.
    void flushSoon();

    /// After a connection broke. False when the functions are missing from now on.
    bool reopenRegistration();
    bool reopenWatcher();
    void lose(std::string_view why);
    void serverGone();
    /// Ends things later: the call that finds a connection broken may come from its own watch.
    template <typename T>
    void endSoon(T thing) {
        options_.queue.post([kept = std::make_shared<T>(std::move(thing))] {});
    }

    X11WindowServerOptions options_;
    Environment environment_;
    BackendParts parts_;
    Keeper keeper_;
    bool needsFlush_ = false;
    bool desktopIsFresh_ = false;
    bool newsExpected_ = false;
    bool registrationReopened_ = false;
    bool watcherReopened_ = false;
    bool rootHasDeviceCursor_ = false;
    bool lost_ = false;
    bool dead_ = false;
    Subscription registrationWatch_;
    Subscription watcherWatch_;
    Lifetime lifetime_;
};

X11WindowServer::X11WindowServer(X11WindowServerOptions options)
    : options_(std::move(options)),
      environment_(options_.environment ? options_.environment : processEnvironment),
      parts_{nullptr, nullptr, {}, DesktopTheme(environment_)},
      keeper_(options_.queue, parts_, [this] { handleNewsSoon(); }) {
    bool reached = false;
    parts_.registration = Registration::open(displayName(), reached);
    if (parts_.registration) parts_.watcher = Watcher::open(displayName());
    if (!isUsable()) {
        options_.log.system(reached ? "[X11] The X server lacks extensions - cursor registration unavailable"
                                    : "[X11] No X server - cursor registration unavailable");
        return;
    }
    parts_.theme.choose(desktopChoice());
    watchRegistration();
    watchWatcher();
    handleNewsSoon();
}

X11WindowServer::~X11WindowServer() {
    keeper_.stop();
    registrationWatch_.end();
    watcherWatch_.end();
}

std::string X11WindowServer::displayName() const {
    if (options_.display) return *options_.display;
    return environment_("DISPLAY").value_or("");
}

CursorThemeChoice X11WindowServer::desktopChoice() const {
    if (options_.desktopTheme) {
        auto [theme, size] = options_.desktopTheme();
        return {std::move(theme), size};
    }
    return parts_.watcher->cursorTheme(environment_);
}

void X11WindowServer::watchRegistration() {
    registrationWatch_ = options_.watchReadable(parts_.registration->connection().descriptor(),
                                                lifetime_.weakly([this] { registrationReadable(); }));
}

void X11WindowServer::watchWatcher() {
    watcherWatch_ = options_.watchReadable(parts_.watcher->connection().descriptor(),
                                           lifetime_.weakly([this] { handleNews(); }));
}

ConnectionId X11WindowServer::mainConnectionID() {
    if (!isUsable()) return 0;
    return xcb_get_setup(parts_.registration->connection().get())->resource_id_base;
}

RegistrationAnswer X11WindowServer::registerCursorWithImages(ConnectionId, const RegisteredCursor& cursor,
                                                             RegistrationPurpose purpose) {
    if (!isUsable()) return kFailure;
    const auto names = namesOf(cursor.identifier);
    if (purpose == RegistrationPurpose::original) {
        if (!desktopIsFresh_) {
            parts_.theme.choose(desktopChoice());
            desktopIsFresh_ = true;
        }
        parts_.wanted.wantDesktop(names);
        flushSoon();
        return 0;
    }
    const auto picture = CursorPicture::of(cursor);
    if (!picture) return kIllegalArgument;
    if (names.empty()) return 0;
    int error = parts_.registration->prepare(picture, names);
    if (error != 0 && parts_.registration->connection().isBroken()) {
        if (!reopenRegistration()) return kFailure;
        error = parts_.registration->prepare(picture, names);
    }
    if (error != 0) return error;
    parts_.wanted.wantTheme(names, picture);
    flushSoon();
    return 0;
}

int X11WindowServer::coreCursorUnregisterAll(ConnectionId) {
    if (!isUsable()) return kFailure;
    parts_.wanted.wantDesktopEverywhere();
    flushSoon();
    return 0;
}

CopiedCursor X11WindowServer::copyRegisteredCursorImages(ConnectionId, const std::string& identifier) {
    const auto names = namesOf(identifier);
    if (!isUsable() || names.empty()) return {kFailure, {}};
    refreshDesktopTheme();
    const auto picture = parts_.theme.picture(names.front());
    if (!picture) return {kFailure, {}};
    auto record = recordOf(identifier, *picture, options_.pixelsPerPoint ? options_.pixelsPerPoint() : 1);
    if (!record) return {kFailure, {}};
    return {0, std::move(*record)};
}

void X11WindowServer::flush() {
    if (!std::exchange(needsFlush_, false) || !isUsable()) return;
    desktopIsFresh_ = false;
    if (parts_.registration->connection().isBroken() && !reopenRegistration()) return;
    if (parts_.watcher->connection().isBroken() && !reopenWatcher()) return;
    refreshDesktopTheme();
    const auto changes =
        parts_.wanted.changes([this](std::string_view name) { return parts_.theme.picture(name); });
    const auto sent = parts_.registration->send(changes);
    needsFlush_ = false;
    for (const auto& change : sent) {
        parts_.wanted.sent(change);
        if (change.name == kRootCursorName) showOnRoot(*change.picture);
        if (options_.nameSent) options_.nameSent(change.name);
    }
    keeper_.applied(sent);
    handleNewsSoon();
}

void X11WindowServer::flushSoon() {
    if (std::exchange(needsFlush_, true)) return;
    options_.queue.post(lifetime_.weakly([this] { flush(); }));
}

void X11WindowServer::showOnRoot(const CursorPicture& picture) {
    auto& registration = *parts_.registration;
    const auto root = registration.connection().root();
    registration.define(root, kRootCursorName, CursorChannel::core);
    // Some window managers set the root's cursor for the pointer device, which hides the other one. Where
    // that is not so it is left alone: a device cursor of the root window can never be taken away again, and
    // would hide the desktop's own from then on.
    if (!rootHasDeviceCursor_) {
        registration.connection().synchronize();
        const auto shown = parts_.watcher->cursorOfRoot();
        rootHasDeviceCursor_ = !shown || !shown->fingerprint || !picture.shows(*shown->fingerprint);
    }
    if (!rootHasDeviceCursor_) return;
    registration.define(root, kRootCursorName, CursorChannel::device);
    registration.connection().synchronize();
}

void X11WindowServer::registrationReadable() {
    if (!isUsable()) return;
    auto& connection = parts_.registration->connection();
    // Only errors about windows and cursors that went away meanwhile arrive here.
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection.get())}) continue;
    if (!connection.isBroken()) return;
    const bool hadSent = parts_.registration->hasSent();
    if (!reopenRegistration()) return;
    if (hadSent) flush();
}

void X11WindowServer::handleNewsSoon() {
    if (std::exchange(newsExpected_, true)) return;
    options_.queue.post(lifetime_.weakly([this] {
        newsExpected_ = false;
        handleNews();
    }));
}

void X11WindowServer::handleNews() {
    if (dead_ || !parts_.watcher) return;
    for (int round = 0; round < kMostRounds; ++round) {
        const auto news = parts_.watcher->takeNews();
        if (parts_.watcher->connection().isBroken()) {
            if (reopenWatcher()) keeper_.watcherReplaced();
            return;
        }
        if (!news.cursor && !news.settingsChanged) return;
        if (lost_) continue;
        if (news.settingsChanged) desktopThemeChanged();
        if (news.cursor) keeper_.cursorShown(*news.cursor);
    }
    handleNewsSoon();
}

void X11WindowServer::desktopThemeChanged() {
    const auto before = parts_.theme.choice();
    refreshDesktopTheme();
    if (parts_.theme.choice() == before || !parts_.registration->hasSent()) return;
    needsFlush_ = true;
    flush();
}

void X11WindowServer::refreshDesktopTheme() {
    const auto choice = desktopChoice();
    if (choice != parts_.theme.choice()) parts_.theme.choose(choice);
}

bool X11WindowServer::reopenRegistration() {
    bool reached = false;
    auto fresh = Registration::open(displayName(), reached);
    if (!reached && !parts_.watcher->connection().synchronize()) {
        serverGone();
        return false;
    }
    const bool isSucceeded = fresh && fresh->hasSuccessor(*parts_.registration);
    if (!isSucceeded && (registrationReopened_ || !fresh)) {
        lose(
            "[X11] The connection that registers cursors was closed again - cursor registration unavailable");
        return false;
    }
    if (isSucceeded) {
        // Taking it back at once would make the two end each other for ever. The next registration does.
        options_.log.system("[X11] Another process registers cursors now");
        keeper_.stop();
    } else {
        options_.log.system("[X11] The connection that registers cursors was closed - opened again");
        registrationReopened_ = true;
        needsFlush_ = needsFlush_ || parts_.registration->hasSent();
    }
    endSoon(std::pair(std::exchange(parts_.registration, std::move(fresh)), std::move(registrationWatch_)));
    watchRegistration();
    parts_.wanted.forgetSent();
    return true;
}

bool X11WindowServer::reopenWatcher() {
    if (dead_) return false;
    auto fresh = Watcher::open(displayName());
    if (!fresh && !parts_.registration->connection().synchronize()) {
        serverGone();
        return false;
    }
    if (watcherReopened_ || !fresh) {
        lose(
            "[X11] The connection that watches the pointer was closed again - cursor registration "
            "unavailable");
        return false;
    }
    options_.log.system("[X11] The connection that watches the pointer was closed - opened again");
    watcherReopened_ = true;
    endSoon(std::pair(std::exchange(parts_.watcher, std::move(fresh)), std::move(watcherWatch_)));
    watchWatcher();
    return true;
}

void X11WindowServer::lose(std::string_view why) {
    if (std::exchange(lost_, true)) return;
    options_.log.system(why);
    keeper_.stop();
    endSoon(std::move(registrationWatch_));
    if (parts_.watcher->connection().isBroken()) endSoon(std::move(watcherWatch_));
}

void X11WindowServer::serverGone() {
    if (std::exchange(dead_, true)) return;
    lost_ = true;
    options_.log.system("[X11] The X server is gone");
    keeper_.stop();
    endSoon(std::pair(std::move(registrationWatch_), std::move(watcherWatch_)));
    if (options_.serverDied) options_.queue.post(options_.serverDied);
}

}  // namespace

std::unique_ptr<WindowServer> makeX11WindowServer(X11WindowServerOptions options) {
    return std::make_unique<X11WindowServer>(std::move(options));
}

}  // namespace pintle
