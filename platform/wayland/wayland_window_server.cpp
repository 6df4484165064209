#include "platform/wayland/wayland_window_server.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "base/lifetime.h"
#include "platform/wayland/cursor_file.h"
#include "platform/wayland/theme_engine.h"
#include "platform/x11/cursors/cursor_names.h"
#include "platform/x11/cursors/desktop_theme.h"

namespace pintle {
namespace {

using namespace wayland;

constexpr int kFailure = 1000;
constexpr int kIllegalArgument = 1001;
/// A desktop loads the whole theme anew each time.
constexpr std::chrono::milliseconds kLeastInterval{300};
constexpr double kNominal = 32;
constexpr int kSmallestSize = 8;
constexpr int kLargestSize = 512;
constexpr double kHighestDensity = 4;
/// What desktops take when no size is set.
constexpr int kUnsetSize = 24;

std::optional<int> sizeIn(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    int size = 0;
    const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), size);
    if (error != std::errc() || end != text->data() + text->size() || size < 1) return std::nullopt;
    return std::min(size, kLargestSize);
}

int sizeOf(const PointerSetting& setting) { return sizeIn(setting.size).value_or(kUnsetSize); }

/// In pixels of the X server. Its programs take the environment's number as it is, and else what the desktop
/// makes of its setting there. A compositor that exports its setting has ours in the environment.
int sizeInX(const PointerSetting& own, const Environment& environment, double density) {
    if (!isOwnThemeName(environment("XCURSOR_THEME").value_or("")))
        if (const auto size = sizeIn(environment("XCURSOR_SIZE"))) return *size;
    const double size = sizeOf(own) * std::clamp(density, 1.0, kHighestDensity);
    return static_cast<int>(std::lround(std::min<double>(size, kLargestSize)));
}

/// Where compositors look for themes, which is more than the X library does.
x11::Environment withThemeFolders(const Environment& environment, const IconFolders& icons) {
    return [environment, icons](const std::string& name) -> std::optional<std::string> {
        auto value = environment(name);
        if (name == "XCURSOR_PATH" && !value)
            return icons.data.string() + ":" + icons.home.string() + ":/usr/share/icons:/usr/share/pixmaps";
        return value;
    };
}

class WaylandWindowServer : public WindowServer {
  public:
    explicit WaylandWindowServer(WaylandWindowServerOptions options);
    ~WaylandWindowServer() override;

    bool provides(WindowServerFunction) override { return engine_->reachesAnybody(); }
    ConnectionId mainConnectionID() override { return provides({}) ? 1 : 0; }
    RegistrationAnswer registerCursorWithImages(ConnectionId connection, const RegisteredCursor& cursor,
                                                RegistrationPurpose purpose) override;
    int coreCursorUnregisterAll(ConnectionId connection) override;
    CopiedCursor copyRegisteredCursorImages(ConnectionId connection, const std::string& identifier) override;
    void flush() override;

  private:
    void noteSize();
    void compositorReported(CompositorNews news);
    bool hasOtherWishes() const { return changed_ && wishes_ != asked_; }
    ThemeRequest request(bool onlyForOtherOutputs);
    void begin();

    WaylandWindowServerOptions options_;
    std::shared_ptr<ThemeEngine> engine_;
    x11::DesktopTheme desktopTheme_;
    std::unique_ptr<WindowServer> x_;
    Wishes wishes_;
    /// What was asked for last; absent: nobody knows what an earlier process left.
    std::optional<Wishes> asked_;
    /// Of the pictures that are wished for.
    int size_ = static_cast<int>(kNominal);
    std::uint64_t serial_ = 0;
    bool changed_ = false;
    /// The theme in force may lack what the outputs need now.
    bool outputsChanged_ = false;
    /// A request that is not carried out yet, as far as this thread knows.
    bool isUnderWay_ = false;
    std::optional<std::chrono::nanoseconds> lastBegin_;
    Timer delay_;
    Subscription observation_;
    Lifetime lifetime_;
};

WaylandWindowServer::WaylandWindowServer(WaylandWindowServerOptions options)
    : options_(std::move(options)),
      engine_(std::make_shared<ThemeEngine>(
          options_.icons, std::move(options_.providers), StateFile(options_.stateFile),
          options_.outputScales ? options_.outputScales : [] { return std::vector<double>(); },
          options_.log)),
      desktopTheme_(withThemeFolders(options_.environment, options_.icons)) {
    if (!engine_->reachesAnybody()) {
        options_.log.system(
            "[Wayland] No setting of this desktop reaches the pointer - cursor registration "
            "unavailable");
        return;
    }
    if (options_.observeCompositor)
        observation_ = options_.observeCompositor(
            lifetime_.weakly([this](CompositorNews news) { compositorReported(news); }));
    if (!options_.makeXServer) return;
    x_ = options_.makeXServer([engine = engine_, environment = options_.environment,
                               density = options_.xPixelsPerPoint]() -> std::pair<std::string, int> {
        const auto own = engine->usersOwn();
        return {own.theme.value_or(""), sizeInX(own, environment, density ? density() : 1)};
    });
    if (x_ && !x_->provides(WindowServerFunction::registerCursorWithImages)) x_.reset();
}

WaylandWindowServer::~WaylandWindowServer() {
    delay_.end();
    observation_.end();
    // A request that nobody has begun by now is overtaken by this one and left out then.
    if (changed_ || isUnderWay_) engine_->carryOut(request(false));
    if (x_) x_->flush();
}

RegistrationAnswer WaylandWindowServer::registerCursorWithImages(ConnectionId, const RegisteredCursor& cursor,
                                                                 RegistrationPurpose purpose) {
    if (!provides({})) return kFailure;
    if (purpose == RegistrationPurpose::theme && !holdsItsFrames(cursor)) return kIllegalArgument;
    // Failures there are in the log of that module; they do not count here.
    if (x_) x_->registerCursorWithImages(x_->mainConnectionID(), cursor, purpose);
    if (x11::namesOf(cursor.identifier).empty()) return 0;
    if (purpose == RegistrationPurpose::original)
        wishes_.erase(cursor.identifier);
    else
        wishes_.insert_or_assign(cursor.identifier, cursor);
    if (purpose == RegistrationPurpose::theme) noteSize();
    changed_ = true;
    return 0;
}

int WaylandWindowServer::coreCursorUnregisterAll(ConnectionId) {
    if (!provides({})) return kFailure;
    if (x_) x_->coreCursorUnregisterAll(x_->mainConnectionID());
    wishes_.clear();
    changed_ = true;
    return 0;
}

CopiedCursor WaylandWindowServer::copyRegisteredCursorImages(ConnectionId, const std::string& identifier) {
    const auto names = x11::namesOf(identifier);
    if (!provides({}) || names.empty()) return {kFailure, {}};
    const auto own = engine_->usersOwn();
    const x11::CursorThemeChoice choice{own.theme.value_or(""), sizeOf(own)};
    if (choice != desktopTheme_.choice()) desktopTheme_.choose(choice);
    const auto picture = desktopTheme_.picture(names.front());
    if (!picture) return {kFailure, {}};
    auto record = x11::recordOf(identifier, *picture);
    if (!record) return {kFailure, {}};
    return {0, std::move(*record)};
}

void WaylandWindowServer::noteSize() {
    const double size = kNominal * (options_.cursorScale ? options_.cursorScale() : 1);
    size_ = std::isfinite(size) ? static_cast<int>(std::clamp<double>(size, kSmallestSize, kLargestSize))
                                : static_cast<int>(kNominal);
}

void WaylandWindowServer::compositorReported(CompositorNews news) {
    if (wishes_.empty()) return;
    if (news == CompositorNews::forgotTheme) {
        asked_.reset();
        changed_ = true;
    } else {
        outputsChanged_ = true;
    }
    flush();
}

ThemeRequest WaylandWindowServer::request(bool onlyForOtherOutputs) {
    changed_ = outputsChanged_ = false;
    asked_ = wishes_;
    return {++serial_, wishes_, size_, onlyForOtherOutputs};
}

void WaylandWindowServer::flush() {
    if (x_) x_->flush();
    if (delay_ || isUnderWay_) return;
    if (!hasOtherWishes() && !outputsChanged_) {
        changed_ = false;
        return;
    }
    const auto now = options_.queue.now();
    if (!lastBegin_ || now - *lastBegin_ >= kLeastInterval) {
        begin();
        return;
    }
    delay_ = options_.queue.after(*lastBegin_ + kLeastInterval - now, lifetime_.weakly([this] {
        delay_.end();
        if (!isUnderWay_ && (hasOtherWishes() || outputsChanged_)) begin();
    }));
}

void WaylandWindowServer::begin() {
    isUnderWay_ = true;
    lastBegin_ = options_.queue.now();
    runInBackground(
        options_.background, options_.queue, lifetime_, Priority::userInitiated,
        [engine = engine_, next = request(!hasOtherWishes())] { return engine->carryOut(next); },
        [this](bool done) {
            isUnderWay_ = false;
            // The next request for the same is not left out then.
            if (!done) asked_.reset();
            flush();
        });
}

}  // namespace

std::unique_ptr<WindowServer> makeWaylandWindowServer(WaylandWindowServerOptions options) {
    return std::make_unique<WaylandWindowServer>(std::move(options));
}

}  // namespace pintle
